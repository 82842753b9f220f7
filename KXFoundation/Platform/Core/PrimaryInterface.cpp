// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/PrimaryInterface.h>

#include <QtCore/QFile>

#include <algorithm>
#include <limits>
#include <tuple>

namespace kx {

bool isBetterPrimary(const InterfaceTraits &a, const InterfaceTraits &b)
{
    const auto rank = [](const InterfaceTraits &traits) {
        return std::tuple(!traits.defaultRouteMetric, traits.defaultRouteMetric.value_or(0), !traits.isDevice,
            !traits.isUp, traits.index);
    };
    return rank(a) < rank(b);
}

std::optional<quint32> defaultRouteMetric(const QByteArray &routes, const QString &interfaceName)
{
    // Interface, destination, gateway, flags, reference count, uses, metric, mask; numbers in hex but for the counts.
    enum Column { Interface, Destination, Flags = 3, Metric = 6, Mask = 7 };
    constexpr uint up = 0x1;
    constexpr uint reject = 0x200;
    std::optional<quint32> best;
    for (const QByteArray &line : routes.split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() <= Mask || QFile::decodeName(columns[Interface]) != interfaceName)
            continue;
        const bool isDefault = columns[Destination] == "00000000" && columns[Mask] == "00000000";
        if (!isDefault || (columns[Flags].toUInt(nullptr, 16) & (up | reject)) != up)
            continue;
        best = std::min<quint32>(best.value_or(std::numeric_limits<quint32>::max()), columns[Metric].toUInt());
    }
    return best;
}

} // namespace kx
