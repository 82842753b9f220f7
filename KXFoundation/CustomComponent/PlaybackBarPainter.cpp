// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PlaybackBarPainter.h>

#include <KXFoundation/CustomComponent/PlaybackBarGeometry.h>
#include <KXFoundation/CustomComponent/PlaybackBarLook.h>
#include <KXFoundation/CustomComponent/StarClips.h>
#include <KXFoundation/Platform/UI/DevicePixels.h>
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/PaintableRect.h>

#include <QtGui/QPainter>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

kx::Image knobImage(const PlaybackBarGeometry &geometry)
{
    return kx::Image::named(geometry.looksHovered() ? u"indicator_hover"_s : u"indicator"_s);
}

QRectF movingPart(const PlaybackBarScene &scene, const kx::Image &knob)
{
    const QRectF part = scene.geometry.knob(knob.size());
    return scene.showsPlayed() ? part | scene.geometry.playedPart() : part;
}

void fill(QPainter &painter, const QRectF &rect, const QBrush &brush, bool rounded)
{
    painter.setRenderHint(QPainter::Antialiasing, rounded);
    if (!rounded) {
        painter.fillRect(rect, brush);
        return;
    }
    const double radius = rect.height() * 0.5;
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, std::min(radius, rect.width() * 0.5), radius);
}

} // namespace

struct PlaybackBarPainter::Painting {
    QPainter &painter;
    const PlaybackBarScene &scene;
    kx::DevicePixels device;
    QRectF rows; // those of the bar, across the view, as far as the view shows them

    Painting(QPainter &target, const PlaybackBarScene &shown)
        : painter(target)
        , scene(shown)
        , device(target)
    {
        const QRectF bar = shown.geometry.bar();
        const double top = std::min(bar.y() + bar.height(), shown.view.height());
        rows = flipped({0, bar.y(), shown.view.width(), top - bar.y()});
    }

    /// A rectangle of the view in the coordinates of the painter.
    [[nodiscard]] QRectF flipped(const QRectF &rect) const { return kx::flippedRect(rect, scene.view.height()); }

    /// Leaves out what lies far outside of the view, where the painter's coordinates overflow.
    void fillPart(QPainter &target, const QRectF &part, const kx::Color &color, bool rounded) const
    {
        const QRectF place = flipped(part);
        const double ends = rounded ? place.height() : 0;
        const QRectF seen = rounded ? QRectF(-ends, place.y(), rows.width() + 2 * ends, place.height()) : rows;
        if (color && kx::isPaintable(place) && place.intersects(seen))
            fill(target, place & seen, color.toQColor(), rounded);
    }

    /// The played part as far as it is visible.
    [[nodiscard]] QRectF played() const
    {
        const QRectF part = scene.geometry.playedPart();
        return {part.x(), rows.y(), part.width(), rows.height()};
    }

    /// The pixels to which the colours of the played part are copied; empty where it is drawn in another way.
    [[nodiscard]] QRect playedPixels() const
    {
        const QRectF pixels = device.mapped(played());
        const bool isSmall = pixels.width() * pixels.height() <= kx::KeptDrawing::mostPixels;
        return device.canCopy() && isSmall && !scene.look.rounded ? kx::edgesRounded(pixels) : QRect();
    }
};

bool PlaybackBarScene::showsPlayed() const
{
    return geometry.hasRange() && !clips.isOn() && look.playedStartColor && look.playedEndColor;
}

void PlaybackBarPainter::paint(QPainter &painter, const PlaybackBarScene &scene)
{
    Painting painting(painter, scene);
    const bool hasRows = kx::isPaintable(painting.rows);
    if (scene.geometry.isStopped()) {
        *this = {};
        if (hasRows)
            painting.fillPart(painter, scene.geometry.bar(), scene.look.stopColor, false);
        return;
    }
    const kx::Image knob = knobImage(scene.geometry);
    m_moving = movingPart(scene, knob);
    if (hasRows) {
        paintBar(painting);
        paintMarks(painting);
    }
    paintKnob(painting, knob);
}

QRectF PlaybackBarPainter::movedPart(const PlaybackBarScene &scene) const
{
    return m_moving | movingPart(scene, knobImage(scene.geometry));
}

void PlaybackBarPainter::paintBar(Painting &painting)
{
    if (!painting.scene.showsPlayed()) {
        paintTrack(painting, 0);
        return;
    }
    m_ramp.setColors(painting.scene.look.playedStartColor, painting.scene.look.playedEndColor);
    const QRect pixels = painting.playedPixels();
    if (pixels.isEmpty()) {
        paintTrack(painting, 0);
        drawPlayed(painting);
        return;
    }
    // What the played part covers is not painted twice.
    paintTrack(painting, m_ramp.isOpaque() ? pixels.right() + 1 : 0);
    const int room = qCeil(painting.device.mapped(painting.rows).width()) + 1;
    painting.device.copy(
        pixels.topLeft(), m_ramp.stretched(pixels.width(), pixels.height(), room), QRect(QPoint(0, 0), pixels.size()));
}

void PlaybackBarPainter::paintTrack(Painting &painting, int firstColumn)
{
    const PlaybackBarScene &scene = painting.scene;
    std::optional<QRectF> preloaded;
    if (scene.geometry.hasRange() && !scene.clips.isOn())
        preloaded = scene.geometry.preloadedPart();
    const PlaybackBarLook &look = scene.look;
    m_track.setParts(scene.geometry.bar(), preloaded, look.unLoadColor, look.preloadColor, look.rounded, scene.view);
    const auto drawing = [&](QPainter &painter) {
        painting.fillPart(painter, scene.geometry.bar(), look.unLoadColor, look.rounded);
        if (preloaded)
            painting.fillPart(painter, *preloaded, look.preloadColor, look.rounded);
    };
    m_track.draw(painting.painter, painting.device, painting.rows, std::ref(drawing), kx::KeptDrawing::Place::Exact,
        firstColumn);
}

void PlaybackBarPainter::drawPlayed(Painting &painting)
{
    const QRectF place = painting.flipped(painting.scene.geometry.playedPart());
    if (!kx::isPaintable(place))
        return;
    if (!painting.scene.look.rounded) {
        painting.painter.drawImage(place, m_ramp.row());
        return;
    }
    const PlaybackBarLook &look = painting.scene.look;
    m_roundedPlayed.setParts(place, look.playedStartColor, look.playedEndColor, painting.scene.view);
    const auto drawing = [&](QPainter &painter) {
        QBrush brush(m_ramp.row());
        brush.setTransform(QTransform::fromTranslate(place.x(), place.y())
                               .scale(place.width() / m_ramp.row().width(), place.height()));
        fill(painter, place, brush, true);
    };
    m_roundedPlayed.draw(painting.painter, painting.device, painting.played(), std::ref(drawing));
}

void PlaybackBarPainter::paintMarks(Painting &painting)
{
    const PlaybackBarGeometry &geometry = painting.scene.geometry;
    const PlaybackBarLook &look = painting.scene.look;
    const StarClips &clips = painting.scene.clips;
    const qsizetype count = clips.isOn() ? std::min(clips.starts().size(), clips.ends().size()) : 0;
    if (!geometry.hasRange() || (look.tags.isEmpty() && count == 0)) {
        m_marks.forget();
        return;
    }
    m_marks.setParts(geometry.bar(), geometry.range(), geometry.knobInset(), look.tags, clips.starts(), clips.ends(),
        look.starClipsColor, look.rounded, painting.scene.view);
    const auto drawing = [&](QPainter &painter) {
        const kx::Color tickColor = kx::Color::white(1.0, 0.45);
        for (const double tag : look.tags)
            painting.fillPart(painter, geometry.tick(tag), tickColor, false);
        for (qsizetype i = 0; i < count; ++i)
            painting.fillPart(
                painter, geometry.clip(clips.starts().at(i), clips.ends().at(i)), look.starClipsColor, look.rounded);
    };
    m_marks.draw(painting.painter, painting.device, painting.rows, std::ref(drawing));
}

void PlaybackBarPainter::paintKnob(Painting &painting, const kx::Image &image)
{
    const QRectF place = painting.flipped(painting.scene.geometry.knob(image.size()));
    if (!image || !kx::isPaintable(place))
        return;
    const auto drawing = [&](QPainter &painter) { image.draw(painter, place); };
    if (image.hasDrawingHandler()) { // which may paint another picture each time
        drawing(painting.painter);
        return;
    }
    m_knob.setParts(image);
    m_knob.draw(painting.painter, painting.device, place, std::ref(drawing), kx::KeptDrawing::Place::SnappedAcross);
}
