// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Color.h>
#include <KXFoundation/Platform/UI/Font.h>
#include <KXFoundation/Platform/UI/TextAttachment.h>

#include <optional>

namespace kx {

/// Where lines stand in a container of limited width. Without a limit, every line starts at its left.
enum class TextAlignment {
    Left = 0,
    Right = 1,
    Center = 2,
    Justified = 3,
    Natural = 4, ///< left or right, as the paragraph's text runs
};

/// What happens to lines that are longer than a container of limited width.
enum class LineBreakMode {
    WordWrapping = 0,
    CharWrapping = 1,
    Clipping = 2, ///< the line goes on beyond the container
    TruncatingHead = 3, ///< these three leave out what does not fit and put an ellipsis in its place
    TruncatingTail = 4,
    TruncatingMiddle = 5,
};

/// Taken from the first character of each paragraph.
struct ParagraphStyle {
    TextAlignment alignment = TextAlignment::Natural;
    LineBreakMode lineBreakMode = LineBreakMode::WordWrapping;

    bool operator==(const ParagraphStyle &other) const = default;
};

/// How characters are drawn. What is absent is left to the place where the text is drawn.
struct TextAttributes {
    Color foregroundColor = {};
    Font font = {};
    Color backgroundColor = {};
    /// Shown in the place of each attachmentCharacter; other characters with it are drawn as they are.
    TextAttachmentRef attachment = {};
    std::optional<ParagraphStyle> paragraphStyle = {};
    /// Points by which the characters stand above the baseline.
    std::optional<double> baselineOffset = {};

    /// Objects are compared by identity.
    bool operator==(const TextAttributes &other) const = default;
};

/// Names one attribute: `&TextAttributes::font`.
template <class T> using TextAttributeKey = T TextAttributes::*;

} // namespace kx
