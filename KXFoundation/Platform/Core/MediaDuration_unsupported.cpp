// SPDX-License-Identifier: MIT
// Built where libavformat's headers are missing.
#include <KXFoundation/Platform/Core/MediaDuration.h>

namespace kx {

std::optional<double> mediaDurationInSeconds(const QString &, std::chrono::milliseconds)
{
    return std::nullopt;
}

} // namespace kx
