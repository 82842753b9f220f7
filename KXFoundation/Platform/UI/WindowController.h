// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Responder.h>

#include <QtCore/QObject>

namespace kx {

class Window;

/// Makes a window when it is first asked for, and ends its responder chain.
///
/// The controller owns its window and deletes it with itself. When the window is deleted first, by Qt::WA_DeleteOnClose
/// for instance, the controller is without one again, and the next window() makes another. Main thread only.
class KX_UI_EXPORT WindowController : public QObject, public Responder {
    Q_OBJECT

public:
    explicit WindowController(QObject *parent = nullptr);
    ~WindowController() override;

    /// Borrowed. Without a window: loads one, then calls windowDidLoad(). Null only while loadWindow() runs, and when
    /// that set none; windowDidLoad() is then not called.
    [[nodiscard]] Window *window();
    [[nodiscard]] bool isWindowLoaded() const { return m_window; }
    /// Takes the window over, from another controller too. The caller becomes the owner of the old one. Null is none.
    /// Neither loadWindow() nor windowDidLoad() is called.
    void setWindow(Window *window);

protected:
    /// Makes the window and gives it to setWindow(). Sets none here. Not meant to call window().
    virtual void loadWindow();
    /// Called once for each loaded window. Does nothing here.
    virtual void windowDidLoad();

private:
    Window *m_window = nullptr; // it clears this when it goes
    bool m_loading = false;
};

} // namespace kx
