// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/TextRange.h>

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QRectF>

#include <memory>

class QFont;
class QPainter;

namespace kx {

class TextContainer;
class TextLines;
class TextStorage;

/// Lays out the text of a storage in lines and draws it. It does so when it is first asked about them, and anew after
/// changes of the text, the container or the default font.
///
/// Every character counts as one glyph, so that ranges of glyphs are ranges of characters; a range is cut to what lies
/// in the text. Coordinates are points in the container, from its top left, y growing downwards. Main thread only.
class KX_UI_EXPORT LayoutManager {
public:
    /// Both are borrowed and must outlive the manager.
    LayoutManager(const TextStorage &textStorage, const TextContainer &textContainer);
    ~LayoutManager();
    Q_DISABLE_COPY_MOVE(LayoutManager)

    /// For characters without a font. The application's at first.
    void setDefaultFont(const QFont &font);

    /// All glyphs; from `notFound` on when there is none.
    [[nodiscard]] TextRange glyphRange() const;
    /// What the lines take up. A text without characters takes one line, and no width.
    [[nodiscard]] QRectF usedRect();
    /// Around all glyphs of the range, as high as their lines. For none of them, or for line ends alone, it has no
    /// width.
    [[nodiscard]] QRectF boundingRectForGlyphRange(const TextRange &glyphRange);
    /// The parts of the range that lie side by side, as high as their lines: one for each line, more where directions
    /// of writing mix.
    [[nodiscard]] QList<QRectF> rectsForGlyphRange(const TextRange &glyphRange);
    /// The character at a point: the nearest one in the line there. `notFound` above and below the lines.
    [[nodiscard]] quint64 characterIndexForPoint(const QPointF &point);

    // Drawing puts the container's top left at a point of the painter's coordinates. Lines outside of `dirtyRect`, in
    // the painter's coordinates, are left out; none stands for everything. A point that is no point draws nothing.

    /// Paints the background colours, line by line.
    void drawBackgroundForGlyphRange(
        QPainter &painter, const TextRange &glyphRange, const QPointF &atPoint, const QRectF &dirtyRect = {});
    /// Paints the characters and the images of attachments. Characters without a colour get that of the painter's pen.
    void drawGlyphsForGlyphRange(
        QPainter &painter, const TextRange &glyphRange, const QPointF &atPoint, const QRectF &dirtyRect = {});

private:
    TextLines &lines();

    const TextStorage &m_textStorage;
    const TextContainer &m_textContainer;
    std::unique_ptr<QFont> m_defaultFont;
    std::unique_ptr<TextLines> m_lines; // null when they are to be laid out
    quint64 m_revision = 0; // what m_lines were made from
    double m_width = 0;
};

} // namespace kx
