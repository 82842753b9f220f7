// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QFlags>

namespace kx {

/// What a window has and lets the user do. The numbers are part of the interface: 15 is the common window.
enum class WindowStyle {
    Borderless = 0,
    Titled = 1,
    Closable = 2,
    Miniaturizable = 4,
    Resizable = 8,
};
Q_DECLARE_FLAGS(WindowStyleMask, WindowStyle)
Q_DECLARE_OPERATORS_FOR_FLAGS(WindowStyleMask)

} // namespace kx
