// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/SliderGeometry.h>

#include <KXFoundation/Platform/UI/Geometry.h>

#include <cmath>

namespace {

constexpr double trackThickness = 4.0;
constexpr double knobScale = 1.4;
constexpr double endless = 9223372036854775808.0; // what divides a pointer's way on a slider without length

} // namespace

SliderGeometry::SliderGeometry(const QSizeF &size, bool vertical)
    : m_size(size)
    , m_vertical(vertical)
{
    const double side = std::ceil(static_cast<float>((vertical ? size.width() : size.height()) / knobScale));
    m_knob = QSizeF(side, side);
}

QRectF SliderGeometry::cellRect() const
{
    const QSizeF knob = knobScaleSize();
    return m_vertical ? QRectF(0, knob.height() / 2, m_size.width(), m_size.height() - knob.height())
                      : QRectF(knob.width() / 2, 0, m_size.width() - knob.width(), m_size.height());
}

QRectF SliderGeometry::track() const
{
    const QRectF cell = cellRect();
    return m_vertical
        ? QRectF(cell.x() + (cell.width() - trackThickness) * 0.5, cell.y(), trackThickness, cell.height())
        : QRectF(cell.x(), cell.y() + (cell.height() - trackThickness) * 0.5, cell.width(), trackThickness);
}

double SliderGeometry::trackRadius() const
{
    return trackThickness * 0.5;
}

QRectF SliderGeometry::filledPart(double progress) const
{
    QRectF part = track();
    if (m_vertical)
        part.setHeight(progress * trackLength());
    else
        part.setWidth(progress * trackLength());
    return part;
}

QRectF SliderGeometry::knob(double progress, const QSizeF &size) const
{
    const QRectF line = track();
    const double way = progress * trackLength();
    return m_vertical
        ? QRectF(line.center().x() - size.width() / 2, line.y() + way - size.height() / 2, size.width(), size.height())
        : QRectF(line.x() + way - size.width() / 2, line.center().y() - size.height() / 2, size.width(), size.height());
}

QRectF SliderGeometry::mark(qint64 index, qint64 count) const
{
    const QRectF line = track();
    const double side = line.height() - 2.0;
    const double place = static_cast<float>(index) / static_cast<float>(count) * (trackLength() - 2 * trackRadius());
    return {place + line.x() + 1.0, line.y() + 1.0, side, side};
}

std::optional<double> SliderGeometry::fractionAt(const QPointF &pointer, const QRectF &knobRect) const
{
    const QRectF cell = cellRect();
    if (!kx::pointInRect(pointer, cell) && !kx::pointInRect(pointer, knobRect))
        return std::nullopt;
    const double position = m_vertical ? pointer.y() - cell.y() : pointer.x() - cell.x();
    const double along = m_vertical ? cell.height() : cell.width();
    const double length = along > 0 ? along : endless;
    return position < 0 ? 0 : position >= length ? 1.0 : position / length;
}
