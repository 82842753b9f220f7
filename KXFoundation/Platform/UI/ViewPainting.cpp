// SPDX-License-Identifier: MIT
// How a view's own drawing, its layer and its alpha become what is on the screen.
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtGui/QImage>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <cmath>

namespace kx {

Layer *ViewInterface::layer()
{
    if (!m_layer)
        m_layer = std::make_unique<Layer>([this] { setNeedsDisplay(); });
    return m_layer.get();
}

void ViewInterface::setAlphaValue(double alpha)
{
    if (m_alphaValue == alpha)
        return;
    m_alphaValue = alpha;
    for (QWidget *widget : m_widget->findChildren<QWidget *>())
        widget->update();
    setNeedsDisplay();
}

bool ViewInterface::wantsUpdateLayer() const
{
    return false;
}

void ViewInterface::updateLayer() { }

void ViewInterface::setNeedsDisplay()
{
    m_widget->update();
}

void ViewInterface::setNeedsDisplayInRect(const QRectF &rect)
{
    m_widget->update(widgetRect(rect).toAlignedRect());
}

void ViewInterface::drawRect(QPainter &, const QRectF &) { }

void ViewInterface::paint(const QPaintEvent &event)
{
    if (wantsUpdateLayer())
        updateLayer();
    const double alpha = alphaOnScreen();
    if (alpha <= 0)
        return;
    QPainter painter(m_widget);
    if (alpha >= 1) {
        compose(painter, event.rect());
        return;
    }
    // Composed apart, then blended: what overlaps inside the view must not show through.
    const QRect area = event.rect();
    const double ratio = m_widget->devicePixelRatioF();
    QImage composed((QSizeF(area.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    composed.setDevicePixelRatio(ratio);
    composed.fill(Qt::transparent);
    {
        QPainter inner(&composed);
        inner.setFont(m_widget->font());
        inner.setPen(painter.pen());
        inner.translate(-area.topLeft());
        inner.setClipRect(area);
        compose(inner, area);
    }
    painter.setOpacity(alpha);
    painter.drawImage(area.topLeft(), composed);
}

void ViewInterface::compose(QPainter &painter, const QRect &area)
{
    const auto drawing = [&] { drawRect(painter, widgetRect(area)); };
    if (m_layer)
        m_layer->paint(painter, m_widget->size(), drawing);
    else
        drawing();
}

double ViewInterface::alphaOnScreen() const
{
    double alpha = 1;
    for (const ViewInterface *view = this; view; view = view->superview()) {
        if (!std::isnan(view->m_alphaValue))
            alpha *= std::clamp(view->m_alphaValue, 0.0, 1.0);
    }
    return alpha;
}

} // namespace kx
