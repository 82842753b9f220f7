// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <array>
#include <optional>
#include <variant>

namespace kx {

/// The step at which the system did not tell an interface's address.
enum class LinkFailure {
    NoInterface, ///< There is no interface of that name.
    NoSize, ///< The system did not say how much it has to tell.
    NoMemory, ///< There is no room for it.
    NoContent, ///< It was not told, or holds no address of six bytes.
};

using LinkAddress = std::array<quint8, 6>;

/// The link-layer (MAC) address of the interface; the first six bytes of a longer one.
[[nodiscard]] std::variant<LinkAddress, LinkFailure> linkAddress(const QString &interfaceName);

/// The interface's first IPv4 address, its four bytes in memory as they go over the network.
[[nodiscard]] std::optional<quint32> ipV4Address(const QString &interfaceName);

/// The interface by which the machine reaches the world, as isBetterPrimary() ranks those that have a link-layer
/// address. Null on a machine without such an interface.
[[nodiscard]] QString primaryInterface();

} // namespace kx
