// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/MachineIdentity.h>

#include <QtCore/QFile>
#include <QtCore/QUuid>

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace kx {

namespace {

// The text of a small system file without the white space and NULs around it. Such files do not know their size.
QString textOf(const QString &root, const char *name)
{
    QFile file(QString(root + u'/' + QString::fromLatin1(name)));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    QByteArray text = file.read(4096);
    text.replace('\0', ' ');
    return QString::fromUtf8(text).trimmed();
}

QString uuidText(const QUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

// The null UUID for anything but 32 hex digits.
QUuid uuidOfHexDigits(const QString &digits)
{
    const QByteArray bytes = QByteArray::fromHex(digits.toLatin1()); // leaves out what is no digit
    return digits.size() == 32 && bytes.size() == 16 ? QUuid::fromRfc4122(bytes) : QUuid();
}

bool isFiller(const QUuid &uuid)
{
    const QByteArray bytes = uuid.toRfc4122();
    return std::all_of(bytes.begin(), bytes.end(), [&](char byte) { return byte == bytes.front(); });
}

bool isFiller(const QString &serialNumber)
{
    constexpr std::array fillers{"none", "not specified", "not applicable", "default string", "to be filled by o.e.m.",
        "system serial number", "unknown"};
    if (std::all_of(serialNumber.begin(), serialNumber.end(), [](QChar unit) { return unit == u'0'; }))
        return true;
    return std::any_of(fillers.begin(), fillers.end(),
        [&](const char *filler) { return serialNumber.compare(QLatin1String(filler), Qt::CaseInsensitive) == 0; });
}

} // namespace

QString hardwareUuid(const QString &root)
{
    const QUuid firmware(textOf(root, "sys/class/dmi/id/product_uuid"));
    if (!isFiller(firmware))
        return uuidText(firmware);
    for (const char *name : {"etc/machine-id", "var/lib/dbus/machine-id"}) {
        const QUuid installation = uuidOfHexDigits(textOf(root, name));
        if (!isFiller(installation))
            return uuidText(installation);
    }
    return {};
}

QString hardwareSerialNumber(const QString &root)
{
    for (const char *name : {"sys/class/dmi/id/product_serial", "proc/device-tree/serial-number"}) {
        QString number = textOf(root, name);
        if (!isFiller(number))
            return number;
    }
    return {};
}

QString processorBrand(const QString &root)
{
    QFile file(QString(root + u"/proc/cpuinfo"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // All processors are listed; the first one speaks for all.
    for (QByteArray line = file.readLine(); !line.isEmpty(); line = file.readLine()) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.first(colon).trimmed() == "model name")
            return QString::fromUtf8(line.sliced(colon + 1)).trimmed();
    }
    return {};
}

QString loginName()
{
    const long hint = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> texts(hint > 0 ? size_t(hint) : 1024);
    passwd entry{};
    passwd *found = nullptr;
    while (::getpwuid_r(::geteuid(), &entry, texts.data(), texts.size(), &found) == ERANGE)
        texts.resize(texts.size() * 2);
    if (found)
        return QFile::decodeName(found->pw_name);
    // A user without an account, as in some containers.
    return qEnvironmentVariable("LOGNAME", qEnvironmentVariable("USER"));
}

} // namespace kx
