// SPDX-License-Identifier: MIT
#include "LogBatches.h"

#include <KXFoundation/Platform/Core/SerialQueue.h>
#include <KXFoundation/Platform/Core/UpdateFile.h>

#include <QtCore/QStringConverter>

#include <utility>

namespace {

// Deliberate: 32 bits, then the sign is carried over, so some sizes become limits that no file reaches.
quint64 limitInBytes(qint32 mebibytes)
{
    return quint64(qint64(qint32(quint32(mebibytes) << 20)));
}

} // namespace

LogBatches::LogBatches()
    : m_queue(std::make_shared<kx::SerialQueue>())
{
}

LogBatches::~LogBatches() = default;

void LogBatches::add(QStringView line, bool force)
{
    const std::lock_guard lock(m_mutex);
    if (!force && m_queue->operationCount() == 0) {
        m_memory.append(line);
        if (m_memory.count() >= linesPerBatch)
            enqueue(nullptr);
        return;
    }
    // An operation that nobody but us holds any more was cancelled.
    const bool room = m_open && m_open.use_count() > 1 && m_open->lines.count() < linesPerBatch;
    if (!room) {
        m_open = std::make_shared<Waiting>();
        enqueue(m_open);
    }
    m_open->lines.append(line);
    if (force) {
        m_open->force = true;
        m_open.reset();
    }
}

void LogBatches::save()
{
    add(u"force eof\n", true);
    queue()->waitUntilAllOperationsAreFinished();
}

void LogBatches::cancelWaiting()
{
    queue()->cancelAllOperations();
}

QStringList LogBatches::memory() const
{
    const std::lock_guard lock(m_mutex);
    QStringList lines;
    for (qsizetype i = 0; i < m_memory.count(); ++i)
        lines.append(m_memory.line(i).toString());
    return lines;
}

void LogBatches::setMemory(const QStringList &lines)
{
    const std::lock_guard lock(m_mutex);
    m_memory.clear();
    for (const QString &line : lines)
        m_memory.append(line);
}

std::shared_ptr<kx::SerialQueue> LogBatches::queue()
{
    const std::lock_guard lock(m_mutex);
    return m_queue;
}

void LogBatches::setQueue(std::shared_ptr<kx::SerialQueue> queue)
{
    if (!queue)
        queue = std::make_shared<kx::SerialQueue>();
    // The old queue goes after the lock: it may wait for an operation that wants the lock.
    const std::lock_guard lock(m_mutex);
    m_open.reset();
    m_queue.swap(queue);
}

void LogBatches::enqueue(std::shared_ptr<Waiting> waiting)
{
    m_queue->addOperation([weak = weak_from_this(), waiting = std::move(waiting)] {
        if (const std::shared_ptr<LogBatches> self = weak.lock())
            self->run(waiting);
    });
}

void LogBatches::run(const std::shared_ptr<Waiting> &waiting)
{
    std::unique_lock lock(m_mutex);
    if (waiting && waiting == m_open)
        m_open.reset();
    const qsizetype count = waiting ? waiting->lines.count() : 0;
    qsizetype taken = 0;
    if (count > 0 && m_memory.count() == 0) { // the usual case: nothing to copy while callers wait for the lock
        std::swap(m_memory, waiting->lines);
        taken = count;
    }
    do {
        while (taken < count && m_memory.count() < linesPerBatch)
            m_memory.append(waiting->lines.line(taken++));
        const bool forced = waiting && waiting->force && taken == count;
        if (m_memory.count() < linesPerBatch && !forced)
            break;
        std::swap(m_batch, m_memory);
        lock.unlock();
        write(m_batch);
        m_batch.clear();
        lock.lock();
    } while (taken < count);
}

// Runs without the lock: callers go on adding lines.
void LogBatches::write(const LogLines &batch)
{
    const std::shared_ptr<kx::UpdateFile> file = files.file();
    if (!file)
        return;
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    for (qsizetype i = 0; i < batch.count(); ++i) {
        const QStringView line = batch.line(i);
        m_bytes.resize(encoder.requiredSpace(line.size()));
        const char *end = encoder.appendToBuffer(m_bytes.data(), line);
        file->write({m_bytes.constData(), end});
    }
    file->synchronize();
    if (file->offset() >= limitInBytes(maxFileSize.load(std::memory_order_relaxed)))
        files.release(file);
}
