// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PlaybackBarPainter.h>

#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PlaybackBarGeometry.h>
#include <KXFoundation/CustomComponent/StarClips.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/PaintableRect.h>

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int rampLength = 256; // as many colours as a channel can tell apart

kx::Image knobImage(const PlaybackBarGeometry &geometry)
{
    return kx::Image::named(geometry.looksHovered() ? u"indicator_hover"_s : u"indicator"_s);
}

} // namespace

void PlaybackBarPainter::paint(QPainter &painter, const PNProgressIndicator &bar, const PlaybackBarGeometry &geometry,
    const StarClips &clips, const QRectF &dirtyRect)
{
    m_bar = &bar;
    if (geometry.isStopped()) {
        if (bar.stopColor() && kx::isPaintable(geometry.bar()))
            painter.fillRect(bar.widgetRect(geometry.bar()), bar.stopColor().toQColor());
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing, bar.rounded());
    fill(painter, geometry.bar(), bar.unLoadColor());
    if (geometry.hasRange()) {
        if (!clips.isOn()) {
            if (const auto preloaded = geometry.preloadedPart())
                fill(painter, *preloaded, bar.preloadColor());
            fillPlayed(painter, geometry.playedPart());
        }
        const QColor tickColor = kx::Color::white(1.0, 0.45).toQColor();
        painter.setRenderHint(QPainter::Antialiasing, false);
        for (const double tag : bar.tags()) {
            const QRectF tick = geometry.tick(tag);
            if (kx::isPaintable(tick) && tick.intersects(dirtyRect))
                painter.fillRect(bar.widgetRect(tick), tickColor);
        }
        painter.setRenderHint(QPainter::Antialiasing, bar.rounded());
        const qsizetype count = clips.isOn() ? std::min(clips.starts().size(), clips.ends().size()) : 0;
        for (qsizetype i = 0; i < count; ++i) {
            const QRectF clip = geometry.clip(clips.starts().at(i), clips.ends().at(i));
            if (clip.intersects(dirtyRect))
                fill(painter, clip, bar.starClipsColor());
        }
    }
    paintKnob(painter, geometry);
}

QRectF PlaybackBarPainter::movingPart(const PlaybackBarGeometry &geometry) const
{
    QRectF part = geometry.knob(knobImage(geometry).size());
    if (geometry.hasRange())
        part |= geometry.playedPart();
    return part.adjusted(-1, -1, 1, 1);
}

void PlaybackBarPainter::fill(QPainter &painter, const QRectF &rect, const kx::Color &color) const
{
    if (!kx::isPaintable(rect) || !color)
        return;
    const QRectF place = m_bar->widgetRect(rect);
    if (!m_bar->rounded()) {
        painter.fillRect(place, color.toQColor());
        return;
    }
    const double radius = rect.height() * 0.5;
    painter.setPen(Qt::NoPen);
    painter.setBrush(color.toQColor());
    painter.drawRoundedRect(place, std::min(radius, rect.width() * 0.5), radius);
}

void PlaybackBarPainter::fillPlayed(QPainter &painter, const QRectF &rect)
{
    if (!kx::isPaintable(rect) || !m_bar->playedStartColor() || !m_bar->playedEndColor())
        return;
    if (m_ramp.isNull() || m_rampStart != m_bar->playedStartColor() || m_rampEnd != m_bar->playedEndColor()) {
        m_rampStart = m_bar->playedStartColor();
        m_rampEnd = m_bar->playedEndColor();
        m_ramp = QImage(rampLength, 1, QImage::Format_ARGB32_Premultiplied);
        m_ramp.fill(Qt::transparent);
        QLinearGradient gradient(0, 0, rampLength, 0);
        gradient.setColorAt(0, m_rampStart.toQColor());
        gradient.setColorAt(1, m_rampEnd.toQColor());
        QPainter(&m_ramp).fillRect(m_ramp.rect(), gradient);
    }
    const QRectF place = m_bar->widgetRect(rect);
    if (!m_bar->rounded()) {
        painter.drawImage(place, m_ramp);
        return;
    }
    QBrush brush(m_ramp);
    brush.setTransform(
        QTransform::fromTranslate(place.x(), place.y()).scale(place.width() / rampLength, place.height()));
    const double radius = rect.height() * 0.5;
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(place, std::min(radius, rect.width() * 0.5), radius);
}

void PlaybackBarPainter::paintKnob(QPainter &painter, const PlaybackBarGeometry &geometry) const
{
    const kx::Image image = knobImage(geometry);
    const QRectF place = geometry.knob(image.size());
    if (image && kx::isPaintable(place))
        image.draw(painter, m_bar->widgetRect(place));
}
