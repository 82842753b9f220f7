// SPDX-License-Identifier: MIT
#include <KXFoundation/UIBase/View/PNBaseView.h>

#include <KXFoundation/Platform/Core/Strings.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/NotificationCenter.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <utility>

namespace {

constexpr auto trackingOptions = kx::TrackingOption::MouseEnteredAndExited | kx::TrackingOption::MouseMoved
    | kx::TrackingOption::CursorUpdate | kx::TrackingOption::ActiveInActiveApp | kx::TrackingOption::AssumeInside
    | kx::TrackingOption::InVisibleRect;

// Exactly; QMarginsF compares with a tolerance.
bool areEqual(const QMarginsF &a, const QMarginsF &b)
{
    return a.top() == b.top() && a.left() == b.left() && a.bottom() == b.bottom() && a.right() == b.right();
}

} // namespace

PNBaseView::PNBaseView(QWidget *parent)
    : PNBaseView(QRectF(), parent)
{
}

PNBaseView::PNBaseView(const QRectF &frame, QWidget *parent)
    : kx::View(parent)
{
    setFrame(frame);
    setFocusPolicy(Qt::ClickFocus);
    commonInit();
}

PNBaseView::~PNBaseView()
{
    kx::NotificationCenter::defaultCenter().removeObserver(this);
}

void PNBaseView::commonInit()
{
    m_userInteraction = true;
    PNBaseView::updateTrackingAreas();
    kx::NotificationCenter::defaultCenter().addObserver(
        this, &PNBaseView::applicationDidResignActive, kx::ApplicationDidResignActiveNotification);
}

void PNBaseView::setBackgroundColor(const kx::Color &color)
{
    m_backgroundColor = color;
    setWantsLayer(true);
    layer()->setBackgroundColor(color);
    Q_EMIT backgroundColorChanged();
}

void PNBaseView::setDelegate(PNBaseViewDelegate *delegate)
{
    m_delegate = delegate ? delegate->weakReference() : std::weak_ptr<PNBaseViewDelegate>();
}

void PNBaseView::setUserInteraction(bool interacts)
{
    if (m_userInteraction == interacts)
        return;
    m_userInteraction = interacts;
    const QPointer<PNBaseView> alive(this);
    updateTrackingAreas();
    if (alive)
        Q_EMIT userInteractionChanged(interacts);
}

void PNBaseView::setNeedTracking(bool needed)
{
    if (m_needTracking == needed)
        return;
    m_needTracking = needed;
    const QPointer<PNBaseView> alive(this);
    updateTrackingAreas();
    if (alive)
        Q_EMIT needTrackingChanged(needed);
}

void PNBaseView::setInset(const QMarginsF &inset)
{
    if (areEqual(m_inset, inset))
        return;
    m_inset = inset;
    const QPointer<PNBaseView> alive(this);
    updateTrackingAreas();
    if (alive)
        Q_EMIT insetChanged(inset);
}

void PNBaseView::setName(const QString &name)
{
    if (!kx::same(std::exchange(m_name, name), name))
        Q_EMIT nameChanged(name);
}

kx::ViewInterface *PNBaseView::hitTest(const QPointF &point)
{
    return m_userInteraction && !isExplicitlyHidden() ? kx::View::hitTest(point) : nullptr;
}

bool PNBaseView::acceptsFirstResponder() const
{
    return true;
}

void PNBaseView::setVisible(bool visible)
{
    const QPointer<PNBaseView> alive(this);
    kx::View::setVisible(visible);
    if (alive)
        updateTrackingAreas();
}

void PNBaseView::applicationDidResignActive(const kx::Notification &)
{
    updateTrackingAreas();
}

void PNBaseView::updateTrackingAreas()
{
    const QPointer<PNBaseView> alive(this);
    kx::View::updateTrackingAreas();
    // An exit that nobody was told of: the view was hidden beneath the pointer, or the application went to the back.
    if (std::exchange(m_hovered, false))
        tellExited(nullptr);
    if (!alive)
        return;
    removeTrackingArea(std::exchange(m_trackingArea, nullptr));
    if (!m_userInteraction || !m_needTracking || isExplicitlyHidden())
        return;
    m_trackingArea = std::make_shared<kx::TrackingArea>(trackingRect(), trackingOptions, this);
    addTrackingArea(m_trackingArea);
}

QRectF PNBaseView::trackingRect() const
{
    const QRectF area = bounds();
    return {area.x() + m_inset.left(), area.y() + m_inset.bottom(), area.width() - m_inset.right() - m_inset.left(),
        area.height() - m_inset.bottom() - m_inset.top()};
}

void PNBaseView::mouseEntered(kx::Event *event)
{
    if (kx::ignoresMouseEvents(shownWindow()))
        return;
    m_hovered = true;
    if (tell(&PNBaseViewDelegate::baseViewMouseEntered, event))
        Q_EMIT entered();
}

void PNBaseView::mouseExited(kx::Event *event)
{
    if (kx::ignoresMouseEvents(shownWindow()))
        return;
    m_hovered = false;
    tellExited(event);
}

void PNBaseView::tellExited(kx::Event *event)
{
    if (tell(&PNBaseViewDelegate::baseViewMouseExited, event))
        Q_EMIT exited();
}

void PNBaseView::mouseMoved(kx::Event *event)
{
    if (!kx::ignoresMouseEvents(shownWindow()) && tell(&PNBaseViewDelegate::baseViewMouseMoved, event) && event)
        Q_EMIT moved(locationInView(*event));
}

void PNBaseView::mouseDown(kx::Event *event)
{
    if (kx::ignoresMouseEvents(shownWindow()))
        return;
    const QPointer<PNBaseView> alive(this);
    if (tell(&PNBaseViewDelegate::baseViewMouseDown, event) && event)
        Q_EMIT pressed(locationInView(*event));
    if (alive && !m_hovered)
        updateTrackingAreas(); // the area seems not to work any more
}

void PNBaseView::mouseUp(kx::Event *event)
{
    if (!kx::ignoresMouseEvents(shownWindow()) && tell(&PNBaseViewDelegate::baseViewMouseUp, event) && event)
        Q_EMIT released(locationInView(*event));
}

void PNBaseView::mouseDragged(kx::Event *event)
{
    if (!kx::ignoresMouseEvents(shownWindow()) && tell(&PNBaseViewDelegate::baseViewMouseDragged, event) && event)
        Q_EMIT dragged(locationInView(*event));
}

void PNBaseView::cursorUpdate(kx::Event *event)
{
    if (kx::ignoresMouseEvents(shownWindow()) || !m_needTracking)
        return;
    const QPointer<PNBaseView> alive(this);
    PNBaseViewDelegate *const asked = delegate();
    if (asked && !asked->baseViewCursorNeedUpdate(this, event))
        return;
    if (alive && event && kx::pointInRect(locationInView(*event), trackingRect()))
        kx::View::cursorUpdate(event);
}

// Whether the view is still there afterwards.
bool PNBaseView::tell(Operation operation, kx::Event *event)
{
    const QPointer<PNBaseView> alive(this);
    if (PNBaseViewDelegate *const told = delegate())
        (told->*operation)(this, event);
    return alive;
}
