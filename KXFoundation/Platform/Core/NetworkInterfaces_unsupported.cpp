// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/NetworkInterfaces.h>

namespace kx {

std::variant<LinkAddress, LinkFailure> linkAddress(const QString &)
{
    return LinkFailure::NoInterface;
}

std::optional<quint32> ipV4Address(const QString &)
{
    return std::nullopt;
}

QString primaryInterface()
{
    return {};
}

} // namespace kx
