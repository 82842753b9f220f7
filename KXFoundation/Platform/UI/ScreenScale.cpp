// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ScreenScale.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

#include <algorithm>

namespace kx {

double pixelRatio(const QWidget &widget)
{
    const QWindow *window = widget.window()->windowHandle();
    return window && window->handle() ? window->devicePixelRatio() : widget.devicePixelRatioF();
}

double largestScreenScale()
{
    double scale = 1;
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        const QList<QScreen *> screens = QGuiApplication::screens();
        for (const QScreen *screen : screens)
            scale = std::max(scale, double(screen->devicePixelRatio()));
    }
    return scale;
}

} // namespace kx
