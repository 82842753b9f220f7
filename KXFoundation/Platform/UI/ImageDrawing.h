// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Image.h>

#include <QtCore/QRectF>
#include <QtCore/QSize>
#include <QtCore/QSizeF>
#include <QtGui/QImage>

class QPainter;

namespace kx {

/// How pixels are put on a painter's device; `fraction` is above 0.
struct Compositing {
    CompositingOperation operation = CompositingOperation::SourceOver;
    double fraction = 1;
};

/// Whether a size is positive and finite, and so something to draw.
[[nodiscard]] bool isDrawable(const QSizeF &size);
/// The same for a rectangle, whose origin must be finite, too.
[[nodiscard]] bool isDrawable(const QRectF &rect);

/// The whole pixels for a size in points: rounded, and at least one. Invalid when the size is not drawable, a side is
/// above 32767 pixels, which QPainter cannot reach, or there are more than 2^28 pixels.
[[nodiscard]] QSize pixelSize(const QSizeF &size, double scale);
/// So many transparent premultiplied pixels. Null when pixelSize() is invalid or memory is short.
[[nodiscard]] QImage blankPixels(const QSizeF &size, double scale);

/// The pixels of an image for a place with `scale` pixels per point: of the coarsest representation that is fine
/// enough, else of the finest; or what the handler paints at just this scale. Null when there are none.
[[nodiscard]] QImage pixelsForScale(const ImageContent &image, double scale);

/// Device pixels per unit of the painter's coordinates, in both directions.
[[nodiscard]] QSizeF deviceScale(const QPainter &painter);

/// Draws a part of the pixels, in pixels, into a rectangle in the painter's coordinates, both drawable. Reducing reads
/// every pixel of the part; enlarging interpolates. Null pixels draw nothing.
void drawPixels(QPainter &painter, const QImage &pixels, const QRectF &destination, const QRectF &source,
    const Compositing &compositing);

/// A part of the pixels, in pixels and inside of them, as an image of this size, scaled like drawPixels() does. Null
/// for null pixels.
[[nodiscard]] QImage resampled(const QImage &pixels, const QRectF &source, const QSize &size);

/// Sets a painter up to draw what composed() gives.
void compose(QPainter &painter, const Compositing &compositing);
[[nodiscard]] QImage composed(const QImage &pixels, const Compositing &compositing);

} // namespace kx
