// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageDrawing.h>

#include <KXFoundation/Platform/UI/PremultipliedPixels.h>

#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <algorithm>
#include <cmath>

namespace kx {

namespace {

constexpr double longestSide = 32767;
constexpr double mostPixels = 1 << 28; // 1 GB

QPainter::CompositionMode compositionMode(CompositingOperation operation)
{
    switch (operation) {
    case CompositingOperation::Copy: return QPainter::CompositionMode_Source;
    case CompositingOperation::SourceAtop: return QPainter::CompositionMode_SourceAtop;
    case CompositingOperation::SourceOver: break;
    }
    return QPainter::CompositionMode_SourceOver;
}

bool isWhole(double value)
{
    return std::abs(value - std::round(value)) < 1e-6;
}

bool isWhole(const QRectF &rect)
{
    return isWhole(rect.x()) && isWhole(rect.y()) && isWhole(rect.width()) && isWhole(rect.height())
        && rect.width() > 0.5 && rect.height() > 0.5;
}

// Whether device pixels meet pixels of the image one by one.
bool isPixelForPixel(const QPainter &painter, const QRectF &destination, const QRectF &source)
{
    const QTransform transform = painter.deviceTransform();
    if (transform.type() > QTransform::TxScale || transform.m11() < 0 || transform.m22() < 0)
        return false;
    const QRectF place = transform.mapRect(destination);
    return isWhole(place) && isWhole(source) && std::abs(place.width() - source.width()) < 1e-6
        && std::abs(place.height() - source.height()) < 1e-6;
}

// Where the painter can draw at all; beyond, its coordinates overflow.
QRectF reachablePlace(const QPainter &painter)
{
    const QRectF device(-longestSide, -longestSide, 2 * longestSide, 2 * longestSide);
    return painter.deviceTransform().inverted().mapRect(device);
}

// A part without a copy; valid as long as `pixels` is.
QImage viewOf(const QImage &pixels, const QRect &part)
{
    if (part == pixels.rect())
        return pixels;
    const uchar *const start = pixels.constScanLine(part.y()) + qsizetype(part.x()) * pixels.depth() / 8;
    return {start, part.width(), part.height(), pixels.bytesPerLine(), pixels.format()};
}

QImage scaled(const QImage &pixels, const QRect &part, const QSize &size)
{
    if (size == part.size())
        return pixels.copy(part); // scaled() would give the view itself
    QImage result = viewOf(pixels, part).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    result.setColorSpace(pixels.colorSpace());
    return result;
}

void drawPart(QPainter &painter, const QImage &pixels, const QRectF &destination, const QRectF &source)
{
    const QSizeF zoom = deviceScale(painter);
    const double across = zoom.width() * destination.width() / source.width();
    const double down = zoom.height() * destination.height() / source.height();
    if (across > 0.999 && down > 0.999) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, !isPixelForPixel(painter, destination, source));
        painter.drawImage(destination, pixels, source);
        return;
    }
    // Interpolation between neighbours passes over pixels when it reduces, so the part is first reduced as a whole.
    const QRect part = source.toAlignedRect() & pixels.rect();
    if (part.isEmpty())
        return;
    const auto reduced = [](int length, double ratio) {
        return std::max(int(std::lround(length * std::min(ratio, 1.0))), 1);
    };
    const QSize size(reduced(part.width(), across), reduced(part.height(), down));
    const double x = double(size.width()) / part.width();
    const double y = double(size.height()) / part.height();
    const QPointF origin = source.topLeft() - part.topLeft();
    const QRectF rest(origin.x() * x, origin.y() * y, source.width() * x, source.height() * y);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !isPixelForPixel(painter, destination, rest));
    painter.drawImage(destination, scaled(pixels, part, size), rest);
}

QImage paintedPixels(const ImageContent &image, double scale)
{
    QImage pixels = blankPixels(image.size, scale);
    if (pixels.isNull())
        return {};
    QPainter painter(&pixels);
    painter.scale(pixels.width() / image.size.width(), pixels.height() / image.size.height());
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const bool painted = image.drawingHandler(painter, QRectF(QPointF(0, 0), image.size));
    painter.end();
    return painted ? pixels : QImage();
}

} // namespace

bool isDrawable(const QSizeF &size)
{
    return size.width() > 0 && size.height() > 0 && std::isfinite(size.width()) && std::isfinite(size.height());
}

bool isDrawable(const QRectF &rect)
{
    return isDrawable(rect.size()) && std::isfinite(rect.x()) && std::isfinite(rect.y());
}

QSize pixelSize(const QSizeF &size, double scale)
{
    const QSizeF pixels = size * scale;
    if (!isDrawable(size) || !isDrawable(pixels) || pixels.width() > longestSide || pixels.height() > longestSide
        || pixels.width() * pixels.height() > mostPixels)
        return {};
    const auto whole = [](double length) { return std::max(int(std::lround(length)), 1); };
    return {whole(pixels.width()), whole(pixels.height())};
}

QImage blankPixels(const QSizeF &size, double scale)
{
    QImage blank(pixelSize(size, scale), QImage::Format_ARGB32_Premultiplied);
    if (!blank.isNull())
        blank.fill(Qt::transparent);
    return blank;
}

QImage pixelsForScale(const ImageContent &image, double scale)
{
    if (image.drawingHandler)
        return paintedPixels(image, scale);
    QImage best;
    for (const Bitmap &bitmap : image.representations) {
        const QImage pixels = bitmap.toQImage();
        if (pixels.isNull())
            continue;
        const double wanted = scale * image.size.width();
        const bool better = best.width() < wanted ? pixels.width() > best.width()
                                                  : pixels.width() >= wanted && pixels.width() < best.width();
        if (best.isNull() || better)
            best = pixels;
    }
    return best;
}

QSizeF deviceScale(const QPainter &painter)
{
    const QTransform transform = painter.deviceTransform();
    return {std::hypot(transform.m11(), transform.m12()), std::hypot(transform.m21(), transform.m22())};
}

void compose(QPainter &painter, const Compositing &compositing)
{
    painter.setCompositionMode(compositionMode(compositing.operation));
    if (compositing.operation != CompositingOperation::Copy)
        painter.setOpacity(painter.opacity() * std::min(compositing.fraction, 1.0));
}

// With a copy, the painter's opacity would mix in what is there; here it is the copy that is translucent.
QImage composed(const QImage &pixels, const Compositing &compositing)
{
    const bool fades = compositing.operation == CompositingOperation::Copy && compositing.fraction < 1;
    return fades ? fadedPixels(pixels, compositing.fraction) : pixels;
}

void drawPixels(QPainter &painter, const QImage &pixels, const QRectF &destination, const QRectF &source,
    const Compositing &compositing)
{
    const auto shown = [&](const QRectF &part) {
        const double x = destination.width() / source.width();
        const double y = destination.height() / source.height();
        return QRectF(destination.x() + (part.x() - source.x()) * x, destination.y() + (part.y() - source.y()) * y,
            part.width() * x, part.height() * y);
    };
    QRectF part = source & QRectF(pixels.rect());
    QRectF place = shown(part);
    if (!isDrawable(part) || !isDrawable(place))
        return;
    if (const QRectF reachable = reachablePlace(painter); !reachable.contains(place)) {
        place &= reachable;
        const double x = source.width() / destination.width();
        const double y = source.height() / destination.height();
        part &= QRectF(source.x() + (place.x() - destination.x()) * x, source.y() + (place.y() - destination.y()) * y,
            place.width() * x, place.height() * y);
        if (!isDrawable(part) || !isDrawable(place))
            return;
    }

    painter.save();
    compose(painter, compositing);
    drawPart(painter, composed(pixels, compositing), place, part);
    painter.restore();
}

QImage resampled(const QImage &pixels, const QRectF &source, const QSize &size)
{
    if (pixels.isNull())
        return {};
    if (isWhole(source))
        return source.toRect() == pixels.rect() && size == pixels.size() ? pixels
                                                                         : scaled(pixels, source.toRect(), size);
    QImage result = blankPixels(size, 1);
    QPainter painter(&result);
    drawPixels(painter, pixels, result.rect(), source, {CompositingOperation::Copy, 1});
    return result;
}

} // namespace kx
