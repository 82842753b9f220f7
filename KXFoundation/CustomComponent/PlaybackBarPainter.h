// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Color.h>

#include <QtCore/QRectF>
#include <QtGui/QImage>

class PNProgressIndicator;
class PlaybackBarGeometry;
class QPainter;
class StarClips;

/// Paints a playback bar. Keeps the played part's colours, so that a moved knob costs no new gradient.
class PlaybackBarPainter {
public:
    void paint(QPainter &painter, const PNProgressIndicator &bar, const PlaybackBarGeometry &geometry,
        const StarClips &clips, const QRectF &dirtyRect);
    /// What a change of the played value repaints: the played part and the knob. In the bar's coordinates, with a pixel
    /// around for what is blurred by antialiasing.
    [[nodiscard]] QRectF movingPart(const PlaybackBarGeometry &geometry) const;

private:
    void fill(QPainter &painter, const QRectF &rect, const kx::Color &color) const;
    void fillPlayed(QPainter &painter, const QRectF &rect);
    void paintKnob(QPainter &painter, const PlaybackBarGeometry &geometry) const;

    const PNProgressIndicator *m_bar = nullptr; // while painting
    kx::Color m_rampStart;
    kx::Color m_rampEnd;
    QImage m_ramp; // one pixel high
};
