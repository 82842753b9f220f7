// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace kx {

/// A network interface as a candidate for the machine's primary one.
struct InterfaceTraits {
    QString name;
    std::optional<quint32> defaultRouteMetric; ///< None without a default route; the lower, the better.
    bool isDevice = false; ///< Hardware, not a bridge, tunnel or the like.
    bool isUp = false;
    unsigned index = 0; ///< The system's number of it.
};

/// True when `a` is the better primary interface: a default route beats none, then the lower metric, a device, one that
/// is up, the lower index.
[[nodiscard]] bool isBetterPrimary(const InterfaceTraits &a, const InterfaceTraits &b);

/// The lowest metric of a default route by the interface, in the table of IPv4 routes that Linux prints.
[[nodiscard]] std::optional<quint32> defaultRouteMetric(const QByteArray &routes, const QString &interfaceName);

} // namespace kx
