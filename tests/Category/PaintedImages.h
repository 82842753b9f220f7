// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>

#include <cstdlib>
#include <functional>

// Images to save.
namespace kx::test {

using PixelAt = std::function<QColor(int x, int y)>;

inline QImage painted(const QSize &size, QImage::Format format, const PixelAt &pixelAt)
{
    QImage image(size, QImage::Format_RGBA64);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixelColor(x, y, pixelAt(x, y));
    }
    return image.convertToFormat(format);
}

// Slow changes, so that lossy formats stay near.
inline QColor smooth(int x, int y)
{
    const auto wave = [](int at) { return std::abs(at % 510 - 255); };
    return {wave(x), wave(y), wave(x + y)};
}

inline QColor translucent(int x, int y)
{
    QColor color = smooth(x, y);
    color.setAlpha((x * 3 + y * 5) % 256);
    return color;
}

} // namespace kx::test
