// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextLayout/TextLine.h>

#include <KXFoundation/Platform/UI/TextLayout/Finite.h>

#include <QtGui/QRawFont>

#include <algorithm>
#include <limits>
#include <numeric>

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

qsizetype glyphCount(const QList<QGlyphRun> &runs)
{
    return std::accumulate(runs.begin(), runs.end(), qsizetype(0),
        [](qsizetype count, const QGlyphRun &run) { return count + run.glyphIndexes().size(); });
}

void append(std::vector<TextExtent> &extents, const std::vector<TextExtent> &more)
{
    extents.insert(extents.end(), more.begin(), more.end());
}

} // namespace

double distanceBetween(const std::vector<TextExtent> &extents, double x)
{
    double distance = std::numeric_limits<double>::infinity();
    for (const TextExtent &extent : extents)
        distance = std::min(distance, std::max({extent.left - x, x - extent.right, 0.0}));
    return distance;
}

TextPiece::TextPiece(const TextSegment &segmentPart, const QTextLayout &textLayout, const QTextLine &textLine)
    : segment(segmentPart)
    , layout(&textLayout)
    , line(textLine)
    , baselineOffset(coordinate(segmentPart.attributes->baselineOffset.value_or(0)))
    , foreground(segmentPart.attributes->foregroundColor.toQColor())
    , background(segmentPart.attributes->backgroundColor.toQColor())
{
    const QList<QGlyphRun> runs = runsIn(line, segment.inLayout);
    extents = extentsOfRuns(runs);
    for (const QGlyphRun &run : runs) { // its rectangle would reach up to marks above other marks
        const QRawFont font = run.rawFont();
        ascent = std::max(ascent, baselineOffset + font.ascent());
        descent = std::max(descent, font.descent() - baselineOffset);
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
        hasFewGlyphs = glyphCount(runs) < segment.characters.length();
    }
}

bool TextPiece::covers(const TextSpan &characters) const
{
    return segment.kind != Kind::Characters || characters.length() == segment.characters.length();
}

QList<QGlyphRun> TextPiece::glyphRuns(const TextSpan &characters) const
{
    return runsIn(line, {layoutPosition(characters.start), layoutPosition(characters.end)});
}

qsizetype TextPiece::layoutPosition(qsizetype character) const
{
    return segment.inLayout.start + character - segment.characters.start;
}

// Whether it makes one cluster with the character before it: a grapheme, or a ligature.
bool TextPiece::goesOn(qsizetype character) const
{
    if (character <= segment.characters.start || character >= segment.characters.end)
        return false;
    if (!startsGrapheme(character))
        return true;
    return hasFewGlyphs
        && glyphCount(glyphRuns({character - 1, character + 1}))
        < glyphCount(glyphRuns({character - 1, character})) + glyphCount(glyphRuns({character, character + 1}));
}

bool TextPiece::startsGrapheme(qsizetype character) const
{
    return layout->isValidCursorPosition(int(layoutPosition(character)));
}

TextSpan TextPiece::clusterAround(qsizetype character) const
{
    TextSpan cluster{character, character + 1};
    while (goesOn(cluster.start))
        --cluster.start;
    while (goesOn(cluster.end))
        ++cluster.end;
    return cluster;
}

// Of a part of a cluster: its share of the width, as Qt answers rightly for no more than two characters.
std::vector<TextExtent> TextPiece::extentsIn(const TextSpan &cluster, const TextSpan &part) const
{
    const QList<QGlyphRun> runs = glyphRuns(cluster);
    std::vector<TextExtent> shares = extentsOfRuns(runs);
    for (TextExtent &share : shares) {
        const bool mirrored = runs.first().isRightToLeft();
        const double each = (share.right - share.left) / double(cluster.length());
        const qsizetype before = mirrored ? cluster.end - part.end : part.start - cluster.start;
        share.left += each * double(before);
        share.right = share.left + each * double(part.length());
    }
    return shares;
}

std::vector<TextExtent> TextPiece::extentsOf(const TextSpan &characters) const
{
    if (covers(characters))
        return extents;
    TextSpan whole = characters; // the clusters that are not parted
    std::vector<TextExtent> result;
    if (goesOn(whole.start)) {
        const TextSpan cluster = clusterAround(whole.start);
        const qsizetype end = std::min(cluster.end, whole.end);
        append(result, extentsIn(cluster, {whole.start, end}));
        whole.start = end;
    }
    if (whole.length() > 0 && goesOn(whole.end)) {
        const TextSpan cluster = clusterAround(whole.end);
        append(result, extentsIn(cluster, {cluster.start, whole.end}));
        whole.end = cluster.start;
    }
    append(result, extentsOfRuns(glyphRuns(whole)));
    return result;
}

QList<QGlyphRun> TextPiece::glyphsOf(const TextSpan &characters) const
{
    return covers(characters) ? glyphs : glyphRuns(characters);
}

// By halving: Qt's own answer may be a neighbour of what lies there.
qsizetype TextPiece::characterAt(double x) const
{
    TextSpan found = segment.characters;
    while (found.length() > 1 && segment.kind == Kind::Characters) {
        const qsizetype middle = found.start + found.length() / 2;
        const TextSpan halves[] = {{found.start, middle}, {middle, found.end}};
        const bool inFirst = distanceBetween(extentsOf(halves[0]), x) < distanceBetween(extentsOf(halves[1]), x);
        found = halves[inFirst ? 0 : 1];
    }
    while (found.start > segment.characters.start && !startsGrapheme(found.start))
        --found.start;
    return found.start;
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
