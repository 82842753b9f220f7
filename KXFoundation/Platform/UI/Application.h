// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

class QWidget;

namespace kx {

/// The application-modal window that is shown, the latest one of several; null without one. Windows that are modal to
/// one other window and popups do not count. Main thread only.
[[nodiscard]] KX_UI_EXPORT QWidget *modalWindow();

} // namespace kx
