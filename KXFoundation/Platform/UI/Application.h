// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

class QWidget;

namespace kx {

// What views ask of the application. Main thread only.

/// The application-modal window that is shown, the latest one of several; null without one. Windows that are modal to
/// one other window and popups do not count.
[[nodiscard]] KX_UI_EXPORT QWidget *modalWindow();

/// Whether one of the application's windows has the keyboard.
[[nodiscard]] KX_UI_EXPORT bool applicationIsActive();

} // namespace kx
