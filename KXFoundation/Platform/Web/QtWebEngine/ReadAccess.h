// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

class QUrl;

namespace kx {

/// Whether the file that a file: URL names is `directory` (an absolute path) or lies below it, after every symbolic
/// link and ".." was followed. What does not exist yet is judged by the part of its path that does. False for other
/// URLs, for an empty or relative directory, and for paths that cannot be followed. `directory` may also be a single
/// file.
[[nodiscard]] bool isFileBelow(const QUrl &url, const QString &directory);

} // namespace kx
