// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Window.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>
#include <KXFoundation/Platform/UI/ViewWatch.h>
#include <KXFoundation/Platform/UI/WindowController.h>
#include <KXFoundation/Platform/UI/WindowCorner.h>
#include <KXFoundation/Platform/UI/WindowEvents.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

#include <utility>

namespace kx {

namespace {

constexpr EventMask dragOrUp = eventMask(EventType::LeftMouseDragged) | eventMask(EventType::LeftMouseUp);

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

QPalette lightPalette()
{
    QPalette palette(QColor(236, 236, 236));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(244, 245, 245));
    palette.setColor(QPalette::Highlight, QColor(0, 99, 225));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0, 104, 218));
    palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 64));
    return palette;
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
    const QSize before = size();
    setGeometry(edgesRounded(screenFlipped(contentRectForFrameRect(frame))));
    if (display && size() != before)
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
    if (event && m_movableByWindowBackground && isOnBackground(*event))
        trackBackground(*event);
    else if (event)
        WindowEvents::deliver(*event);
}

// Whether it is the press of a device that Qt would hand to the window itself, or to a view that lets it move the
// window.
bool Window::isOnBackground(const Event &press) const
{
    auto *handle = qobject_cast<QWindow *>(press.receiver());
    if (press.type() != EventType::LeftMouseDown || press.buttons() != Qt::LeftButton || !handle || isMaximized()
        || isFullScreen())
        return false;
    QWidget *hit = ViewWatch::instance().widgetAt(*handle, static_cast<const QMouseEvent &>(*press.qtEvent()));
    const ViewInterface *view = hit && hit->window() == this ? ViewInterface::of(hit) : nullptr;
    return view ? view->mouseDownCanMoveWindow() : hit == this;
}

void Window::trackBackground(const Event &press)
{
    const QPointer<Window> alive(this);
    const QPointF start = convertRectToScreen(QRectF(press.locationInWindow(), QSizeF())).topLeft();
    const QRectF placed = frame();
    QList<Event> click{press}; // until it proves to be a drag
    bool drags = false;
    for (;;) {
        const std::optional<Event> next = nextEvent(dragOrUp, false);
        if (!next || next->type() != EventType::LeftMouseDragged)
            break; // a release goes its own way; after a drag Qt knows no widget that it could be for
        static_cast<void>(nextEvent(dragOrUp));
        const QPointF shift = next->screenLocation() - start;
        drags |= shift.manhattanLength() >= QApplication::startDragDistance();
        if (!drags)
            click.append(*next);
        else if (canPlaceItself())
            setFrame(placed.translated(shift), true);
        else
            handDragToSystemMove();
        if (!alive)
            return;
    }
    for (const Event &event : std::as_const(click)) {
        if (alive && !drags)
            WindowEvents::deliver(event);
    }
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

void Window::setMovableByWindowBackground(bool movable)
{
    if (std::exchange(m_movableByWindowBackground, movable) != movable)
        Q_EMIT movableByWindowBackgroundChanged(movable);
}

void Window::setAppearance(Appearance appearance)
{
    m_appearance = appearance;
    setPalette(appearance == Appearance::VibrantLight ? lightPalette() : QPalette());
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

bool Window::canPlaceItself() const
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool Window::handDragToSystemMove()
{
    const bool taken = windowHandle() && windowHandle()->startSystemMove();
    if (taken)
        releaseDrag();
    return taken;
}

bool Window::handDragToSystemResize(Qt::Edges edges)
{
    const bool taken = windowHandle() && windowHandle()->startSystemResize(edges);
    if (taken)
        releaseDrag();
    return taken;
}

void Window::releaseDrag()
{
    const QPointF global = QCursor::pos();
    const QPointF position = global - geometry().topLeft();
    const QMouseEvent release(QEvent::MouseButtonRelease, position, global, Qt::LeftButton, Qt::NoButton,
        QGuiApplication::keyboardModifiers());
    WindowEvents::hold(Event(release, this, windowHandle()));
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
