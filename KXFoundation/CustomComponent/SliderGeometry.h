// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>

#include <optional>

/// Where each part of a slider lies. Coordinates are the view's own, in logical pixels with y growing upwards. "Along"
/// is the direction in which the knob moves, "across" the other one.
class SliderGeometry {
public:
    SliderGeometry(const QSizeF &size, bool vertical);

    /// The knob at rest: a square, 1.4 times smaller than the slider across, rounded up.
    [[nodiscard]] QSizeF knobNormalSize() const { return m_knob; }
    /// The knob while it is dragged, when it has no image for that.
    [[nodiscard]] QSizeF knobScaleSize() const { return m_knob * 1.4; }
    /// Where the pointer counts: as long as the way of the knob's centre, so that a large knob stays inside.
    [[nodiscard]] QRectF cellRect() const;
    [[nodiscard]] QRectF track() const;
    [[nodiscard]] double trackLength() const { return m_vertical ? track().height() : track().width(); }
    /// The radius of the track's round ends.
    [[nodiscard]] double trackRadius() const;
    [[nodiscard]] QRectF filledPart(double progress) const;
    [[nodiscard]] QRectF knob(double progress, const QSizeF &size) const;
    /// The mark before segment `index`, and behind the last one for index = count. Deliberate: marks lie along x and
    /// take their size from the track's height, for a vertical slider too.
    [[nodiscard]] QRectF mark(qint64 index, qint64 count) const;

    /// The part of the way, 0 to 1, under the pointer; absent when it is neither in cellRect() nor in `knobRect`.
    [[nodiscard]] std::optional<double> fractionAt(const QPointF &pointer, const QRectF &knobRect) const;

private:
    QSizeF m_size;
    QSizeF m_knob;
    bool m_vertical;
};
