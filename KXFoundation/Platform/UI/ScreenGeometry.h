// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QPointF>
#include <QtCore/QRectF>

class QWidget;

namespace kx {

// Screen coordinates with y growing upwards from the bottom left of the primary screen, in logical pixels.

/// The point of a pointer position that Qt reports in its global coordinates. The device pixel ratio is `window`'s, or
/// the primary screen's when it is null.
[[nodiscard]] KX_UI_EXPORT QPointF screenPoint(const QPointF &globalPosition, const QWidget *window);
/// The pointer position in Qt's global coordinates that stands for a point; undoes screenPoint().
[[nodiscard]] KX_UI_EXPORT QPointF globalPoint(const QPointF &point, const QWidget *window);
/// The frame of a top-level widget, its decorations included.
[[nodiscard]] KX_UI_EXPORT QRectF screenFrame(const QWidget &window);
/// The same area between Qt's global coordinates and screen coordinates; its own inverse.
[[nodiscard]] KX_UI_EXPORT QRectF screenFlipped(const QRectF &rect);

} // namespace kx
