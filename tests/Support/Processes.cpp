// SPDX-License-Identifier: MIT
#include "Support/Processes.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QHash>

namespace kx::test {

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QList<qint64> descendants()
{
    QHash<qint64, QList<qint64>> children;
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray stat = contents(QStringLiteral("/proc/%1/stat").arg(entry));
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        if (entry.toLongLong() > 0 && fields.size() > 1 && fields.at(0) != "Z")
            children[fields.at(1).toLongLong()].append(entry.toLongLong());
    }
    QList<qint64> found;
    QList<qint64> open{QCoreApplication::applicationPid()};
    while (!open.isEmpty()) {
        const QList<qint64> next = children.value(open.takeFirst());
        found += next;
        open += next;
    }
    return found;
}

double privateMemory()
{
    double kilobytes = 0;
    for (const QByteArray &line : contents(QStringLiteral("/proc/self/smaps_rollup")).split('\n')) {
        if (line.startsWith("Private_"))
            kilobytes += line.mid(line.indexOf(':') + 1).simplified().split(' ').first().toDouble();
    }
    return kilobytes / 1024;
}

} // namespace kx::test
