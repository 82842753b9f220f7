// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <KXFoundation/Platform/Core/NetworkInterfaces.h>
#include <KXFoundation/Util/MacAddress.h>

#include <QtCore/QtEndian>

#include <array>
#include <cstring>
#include <mutex>

namespace {

QString defaultInterface()
{
    return QStringLiteral("en0");
}

struct Network {
    std::mutex mutex;
    QString interfaceName = defaultInterface();
    quint32 address = 0; // 0: not found yet
};

Network &network()
{
    static auto &network = *new Network; // for threads that outlive main() too
    return network;
}

} // namespace

QString KXUtil::networkInterface()
{
    const std::scoped_lock lock(network().mutex);
    return network().interfaceName;
}

void KXUtil::setNetworkInterface(const QString &name)
{
    const std::scoped_lock lock(network().mutex);
    network().interfaceName = name.isNull() ? defaultInterface() : name;
    network().address = 0;
}

QString KXUtil::primaryNetworkInterface()
{
    return kx::primaryInterface();
}

QString KXUtil::macAddress()
{
    return kx::macAddressText(kx::linkAddress(networkInterface()));
}

quint32 KXUtil::localIpV4()
{
    const std::scoped_lock lock(network().mutex);
    if (network().address == 0)
        network().address = kx::ipV4Address(network().interfaceName).value_or(0);
    return network().address;
}

quint32 KXUtil::localIpV4BigEndian()
{
    return qbswap(localIpV4());
}

QString KXUtil::convertIpToString(quint32 ip)
{
    std::array<uchar, sizeof ip> bytes;
    std::memcpy(bytes.data(), &ip, sizeof ip);
    QString text;
    for (const uchar byte : bytes)
        text += (text.isEmpty() ? QString() : QStringLiteral(".")) + QString::number(byte);
    return text;
}
