// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtGui/QImage>

#include <functional>
#include <tuple>

class QPainter;

namespace kx {

class DevicePixels;

/// Something that is drawn once and kept as pixels, so that drawing it again is a copy of them. They are drawn anew for
/// another resolution or size, and for another place among the pixels of the device. What takes more than 4 MB is
/// drawn each time, as is all on a device to which pixels cannot be copied.
class KeptDrawing {
public:
    static constexpr double mostPixels = 1 << 20;

    enum class Place {
        Exact,
        SnappedAcross, ///< moved to the nearest whole pixel from left to right, so that it can slide
    };

    /// What `drawing` paints within `place`, on a painter that counts as this one does. Columns of the device before
    /// `firstColumn` may be left out.
    void draw(QPainter &painter, DevicePixels &device, const QRectF &place,
        const std::function<void(QPainter &)> &drawing, Place kind = Place::Exact, int firstColumn = 0);
    /// To be called when something else is to be drawn.
    void forget() { m_pixels = {}; }

private:
    /// What the pixels depend on, of the place and the device.
    struct Site {
        double across = 0;
        double down = 0;
        QPointF offset; // of the place in its top left pixel
        QSizeF size; // in pixels

        bool operator==(const Site &) const = default;
    };

    [[nodiscard]] QImage drawn(const QPointF &origin, const std::function<void(QPainter &)> &drawing) const;

    Site m_site;
    QImage m_pixels;
};

/// A drawing that looks the same as long as all these parts are equal.
template <class... Parts> class KeptDrawingOf : public KeptDrawing {
public:
    /// Before each draw().
    void setParts(const Parts &...parts)
    {
        if (m_parts == std::tie(parts...))
            return;
        m_parts = std::tie(parts...);
        forget();
    }

private:
    std::tuple<Parts...> m_parts;
};

} // namespace kx
