// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Threads.h>

#include <system_error>
#include <thread>

#include <pthread.h>
#include <sched.h>

namespace kx {

void runDetached(ThreadPriority priority, std::function<void()> work)
{
    try {
        const SignalsBlocked blocked;
        std::thread([priority, work = std::move(work)] {
            if (priority == ThreadPriority::Background) {
                const sched_param none{};
                pthread_setschedparam(pthread_self(), SCHED_IDLE, &none); // refused: it runs as it is
            }
            work();
        }).detach();
    } catch (const std::system_error &) {
    }
}

SignalsBlocked::SignalsBlocked()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &m_before);
}

SignalsBlocked::~SignalsBlocked()
{
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

} // namespace kx
