// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Appearance.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Responder.h>
#include <KXFoundation/Platform/UI/WindowStyle.h>

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtWidgets/QMainWindow>

#include <optional>

class QScreen;

namespace kx {

class StandardWindowButton;
class WindowController;
class WindowCorner;
enum class WindowButton;

/// A main window through which every mouse, wheel and key event passes before it reaches a view, and which can wait for
/// the next one in the midst of handling one.
///
/// Rectangles are logical pixels with y growing upwards: on the screen from the bottom left of the primary screen, in
/// the window from the bottom left of its frame, the window manager's decorations included. Main thread only. See
/// docs/windows.md.
class KX_UI_EXPORT Window : public QMainWindow, public Responder {
    Q_OBJECT
    Q_PROPERTY(QSizeF minSize READ minSize WRITE setMinSize DESIGNABLE false STORED false)
    Q_PROPERTY(QSizeF maxSize READ maxSize WRITE setMaxSize DESIGNABLE false STORED false)
    Q_PROPERTY(
        bool ignoresMouseEvents READ ignoresMouseEvents WRITE setIgnoresMouseEvents NOTIFY ignoresMouseEventsChanged)
    Q_PROPERTY(bool movableByWindowBackground READ isMovableByWindowBackground WRITE setMovableByWindowBackground NOTIFY
            movableByWindowBackgroundChanged)

public:
    explicit Window(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    /// The content, not the frame, fills `contentRect`: on the screen, or from the bottom left of `screen` when one is
    /// given. Without `defer` the native window is made at once, otherwise when it is first shown.
    Window(const QRectF &contentRect, WindowStyleMask styleMask, BackingStore backing = BackingStore::Buffered,
        bool defer = false, QScreen *screen = nullptr);
    ~Window() override;

    [[nodiscard]] WindowStyleMask styleMask() const;

    // --- geometry ------------------------------------------------------------------------------------------------

    /// On the screen.
    [[nodiscard]] QRectF frame() const;
    /// Moves each edge to the nearest whole pixel. `display` paints a new size before it returns, which Qt otherwise
    /// does soon. `animate` is taken for the sake of the interface: the change is immediate.
    void setFrame(const QRectF &frame, bool display, bool animate = false);
    /// The frame's smallest and largest size that the user can give it: the limits of the widget and of its layout.
    [[nodiscard]] QSizeF minSize() const;
    void setMinSize(const QSizeF &size);
    [[nodiscard]] QSizeF maxSize() const;
    void setMaxSize(const QSizeF &size);
    /// The area of the content in a window with such a frame.
    [[nodiscard]] QRectF contentRectForFrameRect(const QRectF &frameRect) const;
    /// A rectangle of the window on the screen, where the window is now.
    [[nodiscard]] QRectF convertRectToScreen(const QRectF &rect) const;
    /// Puts the frame into the middle of the screen's available area.
    virtual void center();

    /// The central widget; null without one.
    [[nodiscard]] QWidget *contentView() const { return centralWidget(); }

    // --- events --------------------------------------------------------------------------------------------------

    /// Called with every mouse, wheel and key event of the window, also those that are sent straight to a widget in it.
    /// Not called for what an open popup gets, nor for QEvent::ShortcutOverride. The second press of a double click is
    /// one event with a click count of 2.
    ///
    /// Here: hands the event on to Qt, which finds the widget for it. An override that does not call this swallows the
    /// event. It may call it twice, or later; a press then goes to where it was made in the window, and any other event
    /// to where it is on the screen. Where a press is handed on but no release, the widget is told so with
    /// QEvent::UngrabMouse. Null is ignored. The window may be gone afterwards.
    virtual void sendEvent(Event *event);
    /// The next event of a kind in `mask`, which stays where it is unless `dequeue`; to be called while an event is
    /// handled. Until it has come, an event loop runs, and the mouse, wheel and key events of all windows wait. Those
    /// that nobody dequeues are handled after the present one, in their order.
    ///
    /// None when no event is being handled, and when no such event will come: the window was hidden, closed or deleted,
    /// lost the keyboard to another window or application, or has a modal window before it now; the pointer moves with
    /// no button down, or no button is down at all, as when a program sent the press to a widget; the application
    /// quits. The press that is being handled is then taken back when it has been handled, with QEvent::UngrabMouse.
    /// The window may be gone afterwards.
    [[nodiscard]] std::optional<Event> nextEvent(EventMask mask, bool dequeue = true);
    /// Where the pointer is now, in the window.
    [[nodiscard]] QPointF mouseLocationOutsideOfEventStream() const;

    /// Whether the pointer acts on what is beneath the window instead. False at first. Where the window system cannot
    /// do that, the window gets the events, and its views are to ignore them.
    [[nodiscard]] bool ignoresMouseEvents() const;
    void setIgnoresMouseEvents(bool ignores);

    /// Whether a left press on the window itself, or on a view whose mouseDownCanMoveWindow() says so, drags the window
    /// as a title bar would. False at first.
    ///
    /// sendEvent() waits for the end of such a press here. A drag is one from QApplication::startDragDistance() on, and
    /// no view hears of it; what is none reaches the view with its release. Plain widgets move nothing, nor does
    /// anything in a window that is maximized or in full screen.
    [[nodiscard]] bool isMovableByWindowBackground() const { return m_movableByWindowBackground; }
    void setMovableByWindowBackground(bool movable);

    // --- look ----------------------------------------------------------------------------------------------------

    /// Inherited at first.
    [[nodiscard]] Appearance appearance() const { return m_appearance; }
    /// Replaces the window's palette.
    void setAppearance(Appearance appearance);

    // --- the keyboard --------------------------------------------------------------------------------------------

    /// Asked when the window is shown; a window that cannot gets no keyboard events. Here: unless it is borderless.
    [[nodiscard]] virtual bool canBecomeKeyWindow() const;
    /// Here: as canBecomeKeyWindow(). For whoever asks.
    [[nodiscard]] virtual bool canBecomeMainWindow() const;

    // --- chrome and controller -----------------------------------------------------------------------------------

    /// The window's own close, minimise or zoom button, borrowed. Null under the window manager's decorations, in a
    /// borderless window (Window(parent, Qt::FramelessWindowHint) is not meant by that: its chrome is its own) and for
    /// a kind that there is not. The first call makes all three and shows them in the top left corner, above the
    /// content; their superview may be hidden.
    [[nodiscard]] StandardWindowButton *standardWindowButton(WindowButton kind);

    /// Null without one.
    [[nodiscard]] WindowController *windowController() const { return m_controller; }
    /// The controller.
    [[nodiscard]] Responder *nextResponder() const override;

Q_SIGNALS:
    void ignoresMouseEventsChanged(bool ignores);
    void movableByWindowBackgroundChanged(bool movable);

protected:
    bool event(QEvent *event) override;

    // --- where a window cannot place itself ----------------------------------------------------------------------

    /// Whether setFrame() can move the window: false where the window system alone says where windows are, as on
    /// Wayland.
    [[nodiscard]] bool canPlaceItself() const;
    /// Let the window system go on with a drag that the window handles: to move the window, or to resize it by some of
    /// its edges. It keeps the pointer's events until the button is up; the window gets a release at once instead,
    /// which nextEvent() finds. False when the window system does not; then nothing happens.
    bool handDragToSystemMove();
    bool handDragToSystemResize(Qt::Edges edges);

private:
    friend class WindowController;

    [[nodiscard]] bool isOnBackground(const Event &press) const;
    void trackBackground(const Event &press);
    void releaseDrag();
    [[nodiscard]] QMarginsF decoration() const;
    void applyInputFlags();

    std::optional<WindowStyleMask> m_styleMask;
    Appearance m_appearance = Appearance::Inherited;
    bool m_movableByWindowBackground = false;
    WindowController *m_controller = nullptr; // set and cleared by the controller
    QPointer<WindowCorner> m_corner;
};

} // namespace kx
