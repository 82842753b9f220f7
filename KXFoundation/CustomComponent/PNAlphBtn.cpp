// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNAlphBtn.h>

#include <KXFoundation/Category/ImageKXTools.h>
#include <KXFoundation/CustomComponent/ControlStyle.h>
#include <KXFoundation/Platform/UI/Application.h>
#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

namespace {

constexpr float opacityAtRest = 0.45F; // 0.44999998807907104: the single-precision value is the one that counts

} // namespace

kx::Image PNAlphBtn::Look::atRest() const
{
    if (!faint && image)
        faint = kx::imageWithAlpha(image, opacityAtRest);
    return faint;
}

PNAlphBtn::PNAlphBtn(QWidget *parent)
    : PNAlphBtn(QRectF(), parent)
{
}

PNAlphBtn::PNAlphBtn(const QRectF &frame, QWidget *parent)
    : kx::Button(parent)
{
    setFrame(frame);
}

PNAlphBtn::~PNAlphBtn() = default;

void PNAlphBtn::awakeFromNib()
{
    if (!m_normal.image)
        m_normal.set(image());
    updateImage();
}

kx::Image PNAlphBtn::normalImage() const
{
    return m_normal.image ? m_normal.atRest() : m_hoverImage;
}

void PNAlphBtn::setNormalImage(const kx::Image &image)
{
    const kx::Image old = lookOfState();
    m_normal.set(image);
    if (lookOfState() != old)
        updateImage();
}

kx::Image PNAlphBtn::hoverImage() const
{
    return m_hoverImage ? m_hoverImage : kx::imageWithAlpha(m_normal.image, 1.0);
}

void PNAlphBtn::setHoverImage(const kx::Image &image)
{
    const kx::Image old = lookOfState();
    m_hoverImage = image;
    if (lookOfState() != old)
        updateImage();
}

kx::Image PNAlphBtn::selectedNormalImage() const
{
    return m_selectedNormal.atRest();
}

void PNAlphBtn::setSelectedNormalImage(const kx::Image &image)
{
    const kx::Image old = lookOfState();
    m_selectedNormal.set(image);
    if (lookOfState() != old)
        updateImage();
}

kx::Image PNAlphBtn::selectedHoverImage() const
{
    return m_selectedHoverImage ? m_selectedHoverImage : kx::imageWithAlpha(m_selectedNormal.image, 1.0);
}

void PNAlphBtn::setSelectedHoverImage(const kx::Image &image)
{
    const kx::Image old = lookOfState();
    m_selectedHoverImage = image;
    if (lookOfState() != old)
        updateImage();
}

void PNAlphBtn::setToolTips(const QString &text)
{
    m_toolTips = text;
    showToolTip();
}

void PNAlphBtn::setSelectToolTips(const QString &text)
{
    m_selectToolTips = text;
    showToolTip();
}

void PNAlphBtn::setSelected(bool selected)
{
    if (m_selected == selected)
        return;
    m_selected = selected;
    updateImage();
    checkedStateWasChanged();
    Q_EMIT selectedChanged(selected);
}

std::optional<bool> PNAlphBtn::checkedState() const
{
    return m_selected || m_selectedNormal.image ? m_selected : kx::Button::checkedState();
}

void PNAlphBtn::setShadowOffset(const QSizeF &offset)
{
    m_shadowOffset = offset;
    Q_EMIT shadowOffsetChanged(offset);
}

void PNAlphBtn::restBtnState()
{
    m_hovered = false;
    updateImage();
}

void PNAlphBtn::updateImage()
{
    if (isAsleep()) // awakeFromNib() still wants the form's image
        return;
    setImage(lookOfState());
    showToolTip();
    setNeedsDisplay();
}

kx::Image PNAlphBtn::lookOfState() const
{
    if (!isEnabled())
        return normalImage();
    if (m_selected)
        return m_hovered ? selectedHoverImage() : selectedNormalImage();
    return m_hovered ? hoverImage() : normalImage();
}

void PNAlphBtn::showToolTip()
{
    const QString &toolTip = m_selected ? m_selectToolTips : m_toolTips;
    if (isEnabled() && !toolTip.isNull())
        setToolTip(toolTip);
}

void PNAlphBtn::mouseEntered(kx::Event *)
{
    if (!kx::modalWindow())
        setHovered(true);
}

void PNAlphBtn::mouseExited(kx::Event *)
{
    if (kx::modalWindow())
        return;
    const QPointer<PNAlphBtn> alive(this);
    setHovered(false);
    if (alive)
        kx::Cursor::set(Qt::ArrowCursor);
}

void PNAlphBtn::cursorUpdate(kx::Event *)
{
    if (!kx::ignoresMouseEvents(shownWindow()))
        kx::Cursor::set(Qt::PointingHandCursor);
}

void PNAlphBtn::updateTrackingAreas()
{
    kx::Button::updateTrackingAreas();
    const QPointer<PNAlphBtn> alive(this);
    if (m_hovered)
        setHovered(false);
    if (alive)
        kx::ControlStyle::replaceTrackingArea(*this, m_trackingArea, true);
}

void PNAlphBtn::updateLayer()
{
    if (m_shadowOffset == QSizeF(0, 0)) // Deliberate: a shadow that was there stays
        return;
    kx::Layer &look = *layer();
    look.setShadowColor(kx::Color::white(0.0, 0.15));
    look.setMasksToBounds(false);
    look.setShadowOffset(m_shadowOffset);
    look.setShadowRadius(2.0);
    look.setShadowOpacity(1.0);
}

void PNAlphBtn::setHovered(bool hovered)
{
    m_hovered = hovered;
    if (hovered && kx::ignoresMouseEvents(shownWindow()))
        return;
    updateImage();
    kx::ControlStyle::tellHover(*this, m_hoverStateListener, hovered, &PNAlphBtn::hoverStateChanged);
}
