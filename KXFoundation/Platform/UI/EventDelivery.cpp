// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/EventDelivery.h>

#include <KXFoundation/Platform/UI/Event.h>
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

bool isMouseEvent(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease || type == QEvent::MouseButtonDblClick
        || type == QEvent::MouseMove;
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

std::unique_ptr<QEvent> mouseEventAt(
    const QMouseEvent &event, const QPointF &position, const QPointF &inWindow, const QPointF &global)
{
    auto moved = std::make_unique<QMouseEvent>(event.type(), position, inWindow, global, event.button(),
        event.buttons(), event.modifiers(), event.source(), event.pointingDevice());
    moved->setTimestamp(event.timestamp());
    return moved;
}

// What Qt sent, with the positions that it has now: the window may have moved since.
std::unique_ptr<QEvent> placed(const Event &event, QObject &receiver)
{
    const QEvent &original = *event.qtEvent();
    const QWidget *window = event.window();
    if (window && isMouseEvent(original.type())) {
        const auto &mouse = static_cast<const QMouseEvent &>(original);
        const QPointF global = globalPoint(screenFrame(*window).topLeft() + event.locationInWindow(), window);
        const QPointF position = positionIn(receiver, *window, global);
        if (!isNear(global, mouse.globalPosition()) || !isNear(position, mouse.position()))
            return mouseEventAt(mouse, position, global - window->geometry().topLeft(), global);
    }
    return std::unique_ptr<QEvent>(original.clone());
}

} // namespace

bool EventDelivery::deliver(const Event &event)
{
    const QPointer<QObject> receiver = event.receiver();
    if (!event.qtEvent() || !receiver)
        return false;
    const std::unique_ptr<QEvent> copy = placed(event, *receiver);
    const bool toWindow = receiver->isWindowType();
    if (toWindow && copy->type() == QEvent::MouseButtonDblClick) {
        AnnouncingPress press(static_cast<const QMouseEvent &>(*copy));
        send(*receiver, press);
        if (!receiver)
            return true;
    }

    const QPointer<QWidget> outer = std::exchange(m_reached, nullptr);
    const bool accepted = send(*receiver, *copy);
    const QPointer<QWidget> reached = std::exchange(m_reached, outer);
    if (!toWindow)
        return accepted;
    if (copy->type() == QEvent::MouseButtonPress || copy->type() == QEvent::MouseButtonDblClick) {
        if (reached)
            m_press = {receiver, reached};
    } else if (copy->type() == QEvent::MouseButtonRelease) {
        if (!reached)
            return sendReleaseAgain(event, *copy) || accepted;
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
    if (!m_releaseWidget || !m_release || m_release->qtEvent() != event.qtEvent())
        return false;
    const auto &release = static_cast<const QMouseEvent &>(copy);
    const QPointF global = release.globalPosition();
    const auto mapped = mouseEventAt(release, m_releaseWidget->mapFromGlobal(global), release.scenePosition(), global);
    return send(*m_releaseWidget, *mapped);
}

} // namespace kx
