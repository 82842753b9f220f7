// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/AttributedString.h>

#include <algorithm>

namespace kx {

AttributedString::AttributedString(const QString &string, const TextAttributes &attributes)
    : m_string(string)
{
    if (!string.isEmpty())
        m_runs.append({0, attributes});
}

AttributedString::AttributedString(const TextAttachmentRef &attachment)
    : AttributedString(QString(attachmentCharacter), TextAttributes{.attachment = attachment})
{
}

TextRange AttributedString::rangeOfRun(qsizetype index) const
{
    const qsizetype start = m_runs.at(index).start;
    const qsizetype end = index + 1 < m_runs.size() ? m_runs.at(index + 1).start : m_string.size();
    return {quint64(start), quint64(end - start)};
}

qsizetype AttributedString::runAt(quint64 location) const
{
    if (location >= length())
        return m_runs.size();
    const auto after = std::upper_bound(m_runs.begin(), m_runs.end(), qsizetype(location),
        [](qsizetype start, const Run &run) { return start < run.start; });
    return after - m_runs.begin() - 1;
}

TextAttributes AttributedString::attributesAt(quint64 location) const
{
    const qsizetype index = runAt(location);
    return index < m_runs.size() ? m_runs.at(index).attributes : TextAttributes();
}

} // namespace kx
