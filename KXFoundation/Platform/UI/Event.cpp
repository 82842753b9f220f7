// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Event.h>

#include <KXFoundation/Platform/UI/MouseCopy.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>

#include <QtGui/QCursor>
#include <QtGui/QMouseEvent>

namespace kx {

namespace {

quint64 latestNumber = 0;

EventType pressed(Qt::MouseButton button)
{
    return button == Qt::LeftButton ? EventType::LeftMouseDown
        : button == Qt::RightButton ? EventType::RightMouseDown
                                    : EventType::OtherMouseDown;
}

EventType released(Qt::MouseButton button)
{
    return button == Qt::LeftButton ? EventType::LeftMouseUp
        : button == Qt::RightButton ? EventType::RightMouseUp
                                    : EventType::OtherMouseUp;
}

EventType moved(Qt::MouseButtons buttons)
{
    return buttons & Qt::LeftButton ? EventType::LeftMouseDragged
        : buttons & Qt::RightButton ? EventType::RightMouseDragged
        : buttons                   ? EventType::OtherMouseDragged
                                    : EventType::MouseMoved;
}

bool isModifier(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock: return true;
    default: return false;
    }
}

// QEvent::clone(); for events of the mouse, which are many, in one piece of memory with what counts its owners.
std::shared_ptr<const QEvent> copyOf(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove: return std::make_shared<MouseCopy>(static_cast<const QMouseEvent &>(event));
    default: return std::shared_ptr<const QEvent>(event.clone());
    }
}

// QApplication rounds the positions of the mouse events that it hands to widgets, except the one in the window.
QPointF exactGlobalPosition(const QSinglePointEvent &event)
{
    const QPointF global = event.globalPosition();
    if (global != global.toPoint())
        return global;
    return global + event.scenePosition() - event.scenePosition().toPoint();
}

} // namespace

std::shared_ptr<const QEvent> Event::Original::kept() const
{
    const bool onItsWay = m_event && m_event.use_count() == 0;
    return onItsWay ? copyOf(*m_event) : m_event;
}

EventType Event::typeOf(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: return pressed(static_cast<const QMouseEvent &>(event).button());
    case QEvent::MouseButtonRelease: return released(static_cast<const QMouseEvent &>(event).button());
    case QEvent::MouseMove: return moved(static_cast<const QMouseEvent &>(event).buttons());
    case QEvent::Wheel: return EventType::ScrollWheel;
    case QEvent::Enter: return EventType::MouseEntered;
    case QEvent::Leave: return EventType::MouseExited;
    case QEvent::KeyPress:
        return isModifier(static_cast<const QKeyEvent &>(event).key()) ? EventType::FlagsChanged : EventType::KeyDown;
    case QEvent::KeyRelease:
        return isModifier(static_cast<const QKeyEvent &>(event).key()) ? EventType::FlagsChanged : EventType::KeyUp;
    default: return EventType::Other;
    }
}

Event Event::onItsWay(const QEvent &event, QWidget *window, QObject *receiver)
{
    return {event, std::shared_ptr<const QEvent>(std::shared_ptr<const QEvent>(), &event), window, receiver};
}

Event::Event(EventType type, QWidget *window, const QPointF &screenLocation)
    : m_number(++latestNumber)
    , m_type(type)
    , m_window(window)
    , m_screenLocation(screenLocation)
{
}

Event::Event(const QEvent &event, QWidget *window, QObject *receiver)
    : Event(event, copyOf(event), window, receiver)
{
}

Event::Event(const QEvent &event, std::shared_ptr<const QEvent> original, QWidget *window, QObject *receiver)
    : m_number(++latestNumber)
    , m_type(typeOf(event))
    , m_window(window)
    , m_receiver(receiver)
    , m_original(std::move(original))
{
    QPointF position;
    if (event.isSinglePointEvent()) {
        const auto &single = static_cast<const QSinglePointEvent &>(event);
        position = exactGlobalPosition(single);
        m_buttons = single.buttons();
    } else {
        position = QCursor::pos();
    }
    if (event.isInputEvent())
        m_modifiers = static_cast<const QInputEvent &>(event).modifiers();
    if (event.type() == QEvent::MouseButtonDblClick)
        m_clickCount = 2;
    else if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonRelease)
        m_clickCount = 1;
    m_screenLocation = screenPoint(position, window);
    if (window && (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick))
        m_pressLocation = m_screenLocation - screenFrame(*window).topLeft();
}

QPointF Event::locationInWindow() const
{
    if (!m_window)
        return m_screenLocation;
    return m_pressLocation.value_or(m_screenLocation - screenFrame(*m_window).topLeft());
}

} // namespace kx
