// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/TextLayout/ParagraphLayout.h>
#include <KXFoundation/Platform/UI/TextLayout/TextLine.h>

#include <QtGui/QTextLayout>

#include <memory>
#include <vector>

namespace kx {

/// A laid out text: its lines, from the top.
class TextLines {
public:
    using Lines = std::vector<TextLine>;

    /// At least one line.
    TextLines(const AttributedString &text, const TextSetting &setting);
    Q_DISABLE_COPY_MOVE(TextLines)

    [[nodiscard]] const Lines &all() const { return m_lines; }
    [[nodiscard]] qsizetype textLength() const { return qsizetype(m_text.length()); }

    /// The line of a character; the last one for the end of the text.
    [[nodiscard]] Lines::const_iterator lineOf(qsizetype character) const;
    /// The first line that ends below y; all().end() below the last one.
    [[nodiscard]] Lines::const_iterator lineAt(double y) const;

private:
    void add(const TextSpan &paragraph, qsizetype lineEndLength, const TextSetting &setting);

    const AttributedString m_text; // the lines point into it
    std::vector<std::unique_ptr<QTextLayout>> m_layouts;
    Lines m_lines;
};

} // namespace kx
