// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/LayoutManager.h>

#include <KXFoundation/Platform/UI/TextContainer.h>
#include <KXFoundation/Platform/UI/TextLayout/Finite.h>
#include <KXFoundation/Platform/UI/TextLayout/TextLines.h>
#include <KXFoundation/Platform/UI/TextStorage.h>

#include <QtGui/QFont>
#include <QtGui/QPainter>

#include <algorithm>
#include <iterator>
#include <limits>

namespace kx {

namespace {

using Extents = std::vector<TextExtent>;

TextSpan spanWithin(const TextRange &range, qsizetype textLength)
{
    const quint64 start = std::min(range.location, quint64(textLength));
    const quint64 end = start + std::min(range.length, quint64(textLength) - start);
    return {qsizetype(start), qsizetype(end)};
}

// Calls use(line, piece, span) for each part of the characters that lies in one piece.
template <class Use> void forEachPiece(const TextLine &line, const TextSpan &characters, Use use)
{
    const auto first = std::partition_point(line.pieces.begin(), line.pieces.end(),
        [&](const TextPiece &piece) { return piece.segment.characters.end <= characters.start; });
    for (auto piece = first; piece != line.pieces.end(); ++piece) {
        const TextSpan &own = piece->segment.characters;
        if (own.start >= characters.end)
            return;
        use(*piece, TextSpan{std::max(own.start, characters.start), std::min(own.end, characters.end)});
    }
}

// From left to right, those that touch as one.
Extents extentsIn(const TextLine &line, const TextSpan &characters)
{
    Extents extents;
    forEachPiece(line, characters, [&](const TextPiece &piece, const TextSpan &part) {
        const Extents own = piece.extentsOf(part);
        extents.insert(extents.end(), own.begin(), own.end());
    });
    if (extents.empty()) {
        const double edge = line.edgeAt(characters.start);
        return {{edge, edge}};
    }
    std::sort(extents.begin(), extents.end(), [](const TextExtent &a, const TextExtent &b) { return a.left < b.left; });
    Extents joined{extents.front()};
    for (const TextExtent &extent : extents) {
        // Qt counts in fractions of 64: neighbours may miss each other by one.
        constexpr double touching = 1.0 / 32;
        if (extent.left <= joined.back().right + touching)
            joined.back().right = std::max(joined.back().right, extent.right);
        else
            joined.push_back(extent);
    }
    return joined;
}

// Calls use(line) for the lines that have characters of the span and meet the dirty rectangle, which counts in the
// container's coordinates. One line more above and below: ink may reach out of a line.
template <class Use> void forEachLine(const TextLines &lines, const TextSpan &characters, const QRectF &dirty, Use use)
{
    const bool everywhere = dirty.isNull();
    auto line = lines.lineOf(characters.start);
    if (!everywhere) {
        const auto top = lines.lineAt(dirty.top());
        line = std::max(line, top == lines.all().begin() ? top : std::prev(top));
    }
    for (bool below = false; line != lines.all().end() && line->characters.start < characters.end && !below; ++line) {
        below = !everywhere && line->top > dirty.bottom();
        use(*line);
    }
}

// Whether a piece lies beside the dirty rectangle, and its ink with it.
bool isBeside(const TextPiece &piece, const TextLine &line, const QRectF &dirty)
{
    return !dirty.isNull() && piece.segment.kind != TextSegment::Kind::Attachment
        && std::all_of(piece.extents.begin(), piece.extents.end(), [&](const TextExtent &extent) {
               return extent.right + line.height() < dirty.left() || extent.left - line.height() > dirty.right();
           });
}

bool isOnScreen(const QPointF &point)
{
    return coordinate(point.x()) == point.x() && coordinate(point.y()) == point.y();
}

} // namespace

LayoutManager::LayoutManager(const TextStorage &textStorage, const TextContainer &textContainer)
    : m_textStorage(textStorage)
    , m_textContainer(textContainer)
    , m_defaultFont(std::make_unique<QFont>())
{
}

LayoutManager::~LayoutManager() = default;

void LayoutManager::setDefaultFont(const QFont &font)
{
    if (font == *m_defaultFont)
        return;
    *m_defaultFont = font;
    m_lines.reset();
}

TextLines &LayoutManager::lines()
{
    const double width = m_textContainer.width();
    if (!m_lines || m_revision != m_textStorage.revision() || m_width != width) {
        m_revision = m_textStorage.revision();
        m_width = width;
        m_lines.reset(); // frees the old lines before the new ones are made
        m_lines = std::make_unique<TextLines>(m_textStorage.attributedString(), TextSetting{*m_defaultFont, width});
    }
    return *m_lines;
}

TextRange LayoutManager::glyphRange() const
{
    const quint64 length = m_textStorage.attributedString().length();
    return length > 0 ? TextRange{0, length} : TextRange{notFound, 0};
}

QRectF LayoutManager::usedRect()
{
    const TextLines &text = lines();
    double left = std::numeric_limits<double>::max();
    double right = 0;
    for (const TextLine &line : text.all()) {
        left = std::min(left, line.left);
        right = std::max(right, line.right);
    }
    return {left, 0, std::max(right - left, 0.0), text.all().back().bottom()};
}

QRectF LayoutManager::boundingRectForGlyphRange(const TextRange &glyphRange)
{
    const QList<QRectF> rects = rectsForGlyphRange(glyphRange);
    double left = rects.first().left();
    double right = rects.first().right();
    for (const QRectF &rect : rects) {
        left = std::min(left, rect.left());
        right = std::max(right, rect.right());
    }
    return {left, rects.first().top(), right - left, rects.last().bottom() - rects.first().top()};
}

QList<QRectF> LayoutManager::rectsForGlyphRange(const TextRange &glyphRange)
{
    const TextLines &text = lines();
    const TextSpan characters = spanWithin(glyphRange, text.textLength());
    QList<QRectF> rects;
    for (auto line = text.lineOf(characters.start); line != text.all().end(); ++line) {
        if (!rects.isEmpty() && line->characters.start >= characters.end)
            break;
        const Extents extents = extentsIn(*line, characters);
        for (const TextExtent &extent : extents)
            rects.append(line->rect(extent));
    }
    return rects;
}

quint64 LayoutManager::characterIndexForPoint(const QPointF &point)
{
    const TextLines &text = lines();
    const auto line = text.lineAt(point.y());
    if (!(point.y() >= 0) || line == text.all().end() || line->characters.length() == 0)
        return notFound;
    const TextPiece *nearest = nullptr;
    double nearestDistance = std::numeric_limits<double>::infinity();
    for (const TextPiece &piece : line->pieces) {
        const double distance = distanceBetween(piece.extents, point.x());
        if (distance < nearestDistance) {
            nearest = &piece;
            nearestDistance = distance;
        }
    }
    return quint64(nearest ? nearest->characterAt(point.x()) : line->characters.start);
}

void LayoutManager::drawBackgroundForGlyphRange(
    QPainter &painter, const TextRange &glyphRange, const QPointF &atPoint, const QRectF &dirtyRect)
{
    if (!isOnScreen(atPoint))
        return;
    const TextLines &text = lines();
    const TextSpan characters = spanWithin(glyphRange, text.textLength());
    // Edges on device pixels, or neighbours would show through between two half-covered ones.
    const bool antialiased = painter.testRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QRectF dirty = dirtyRect.translated(-atPoint);
    forEachLine(text, characters, dirty, [&](const TextLine &line) {
        forEachPiece(line, characters, [&](const TextPiece &piece, const TextSpan &part) {
            if (isBeside(piece, line, dirty) || !piece.background.isValid() || piece.background.alpha() == 0)
                return;
            const Extents extents = piece.extentsOf(part);
            for (const TextExtent &extent : extents)
                painter.fillRect(line.rect(extent).translated(atPoint), piece.background);
        });
    });
    painter.setRenderHint(QPainter::Antialiasing, antialiased);
}

void LayoutManager::drawGlyphsForGlyphRange(
    QPainter &painter, const TextRange &glyphRange, const QPointF &atPoint, const QRectF &dirtyRect)
{
    if (!isOnScreen(atPoint))
        return;
    const TextLines &text = lines();
    const TextSpan characters = spanWithin(glyphRange, text.textLength());
    const QPen pen = painter.pen();
    QColor current = pen.color();
    const QRectF dirty = dirtyRect.translated(-atPoint);
    forEachLine(text, characters, dirty, [&](const TextLine &line) {
        const QPointF start = atPoint + QPointF(0, line.baseline());
        forEachPiece(line, characters, [&](const TextPiece &piece, const TextSpan &part) {
            if (isBeside(piece, line, dirty))
                return;
            if (piece.segment.kind == TextSegment::Kind::Attachment) {
                const kx::Image image = piece.segment.attributes->attachment->image();
                image.draw(painter, piece.attachmentRect().translated(start));
                return;
            }
            const QColor color = piece.foreground.isValid() ? piece.foreground : pen.color();
            if (color != current) {
                painter.setPen(color);
                current = color;
            }
            const QList<QGlyphRun> glyphs = piece.glyphsOf(part);
            for (const QGlyphRun &run : glyphs)
                painter.drawGlyphRun(start - QPointF(0, piece.baselineOffset), run);
        });
    });
    painter.setPen(pen);
}

} // namespace kx
