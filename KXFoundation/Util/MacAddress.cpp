// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/MacAddress.h>

namespace kx {

QString macAddressText(const std::variant<LinkAddress, LinkFailure> &link)
{
    if (const auto *address = std::get_if<LinkAddress>(&link)) {
        const auto *bytes = reinterpret_cast<const char *>(address->data());
        return QString::fromLatin1(QByteArray(bytes, qsizetype(address->size())).toHex().toUpper());
    }
    switch (std::get<LinkFailure>(link)) {
    case LinkFailure::NoInterface: return QStringLiteral("if_nametoindex failure");
    case LinkFailure::NoSize: return QStringLiteral("sysctl mgmtInfoBase failure");
    case LinkFailure::NoMemory: return QStringLiteral("buffer allocation failure");
    case LinkFailure::NoContent: break;
    }
    return QStringLiteral("sysctl msgBuffer failure");
}

} // namespace kx
