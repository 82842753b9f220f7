// SPDX-License-Identifier: MIT
// How events reach a view's handlers, and what the handlers do of themselves.
#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>
#include <KXFoundation/Platform/UI/ViewWatch.h>

#include <QtGui/QContextMenuEvent>

#include <utility>

namespace kx {

bool ViewInterface::routeEvent(QEvent &event)
{
    using Handler = void (ViewInterface::*)(Event *);
    if (!event.isInputEvent())
        return false;
    if (event.type() == QEvent::ContextMenu) {
        // It would go on to the parent of a widget that lets it go by, although the press was taken.
        const bool byMouse = static_cast<QContextMenuEvent &>(event).reason() == QContextMenuEvent::Mouse;
        return m_rightPressSwallowed && byMouse;
    }
    const EventType type = Event::typeOf(event);
    Handler handler = nullptr;
    switch (type) {
    case EventType::LeftMouseDown: handler = &ViewInterface::mouseDown; break;
    case EventType::LeftMouseUp: handler = &ViewInterface::mouseUp; break;
    case EventType::LeftMouseDragged: handler = &ViewInterface::mouseDragged; break;
    case EventType::RightMouseDown: handler = &ViewInterface::rightMouseDown; break;
    case EventType::RightMouseUp: handler = &ViewInterface::rightMouseUp; break;
    case EventType::RightMouseDragged: handler = &ViewInterface::rightMouseDragged; break;
    case EventType::OtherMouseDown: handler = &ViewInterface::otherMouseDown; break;
    case EventType::OtherMouseUp: handler = &ViewInterface::otherMouseUp; break;
    case EventType::OtherMouseDragged: handler = &ViewInterface::otherMouseDragged; break;
    case EventType::ScrollWheel: handler = &ViewInterface::scrollWheel; break;
    case EventType::KeyDown: handler = &ViewInterface::keyDown; break;
    case EventType::KeyUp: handler = &ViewInterface::keyUp; break;
    default: return false;
    }
    Event wrapped = Event::onItsWay(event, m_widget->window());
    if (type == EventType::LeftMouseDown) {
        const QPointer<QWidget> alive(m_widget);
        takeFocusByClick();
        if (!alive)
            return true;
        ViewWatch::instance().setPressed(m_widget);
    } else if (type == EventType::LeftMouseUp) {
        ViewWatch::instance().setPressed(nullptr);
    }
    Live live{&event, m_live};
    m_live = &live;
    event.accept();
    (this->*handler)(&wrapped);
    if (live.viewIsGone)
        return true;
    m_live = live.outer;
    if (type == EventType::RightMouseDown)
        m_rightPressSwallowed = !live.handedToBase;
    return true;
}

void ViewInterface::handToBase(Event *event)
{
    if (!event || !m_live)
        return;
    m_live->handedToBase = true;
    QEvent &live = *m_live->event;
    if (!baseEvent(live))
        live.ignore(); // a disabled widget leaves the event as it is
}

void ViewInterface::mouseUngrabbed()
{
    ViewWatch::instance().setPressed(nullptr);
    pressCancelled();
}

void ViewInterface::takeFocusByClick()
{
    if (m_widget->isEnabled() && !m_widget->hasFocus() && acceptsFirstResponder())
        m_widget->setFocus(Qt::MouseFocusReason);
}

// A form sets translated texts last, but shows pages of stacks and tabs before, and thereby polishes what is on them.
// So that is too early; what is not seen at once, on other pages, awakes when the event loop gets to it.
void ViewInterface::awakenAt(QEvent::Type type)
{
    if (!isAsleep())
        return;
    if (type == QEvent::Polish)
        QMetaObject::invokeMethod(
            m_widget, [this] { awaken(); }, Qt::QueuedConnection);
    else if (type == QEvent::Show || type == QEvent::Paint)
        awaken();
}

void ViewInterface::awaken()
{
    if (!isAsleep())
        return;
    m_isAwake = true;
    awakeFromNib();
}

void ViewInterface::awakeFromNib() { }

void ViewInterface::mouseDown(Event *event)
{
    handToBase(event);
}

void ViewInterface::mouseUp(Event *event)
{
    handToBase(event);
}

void ViewInterface::mouseDragged(Event *event)
{
    handToBase(event);
}

void ViewInterface::pressCancelled() { }

void ViewInterface::rightMouseDown(Event *event)
{
    handToBase(event);
}

void ViewInterface::rightMouseUp(Event *event)
{
    handToBase(event);
}

void ViewInterface::rightMouseDragged(Event *event)
{
    handToBase(event);
}

void ViewInterface::otherMouseDown(Event *event)
{
    handToBase(event);
}

void ViewInterface::otherMouseUp(Event *event)
{
    handToBase(event);
}

void ViewInterface::otherMouseDragged(Event *event)
{
    handToBase(event);
}

void ViewInterface::scrollWheel(Event *event)
{
    handToBase(event);
}

void ViewInterface::keyDown(Event *event)
{
    handToBase(event);
}

void ViewInterface::keyUp(Event *event)
{
    handToBase(event);
}

void ViewInterface::mouseEntered(Event *) { }

void ViewInterface::mouseExited(Event *) { }

void ViewInterface::mouseMoved(Event *) { }

void ViewInterface::cursorUpdate(Event *)
{
    Cursor::reset();
}

bool ViewInterface::acceptsFirstResponder() const
{
    return m_widget->focusPolicy() & Qt::ClickFocus;
}

bool ViewInterface::mouseDownCanMoveWindow() const
{
    return !m_widget->testAttribute(Qt::WA_OpaquePaintEvent);
}

} // namespace kx
