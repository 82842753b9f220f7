// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <KXFoundation/Platform/UI/ConstraintLayout.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/HitTesting.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/LayerShadow.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/ScreenScale.h>
#include <KXFoundation/Platform/UI/ViewController.h>
#include <KXFoundation/Platform/UI/ViewWatch.h>

#include <QtCore/QHash>
#include <QtWidgets/QLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kx {

namespace {

// The views by the widgets that they are: asked for all the time, where a dynamic cast would take most of the time of a
// walk through widgets. Never destroyed, since views may outlive the end of main().
QHash<const QWidget *, ViewInterface *> &theViews()
{
    static auto *const views = new QHash<const QWidget *, ViewInterface *>;
    return *views;
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
    theViews().insert(&widget, this);
    widget.setGeometry(0, 0, 0, 0);
    m_settledSize = widget.size();
    (void)ViewWatch::instance(); // from here on it must see what happens
}

ViewInterface::~ViewInterface()
{
    for (Live *live = m_live; live; live = live->outer)
        live->viewIsGone = true;
    theViews().remove(m_widget);
    delete m_shadow.data();
    if (m_controller)
        m_controller->setView(nullptr);
    if (ViewWatch *watch = ViewWatch::existing())
        watch->tracker().viewDestroyed(*this);
}

ViewInterface *ViewInterface::of(QWidget *widget)
{
    return theViews().value(widget);
}

QRectF ViewInterface::frame() const
{
    if (ViewInterface *above = superview())
        above->settleSubviews();
    return inSuperview(m_widget->geometry());
}

void ViewInterface::setFrame(const QRectF &frame)
{
    if (ViewInterface *above = superview())
        above->settleSubviews();
    m_widget->setGeometry(edgesRounded(inSuperview(frame)));
    m_placed = m_widget->geometry();
    settleSubviews();
}

// Between the parent's pixels and the coordinates in which frames count there; its own inverse.
QRectF ViewInterface::inSuperview(const QRectF &rect) const
{
    if (m_widget->isWindow())
        return rect;
    const ViewInterface *above = superview();
    return above ? above->widgetRect(rect) : flippedRect(rect, m_widget->parentWidget()->height());
}

QRectF ViewInterface::bounds() const
{
    return {QPointF(0, 0), m_widget->size()};
}

bool ViewInterface::translatesAutoresizingMaskIntoConstraints() const
{
    const QWidget *parent = m_widget->isWindow() ? nullptr : m_widget->parentWidget();
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

QSizeF ViewInterface::intrinsicContentSize() const
{
    return {-1, -1};
}

void ViewInterface::invalidateIntrinsicContentSize()
{
    m_widget->updateGeometry();
}

QSize ViewInterface::hintedSize(const QSize &base) const
{
    const QSizeF size = intrinsicContentSize();
    const auto hint = [](double asked, int otherwise) {
        return asked >= 0 ? int(std::ceil(std::min(asked, double(QWIDGETSIZE_MAX)))) : otherwise;
    };
    return {hint(size.width(), base.width()), hint(size.height(), base.height())};
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
    if (isExplicitlyHidden() || !pointInRect(point, frame()))
        return nullptr;
    const QPointF inside = pointFromSuperview(point);
    for (ViewInterface *view : HitTesting::subviewsAt(*this, inside)) {
        if (ViewInterface *hit = view->hitTest(inside))
            return hit;
    }
    return this;
}

// Of the place of a device pixel: it stays within the view's bounds whichever way y grows.
QPointF ViewInterface::pointFromSuperview(const QPointF &point) const
{
    const QRectF area = frame();
    const ViewInterface *above = superview();
    const QPointF inside = point - area.topLeft();
    if ((above && above->isFlipped()) == isFlipped())
        return inside;
    return pointerToYUp(inside, area.height(), pixelRatio(*m_widget));
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

QPointF ViewInterface::locationInView(const Event &event) const
{
    const QRectF area = convertRectToView(bounds());
    const QPointF inside = event.locationInWindow() - area.topLeft();
    return isFlipped() ? pointerToYUp(inside, area.height(), pixelRatio(*m_widget)) : inside;
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

void ViewInterface::settleWindow()
{
    QWidget *top = m_widget->window();
    const QPointer<QWidget> window(top->isVisible() || top == m_window ? top : nullptr);
    const QPointer<QWidget> before(m_window);
    if (window == before)
        return;
    viewWillMoveToWindow(window);
    if (m_window != before) // it has been moved on meanwhile
        return;
    m_window = window;
    if (window) {
        m_trackedSize = m_widget->size();
        ViewWatch::instance().updateTrackingAreasOf(*this, true);
    }
    viewDidMoveToWindow();
}

void ViewInterface::viewWillMoveToWindow(QWidget *) { }

void ViewInterface::viewDidMoveToWindow() { }

void ViewInterface::geometryChanged()
{
    m_placed = m_widget->geometry();
    settleSubviews();
    if (m_window && std::exchange(m_trackedSize, m_widget->size()) != m_widget->size())
        ViewWatch::instance().updateTrackingAreasOf(*this, false);
}

// Not driven by the resize event alone: a widget that is not shown gets that one only when it is, and without its old
// size. What Qt was told about a subview meanwhile is taken to be meant for the present size.
void ViewInterface::settleSubviews()
{
    const QSizeF size = m_widget->size();
    const QSizeF before = std::exchange(m_settledSize, size);
    if (before == size)
        return;
    for (ViewInterface *view : subviews()) {
        if (!view->translatesAutoresizingMaskIntoConstraints())
            continue;
        const auto upright = [this](const QRectF &rect, double height) {
            return isFlipped() ? rect : flippedRect(rect, height);
        };
        if (view->m_placed == view->m_widget->geometry()) {
            const QRectF old = upright(view->m_placed, before.height());
            const QRectF frame = autoresized(old, before, size, view->m_autoresizingMask);
            view->m_widget->setGeometry(edgesRounded(upright(frame, size.height())));
        }
        view->m_placed = view->m_widget->geometry();
        view->settleSubviews();
    }
    if (m_constraints)
        m_constraints->apply(*this);
}

} // namespace kx
