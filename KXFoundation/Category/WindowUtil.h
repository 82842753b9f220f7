// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

namespace kx {
class Window;
}

// Three measurements of a window. Null is a window without anything: no frame, no content, no screen. Main thread only.

/// How much higher the frame is than the content, in logical pixels: the title bar, and the lower border where the
/// window manager draws one.
[[nodiscard]] KX_UI_EXPORT double pn_TitlebarHeight(const kx::Window *window);

/// Whether the pointer is over the content view, whatever lies on it or before the window. False without one.
[[nodiscard]] KX_UI_EXPORT bool pn_mousePointInWindow(const kx::Window *window);

/// Whether the window's frame is exactly its screen's; before the window is shown it has no screen, and the frame is
/// compared with the zero rectangle. Deliberate: a window that somebody gave its screen's size counts, and the window's
/// own state is not asked.
[[nodiscard]] KX_UI_EXPORT bool pn_isFullScreen(const kx::Window *window);
