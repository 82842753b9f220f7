// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PlaybackBarGeometry.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double barBottom = 11.0;
constexpr double hoveredKnobInset = 8.5;
constexpr double plainKnobInset = 7.0;
constexpr double tickWidth = 3.0;

} // namespace

PlaybackBarGeometry::PlaybackBarGeometry(const Input &input)
    : m_in(input)
    , m_range(input.maxValue - input.minValue)
    , m_knobInset(looksHovered() ? hoveredKnobInset : plainKnobInset)
    , m_length(input.width - 2 * input.horizontalPadding - 2 * m_knobInset)
{
}

QRectF PlaybackBarGeometry::bar() const
{
    return {m_in.horizontalPadding, barBottom, m_in.width - 2 * m_in.horizontalPadding, m_in.progressHeight};
}

std::optional<QRectF> PlaybackBarGeometry::preloadedPart() const
{
    if (!(m_in.preloadValue > m_in.playedValue))
        return std::nullopt;
    const double width = held(m_in.preloadValue / m_range * m_length) + m_knobInset;
    return QRectF(m_in.horizontalPadding, barBottom, width, m_in.progressHeight);
}

QRectF PlaybackBarGeometry::playedPart() const
{
    const double width = held(along(shownValue())) + m_knobInset;
    return {m_in.horizontalPadding, barBottom, width, m_in.progressHeight};
}

QRectF PlaybackBarGeometry::tick(double value) const
{
    return {along(value) + m_knobInset - tickWidth / 2, barBottom, tickWidth, m_in.progressHeight};
}

QRectF PlaybackBarGeometry::clip(double start, double end) const
{
    const double from = along(static_cast<float>(start));
    const double to = along(static_cast<float>(end));
    return {from + m_in.horizontalPadding + m_knobInset, barBottom, to - from, m_in.progressHeight};
}

double PlaybackBarGeometry::knobCentre() const
{
    return hasRange() ? held(shownValue() * m_length / m_range) + m_knobInset : m_knobInset;
}

QRectF PlaybackBarGeometry::knob(const QSizeF &image) const
{
    if (!(image.height() > 0))
        return {};
    const double width = image.width() * (m_in.indicatorHeight / image.height());
    const double left = knobCentre() - width / 2;
    const double leftmost = m_knobInset - width / 2;
    const double x = leftmost > left ? leftmost : std::min(left, m_length);
    const double y = m_in.progressHeight * 0.5 + barBottom - m_in.indicatorHeight * 0.5;
    return {x + m_in.horizontalPadding, y, width, m_in.indicatorHeight};
}

// The pointer is measured with the hovered inset at all times: who drags or hovers has made the bar grow.
double PlaybackBarGeometry::valueAt(double pointerX) const
{
    const double position = pointerX - hoveredKnobInset - m_in.horizontalPadding;
    const double length = m_in.width - 2 * hoveredKnobInset - 2 * m_in.horizontalPadding;
    if (position < 0)
        return m_in.minValue;
    if (position >= length)
        return m_in.maxValue;
    return std::round(position + 0.5) * m_range / length + m_in.minValue;
}

double PlaybackBarGeometry::fractionAt(double pointerX) const
{
    const double position = pointerX - hoveredKnobInset - m_in.horizontalPadding;
    const double length = m_in.width - 2 * hoveredKnobInset - 2 * m_in.horizontalPadding;
    return length > 0 ? std::clamp(position, 0.0, length) / length : 0;
}

double PlaybackBarGeometry::shownValue() const
{
    return m_in.isDragging && m_in.draggedValue >= 0 ? m_in.draggedValue : m_in.playedValue;
}

double PlaybackBarGeometry::along(double value) const
{
    return value / m_range * m_length;
}

// Not std::clamp: the way may be shorter than nothing in a narrow view.
double PlaybackBarGeometry::held(double position) const
{
    return std::max(0.0, std::min(position, m_length));
}
