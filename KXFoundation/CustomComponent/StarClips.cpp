// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/StarClips.h>

namespace {

double bound(const QList<double> &bounds, qsizetype index)
{
    return static_cast<float>(bounds.at(index));
}

} // namespace

void StarClips::start(const QList<double> &starts, const QList<double> &ends, double playedValue)
{
    m_on = true;
    m_starts = starts;
    m_ends = ends;
    findCurrent(playedValue);
}

void StarClips::stop()
{
    m_on = false;
    m_starts.clear();
    m_ends.clear();
    m_lastEnd = 0;
    m_currentEnd = 0;
}

void StarClips::follow(double playedValue)
{
    if (m_lastEnd >= playedValue || playedValue - 1.2 > m_currentEnd)
        findCurrent(playedValue);
}

bool StarClips::isAboutToEnd(double playedValue, double advance) const
{
    return m_currentIndex >= 0 && m_currentEnd >= playedValue && m_currentEnd - playedValue < advance + 1.0;
}

bool StarClips::hasEnded(double playedValue) const
{
    return m_currentIndex >= 0 && m_currentEnd - playedValue <= 0.8;
}

// An end of 0 counts as none found: the search goes on behind it.
void StarClips::findCurrent(double playedValue)
{
    m_currentEnd = 0;
    m_lastEnd = 0;
    m_currentIndex = -1;
    for (qsizetype i = 0; i < m_ends.size() && m_currentEnd == 0; ++i) {
        const double end = bound(m_ends, i);
        if (end >= playedValue) {
            m_currentIndex = static_cast<qint32>(i);
            m_currentEnd = end;
            m_lastEnd = i > 0 ? bound(m_ends, i - 1) : 0;
        }
    }
    if (m_currentEnd == 0) {
        m_lastEnd = m_ends.isEmpty() ? 0 : bound(m_ends, m_ends.size() - 1);
        m_currentEnd = never;
    }
}
