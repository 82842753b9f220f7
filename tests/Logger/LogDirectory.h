// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

namespace kx::test {

inline QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QStringList fileLines(const QString &path)
{
    QStringList lines = QString::fromUtf8(fileBytes(path)).split(u'\n');
    lines.removeLast(); // behind the last line feed
    return lines;
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QStringList numbered(const QString &prefix, int from, int to)
{
    QStringList lines;
    for (int i = from; i < to; ++i)
        lines.append(QString(prefix + QString::number(i)));
    return lines;
}

/// A temporary directory for one test, with a base directory of log files in it that does not exist yet.
class LogDirectory {
public:
    [[nodiscard]] QString base() const { return path(QStringLiteral("logs")); }
    [[nodiscard]] QString path(const QString &name) const { return m_directory.filePath(name); }

    /// Every log file below `directory`, in order of the names.
    [[nodiscard]] static QStringList logFiles(const QString &directory)
    {
        QStringList files;
        QDirIterator entries(directory, {QStringLiteral("*.log")}, QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext())
            files.append(entries.next());
        files.sort();
        return files;
    }

private:
    QTemporaryDir m_directory;
};

} // namespace kx::test
