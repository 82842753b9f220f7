// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Bitmap.h>

#include <QtGui/QPixelFormat>

#include <algorithm>
#include <cstring>
#include <memory>

namespace kx {

namespace {

// The formats whose pixels are whole samples of one width.
QImage::Format bitmapFormat(const QImage &image)
{
    switch (image.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
    case QImage::Format_RGB888:
    case QImage::Format_BGR888:
    case QImage::Format_RGBX8888:
    case QImage::Format_RGBA8888:
    case QImage::Format_RGBA8888_Premultiplied:
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
    case QImage::Format_RGBX64:
    case QImage::Format_RGBA64:
    case QImage::Format_RGBA64_Premultiplied:
    case QImage::Format_RGBX16FPx4:
    case QImage::Format_RGBA16FPx4:
    case QImage::Format_RGBA16FPx4_Premultiplied:
    case QImage::Format_RGBX32FPx4:
    case QImage::Format_RGBA32FPx4:
    case QImage::Format_RGBA32FPx4_Premultiplied: return image.format();
    default: return image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    }
}

PixelLayout layoutOf(const QImage &image)
{
    const QPixelFormat format = image.pixelFormat();
    const bool gray = format.colorModel() == QPixelFormat::Grayscale;
    const bool alpha = image.hasAlphaChannel();
    PixelLayout layout;
    layout.pixelWidth = image.width();
    layout.pixelHeight = image.height();
    layout.bitsPerSample = gray ? format.bitsPerPixel() : format.redSize();
    layout.samplesPerPixel = (gray ? 1 : 3) + (alpha ? 1 : 0);
    layout.hasAlpha = alpha;
    layout.bitsPerPixel = image.depth();
    layout.bytesPerRow = image.bytesPerLine();
    layout.format = image.format();
    layout.colorSpace = image.colorSpace();
    return layout;
}

void copyRows(const uchar *from, qint64 fromStep, uchar *to, qint64 toStep, qint64 length, int rows)
{
    for (int row = 0; row < rows; ++row)
        std::memcpy(to + row * toStep, from + row * fromStep, std::size_t(length));
}

// Reading by the format takes addresses that its pixels, or the samples in them, can have.
bool isAligned(const PixelLayout &layout, const uchar *data)
{
    const int unit = layout.bitsPerPixel == 24 ? 1 : layout.bitsPerPixel / 8;
    return layout.bytesPerRow % unit == 0 && quintptr(data) % quintptr(unit) == 0;
}

// The buffer as an image, which shares it where it can and keeps it alive.
QImage readable(const PixelLayout &layout, const QByteArray &bytes)
{
    const QImage::Format format = layout.resolvedFormat();
    const qint64 rowBytes = qint64(layout.pixelWidth) * layout.bitsPerPixel / 8;
    if (format == QImage::Format_Invalid || bytes.size() < layout.bytesPerRow * (layout.pixelHeight - 1) + rowBytes)
        return {};
    const auto *const data = reinterpret_cast<const uchar *>(bytes.constData());
    QImage image;
    if (isAligned(layout, data)) {
        auto keeper = std::make_unique<QByteArray>(bytes);
        const auto release = [](void *kept) { delete static_cast<QByteArray *>(kept); };
        image = QImage(data, layout.pixelWidth, layout.pixelHeight, layout.bytesPerRow, format, release, keeper.get());
        if (!image.isNull())
            (void)keeper.release(); // the image's now
    } else {
        image = QImage(layout.pixelWidth, layout.pixelHeight, format);
        if (!image.isNull())
            copyRows(data, layout.bytesPerRow, image.bits(), image.bytesPerLine(), rowBytes, layout.pixelHeight);
    }
    image.setColorSpace(layout.colorSpace);
    return image;
}

BitmapContent contentOf(const QImage &image, const QSizeF &size)
{
    const PixelLayout layout = layoutOf(image);
    const qint64 rowBytes = qint64(layout.pixelWidth) * layout.bitsPerPixel / 8;
    if (layout.bytesPerRow == rowBytes)
        return {layout, size, {}, image};

    PixelLayout packed = layout;
    packed.bytesPerRow = rowBytes;
    QByteArray bytes(rowBytes * layout.pixelHeight, Qt::Uninitialized);
    copyRows(image.constBits(), layout.bytesPerRow, reinterpret_cast<uchar *>(bytes.data()), rowBytes, rowBytes,
        layout.pixelHeight);
    return {packed, size, bytes, readable(packed, bytes)};
}

} // namespace

const uchar *BitmapContent::data() const
{
    return bytes.isNull() ? image.constBits() : reinterpret_cast<const uchar *>(bytes.constData());
}

qint64 BitmapContent::dataSize() const
{
    return bytes.isNull() ? image.sizeInBytes() : bytes.size();
}

bool BitmapContent::operator==(const BitmapContent &other) const
{
    return layout == other.layout && size == other.size && dataSize() == other.dataSize()
        && std::equal(data(), data() + dataSize(), other.data());
}

Bitmap::Bitmap(const QImage &image)
    : Bitmap(image, image.deviceIndependentSize())
{
}

Bitmap::Bitmap(const QImage &image, const QSizeF &size)
    : Bitmap(image.isNull() ? Bitmap() : Bitmap(contentOf(image.convertToFormat(bitmapFormat(image)), size)))
{
}

Bitmap Bitmap::create(const PixelLayout &layout, const QSizeF &size, const QByteArray &bytes)
{
    return layout.isValid() ? Bitmap(BitmapContent{layout, size, bytes, readable(layout, bytes)}) : Bitmap();
}

const PixelLayout &Bitmap::layout() const
{
    static const PixelLayout none;
    return *this ? (*this)->layout : none;
}

QSizeF Bitmap::size() const
{
    return *this ? (*this)->size : QSizeF(0, 0);
}

const uchar *Bitmap::data() const
{
    return *this ? (*this)->data() : nullptr;
}

qint64 Bitmap::dataSize() const
{
    return *this ? (*this)->dataSize() : 0;
}

QImage Bitmap::toQImage() const
{
    return *this ? (*this)->image : QImage();
}

} // namespace kx
