// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QString>
#include <QtCore/QUrl>

#include <chrono>
#include <functional>

/// Questions about the machine, the network, files and the running program. All of them may be asked from any thread.
/// What a system does not tell is a null text or 0. See docs/system-information.md.
namespace KXUtil {

// The machine and its user.

/// The machine's UUID in upper case. On Linux the firmware's where the process may read it (mostly root), else the
/// installation's machine-id in the same form, so that two users of a machine may get different ones.
[[nodiscard]] KX_CORE_EXPORT QString hardwareUUID();

/// The maker's serial number of the machine; on Linux null for most processes that do not run as root.
[[nodiscard]] KX_CORE_EXPORT QString hardwareSerialNumber();

/// The address of the network interface networkInterface() as 12 upper-case hex digits. Deliberate: where there is no
/// such address, a text that tells the failure stands in its place.
[[nodiscard]] KX_CORE_EXPORT QString macAddress();

/// A text that stands for this installation: that of the first call ever, kept in the user's settings (QSettings, key
/// "__mcode__") and unchanged by whatever happens to the machine later. Without an organization name in
/// QCoreApplication, where QSettings cannot write, the file is "KXFoundation/<application name>.ini" below
/// QStandardPaths::GenericConfigLocation. Read once.
[[nodiscard]] KX_CORE_EXPORT QString machineCode();

/// What the machine looks like now, not hashed: "<macAddress>#<hardwareSerialNumber>#<salt>~<login name>". The first
/// two are left out with their "#" where they are empty.
[[nodiscard]] KX_CORE_EXPORT QString machineCodeWithSalt(const QString &salt = {});

/// "3" for a processor that calls itself one of Intel's, "4" for all others.
[[nodiscard]] KX_CORE_EXPORT QString macCpuInfo();

// The network.

/// The first IPv4 address of networkInterface(), its bytes in memory as they go over the network; 0 without one. Once
/// found, it stays the answer.
[[nodiscard]] KX_CORE_EXPORT quint32 localIpV4();
/// The same with its four bytes reversed.
[[nodiscard]] KX_CORE_EXPORT quint32 localIpV4BigEndian();
/// An address as localIpV4() gives it, as four numbers with dots.
[[nodiscard]] KX_CORE_EXPORT QString convertIpToString(quint32 ip);

/// The interface that macAddress() and localIpV4() are about. "en0" unless the host sets another one, which it should
/// do before it asks for anything: few machines but Macs have that one. Null sets the default. An address that
/// localIpV4() has found before is forgotten.
[[nodiscard]] KX_CORE_EXPORT QString networkInterface();
KX_CORE_EXPORT void setNetworkInterface(const QString &name);
/// The name of the interface by which the machine reaches the world, for setNetworkInterface(): the one with the best
/// default route, or without a route the likeliest one. Null where there is none with a MAC address.
[[nodiscard]] KX_CORE_EXPORT QString primaryNetworkInterface();

// Files.

/// How long a local media file plays, in whole seconds, rounded up after a conversion to single precision. 0 for what
/// is not a file, cannot be read as media or does not tell, and for all other addresses than "file:", which are never
/// followed; also where libavformat is not installed, which is loaded at the first call. That library writes its
/// complaints about broken files to standard error. Waits for the disk: mostly for milliseconds, at the worst for ten
/// seconds, after which the answer is 0.
[[nodiscard]] KX_CORE_EXPORT qint64 getVideoDuration(const QUrl &url);

/// MD5 of the file's content (RFC 1321) as 32 lower-case hex digits; null when it cannot be opened. A read error ends
/// the content there. Reads to the end, also of what grows meanwhile; a pipe is waited for. Rests for 100 ms after each
/// 2 MiB, to leave the disk to others: a gigabyte takes a minute.
[[nodiscard]] KX_CORE_EXPORT QString getFileMD5StrFromPath(const QString &path);
/// The same, resting by calling `rest`; not at all if that is empty.
[[nodiscard]] KX_CORE_EXPORT QString getFileMD5StrFromPath(
    const QString &path, const std::function<void(std::chrono::milliseconds)> &rest);

// Versions.

/// Orders two versions: -1, 0 or 1. With as many components in both, like kx::compareNumeric(). Deliberate: otherwise
/// the last component of each counts for nothing; what both have left is compared number by number (leading digits,
/// limited to 32 bits), and if that is equal, the longer list is the later one. So 1.3 comes before 1.2.9.
[[nodiscard]] KX_CORE_EXPORT int versionCompare(const QString &version, const QString &with);

/// The running program's version, build number, and both with a dot between ("6.2.1.1024"). The version is
/// QCoreApplication's unless the host sets it; it is read once. The build number is the host's alone. A host that has
/// not given one of them gets null, and "(null)" inside the full version.
[[nodiscard]] KX_CORE_EXPORT QString appVersion();
[[nodiscard]] KX_CORE_EXPORT QString appBuildNumber();
[[nodiscard]] KX_CORE_EXPORT QString appFullVersion();
KX_CORE_EXPORT void setAppVersion(const QString &version);
KX_CORE_EXPORT void setAppBuildNumber(const QString &buildNumber);

// Log directories, shared by all programs that set the same application group.

/// "<QStandardPaths::GenericDataLocation>/<applicationGroup()>/Logs"; null without a group.
[[nodiscard]] KX_CORE_EXPORT QString logBaseDirPath();
/// "Main" and "Deamon" in it, made with their parents when they are missing; null without a group. The path is given
/// also when the directory cannot be made.
[[nodiscard]] KX_CORE_EXPORT QString mainLogDirPath();
[[nodiscard]] KX_CORE_EXPORT QString deamonLogDirPath();

/// What names the directory that programs of one product share, say "com.example.player". None unless the host sets it.
[[nodiscard]] KX_CORE_EXPORT QString applicationGroup();
KX_CORE_EXPORT void setApplicationGroup(const QString &identifier);

} // namespace KXUtil
