// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/NetworkInterfaces.h>

#include <KXFoundation/Platform/Core/Descriptor.h>
#include <KXFoundation/Platform/Core/PrimaryInterface.h>

#include <QtCore/QFile>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include <ifaddrs.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netinet/in.h>
#include <netpacket/packet.h>
#include <sys/socket.h>

namespace kx {

namespace {

// The kernel answers while it takes the request, so nothing below ever waits.
bool askForLink(int socket, unsigned index)
{
    struct {
        nlmsghdr header{};
        ifinfomsg link{};
    } request;
    request.header.nlmsg_len = sizeof request;
    request.header.nlmsg_type = RTM_GETLINK;
    request.header.nlmsg_flags = NLM_F_REQUEST;
    request.link.ifi_family = AF_UNSPEC;
    request.link.ifi_index = int(index);
    return ::send(socket, &request, sizeof request, 0) == ssize_t(sizeof request);
}

std::optional<LinkAddress> addressIn(const nlmsghdr *message, size_t size)
{
    if (size < NLMSG_LENGTH(sizeof(ifinfomsg)) || message->nlmsg_len > size || message->nlmsg_type != RTM_NEWLINK)
        return std::nullopt;
    auto attributesLeft = int(NLMSG_PAYLOAD(message, sizeof(ifinfomsg)));
    const auto *attribute = reinterpret_cast<const rtattr *>(
        reinterpret_cast<const char *>(NLMSG_DATA(message)) + NLMSG_ALIGN(sizeof(ifinfomsg)));
    for (; RTA_OK(attribute, attributesLeft); attribute = RTA_NEXT(attribute, attributesLeft)) {
        LinkAddress address;
        if (attribute->rta_type == IFLA_ADDRESS && RTA_PAYLOAD(attribute) >= address.size()) {
            std::memcpy(address.data(), RTA_DATA(attribute), address.size());
            return address;
        }
    }
    return std::nullopt;
}

struct FreeAddresses {
    void operator()(ifaddrs *list) const { ::freeifaddrs(list); }
};
using Addresses = std::unique_ptr<ifaddrs, FreeAddresses>;

Addresses interfaceAddresses()
{
    ifaddrs *list = nullptr;
    return Addresses(::getifaddrs(&list) == 0 ? list : nullptr);
}

bool hasFamily(const ifaddrs *entry, sa_family_t family)
{
    return entry->ifa_addr && entry->ifa_addr->sa_family == family;
}

// Six bytes that are not all zero.
bool hasLinkAddress(const sockaddr_ll &link)
{
    const unsigned char *const end = link.sll_addr + sizeof(LinkAddress);
    return link.sll_halen == sizeof(LinkAddress)
        && std::any_of(link.sll_addr, end, [](unsigned char byte) { return byte != 0; });
}

} // namespace

std::variant<LinkAddress, LinkFailure> linkAddress(const QString &interfaceName)
{
    const unsigned index = ::if_nametoindex(QFile::encodeName(interfaceName).constData());
    if (index == 0)
        return LinkFailure::NoInterface;
    const Descriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
    if (!socket.isOpen() || !askForLink(socket.number(), index))
        return LinkFailure::NoSize;
    const ssize_t size = ::recv(socket.number(), nullptr, 0, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
    if (size <= 0)
        return LinkFailure::NoSize;
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[size_t(size)]);
    if (!buffer)
        return LinkFailure::NoMemory;
    if (::recv(socket.number(), buffer.get(), size_t(size), MSG_DONTWAIT) != size)
        return LinkFailure::NoContent;
    if (const auto address = addressIn(reinterpret_cast<const nlmsghdr *>(buffer.get()), size_t(size)))
        return *address;
    return LinkFailure::NoContent;
}

std::optional<quint32> ipV4Address(const QString &interfaceName)
{
    const Addresses addresses = interfaceAddresses();
    for (const ifaddrs *entry = addresses.get(); entry; entry = entry->ifa_next) {
        if (!hasFamily(entry, AF_INET) || QFile::decodeName(entry->ifa_name) != interfaceName)
            continue;
        sockaddr_in address;
        std::memcpy(&address, entry->ifa_addr, sizeof address);
        return address.sin_addr.s_addr;
    }
    return std::nullopt;
}

QString primaryInterface()
{
    QFile file(QStringLiteral("/proc/net/route"));
    const QByteArray routes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    std::optional<InterfaceTraits> best;
    const Addresses addresses = interfaceAddresses();
    for (const ifaddrs *entry = addresses.get(); entry; entry = entry->ifa_next) {
        if (!hasFamily(entry, AF_PACKET) || (entry->ifa_flags & IFF_LOOPBACK) != 0)
            continue;
        sockaddr_ll link;
        std::memcpy(&link, entry->ifa_addr, sizeof link);
        if (!hasLinkAddress(link))
            continue;
        InterfaceTraits traits;
        traits.name = QFile::decodeName(entry->ifa_name);
        traits.defaultRouteMetric = defaultRouteMetric(routes, traits.name);
        traits.isDevice = QFile::exists(QString(u"/sys/class/net/" + traits.name + u"/device"));
        traits.isUp = (entry->ifa_flags & IFF_UP) != 0;
        traits.index = unsigned(link.sll_ifindex);
        if (!best || isBetterPrimary(traits, *best))
            best = traits;
    }
    return best ? best->name : QString();
}

} // namespace kx
