// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/DevicePixels.h>

#include <QtGui/QImage>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>

namespace kx {

DevicePixels::DevicePixels(QPainter &painter)
    : m_painter(painter)
    , m_toDevice(painter.deviceTransform())
    , m_canCopy(painter.paintEngine()->type() == QPaintEngine::Raster && m_toDevice.type() <= QTransform::TxScale
          && m_toDevice.m11() > 0 && m_toDevice.m22() > 0)
{
}

void DevicePixels::copy(const QPoint &place, const QImage &image, const QRect &part)
{
    if (m_toDevice.type() <= QTransform::TxTranslate) {
        lay({place.x() - m_toDevice.dx(), place.y() - m_toDevice.dy()}, image, part);
        return;
    }
    // Any other scale would resample.
    const QTransform world = m_painter.worldTransform();
    m_painter.setWorldTransform(m_toDevice.inverted() * world);
    lay(place, image, part);
    m_painter.setWorldTransform(world);
}

void DevicePixels::lay(const QPointF &place, const QImage &image, const QRect &part)
{
    if (part == image.rect())
        m_painter.drawImage(place, image); // the shorter way
    else
        m_painter.drawImage(place, image, part);
}

} // namespace kx
