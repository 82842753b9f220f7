// SPDX-License-Identifier: MIT
#include "Footprint.h"

#include "Support/Processes.h"

#include <QtCore/QDir>
#include <QtCore/QStringList>

#include <algorithm>
#include <malloc.h>

namespace {

constexpr double mebibyte = 1024 * 1024;

int entries(const QString &directory)
{
    return int(QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}

// Of what is counted: the name in the table, its value, and how much more is noise: a share and a fixed amount.
struct Quantity {
    const char *name;
    double (*value)(const Footprint &);
    double share;
    double amount;
};

constexpr Quantity quantities[] = {
    {"heap MiB", [](const Footprint &footprint) { return footprint.heap; }, 0.05, 1},
    {"memory MiB", [](const Footprint &footprint) { return footprint.memory; }, 0.05, 8},
    {"descriptors", [](const Footprint &footprint) { return double(footprint.descriptors); }, 0, 2},
    {"threads", [](const Footprint &footprint) { return double(footprint.threads); }, 0, 2},
    {"processes", [](const Footprint &footprint) { return double(footprint.processes); }, 0, 1},
};

double median(const QList<Footprint> &samples, const Quantity &quantity)
{
    QList<double> values;
    for (const Footprint &sample : samples)
        values.append(quantity.value(sample));
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

QString number(double value)
{
    return QString::number(value, 'f', value == qRound(value) ? 0 : 1);
}

} // namespace

Footprint Footprint::now()
{
    Footprint footprint;
    const auto heap = ::mallinfo2();
    footprint.heap = double(heap.uordblks + heap.hblkhd) / mebibyte;
    footprint.memory = kx::test::privateMemory();
    footprint.descriptors = entries(QStringLiteral("/proc/self/fd"));
    footprint.threads = entries(QStringLiteral("/proc/self/task"));
    footprint.processes = int(kx::test::descendants().size());
    return footprint;
}

QString table(const QList<Footprint> &samples)
{
    QString text = QStringLiteral("| minutes | rounds |");
    QString rule = QStringLiteral("|---|---|");
    for (const Quantity &quantity : quantities) {
        text += QStringLiteral(" %1 |").arg(QLatin1String(quantity.name));
        rule += QStringLiteral("---|");
    }
    text += u'\n' + rule + u'\n';
    for (const Footprint &sample : samples) {
        text += QStringLiteral("| %1 | %2 |").arg(QString::number(sample.minutes, 'f', 1)).arg(sample.rounds);
        for (const Quantity &quantity : quantities)
            text += QStringLiteral(" %1 |").arg(number(quantity.value(sample)));
        text += u'\n';
    }
    return text;
}

QStringList growth(const QList<Footprint> &samples)
{
    const qsizetype third = samples.size() / 3;
    if (third == 0)
        return {QStringLiteral("too few samples: a longer run tells more")};
    QStringList grown;
    for (const Quantity &quantity : quantities) {
        const double first = median(samples.first(third), quantity);
        const double last = median(samples.last(third), quantity);
        if (last > first * (1 + quantity.share) + quantity.amount) {
            grown.append(
                QStringLiteral("%1 grew from %2 to %3").arg(QLatin1String(quantity.name), number(first), number(last)));
        }
    }
    return grown;
}
