// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ScreenScale.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include <algorithm>

namespace kx {

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
