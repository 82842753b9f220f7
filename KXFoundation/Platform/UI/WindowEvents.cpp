// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/WindowEvents.h>

#include <KXFoundation/Platform/UI/MouseCopy.h>
#include <KXFoundation/Platform/UI/Window.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

#include <utility>

namespace kx {

namespace {

QPointer<WindowEvents> theEvents;

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease: return true;
    default: return false;
    }
}

// The top-level widget of a QWindow: its own, or that of the native widget or the container that it is in.
QWidget *topLevelOf(const QWindow &window)
{
    for (const QWindow *w = &window; w; w = w->parent()) {
        if (QWidget *widget = QWidget::find(w->winId()))
            return widget->window();
    }
    return nullptr;
}

QWidget *topLevelOf(const QObject &receiver)
{
    if (receiver.isWidgetType())
        return static_cast<const QWidget &>(receiver).window();
    return receiver.isWindowType() ? topLevelOf(static_cast<const QWindow &>(receiver)) : nullptr;
}

bool announcesDoubleClick(const QEvent &event)
{
    return event.type() == QEvent::MouseButtonPress
        && MouseCopy(static_cast<const QMouseEvent &>(event)).announcesDoubleClick();
}

bool isRelease(EventType type)
{
    return type == EventType::LeftMouseUp || type == EventType::RightMouseUp || type == EventType::OtherMouseUp;
}

} // namespace

void WindowEvents::start()
{
    if (!theEvents && QCoreApplication::instance())
        theEvents = new WindowEvents(*QCoreApplication::instance());
}

WindowEvents::WindowEvents(QObject &application)
    : QObject(&application)
{
    application.installEventFilter(this);
}

void WindowEvents::deliver(const Event &event)
{
    if (!theEvents)
        return;
    // Looked up before: the handler may end the frame's window, but not the frame.
    Frame *frame = theEvents->m_frame;
    if (frame && std::exchange(frame->waits, false))
        theEvents->postDrain();
    const bool accepted = theEvents->m_delivery.deliver(event);
    if (frame) {
        frame->delivered = true;
        frame->accepted |= accepted;
    }
}

std::optional<Event> WindowEvents::next(const Window &window, EventMask mask, bool dequeue)
{
    Frame *latest = theEvents ? theEvents->m_frame : nullptr;
    if (!latest)
        return std::nullopt;
    if (!window.isVisible())
        theEvents->endWaiting(&window);
    Frame *frame = latest;
    while (frame && frame->window != &window)
        frame = frame->outer;
    if (frame && frame->cancelled)
        return std::nullopt;
    // Nobody would end the wait after a press that came from no device.
    const bool pressed = QGuiApplication::mouseButtons() && !latest->fromProgram;
    if (!pressed && !theEvents->m_held.hasAny(mask))
        return std::nullopt;
    std::optional<Event> event = theEvents->m_held.next(window, mask, dequeue);
    if (!event && frame)
        frame->cancelled = true;
    latest->waits = event.has_value();
    if (theEvents)
        theEvents->postDrain();
    return event;
}

void WindowEvents::hold(const Event &event)
{
    if (!theEvents)
        return;
    theEvents->m_held.add(event);
    theEvents->postDrain();
}

void WindowEvents::cancel(const QWidget &window)
{
    if (theEvents)
        theEvents->endWaiting(&window);
}

bool WindowEvents::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
        if (watched->isWidgetType())
            endWaiting(static_cast<QWidget *>(watched));
        return false;
    case QEvent::WindowBlocked:
        if (watched->isWindowType() && !m_delivery.isPassing(*event)) {
            if (const QWidget *window = topLevelOf(*watched)) {
                m_held.drop(*window);
                endWaiting(window);
            }
        }
        return false;
    case QEvent::ApplicationStateChange:
        if (QGuiApplication::applicationState() != Qt::ApplicationActive)
            endWaiting(nullptr);
        return false;
    default: break;
    }
    if (!isInput(event->type()) || m_delivery.isPassing(*event))
        return false;
    if (watched->isWidgetType() && m_delivery.isDelivering()) { // because of an event of its QWindow
        if (event->type() != QEvent::MouseMove)
            m_delivery.noteReached(static_cast<QWidget &>(*watched));
        return false;
    }
    QWidget *window = topLevelOf(*watched);
    if (!isTaken(*watched, window))
        return false;
    handle(*watched, *event, window);
    return true;
}

bool WindowEvents::isTaken(const QObject &watched, const QWidget *window) const
{
    if (watched.isWidgetType())
        return qobject_cast<const Window *>(window);
    if (!watched.isWindowType())
        return false;
    if (m_held.isWaiting())
        return true;
    const QWidget *popup = QApplication::activePopupWidget();
    if (popup && popup != window)
        return false;
    return isHolding() || qobject_cast<const Window *>(window);
}

void WindowEvents::handle(QObject &watched, QEvent &event, QWidget *window)
{
    event.accept();
    if (announcesDoubleClick(event))
        return; // comes again with the double click
    Event taken = Event::onItsWay(event, window, &watched);
    if (isHolding()) {
        m_held.add(taken);
        return;
    }
    if (!m_held.isEmpty()) { // what came before
        const QPointer<QObject> alive(&watched);
        drain();
        if (!alive || !theEvents)
            return;
    }
    if (isHolding()) // a handler of that waits now, in a loop around this one
        m_held.add(taken);
    else if (!dispatch(taken))
        event.setAccepted(false);
}

bool WindowEvents::dispatch(Event &event)
{
    auto *window = qobject_cast<Window *>(event.window());
    if (!window)
        return m_delivery.deliver(event);
    Frame frame{window, m_frame, event.receiver() && event.receiver()->isWidgetType()};
    m_frame = &frame;
    window->sendEvent(&event);
    if (!theEvents)
        return true;
    m_frame = frame.outer;
    postDrain();
    const bool swallowedLastRelease = isRelease(event.type()) && !event.buttons() && !frame.delivered;
    if ((frame.cancelled || swallowedLastRelease) && m_delivery.isPressed())
        m_delivery.cancelPress();
    return !frame.delivered || frame.accepted;
}

void WindowEvents::endWaiting(const QWidget *window)
{
    for (Frame *frame = m_frame; frame; frame = frame->outer) {
        if (window && frame->window != window)
            continue;
        frame->cancelled = true;
        frame->waits = false;
    }
    m_held.cancel(window);
    postDrain();
}

bool WindowEvents::isHolding() const
{
    return m_held.isWaiting() || (m_frame && m_frame->waits);
}

void WindowEvents::postDrain()
{
    if (m_held.isEmpty() || std::exchange(m_drainPosted, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_drainPosted = false;
            drain();
        },
        Qt::QueuedConnection);
}

void WindowEvents::drain()
{
    // A handler may run an event loop of its own, in which the rest must not be stuck.
    while (!m_held.isEmpty() && !isHolding()) {
        Event event = m_held.takeFirst();
        postDrain();
        dispatch(event);
        if (!theEvents)
            return;
    }
}

} // namespace kx
