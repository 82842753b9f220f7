// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

class QWidget;

namespace kx {

// What views ask of the window that they are in, which need not be a kx::Window. Null answers false.

/// Whether the pointer is not to act on the top-level widget: it has the attribute Qt::WA_TransparentForMouseEvents or
/// the flag Qt::WindowTransparentForInput.
[[nodiscard]] KX_UI_EXPORT bool ignoresMouseEvents(const QWidget *window);
/// Whether the top-level widget is one that keeps the user from the application's other windows while it is shown.
[[nodiscard]] KX_UI_EXPORT bool isModalPanel(const QWidget *window);

} // namespace kx
