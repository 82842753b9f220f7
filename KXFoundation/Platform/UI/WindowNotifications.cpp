// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/WindowNotifications.h>

#include <KXFoundation/Platform/UI/NotificationCenter.h>
#include <KXFoundation/Platform/UI/WindowWatch.h>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

namespace kx {

void setFullScreen(QWidget &window, bool fullScreen)
{
    if (window.isFullScreen() == fullScreen)
        return;
    const QPointer<QWidget> alive(&window);
    if (fullScreen)
        NotificationCenter::defaultCenter().postNotificationName(WindowWillEnterFullScreenNotification, &window);
    if (!alive)
        return;
    WindowWatch::setAnnounced(&window);
    window.setWindowState(
        fullScreen ? window.windowState() | Qt::WindowFullScreen : window.windowState() & ~Qt::WindowFullScreen);
    WindowWatch::setAnnounced(nullptr);
}

} // namespace kx
