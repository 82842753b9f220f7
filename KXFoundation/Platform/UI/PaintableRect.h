// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QRectF>

#include <cmath>
#include <optional>

namespace kx {

/// Whether there is anything to paint: the rectangle has a positive width and height, and every number is finite.
[[nodiscard]] inline bool isPaintable(const QRectF &rect)
{
    return rect.width() > 0 && rect.height() > 0 && std::isfinite(rect.x()) && std::isfinite(rect.y())
        && std::isfinite(rect.width()) && std::isfinite(rect.height());
}

/// The smallest rectangle of whole pixels around it. None where an edge has no pixel: where it is no number, or one
/// that no integer holds.
[[nodiscard]] inline std::optional<QRect> pixelsAround(const QRectF &rect)
{
    const auto hasPixel = [](double edge) { return std::abs(edge) < 1e9; };
    if (!hasPixel(rect.left()) || !hasPixel(rect.top()) || !hasPixel(rect.right()) || !hasPixel(rect.bottom()))
        return {};
    return rect.toAlignedRect();
}

} // namespace kx
