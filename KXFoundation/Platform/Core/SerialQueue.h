// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QtGlobal>

#include <functional>
#include <memory>

namespace kx {

/// Runs operations one at a time, in the order in which they were added, on one thread of its own. The thread starts
/// with the first operation and sleeps while there is none. Every member may be called from any thread.
class KX_CORE_EXPORT SerialQueue {
public:
    using Operation = std::function<void()>;

    SerialQueue();
    /// Cancels what has not started and waits for the running operation, unless that operation is what drops the queue.
    /// What the running operation adds meanwhile is dropped.
    ~SerialQueue();
    Q_DISABLE_COPY_MOVE(SerialQueue)

    /// Never waits for an operation. An operation must not throw. If the system gives no thread, the operation is
    /// dropped.
    void addOperation(Operation operation);

    /// Drops the operations that have not started. A running one finishes.
    void cancelAllOperations();

    /// Returns when every operation added before this call has finished or was cancelled. Called from an operation of
    /// this queue it returns at once.
    void waitUntilAllOperationsAreFinished();

    /// Operations waiting or running.
    [[nodiscard]] qsizetype operationCount() const;

private:
    struct Core;
    std::shared_ptr<Core> m_core; // shared with the thread
};

} // namespace kx
