// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/ImageDrawing.h>

namespace kx {

/// Draws an image, whose pixels these are, with its caps: the corners at their size in points, the rest as the image's
/// resizing mode has it. Caps that find no room shrink in proportion, and leave a pixel of the image between them. The
/// destination is drawable.
void drawBetweenCaps(QPainter &painter, const QImage &pixels, const ImageContent &image, const QRectF &destination,
    const Compositing &compositing);

} // namespace kx
