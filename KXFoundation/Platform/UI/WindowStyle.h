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
    /// The content lies under the title bar as well: the window manager draws none, and the window's own chrome, if
    /// any, is part of the content.
    FullSizeContentView = 0x8000,
};
Q_DECLARE_FLAGS(WindowStyleMask, WindowStyle)
Q_DECLARE_OPERATORS_FOR_FLAGS(WindowStyleMask)

/// How a window keeps its pixels. Qt buffers every window; the others are there for the sake of the interface.
enum class BackingStore { Retained, Nonretained, Buffered };

} // namespace kx
