// SPDX-License-Identifier: MIT
#pragma once

#include "LogFiles.h"
#include "LogLines.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <atomic>
#include <memory>
#include <mutex>

namespace kx {
class SerialQueue;
}

/// Gathers lines and writes them in batches on a serial queue.
///
/// A line whose operation could run at once, because the queue is idle, is taken up on the caller's thread, which saves
/// waking the queue for it. Behind other operations, lines share one operation for up to a batch of them.
class LogBatches : public std::enable_shared_from_this<LogBatches> {
public:
    static constexpr qsizetype linesPerBatch = 50;

    LogBatches();
    ~LogBatches();

    void add(QStringView line, bool force);
    void save();
    /// Drops the lines that still wait for the queue.
    void cancelWaiting();

    [[nodiscard]] QStringList memory() const;
    void setMemory(const QStringList &lines);
    [[nodiscard]] std::shared_ptr<kx::SerialQueue> queue();
    void setQueue(std::shared_ptr<kx::SerialQueue> queue);

    LogFiles files;
    std::atomic<qint32> maxFileSize = 10;

private:
    struct Waiting { // lines of one operation
        LogLines lines;
        bool force = false;
    };

    void enqueue(std::shared_ptr<Waiting> waiting);
    void run(const std::shared_ptr<Waiting> &waiting);
    void write(const LogLines &batch);

    mutable std::mutex m_mutex;
    std::shared_ptr<kx::SerialQueue> m_queue;
    LogLines m_memory;
    LogLines m_batch; // this and the next belong to the running operation
    QByteArray m_bytes;
    std::shared_ptr<Waiting> m_open; // the newest operation, as long as it can take more lines
};
