// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNTextColorButton.h>

#include <KXFoundation/Category/ImageKXTools.h>
#include <KXFoundation/CustomComponent/ControlStyle.h>
#include <KXFoundation/Platform/UI/Application.h>
#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <utility>

using namespace Qt::StringLiterals;

PNTextColorButton::PNTextColorButton(QWidget *parent)
    : PNTextColorButton(QRectF(), parent)
{
}

PNTextColorButton::PNTextColorButton(const QRectF &frame, QWidget *parent)
    : kx::Button(parent)
{
    setFrame(frame);
    initViews();
}

PNTextColorButton::~PNTextColorButton() = default;

void PNTextColorButton::initViews()
{
    m_normalTextColor = kx::Color::rgba(1.0, 1.0, 1.0, 0.85);
    m_hoverTextColor = kx::ControlStyle::hoverColor();
}

void PNTextColorButton::awakeFromNib()
{
    const QPointer<PNTextColorButton> alive(this);
    if (m_normalTextColor)
        changBtnTitleAndColor(currentTitle(), m_normalTextColor);
    if (!alive)
        return;
    setWantsLayer(true);
    updateCoclor();
    if (alive && m_cornerRadius > 0)
        layer()->setCornerRadius(m_cornerRadius);
}

void PNTextColorButton::setNormalTextColor(const kx::Color &color)
{
    const QPointer<PNTextColorButton> alive(this);
    m_normalTextColor = color;
    changBtnTitleAndColor(currentTitle(), color);
    if (alive)
        Q_EMIT colorsChanged();
}

void PNTextColorButton::setHoverTextColor(const kx::Color &color)
{
    store(m_hoverTextColor, color);
}

void PNTextColorButton::setHighLightTextColor(const kx::Color &color)
{
    store(m_highLightTextColor, color);
}

void PNTextColorButton::setSelectedTextColor(const kx::Color &color)
{
    store(m_selectedTextColor, color);
}

void PNTextColorButton::setNormalBackgroundColor(const kx::Color &color)
{
    layer()->setBackgroundColor(color);
    store(m_normalBackgroundColor, color);
}

void PNTextColorButton::setHoverBackgroundColor(const kx::Color &color)
{
    store(m_hoverBackgroundColor, color);
}

void PNTextColorButton::setHighLightBackgroundColor(const kx::Color &color)
{
    store(m_highLightBackgroundColor, color);
}

void PNTextColorButton::setDisableBackgroundColor(const kx::Color &color)
{
    store(m_disableBackgroundColor, color);
}

void PNTextColorButton::setBaseline(double baseline)
{
    if (std::exchange(m_baseline, baseline) != baseline)
        Q_EMIT baselineChanged(baseline);
}

void PNTextColorButton::setCornerRadius(double radius)
{
    if (std::exchange(m_cornerRadius, radius) != radius)
        Q_EMIT cornerRadiusChanged(radius);
}

void PNTextColorButton::setMouseEventAble(bool able)
{
    if (m_mouseEventAble == able)
        return;
    m_mouseEventAble = able;
    const QPointer<PNTextColorButton> alive(this);
    updateTrackingAreas();
    if (alive)
        Q_EMIT mouseEventAbleChanged(able);
}

void PNTextColorButton::setSelected(bool selected)
{
    if (m_selected == selected)
        return;
    m_selected = selected;
    const QPointer<PNTextColorButton> alive(this);
    updateCoclor();
    if (!alive)
        return;
    checkedStateWasChanged();
    Q_EMIT selectedChanged(selected);
}

std::optional<bool> PNTextColorButton::checkedState() const
{
    return m_selected || m_selectedTextColor ? m_selected : kx::Button::checkedState();
}

void PNTextColorButton::setState(int state)
{
    const QPointer<PNTextColorButton> alive(this);
    kx::Button::setState(state);
    if (alive)
        changBtnTitleAndColor(currentTitle(), m_currentTitleColor);
}

QString PNTextColorButton::currentTitle() const
{
    return state() == 1 && !alternateTitle().isEmpty() ? alternateTitle() : title();
}

kx::Image PNTextColorButton::currentImage() const
{
    return state() == 1 && alternateImage() ? alternateImage() : image();
}

void PNTextColorButton::setCurrentImage(const kx::Image &image)
{
    if (state() == 1)
        setAlternateImage(image);
    else
        setImage(image);
}

void PNTextColorButton::updateCurrentAttributeTitle(const kx::AttributedString &title)
{
    if (state() == 1)
        setAttributedAlternateTitle(title);
    else
        setAttributedTitle(title);
}

QString PNTextColorButton::plainTitle() const
{
    const QString attributed = attributedTitle().string();
    return attributed.isNull() ? currentTitle() : attributed;
}

void PNTextColorButton::changeBtnTitle(const QString &title)
{
    changBtnTitleAndColor(title, m_currentTitleColor);
}

void PNTextColorButton::changBtnTitleAndColor(const QString &title, const kx::Color &textColor)
{
    m_currentTitleColor = textColor;
    if (title.isEmpty()) {
        updateCurrentAttributeTitle(kx::AttributedString(u""_s));
        return;
    }
    const kx::LineBreakMode mode = lineBreakMode();
    kx::TextAttributes attributes;
    attributes.paragraphStyle = kx::ParagraphStyle{.alignment = alignment(),
        .lineBreakMode = mode == kx::LineBreakMode{} ? kx::LineBreakMode::TruncatingTail : mode};
    const kx::Color &color = textColor ? textColor : m_normalTextColor;
    if (color) {
        attributes.foregroundColor = color.withAlphaComponent(1.0);
        if (const kx::Image image = currentImage())
            setCurrentImage(kx::imageWithTintColor(image, attributes.foregroundColor));
    }
    setAlphaValue(color.alphaComponent());
    setFont(kx::Font::named(u"PingFangSC-Regular"_s, fontSize()));
    attributes.font = font();
    attributes.baselineOffset = m_baseline;
    updateCurrentAttributeTitle(kx::AttributedString(title, attributes));
}

void PNTextColorButton::updateCoclor()
{
    if (!isEnabled()) {
        applyBackground(m_disableBackgroundColor);
        return;
    }
    const QPointer<PNTextColorButton> alive(this);
    changBtnTitleAndColor(currentTitle(),
        m_selected      ? m_selectedTextColor
            : m_hovered ? m_hoverTextColor
                        : m_normalTextColor);
    if (alive)
        applyBackground(m_hovered ? m_hoverBackgroundColor : m_normalBackgroundColor);
}

void PNTextColorButton::addBtnBorder()
{
    kx::Layer &look = *layer();
    look.setMasksToBounds(true);
    look.setCornerRadius(4.0);
    look.setBorderColor(kx::Color::white(1.0));
    look.setBorderWidth(0.6);
}

void PNTextColorButton::removeBtnBorder()
{
    layer()->setBorderWidth(0.0);
}

void PNTextColorButton::reset2Normal()
{
    setHovered(false);
}

// The base class has no part in a press: it would ask where the release is.
void PNTextColorButton::mouseDown(kx::Event *)
{
    if (!isEnabled())
        return;
    m_mouseDown = true;
    const QPointer<PNTextColorButton> alive(this);
    if (m_highLightTextColor)
        changBtnTitleAndColor(currentTitle(), m_highLightTextColor);
    if (alive)
        applyBackground(m_highLightBackgroundColor);
}

// Deliberate: the release shows the look of a hover and performs the action wherever the pointer is by now.
void PNTextColorButton::mouseUp(kx::Event *)
{
    if (!m_mouseDown)
        return;
    const QPointer<PNTextColorButton> alive(this);
    changBtnTitleAndColor(currentTitle(), m_hoverTextColor);
    if (!alive)
        return;
    applyBackground(m_hoverBackgroundColor ? m_hoverBackgroundColor : m_normalBackgroundColor);
    performAction();
    if (alive)
        m_mouseDown = false;
}

void PNTextColorButton::pressCancelled()
{
    if (std::exchange(m_mouseDown, false))
        updateCoclor();
}

void PNTextColorButton::mouseEntered(kx::Event *)
{
    if (isUnderForeignModalWindow())
        return;
    m_mouseExist = false;
    setHovered(true);
}

void PNTextColorButton::mouseExited(kx::Event *)
{
    if (isUnderForeignModalWindow())
        return;
    const QPointer<PNTextColorButton> alive(this);
    setHovered(false);
    if (!alive)
        return;
    kx::Cursor::set(Qt::ArrowCursor);
    m_mouseExist = true;
}

void PNTextColorButton::mouseMoved(kx::Event *)
{
    if (m_mouseExist || !isEnabled() || isUnderForeignModalWindow())
        return;
    if (!kx::ignoresMouseEvents(shownWindow()) && m_mouseEventAble)
        kx::Cursor::set(Qt::PointingHandCursor);
}

void PNTextColorButton::cursorUpdate(kx::Event *)
{
    if (!kx::ignoresMouseEvents(shownWindow()))
        kx::Cursor::set(Qt::PointingHandCursor);
}

void PNTextColorButton::updateTrackingAreas()
{
    kx::Button::updateTrackingAreas();
    const QPointer<PNTextColorButton> alive(this);
    if (m_hovered)
        setHovered(false);
    if (alive)
        kx::ControlStyle::replaceTrackingArea(*this, m_trackingArea, isEnabled() && m_mouseEventAble);
}

void PNTextColorButton::enabledChanged()
{
    const QPointer<PNTextColorButton> alive(this);
    updateCoclor();
    if (alive)
        updateTrackingAreas();
    if (alive)
        setNeedsDisplay();
}

bool PNTextColorButton::isUnderForeignModalWindow() const
{
    return kx::modalWindow() && !kx::isModalPanel(shownWindow());
}

void PNTextColorButton::setHovered(bool hovered)
{
    m_hovered = hovered;
    if (hovered && kx::ignoresMouseEvents(shownWindow()))
        return;
    const QPointer<PNTextColorButton> alive(this);
    updateCoclor();
    if (alive)
        kx::ControlStyle::tellHover(*this, m_hoverStateListener, hovered, &PNTextColorButton::hoverStateChanged);
}

void PNTextColorButton::applyBackground(const kx::Color &color)
{
    if (color)
        layer()->setBackgroundColor(color);
}

void PNTextColorButton::store(kx::Color &field, const kx::Color &color)
{
    field = color;
    Q_EMIT colorsChanged();
}
