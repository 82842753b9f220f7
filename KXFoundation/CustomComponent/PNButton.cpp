// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNButton.h>

#include <KXFoundation/Category/ImageKXTools.h>
#include <KXFoundation/CustomComponent/ControlStyle.h>
#include <KXFoundation/Platform/UI/Application.h>
#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <utility>

PNButton::PNButton(QWidget *parent)
    : PNButton(QRectF(), parent)
{
}

PNButton::PNButton(const QRectF &frame, QWidget *parent)
    : kx::Button(parent)
{
    setFrame(frame);
    updateImage();
    // Space, click() and assistive technology; the mouse presses by mouseDown() and mouseUp().
    connect(this, &QAbstractButton::pressed, this, &PNButton::showPressed);
    connect(this, &QAbstractButton::released, this, [this] {
        if (m_pressedImage)
            updateImage();
    });
}

PNButton::~PNButton() = default;

void PNButton::awakeFromNib()
{
    const QPointer<PNButton> alive(this);
    setUserInteraction(true);
    if (!alive)
        return;
    if (!m_normalImage)
        m_normalImage = image();
    updateImage();
}

void PNButton::setNormalImage(const kx::Image &image)
{
    setLook(m_normalImage, image);
}

kx::Image PNButton::hoverImage()
{
    if (!m_hoverImage)
        m_hoverImage = kx::imageWithTintColor(m_normalImage, kx::ControlStyle::hoverColor());
    return m_hoverImage;
}

void PNButton::setHoverImage(const kx::Image &image)
{
    setLook(m_hoverImage, image);
}

void PNButton::setSelectedNormalImage(const kx::Image &image)
{
    setLook(m_selectedNormalImage, image);
}

kx::Image PNButton::selectedHoverImage()
{
    if (!m_selectedHoverImage)
        m_selectedHoverImage = kx::imageWithTintColor(m_selectedNormalImage, kx::ControlStyle::hoverColor());
    return m_selectedHoverImage;
}

void PNButton::setSelectedHoverImage(const kx::Image &image)
{
    setLook(m_selectedHoverImage, image);
}

void PNButton::setDisableImage(const kx::Image &image)
{
    setLook(m_disableImage, image);
}

void PNButton::setToolTips(const QString &text)
{
    m_toolTips = text;
    showToolTip();
}

void PNButton::setSelectToolTips(const QString &text)
{
    m_selectToolTips = text;
    showToolTip();
}

QString PNButton::spokenName() const
{
    const QString name = kx::Button::spokenName();
    if (!name.isEmpty())
        return name;
    return m_selected && !m_selectToolTips.isNull() ? m_selectToolTips : m_toolTips;
}

void PNButton::setSelected(bool selected)
{
    if (m_selected == selected)
        return;
    m_selected = selected;
    updateImage();
    checkedStateWasChanged();
    Q_EMIT selectedChanged(selected);
}

std::optional<bool> PNButton::checkedState() const
{
    return m_selected || m_selectedNormalImage ? m_selected : kx::Button::checkedState();
}

void PNButton::setUserInteraction(bool interacts)
{
    if (m_userInteraction == interacts)
        return;
    m_userInteraction = interacts;
    const QPointer<PNButton> alive(this);
    updateTrackingAreas();
    if (alive)
        Q_EMIT userInteractionChanged(interacts);
}

void PNButton::setIsIgnoreHover(bool ignores)
{
    const bool old = std::exchange(m_ignoresHover, ignores);
    updateImage();
    if (old != ignores)
        Q_EMIT isIgnoreHoverChanged(ignores);
}

void PNButton::restBtnState()
{
    m_hovered = false;
    updateImage();
}

void PNButton::updateImage()
{
    if (isAsleep()) // awakeFromNib() still wants the form's image
        return;
    setImage(lookOfState());
    showToolTip();
    setNeedsDisplay();
}

kx::Image PNButton::lookOfState()
{
    if (!isEnabled())
        return m_disableImage ? m_disableImage : m_normalImage;
    if (m_selected)
        return m_hovered ? selectedHoverImage() : m_selectedNormalImage;
    return m_hovered ? hoverImage() : m_normalImage;
}

void PNButton::showToolTip()
{
    const QString &toolTip = m_selected ? m_selectToolTips : m_toolTips;
    if (isEnabled() && !toolTip.isNull())
        setToolTip(toolTip);
}

kx::ViewInterface *PNButton::hitTest(const QPointF &point)
{
    return m_userInteraction && !isExplicitlyHidden() ? kx::Button::hitTest(point) : nullptr;
}

// The base class has no part in a press: it would ask where the release is.
void PNButton::mouseDown(kx::Event *)
{
    m_mouseDown = true;
    showPressed();
}

// Deliberate: neither the place of the release counts nor whether the button is still enabled.
void PNButton::mouseUp(kx::Event *)
{
    if (!m_mouseDown)
        return;
    const QPointer<PNButton> alive(this);
    performAction();
    if (!alive)
        return;
    m_mouseDown = false;
    updateImage();
}

void PNButton::pressCancelled()
{
    if (std::exchange(m_mouseDown, false))
        updateImage();
}

void PNButton::rightMouseDown(kx::Event *) { }

void PNButton::mouseEntered(kx::Event *)
{
    if (!kx::modalWindow())
        setHovered(true);
}

void PNButton::mouseExited(kx::Event *)
{
    if (kx::modalWindow())
        return;
    const QPointer<PNButton> alive(this);
    setHovered(false);
    if (alive)
        kx::Cursor::set(Qt::ArrowCursor);
}

void PNButton::cursorUpdate(kx::Event *)
{
    if (!kx::ignoresMouseEvents(shownWindow()) && !m_ignoresHover)
        kx::Cursor::set(Qt::PointingHandCursor);
}

void PNButton::updateTrackingAreas()
{
    kx::Button::updateTrackingAreas();
    const QPointer<PNButton> alive(this);
    if (m_hovered)
        setHovered(false);
    if (alive)
        kx::ControlStyle::replaceTrackingArea(*this, m_trackingArea, m_userInteraction && isEnabled());
}

void PNButton::enabledChanged()
{
    updateImage();
    updateTrackingAreas();
}

void PNButton::setHovered(bool hovered)
{
    m_hovered = hovered;
    if ((hovered && kx::ignoresMouseEvents(shownWindow())) || m_ignoresHover) {
        setToolTip(QStringLiteral(""));
        return;
    }
    updateImage();
    kx::ControlStyle::tellHover(*this, m_hoverStateListener, hovered, &PNButton::hoverStateChanged);
}

void PNButton::showPressed()
{
    if (m_pressedImage)
        setImage(m_pressedImage);
}

// Leaves an image alone that came from elsewhere, such as a form, unless there is another to show.
void PNButton::setLook(kx::Image &field, const kx::Image &image)
{
    const kx::Image old = lookOfState();
    field = image;
    if (!m_mouseDown && !isDown() && lookOfState() != old)
        updateImage();
}
