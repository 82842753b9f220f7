// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Image.h>

#include <KXFoundation/Platform/Core/Published.h>
#include <KXFoundation/Platform/UI/ImageCaps.h>
#include <KXFoundation/Platform/UI/ImageDrawing.h>

#include <QtCore/QHash>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>

#include <algorithm>
#include <cmath>

namespace kx {

namespace {

using NamedImages = QHash<QString, Image>;

Published<NamedImages> &namedImages()
{
    static Published<NamedImages> images;
    return images;
}

double pixelsPerPoint(const Bitmap &bitmap, const QSizeF &size)
{
    return bitmap.layout().pixelWidth / size.width();
}

// Painters round the edges of a clip to whole pixels, which would cut off what a handler paints in a part of a pixel.
void clipToPixelsTouched(QPainter &painter, const QRectF &rect)
{
    constexpr double noise = 1e-6;
    const QTransform transform = painter.deviceTransform();
    QRectF clip = rect;
    if (transform.type() <= QTransform::TxScale && transform.isInvertible()) {
        const QRectF place = transform.mapRect(rect);
        const QPointF topLeft(std::floor(place.left() + noise), std::floor(place.top() + noise));
        const QPointF bottomRight(std::ceil(place.right() - noise), std::ceil(place.bottom() - noise));
        clip = transform.inverted().mapRect(QRectF(topLeft, bottomRight));
    }
    painter.setClipRect(clip, Qt::IntersectClip);
}

void runHandler(const ImageContent &content, QPainter &painter, const QRectF &destination, const QRectF &source)
{
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    clipToPixelsTouched(painter, destination);
    painter.translate(destination.topLeft());
    painter.scale(destination.width() / source.width(), destination.height() / source.height());
    painter.translate(-source.topLeft());
    const QRectF whole(QPointF(0, 0), content.size);
    if (!whole.contains(source))
        clipToPixelsTouched(painter, whole);
    content.drawingHandler(painter, whole);
    painter.restore();
}

} // namespace

bool ImageContent::operator==(const ImageContent &other) const
{
    return !drawingHandler && !other.drawingHandler && size == other.size && flipped == other.flipped
        && capInsets == other.capInsets && resizingMode == other.resizingMode
        && std::equal(representations.begin(), representations.end(), other.representations.begin(),
            other.representations.end(), [](const Bitmap &a, const Bitmap &b) { return a.sameValue(b); });
}

Image::Image(const QImage &image)
    : Image(image.isNull() ? Image() : withRepresentations(image.deviceIndependentSize(), {Bitmap(image)}))
{
}

Image::Image(const QPixmap &pixmap)
    : Image(pixmap.toImage())
{
}

Image Image::imageWithSize(const QSizeF &size, bool flipped, DrawingHandler drawingHandler)
{
    ImageContent content;
    content.size = size;
    content.flipped = flipped;
    content.drawingHandler = std::move(drawingHandler);
    return {std::move(content)};
}

Image Image::withRepresentations(const QSizeF &size, const QList<Bitmap> &representations)
{
    ImageContent content;
    content.size = size;
    for (const Bitmap &bitmap : representations) {
        if (bitmap)
            content.representations.append(bitmap);
    }
    return {std::move(content)};
}

Image Image::named(const QString &name)
{
    const auto images = namedImages().load();
    return images ? images->value(name) : Image();
}

void Image::setNamed(const QString &name, const Image &image)
{
    namedImages().update([&](const Published<NamedImages>::Pointer &present) {
        auto images = present ? std::make_shared<NamedImages>(*present) : std::make_shared<NamedImages>();
        if (image)
            images->insert(name, image);
        else
            images->remove(name);
        return images;
    });
}

QSizeF Image::size() const
{
    return *this ? (*this)->size : QSizeF(0, 0);
}

double Image::pixelScale() const
{
    double scale = 0;
    for (const Bitmap &bitmap : representations())
        scale = std::max(scale, pixelsPerPoint(bitmap, size()));
    return scale;
}

QList<Bitmap> Image::representations() const
{
    return *this ? (*this)->representations : QList<Bitmap>();
}

bool Image::hasDrawingHandler() const
{
    return *this && (*this)->drawingHandler;
}

bool Image::isFlipped() const
{
    return *this && (*this)->flipped;
}

QMarginsF Image::capInsets() const
{
    return *this ? (*this)->capInsets : QMarginsF();
}

ResizingMode Image::resizingMode() const
{
    return *this ? (*this)->resizingMode : ResizingMode::Stretch;
}

Image Image::withCapInsets(const QMarginsF &capInsets, ResizingMode resizingMode) const
{
    if (!*this)
        return {};
    ImageContent content = **this;
    content.capInsets = capInsets;
    content.resizingMode = resizingMode;
    return {std::move(content)};
}

void Image::draw(QPainter &painter, const QRectF &destination, const QRectF &source, CompositingOperation operation,
    double fraction) const
{
    const QRectF whole(QPointF(0, 0), size());
    const QRectF part = source == QRectF() ? whole : source;
    if (!isDrawable(whole) || !isDrawable(destination) || !isDrawable(part) || !(fraction > 0))
        return;

    const ImageContent &content = **this;
    const QSizeF zoom = deviceScale(painter);
    if (!content.capInsets.isNull() && source == QRectF() && destination.size() != content.size) {
        const QImage pixels = pixelsForScale(content, std::max(zoom.width(), zoom.height()));
        drawBetweenCaps(painter, pixels, content, destination, {operation, fraction});
        return;
    }
    if (content.drawingHandler && operation == CompositingOperation::SourceOver && fraction >= 1) {
        runHandler(content, painter, destination, part);
        return;
    }
    const double scale = std::max(
        zoom.width() * destination.width() / part.width(), zoom.height() * destination.height() / part.height());
    const QImage pixels = pixelsForScale(content, scale);
    const double across = pixels.width() / content.size.width();
    const double down = pixels.height() / content.size.height();
    drawPixels(painter, pixels, destination,
        {part.x() * across, part.y() * down, part.width() * across, part.height() * down}, {operation, fraction});
}

QImage Image::toQImage(double scale) const
{
    const QSize wanted = pixelSize(size(), scale);
    if (!wanted.isValid())
        return {};
    const QImage pixels = pixelsForScale(**this, scale);
    QImage result = resampled(pixels, pixels.rect(), wanted);
    result.setDevicePixelRatio(scale);
    return result;
}

} // namespace kx
