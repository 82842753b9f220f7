// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/KXAttributedString.h>

using kx::TextAttributes;

namespace {

QString present(const QString &string)
{
    return string.isNull() ? QStringLiteral("") : string;
}

} // namespace

KXAttributedString::KXAttributedString()
    : KXAttributedString(QString())
{
}

KXAttributedString::KXAttributedString(const QString &string)
    : m_attributedString(present(string))
{
}

KXAttributedString::KXAttributedString(const QString &string, const TextAttributes &attributes)
    : m_attributedString(string, attributes)
{
}

KXAttributedString::KXAttributedString(const kx::AttributedString &attributedString)
    : m_attributedString(attributedString)
{
}

KXAttributedString::~KXAttributedString() = default;

void KXAttributedString::setString(const QString &string)
{
    m_attributedString = kx::MutableAttributedString(present(string));
}

void KXAttributedString::setTextColor(const kx::Color &textColor)
{
    if (textColor == m_textColor)
        return;
    m_textColor = textColor;
    addAttribute(&TextAttributes::foregroundColor, textColor, whole());
}

void KXAttributedString::setFont(const kx::Font &font)
{
    if (font == m_font)
        return;
    m_font = font;
    addAttribute(&TextAttributes::font, font, whole());
}

void KXAttributedString::setBackgroundColor(const kx::Color &backgroundColor)
{
    if (backgroundColor == m_backgroundColor)
        return;
    m_backgroundColor = backgroundColor;
    // Deliberate: transparent first, so that none, which the text does not take, clears the background.
    addAttribute(&TextAttributes::backgroundColor, kx::Color::clear(), whole());
    addAttribute(&TextAttributes::backgroundColor, backgroundColor, whole());
}

void KXAttributedString::addAttributes(const TextAttributes &attributes, const kx::TextRange &range)
{
    m_attributedString.addAttributes(attributes, range);
}

void KXAttributedString::replaceCharactersInRange(
    const kx::TextRange &range, const kx::AttributedString &withAttributedString)
{
    m_attributedString.replaceCharactersInRange(range, withAttributedString);
}

void KXAttributedString::insertAttributedString(const kx::AttributedString &attributedString, quint64 atIndex)
{
    m_attributedString.insertAttributedString(attributedString, atIndex);
}

void KXAttributedString::appendAttributedString(const kx::AttributedString &attributedString)
{
    m_attributedString.appendAttributedString(attributedString);
}

void KXAttributedString::deleteCharactersInRange(const kx::TextRange &range)
{
    m_attributedString.deleteCharactersInRange(range);
}

void KXAttributedString::setAttributedString(const kx::AttributedString &attributedString)
{
    m_attributedString.setAttributedString(attributedString);
}
