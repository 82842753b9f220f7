// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/ColorRamp.h>

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>

#include <algorithm>

namespace {

constexpr int shades = 256; // as many as a channel can tell apart

} // namespace

void ColorRamp::setColors(const kx::Color &start, const kx::Color &end)
{
    if (!m_row.isNull() && m_start == start && m_end == end)
        return;
    m_start = start;
    m_end = end;
    m_stretched = {};
    const QColor first = start.toQColor();
    const QColor last = end.toQColor();
    const bool opaque = first.alpha() == 255 && last.alpha() == 255;
    m_row = QImage(shades, 1, opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    m_row.fill(Qt::transparent);
    QLinearGradient gradient(0, 0, shades, 0);
    gradient.setColorAt(0, first);
    gradient.setColorAt(1, last);
    QPainter(&m_row).fillRect(m_row.rect(), gradient);
}

const QImage &ColorRamp::stretched(int width, int height, int room)
{
    if (m_stretched.width() < width || m_stretched.height() != height) {
        m_stretched = QImage(std::max(width, room), height, m_row.format());
        m_stretchedWidth = 0;
    }
    if (m_stretchedWidth == width || m_stretched.isNull())
        return m_stretched;
    // Each pixel has the shade at its centre.
    const auto *const shade = reinterpret_cast<const QRgb *>(m_row.constScanLine(0));
    auto *const first = reinterpret_cast<QRgb *>(m_stretched.scanLine(0));
    const quint64 step = (quint64(shades) << 32) / quint64(width);
    quint64 position = step / 2;
    for (int x = 0; x < width; ++x, position += step)
        first[x] = shade[position >> 32];
    for (int y = 1; y < height; ++y)
        std::copy_n(first, width, reinterpret_cast<QRgb *>(m_stretched.scanLine(y)));
    m_stretchedWidth = width;
    return m_stretched;
}
