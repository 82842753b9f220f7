// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QtGlobal>

#include <csignal>
#include <functional>

namespace kx {

enum class ThreadPriority { Default, Background };

/// Runs the work on a thread of its own and does not wait. Background work gets the processor only when nothing else
/// wants it. If the system gives no thread, the work is dropped.
void runDetached(ThreadPriority priority, std::function<void()> work);

/// While it lives, the calling thread, and any thread that it starts, takes no signal.
class SignalsBlocked {
public:
    SignalsBlocked();
    ~SignalsBlocked();
    Q_DISABLE_COPY_MOVE(SignalsBlocked)

private:
    sigset_t m_before;
};

} // namespace kx
