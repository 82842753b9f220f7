// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Timer.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kx {

namespace {

using Nanoseconds = std::chrono::nanoseconds;

// Saturates; NaN is no time at all.
Nanoseconds fromSeconds(double seconds)
{
    constexpr double most = 9.2e9; // seconds whose nanoseconds fit
    if (std::isnan(seconds))
        return Nanoseconds::zero();
    if (std::fabs(seconds) >= most)
        return seconds > 0 ? Nanoseconds::max() : -Nanoseconds::max();
    return Nanoseconds(std::llround(seconds * 1e9));
}

// Saturates at the distant future and at the clock's beginning.
Timer::Date later(Timer::Date date, Nanoseconds delay)
{
    if (delay >= Nanoseconds::zero())
        return delay >= Timer::distantFuture - std::max(date, Timer::Date()) ? Timer::distantFuture : date + delay;
    return delay <= Timer::Date::min() - std::min(date, Timer::Date()) ? Timer::Date::min() : date + delay;
}

} // namespace

std::shared_ptr<Timer> Timer::scheduled(double interval, Block block, bool repeats, TimerLoop *loop)
{
    std::shared_ptr<Timer> timer(new Timer(interval > 0 ? interval : 0.0001, std::move(block), repeats, loop));
    if (loop) {
        loop->keep(timer);
        timer->setFireDateFromNow(timer->m_interval);
    }
    return timer;
}

Timer::Timer(double interval, Block block, bool repeats, TimerLoop *loop)
    : m_interval(interval)
    , m_repeats(repeats)
    , m_block(std::make_shared<const Block>(std::move(block)))
    , m_loop(loop)
{
}

Timer::~Timer() = default;

void Timer::invalidate()
{
    if (!m_loop)
        return;
    const std::shared_ptr<Timer> self = shared_from_this();
    disarm();
    const std::shared_ptr<const Block> block = std::exchange(m_block, nullptr);
    std::exchange(m_loop, nullptr)->release(this);
}

void Timer::setFireDate(Date date)
{
    if (!m_loop)
        return;
    m_fireDate = date;
    if (m_firing)
        m_movedWhileFiring = true; // armed when the block returns
    else
        arm();
}

void Timer::setFireDateFromNow(double seconds)
{
    if (m_loop)
        setFireDate(later(m_loop->now(), fromSeconds(seconds)));
}

void Timer::invokeBlock()
{
    const std::shared_ptr<const Block> block = m_block;
    if (m_loop && *block)
        (*block)(shared_from_this());
}

void Timer::arm()
{
    disarm();
    if (m_fireDate == distantFuture)
        return;
    const Date now = m_loop->now();
    const auto wait = m_fireDate > now ? std::chrono::ceil<std::chrono::milliseconds>(m_fireDate - now)
                                       : std::chrono::milliseconds::zero();
    m_wait = m_loop->wake(this, std::min(wait, TimerLoop::longestWait));
    m_armed = true;
}

void Timer::disarm()
{
    if (std::exchange(m_armed, false))
        m_loop->cancelWake(m_wait);
}

void Timer::wakeUp()
{
    const std::shared_ptr<Timer> self = shared_from_this();
    m_armed = false;
    if (m_loop->now() < m_fireDate) {
        arm();
        return;
    }
    // Not armed while the block runs: a nested event loop in the block fires other timers, never this one again.
    const Date fired = m_fireDate;
    m_firing = true;
    m_movedWhileFiring = false;
    invokeBlock();
    m_firing = false;
    if (!m_loop)
        return;
    if (!m_repeats) {
        invalidate();
        return;
    }
    if (!m_movedWhileFiring)
        m_fireDate = dateAfterFiring(fired);
    arm();
}

// The first date after now in step with the one that fired; steps that were missed are dropped, not caught up.
Timer::Date Timer::dateAfterFiring(Date fired) const
{
    const Nanoseconds step = std::max(fromSeconds(m_interval), Nanoseconds(1));
    const Date now = m_loop->now();
    const Nanoseconds sinceLastStep = (now - std::max(fired, Date())) % step;
    return later(now, step - sinceLastStep);
}

} // namespace kx
