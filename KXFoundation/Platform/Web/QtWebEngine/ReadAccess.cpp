// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/ReadAccess.h>

#include <QtCore/QFile>
#include <QtCore/QUrl>

#include <algorithm>
#include <filesystem>

namespace kx {

namespace {

/// The path without links, ".." and a trailing slash; empty when it cannot be followed.
std::filesystem::path resolved(const QByteArray &path)
{
    // Names are bytes here, as the engine takes them: a name that is not valid UTF-8 must not turn into another one.
    // The system would cut a name at a null character.
    if (!path.startsWith('/') || path.contains('\0'))
        return {};
    std::error_code error;
    std::filesystem::path result = std::filesystem::weakly_canonical(path.toStdString(), error);
    if (error)
        return {};
    return result.has_filename() || !result.has_relative_path() ? result : result.parent_path();
}

} // namespace

bool isFileBelow(const QUrl &url, const QString &directory)
{
    if (url.scheme() != QLatin1StringView("file"))
        return false;
    // The host of a file: URL has no say in what the engine opens.
    const auto file = resolved(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8()));
    const auto root = resolved(QFile::encodeName(directory));
    if (file.empty() || root.empty())
        return false;
    // By components: "/a/bc" is not below "/a/b".
    return std::mismatch(root.begin(), root.end(), file.begin(), file.end()).first == root.end();
}

} // namespace kx
