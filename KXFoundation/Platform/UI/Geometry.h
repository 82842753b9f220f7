// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QRectF>

namespace kx {

// Two kinds of coordinates meet in a view: Qt's, with y growing downwards from the top, and the views' own, with y
// growing upwards from the bottom. `height` is always the height of the area in which the coordinates count. All
// lengths are logical pixels.

/// Whether minX <= x < maxX and minY <= y < maxY, so that rectangles side by side share no point. False for a rectangle
/// without a positive width and height, and for coordinates that are no numbers.
[[nodiscard]] KX_UI_EXPORT bool pointInRect(const QPointF &point, const QRectF &rect);

/// The y-up point of a pointer position that Qt reports. A device pixel stands for its lower edge: the last row of the
/// area is 0 and the first is `height` less one device pixel, so every row lies inside the area's half-open rectangle.
[[nodiscard]] KX_UI_EXPORT QPointF pointerToYUp(const QPointF &position, double height, double devicePixelRatio);

/// The same area in the other kind of coordinates; its own inverse.
[[nodiscard]] KX_UI_EXPORT QRectF flippedRect(const QRectF &rect, double height);

/// The rectangle with each edge moved to the nearest whole number, within what Qt lays out (24 bits). Negative sizes
/// and what is no number count as 0.
[[nodiscard]] KX_UI_EXPORT QRect edgesRounded(const QRectF &rect);

} // namespace kx
