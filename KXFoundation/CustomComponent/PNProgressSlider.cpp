// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNProgressSlider.h>

#include <KXFoundation/CustomComponent/SliderGeometry.h>
#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/KeyboardFocus.h>
#include <KXFoundation/Platform/UI/PaintableRect.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <QtCore/QMetaMethod>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Entered and exited, moved, cursor update, active app, inside, visible rectangle, during a drag.
constexpr auto trackingOptions = kx::TrackingOptions::fromInt(0x747);

qint64 saturated(double value)
{
    constexpr double limit = 9223372036854775807.0; // rounds up to 2^63
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<qint64>::max();
    return value <= -limit ? std::numeric_limits<qint64>::min() : static_cast<qint64>(value);
}

} // namespace

PNProgressSlider::PNProgressSlider(QWidget *parent)
    : PNProgressSlider(QRectF(), parent)
{
}

PNProgressSlider::PNProgressSlider(const QRectF &frame, QWidget *parent)
    : kx::View(parent)
    , m_mainColor(kx::Color::rgba(231.0 / 255.0, 60.0 / 255.0, 49.0 / 255.0, 1.0))
    , m_bgColor(kx::Color::white(1.0, 0.45))
    , m_keyboardFocus(std::make_unique<kx::KeyboardFocus>())
{
    setFrame(frame);
    setFocusPolicy(Qt::TabFocus);
    makeAccessible();
}

PNProgressSlider::~PNProgressSlider() = default;

void PNProgressSlider::setProgressValue(double fraction)
{
    if (m_progressValue == fraction)
        return;
    m_progressValue = fraction;
    setNeedsDisplay();
    valueWasChanged(*this);
    Q_EMIT progressValueChanged(fraction);
}

double PNProgressSlider::currentValue() const
{
    return range() > 0 ? valueAt(m_progressValue) : 0;
}

// The nearest end of a segment is found in single precision, halves going away from zero.
double PNProgressSlider::valueAt(double fraction) const
{
    if (!isSegment())
        return range() * fraction + m_minValue;
    const float step = 1.0F / static_cast<float>(m_segementCount);
    const float index = std::round(static_cast<float>(fraction / step));
    return index * (range() / static_cast<double>(m_segementCount)) + m_minValue;
}

void PNProgressSlider::setCurrentValue(double value)
{
    if (!m_isMouseDown && range() > 0)
        setProgressValue(fractionOf(value));
}

qint64 PNProgressSlider::currentIndex() const
{
    if (!isSegment() || !(range() > 0))
        return 0;
    return saturated((currentValue() - m_minValue) / (range() / static_cast<double>(m_segementCount)));
}

void PNProgressSlider::setMinValue(double value)
{
    if (m_minValue == value)
        return;
    m_minValue = value;
    setNeedsDisplay();
    Q_EMIT minValueChanged(value);
}

void PNProgressSlider::setMaxValue(double value)
{
    if (m_maxValue == value)
        return;
    m_maxValue = value;
    setNeedsDisplay();
    Q_EMIT maxValueChanged(value);
}

void PNProgressSlider::setMainColor(const kx::Color &color)
{
    if (m_mainColor == color)
        return;
    m_mainColor = color;
    setNeedsDisplay();
}

void PNProgressSlider::setBgColor(const kx::Color &color)
{
    if (m_bgColor != color)
        setNeedsDisplay();
}

void PNProgressSlider::setUserInteraction(bool interacts)
{
    if (m_userInteraction == interacts)
        return;
    m_userInteraction = interacts;
    updateTrackingAreas();
    Q_EMIT userInteractionChanged(interacts);
}

kx::ViewInterface *PNProgressSlider::hitTest(const QPointF &point)
{
    return m_userInteraction ? kx::View::hitTest(point) : nullptr;
}

void PNProgressSlider::mouseEntered(kx::Event *)
{
    m_isHover = true;
    setNeedsDisplay();
}

void PNProgressSlider::mouseExited(kx::Event *)
{
    m_isHover = false;
    setNeedsDisplay();
    draggedIndicatorHandler();
}

void PNProgressSlider::mouseDown(kx::Event *event)
{
    if (!event || !SliderGeometry(bounds().size(), m_useVertical).fractionAt(locationInView(*event), m_knobRect))
        return;
    m_isMouseDown = true;
    mouseDragged(event);
}

void PNProgressSlider::mouseDragged(kx::Event *event)
{
    if (!m_isMouseDown || !event)
        return;
    const std::optional<double> fraction =
        SliderGeometry(bounds().size(), m_useVertical).fractionAt(locationInView(*event), m_knobRect);
    if (!fraction)
        return;
    const QPointer<PNProgressSlider> alive(this);
    setProgressValue(*fraction);
    if (alive)
        report(false);
}

void PNProgressSlider::mouseUp(kx::Event *)
{
    draggedIndicatorHandler();
}

void PNProgressSlider::cursorUpdate(kx::Event *)
{
    if (!kx::ignoresMouseEvents(shownWindow()))
        kx::Cursor::set(Qt::PointingHandCursor);
}

void PNProgressSlider::pressCancelled()
{
    if (std::exchange(m_isMouseDown, false))
        setNeedsDisplay();
}

void PNProgressSlider::keyDown(kx::Event *event)
{
    const std::optional<double> value = event && !m_isMouseDown ? valueForKey(*event) : std::nullopt;
    if (value)
        setByUser(*value);
    else
        kx::View::keyDown(event);
}

void PNProgressSlider::updateTrackingAreas()
{
    kx::View::updateTrackingAreas();
    if (m_trackingArea) {
        removeTrackingArea(m_trackingArea);
        return;
    }
    m_trackingArea = std::make_shared<kx::TrackingArea>(bounds(), trackingOptions, this);
    addTrackingArea(m_trackingArea);
}

kx::RangeState PNProgressSlider::rangeState() const
{
    const double segment = range() / static_cast<double>(std::max<qint64>(m_segementCount, 1));
    return {.value = currentValue(),
        .minimum = m_minValue,
        .maximum = m_maxValue,
        .step = isSegment() ? segment : range() / 100,
        .pageStep = isSegment() ? segment : range() / 10,
        .isAdjustable = m_userInteraction};
}

void PNProgressSlider::setByUser(double value)
{
    const QPointer<PNProgressSlider> alive(this);
    if (!m_userInteraction || m_isMouseDown)
        return;
    setCurrentValue(value);
    if (alive)
        settle();
}

// Beyond 2^24 segments, single precision passes over some of them, and the end of a drag may be another one again.
double PNProgressSlider::keptValue(double value) const
{
    const double kept = valueAt(fractionOf(value));
    return isHeard() ? valueAt(fractionOf(kept)) : kept;
}

QString PNProgressSlider::valueText() const
{
    return m_valueFormatter ? m_valueFormatter(currentValue()) : QString::number(currentValue());
}

bool PNProgressSlider::event(QEvent *event)
{
    return m_keyboardFocus->refuses(*this, *event) || kx::View::event(event);
}

void PNProgressSlider::drawRect(QPainter &painter, const QRectF &)
{
    const SliderGeometry geometry(bounds().size(), m_useVertical);
    const auto fill = [&](const QRectF &rect, const kx::Color &color) {
        if (!kx::isPaintable(rect) || !color)
            return;
        painter.setBrush(color.toQColor());
        painter.drawRoundedRect(widgetRect(rect), geometry.trackRadius(), geometry.trackRadius());
    };
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    fill(geometry.track(), m_bgColor);
    fill(geometry.filledPart(m_progressValue), m_mainColor);
    const bool grows = m_isMouseDown && !m_hoverknobImage;
    m_knobRect = geometry.knob(m_progressValue, grows ? geometry.knobScaleSize() : geometry.knobNormalSize());
    const kx::Image &image = m_hoverknobImage && m_isHover ? m_hoverknobImage : m_knobImage;
    if (kx::isPaintable(m_knobRect))
        image.draw(painter, widgetRect(m_knobRect));
    if (isSegment())
        drawMarks(painter);
    if (m_keyboardFocus->isShown(*this))
        kx::drawFocusRing(painter, palette(), QRectF(rect()));
}

void PNProgressSlider::drawMarks(QPainter &painter) const
{
    const SliderGeometry geometry(bounds().size(), m_useVertical);
    painter.setBrush((m_segementColor ? m_segementColor : kx::Color::white(1.0, 0.9)).toQColor());
    // More marks than the slider has pixels cover all of it.
    const qint64 shown = std::min<qint64>(m_segementCount, std::max(1, std::max(width(), height())) * 4);
    for (qint64 i = 0; i <= shown; ++i) {
        const QRectF mark = geometry.mark(i, shown);
        if (kx::isPaintable(mark) && mark.intersects(bounds()))
            painter.drawRoundedRect(widgetRect(mark), mark.width() * 0.5, mark.width() * 0.5);
    }
}

void PNProgressSlider::draggedIndicatorHandler()
{
    if (!m_isMouseDown)
        return;
    m_isMouseDown = false;
    setNeedsDisplay();
    settle();
}

void PNProgressSlider::settle()
{
    const QPointer<PNProgressSlider> alive(this);
    if (isHeard())
        setCurrentValue(currentValue()); // to the end of a segment
    if (alive)
        report(true);
}

void PNProgressSlider::report(bool finished)
{
    const QPointer<PNProgressSlider> alive(this);
    if (const DragHandler handler = m_draggedIndicatorHandler)
        handler(this, finished, currentValue());
    if (alive)
        Q_EMIT indicatorDragged(finished, currentValue());
}

bool PNProgressSlider::isHeard() const
{
    return m_draggedIndicatorHandler || isSignalConnected(QMetaMethod::fromSignal(&PNProgressSlider::indicatorDragged));
}
