// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/SerialQueue.h>

#include <KXFoundation/Platform/Core/Threads.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <limits>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace kx {

struct SerialQueue::Core {
    struct Entry {
        quint64 number;
        Operation operation;
    };

    static constexpr quint64 nobodyWaits = std::numeric_limits<quint64>::max();

    std::mutex mutex;
    std::condition_variable work; // something was added, or the queue goes away
    std::condition_variable progress; // something finished or was cancelled
    std::deque<Entry> waiting;
    quint64 added = 0; // number of the newest entry
    quint64 running = 0; // number of the running entry, 0 for none
    quint64 awaited = nobodyWaits; // smallest number that somebody waits for
    bool stopping = false;
    std::atomic<qsizetype> count = 0;
    std::thread thread;
    std::thread::id threadId; // also known while the destructor has taken the thread

    // Every entry up to this number is done with.
    quint64 settled() const { return running ? running - 1 : waiting.empty() ? added : waiting.front().number - 1; }

    // Wakes who waits only when that brings somebody on: waking costs more than a short operation.
    void tellProgress()
    {
        if (settled() < awaited)
            return;
        awaited = nobodyWaits; // those who are not served yet say so again
        progress.notify_all();
    }

    void run()
    {
        std::unique_lock lock(mutex);
        while (true) {
            work.wait(lock, [this] { return stopping || !waiting.empty(); });
            if (waiting.empty())
                return;
            {
                const Entry entry = std::move(waiting.front());
                waiting.pop_front();
                running = entry.number;
                lock.unlock();
                entry.operation();
            } // what the operation holds is gone before anyone is told that it has finished
            lock.lock();
            running = 0;
            count.fetch_sub(1, std::memory_order_release);
            tellProgress();
        }
    }
};

SerialQueue::SerialQueue()
    : m_core(std::make_shared<Core>())
{
}

SerialQueue::~SerialQueue()
{
    std::thread thread;
    {
        const std::lock_guard lock(m_core->mutex);
        m_core->stopping = true;
        thread = std::move(m_core->thread);
    }
    cancelAllOperations(); // the running one adds no more
    m_core->work.notify_all();
    if (thread.get_id() == std::this_thread::get_id())
        thread.detach();
    else if (thread.joinable())
        thread.join();
}

void SerialQueue::addOperation(Operation operation)
{
    const std::lock_guard lock(m_core->mutex);
    if (m_core->stopping)
        return; // by the operation that the destructor waits for
    if (!m_core->thread.joinable()) {
        try {
            const SignalsBlocked blocked; // inherited by the thread: the host's handlers run in the host's threads
            m_core->thread = std::thread([core = m_core] { core->run(); });
            m_core->threadId = m_core->thread.get_id();
        } catch (const std::system_error &) {
            return;
        }
    }
    m_core->waiting.push_back({++m_core->added, std::move(operation)});
    m_core->count.fetch_add(1, std::memory_order_release);
    m_core->work.notify_one();
}

void SerialQueue::cancelAllOperations()
{
    std::deque<Core::Entry> cancelled; // destroyed after the lock: what an operation holds may come back to this queue
    const std::lock_guard lock(m_core->mutex);
    cancelled.swap(m_core->waiting);
    m_core->count.fetch_sub(qsizetype(cancelled.size()), std::memory_order_release);
    m_core->tellProgress();
}

void SerialQueue::waitUntilAllOperationsAreFinished()
{
    std::unique_lock lock(m_core->mutex);
    if (m_core->threadId == std::this_thread::get_id())
        return;
    const quint64 last = m_core->added;
    while (m_core->settled() < last) {
        m_core->awaited = std::min(m_core->awaited, last);
        m_core->progress.wait(lock);
    }
}

qsizetype SerialQueue::operationCount() const
{
    return m_core->count.load(std::memory_order_acquire);
}

} // namespace kx
