// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Button.h>

#include <KXFoundation/Platform/UI/AccessibleButton.h>
#include <KXFoundation/Platform/UI/ButtonContent.h>
#include <KXFoundation/Platform/UI/KeyboardFocus.h>
#include <KXFoundation/Platform/UI/MutableAttributedString.h>

#include <QtCore/QEvent>
#include <QtCore/QMetaObject>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>

#include <utility>

using namespace Qt::StringLiterals;

namespace kx {

Button::Button(QWidget *parent)
    : ViewOn<QAbstractButton>(parent)
    , m_font(QAbstractButton::font())
    , m_fontSize(m_font.pointSize())
    , m_content(std::make_unique<ButtonContent>())
    , m_keyboardFocus(std::make_unique<KeyboardFocus>())
{
    setFocusPolicy(Qt::TabFocus);
    AccessibleButton::install();
    // The first to hear of a click, whatever brings it about.
    connect(this, &QAbstractButton::clicked, this, &Button::sendAction);
}

Button::~Button() = default;

void Button::setTitle(const QString &title)
{
    setAttributedTitle(AttributedString(title));
}

void Button::setAlternateTitle(const QString &title)
{
    setAttributedAlternateTitle(AttributedString(title));
}

void Button::setAttributedTitle(const AttributedString &title)
{
    const bool takesOtherRoom = !takeTheSameRoom(m_title, title);
    m_title = title;
    setText(title.string().replace(u'&', u"&&"_s)); // no mnemonics
    contentChanged(takesOtherRoom);
    Q_EMIT titleChanged();
}

void Button::setAttributedAlternateTitle(const AttributedString &title)
{
    const bool takesOtherRoom = !takeTheSameRoom(m_alternateTitle, title);
    m_alternateTitle = title;
    contentChanged(takesOtherRoom);
    Q_EMIT titleChanged();
}

void Button::setImage(const Image &image)
{
    if (m_image == image)
        return;
    const bool takesOtherRoom = !takeTheSameRoom(m_image, image);
    m_image = image;
    contentChanged(takesOtherRoom);
}

void Button::setAlternateImage(const Image &image)
{
    if (m_alternateImage == image)
        return;
    const bool takesOtherRoom = !takeTheSameRoom(m_alternateImage, image);
    m_alternateImage = image;
    contentChanged(takesOtherRoom);
}

void Button::setState(int state)
{
    if (m_state == state)
        return;
    m_state = state;
    contentChanged();
    checkedStateWasChanged();
    if (m_alternateTitle.length() > 0)
        AccessibleButton::nameWasChanged(*this);
    Q_EMIT stateChanged(state);
}

void Button::setFont(const Font &font)
{
    m_hasOwnFont = true;
    applyFont(font);
}

void Button::applyFont(const Font &font)
{
    const bool looksTheSame = m_font.sameValue(font);
    m_font = font;
    if (font)
        m_fontSize = font.pointSize();
    if (!looksTheSame)
        contentChanged();
}

void Button::setAlignment(TextAlignment alignment)
{
    m_alignment = alignment;
    contentChanged();
}

void Button::setLineBreakMode(LineBreakMode mode)
{
    m_lineBreakMode = mode;
    contentChanged();
}

bool Button::showsAlternateTitle() const
{
    return m_state == 1 && m_alternateTitle.length() > 0;
}

QString Button::spokenName() const
{
    const QString title = showsAlternateTitle() ? alternateTitle() : this->title();
    return title.isEmpty() ? toolTip() : title;
}

std::optional<bool> Button::checkedState() const
{
    if (isCheckable())
        return isChecked();
    const bool hasTwoLooks = m_state == 1 || m_alternateImage || m_alternateTitle.length() > 0;
    return hasTwoLooks ? std::optional(m_state == 1) : std::nullopt;
}

void Button::checkedStateWasChanged()
{
    AccessibleButton::stateWasChanged(*this);
}

QSizeF Button::intrinsicContentSize() const
{
    return content().naturalSize();
}

QSize Button::minimumSizeHint() const
{
    return {0, 0};
}

void Button::pressCancelled()
{
    setDown(false);
}

void Button::drawRect(QPainter &painter, const QRectF &)
{
    painter.setPen(palette().color(QPalette::Active, QPalette::ButtonText)); // a disabled button looks the same
    content().draw(painter, QRectF(rect()));
}

void Button::drawFocusRing(QPainter &painter)
{
    kx::drawFocusRing(painter, palette(), QRectF(rect()));
}

void Button::enabledChanged() { }

bool Button::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTipChange)
        AccessibleButton::nameWasChanged(*this);
    return m_keyboardFocus->refuses(*this, *event) || ViewOn<QAbstractButton>::event(event);
}

void Button::paintEvent(QPaintEvent *event)
{
    paint(*event);
    if (!m_keyboardFocus->isShown(*this))
        return;
    QPainter painter(this);
    drawFocusRing(painter);
}

void Button::changeEvent(QEvent *event)
{
    ViewOn<QAbstractButton>::changeEvent(event);
    if (event->type() == QEvent::FontChange && !m_hasOwnFont)
        applyFont(QAbstractButton::font());
    else if (event->type() == QEvent::EnabledChange)
        enabledChanged();
}

// Layouts are told only where there is something for them to do: looks change with every move over the button.
void Button::contentChanged(bool takesOtherRoom)
{
    m_contentIsStale = true;
    if (takesOtherRoom)
        invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

ButtonContent &Button::content() const
{
    if (!std::exchange(m_contentIsStale, false))
        return *m_content;
    const bool isOn = m_state == 1;
    m_content->setImage(isOn && m_alternateImage ? m_alternateImage : m_image);
    QFont font = m_font.toQFont();
    if (!m_font)
        font = Font(font).withSize(m_fontSize).toQFont();
    m_content->setDefaultFont(font);
    MutableAttributedString title(showsAlternateTitle() ? m_alternateTitle : m_title);
    title.changeAttributes({0, title.length()}, [this](TextAttributes &attributes) {
        if (!attributes.paragraphStyle)
            attributes.paragraphStyle = ParagraphStyle{m_alignment, m_lineBreakMode};
    });
    m_content->setTitle(title);
    return *m_content;
}

void Button::sendAction()
{
    if (!m_target || m_action.isEmpty())
        return;
    const QMetaObject &target = *m_target->metaObject();
    if (target.indexOfMethod(QByteArray(m_action + "(QObject*)").constData()) >= 0) {
        QMetaObject::invokeMethod(
            m_target, m_action.constData(), Qt::DirectConnection, Q_ARG(QObject *, static_cast<QObject *>(this)));
    } else if (target.indexOfMethod(QByteArray(m_action + "()").constData()) >= 0) {
        QMetaObject::invokeMethod(m_target, m_action.constData(), Qt::DirectConnection);
    }
}

} // namespace kx
