// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextLayout/TextLines.h>

#include <algorithm>
#include <iterator>

namespace kx {

namespace {

bool isLineEnd(QChar character)
{
    return character == QChar::LineFeed || character == QChar::CarriageReturn || character == QChar(0x85)
        || character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
}

} // namespace

TextLines::TextLines(const AttributedString &text, const TextSetting &setting)
    : m_text(text)
{
    const QString string = m_text.string();
    qsizetype start = 0;
    for (qsizetype i = 0; i < string.size(); ++i) {
        if (!isLineEnd(string.at(i)))
            continue;
        const bool pair =
            string.at(i) == QChar::CarriageReturn && i + 1 < string.size() && string.at(i + 1) == QChar::LineFeed;
        const qsizetype length = pair ? 2 : 1;
        add({start, i}, length, setting);
        i += length - 1;
        start = i + 1;
    }
    add({start, string.size()}, 0, setting); // a line end at the end of the text begins a last, empty line
}

void TextLines::add(const TextSpan &paragraph, qsizetype lineEndLength, const TextSetting &setting)
{
    LaidOutParagraph laidOut = layOut(m_text, paragraph, setting);
    laidOut.lines.back().characters.end += lineEndLength;
    double top = m_lines.empty() ? 0 : m_lines.back().bottom();
    for (TextLine &line : laidOut.lines) {
        line.top = top;
        top = line.bottom();
    }
    std::move(laidOut.lines.begin(), laidOut.lines.end(), std::back_inserter(m_lines));
    std::move(laidOut.layouts.begin(), laidOut.layouts.end(), std::back_inserter(m_layouts));
}

TextLines::Lines::const_iterator TextLines::lineOf(qsizetype character) const
{
    const auto after = std::upper_bound(m_lines.begin(), m_lines.end(), character,
        [](qsizetype position, const TextLine &line) { return position < line.characters.start; });
    return std::prev(after);
}

TextLines::Lines::const_iterator TextLines::lineAt(double y) const
{
    return std::upper_bound(
        m_lines.begin(), m_lines.end(), y, [](double value, const TextLine &line) { return value < line.bottom(); });
}

} // namespace kx
