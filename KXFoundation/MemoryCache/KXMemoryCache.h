// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/MemoryCache/KXMemoryCacheLock.h>
#include <KXFoundation/MemoryCache/PairQueue.h>
#include <KXFoundation/MemoryCache/_KXMemoryCachePair.h>
#include <KXFoundation/Platform/Core/Absence.h>

#include <QtCore/QList>

#include <mutex>
#include <optional>
#include <utility>

/// Keeps a bounded number of values in memory, in the order in which they were last set, and drops those set longest
/// ago. Reading a value does not move it.
///
/// Keys need ==, and should have a qHash() or std::hash: then every operation costs the same whatever the number of
/// pairs; without one, keys are found by walking. What counts as an absent key or value is kx::isAbsent()'s to say.
///
/// Not thread-safe by itself: see setLock().
template <class Key, class Value> class KXMemoryCache {
public:
    using Pair = _KXMemoryCachePair<Key, Value>;

    KXMemoryCache() = default;
    Q_DISABLE_COPY_MOVE(KXMemoryCache)

    /// Largest number of pairs kept. Deliberate: 0, the default, keeps nothing, so a host sets a limit first.
    [[nodiscard]] quint64 countLimit() const
    {
        const std::lock_guard guard(m_lock);
        return m_countLimit;
    }

    /// Drops the oldest pairs at once when more are held than the new limit allows. The same limit again does nothing.
    void setCountLimit(quint64 limit)
    {
        const std::lock_guard guard(m_lock);
        if (limit == m_countLimit)
            return;
        m_countLimit = limit;
        _checkIfNeedClean();
    }

    /// The value last set for the key; none when there is none, and for an absent key.
    [[nodiscard]] std::optional<Value> objectForKey(const Key &key) const
    {
        const std::lock_guard guard(m_lock);
        const Value *value = kx::isAbsent(key) ? nullptr : m_queue.newest(key);
        return value && !kx::isAbsent(*value) ? std::optional<Value>(*value) : std::nullopt;
    }

    /// Makes the pair the newest one, in place of every earlier pair with an equal key, then drops the oldest pairs
    /// beyond the limit. An absent value or key changes nothing: it does not remove the key.
    void setObject(Value value, Key forKey)
    {
        if (kx::isAbsent(value) || kx::isAbsent(forKey))
            return;
        Pair pair(std::move(forKey), std::move(value));
        const std::lock_guard guard(m_lock);
        m_queue.set(std::move(pair));
        _checkIfNeedClean();
    }

    /// Removes the key's pair. Deliberate: an unknown (or absent) key removes the newest pair instead. Of several pairs
    /// with the key, which only setCacheQueue() can bring in, the oldest one goes.
    void removeObjectForKey(const Key &key)
    {
        const std::lock_guard guard(m_lock);
        m_queue.removeOldestOrLast(key);
    }

    /// Also gives back the room for the pairs; the other removals keep it for later ones.
    void removeAllObjects()
    {
        const std::lock_guard guard(m_lock);
        m_queue.clear();
    }

    /// Drops the oldest pair.
    void removeFirstObject()
    {
        const std::lock_guard guard(m_lock);
        m_queue.removeFirst();
    }

    /// Drops the newest pair.
    void removeLastObject()
    {
        const std::lock_guard guard(m_lock);
        m_queue.removeLast();
    }

    /// The pairs, oldest first. This and setCacheQueue() do not take the lock: with several threads, hold lock() around
    /// them.
    [[nodiscard]] QList<Pair> cacheQueue() const { return m_queue.pairs(); }

    /// Replaces the pairs as they are: the limit is applied at the next setObject() or change of the limit, and pairs
    /// with equal keys stay until their key is set again. Pairs with an absent key are never found.
    void setCacheQueue(const QList<Pair> &pairs) { m_queue.setPairs(pairs); }

    [[nodiscard]] const KXMemoryCacheLock &lock() const { return m_lock; }

    /// The lock that every operation takes from now on, but for the accessors of cacheQueue and lock themselves. None,
    /// the default, means that the cache belongs to one thread at a time. Install it before other threads see the
    /// cache.
    ///
    /// It must be re-entrant (std::recursive_mutex, QRecursiveMutex): setObject() and setCountLimit() read the limit
    /// through countLimit() while they hold it. With a plain std::mutex or QMutex they never return: the first
    /// setObject() waits for itself. Values are copied out, and dropped ones destroyed, while it is held.
    ///
    ///     cache.setLock(std::make_shared<std::recursive_mutex>());
    void setLock(KXMemoryCacheLock lock) { m_lock = std::move(lock); }

private:
    // With the lock held.
    void _checkIfNeedClean()
    {
        while (m_queue.count() > countLimit())
            m_queue.removeFirst();
    }

    kx::PairQueue<Key, Value> m_queue;
    quint64 m_countLimit = 0;
    KXMemoryCacheLock m_lock;
};
