// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Image.h>

#include <QtCore/QRectF>
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

/// Transparent premultiplied pixels for a size in points, rounded to whole pixels and at least one. Null when the size
/// is not drawable, a side is above 32767 pixels (which QPainter cannot reach) or memory is short.
[[nodiscard]] QImage blankPixels(const QSizeF &size, double scale);

/// Device pixels per unit of the painter's coordinates, in both directions.
[[nodiscard]] QSizeF deviceScale(const QPainter &painter);

/// Draws a part of the pixels, in pixels, into a rectangle in the painter's coordinates, both drawable. Reducing reads
/// every pixel of the part; enlarging interpolates. Null pixels draw nothing.
void drawPixels(QPainter &painter, const QImage &pixels, const QRectF &destination, const QRectF &source,
    const Compositing &compositing);

/// Draws all pixels of an image with caps: the corners at their size in points, the rest as the image's resizing mode
/// has it. Caps that find no room shrink in proportion.
void drawBetweenCaps(QPainter &painter, const QImage &pixels, const ImageContent &image, const QRectF &destination,
    const Compositing &compositing);

} // namespace kx
