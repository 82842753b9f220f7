// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/MutableAttributedString.h>

#include <QtCore/QString>

#include <functional>
#include <memory>
#include <type_traits>

/// One run of text for a rich text view: characters with their attributes, three styles for all of them, and what
/// happens on a click. Make it as a shared_ptr; the view keeps the runs that it shows, and by showing them changes the
/// images of their attachments.
///
/// Ranges and indexes outside the text, and absent values, change nothing. Main thread only.
class KX_UI_EXPORT KXAttributedString {
public:
    using ClickHandler = std::function<void(const std::shared_ptr<KXAttributedString> &run)>;

    KXAttributedString();
    /// A null text is taken as "".
    explicit KXAttributedString(const QString &string);
    /// The whole text gets the attributes. Deliberate: a null text stays null here, as callers may tell the two apart.
    KXAttributedString(const QString &string, const kx::TextAttributes &attributes);
    explicit KXAttributedString(const kx::AttributedString &attributedString);
    ~KXAttributedString();
    Q_DISABLE_COPY_MOVE(KXAttributedString)

    [[nodiscard]] QString string() const { return m_attributedString.string(); }
    /// Replaces the text by one without attributes; null is taken as "". Deliberate: textColor(), font() and
    /// backgroundColor() keep their values, which the new text does not have. Set a different object to style it.
    void setString(const QString &string);
    /// A copy that stays as it is; attachments are shared with it.
    [[nodiscard]] kx::AttributedString toAttributedString() const { return m_attributedString; }

    // Styles of the whole text. A setter does nothing for the object that it was given last, otherwise it puts the
    // attribute on the characters there are, not on those added later. None is stored, but takes no attribute away.
    // The constructors set none of the three, whatever attributes they are given.

    [[nodiscard]] kx::Color textColor() const { return m_textColor; }
    void setTextColor(const kx::Color &textColor);
    [[nodiscard]] kx::Font font() const { return m_font; }
    void setFont(const kx::Font &font);
    [[nodiscard]] kx::Color backgroundColor() const { return m_backgroundColor; }
    /// None leaves the text with a transparent background.
    void setBackgroundColor(const kx::Color &backgroundColor);

    /// Called on the main thread when the run is clicked; a run without one is no link.
    [[nodiscard]] ClickHandler onClick() const { return m_onClick; }
    void setOnClick(const ClickHandler &onClick) { m_onClick = onClick; }

    template <class T>
    void addAttribute(
        kx::TextAttributeKey<T> attribute, const std::type_identity_t<T> &value, const kx::TextRange &range)
    {
        m_attributedString.addAttribute(attribute, value, range);
    }
    void addAttributes(const kx::TextAttributes &attributes, const kx::TextRange &range);
    template <class T> void removeAttribute(kx::TextAttributeKey<T> attribute, const kx::TextRange &range)
    {
        m_attributedString.removeAttribute(attribute, range);
    }
    void replaceCharactersInRange(const kx::TextRange &range, const kx::AttributedString &withAttributedString);
    void insertAttributedString(const kx::AttributedString &attributedString, quint64 atIndex);
    void appendAttributedString(const kx::AttributedString &attributedString);
    void deleteCharactersInRange(const kx::TextRange &range);
    void setAttributedString(const kx::AttributedString &attributedString);

private:
    [[nodiscard]] kx::TextRange whole() const { return {0, m_attributedString.length()}; }

    kx::MutableAttributedString m_attributedString;
    kx::Color m_textColor;
    kx::Color m_backgroundColor;
    kx::Font m_font;
    ClickHandler m_onClick;
};
