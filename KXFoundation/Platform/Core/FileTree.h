// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>
#include <optional>
#include <system_error>

namespace kx {

/// False for what is no path of any file: the empty text, and one with a null character, where the system would cut it
/// and take the file of that name.
[[nodiscard]] bool canNameAFile(const QString &path);

/// `directory` with `name` as one more component.
[[nodiscard]] QString childPath(const QString &directory, QStringView name);

/// Names of everything in a directory, hidden entries included, in no order. Empty when it cannot be listed.
[[nodiscard]] QStringList entryNames(const QString &directory);

/// The path without slashes behind it: a link's name with a "/" at its end means the directory that the link leads to.
[[nodiscard]] QString withoutTrailingSlashes(QString path);

/// True when a directory is at the path, be it through a link.
[[nodiscard]] bool isDirectory(const QString &path);

/// True when something is at the path, a link counting as what it leads to.
[[nodiscard]] bool fileExists(const QString &path);

/// True when anything has this name, be it only a link that leads nowhere.
[[nodiscard]] bool somethingExists(const QString &path);

/// When the entry itself (a link, not what it leads to) was last changed; none when there is no such entry.
[[nodiscard]] std::optional<std::chrono::system_clock::time_point> modificationTime(const QString &path);

/// Makes the directory with its missing parents. Success when it is there afterwards, made or not.
std::error_code makeDirectories(const QString &path);

/// Removes the entry with all its contents. Links are removed, never followed, also when slashes stand behind their
/// names. Stops at the first failure. Does nothing for a path with a null character, which the system would cut there.
void removeTree(const QString &path);

struct VolumeSpace {
    quint64 totalInBytes = 0;
    quint64 freeInBytes = 0; ///< What an ordinary user may still fill.
};

/// Space of the file system that holds `path`; none when there is no such entry.
[[nodiscard]] std::optional<VolumeSpace> volumeSpace(const QString &path);

} // namespace kx
