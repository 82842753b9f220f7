// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextLayout/TextSegments.h>

#include <algorithm>

namespace kx {

namespace {

using Kind = TextSegment::Kind;

Kind kindOf(QChar character, const TextAttributes &attributes)
{
    if (character == QChar::Tabulation)
        return Kind::Tab;
    return character == attachmentCharacter && attributes.attachment ? Kind::Attachment : Kind::Characters;
}

class Builder {
public:
    explicit Builder(const AttributedString &text)
        : m_text(text)
        , m_string(text.string())
    {
    }

    void addCharacters(const TextSpan &span)
    {
        for (qsizetype start = span.start; start < span.end;) {
            const qsizetype run = m_text.runAt(quint64(start));
            const TextRange range = m_text.rangeOfRun(run);
            const qsizetype end = std::min(qsizetype(range.location + range.length), span.end);
            addRun({start, end}, m_text.runs().at(run).attributes);
            start = end;
        }
    }

    void addEllipsis(const TextSpan &span)
    {
        add(Kind::Ellipsis, span, m_text.runs().at(m_text.runAt(quint64(span.start))).attributes, u"\u2026");
    }

    TextSegments result() { return std::move(m_result); }

private:
    void addRun(const TextSpan &run, const TextAttributes &attributes)
    {
        for (qsizetype start = run.start; start < run.end;) {
            const Kind kind = kindOf(m_string.at(start), attributes);
            qsizetype end = start + 1;
            while (kind == Kind::Characters && end < run.end && kindOf(m_string.at(end), attributes) == kind)
                ++end;
            const QStringView characters = QStringView(m_string).sliced(start, end - start);
            add(kind, {start, end}, attributes, kind == Kind::Attachment ? QStringView(u"\u00A0") : characters);
            start = end;
        }
    }

    void add(Kind kind, const TextSpan &span, const TextAttributes &attributes, QStringView inLayout)
    {
        QString &text = m_result.layoutText;
        const qsizetype start = text.size();
        text += inLayout;
        // Without an attachment this character is nothing to see; Qt would let its neighbours overlap.
        std::replace(text.begin() + start, text.end(), attachmentCharacter, QChar(0x200B));
        m_result.segments.push_back({kind, span, {start, text.size()}, &attributes});
    }

    const AttributedString &m_text;
    const QString m_string;
    TextSegments m_result;
};

} // namespace

TextSegments segmentsOf(const AttributedString &text, const TextSpan &paragraph, const TextSpan &left)
{
    Builder builder(text);
    if (left.length() > 0) {
        builder.addCharacters({paragraph.start, left.start});
        builder.addEllipsis(left);
        builder.addCharacters({left.end, paragraph.end});
    } else {
        builder.addCharacters(paragraph);
    }
    return builder.result();
}

} // namespace kx
