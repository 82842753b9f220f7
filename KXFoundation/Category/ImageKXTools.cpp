// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ImageKXTools.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ImageDrawing.h>
#include <KXFoundation/Platform/UI/PremultipliedPixels.h>
#include <KXFoundation/Platform/UI/ScreenScale.h>

#include <QtGui/QPainter>

#include <algorithm>
#include <functional>

namespace kx {

namespace {

Image imageOf(const QImage &pixels, const QSizeF &size)
{
    return pixels.isNull() ? Image() : Image::withRepresentations(size, {Bitmap(pixels, size)});
}

// What `draw` leaves on transparent pixels, with a painter that counts points from the top left.
QImage drawnPixels(const QSizeF &size, double scale, const std::function<void(QPainter &)> &draw)
{
    QImage pixels = blankPixels(size, scale);
    if (pixels.isNull())
        return {};
    QPainter painter(&pixels);
    painter.scale(pixels.width() / size.width(), pixels.height() / size.height());
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    painter.end();
    return pixels;
}

// Of the first representation that can be read; null without one.
QImage firstPixels(const Image &image)
{
    const QList<Bitmap> representations = image.representations();
    const auto isReadable = [](const Bitmap &bitmap) { return !bitmap.toQImage().isNull(); };
    const auto first = std::find_if(representations.begin(), representations.end(), isReadable);
    return first == representations.end() ? QImage() : first->toQImage();
}

bool hasPixels(const Image &image)
{
    return isDrawable(image.size()) && (image.hasDrawingHandler() || !firstPixels(image).isNull());
}

QImage fittedPixels(const Image &image, const QSizeF &target, const Color &ground, double scale)
{
    const QSizeF size = image.size();
    const double fit = std::min(target.width() / size.width(), target.height() / size.height());
    const QSizeF fitted = size * fit;
    const QRectF place(QPointF(target.width() - fitted.width(), target.height() - fitted.height()) * 0.5, fitted);
    return drawnPixels(target, scale, [&](QPainter &painter) {
        if (ground)
            painter.fillRect(QRectF(QPointF(0, 0), target), ground.toQColor());
        image.draw(painter, place, QRectF(QPointF(0, 0), size));
    });
}

// A part of the image, in points from its top left, over the whole of a new image.
QImage filledPixels(const Image &image, const QRectF &source, const QSizeF &target, double scale)
{
    const QRectF part = source & QRectF(QPointF(0, 0), image.size());
    if (image.hasDrawingHandler() || part != source) {
        return drawnPixels(target, scale, [&](QPainter &painter) {
            image.draw(painter, QRectF(QPointF(0, 0), target), source, CompositingOperation::Copy);
        });
    }
    // Nothing else is in the new image, so the scaled pixels are the image.
    const QSize size = pixelSize(target, scale);
    if (!size.isValid())
        return {};
    const QImage pixels =
        pixelsForScale(*image, std::max(size.width() / source.width(), size.height() / source.height()));
    const double across = pixels.width() / image.size().width();
    const double down = pixels.height() / image.size().height();
    return resampled(
        pixels, QRectF(source.x() * across, source.y() * down, source.width() * across, source.height() * down), size);
}

} // namespace

Image imageWithSize(const QSizeF &size, float maskCornerRadius)
{
    const double radius = maskCornerRadius;
    const auto paint = [radius](QPainter &painter, const QRectF &rect) {
        if (!(radius >= 0))
            return true;
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(rect, radius, radius);
        return true;
    };
    return Image::imageWithSize(size, false, paint).withCapInsets({radius, radius, radius, radius}, ResizingMode::Tile);
}

QImage CGImageRef(const Image &image)
{
    return CGImageRefWithScale(image, 1);
}

QImage CGImageRefWithScale(const Image &image, float scale)
{
    if (!hasPixels(image))
        return {};
    if (scale != 1) { // not a number, too
        QImage pixels = fittedPixels(image, image.size() * double(scale), nullptr, 1);
        pixels.setDevicePixelRatio(scale);
        return pixels;
    }
    return image.hasDrawingHandler() ? image.toQImage(largestScreenScale()) : firstPixels(image);
}

QImage CGImageRef4PDF(const Image &image)
{
    return CGImageRefWithScale(image, float(largestScreenScale()));
}

Image imageWithAlpha(const Image &image, double alpha)
{
    if (alpha == 1.0)
        return image;
    // At the scale of the new image, CGImageRef4PDF() is drawn pixel for pixel.
    return imageOf(fadedPixels(image.toQImage(largestScreenScale()), alpha), image.size());
}

Image imageWithTintColor(const Image &image, const Color &color)
{
    if (!color || !image)
        return image;
    QList<Bitmap> tinted;
    if (image.hasDrawingHandler()) {
        tinted.append(Bitmap(tintedPixels(image.toQImage(largestScreenScale()), color), image.size()));
    } else {
        const QList<Bitmap> representations = image.representations();
        for (const Bitmap &bitmap : representations)
            tinted.append(Bitmap(tintedPixels(bitmap.toQImage(), color), bitmap.size()));
    }
    const Image copy = Image::withRepresentations(image.size(), tinted);
    return hasPixels(copy) ? copy.withCapInsets(image.capInsets(), image.resizingMode()) : Image();
}

Image resizeAspect(const Image &image, const QSizeF &targetSize, const Color &bgColor)
{
    if (!hasPixels(image))
        return {};
    return imageOf(fittedPixels(image, targetSize, bgColor, largestScreenScale()), targetSize);
}

Image resize(const Image &image, const QSizeF &targetSize)
{
    if (!hasPixels(image) || !isDrawable(targetSize))
        return {};
    const QSizeF size = image.size();
    const double across = targetSize.width() / size.width();
    const double down = targetSize.height() / size.height();
    const double largest = std::max(across, down);
    const QSizeF crop(targetSize.width() / largest, targetSize.height() / largest); // QSizeF refuses tiny divisors
    // The side that fits exactly is not left to rounding.
    const QPointF origin(down < across ? 0 : (size.width() - crop.width()) * 0.5,
        across < down ? 0 : (size.height() - crop.height()) * 0.5);
    return imageOf(filledPixels(image, QRectF(origin, crop), targetSize, largestScreenScale()), targetSize);
}

Image fromRect(const Image &image, const QRectF &rect, const QRectF &targetRect)
{
    if (!hasPixels(image))
        return {};
    const QRectF whole(QPointF(0, 0), image.size());
    const QRectF source = rect == QRectF() ? whole : flippedRect(rect, whole.height());
    const QRectF target = flippedRect(targetRect, targetRect.height());
    return imageOf(drawnPixels(targetRect.size(), largestScreenScale(),
                       [&](QPainter &painter) { image.draw(painter, target, source, CompositingOperation::Copy); }),
        targetRect.size());
}

Bitmap bitmap(const Image &image)
{
    const QSizeF size = image.size();
    if (!isDrawable(size))
        return {};
    if (image.hasDrawingHandler())
        return {image.toQImage(largestScreenScale()), size};
    Bitmap finest;
    const QList<Bitmap> representations = image.representations();
    for (const Bitmap &bitmap : representations) {
        if (bitmap.layout().pixelWidth > finest.layout().pixelWidth && !bitmap.toQImage().isNull())
            finest = bitmap;
    }
    return finest.size() == size ? finest : Bitmap(finest.toQImage(), size);
}

} // namespace kx
