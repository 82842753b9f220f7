// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/StandardWindowButton.h>

class QPainter;

namespace kx {

struct WindowButtonFace {
    WindowButton kind;
    bool coloured; ///< Else grey.
    bool symbol;
    bool pressed;
    bool fullScreen; ///< Which way the arrows of the zoom button point.
};

/// A disc of 12 logical pixels in the middle of `area` (y growing downwards), with what belongs on it.
void drawWindowButtonFace(QPainter &painter, const QRectF &area, const WindowButtonFace &face);

} // namespace kx
