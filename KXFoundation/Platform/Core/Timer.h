// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/TimerLoop.h>

#include <QtCore/QtGlobal>

#include <functional>
#include <memory>

namespace kx {

/// Runs a block at a date, once or again and again, in the event loop of the thread that scheduled it; nested event
/// loops (dialogs, drags) fire it too. The loop owns the timer while it is valid, so a caller may drop what scheduled()
/// returned, and a std::weak_ptr to an otherwise unowned timer expires when the timer becomes invalid.
/// All calls belong to that thread. Dates are exact to a millisecond and never early.
class KX_CORE_EXPORT Timer final : public std::enable_shared_from_this<Timer> {
public:
    using Clock = TimerLoop::Clock;
    using Date = Clock::time_point;
    using Block = std::function<void(const std::shared_ptr<Timer> &timer)>;

    /// A date that never comes: a timer whose fire date this is stays valid and silent.
    static constexpr Date distantFuture = Date::max();

    /// Fires for the first time `interval` seconds from now. An interval that is not above zero counts as a tenth of a
    /// millisecond. Without a loop the result is a timer that is invalid from the start; it is never null.
    static std::shared_ptr<Timer> scheduled(
        double interval, Block block, bool repeats, TimerLoop *loop = TimerLoop::current());

    ~Timer();
    Q_DISABLE_COPY_MOVE(Timer)

    /// False once invalidate() was called, a one-shot has fired (after its block returned), or the loop has ended.
    [[nodiscard]] bool isValid() const { return m_loop; }

    /// Ends the timer for good: it lets go of its block (after the block returned, if that is running) and of its loop.
    void invalidate();

    /// In seconds; that of a one-shot, too.
    [[nodiscard]] double timeInterval() const { return m_interval; }

    [[nodiscard]] bool repeats() const { return m_repeats; }

    [[nodiscard]] Date fireDate() const { return m_fireDate; }

    /// The next firing; a date in the past fires as soon as the loop runs. Later firings of a repeating timer count
    /// from the new date, so this shifts them. Does nothing to an invalid timer.
    void setFireDate(Date date);
    /// The same, `seconds` from now on the loop's clock.
    void setFireDateFromNow(double seconds);

    /// Runs the block now; neither the dates nor the validity change. Does nothing on an invalid timer.
    void invokeBlock();

private:
    friend class TimerLoop;
    Timer(double interval, Block block, bool repeats, TimerLoop *loop);

    void arm();
    void disarm();
    void wakeUp();
    [[nodiscard]] Date dateAfterFiring(Date fired) const;

    double m_interval;
    bool m_repeats;
    bool m_firing = false;
    bool m_movedWhileFiring = false;
    int m_wait = 0;
    bool m_armed = false;
    Date m_fireDate = distantFuture;
    std::shared_ptr<const Block> m_block; // shared, so that a running block outlives invalidate()
    TimerLoop *m_loop; // null: invalid
};

} // namespace kx
