// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <optional>

namespace kx {

/// How long the media file plays, in seconds; more than 0. None when it cannot be read as media or does not say, or on
/// a machine without libavformat in the version that the library was built for. That library is loaded at the first
/// call. Waits for the file; callable from any thread.
[[nodiscard]] std::optional<double> mediaDurationInSeconds(const QString &path);

} // namespace kx
