// SPDX-License-Identifier: MIT
#include <KXFoundation/BigImageThumb/KXBigImageThumb.h>

#include <KXFoundation/Category/BitmapKXTools.h>
#include <KXFoundation/Platform/UI/ImageFiles/JpegDecoder.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <atomic>

namespace {

std::atomic<qint64> memoryLimit = qint64(1) << 30;

} // namespace

KXBigImageThumb::KXBigImageThumb(const QString &imageFilePath)
{
    if (imageFilePath.contains(QChar::Null)) // the system would take the file of the name before it
        return;
    QFile file(imageFilePath);
    // Files alone: a pipe would be waited for without end.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return;
    m_bitmap = kx::decodeJpeg(file, memoryLimit);
    m_width = m_bitmap.layout().pixelWidth;
    m_height = m_bitmap.layout().pixelHeight;
}

kx::Image KXBigImageThumb::thumbFromRect(const QRectF &rect) const
{
    return kx::imageFromRect(m_bitmap, rect);
}

void KXBigImageThumb::setMemoryLimitInBytes(qint64 limit)
{
    memoryLimit = std::max<qint64>(limit, 0);
}

qint64 KXBigImageThumb::memoryLimitInBytes()
{
    return memoryLimit;
}
