// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/PixelLayout.h>

#include <QtGui/QPixelFormat>

#include <limits>

namespace kx {

namespace {

// Far beyond any format there is; it keeps the products of the sizes countable.
constexpr int mostBitsPerPixel = 1024;

// Of a pixel in a buffer; Qt's own number leaves out those of a packed pixel that are not used.
int storedBits(QImage::Format format)
{
    const int used = QImage::toPixelFormat(format).bitsPerPixel();
    return used == 1 ? 1 : (used + 7) / 8 * 8;
}

bool needsColorTable(QImage::Format format)
{
    return format == QImage::Format_Mono || format == QImage::Format_MonoLSB || format == QImage::Format_Indexed8;
}

} // namespace

bool PixelLayout::isValid() const
{
    if (pixelWidth <= 0 || pixelHeight <= 0 || bitsPerSample <= 0 || samplesPerPixel <= 0 || bitsPerPixel <= 0
        || bitsPerPixel > mostBitsPerPixel || samplesPerPixel > bitsPerPixel / bitsPerSample)
        return false;
    const qint64 rowBytes = (qint64(pixelWidth) * bitsPerPixel + 7) / 8;
    if (bytesPerRow < rowBytes || bytesPerRow > std::numeric_limits<qint64>::max() / pixelHeight / 8
        || format >= QImage::NImageFormats)
        return false;
    return format == QImage::Format_Invalid || storedBits(format) == bitsPerPixel;
}

QImage::Format PixelLayout::resolvedFormat() const
{
    if (format != QImage::Format_Invalid)
        return needsColorTable(format) ? QImage::Format_Invalid : format;
    const bool deep = bitsPerSample == 16;
    if (bitsPerSample != 8 && !deep)
        return QImage::Format_Invalid;
    const auto lies = [this](int samples, int bits) {
        return samplesPerPixel == samples && bitsPerPixel == bits * bitsPerSample / 8;
    };
    if (hasAlpha && lies(4, 32))
        return deep ? QImage::Format_RGBA64_Premultiplied : QImage::Format_RGBA8888_Premultiplied;
    if (!hasAlpha && lies(3, 32))
        return deep ? QImage::Format_RGBX64 : QImage::Format_RGBX8888;
    if (!hasAlpha && lies(3, 24) && !deep)
        return QImage::Format_RGB888;
    if (!hasAlpha && lies(1, 8))
        return deep ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8;
    return QImage::Format_Invalid;
}

qint64 PixelLayout::pixelBytes() const
{
    return qint64(pixelWidth) * pixelHeight * bitsPerPixel / 8;
}

} // namespace kx
