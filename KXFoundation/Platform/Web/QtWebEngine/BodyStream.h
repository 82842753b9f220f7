// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QMutex>

#include <deque>

namespace kx {

/// The body of an answer on its way to the engine: filled on the main thread, read on a thread of the engine's.
///
/// Chunks are shared, not copied, until the reader copies them out. As a stream it drops what was read; a whole body is
/// kept and can be read from any position.
class BodyStream final : public QIODevice {
    Q_OBJECT
public:
    BodyStream();

    // Main thread.
    void append(const QByteArray &data);
    /// No more data comes.
    void finish();
    /// No more data comes and what waits is dropped: the reader meets an error instead of the end.
    void abort();
    /// Makes a finished body seekable. Only before the engine reads it.
    void setWhole();

    // The engine's thread.
    [[nodiscard]] bool isSequential() const override;
    [[nodiscard]] qint64 size() const override;
    [[nodiscard]] qint64 bytesAvailable() const override;
    [[nodiscard]] bool atEnd() const override;

protected:
    /// 0 when nothing is there yet, -1 at the end and after abort().
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    struct Chunk {
        QByteArray data;
        qint64 begin; ///< Where it lies in the body.
    };

    mutable QMutex m_mutex;
    std::deque<Chunk> m_chunks;
    qint64 m_read = 0; ///< How far a stream was read.
    qint64 m_size = 0; ///< What was appended so far.
    bool m_finished = false;
    bool m_aborted = false;
    bool m_whole = false; ///< Written before the reader begins.
};

} // namespace kx
