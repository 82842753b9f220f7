// SPDX-License-Identifier: MIT
#include "Icons.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace {

constexpr QSizeF iconSize(24, 24);

kx::Image filled(const QSizeF &size, const QPainterPath &path, const kx::Color &color)
{
    return kx::Image::imageWithSize(size, false, [path, color](QPainter &painter, const QRectF &) {
        painter.fillPath(path, color.toQColor());
        return true;
    });
}

QPainterPath stroked(const QPainterPath &lines)
{
    QPainterPathStroker pen;
    pen.setWidth(1.8);
    pen.setCapStyle(Qt::RoundCap);
    return pen.createStroke(lines);
}

// A knob is as high as the bar draws it, and as wide as the disc in its middle.
kx::Image knob(double height, double diameter)
{
    QPainterPath path;
    path.addEllipse(QRectF(0, (height - diameter) / 2, diameter, diameter));
    return filled({diameter, height}, path, Qt::white);
}

} // namespace

kx::Image icons::play(const kx::Color &color)
{
    QPainterPath path({7, 4});
    path.lineTo(20, 12);
    path.lineTo(7, 20);
    path.closeSubpath();
    return filled(iconSize, path, color);
}

kx::Image icons::pause(const kx::Color &color)
{
    QPainterPath path;
    path.addRect(6, 4, 4, 16);
    path.addRect(14, 4, 4, 16);
    return filled(iconSize, path, color);
}

kx::Image icons::heart(const kx::Color &color)
{
    QPainterPath path({12, 21});
    path.cubicTo(-4, 11, 5, -2, 12, 7);
    path.cubicTo(19, -2, 28, 11, 12, 21);
    return filled(iconSize, path, color);
}

kx::Image icons::speaker(const kx::Color &color, bool loud)
{
    QPainterPath path;
    path.addPolygon(QPolygonF({{4, 9}, {8, 9}, {13, 4.5}, {13, 19.5}, {8, 15}, {4, 15}, {4, 9}}));
    QPainterPath lines;
    if (loud) {
        for (const double radius : {3.5, 7.0}) {
            const QRectF circle(13 - radius, 12 - radius, 2 * radius, 2 * radius);
            lines.arcMoveTo(circle, -50);
            lines.arcTo(circle, -50, 100);
        }
    } else {
        lines.moveTo(16, 9.5);
        lines.lineTo(21, 14.5);
        lines.moveTo(21, 9.5);
        lines.lineTo(16, 14.5);
    }
    path.addPath(stroked(lines));
    return filled(iconSize, path, color);
}

kx::Image icons::list(const kx::Color &color)
{
    QPainterPath path;
    for (const int y : {6, 11, 16}) {
        path.addRect(4, y, 3, 2);
        path.addRect(10, y, 10, 2);
    }
    return filled(iconSize, path, color);
}

kx::Image icons::disc(double side, const kx::Color &color)
{
    QPainterPath path;
    path.addEllipse(0, 0, side, side);
    return filled({side, side}, path, color);
}

kx::Image icons::poster()
{
    return kx::Image::imageWithSize({96, 54}, false, [](QPainter &painter, const QRectF &rect) {
        QLinearGradient sky(rect.topLeft(), rect.bottomLeft());
        sky.setColorAt(0, QColor(40, 44, 90));
        sky.setColorAt(1, QColor(236, 120, 84));
        painter.fillRect(rect, sky);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 214, 140));
        painter.drawEllipse(QPointF(66, 38), 10, 10);
        painter.fillRect(QRectF(0, 40, 96, 14), QColor(30, 34, 60));
        return true;
    });
}

void icons::registerIndicators()
{
    // The heights and widths at which a bar of normal height 32 and hovered height 36 draws its knob.
    kx::Image::setNamed(QStringLiteral("indicator"), knob(32, 14));
    kx::Image::setNamed(QStringLiteral("indicator_hover"), knob(36, 17));
}
