// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Font.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>

#include <QtCore/QString>

/// A rich text view with one run: a plain text in one colour and one font. A change of one of them makes the run anew.
class KX_UI_EXPORT KXLabel : public KXRichTextView {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged USER true)
    Q_PROPERTY(QColor textColor READ designerTextColor WRITE setTextColor NOTIFY textColorChanged)
    Q_PROPERTY(int fontSize READ fontSize WRITE setFontSize NOTIFY fontSizeChanged)

public:
    /// Shows nothing, not even an empty run.
    explicit KXLabel(QWidget *parent = nullptr);
    explicit KXLabel(const QString &text, QWidget *parent = nullptr);
    ~KXLabel() override;

    /// Null until set. Setting an equal text does nothing; null differs from "" and is shown as a run without text.
    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    /// None, at first, leaves the colour to the palette. Setting the same object does nothing, an equal one does.
    [[nodiscard]] kx::Color textColor() const { return m_textColor; }
    void setTextColor(const kx::Color &textColor);
    /// None, at first, leaves the font to the widget. Setting the same object does nothing, an equal one does.
    [[nodiscard]] kx::Font font() const { return m_font; }
    void setFont(const kx::Font &font);
    /// The size last set, in points; 0 at first. A different one replaces the font, whatever it was, by
    /// kx::Font::named("PingFangSC-Regular"): by none where that is neither installed nor substituted.
    [[nodiscard]] int fontSize() const { return m_fontSize; }
    void setFontSize(int fontSize);

Q_SIGNALS:
    void textChanged(const QString &text);
    void textColorChanged(const kx::Color &textColor);
    void fontSizeChanged(int fontSize);

private:
    void _setupAttributedString();
    [[nodiscard]] QColor designerTextColor() const { return m_textColor.toQColor(); }

    int m_fontSize = 0;
    kx::Color m_textColor;
    QString m_text;
    kx::Font m_font;
};
