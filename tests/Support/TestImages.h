// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QRectF>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <limits>
#include <utility>

/// Pictures and rectangles for tests of images.
namespace kx::test {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

/// An opaque picture in which a pixel differs from its neighbours, and from every other up to 256 pixels away; sizes in
/// pixels.
inline QImage sampleImage(int width, int height, double ratio = 1)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgba(x * 11 % 256, y * 13 % 256, (x + y) % 2 * 128, 255));
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

inline QImage plainImage(const QSize &size, const QColor &color, double ratio = 1)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    image.setDevicePixelRatio(ratio);
    return image;
}

/// Transparent; the size in points.
inline QImage blankImage(int width, int height, double ratio = 1)
{
    return plainImage(QSize(width, height) * ratio, Qt::transparent, ratio);
}

/// The colour at a point that counts in points, like the image's device pixel ratio.
inline QColor colorAt(const QImage &image, double x, double y)
{
    const double ratio = image.devicePixelRatio();
    return image.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
}

/// How many pixels have exactly this colour.
inline int countPixels(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

/// Rectangles in which there is nothing to draw, in a picture of a few points at least.
inline QList<std::pair<const char *, QRectF>> hostileRects()
{
    return {
        {"empty", QRectF(1, 1, 0, 0)},
        {"no height", QRectF(0, 0, 2, 0)},
        {"negative", QRectF(3, 3, -2, -2)},
        {"no number", QRectF(notANumber, 0, 2, 2)},
        {"size of no number", QRectF(0, 0, notANumber, 2)},
        {"endless", QRectF(0, 0, infinite, 2)},
        {"endless to both sides", QRectF(-infinite, -infinite, infinite, infinite)},
        {"endless origin", QRectF(-infinite, 0, 2, 2)},
        {"far away", QRectF(1e300, 1e300, 2, 2)},
        {"far away before", QRectF(-1e300, -1e300, 2, 2)},
        {"just outside", QRectF(-2, 0, 2, 2)},
    };
}

} // namespace kx::test
