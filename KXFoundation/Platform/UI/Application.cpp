// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Application.h>

#include <KXFoundation/Platform/UI/WindowQueries.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace kx {

QWidget *modalWindow()
{
    QWidget *const latest = QApplication::activeModalWidget();
    if (!latest || isModalPanel(latest))
        return latest;
    // One that is modal to another window may have been shown later.
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && isModalPanel(window))
            return window;
    }
    return nullptr;
}

bool applicationIsActive()
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

} // namespace kx
