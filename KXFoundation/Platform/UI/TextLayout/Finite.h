// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

namespace kx {

/// A length or a place that can be laid out: what is no number, or endless, is 0; the rest is kept within bounds that
/// are beyond every screen.
[[nodiscard]] inline double coordinate(double value)
{
    constexpr double farthest = 100000;
    return std::isfinite(value) ? std::clamp(value, -farthest, farthest) : 0;
}

} // namespace kx
