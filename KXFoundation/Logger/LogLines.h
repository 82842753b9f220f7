// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <vector>

/// Lines packed one behind the other, so that adding one seldom allocates.
class LogLines {
public:
    void append(QStringView line)
    {
        m_text += line;
        m_ends.push_back(m_text.size());
    }
    [[nodiscard]] qsizetype count() const { return qsizetype(m_ends.size()); }
    [[nodiscard]] QStringView line(qsizetype index) const
    {
        const qsizetype start = index ? m_ends[std::size_t(index - 1)] : 0;
        return QStringView(m_text).sliced(start, m_ends[std::size_t(index)] - start);
    }
    /// Keeps the memory.
    void clear()
    {
        m_text.resize(0);
        m_ends.clear();
    }

private:
    QString m_text;
    std::vector<qsizetype> m_ends;
};
