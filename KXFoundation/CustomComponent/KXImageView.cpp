// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/KXImageView.h>

#include <KXFoundation/CustomComponent/ControlStyle.h>
#include <KXFoundation/Platform/UI/Application.h>
#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <QtCore/QMetaMethod>

#include <utility>

KXImageView::KXImageView(QWidget *parent)
    : KXImageView(QRectF(), parent)
{
}

KXImageView::KXImageView(const QRectF &frame, QWidget *parent)
    : kx::ImageView(parent)
{
    setFrame(frame);
}

KXImageView::~KXImageView() = default;

void KXImageView::awakeFromNib()
{
    setUserInteraction(true);
}

void KXImageView::setUserInteraction(bool interacts)
{
    if (std::exchange(m_userInteraction, interacts) != interacts)
        Q_EMIT userInteractionChanged(interacts);
}

void KXImageView::setNeedIBeamCursor(bool needed)
{
    if (std::exchange(m_needIBeamCursor, needed) != needed)
        Q_EMIT needIBeamCursorChanged(needed);
}

kx::ViewInterface *KXImageView::hitTest(const QPointF &point)
{
    return m_userInteraction && !isExplicitlyHidden() ? kx::ImageView::hitTest(point) : nullptr;
}

bool KXImageView::mouseDownCanMoveWindow() const
{
    return !m_userInteraction || isExplicitlyHidden();
}

bool KXImageView::isPressable() const
{
    return m_userInteraction && (m_imageViewClick || isSignalConnected(QMetaMethod::fromSignal(&KXImageView::clicked)));
}

void KXImageView::press()
{
    mouseDown(nullptr);
}

void KXImageView::mouseDown(kx::Event *)
{
    const QPointer<KXImageView> alive(this);
    if (const auto click = m_imageViewClick)
        click();
    if (alive)
        Q_EMIT clicked();
}

void KXImageView::mouseEntered(kx::Event *)
{
    if (!kx::modalWindow())
        setHovered(true);
}

void KXImageView::mouseExited(kx::Event *)
{
    if (kx::modalWindow())
        return;
    const QPointer<KXImageView> alive(this);
    setHovered(false);
    if (alive)
        kx::Cursor::set(Qt::ArrowCursor);
}

void KXImageView::cursorUpdate(kx::Event *)
{
    if (!kx::ignoresMouseEvents(shownWindow()))
        kx::Cursor::set(m_needIBeamCursor ? Qt::IBeamCursor : Qt::PointingHandCursor);
}

void KXImageView::updateTrackingAreas()
{
    kx::ImageView::updateTrackingAreas();
    const QPointer<KXImageView> alive(this);
    if (m_hovered)
        setHovered(false);
    if (alive)
        kx::ControlStyle::replaceTrackingArea(*this, m_trackingArea, m_userInteraction && isEnabled());
}

// Unlike the buttons, it keeps quiet about the end of a hover as well while its window ignores the mouse.
void KXImageView::setHovered(bool hovered)
{
    m_hovered = hovered;
    if (!kx::ignoresMouseEvents(shownWindow()))
        kx::ControlStyle::tellHover(*this, m_hoverStateListener, hovered, &KXImageView::hoverStateChanged);
}
