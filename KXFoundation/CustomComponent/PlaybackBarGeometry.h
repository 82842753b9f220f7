// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>

#include <optional>

/// Where each part of a playback bar lies, computed from the bar's values alone. Coordinates are the view's own, in
/// logical pixels with y growing upwards; values that make no sense give rectangles that make none, which are not
/// painted.
class PlaybackBarGeometry {
public:
    struct Input {
        double width = 0; ///< of the view's bounds
        double horizontalPadding = 0;
        double progressHeight = 0;
        double indicatorHeight = 0;
        double hoverHeight = 0;
        double playedValue = 0;
        double preloadValue = 0;
        double minValue = 0;
        double maxValue = 0;
        float draggedValue = 0;
        bool isDragging = false;
    };

    explicit PlaybackBarGeometry(const Input &input);

    /// The whole bar: the track.
    [[nodiscard]] QRectF bar() const;
    /// Nothing is loaded: the bar is one plain rectangle, without a knob.
    [[nodiscard]] bool isStopped() const { return m_in.maxValue == 0 && m_in.playedValue == 0; }
    /// Whether the drawn heights are those of a hovered bar.
    [[nodiscard]] bool looksHovered() const { return m_in.hoverHeight == m_in.indicatorHeight; }
    /// From the smallest to the largest value.
    [[nodiscard]] double range() const { return m_range; }
    [[nodiscard]] bool hasRange() const { return m_range > 0; }
    /// What lies between the bar's end and the centre of a knob at that end.
    [[nodiscard]] double knobInset() const { return m_knobInset; }
    /// The way of the knob's centre from one end to the other.
    [[nodiscard]] double usableLength() const { return m_length; }

    // Only with a range. Deliberate: values count from 0, not from the smallest one.

    /// Absent unless more is loaded than played.
    [[nodiscard]] std::optional<QRectF> preloadedPart() const;
    [[nodiscard]] QRectF playedPart() const;
    /// Deliberate: neither held within the bar nor moved by the padding.
    [[nodiscard]] QRectF tick(double value) const;
    [[nodiscard]] QRectF clip(double start, double end) const;

    [[nodiscard]] double knobCentre() const;
    /// For a knob image of this size; an image without a height gives an empty rectangle.
    [[nodiscard]] QRectF knob(const QSizeF &image) const;

    /// The value under a pointer that drags: from minValue to maxValue.
    [[nodiscard]] double valueAt(double pointerX) const;
    /// The part of the way, 0 to 1, under a pointer that hovers; 0 for a bar without length.
    [[nodiscard]] double fractionAt(double pointerX) const;

private:
    [[nodiscard]] double shownValue() const;
    [[nodiscard]] double along(double value) const;
    [[nodiscard]] double held(double position) const;

    Input m_in;
    double m_range;
    double m_knobInset;
    double m_length;
};
