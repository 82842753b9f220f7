// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

/// A lock of any kind, or none: whatever has lock() and unlock(), held together with whoever else holds it. Without a
/// lock, lock() and unlock() do nothing. Copies are the same lock. It is itself a BasicLockable, for std::lock_guard.
class KXMemoryCacheLock {
public:
    KXMemoryCacheLock() = default;
    KXMemoryCacheLock(std::nullptr_t) { }

    template <class Lock>
    requires requires(Lock &lock)
    {
        lock.lock();
        lock.unlock();
    }
    KXMemoryCacheLock(std::shared_ptr<Lock> lock)
        : m_lock(std::move(lock))
        , m_take([](void *taken) { static_cast<Lock *>(taken)->lock(); })
        , m_release([](void *taken) { static_cast<Lock *>(taken)->unlock(); })
    {
    }

    void lock() const
    {
        if (m_lock)
            m_take(m_lock.get());
    }
    void unlock() const
    {
        if (m_lock)
            m_release(m_lock.get());
    }

    explicit operator bool() const { return m_lock != nullptr; }
    friend bool operator==(const KXMemoryCacheLock &a, const KXMemoryCacheLock &b) { return a.m_lock == b.m_lock; }

private:
    std::shared_ptr<void> m_lock;
    void (*m_take)(void *) = nullptr;
    void (*m_release)(void *) = nullptr;
};
