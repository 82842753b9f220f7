// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/EventDelivery.h>

#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/MouseCopy.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>
#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QAbstractButton>

#include <utility>

namespace kx {

namespace {

/// Comes before a double click and is not delivered itself, but lets Qt remember the widget that it is on.
class AnnouncingPress : public QMouseEvent {
public:
    explicit AnnouncingPress(const QMouseEvent &doubleClick)
        : QMouseEvent(MouseButtonPress, doubleClick.position(), doubleClick.scenePosition(),
            doubleClick.globalPosition(), doubleClick.button(), doubleClick.buttons(), doubleClick.modifiers(),
            doubleClick.source(), doubleClick.pointingDevice())
    {
        setTimestamp(doubleClick.timestamp());
        m_doubleClick = true;
    }
};

class MovedMouseEvent : public QMouseEvent {
public:
    MovedMouseEvent(const QMouseEvent &event, const QPointF &position, const QPointF &inWindow, const QPointF &global)
        : QMouseEvent(event.type(), position, inWindow, global, event.button(), event.buttons(), event.modifiers(),
            event.source(), event.pointingDevice())
    {
        setTimestamp(event.timestamp());
    }
};

bool isPress(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
}

bool isMouseEvent(QEvent::Type type)
{
    return isPress(type) || type == QEvent::MouseButtonRelease || type == QEvent::MouseMove;
}

bool isNear(const QPointF &a, const QPointF &b)
{
    return (a - b).manhattanLength() < 0.001;
}

// The position in the receiver of a point on the screen. A top-level widget knows its place before its QWindow does.
QPointF positionIn(QObject &receiver, const QWidget &window, const QPointF &global)
{
    if (receiver.isWidgetType())
        return static_cast<QWidget &>(receiver).mapFromGlobal(global);
    if (&receiver == window.windowHandle())
        return global - window.geometry().topLeft();
    return static_cast<QWindow &>(receiver).mapFromGlobal(global);
}

// Where an event is on the screen by now: a press goes with its window. (What was sent to a widget knows that only
// roughly.)
QPointF presentPosition(const Event &event, const QWidget &window, const QMouseEvent &original)
{
    if (!isPress(original.type()) && event.receiver()->isWindowType())
        return original.globalPosition();
    return globalPoint(screenFrame(window).topLeft() + event.locationInWindow(), &window);
}

} // namespace

bool EventDelivery::deliver(const Event &event)
{
    QObject *receiver = event.receiver();
    const QWidget *window = event.window();
    if (!event.qtEvent() || !receiver)
        return false;
    const QEvent &original = *event.qtEvent();
    if (!window || !isMouseEvent(original.type())) {
        const std::unique_ptr<QEvent> copy(original.clone());
        return deliverCopy(event, *copy);
    }
    const auto &mouse = static_cast<const QMouseEvent &>(original);
    const QPointF global = presentPosition(event, *window, mouse);
    const QPointF position = positionIn(*receiver, *window, global);
    if (isNear(global, mouse.globalPosition()) && isNear(position, mouse.position())) {
        MouseCopy copy(mouse);
        return deliverCopy(event, copy);
    }
    MovedMouseEvent moved(mouse, position, global - window->geometry().topLeft(), global);
    return deliverCopy(event, moved);
}

bool EventDelivery::deliverCopy(const Event &event, QEvent &copy)
{
    QObject *receiver = event.receiver();
    const bool toWindow = receiver->isWindowType();
    if (toWindow && copy.type() == QEvent::MouseButtonDblClick) {
        AnnouncingPress press(static_cast<const QMouseEvent &>(copy));
        send(*receiver, press);
        if (!event.receiver()) // gone in between
            return true;
    }

    const QPointer<QWidget> outer = std::exchange(m_reached, nullptr);
    const bool accepted = send(*receiver, copy);
    const QPointer<QWidget> reached = std::exchange(m_reached, outer);
    if (!toWindow)
        return accepted;
    if (isPress(copy.type())) {
        if (reached)
            m_press = {event.receiver(), reached};
    } else if (copy.type() == QEvent::MouseButtonRelease) {
        if (!reached)
            return sendReleaseAgain(event, copy) || accepted;
        m_release = event;
        m_releaseWidget = reached;
        if (!event.buttons())
            m_press = {};
    }
    return accepted;
}

bool EventDelivery::isDelivering() const
{
    // In an event loop that a handler runs, what arrives has nothing to do with the delivery that the handler is in.
    return !m_loopLevels.isEmpty() && m_loopLevels.last() == QThread::currentThread()->loopLevel();
}

void EventDelivery::noteReached(QWidget &widget)
{
    if (!m_reached)
        m_reached = &widget;
}

void EventDelivery::cancelPress()
{
    const Press press = std::exchange(m_press, {});
    if (auto *button = qobject_cast<QAbstractButton *>(press.widget.data()))
        button->setDown(false);
    if (press.widget) {
        QEvent ungrab(QEvent::UngrabMouse);
        QCoreApplication::sendEvent(press.widget, &ungrab);
    }
    // Qt forgets the widget that was pressed when a modal window comes up, and not otherwise.
    for (const QEvent::Type type : {QEvent::WindowBlocked, QEvent::WindowUnblocked}) {
        QEvent event(type);
        if (press.receiver)
            send(*press.receiver, event);
    }
}

bool EventDelivery::send(QObject &receiver, QEvent &event)
{
    m_passing.append(&event);
    m_loopLevels.append(QThread::currentThread()->loopLevel());
    // Not sendEvent(), for which no event comes from outside of the application.
    QCoreApplication::instance()->notify(&receiver, &event);
    m_passing.removeLast();
    m_loopLevels.removeLast();
    return event.isAccepted();
}

// After the first of two releases Qt knows no widget any more that the second could go to.
bool EventDelivery::sendReleaseAgain(const Event &event, QEvent &copy)
{
    if (!m_releaseWidget || !m_release || !m_release->isCopyOf(event))
        return false;
    const auto &release = static_cast<const QMouseEvent &>(copy);
    const QPointF global = release.globalPosition();
    MovedMouseEvent mapped(release, m_releaseWidget->mapFromGlobal(global), release.scenePosition(), global);
    return send(*m_releaseWidget, mapped);
}

} // namespace kx
