// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/FileTree.h>

#include <QtCore/QFile>

#include <filesystem>

#include <sys/stat.h>

namespace kx {

namespace {

// QFile's encoding, so that a name means the same file here and in Qt.
std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

std::optional<struct stat> ownStatus(const QString &path)
{
    struct stat status;
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status;
}

} // namespace

bool canNameAFile(const QString &path)
{
    return !path.isEmpty() && !path.contains(QChar(0));
}

QString childPath(const QString &directory, QStringView name)
{
    QString path = directory;
    if (!path.isEmpty() && !path.endsWith(u'/'))
        path += u'/';
    path += name;
    return path;
}

QStringList entryNames(const QString &directory)
{
    QStringList names;
    std::error_code error;
    const std::filesystem::directory_iterator end;
    for (std::filesystem::directory_iterator at(nativePath(directory), error); !error && at != end; at.increment(error))
        names.append(QFile::decodeName(at->path().filename().c_str()));
    return names;
}

QString withoutTrailingSlashes(QString path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

bool isDirectory(const QString &path)
{
    std::error_code unreadable;
    return std::filesystem::is_directory(nativePath(path), unreadable);
}

bool fileExists(const QString &path)
{
    std::error_code unreachable;
    return canNameAFile(path) && std::filesystem::exists(nativePath(path), unreachable);
}

bool somethingExists(const QString &path)
{
    return ownStatus(path).has_value();
}

std::optional<std::chrono::system_clock::time_point> modificationTime(const QString &path)
{
    const auto status = ownStatus(path);
    if (!status)
        return std::nullopt;
    const auto sinceEpoch =
        std::chrono::seconds(status->st_mtim.tv_sec) + std::chrono::nanoseconds(status->st_mtim.tv_nsec);
    return std::chrono::system_clock::time_point(
        std::chrono::duration_cast<std::chrono::system_clock::duration>(sinceEpoch));
}

std::error_code makeDirectories(const QString &path)
{
    std::error_code failure;
    std::filesystem::create_directories(nativePath(path), failure);
    if (isDirectory(path))
        return {};
    return failure ? failure : std::make_error_code(std::errc::not_a_directory);
}

void removeTree(const QString &path)
{
    if (!canNameAFile(path))
        return;
    std::error_code ignored;
    std::filesystem::remove_all(nativePath(withoutTrailingSlashes(path)), ignored);
}

std::optional<VolumeSpace> volumeSpace(const QString &path)
{
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(nativePath(path), error);
    if (error)
        return std::nullopt;
    return VolumeSpace{space.capacity, space.available};
}

} // namespace kx
