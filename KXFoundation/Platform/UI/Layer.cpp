// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Layer.h>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kx {

namespace {

bool isPositive(double value)
{
    return value > 0 && std::isfinite(value);
}

QPainterPath rounded(const QRectF &rect, double radius)
{
    const double r = isPositive(radius) ? std::min({radius, rect.width() / 2, rect.height() / 2}) : 0;
    QPainterPath path;
    path.addRoundedRect(rect, r, r);
    return path;
}

// Whether both look the same, what is no number included.

bool isSame(bool a, bool b)
{
    return a == b;
}

bool isSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool isSame(const QSizeF &a, const QSizeF &b)
{
    return isSame(a.width(), b.width()) && isSame(a.height(), b.height());
}

bool isSame(const Color &a, const Color &b)
{
    return a.sameValue(b);
}

} // namespace

Layer::Layer(std::function<void()> changed)
    : m_changed(std::move(changed))
{
}

template <class Value> void Layer::store(Value &field, const Value &value)
{
    const bool looksTheSame = isSame(field, value);
    field = value;
    if (!looksTheSame)
        m_changed();
}

void Layer::setBackgroundColor(const Color &color)
{
    store(m_backgroundColor, color);
}

void Layer::setCornerRadius(double radius)
{
    store(m_cornerRadius, radius);
}

void Layer::setBorderColor(const Color &color)
{
    store(m_borderColor, color);
}

void Layer::setBorderWidth(double width)
{
    store(m_borderWidth, width);
}

void Layer::setMasksToBounds(bool masks)
{
    store(m_masksToBounds, masks);
}

void Layer::setShadowColor(const Color &color)
{
    store(m_shadowColor, color);
}

void Layer::setShadowOffset(const QSizeF &offset)
{
    store(m_shadowOffset, offset);
}

void Layer::setShadowRadius(double radius)
{
    store(m_shadowRadius, radius);
}

void Layer::setShadowOpacity(double opacity)
{
    store(m_shadowOpacity, opacity);
}

bool Layer::castsShadow() const
{
    return !m_masksToBounds && m_shadowColor && isPositive(m_shadowOpacity)
        && isPositive(m_shadowColor.alphaComponent());
}

void Layer::paint(QPainter &painter, const QSizeF &size, const std::function<void()> &drawing) const
{
    const QRectF area(QPointF(0, 0), size);
    const bool hasCorners = isPositive(m_cornerRadius);
    if (m_backgroundColor) {
        if (hasCorners) {
            painter.save();
            painter.setRenderHint(QPainter::Antialiasing);
            painter.fillPath(rounded(area, m_cornerRadius), m_backgroundColor.toQColor());
            painter.restore();
        } else {
            painter.fillRect(area, m_backgroundColor.toQColor());
        }
    }
    painter.save();
    if (m_masksToBounds && hasCorners)
        painter.setClipPath(rounded(area, m_cornerRadius), Qt::IntersectClip);
    drawing();
    painter.restore();
    if (m_borderColor && isPositive(m_borderWidth)) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        const double width = std::min({m_borderWidth, size.width() / 2, size.height() / 2});
        const QRectF inner = area.adjusted(width, width, -width, -width);
        QPainterPath frame = rounded(area, m_cornerRadius);
        frame.addPath(rounded(inner, m_cornerRadius - width));
        frame.setFillRule(Qt::OddEvenFill);
        painter.fillPath(frame, m_borderColor.toQColor());
        painter.restore();
    }
}

} // namespace kx
