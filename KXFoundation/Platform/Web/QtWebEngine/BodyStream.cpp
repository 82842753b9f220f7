// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/BodyStream.h>

#include <algorithm>
#include <cstring>

namespace kx {

BodyStream::BodyStream()
{
    // Unbuffered: QIODevice's own buffer would copy every byte once more.
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

void BodyStream::append(const QByteArray &data)
{
    if (data.isEmpty())
        return;
    bool readerMayWait;
    {
        const QMutexLocker lock(&m_mutex);
        if (m_finished || m_aborted)
            return;
        readerMayWait = m_read == m_size;
        m_chunks.push_back({data, m_size});
        m_size += data.size();
    }
    if (readerMayWait)
        Q_EMIT readyRead();
}

void BodyStream::finish()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_finished = true;
    }
    Q_EMIT readyRead();
}

void BodyStream::abort()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_aborted = true;
        m_chunks.clear();
    }
    Q_EMIT readyRead();
}

void BodyStream::setWhole()
{
    const QMutexLocker lock(&m_mutex);
    Q_ASSERT(m_finished && m_read == 0);
    m_whole = true;
}

bool BodyStream::isSequential() const
{
    return !m_whole;
}

qint64 BodyStream::size() const
{
    const QMutexLocker lock(&m_mutex);
    return m_whole ? m_size : m_size - m_read;
}

qint64 BodyStream::bytesAvailable() const
{
    const QMutexLocker lock(&m_mutex);
    if (m_aborted)
        return 0;
    return m_size - (m_whole ? pos() : m_read);
}

bool BodyStream::atEnd() const
{
    // Deliberate: an empty stream is not at its end while more may come, and never after abort(): the reader takes the
    // end for success.
    const QMutexLocker lock(&m_mutex);
    return m_finished && !m_aborted && (m_whole ? pos() : m_read) >= m_size;
}

qint64 BodyStream::readData(char *data, qint64 maxSize)
{
    const QMutexLocker lock(&m_mutex);
    if (m_aborted)
        return -1;
    const qint64 begin = m_whole ? pos() : m_read;
    if (begin >= m_size)
        return m_finished ? -1 : 0;
    auto chunk = std::upper_bound(m_chunks.cbegin(), m_chunks.cend(), begin,
        [](qint64 position, const Chunk &candidate) { return position < candidate.begin; });
    --chunk;
    qint64 copied = 0;
    for (; chunk != m_chunks.cend() && copied < maxSize; ++chunk) {
        const qint64 skipped = begin + copied - chunk->begin;
        const qint64 count = std::min<qint64>(chunk->data.size() - skipped, maxSize - copied);
        std::memcpy(data + copied, chunk->data.constData() + skipped, size_t(count));
        copied += count;
    }
    if (!m_whole) {
        m_read += copied;
        while (!m_chunks.empty() && m_chunks.front().begin + m_chunks.front().data.size() <= m_read)
            m_chunks.pop_front();
    }
    return copied;
}

qint64 BodyStream::writeData(const char *, qint64)
{
    return -1;
}

} // namespace kx
