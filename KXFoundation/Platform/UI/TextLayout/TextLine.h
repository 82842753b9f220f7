// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/TextLayout/TextSegments.h>

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtGui/QColor>
#include <QtGui/QGlyphRun>
#include <QtGui/QTextLayout>

#include <vector>

namespace kx {

/// From left to right, in points from the container's left.
struct TextExtent {
    double left = 0;
    double right = 0;
};

/// How far x is from the nearest of them; infinite without any.
[[nodiscard]] double distanceBetween(const std::vector<TextExtent> &extents, double x);

/// The part of a segment that lies in one line.
struct TextPiece {
    TextPiece(const TextSegment &segmentPart, const QTextLayout &textLayout, const QTextLine &textLine);

    TextSegment segment;
    const QTextLayout *layout = nullptr;
    QTextLine line; // counts from the start of the layout's text
    QList<QGlyphRun> glyphs; // the baseline is at y = 0
    std::vector<TextExtent> extents; // one for each stretch in one direction; empty for characters without glyphs
    double ascent = 0; // above the baseline of the line
    double descent = 0;
    double baselineOffset = 0;
    QColor foreground; // invalid where the text has none
    QColor background;

    /// Of a part of the piece's characters, which must lie in it.
    [[nodiscard]] std::vector<TextExtent> extentsOf(const TextSpan &characters) const;
    [[nodiscard]] QList<QGlyphRun> glyphsOf(const TextSpan &characters) const;
    [[nodiscard]] bool isRightToLeftAt(qsizetype character) const;
    /// The character that is nearest to x, of those that start a grapheme.
    [[nodiscard]] qsizetype characterAt(double x) const;
    /// Where the image of an attachment goes, if the baseline of the line is at y = 0.
    [[nodiscard]] QRectF attachmentRect() const;

private:
    bool hasFewGlyphs = false; // fewer than characters, so that some may share one

    [[nodiscard]] bool covers(const TextSpan &characters) const;
    [[nodiscard]] qsizetype layoutPosition(qsizetype character) const;
    [[nodiscard]] QList<QGlyphRun> glyphRuns(const TextSpan &characters) const;
    [[nodiscard]] bool startsGrapheme(qsizetype character) const;
    [[nodiscard]] bool goesOn(qsizetype character) const;
    [[nodiscard]] TextSpan clusterAround(qsizetype character) const;
    [[nodiscard]] std::vector<TextExtent> extentsIn(const TextSpan &cluster, const TextSpan &part) const;
};

/// One line of the text.
struct TextLine {
    TextSpan characters; // with the end of the paragraph, if it is in this line
    double left = 0;
    double right = 0;
    double top = 0;
    double ascent = 0; // of the line: the distance of its baseline from its top
    double descent = 0;
    std::vector<TextPiece> pieces; // in the order of the text

    [[nodiscard]] double height() const { return ascent + descent; }
    [[nodiscard]] double bottom() const { return top + height(); }
    [[nodiscard]] double baseline() const { return top + ascent; }
    [[nodiscard]] QRectF rect(const TextExtent &extent) const;
    /// Where the caret stands before a character: behind the one before it, or else at the start of the line.
    [[nodiscard]] double edgeAt(qsizetype character) const;
};

} // namespace kx
