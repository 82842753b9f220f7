// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/TimerUtil.h>

#include <utility>

std::shared_ptr<kx::Timer> zq_scheduledTimerWithTimeInterval(double interval, kx::Timer::Block block, bool repeats)
{
    return kx::Timer::scheduled(interval, std::move(block), repeats);
}

void zq_blockInvoke(const std::shared_ptr<kx::Timer> &timer)
{
    if (timer)
        timer->invokeBlock();
}

void zq_pause(const std::shared_ptr<kx::Timer> &timer)
{
    if (timer)
        timer->setFireDate(kx::Timer::distantFuture);
}

void zq_resumeNow(const std::shared_ptr<kx::Timer> &timer)
{
    zq_resumeAfterInterval(timer, 0);
}

void zq_resumeAfterAInterval(const std::shared_ptr<kx::Timer> &timer)
{
    if (timer)
        zq_resumeAfterInterval(timer, timer->timeInterval());
}

void zq_resumeAfterInterval(const std::shared_ptr<kx::Timer> &timer, double interval)
{
    if (timer)
        timer->setFireDateFromNow(interval);
}
