// SPDX-License-Identifier: MIT
#pragma once

namespace kx {

/// The look of a window and of everything in it that does not choose its own colours.
enum class Appearance {
    /// The application's palette.
    Inherited,
    /// Dark on light, whatever the desktop's theme. (Without the blur of what is beneath: windows do not see that.)
    VibrantLight,
};

} // namespace kx
