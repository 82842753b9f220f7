// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QRectF>

#include <cmath>

namespace kx {

/// Whether there is anything to paint: the rectangle has a positive width and height, and every number is finite.
[[nodiscard]] inline bool isPaintable(const QRectF &rect)
{
    return rect.width() > 0 && rect.height() > 0 && std::isfinite(rect.x()) && std::isfinite(rect.y())
        && std::isfinite(rect.width()) && std::isfinite(rect.height());
}

} // namespace kx
