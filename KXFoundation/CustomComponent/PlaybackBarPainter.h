// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/CustomComponent/ColorRamp.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/KeptDrawing.h>

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>

#include <optional>

class PlaybackBarGeometry;
class QPainter;
class StarClips;
struct PlaybackBarLook;

/// What a painting of a playback bar shows.
struct PlaybackBarScene {
    const PlaybackBarGeometry &geometry;
    const PlaybackBarLook &look;
    const StarClips &clips;
    QSizeF view; ///< the size of the view

    /// Whether there is a played part to be shown.
    [[nodiscard]] bool showsPlayed() const;
};

/// Paints a playback bar. Its layers are kept as pixels, each until something about it changes: the track with the
/// preloaded part, the played part, ticks with clips, and the knob. So a moved knob costs a new row of colours, and a
/// thousand clips cost what a few do.
class PlaybackBarPainter {
public:
    void paint(QPainter &painter, const PlaybackBarScene &scene);
    /// What another value changes on the screen: the played part and the knob, as they were painted last and as they
    /// are in this scene, with a pixel around for what is blurred by antialiasing. In the view's coordinates.
    [[nodiscard]] QRectF movedPart(const PlaybackBarScene &scene) const;

private:
    struct Painting;

    void paintBar(Painting &painting);
    void paintTrack(Painting &painting, int firstColumn);
    void drawPlayed(Painting &painting);
    void paintMarks(Painting &painting);
    void paintKnob(Painting &painting, const kx::Image &image);

    QRectF m_moving; // the played part and the knob as painted last
    ColorRamp m_ramp;
    kx::KeptDrawingOf<QRectF, std::optional<QRectF>, kx::Color, kx::Color, bool, QSizeF> m_track;
    kx::KeptDrawingOf<QRectF, kx::Color, kx::Color, QSizeF> m_roundedPlayed;
    kx::KeptDrawingOf<QRectF, double, double, QList<double>, QList<double>, QList<double>, kx::Color, bool, QSizeF>
        m_marks;
    kx::KeptDrawingOf<kx::Image> m_knob;
};
