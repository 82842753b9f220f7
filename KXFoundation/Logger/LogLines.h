// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QStringView>

#include <string>
#include <vector>

/// Lines packed one behind the other, so that adding one seldom allocates.
class LogLines {
public:
    void append(QStringView line)
    {
        m_text.append(line.utf16(), std::size_t(line.size()));
        m_ends.push_back(m_text.size());
    }
    [[nodiscard]] qsizetype count() const { return qsizetype(m_ends.size()); }
    [[nodiscard]] QStringView line(qsizetype index) const
    {
        const auto i = std::size_t(index);
        const std::size_t start = i ? m_ends[i - 1] : 0;
        return {m_text.data() + start, qsizetype(m_ends[i] - start)};
    }
    /// Keeps the memory.
    void clear()
    {
        m_text.clear();
        m_ends.clear();
    }

private:
    std::u16string m_text;
    std::vector<std::size_t> m_ends; // of each line in the text
};
