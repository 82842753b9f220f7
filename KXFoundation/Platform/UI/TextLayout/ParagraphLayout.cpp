// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextLayout/ParagraphLayout.h>

#include <QtGui/QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <span>

namespace kx {

namespace {

using Kind = TextSegment::Kind;
using Segments = std::span<const TextSegment>;

// Far beyond every line, and within what Qt's fixed-point numbers hold.
constexpr double endlessWidth = 1e7;

bool isTruncating(LineBreakMode mode)
{
    return mode == LineBreakMode::TruncatingHead || mode == LineBreakMode::TruncatingTail
        || mode == LineBreakMode::TruncatingMiddle;
}

// Anything that may make Qt order characters from right to left.
bool mayRunRightToLeft(QStringView text)
{
    const QList<uint> characters = text.toUcs4();
    return std::any_of(characters.begin(), characters.end(), [](uint character) {
        switch (QChar::direction(character)) {
        case QChar::DirL:
        case QChar::DirEN:
        case QChar::DirES:
        case QChar::DirET:
        case QChar::DirCS:
        case QChar::DirON:
        case QChar::DirBN:
        case QChar::DirNSM:
        case QChar::DirS:
        case QChar::DirWS: return false;
        default: return true;
        }
    });
}

class Paragraph {
public:
    Paragraph(const AttributedString &text, const TextSpan &span, const TextSetting &setting);

    LaidOutParagraph layOut();

private:
    using Layout = std::unique_ptr<QTextLayout>;

    void layOutInParts(const TextSegments &segments);
    [[nodiscard]] TextSegments fitting(const TextSegments &all);
    [[nodiscard]] TextSpan leftOut(qsizetype keptCharacters) const;
    [[nodiscard]] Layout layout(QStringView layoutText, Segments segments, double left);
    [[nodiscard]] QTextCharFormat format(const TextSegment &segment);
    void addLines(Layout layout, Segments segments);
    void addPieces(TextLine &line, const QTextLayout &layout, const QTextLine &textLine, Segments segments,
        qsizetype layoutStart) const;

    const AttributedString &m_text;
    const TextSpan m_span;
    const double m_width;
    const bool m_limited;
    ParagraphStyle m_style;
    const QFont m_defaultFont;
    QFont m_font; // the first one of the paragraph
    struct FontFormat {
        Font font;
        QTextCharFormat format;
    };
    std::vector<FontFormat> m_formats; // made so far: Qt takes long to make one
    QTextOption m_option;
    LaidOutParagraph m_result;
};

Paragraph::Paragraph(const AttributedString &text, const TextSpan &span, const TextSetting &setting)
    : m_text(text)
    , m_span(span)
    , m_width(std::min(setting.width, endlessWidth))
    , m_limited(setting.width < endlessWidth)
    , m_defaultFont(setting.defaultFont)
{
    // An empty one is as high as its line end, or as what comes before it.
    const auto last = quint64(std::max<qsizetype>(qsizetype(text.length()) - 1, 0));
    const TextAttributes attributes = text.attributesAt(std::min(quint64(span.start), last));
    m_style = attributes.paragraphStyle.value_or(ParagraphStyle());
    m_font = attributes.font ? *attributes.font : m_defaultFont;
    m_formats.push_back({attributes.font, QTextCharFormat()});

    m_option.setWrapMode(QTextOption::ManualWrap);
    m_option.setAlignment(Qt::AlignLeft);
    if (!m_limited) {
        m_option.setFlags(QTextOption::IncludeTrailingSpaces);
        return;
    }
    if (m_style.lineBreakMode == LineBreakMode::WordWrapping)
        m_option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    else if (m_style.lineBreakMode == LineBreakMode::CharWrapping)
        m_option.setWrapMode(QTextOption::WrapAnywhere);
    const QStringView characters = QStringView(text.string()).sliced(span.start, span.length());
    switch (m_style.alignment) {
    case TextAlignment::Left: break;
    case TextAlignment::Right: m_option.setAlignment(Qt::AlignRight); break;
    case TextAlignment::Center: m_option.setAlignment(Qt::AlignHCenter); break;
    case TextAlignment::Justified: m_option.setAlignment(Qt::AlignJustify); break;
    case TextAlignment::Natural: m_option.setAlignment(characters.isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft);
    }
}

LaidOutParagraph Paragraph::layOut()
{
    TextSegments segments = segmentsOf(m_text, m_span);
    if (m_limited && isTruncating(m_style.lineBreakMode))
        segments = fitting(segments);
    layOutInParts(segments);
    m_result.lines.front().characters.start = m_span.start;
    for (std::size_t i = 1; i < m_result.lines.size(); ++i)
        m_result.lines[i - 1].characters.end = m_result.lines[i].characters.start;
    m_result.lines.back().characters.end = m_span.end;
    return std::move(m_result);
}

// Qt shapes each segment apart, but asking it for the glyphs of one takes a walk over all segments of the line. So a
// line of very many is made of several layouts side by side, where nothing but the order of the text decides what lies
// beside what.
void Paragraph::layOutInParts(const TextSegments &segments)
{
    const Segments all(segments.segments);
    constexpr std::size_t fewEnough = 64;
    const bool apart = all.size() > fewEnough && !m_limited && !mayRunRightToLeft(segments.layoutText)
        && std::none_of(all.begin(), all.end(), [](const TextSegment &segment) { return segment.kind == Kind::Tab; });
    if (!apart) {
        addLines(layout(segments.layoutText, all, 0), all);
        return;
    }
    for (std::size_t first = 0; first < all.size(); first += fewEnough) {
        const Segments part = all.subspan(first, std::min(fewEnough, all.size() - first));
        const qsizetype start = part.front().inLayout.start;
        const qsizetype length = part.back().inLayout.end - start;
        const double left = first == 0 ? 0 : m_result.lines.back().right;
        addLines(layout(QStringView(segments.layoutText).sliced(start, length), part, left), part);
    }
}

// The segments with as many characters as fit the width beside an ellipsis; all of them if they fit.
TextSegments Paragraph::fitting(const TextSegments &all)
{
    const auto fits = [&](const TextSegments &segments) {
        const Layout candidate = layout(segments.layoutText, Segments(segments.segments), 0);
        return candidate->lineAt(0).naturalTextWidth() <= m_width;
    };
    if (m_span.length() == 0 || fits(all))
        return all;
    TextSegments best = segmentsOf(m_text, m_span, leftOut(0));
    for (qsizetype kept = 0, tooMany = m_span.length(); kept + 1 < tooMany;) {
        const qsizetype tried = (kept + tooMany) / 2;
        TextSegments segments = segmentsOf(m_text, m_span, leftOut(tried));
        if (fits(segments)) {
            best = std::move(segments);
            kept = tried;
        } else {
            tooMany = tried;
        }
    }
    return best;
}

// What an ellipsis stands for, when no more than so many characters are kept. It parts no grapheme.
TextSpan Paragraph::leftOut(qsizetype keptCharacters) const
{
    TextSpan left = m_span;
    switch (m_style.lineBreakMode) {
    case LineBreakMode::TruncatingHead: left.end -= keptCharacters; break;
    case LineBreakMode::TruncatingMiddle:
        left.start += keptCharacters - keptCharacters / 2;
        left.end -= keptCharacters / 2;
        break;
    default: left.start += keptCharacters;
    }
    QTextLayout whole(m_text.string().sliced(m_span.start, m_span.length()));
    while (left.start > m_span.start && !whole.isValidCursorPosition(int(left.start - m_span.start)))
        --left.start;
    while (left.end < m_span.end && !whole.isValidCursorPosition(int(left.end - m_span.start)))
        ++left.end;
    return left;
}

std::unique_ptr<QTextLayout> Paragraph::layout(QStringView layoutText, Segments segments, double left)
{
    auto layout = std::make_unique<QTextLayout>(layoutText.toString(), m_font);
    layout->setCacheEnabled(true);
    layout->setTextOption(m_option);
    QList<QTextLayout::FormatRange> formats;
    formats.reserve(qsizetype(segments.size()));
    for (const TextSegment &segment : segments) {
        QTextLayout::FormatRange range; // also parts what would else be shaped together
        range.start = int(segment.inLayout.start - segments.front().inLayout.start);
        range.length = int(segment.inLayout.length());
        range.format = format(segment);
        formats.append(range);
    }
    layout->setFormats(formats);

    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(m_width);
        line.setPosition(QPointF(left, -line.ascent()));
    }
    layout->endLayout();
    return layout;
}

QTextCharFormat Paragraph::format(const TextSegment &segment)
{
    const Font &own = segment.attributes->font;
    if (segment.kind == Kind::Attachment) {
        QFont spaced = own ? *own : m_defaultFont;
        const double width = segment.attributes->attachment->place().width();
        spaced.setLetterSpacing(QFont::AbsoluteSpacing, width - QFontMetricsF(spaced).horizontalAdvance(QChar::Nbsp));
        QTextCharFormat format;
        format.setFont(spaced);
        return format;
    }
    const auto known = std::find_if(
        m_formats.begin(), m_formats.end(), [&](const FontFormat &format) { return format.font.sameValue(own); });
    if (known != m_formats.end())
        return known->format;
    QTextCharFormat format;
    format.setFont(own ? *own : m_defaultFont);
    constexpr std::size_t worthSearching = 16;
    if (m_formats.size() < worthSearching)
        m_formats.push_back({own, format});
    return format;
}

void Paragraph::addLines(Layout layout, Segments segments)
{
    const qsizetype layoutStart = segments.empty() ? 0 : segments.front().inLayout.start;
    const bool goesOn = !m_result.lines.empty(); // in the line of the layout before
    for (int i = 0; i < layout->lineCount(); ++i) {
        const QTextLine textLine = layout->lineAt(i);
        if (!goesOn || i > 0)
            m_result.lines.emplace_back();
        TextLine &line = m_result.lines.back();
        const QRectF area = textLine.naturalTextRect();
        line.left = goesOn ? line.left : area.left();
        line.right = area.right();
        line.ascent = std::max(line.ascent, textLine.ascent());
        line.descent = std::max(line.descent, textLine.descent() + textLine.leading());
        addPieces(line, *layout, textLine, segments, layoutStart);
        // Baselines on whole points keep lines alike.
        line.ascent = std::ceil(line.ascent);
        line.descent = std::ceil(line.descent);
        if (!line.pieces.empty())
            line.characters.start = line.pieces.front().segment.characters.start;
    }
    m_result.layouts.push_back(std::move(layout));
}

void Paragraph::addPieces(TextLine &line, const QTextLayout &layout, const QTextLine &textLine, Segments segments,
    qsizetype layoutStart) const
{
    const TextSpan inLine{textLine.textStart(), textLine.textStart() + textLine.textLength()};
    auto segment = std::upper_bound(segments.begin(), segments.end(), inLine.start + layoutStart,
        [](qsizetype position, const TextSegment &candidate) { return position < candidate.inLayout.end; });
    for (; segment != segments.end() && segment->inLayout.start - layoutStart < inLine.end; ++segment) {
        TextSegment part = *segment;
        const TextSpan whole{segment->inLayout.start - layoutStart, segment->inLayout.end - layoutStart};
        part.inLayout = {std::max(whole.start, inLine.start), std::min(whole.end, inLine.end)};
        if (part.inLayout.length() < whole.length()) {
            part.characters.start += part.inLayout.start - whole.start;
            part.characters.end -= whole.end - part.inLayout.end;
        }
        const TextPiece &piece = line.pieces.emplace_back(part, layout, textLine);
        line.ascent = std::max(line.ascent, piece.ascent);
        line.descent = std::max(line.descent, piece.descent);
    }
}

} // namespace

LaidOutParagraph layOut(const AttributedString &text, const TextSpan &paragraph, const TextSetting &setting)
{
    return Paragraph(text, paragraph, setting).layOut();
}

} // namespace kx
