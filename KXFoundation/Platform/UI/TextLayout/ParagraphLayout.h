// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/TextLayout/TextLine.h>

#include <QtGui/QFont>
#include <QtGui/QTextLayout>

#include <memory>
#include <vector>

namespace kx {

/// What a text is laid out with.
struct TextSetting {
    QFont defaultFont;
    double width = 0; ///< infinite for no limit
};

/// The lines of one paragraph, at least one. Their tops are 0, and each ends where the next one starts; the last one
/// without the end of the paragraph.
struct LaidOutParagraph {
    std::vector<TextLine> lines;
    std::vector<std::unique_ptr<QTextLayout>> layouts; ///< the lines need them
};

/// `paragraph` is a part of the text without line ends, where one may follow. The lines point into `text`.
[[nodiscard]] LaidOutParagraph layOut(
    const AttributedString &text, const TextSpan &paragraph, const TextSetting &setting);

} // namespace kx
