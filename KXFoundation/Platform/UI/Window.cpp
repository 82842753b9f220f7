// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Window.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/WindowController.h>
#include <KXFoundation/Platform/UI/WindowCorner.h>
#include <KXFoundation/Platform/UI/WindowEvents.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <QtGui/QCursor>
#include <QtGui/QScreen>
#include <QtGui/QWindow>

namespace kx {

namespace {

Qt::WindowFlags flagsFor(WindowStyleMask style)
{
    Qt::WindowFlags flags = Qt::Window;
    flags.setFlag(
        Qt::FramelessWindowHint, !style.testFlag(WindowStyle::Titled) || style & WindowStyle::FullSizeContentView);
    flags.setFlag(Qt::WindowTitleHint, style.testFlag(WindowStyle::Titled));
    flags.setFlag(Qt::WindowCloseButtonHint, style.testFlag(WindowStyle::Closable));
    flags.setFlag(Qt::WindowMinimizeButtonHint, style.testFlag(WindowStyle::Miniaturizable));
    flags.setFlag(Qt::WindowMaximizeButtonHint, style.testFlag(WindowStyle::Resizable));
    return flags;
}

} // namespace

Window::Window(QWidget *parent, Qt::WindowFlags flags)
    : QMainWindow(parent, flags)
{
    WindowEvents::start();
}

Window::Window(const QRectF &contentRect, WindowStyleMask styleMask, BackingStore, bool defer, QScreen *screen)
    : QMainWindow(nullptr, flagsFor(styleMask))
    , m_styleMask(styleMask)
{
    WindowEvents::start();
    const QPointF origin = screen ? screenFlipped(screen->geometry()).topLeft() : QPointF();
    setGeometry(edgesRounded(screenFlipped(contentRect.translated(origin))));
    if (!defer)
        create();
}

Window::~Window()
{
    if (m_controller)
        m_controller->setWindow(nullptr);
    WindowEvents::cancel(*this);
}

WindowStyleMask Window::styleMask() const
{
    if (m_styleMask)
        return *m_styleMask;
    if (windowFlags() & Qt::FramelessWindowHint)
        return WindowStyle::Borderless;
    return WindowStyle::Titled | WindowStyle::Closable | WindowStyle::Miniaturizable | WindowStyle::Resizable;
}

QRectF Window::frame() const
{
    return screenFrame(*this);
}

void Window::setFrame(const QRectF &frame, bool display, bool)
{
    setGeometry(edgesRounded(screenFlipped(contentRectForFrameRect(frame))));
    if (display)
        repaint();
}

QSizeF Window::minSize() const
{
    return QSizeF(minimumSize()).grownBy(decoration());
}

void Window::setMinSize(const QSizeF &size)
{
    setMinimumSize(edgesRounded(QRectF({}, size.shrunkBy(decoration()))).size());
}

QSizeF Window::maxSize() const
{
    return QSizeF(maximumSize()).grownBy(decoration());
}

void Window::setMaxSize(const QSizeF &size)
{
    setMaximumSize(edgesRounded(QRectF({}, size.shrunkBy(decoration()))).size());
}

QRectF Window::contentRectForFrameRect(const QRectF &frameRect) const
{
    const QMarginsF margins = decoration();
    // Upwards the smaller y is the bottom.
    return frameRect.adjusted(margins.left(), margins.bottom(), -margins.right(), -margins.top());
}

QRectF Window::convertRectToScreen(const QRectF &rect) const
{
    return rect.translated(frame().topLeft());
}

void Window::center()
{
    QRectF centered = frame();
    centered.moveCenter(screenFlipped(screen()->availableGeometry()).center());
    setFrame(centered, false);
}

void Window::sendEvent(Event *event)
{
    if (event)
        WindowEvents::deliver(*event);
}

std::optional<Event> Window::nextEvent(EventMask mask, bool dequeue)
{
    return WindowEvents::next(*this, mask, dequeue);
}

QPointF Window::mouseLocationOutsideOfEventStream() const
{
    return screenPoint(QCursor::pos(), this) - frame().topLeft();
}

bool Window::ignoresMouseEvents() const
{
    return kx::ignoresMouseEvents(this);
}

void Window::setIgnoresMouseEvents(bool ignores)
{
    if (testAttribute(Qt::WA_TransparentForMouseEvents) == ignores)
        return;
    setAttribute(Qt::WA_TransparentForMouseEvents, ignores);
    applyInputFlags();
    Q_EMIT ignoresMouseEventsChanged(ignores);
}

bool Window::canBecomeKeyWindow() const
{
    return styleMask() != WindowStyle::Borderless;
}

bool Window::canBecomeMainWindow() const
{
    return canBecomeKeyWindow();
}

StandardWindowButton *Window::standardWindowButton(WindowButton kind)
{
    const WindowStyleMask style = m_styleMask.value_or(
        WindowStyle::Titled | WindowStyle::Closable | WindowStyle::Miniaturizable | WindowStyle::Resizable);
    if (!(windowFlags() & Qt::FramelessWindowHint) || !style.testFlag(WindowStyle::Titled))
        return nullptr;
    if (!m_corner)
        m_corner = new WindowCorner(*this, style);
    return m_corner->button(kind);
}

Responder *Window::nextResponder() const
{
    return m_controller;
}

bool Window::event(QEvent *event)
{
    if (event->type() == QEvent::Show)
        applyInputFlags();
    return QMainWindow::event(event);
}

// What the window manager adds around the content.
QMarginsF Window::decoration() const
{
    const QRect outer = frameGeometry();
    const QRect inner = geometry();
    return QMarginsF(inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
        outer.bottom() - inner.bottom());
}

void Window::applyInputFlags()
{
    QWindow *handle = windowHandle();
    if (!handle)
        return;
    handle->setFlag(Qt::WindowTransparentForInput, ignoresMouseEvents());
    handle->setFlag(Qt::WindowDoesNotAcceptFocus, !canBecomeKeyWindow());
}

} // namespace kx
