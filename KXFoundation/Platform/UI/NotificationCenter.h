// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QStringView>

#include <functional>
#include <memory>

namespace kx {

/// Something that happened, as observers hear of it.
struct Notification {
    QString name;
    QPointer<QObject> object; ///< The sender. Null without one, or when an observer before this one deleted it.
};

/// Tells observers, by name and sender, what others post. Observers are weak: one that goes is no longer told. Those
/// that can still be called while they are being destroyed, such as a class with subclasses, remove themselves first
/// thing in their destructor. Main thread only.
class KX_UI_EXPORT NotificationCenter : public QObject {
    Q_OBJECT

public:
    using Block = std::function<void(const Notification &)>;

    explicit NotificationCenter(QObject *parent = nullptr);
    ~NotificationCenter() override;

    /// The one that the application's and the windows' own notifications (WindowNotifications.h) are posted to. Lives
    /// until the process ends.
    [[nodiscard]] static NotificationCenter &defaultCenter();

    /// Calls `block` for every notification of that name from that sender, in the order in which observers were added.
    /// A null name is every name, a null sender every sender. The same observer may be added several times, and is
    /// then called as often. Without a block nothing is added.
    void addObserver(QObject *observer, Block block, QStringView name, const QObject *object = nullptr);
    /// The same with a member function of the observer.
    template <class Observer>
    void addObserver(Observer *observer, void (Observer::*selector)(const Notification &), QStringView name,
        const QObject *object = nullptr)
    {
        addObserver(
            observer, [observer, selector](const Notification &n) { (observer->*selector)(n); }, name, object);
    }

    /// Ends all that was added for this observer; at once, even for a notification that is being posted.
    void removeObserver(const QObject *observer);

    /// Returns when every observer has been called. Observers added meanwhile do not hear of this one.
    void postNotificationName(QStringView name, QObject *object = nullptr);

private:
    struct Entry;

    QList<std::shared_ptr<Entry>> m_entries;
};

} // namespace kx
