// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/WindowWatch.h>

#include <KXFoundation/Platform/UI/NotificationCenter.h>
#include <KXFoundation/Platform/UI/Window.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QWindowStateChangeEvent>
#include <QtWidgets/QWidget>

namespace kx {

namespace {

QPointer<WindowWatch> theWatch;

bool canBecomeMain(const QWidget &window)
{
    const auto *own = qobject_cast<const Window *>(&window);
    return window.windowType() == Qt::Window && (!own || own->canBecomeMainWindow());
}

} // namespace

void WindowWatch::start(NotificationCenter &center)
{
    if (!theWatch && QCoreApplication::instance())
        theWatch = new WindowWatch(center, *QCoreApplication::instance());
}

void WindowWatch::setAnnounced(QWidget *window)
{
    if (theWatch)
        theWatch->m_announced = window;
}

WindowWatch::WindowWatch(NotificationCenter &center, QObject &application)
    : QObject(&application)
    , m_center(center)
    , m_active(QGuiApplication::applicationState() == Qt::ApplicationActive)
{
    application.installEventFilter(this);
}

bool WindowWatch::eventFilter(QObject *watched, QEvent *event)
{
    const QPointer<QObject> alive(watched);
    switch (event->type()) {
    case QEvent::ApplicationStateChange:
        if (watched == parent()) {
            const auto &change = static_cast<const QApplicationStateChangeEvent &>(*event);
            applicationChanged(change.applicationState() == Qt::ApplicationActive);
        }
        break;
    case QEvent::Resize:
    case QEvent::WindowActivate:
    case QEvent::WindowStateChange:
        if (watched->isWidgetType() && static_cast<QWidget *>(watched)->isWindow())
            windowChanged(static_cast<QWidget &>(*watched), *event);
        break;
    default: break;
    }
    return !alive; // an observer may have deleted it
}

void WindowWatch::applicationChanged(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    m_center.postNotificationName(
        active ? ApplicationWillBecomeActiveNotification : ApplicationDidResignActiveNotification, parent());
}

void WindowWatch::windowChanged(QWidget &window, const QEvent &event)
{
    if (event.type() == QEvent::Resize) {
        m_center.postNotificationName(WindowDidResizeNotification, &window);
    } else if (event.type() == QEvent::WindowActivate) {
        if (canBecomeMain(window))
            m_center.postNotificationName(WindowDidBecomeMainNotification, &window);
    } else {
        const auto &change = static_cast<const QWindowStateChangeEvent &>(event);
        const bool before = change.oldState().testFlag(Qt::WindowFullScreen);
        const bool now = window.isFullScreen();
        if (!before && now && &window != m_announced)
            m_center.postNotificationName(WindowWillEnterFullScreenNotification, &window);
        else if (before && !now)
            m_center.postNotificationName(WindowDidExitFullScreenNotification, &window);
    }
}

} // namespace kx
