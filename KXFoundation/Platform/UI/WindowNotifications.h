// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QStringView>

class QWidget;

namespace kx {

// What the default notification centre tells of the application and of every top-level widget. The sender is the
// application object or that widget.

/// The application comes to the front: one of its windows gets the keyboard, and none had it before.
inline constexpr QStringView ApplicationWillBecomeActiveNotification = u"ApplicationWillBecomeActiveNotification";
inline constexpr QStringView ApplicationDidResignActiveNotification = u"ApplicationDidResignActiveNotification";
/// A window that is no dialog, tool or popup got the keyboard; a kx::Window if it says that it can become main.
inline constexpr QStringView WindowDidBecomeMainNotification = u"WindowDidBecomeMainNotification";
/// The window has its new size; its layout does not yet follow it.
inline constexpr QStringView WindowDidResizeNotification = u"WindowDidResizeNotification";
/// Before setFullScreen() begins. When someone else switches the window, it is already in full screen.
inline constexpr QStringView WindowWillEnterFullScreenNotification = u"WindowWillEnterFullScreenNotification";
inline constexpr QStringView WindowDidExitFullScreenNotification = u"WindowDidExitFullScreenNotification";

/// Takes a top-level widget into full screen or out of it, back to the state that it had before. Does nothing when it
/// is there already.
KX_UI_EXPORT void setFullScreen(QWidget &window, bool fullScreen);

} // namespace kx
