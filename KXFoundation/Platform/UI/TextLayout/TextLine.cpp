// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextLayout/TextLine.h>

#include <KXFoundation/Platform/UI/TextLayout/Finite.h>

#include <algorithm>

namespace kx {

namespace {

using Kind = TextSegment::Kind;

std::vector<TextExtent> extentsOfRuns(const QList<QGlyphRun> &runs)
{
    std::vector<TextExtent> extents;
    for (const QGlyphRun &run : runs) {
        const QRectF area = run.boundingRect();
        if (!extents.empty() && extents.back().right == area.left())
            extents.back().right = area.right();
        else
            extents.push_back({area.left(), area.right()});
    }
    return extents;
}

QList<QGlyphRun> runsIn(const QTextLine &line, const TextSpan &inLayout)
{
    return line.glyphRuns(int(inLayout.start), int(inLayout.length()));
}

} // namespace

TextPiece::TextPiece(const TextSegment &segmentPart, const QTextLine &textLine)
    : segment(segmentPart)
    , line(textLine)
    , baselineOffset(coordinate(segmentPart.attributes->baselineOffset.value_or(0)))
    , foreground(segmentPart.attributes->foregroundColor.toQColor())
    , background(segmentPart.attributes->backgroundColor.toQColor())
{
    const QList<QGlyphRun> runs = runsIn(line, segment.inLayout);
    extents = extentsOfRuns(runs);
    for (const QGlyphRun &run : runs) {
        ascent = std::max(ascent, baselineOffset - run.boundingRect().top());
        descent = std::max(descent, run.boundingRect().bottom() - baselineOffset);
    }
    if (segment.kind == Kind::Tab) {
        const auto [left, right] =
            std::minmax({line.cursorToX(int(segment.inLayout.start)), line.cursorToX(int(segment.inLayout.end))});
        extents = {{left, right}};
    } else if (segment.kind == Kind::Attachment) {
        const QRectF place = segment.attributes->attachment->place();
        ascent = std::max(ascent, baselineOffset + place.bottom());
        descent = std::max(descent, -place.top() - baselineOffset);
    } else {
        glyphs = runs;
    }
}

bool TextPiece::covers(const TextSpan &characters) const
{
    return segment.kind != Kind::Characters || characters.length() == segment.characters.length();
}

QList<QGlyphRun> TextPiece::glyphRuns(const TextSpan &characters) const
{
    const qsizetype start = segment.inLayout.start + characters.start - segment.characters.start;
    return runsIn(line, {start, start + characters.length()});
}

std::vector<TextExtent> TextPiece::extentsOf(const TextSpan &characters) const
{
    return covers(characters) ? extents : extentsOfRuns(glyphRuns(characters));
}

QList<QGlyphRun> TextPiece::glyphsOf(const TextSpan &characters) const
{
    return covers(characters) ? glyphs : glyphRuns(characters);
}

qsizetype TextPiece::characterAt(double x, const TextExtent &extent) const
{
    if (segment.kind != Kind::Characters)
        return segment.characters.start;
    // Just outside of the piece, Qt would answer with its neighbours.
    constexpr double inside = 1.0 / 32;
    const double left = extent.left + inside;
    const qsizetype inLayout =
        line.xToCursor(std::clamp(x, left, std::max(left, extent.right - inside)), QTextLine::CursorOnCharacter);
    const qsizetype own = std::clamp(inLayout, segment.inLayout.start, segment.inLayout.end - 1);
    return segment.characters.start + own - segment.inLayout.start;
}

bool TextPiece::isRightToLeftAt(qsizetype character) const
{
    const QList<QGlyphRun> runs = glyphsOf({character, character + 1});
    return !runs.isEmpty() && runs.first().isRightToLeft();
}

QRectF TextPiece::attachmentRect() const
{
    const QRectF place = segment.attributes->attachment->place();
    const double left = extents.empty() ? 0 : extents.front().left;
    return {left + place.x(), -baselineOffset - place.bottom(), place.width(), place.height()};
}

QRectF TextLine::rect(const TextExtent &extent) const
{
    return {extent.left, top, extent.right - extent.left, height()};
}

double TextLine::edgeAt(qsizetype character) const
{
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
        if (piece->segment.characters.start >= character)
            continue;
        const qsizetype end = std::min(character, piece->segment.characters.end);
        const auto extents = piece->extentsOf({end - 1, end});
        if (!extents.empty())
            return piece->isRightToLeftAt(end - 1) ? extents.front().left : extents.back().right;
    }
    const bool startsAtTheRight = !pieces.empty() && pieces.front().isRightToLeftAt(characters.start);
    return startsAtTheRight ? right : left;
}

} // namespace kx
