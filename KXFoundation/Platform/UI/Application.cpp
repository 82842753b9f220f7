// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Application.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace kx {

namespace {

bool isApplicationModal(const QWidget *window)
{
    return window && window->windowModality() == Qt::ApplicationModal;
}

} // namespace

QWidget *modalWindow()
{
    QWidget *const latest = QApplication::activeModalWidget();
    if (!latest || isApplicationModal(latest))
        return latest;
    // One that is modal to another window may have been shown later.
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && isApplicationModal(window))
            return window;
    }
    return nullptr;
}

bool applicationIsActive()
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

} // namespace kx
