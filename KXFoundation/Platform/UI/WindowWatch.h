// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

class QWidget;

namespace kx {

class NotificationCenter;

/// Turns what Qt tells the application and its top-level widgets into the notifications of WindowNotifications.h. It
/// sees events before their receivers do, and goes with the application object.
class WindowWatch : public QObject {
    Q_OBJECT

public:
    /// Does nothing without an application object, or when a watch for it is there already.
    static void start(NotificationCenter &center);
    /// The window about whose entering full screen nothing more is to be told; null for none.
    static void setAnnounced(QWidget *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    WindowWatch(NotificationCenter &center, QObject &application);

    void applicationChanged(bool active);
    void windowChanged(QWidget &window, const QEvent &event);

    NotificationCenter &m_center;
    QPointer<QWidget> m_announced;
    bool m_active;
};

} // namespace kx
