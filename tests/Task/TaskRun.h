// SPDX-License-Identifier: MIT
#pragma once

#include "Support/Gate.h"

#include <KXFoundation/Task/KXAsyncTask.h>

#include <QtCore/QDir>
#include <QtTest/QTest>

#include <atomic>
#include <mutex>
#include <semaphore>
#include <thread>
#include <vector>

namespace kx::test {

// Where everything costs many times as much.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool underSanitizer = true;
#else
inline constexpr bool underSanitizer = false;
#endif

/// One task on the helper program, with everything that it delivers.
class TaskRun {
public:
    struct Piece {
        QString text;
        std::thread::id thread;
    };

    explicit TaskRun(const QStringList &commands = {}, bool realTimeLog = false)
        : task(KXAsyncTask::initWithExecutePath(QStringLiteral(TASK_CHILD)))
    {
        task->setArguments(commands);
        task->setRealTimeLog(realTimeLog);
        task->setLogReveiver(receiver());
    }

    /// Runs the child; the completion releases wait().
    std::optional<KXError> execute()
    {
        return task->execute([shared = m_shared](const std::shared_ptr<KXAsyncTask> &ended) {
            {
                const std::scoped_lock lock(shared->mutex);
                shared->ended = ended.get();
                shared->completionThread = std::this_thread::get_id();
            }
            ++shared->completions;
            shared->done.release();
        });
    }
    /// Waits for the completion without an event loop.
    [[nodiscard]] bool wait() const { return m_shared->done.try_acquire_for(std::chrono::milliseconds(patience)); }
    /// Both.
    [[nodiscard]] bool run() { return !execute() && wait(); }

    /// The receiver that collects, for a task of one's own.
    [[nodiscard]] KXAsyncTask::LogReveiver receiver() const
    {
        return [shared = m_shared](const QString &text) {
            if (shared->inside.exchange(true))
                shared->overlapped = true;
            {
                const std::scoped_lock lock(shared->mutex);
                shared->pieces.push_back({text, std::this_thread::get_id()});
            }
            shared->inside = false;
        };
    }

    [[nodiscard]] std::vector<Piece> pieces() const
    {
        const std::scoped_lock lock(m_shared->mutex);
        return m_shared->pieces;
    }
    [[nodiscard]] QStringList texts() const
    {
        QStringList list;
        for (const Piece &piece : pieces())
            list.append(piece.text);
        return list;
    }
    [[nodiscard]] int completions() const { return m_shared->completions; }
    [[nodiscard]] bool overlapped() const { return m_shared->overlapped; }
    /// What the completion was given; only to be compared.
    [[nodiscard]] const KXAsyncTask *ended() const
    {
        const std::scoped_lock lock(m_shared->mutex);
        return m_shared->ended;
    }
    [[nodiscard]] std::thread::id completionThread() const
    {
        const std::scoped_lock lock(m_shared->mutex);
        return m_shared->completionThread;
    }

    std::shared_ptr<KXAsyncTask> task;

private:
    struct Shared {
        std::mutex mutex;
        std::vector<Piece> pieces;
        const KXAsyncTask *ended = nullptr;
        std::thread::id completionThread;
        std::atomic<int> completions = 0;
        std::atomic<bool> inside = false;
        std::atomic<bool> overlapped = false;
        std::counting_semaphore<> done{0};
    };
    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
};

/// The status line of a normal exit.
inline QString exitLine(int status)
{
    return u"terminationStatus:" + QString::number(status) + u"terminationReason:1";
}
/// The status line of a signal.
inline QString signalLine(int number)
{
    return u"terminationStatus:" + QString::number(number) + u"terminationReason:2";
}

} // namespace kx::test
