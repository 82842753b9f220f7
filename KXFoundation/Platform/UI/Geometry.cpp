// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Geometry.h>

#include <algorithm>
#include <cmath>

namespace kx {

bool pointInRect(const QPointF &point, const QRectF &rect)
{
    return rect.x() <= point.x() && point.x() < rect.x() + rect.width() && rect.y() <= point.y()
        && point.y() < rect.y() + rect.height();
}

QPointF pointerToYUp(const QPointF &position, double height, double devicePixelRatio)
{
    // A ratio such as 1.5 leaves the last row of pixels a rounding error away from 0, on either side of it.
    const double y = height - position.y() - 1 / devicePixelRatio;
    const double whole = std::round(y);
    return {position.x(), std::abs(y - whole) < 1e-6 ? whole : y};
}

QRectF flippedRect(const QRectF &rect, double height)
{
    return {rect.x(), height - rect.y() - rect.height(), rect.width(), rect.height()};
}

QRect edgesRounded(const QRectF &rect)
{
    const auto edge = [](double value) {
        constexpr double largest = (1 << 24) - 1;
        return std::isnan(value) ? 0 : int(std::floor(std::clamp(value, -largest, largest) + 0.5));
    };
    const int left = edge(rect.x());
    const int top = edge(rect.y());
    return {left, top, std::max(edge(rect.x() + rect.width()) - left, 0),
        std::max(edge(rect.y() + rect.height()) - top, 0)};
}

} // namespace kx
