// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <KXFoundation/Platform/UI/ConstraintLayout.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/ViewController.h>

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QLayout>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <utility>

namespace kx {

namespace {

QRectF frameIn(const QWidget *parent, const QRect &geometry)
{
    return parent ? flippedRect(geometry, parent->height()) : QRectF(geometry);
}

bool isPlacedBy(const QLayout *layout, const QWidget *widget)
{
    for (int i = 0; layout && i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (item->widget() == widget || isPlacedBy(item->layout(), widget))
            return true;
    }
    return false;
}

} // namespace

ViewInterface::ViewInterface(QWidget &widget)
    : m_widget(&widget)
{
    widget.setGeometry(0, 0, 0, 0);
    m_settledSize = widget.size();
}

ViewInterface::~ViewInterface()
{
    if (m_controller)
        m_controller->setView(nullptr);
}

ViewInterface *ViewInterface::of(QWidget *widget)
{
    return dynamic_cast<ViewInterface *>(widget);
}

QRectF ViewInterface::frame() const
{
    if (ViewInterface *above = superview())
        above->settleSubviews();
    return frameIn(m_widget->parentWidget(), m_widget->geometry());
}

void ViewInterface::setFrame(const QRectF &frame)
{
    if (ViewInterface *above = superview())
        above->settleSubviews();
    const QWidget *parent = m_widget->parentWidget();
    m_widget->setGeometry(edgesRounded(parent ? flippedRect(frame, parent->height()) : frame));
    settleSubviews();
}

QRectF ViewInterface::bounds() const
{
    return {QPointF(0, 0), m_widget->size()};
}

bool ViewInterface::translatesAutoresizingMaskIntoConstraints() const
{
    const QWidget *parent = m_widget->parentWidget();
    return m_translatesMask.value_or(!parent || !isPlacedBy(parent->layout(), m_widget));
}

ViewInterface *ViewInterface::superview() const
{
    return m_widget->isWindow() ? nullptr : of(m_widget->parentWidget());
}

QList<ViewInterface *> ViewInterface::subviews() const
{
    QList<ViewInterface *> views;
    for (QObject *child : m_widget->children()) {
        auto *widget = qobject_cast<QWidget *>(child);
        if (ViewInterface *view = widget && !widget->isWindow() ? of(widget) : nullptr)
            views.append(view);
    }
    return views;
}

void ViewInterface::addSubview(ViewInterface &view)
{
    settleSubviews();
    const QRectF frame = view.frame();
    const bool hidden = view.isExplicitlyHidden();
    view.m_widget->setParent(m_widget);
    view.setFrame(frame);
    view.m_widget->raise();
    if (!hidden)
        view.m_widget->show();
}

void ViewInterface::removeFromSuperview()
{
    if (!m_widget->parentWidget())
        return;
    const QRectF old = frame();
    m_widget->setParent(nullptr);
    setFrame(old);
}

Responder *ViewInterface::nextResponder() const
{
    return m_controller ? m_controller : responderAbove();
}

// Plain widgets are no responders; the chain passes them by.
Responder *ViewInterface::responderAbove() const
{
    for (const QWidget *widget = m_widget; !widget->isWindow() && widget->parentWidget();) {
        widget = widget->parentWidget();
        if (auto *above = dynamic_cast<const Responder *>(widget))
            return const_cast<Responder *>(above);
    }
    return nullptr;
}

bool ViewInterface::isExplicitlyHidden() const
{
    return m_widget->testAttribute(Qt::WA_WState_ExplicitShowHide) && m_widget->testAttribute(Qt::WA_WState_Hidden);
}

ViewInterface *ViewInterface::hitTest(const QPointF &point)
{
    const QRectF area = frame();
    if (isExplicitlyHidden() || !pointInRect(point, area))
        return nullptr;
    QList<ViewInterface *> fromTheTop = subviews();
    std::reverse(fromTheTop.begin(), fromTheTop.end());
    for (ViewInterface *view : std::as_const(fromTheTop)) {
        if (ViewInterface *hit = view->hitTest(point - area.topLeft()))
            return hit;
    }
    return this;
}

bool ViewInterface::isFlipped() const
{
    return false;
}

QPointF ViewInterface::convertPointFromView(const QPointF &point, const ViewInterface *view) const
{
    const auto origin = [](const ViewInterface &v) { return v.convertRectToView(v.bounds()); };
    const auto inWindow = [&](const ViewInterface &v, const QPointF &p) -> QPointF {
        const QRectF area = origin(v);
        return {area.x() + p.x(), v.isFlipped() ? area.y() + area.height() - p.y() : area.y() + p.y()};
    };
    const QPointF p = view ? inWindow(*view, point) : point;
    const QRectF area = origin(*this);
    return {p.x() - area.x(), isFlipped() ? area.y() + area.height() - p.y() : p.y() - area.y()};
}

QRectF ViewInterface::convertRectToView(const QRectF &rect, const ViewInterface *view) const
{
    const QRectF inWidget = widgetRect(rect);
    if (view) {
        const QPointF shift = view->m_widget->mapFromGlobal(m_widget->mapToGlobal(QPointF(0, 0)));
        return view->widgetRect(inWidget.translated(shift));
    }
    const QRectF onScreen = screenFlipped(inWidget.translated(m_widget->mapToGlobal(QPointF(0, 0))));
    return onScreen.translated(-screenFrame(*m_widget->window()).topLeft());
}

QRectF ViewInterface::widgetRect(const QRectF &rect) const
{
    return isFlipped() ? rect : flippedRect(rect, m_widget->height());
}

QWidget *ViewInterface::shownWindow() const
{
    QWidget *window = m_widget->window();
    return window->isVisible() ? window : nullptr;
}

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

void ViewInterface::cursorUpdate(Event *) { }

void ViewInterface::addTrackingArea(const TrackingAreaRef &area)
{
    m_trackingAreas.append(area);
}

void ViewInterface::removeTrackingArea(const TrackingAreaRef &area)
{
    m_trackingAreas.removeOne(area);
}

void ViewInterface::updateTrackingAreas() { }

bool ViewInterface::routeEvent(QEvent &event)
{
    using Handler = void (ViewInterface::*)(Event *);
    if (!event.isInputEvent())
        return false;
    Event wrapped(event, m_widget->window());
    Handler handler = nullptr;
    switch (wrapped.type()) {
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
    const QPointer<QWidget> alive(m_widget);
    QEvent *outer = std::exchange(m_live, &event);
    event.accept();
    (this->*handler)(&wrapped);
    if (alive)
        m_live = outer;
    return true;
}

void ViewInterface::handToBase(Event *event)
{
    if (event && m_live)
        baseEvent(*m_live);
}

void ViewInterface::viewEvent(const QEvent &event)
{
    if (event.type() == QEvent::Resize)
        settleSubviews();
}

// Not driven by the resize event alone: a widget that is not shown gets that one only when it is, and without its old
// size.
void ViewInterface::settleSubviews()
{
    const QSizeF size = m_widget->size();
    const QSizeF before = std::exchange(m_settledSize, size);
    if (before == size)
        return;
    for (ViewInterface *view : subviews()) {
        if (!view->translatesAutoresizingMaskIntoConstraints())
            continue;
        const QRectF old = flippedRect(view->m_widget->geometry(), before.height());
        const QRectF frame = autoresized(old, before, size, view->m_autoresizingMask);
        view->m_widget->setGeometry(edgesRounded(flippedRect(frame, size.height())));
        view->settleSubviews();
    }
    if (m_constraints)
        m_constraints->apply(*this);
}

} // namespace kx
