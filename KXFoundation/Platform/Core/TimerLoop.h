// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QtGlobal>

#include <chrono>
#include <map>
#include <memory>
#include <unordered_map>

namespace kx {

class Timer;

/// What a Timer needs of the event loop that fires it: a clock, waits, and an owner. The timers of a loop belong to it
/// until they become invalid. Everything happens in the loop's thread.
class KX_CORE_EXPORT TimerLoop {
public:
    /// Steady: setting the computer's time neither delays nor hastens a timer.
    using Clock = std::chrono::steady_clock;

    /// No single wait is longer than this; Timer makes longer ones out of several.
    static constexpr std::chrono::milliseconds longestWait = std::chrono::hours(24 * 20);

    /// The Qt event loop of the calling thread, nested event loops included; or nullptr where there can be none (in the
    /// main thread without an application object). It lives as long as the thread's event dispatcher.
    [[nodiscard]] static TimerLoop *current();

    TimerLoop() = default;
    virtual ~TimerLoop();
    Q_DISABLE_COPY_MOVE(TimerLoop)

    [[nodiscard]] virtual Clock::time_point now() const = 0;

protected:
    /// Begins a wait of 0 to longestWait, after which waitEnded() is called once with the number that is returned here.
    /// Numbers of waits under way differ. The end may come a little early or late.
    virtual int startWait(std::chrono::milliseconds wait) = 0;
    virtual void stopWait(int wait) = 0;

    void waitEnded(int wait);
    /// Invalidates every timer. For destructors of subclasses, while stopWait() can still be called.
    void close();

private:
    friend class Timer;
    void keep(std::shared_ptr<Timer> timer);
    void release(Timer *timer);
    int wake(Timer *timer, std::chrono::milliseconds wait);
    void cancelWake(int wait);

    std::map<Timer *, std::shared_ptr<Timer>> m_timers;
    std::unordered_map<int, Timer *> m_waits;
};

} // namespace kx
