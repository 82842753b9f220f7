// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>

#include <KXFoundation/CustomComponent/PlaybackBarGeometry.h>
#include <KXFoundation/CustomComponent/PlaybackBarLook.h>
#include <KXFoundation/CustomComponent/PlaybackBarPainter.h>
#include <KXFoundation/CustomComponent/StarClips.h>
#include <KXFoundation/Platform/UI/Application.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/KeyboardFocus.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double least = 0.0001; // what is smaller counts as nothing
constexpr double knobOverhang = 28.0; // by which the knob is higher than the bar is thick
constexpr auto trackingOptions = kx::TrackingOptions::fromInt(0x143); // entered and exited, moved, active app, inside

} // namespace

PNProgressIndicator::PNProgressIndicator(QWidget *parent)
    : PNProgressIndicator(QRectF(), parent)
{
}

PNProgressIndicator::PNProgressIndicator(const QRectF &frame, QWidget *parent)
    : kx::View(parent)
    , m_keyboardFocus(std::make_unique<kx::KeyboardFocus>())
    , m_look(std::make_unique<PlaybackBarLook>())
    , m_clips(std::make_unique<StarClips>())
    , m_painter(std::make_unique<PlaybackBarPainter>())
{
    setFrame(frame);
    m_normalHeight = bounds().height() > least ? bounds().height() : 18.0;
    m_hoverHeight = 2 * m_normalHeight;
    updateDrawHeight(m_normalHeight);
    setFocusPolicy(Qt::TabFocus);
    makeAccessible();
}

PNProgressIndicator::~PNProgressIndicator() = default;

void PNProgressIndicator::setPlayedValue(double value)
{
    if (m_isMouseDown || m_playedValue == value)
        return;
    const PlaybackBarGeometry before = barGeometry();
    m_playedValue = value;
    displayMove(before);
    const QPointer<PNProgressIndicator> alive(this);
    if (isStarMode())
        giveNotices();
    if (alive) {
        valueWasChanged(*this);
        Q_EMIT playedValueChanged(value);
    }
}

void PNProgressIndicator::setPreloadValue(double value)
{
    if (m_preloadValue == value)
        return;
    m_preloadValue = value;
    setNeedsDisplay();
    Q_EMIT preloadValueChanged(value);
}

void PNProgressIndicator::setMinValue(double value)
{
    if (m_minValue == value)
        return;
    m_minValue = value;
    setNeedsDisplay();
    Q_EMIT minValueChanged(value);
}

void PNProgressIndicator::setMaxValue(double value)
{
    if (m_maxValue == value)
        return;
    m_maxValue = value;
    setNeedsDisplay();
    Q_EMIT maxValueChanged(value);
}

QList<double> PNProgressIndicator::tags() const
{
    return m_look->tags;
}

void PNProgressIndicator::setTags(const QList<double> &tags)
{
    m_look->tags = tags;
}

kx::Color PNProgressIndicator::stopColor() const
{
    return m_look->stopColor;
}

void PNProgressIndicator::setStopColor(const kx::Color &color)
{
    m_look->stopColor = color;
}

kx::Color PNProgressIndicator::playedStartColor() const
{
    return m_look->playedStartColor;
}

void PNProgressIndicator::setPlayedStartColor(const kx::Color &color)
{
    setColor(m_look->playedStartColor, color);
}

kx::Color PNProgressIndicator::playedEndColor() const
{
    return m_look->playedEndColor;
}

void PNProgressIndicator::setPlayedEndColor(const kx::Color &color)
{
    setColor(m_look->playedEndColor, color);
}

kx::Color PNProgressIndicator::preloadColor() const
{
    return m_look->preloadColor;
}

void PNProgressIndicator::setPreloadColor(const kx::Color &color)
{
    setColor(m_look->preloadColor, color);
}

kx::Color PNProgressIndicator::unLoadColor() const
{
    return m_look->unLoadColor;
}

void PNProgressIndicator::setUnLoadColor(const kx::Color &color)
{
    if (m_look->unLoadColor != color)
        setNeedsDisplay();
}

kx::Color PNProgressIndicator::starClipsColor() const
{
    return m_look->starClipsColor;
}

void PNProgressIndicator::setStarClipsColor(const kx::Color &color)
{
    m_look->starClipsColor = color;
}

bool PNProgressIndicator::rounded() const
{
    return m_look->rounded;
}

void PNProgressIndicator::setRounded(bool rounded)
{
    if (m_look->rounded == rounded)
        return;
    m_look->rounded = rounded;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

void PNProgressIndicator::setNormalHeight(double height)
{
    m_normalHeight = height;
    updateDrawHeight(height); // Deliberate: while hovered, too
}

void PNProgressIndicator::setHoverHeight(double height)
{
    m_hoverHeight = height;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

void PNProgressIndicator::setHorizontalPadding(double padding)
{
    const double held = padding > 0 ? padding : 0;
    if (!(std::abs(held - m_horizontalPadding) > least))
        return;
    m_horizontalPadding = held;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

void PNProgressIndicator::updateDrawHeight(double height)
{
    m_drawHeight = height;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

double PNProgressIndicator::progressHeight() const
{
    return m_drawHeight - knobOverhang;
}

void PNProgressIndicator::setUserInteraction(bool interacts)
{
    if (m_userInteraction == interacts)
        return;
    m_userInteraction = interacts;
    const QPointer<PNProgressIndicator> alive(this);
    updateTrackingAreas();
    if (alive)
        Q_EMIT userInteractionChanged(interacts);
}

void PNProgressIndicator::onHoveredBar(const HoverHandler &handler, const ExitHandler &onExit)
{
    m_hoveredBarHandler = handler;
    m_exitHoveredBarHandler = onExit;
}

void PNProgressIndicator::switch2StarMode(const QList<double> &starts, const QList<double> &ends)
{
    m_clips->start(starts, ends, m_playedValue);
    setNeedsDisplay();
}

void PNProgressIndicator::reset2NormalMode()
{
    m_clips->stop();
    setNeedsDisplay();
}

bool PNProgressIndicator::isStarMode() const
{
    return m_clips->isOn();
}

QList<double> PNProgressIndicator::starClipStarts() const
{
    return m_clips->starts();
}

QList<double> PNProgressIndicator::starClipEnds() const
{
    return m_clips->ends();
}

qint32 PNProgressIndicator::currentClipIdx() const
{
    return m_clips->currentIndex();
}

double PNProgressIndicator::lastClipEnd() const
{
    return m_clips->lastEnd();
}

double PNProgressIndicator::currentClipEnd() const
{
    return m_clips->currentEnd();
}

QSizeF PNProgressIndicator::intrinsicContentSize() const
{
    return {-1, std::max(m_normalHeight, m_hoverHeight)};
}

// The point is tested in the coordinates in which it arrives, those of the superview.
kx::ViewInterface *PNProgressIndicator::hitTest(const QPointF &point)
{
    return m_userInteraction && kx::pointInRect(point, trackingRect()) ? kx::View::hitTest(point) : nullptr;
}

void PNProgressIndicator::mouseEntered(kx::Event *event)
{
    if (kx::modalWindow() || kx::ignoresMouseEvents(shownWindow()))
        return;
    m_isMouseEnter = true;
    updateDrawHeight(m_hoverHeight);
    mouseMoved(event);
}

void PNProgressIndicator::mouseMoved(kx::Event *event)
{
    if (!m_isMouseEnter || !event)
        return;
    const double fraction = barGeometry().fractionAt(locationInView(*event).x());
    const QPointer<PNProgressIndicator> alive(this);
    if (const HoverHandler handler = m_hoveredBarHandler)
        handler(this, fraction);
    if (alive)
        Q_EMIT barHovered(fraction);
}

void PNProgressIndicator::mouseExited(kx::Event *)
{
    const QPointer<PNProgressIndicator> alive(this);
    endHover();
    if (alive)
        updateDrawHeight(m_normalHeight);
}

void PNProgressIndicator::mouseDown(kx::Event *event)
{
    if (!event || !kx::pointInRect(locationInView(*event), bounds()))
        return;
    m_isMouseDown = true;
    const QPointer<PNProgressIndicator> alive(this);
    endHover();
    if (alive)
        mouseDragged(event);
}

void PNProgressIndicator::mouseDragged(kx::Event *event)
{
    if (!m_isMouseDown || !event)
        return;
    const PlaybackBarGeometry before = barGeometry();
    m_draggedValue = static_cast<float>(before.valueAt(locationInView(*event).x()));
    displayMove(before);
}

void PNProgressIndicator::mouseUp(kx::Event *)
{
    if (!m_isMouseDown)
        return;
    m_isMouseDown = false;
    m_isMouseEnter = true;
    setNeedsDisplay();
    reportDrag();
}

void PNProgressIndicator::pressCancelled()
{
    if (std::exchange(m_isMouseDown, false))
        setNeedsDisplay();
}

void PNProgressIndicator::keyDown(kx::Event *event)
{
    const std::optional<double> value = event && !m_isMouseDown ? valueForKey(*event) : std::nullopt;
    if (value)
        setByUser(*value);
    else
        kx::View::keyDown(event);
}

void PNProgressIndicator::updateTrackingAreas()
{
    kx::View::updateTrackingAreas();
    const QPointer<PNProgressIndicator> alive(this);
    if (m_isMouseEnter)
        mouseExited(nullptr);
    if (alive && m_isMouseDown)
        mouseUp(nullptr);
    if (!alive)
        return;
    for (const kx::TrackingAreaRef &area : trackingAreas())
        removeTrackingArea(area);
    if (m_userInteraction)
        addTrackingArea(std::make_shared<kx::TrackingArea>(trackingRect(), trackingOptions, this));
}

kx::RangeState PNProgressIndicator::rangeState() const
{
    const double all = range();
    return {.value = m_isMouseDown ? m_draggedValue : m_playedValue,
        .minimum = m_minValue,
        .maximum = m_maxValue,
        .step = all / 100,
        .pageStep = all / 10,
        .isAdjustable = m_userInteraction};
}

void PNProgressIndicator::setByUser(double value)
{
    if (!m_userInteraction || m_isMouseDown)
        return;
    m_draggedValue = static_cast<float>(value);
    reportDrag();
}

QString PNProgressIndicator::valueText() const
{
    const double value = rangeState().value;
    return m_valueFormatter ? m_valueFormatter(value) : kx::timeText(value);
}

bool PNProgressIndicator::event(QEvent *event)
{
    return m_keyboardFocus->refuses(*this, *event) || kx::View::event(event);
}

void PNProgressIndicator::drawRect(QPainter &painter, const QRectF &)
{
    m_painter->paint(painter, {barGeometry(), *m_look, *m_clips, bounds().size()});
    if (m_keyboardFocus->isShown(*this))
        kx::drawFocusRing(painter, palette(), QRectF(rect()));
}

void PNProgressIndicator::initPainter(QPainter *) const { }

// The gradient spans the played part: all of it changes with its end.
void PNProgressIndicator::displayMove(const PlaybackBarGeometry &before)
{
    const PlaybackBarGeometry after = barGeometry();
    if (before.isStopped() == after.isStopped() && before.preloadedPart() == after.preloadedPart())
        setNeedsDisplayInRect(m_painter->movedPart({after, *m_look, *m_clips, bounds().size()}));
    else
        setNeedsDisplay();
}

PlaybackBarGeometry PNProgressIndicator::barGeometry() const
{
    return PlaybackBarGeometry({.width = bounds().width(),
        .horizontalPadding = m_horizontalPadding,
        .progressHeight = progressHeight(),
        .indicatorHeight = m_drawHeight,
        .hoverHeight = m_hoverHeight,
        .playedValue = m_playedValue,
        .preloadValue = m_preloadValue,
        .minValue = m_minValue,
        .maxValue = m_maxValue,
        .draggedValue = m_draggedValue,
        .isDragging = m_isMouseDown});
}

QRectF PNProgressIndicator::trackingRect() const
{
    const QRectF area = bounds();
    return {area.x(), area.y() + 6.0, area.width(), area.height() - 20.0};
}

void PNProgressIndicator::setColor(kx::Color &field, const kx::Color &color)
{
    if (field == color)
        return;
    field = color;
    setNeedsDisplay();
}

void PNProgressIndicator::endHover()
{
    if (!m_isMouseEnter)
        return;
    const QPointer<PNProgressIndicator> alive(this);
    if (const ExitHandler handler = m_exitHoveredBarHandler)
        handler(this);
    if (!alive)
        return;
    m_isMouseEnter = false;
    Q_EMIT barHoverExited();
}

void PNProgressIndicator::reportDrag()
{
    if (!(range() > 0))
        return;
    const QPointer<PNProgressIndicator> alive(this);
    const float value = m_draggedValue;
    setPlayedValue(value);
    if (!alive)
        return;
    const double fraction = value / range();
    if (const DragHandler handler = m_draggedIndicatorHandler)
        handler(this, true, fraction);
    if (alive)
        Q_EMIT indicatorDragged(true, fraction);
}

// The second notice is judged by the clips as the handler of the first one left them.
void PNProgressIndicator::giveNotices()
{
    const QPointer<PNProgressIndicator> alive(this);
    const double value = m_playedValue;
    m_clips->follow(value);
    if (m_clips->isAboutToEnd(value, m_starClipEndingAdvance))
        tellOfClip(m_starClipWillEndHandler, &PNProgressIndicator::starClipDurationWillEnd);
    if (alive && isStarMode() && m_clips->hasEnded(value))
        tellOfClip(m_starClipDidEndHandler, &PNProgressIndicator::starClipDurationDidEnd);
}

void PNProgressIndicator::tellOfClip(ClipHandler handler, void (PNProgressIndicator::*signal)(qint32))
{
    const QPointer<PNProgressIndicator> alive(this);
    const qint32 index = m_clips->currentIndex();
    if (handler)
        handler(index, this);
    if (alive)
        Q_EMIT(this->*signal)(index);
}
