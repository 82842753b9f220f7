// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <KXFoundation/Platform/UI/Geometry.h>

#include <QtCore/QEvent>
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

ViewInterface::~ViewInterface() = default;

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
        if (isPlacedBy(m_widget->layout(), view->m_widget))
            continue;
        const QRectF old = flippedRect(view->m_widget->geometry(), before.height());
        const QRectF frame = autoresized(old, before, size, view->m_autoresizingMask);
        view->m_widget->setGeometry(edgesRounded(flippedRect(frame, size.height())));
        view->settleSubviews();
    }
}

} // namespace kx
