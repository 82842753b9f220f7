// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/Timer.h>

#include <memory>

/// Timers from blocks, and pausing them. Pausing only moves the fire date: the timer stays valid and scheduled. All of
/// these belong to the thread whose event loop fires the timer, and leave null and invalid timers alone.

/// A timer of the calling thread's event loop that runs `block` with itself `interval` seconds from now, and every
/// `interval` seconds after that if it repeats. The loop keeps it until it is invalid.
KX_CORE_EXPORT std::shared_ptr<kx::Timer> zq_scheduledTimerWithTimeInterval(
    double interval, kx::Timer::Block block, bool repeats);

/// Runs the timer's block at once, without touching its schedule.
KX_CORE_EXPORT void zq_blockInvoke(const std::shared_ptr<kx::Timer> &timer);

/// Silent until resumed.
KX_CORE_EXPORT void zq_pause(const std::shared_ptr<kx::Timer> &timer);

/// Fires as soon as the loop runs.
KX_CORE_EXPORT void zq_resumeNow(const std::shared_ptr<kx::Timer> &timer);

/// Fires after the timer's own interval, counted from now.
KX_CORE_EXPORT void zq_resumeAfterAInterval(const std::shared_ptr<kx::Timer> &timer);

/// Fires `interval` seconds from now; a repeating timer goes on from there at its own rate.
KX_CORE_EXPORT void zq_resumeAfterInterval(const std::shared_ptr<kx::Timer> &timer, double interval);
