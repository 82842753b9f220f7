// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/WindowController.h>

/// The base of the application's window controllers. Once its window is loaded, the window's own close button, if it
/// has one, is pinned 12 to the right of and 12 below the top left corner of its superview. Deliberate: the minimise
/// and zoom buttons stay where they are.
///
/// A subclass makes its window in loadWindow(); one given with setWindow() is taken as it is.
class KX_UI_EXPORT PNBaseWindowController : public kx::WindowController {
    Q_OBJECT

public:
    using kx::WindowController::WindowController;
    ~PNBaseWindowController() override;

protected:
    void windowDidLoad() override;
};
