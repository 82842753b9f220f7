// SPDX-License-Identifier: MIT
// How a view's own drawing, its layer and its alpha become what is on the screen.
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/LayerShadow.h>
#include <KXFoundation/Platform/UI/PaintableRect.h>
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
    if (const std::optional<QRect> part = pixelsAround(widgetRect(rect)))
        m_widget->update(*part);
    else
        m_widget->update();
}

void ViewInterface::drawRect(QPainter &, const QRectF &) { }

void ViewInterface::paint(const QPaintEvent &event)
{
    if (wantsUpdateLayer())
        updateLayer();
    const double alpha = alphaOnScreen();
    castShadow(alpha);
    if (alpha <= 0)
        return;
    QPainter painter(m_widget);
    if (alpha >= 1) {
        compose(painter, event.rect());
        return;
    }
    // Composed apart, then blended: what overlaps inside the view must not show through.
    painter.setOpacity(alpha);
    painter.drawImage(event.rect().topLeft(), composed(event.rect()));
}

QImage ViewInterface::composed(const QRect &area)
{
    const double ratio = m_widget->devicePixelRatioF();
    QImage image((QSizeF(area.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    if (image.isNull())
        return image;
    QPainter painter(&image);
    painter.setFont(m_widget->font());
    painter.setPen(m_widget->palette().color(m_widget->foregroundRole()));
    painter.translate(-area.topLeft());
    painter.setClipRect(area);
    compose(painter, area);
    return image;
}

// Widgets are neither made nor shown in the midst of painting.
void ViewInterface::castShadow(double alpha)
{
    const bool casts = m_layer && m_layer->castsShadow() && m_widget->parentWidget() && !m_widget->isWindow();
    if (casts && m_shadow) {
        m_shadow->cast(composed(m_widget->rect()), *m_layer, alpha);
    } else if (casts) {
        const auto make = [this] {
            if (!m_shadow && m_widget->parentWidget())
                m_shadow = new LayerShadow(*m_widget);
            setNeedsDisplay();
        };
        QMetaObject::invokeMethod(m_widget, make, Qt::QueuedConnection);
    } else if (m_shadow) {
        m_shadow->deleteLater();
        m_shadow.clear();
    }
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
