// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QByteArray>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace kx {

class Mailbox;

/// What child processes have written and nobody has taken yet. The writing side never waits, so a child goes on
/// whatever its reader does; the price is that everything untaken stands in memory. Every member may be called from any
/// thread.
class KX_CORE_EXPORT ChildOutput : public std::enable_shared_from_this<ChildOutput> {
public:
    using Ready = std::function<void()>;

    [[nodiscard]] static std::shared_ptr<ChildOutput> create();
    ~ChildOutput();
    Q_DISABLE_COPY_MOVE(ChildOutput)

    /// Takes all that has arrived; empty when there is nothing. Never waits.
    [[nodiscard]] QByteArray availableData();

    /// Calls `ready` once, in the event loop of the calling thread, when there is something to take (also when there is
    /// already). A new call replaces one that is still under way. Calls never overlap, not even through a nested event
    /// loop. Does nothing after stopNotifying().
    void notifyOnce(Ready ready);

    /// Ends notification for good. When it returns, no `ready` runs on another thread: one that does is waited for.
    void stopNotifying();

    /// Drops what is there and what comes.
    void discard();

    /// Takes the bytes in and leaves `bytes` empty, possibly with room that can be used again.
    void append(QByteArray &bytes);

private:
    ChildOutput();
    void post();
    void notify();

    std::mutex m_mutex;
    std::condition_variable m_returned; // a Ready has returned
    QByteArray m_data;
    bool m_discarding = false;
    bool m_stopped = false;
    bool m_posted = false; // the loop has been told to call m_ready
    Ready m_ready;
    std::shared_ptr<Mailbox> m_mailbox; // of the thread that wants m_ready
    std::thread::id m_running; // the thread in which a Ready runs
};

} // namespace kx
