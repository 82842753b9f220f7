// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QtGlobal>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace kx {

/// Takes functions from any thread and runs them, in order, in the event loop of the thread that it belongs to. What
/// waits while that thread runs no loop runs when it starts one, and is dropped when the thread ends.
class Mailbox {
public:
    using Letter = std::function<void()>;

    /// The box of the calling thread, made at the first call; never null. Also for threads that Qt did not start, and
    /// without an application object.
    [[nodiscard]] static std::shared_ptr<Mailbox> ofThisThread();

    ~Mailbox();
    Q_DISABLE_COPY_MOVE(Mailbox)

    /// Does nothing once the thread has ended.
    void post(Letter letter);

private:
    class Receiver;
    struct ThreadEnd;
    Mailbox();
    void close();
    void runNext();

    std::mutex m_mutex;
    std::deque<Letter> m_letters;
    std::unique_ptr<Receiver> m_receiver; // lives in the thread; null when that has ended
};

} // namespace kx
