// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ScreenGeometry.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ScreenScale.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtWidgets/QWidget>

namespace kx {

namespace {

// The y at which the primary screen ends, in Qt's global coordinates.
double primaryBottom()
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    return primary ? primary->geometry().y() + primary->geometry().height() : 0;
}

} // namespace

QPointF screenPoint(const QPointF &globalPosition, const QWidget *window)
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    const double ratio = window ? pixelRatio(*window) : primary ? primary->devicePixelRatio() : 1;
    return pointerToYUp(globalPosition, primaryBottom(), ratio);
}

// What turns a pointer upwards is its own inverse.
QPointF globalPoint(const QPointF &point, const QWidget *window)
{
    return screenPoint(point, window);
}

QRectF screenFrame(const QWidget &window)
{
    return screenFlipped(window.frameGeometry());
}

QRectF screenFlipped(const QRectF &rect)
{
    return flippedRect(rect, primaryBottom());
}

} // namespace kx
