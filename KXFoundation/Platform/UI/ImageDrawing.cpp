// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageDrawing.h>

#include <QtGui/QBrush>
#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <algorithm>
#include <array>
#include <cmath>

namespace kx {

namespace {

constexpr double longestSide = 32767;

QPainter::CompositionMode compositionMode(CompositingOperation operation)
{
    switch (operation) {
    case CompositingOperation::Copy: return QPainter::CompositionMode_Source;
    case CompositingOperation::SourceAtop: return QPainter::CompositionMode_SourceAtop;
    case CompositingOperation::SourceOver: break;
    }
    return QPainter::CompositionMode_SourceOver;
}

// With a copy, Qt's opacity would mix in what is there; here it makes the copy itself translucent.
QImage faded(const QImage &pixels, double fraction)
{
    QImage result(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setOpacity(fraction);
    painter.drawImage(result.rect(), pixels, pixels.rect()); // whatever its device pixel ratio
    return result;
}

void drawPart(QPainter &painter, const QImage &pixels, const QRectF &destination, const QRectF &source)
{
    // Interpolation between neighbours passes over pixels when it reduces, so the part is first reduced as a whole.
    const QSizeF zoom = deviceScale(painter);
    const double across = zoom.width() * destination.width() / source.width();
    const double down = zoom.height() * destination.height() / source.height();
    if (across > 0.999 && down > 0.999) {
        painter.drawImage(destination, pixels, source);
        return;
    }
    const QRect part = source.toAlignedRect() & pixels.rect();
    const auto reduced = [](int length, double ratio) {
        return std::max(int(std::lround(length * std::min(ratio, 1.0))), 1);
    };
    const QSize size(reduced(part.width(), across), reduced(part.height(), down));
    const QImage small = (part == pixels.rect() ? pixels : pixels.copy(part))
                             .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const double x = double(size.width()) / part.width();
    const double y = double(size.height()) / part.height();
    const QPointF origin = source.topLeft() - part.topLeft();
    painter.drawImage(
        destination, small, QRectF(origin.x() * x, origin.y() * y, source.width() * x, source.height() * y));
}

void compose(QPainter &painter, const Compositing &compositing)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(compositionMode(compositing.operation));
    if (compositing.operation != CompositingOperation::Copy)
        painter.setOpacity(painter.opacity() * std::min(compositing.fraction, 1.0));
}

// The pixels that compose() leaves to draw.
QImage composed(const QImage &pixels, const Compositing &compositing)
{
    const bool fades = compositing.operation == CompositingOperation::Copy && compositing.fraction < 1;
    return fades ? faded(pixels, compositing.fraction) : pixels;
}

void tilePixels(QPainter &painter, const QImage &tile, const QRectF &destination, const QSizeF &tileSize,
    const Compositing &compositing)
{
    painter.save();
    compose(painter, compositing);
    QBrush brush(composed(tile, compositing));
    brush.setTransform(QTransform::fromTranslate(destination.x(), destination.y())
                           .scale(tileSize.width() / tile.width(), tileSize.height() / tile.height()));
    painter.fillRect(destination, brush);
    painter.restore();
}

// Where the caps of an image end along one side, in the image's points and in the destination's.
struct Axis {
    Axis(double near, double far, double length, double start, double room)
    {
        const auto used = [](double inset) { return std::isfinite(inset) ? std::max(inset, 0.0) : 0.0; };
        near = used(near);
        far = used(far);
        const double inside = near + far > length ? length / (near + far) : 1;
        const double shown = (near + far) * inside > room ? room / (near + far) : inside;
        from = {0, near * inside, length - far * inside, length};
        to = {start, start + near * shown, start + room - far * shown, start + room};
    }

    std::array<double, 4> from;
    std::array<double, 4> to;
};

} // namespace

bool isDrawable(const QSizeF &size)
{
    return size.width() > 0 && size.height() > 0 && std::isfinite(size.width()) && std::isfinite(size.height());
}

bool isDrawable(const QRectF &rect)
{
    return isDrawable(rect.size()) && std::isfinite(rect.x()) && std::isfinite(rect.y());
}

QImage blankPixels(const QSizeF &size, double scale)
{
    const QSizeF pixels = size * scale;
    if (!isDrawable(size) || !isDrawable(pixels) || pixels.width() > longestSide || pixels.height() > longestSide)
        return {};
    const auto whole = [](double length) { return std::max(int(std::lround(length)), 1); };
    QImage blank(whole(pixels.width()), whole(pixels.height()), QImage::Format_ARGB32_Premultiplied);
    if (!blank.isNull())
        blank.fill(Qt::transparent);
    return blank;
}

QSizeF deviceScale(const QPainter &painter)
{
    const QTransform transform = painter.deviceTransform();
    return {std::hypot(transform.m11(), transform.m12()), std::hypot(transform.m21(), transform.m22())};
}

void drawPixels(QPainter &painter, const QImage &pixels, const QRectF &destination, const QRectF &source,
    const Compositing &compositing)
{
    const QRectF part = source & QRectF(pixels.rect());
    if (!isDrawable(part))
        return;
    const double x = destination.width() / source.width();
    const double y = destination.height() / source.height();
    const QRectF place(destination.x() + (part.x() - source.x()) * x, destination.y() + (part.y() - source.y()) * y,
        part.width() * x, part.height() * y);
    if (!isDrawable(place))
        return;

    painter.save();
    compose(painter, compositing);
    drawPart(painter, composed(pixels, compositing), place, part);
    painter.restore();
}

void drawBetweenCaps(QPainter &painter, const QImage &pixels, const ImageContent &image, const QRectF &destination,
    const Compositing &compositing)
{
    if (pixels.isNull())
        return;
    const QMarginsF &caps = image.capInsets;
    const Axis columns(caps.left(), caps.right(), image.size.width(), destination.x(), destination.width());
    const Axis rows(caps.top(), caps.bottom(), image.size.height(), destination.y(), destination.height());
    const double across = pixels.width() / image.size.width();
    const double down = pixels.height() / image.size.height();
    const bool tiles = image.resizingMode == ResizingMode::Tile;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false); // blended edges would show as seams
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const QRectF from(QPointF(columns.from[column] * across, rows.from[row] * down),
                QPointF(columns.from[column + 1] * across, rows.from[row + 1] * down));
            const QRectF to(
                QPointF(columns.to[column], rows.to[row]), QPointF(columns.to[column + 1], rows.to[row + 1]));
            if (!isDrawable(from) || !isDrawable(to))
                continue;
            if (tiles && (row == 1 || column == 1)) {
                const double tileWidth = column == 1 ? from.width() / across : to.width();
                const double tileHeight = row == 1 ? from.height() / down : to.height();
                QImage tile = pixels.copy(from.toAlignedRect());
                tile.setDevicePixelRatio(1);
                tilePixels(painter, tile, to, {tileWidth, tileHeight}, compositing);
            } else {
                drawPixels(painter, pixels, to, from, compositing);
            }
        }
    }
    painter.restore();
}

} // namespace kx
