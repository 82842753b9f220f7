// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/KXLabel.h>

#include <KXFoundation/Platform/Core/Strings.h>
#include <KXFoundation/RichTextView/KXAttributedString.h>

KXLabel::KXLabel(QWidget *parent)
    : KXRichTextView(parent)
{
}

KXLabel::KXLabel(const QString &text, QWidget *parent)
    : KXLabel(parent)
{
    setText(text);
}

KXLabel::~KXLabel() = default;

void KXLabel::setText(const QString &text)
{
    // Deliberate: a null text equals nothing, not even another null one.
    if (!m_text.isNull() && kx::same(m_text, text))
        return;
    m_text = text;
    _setupAttributedString();
    Q_EMIT textChanged(text);
}

void KXLabel::setTextColor(const kx::Color &textColor)
{
    if (textColor == m_textColor)
        return;
    m_textColor = textColor;
    _setupAttributedString();
    Q_EMIT textColorChanged(textColor);
}

void KXLabel::setFont(const kx::Font &font)
{
    if (font == m_font)
        return;
    m_font = font;
    _setupAttributedString();
}

void KXLabel::setFontSize(int fontSize)
{
    if (fontSize == m_fontSize)
        return;
    m_fontSize = fontSize;
    m_font = kx::Font::named(QStringLiteral("PingFangSC-Regular"), fontSize);
    _setupAttributedString();
    Q_EMIT fontSizeChanged(fontSize);
}

void KXLabel::_setupAttributedString()
{
    const kx::TextAttributes attributes{.foregroundColor = m_textColor, .font = m_font};
    setKXAttributedStrings({std::make_shared<KXAttributedString>(m_text, attributes)});
}
