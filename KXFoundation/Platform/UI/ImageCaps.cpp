// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageCaps.h>

#include <QtGui/QBrush>
#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <algorithm>
#include <array>
#include <cmath>

namespace kx {

namespace {

// Where the caps end along one side, in the image's points and in the destination's. Between the caps of the image at
// least one pixel is left, where it has more, so that there is something to fill the middle with.
struct Axis {
    Axis(double near, double far, double length, int pixels, double start, double room)
    {
        const auto used = [length](double inset) { return inset > 0 ? std::min(inset, length) : 0.0; };
        near = used(near);
        far = used(far);
        const double largest = length - length / pixels;
        const double inside = near + far > largest ? largest / (near + far) : 1;
        const double shown = (near + far) * inside > room ? room / (near + far) : inside;
        from = {0, near * inside, length - far * inside, length};
        to = {start, start + near * shown, start + room - far * shown, start + room};
    }

    std::array<double, 4> from;
    std::array<double, 4> to;
};

QRectF cell(
    const std::array<double, 4> &columns, const std::array<double, 4> &rows, std::size_t column, std::size_t row)
{
    return {QPointF(columns[column], rows[row]), QPointF(columns[column + 1], rows[row + 1])};
}

void tilePixels(QPainter &painter, const QImage &tile, const QRectF &destination, const QSizeF &tileSize,
    const Compositing &compositing)
{
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    compose(painter, compositing);
    QBrush brush(composed(tile, compositing));
    brush.setTransform(QTransform::fromTranslate(destination.x(), destination.y())
                           .scale(tileSize.width() / tile.width(), tileSize.height() / tile.height()));
    painter.fillRect(destination, brush);
    painter.restore();
}

} // namespace

void drawBetweenCaps(QPainter &painter, const QImage &pixels, const ImageContent &image, const QRectF &destination,
    const Compositing &compositing)
{
    if (pixels.isNull())
        return;
    const QMarginsF &caps = image.capInsets;
    const Axis columns(
        caps.left(), caps.right(), image.size.width(), pixels.width(), destination.x(), destination.width());
    const Axis rows(
        caps.top(), caps.bottom(), image.size.height(), pixels.height(), destination.y(), destination.height());
    const double across = pixels.width() / image.size.width();
    const double down = pixels.height() / image.size.height();

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false); // blended edges would show as seams
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const QRectF points = cell(columns.from, rows.from, column, row);
            const QRectF to = cell(columns.to, rows.to, column, row);
            if (!isDrawable(points) || !isDrawable(to))
                continue;
            const QRectF from(points.x() * across, points.y() * down, points.width() * across, points.height() * down);
            if (image.resizingMode == ResizingMode::Stretch || (row != 1 && column != 1)) {
                drawPixels(painter, pixels, to, from, compositing);
                continue;
            }
            const QRect part = from.toAlignedRect() & pixels.rect(); // rounding may have gone beyond
            if (part.isEmpty())
                continue;
            QImage tile = pixels.copy(part);
            tile.setDevicePixelRatio(1); // the brush counts its pixels
            const QSizeF tileSize(column == 1 ? points.width() : to.width(), row == 1 ? points.height() : to.height());
            tilePixels(painter, tile, to, tileSize, compositing);
        }
    }
    painter.restore();
}

} // namespace kx
