// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/AttributedString.h>

#include <QtCore/QRectF>
#include <QtCore/QSizeF>

#include <functional>
#include <memory>

class QFont;
class QPainter;

namespace kx {

/// Draws one text within given bounds, for a TextField that hosts it. A plain object: override drawingRectForBounds()
/// to draw the text elsewhere.
///
/// Rectangles are points of the painter's coordinates, y growing downwards. Main thread only.
class KX_UI_EXPORT TextFieldCell {
public:
    explicit TextFieldCell(const QString &stringValue = {});
    virtual ~TextFieldCell();
    Q_DISABLE_COPY_MOVE(TextFieldCell)

    [[nodiscard]] QString stringValue() const { return m_value.string(); }
    /// The text, without attributes.
    void setStringValue(const QString &stringValue);
    [[nodiscard]] AttributedString attributedStringValue() const { return m_value; }
    void setAttributedStringValue(const AttributedString &attributedStringValue);

    // For characters that have no such attribute of their own. None, at first, stands for the host's.

    [[nodiscard]] Font font() const { return m_font; }
    void setFont(const Font &font);
    [[nodiscard]] Color textColor() const { return m_textColor; }
    void setTextColor(const Color &textColor);

    // For paragraphs without a style of their own.

    [[nodiscard]] TextAlignment alignment() const { return m_style.alignment; }
    void setAlignment(TextAlignment alignment);
    [[nodiscard]] LineBreakMode lineBreakMode() const { return m_style.lineBreakMode; }
    void setLineBreakMode(LineBreakMode lineBreakMode);

    /// Where the text is drawn: here, all of the bounds, and the text starts at the top.
    [[nodiscard]] virtual QRectF drawingRectForBounds(const QRectF &bounds) const;
    /// What the text needs, in lines that are no longer than the bounds are wide if it can be broken.
    [[nodiscard]] virtual QSizeF cellSizeForBounds(const QRectF &bounds) const;
    /// Draws the text into its drawing rectangle, and nothing outside of the bounds. Text without a colour gets that of
    /// the painter's pen. Bounds without a positive, finite size draw nothing.
    virtual void drawWithFrame(QPainter &painter, const QRectF &bounds) const;

    /// The font of a text without one.
    void setHostFont(const QFont &font);
    /// Called after each change of what is drawn.
    void setChangeHandler(const std::function<void()> &changeHandler) { m_changeHandler = changeHandler; }

private:
    struct Layout;

    void changed();
    /// The text, laid out in lines of this length.
    [[nodiscard]] Layout &layout(double width) const;

    AttributedString m_value;
    Font m_font;
    Color m_textColor;
    ParagraphStyle m_style;
    std::function<void()> m_changeHandler;
    const std::unique_ptr<Layout> m_layout;
    mutable bool m_layoutIsStale = true;
};

} // namespace kx
