// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/TimerLoop.h>

#include <QtCore/QList>

#include <algorithm>
#include <map>

namespace kx::test {

/// A loop whose clock moves only when it is told to.
class ManualTimerLoop final : public TimerLoop {
public:
    ~ManualTimerLoop() override { close(); }

    Clock::time_point now() const override { return m_now; }

    /// Lets the time pass, ending each wait at its moment, in order.
    void advance(std::chrono::nanoseconds time)
    {
        const Clock::time_point end = m_now + time;
        for (;;) {
            const auto next = std::min_element(
                m_pending.begin(), m_pending.end(), [](const auto &a, const auto &b) { return a.second < b.second; });
            if (next == m_pending.end() || next->second > end)
                break;
            const int wait = next->first;
            m_now = std::max(m_now, next->second);
            m_pending.erase(next);
            waitEnded(wait);
        }
        m_now = std::max(m_now, end);
    }

    /// Lets the time pass while the loop is busy: what came due stays due.
    void block(std::chrono::nanoseconds time) { m_now += time; }

    [[nodiscard]] const QList<std::chrono::milliseconds> &waits() const { return m_waits; } ///< Every wait asked for.
    [[nodiscard]] qsizetype pendingWaits() const { return qsizetype(m_pending.size()); }

protected:
    int startWait(std::chrono::milliseconds wait) override
    {
        m_waits.append(wait);
        m_pending.emplace(++m_lastWait, m_now + wait);
        return m_lastWait;
    }
    void stopWait(int wait) override { m_pending.erase(wait); }

private:
    Clock::time_point m_now{std::chrono::hours(1)};
    std::map<int, Clock::time_point> m_pending;
    QList<std::chrono::milliseconds> m_waits;
    int m_lastWait = 0;
};

} // namespace kx::test
