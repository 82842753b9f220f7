// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/KeptDrawing.h>

#include <KXFoundation/Platform/UI/DevicePixels.h>

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace kx {

namespace {

constexpr double farthest = 1e6; // from the device's origin; beyond, there is nothing to see

} // namespace

void KeptDrawing::draw(QPainter &painter, DevicePixels &device, const QRectF &place,
    const std::function<void(QPainter &)> &drawing, Place kind, int firstColumn)
{
    const QRectF pixels = device.mapped(place);
    const bool snaps = kind == Place::SnappedAcross;
    const double left = snaps ? std::round(pixels.x()) : std::floor(pixels.x());
    const double top = std::floor(pixels.y());
    const bool isNear = std::abs(left) < farthest && std::abs(top) < farthest;
    if (!device.canCopy() || !isNear) {
        drawing(painter);
        return;
    }
    const Site site{device.across(), device.down(), {snaps ? 0 : pixels.x() - left, pixels.y() - top}, pixels.size()};
    if (m_pixels.isNull() || !(m_site == site)) {
        m_site = site;
        m_pixels = drawn(place.topLeft(), drawing);
    }
    if (m_pixels.isNull()) {
        drawing(painter);
        return;
    }
    const int skipped = std::clamp(firstColumn - int(left), 0, m_pixels.width());
    device.copy({int(left) + skipped, int(top)}, m_pixels, m_pixels.rect().adjusted(skipped, 0, 0, 0));
}

QImage KeptDrawing::drawn(const QPointF &origin, const std::function<void(QPainter &)> &drawing) const
{
    const double width = std::ceil(m_site.offset.x() + m_site.size.width());
    const double height = std::ceil(m_site.offset.y() + m_site.size.height());
    if (!(width > 0 && height > 0 && width * height <= mostPixels))
        return {};
    QImage pixels(int(width), int(height), QImage::Format_ARGB32_Premultiplied);
    if (pixels.isNull())
        return {};
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setTransform({m_site.across, 0, 0, m_site.down, m_site.offset.x() - origin.x() * m_site.across,
        m_site.offset.y() - origin.y() * m_site.down});
    drawing(painter);
    return pixels;
}

} // namespace kx
