// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/MutableAttributedString.h>

#include <algorithm>

namespace kx {

namespace {

template <class T> void takeOver(T &value, const T &added)
{
    if (!isAbsent(added))
        value = added;
}

} // namespace

MutableAttributedString::MutableAttributedString(const AttributedString &string)
    : AttributedString(string)
{
}

void MutableAttributedString::addAttributes(const TextAttributes &attributes, const TextRange &range)
{
    changeAttributes(range, [&](TextAttributes &present) {
        takeOver(present.foregroundColor, attributes.foregroundColor);
        takeOver(present.font, attributes.font);
        takeOver(present.backgroundColor, attributes.backgroundColor);
        takeOver(present.attachment, attributes.attachment);
        takeOver(present.paragraphStyle, attributes.paragraphStyle);
        takeOver(present.baselineOffset, attributes.baselineOffset);
    });
}

void MutableAttributedString::changeAttributes(
    const TextRange &range, const std::function<void(TextAttributes &attributes)> &change)
{
    if (!range.isWithin(length()) || range.length == 0)
        return;
    const qsizetype first = startRunAt(qsizetype(range.location));
    const qsizetype end = startRunAt(qsizetype(range.location + range.length));
    for (qsizetype i = first; i < end; ++i)
        change(m_runs[i].attributes);
    mergeRuns(first, end);
}

void MutableAttributedString::replaceCharactersInRange(
    const TextRange &range, const AttributedString &withAttributedString)
{
    if (!range.isWithin(length()))
        return;
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may be this very string
    const AttributedString added = withAttributedString;
    const auto location = qsizetype(range.location);
    const auto length = qsizetype(range.length);
    const qsizetype growth = added.string().size() - length;

    const qsizetype first = startRunAt(location);
    const qsizetype end = startRunAt(location + length);
    m_string.replace(location, length, added.string());
    for (auto run = m_runs.begin() + end; run != m_runs.end(); ++run)
        run->start += growth;
    m_runs.remove(first, end - first);
    m_runs.insert(first, added.runs().size(), Run());
    std::transform(added.runs().begin(), added.runs().end(), m_runs.begin() + first, [&](const Run &run) -> Run {
        return {location + run.start, run.attributes};
    });
    mergeRuns(first, first + added.runs().size());
}

void MutableAttributedString::insertAttributedString(const AttributedString &string, quint64 atIndex)
{
    replaceCharactersInRange({atIndex, 0}, string);
}

void MutableAttributedString::appendAttributedString(const AttributedString &string)
{
    insertAttributedString(string, length());
}

void MutableAttributedString::deleteCharactersInRange(const TextRange &range)
{
    replaceCharactersInRange(range, AttributedString());
}

void MutableAttributedString::setAttributedString(const AttributedString &string)
{
    static_cast<AttributedString &>(*this) = string;
}

// The index of the run that starts here, which is parted from the one before if need be.
qsizetype MutableAttributedString::startRunAt(qsizetype location)
{
    const qsizetype index = runAt(quint64(location));
    if (index == m_runs.size() || m_runs.at(index).start == location)
        return index;
    m_runs.insert(index + 1, Run{location, m_runs.at(index).attributes});
    return index + 1;
}

// Joins equal neighbours where something has changed: the runs from `first` to before `end`, and those beside them.
void MutableAttributedString::mergeRuns(qsizetype first, qsizetype end)
{
    const auto begin = m_runs.begin() + std::max<qsizetype>(first - 1, 0);
    const auto beyond = m_runs.begin() + std::min(end + 1, m_runs.size());
    const auto kept =
        std::unique(begin, beyond, [](const Run &a, const Run &b) { return a.attributes == b.attributes; });
    m_runs.erase(kept, beyond);
}

} // namespace kx
