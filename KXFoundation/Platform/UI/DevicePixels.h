// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QRectF>
#include <QtGui/QTransform>

class QImage;
class QPainter;

namespace kx {

/// The pixels of the device that a painter is on, for what is copied there one by one. Valid while the painter's
/// transform stays as it is.
class DevicePixels {
public:
    explicit DevicePixels(QPainter &painter);

    /// False for devices without pixels, and for painters that rotate, shear or mirror.
    [[nodiscard]] bool canCopy() const { return m_canCopy; }
    /// Pixels per unit of the painter's coordinates.
    [[nodiscard]] double across() const { return m_toDevice.m11(); }
    [[nodiscard]] double down() const { return m_toDevice.m22(); }
    /// A rectangle of the painter's coordinates in pixels. Only where they can be copied to.
    [[nodiscard]] QRectF mapped(const QRectF &rect) const
    {
        return {rect.x() * across() + m_toDevice.dx(), rect.y() * down() + m_toDevice.dy(), rect.width() * across(),
            rect.height() * down()};
    }
    /// Lays a part of the image on the device, its top left pixel at `place`.
    void copy(const QPoint &place, const QImage &image, const QRect &part);

private:
    void lay(const QPointF &place, const QImage &image, const QRect &part);

    QPainter &m_painter;
    QTransform m_toDevice;
    bool m_canCopy;
};

} // namespace kx
