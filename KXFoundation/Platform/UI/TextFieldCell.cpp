// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextFieldCell.h>

#include <KXFoundation/Platform/UI/ImageDrawing.h>
#include <KXFoundation/Platform/UI/LayoutManager.h>
#include <KXFoundation/Platform/UI/MutableAttributedString.h>
#include <KXFoundation/Platform/UI/TextContainer.h>
#include <KXFoundation/Platform/UI/TextStorage.h>

#include <QtGui/QFont>
#include <QtGui/QPainter>

#include <utility>

namespace kx {

struct TextFieldCell::Layout {
    TextStorage storage;
    TextContainer container;
    LayoutManager manager{storage, container};
};

TextFieldCell::TextFieldCell(const QString &stringValue)
    : m_value(stringValue)
    , m_layout(std::make_unique<Layout>())
{
}

TextFieldCell::~TextFieldCell() = default;

void TextFieldCell::setStringValue(const QString &stringValue)
{
    setAttributedStringValue(AttributedString(stringValue));
}

void TextFieldCell::setAttributedStringValue(const AttributedString &attributedStringValue)
{
    m_value = attributedStringValue;
    changed();
}

void TextFieldCell::setFont(const Font &font)
{
    m_font = font;
    changed();
}

void TextFieldCell::setTextColor(const Color &textColor)
{
    m_textColor = textColor;
    changed();
}

void TextFieldCell::setAlignment(TextAlignment alignment)
{
    m_style.alignment = alignment;
    changed();
}

void TextFieldCell::setLineBreakMode(LineBreakMode lineBreakMode)
{
    m_style.lineBreakMode = lineBreakMode;
    changed();
}

void TextFieldCell::setHostFont(const QFont &font)
{
    m_layout->manager.setDefaultFont(font);
    changed();
}

void TextFieldCell::changed()
{
    m_layoutIsStale = true;
    if (const auto handler = m_changeHandler)
        handler();
}

TextFieldCell::Layout &TextFieldCell::layout(double width) const
{
    if (std::exchange(m_layoutIsStale, false)) {
        MutableAttributedString text(m_value);
        text.changeAttributes({0, text.length()}, [this](TextAttributes &attributes) {
            if (!attributes.foregroundColor)
                attributes.foregroundColor = m_textColor;
            if (!attributes.font)
                attributes.font = m_font;
            if (!attributes.paragraphStyle)
                attributes.paragraphStyle = m_style;
        });
        m_layout->storage.setAttributedString(text);
    }
    m_layout->container.setWidth(width);
    return *m_layout;
}

QRectF TextFieldCell::drawingRectForBounds(const QRectF &bounds) const
{
    return bounds;
}

QSizeF TextFieldCell::cellSizeForBounds(const QRectF &bounds) const
{
    return layout(bounds.width()).manager.usedRect().size();
}

void TextFieldCell::drawWithFrame(QPainter &painter, const QRectF &bounds) const
{
    const QRectF area = drawingRectForBounds(bounds);
    if (!isDrawable(bounds) || !isDrawable(area))
        return;
    LayoutManager &manager = layout(area.width()).manager;
    const TextRange glyphs = manager.glyphRange();
    painter.save();
    painter.setClipRect(bounds, Qt::IntersectClip);
    manager.drawBackgroundForGlyphRange(painter, glyphs, area.topLeft(), bounds);
    manager.drawGlyphsForGlyphRange(painter, glyphs, area.topLeft(), bounds);
    painter.restore();
}

} // namespace kx
