// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/WindowButtonFace.h>

#include <QtGui/QPainter>
#include <QtGui/QPolygonF>

namespace kx {

namespace {

QColor colourOf(const WindowButtonFace &face)
{
    if (!face.coloured)
        return {128, 128, 128, 90}; // lets light and dark title areas through alike
    switch (face.kind) {
    case WindowButton::Close: return {240, 96, 88};
    case WindowButton::Miniaturize: return {242, 188, 58};
    case WindowButton::Zoom: break;
    }
    return {84, 194, 92};
}

// A corner that points to the top left, its tip `tip` away from the middle in each direction, and as much across.
QPolygonF corner(double tip, double across, double turn)
{
    return {{QPointF(-tip, -tip) * turn, QPointF(-tip + across, -tip) * turn, QPointF(-tip, -tip + across) * turn}};
}

void drawSymbol(QPainter &painter, const WindowButtonFace &face, const QColor &ink)
{
    painter.setPen(QPen(ink, 1.3, Qt::SolidLine, Qt::RoundCap));
    switch (face.kind) {
    case WindowButton::Close:
        painter.drawLine(QPointF(-2.4, -2.4), QPointF(2.4, 2.4));
        painter.drawLine(QPointF(-2.4, 2.4), QPointF(2.4, -2.4));
        break;
    case WindowButton::Miniaturize: painter.drawLine(QPointF(-3, 0), QPointF(3, 0)); break;
    case WindowButton::Zoom:
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        for (const double turn : {1.0, -1.0})
            painter.drawPolygon(face.fullScreen ? corner(0.4, -3.4, turn) : corner(3, 4.4, turn));
        break;
    }
}

} // namespace

void drawWindowButtonFace(QPainter &painter, const QRectF &area, const WindowButtonFace &face)
{
    constexpr double radius = 6;
    QColor fill = colourOf(face);
    if (face.pressed)
        fill = fill.darker(130);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(area.center());

    QColor edge = fill.darker(118);
    edge.setAlpha(fill.alpha());
    painter.setPen(QPen(edge, 0.5));
    painter.setBrush(fill);
    painter.drawEllipse(QPointF(0, 0), radius - 0.25, radius - 0.25);
    if (face.symbol)
        drawSymbol(painter, face, fill.darker(280));
    painter.restore();
}

} // namespace kx
