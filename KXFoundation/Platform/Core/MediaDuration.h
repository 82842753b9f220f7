// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <chrono>
#include <optional>

namespace kx {

/// How long the media file plays, in seconds; more than 0. None when it cannot be read as media or does not say, and on
/// a machine without libavformat in the version that the library was built for. That library is loaded at the first
/// call. No other file is opened, whatever this one names. Waits for the file, but only until `limit` is over: some
/// broken files are searched to their end. Callable from any thread.
[[nodiscard]] std::optional<double> mediaDurationInSeconds(
    const QString &path, std::chrono::milliseconds limit = std::chrono::seconds(10));

} // namespace kx
