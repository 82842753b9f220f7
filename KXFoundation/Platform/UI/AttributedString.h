// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/TextAttributes.h>
#include <KXFoundation/Platform/UI/TextRange.h>

#include <QtCore/QList>
#include <QtCore/QString>

#include <algorithm>
#include <type_traits>

namespace kx {

/// A text whose characters carry attributes. A value: copies share their content until one of them changes, attribute
/// objects are shared for good.
///
/// Locations and lengths count UTF-16 code units, as QString does; nothing keeps a range from parting the two halves of
/// a surrogate pair.
class KX_UI_EXPORT AttributedString {
public:
    AttributedString() = default;
    /// The whole text gets the attributes. A null text is kept as such.
    explicit AttributedString(const QString &string, const TextAttributes &attributes = {});
    /// One attachmentCharacter with the attachment.
    explicit AttributedString(const TextAttachmentRef &attachment);

    /// Null only where a null text was given.
    [[nodiscard]] QString string() const { return m_string; }
    [[nodiscard]] quint64 length() const { return quint64(m_string.size()); }

    /// Neighbouring characters with the very same attributes. Every character is in exactly one run.
    struct Run {
        qsizetype start = 0;
        TextAttributes attributes;

        bool operator==(const Run &other) const = default;
    };
    /// In ascending order; no two neighbours have the same attributes.
    [[nodiscard]] const QList<Run> &runs() const { return m_runs; }
    /// Where the run of this index lies.
    [[nodiscard]] TextRange rangeOfRun(qsizetype index) const;
    /// The index of the run of a character; runs().size() for a location outside the text.
    [[nodiscard]] qsizetype runAt(quint64 location) const;

    /// The attributes of a character; none of them outside the text.
    [[nodiscard]] TextAttributes attributesAt(quint64 location) const;

    /// Calls `use(value, range)` for each part of `range` that has one value of the attribute, absent ones included, in
    /// ascending order. A part is as long as possible: neighbours with equal values make one, also where the values are
    /// different objects; then it is given the first. A range that is not within the text is ignored. The string may be
    /// changed meanwhile.
    template <class T, class Use>
    void enumerateAttribute(TextAttributeKey<T> key, const TextRange &range, Use use) const;

protected:
    QString m_string;
    QList<Run> m_runs;

private:
    static bool sameValue(const Color &a, const Color &b) { return a.sameValue(b); }
    static bool sameValue(const Font &a, const Font &b) { return a.sameValue(b); }
    template <class T> static bool sameValue(const T &a, const T &b) { return a == b; }
};

template <class T, class Use>
void AttributedString::enumerateAttribute(TextAttributeKey<T> key, const TextRange &range, Use use) const
{
    if (!range.isWithin(length()))
        return;
    const AttributedString text = *this;
    const quint64 end = range.location + range.length;
    qsizetype index = text.runAt(range.location);
    for (quint64 start = range.location; start < end;) {
        const T &value = text.m_runs.at(index).attributes.*key;
        while (++index < text.m_runs.size() && sameValue(text.m_runs.at(index).attributes.*key, value)) { }
        const quint64 next = index < text.m_runs.size() ? quint64(text.m_runs.at(index).start) : text.length();
        const quint64 partEnd = std::min(next, end);
        use(value, TextRange{start, partEnd - start});
        start = partEnd;
    }
}

} // namespace kx
