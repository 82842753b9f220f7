// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/AttributedString.h>

#include <QtCore/QString>

#include <vector>

namespace kx {

/// A stretch of a text, in the numbers that Qt's layout counts in.
struct TextSpan {
    qsizetype start = 0;
    qsizetype end = 0;

    [[nodiscard]] qsizetype length() const { return end - start; }
};

/// A stretch of characters that are laid out in one way. Qt's layout gets a text of its own, with stand-ins for what it
/// cannot lay out.
struct TextSegment {
    enum class Kind {
        Characters, ///< one for one in the layout's text, and so the only ones that can be parted
        Tab,
        Attachment, ///< a no-break space as wide as the image
        Ellipsis, ///< one character for all that was left out
    };

    Kind kind = Kind::Characters;
    TextSpan characters;
    TextSpan inLayout;
    const TextAttributes *attributes = nullptr; // of the string that the segments were made from
};

/// A paragraph as segments.
struct TextSegments {
    QString layoutText;
    std::vector<TextSegment> segments;
};

/// The segments of a paragraph without its end; an ellipsis takes the place of `left`, a part of the paragraph, unless
/// that is empty. They point into `text`.
[[nodiscard]] TextSegments segmentsOf(
    const AttributedString &text, const TextSpan &paragraph, const TextSpan &left = {});

} // namespace kx
