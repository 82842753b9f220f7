// SPDX-License-Identifier: MIT
#pragma once

namespace kx {

/// The largest device pixel ratio of all screens, at least 1; 1 without screens, as in a program without windows.
/// Main thread.
[[nodiscard]] double largestScreenScale();

} // namespace kx
