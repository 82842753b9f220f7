// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/NotificationCenter.h>

#include <KXFoundation/Platform/UI/WindowWatch.h>

#include <algorithm>
#include <utility>

namespace kx {

struct NotificationCenter::Entry {
    const QObject *observer; // null once removed
    Block block;
    QString name; // null: every name
    bool fromAnyone;
    QPointer<const QObject> object; // a new object at the address of one that is gone is another sender

    [[nodiscard]] bool hears(const QString &posted, const QObject *sender) const
    {
        return observer && (name.isNull() || name == posted) && (fromAnyone || (sender && object == sender));
    }
};

NotificationCenter::NotificationCenter(QObject *parent)
    : QObject(parent)
{
}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter &NotificationCenter::defaultCenter()
{
    static auto *const center = new NotificationCenter; // never deleted: observers may live as long as the process
    WindowWatch::start(*center);
    return *center;
}

void NotificationCenter::addObserver(QObject *observer, Block block, QStringView name, const QObject *object)
{
    if (!observer || !block)
        return;
    if (observer != this)
        connect(observer, &QObject::destroyed, this, &NotificationCenter::removeObserver, Qt::UniqueConnection);
    m_entries.append(
        std::make_shared<Entry>(Entry{observer, std::move(block), name.toString(), object == nullptr, object}));
}

void NotificationCenter::removeObserver(const QObject *observer)
{
    const auto isOthers = [observer](const std::shared_ptr<Entry> &entry) { return entry->observer != observer; };
    if (std::all_of(m_entries.cbegin(), m_entries.cend(), isOthers))
        return;
    const auto theirs = std::stable_partition(m_entries.begin(), m_entries.end(), isOthers);
    // What the blocks hold dies last: it may come back here.
    const QList<std::shared_ptr<Entry>> entries(theirs, m_entries.end());
    m_entries.erase(theirs, m_entries.end());
    for (const std::shared_ptr<Entry> &entry : entries)
        entry->observer = nullptr;
    if (observer != this)
        disconnect(observer, &QObject::destroyed, this, &NotificationCenter::removeObserver);
}

void NotificationCenter::postNotificationName(QStringView name, QObject *object)
{
    const Notification notification{name.toString(), object};
    const auto entries = m_entries;
    for (const std::shared_ptr<Entry> &entry : entries) {
        if (entry->hears(notification.name, notification.object))
            entry->block(notification);
    }
}

} // namespace kx
