// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace kx {

/// A table that threads read while others replace it whole: a shared pointer to a value that never changes once it is
/// published. Readers keep the table they got for as long as they like. Made of a mutex, because the loads of
/// std::atomic<std::shared_ptr> in GCC 12's library release its lock without ordering, a data race.
template <class T> class Published {
public:
    using Pointer = std::shared_ptr<const T>;

    [[nodiscard]] Pointer load() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_value;
    }

    void store(Pointer value)
    {
        const std::scoped_lock lock(m_mutex);
        m_value.swap(value); // the old table dies after the lock was given back
    }

    /// Publishes what `make` makes of the present table (which may be null); again if another thread was faster, so
    /// that no change is lost.
    template <class Make> void update(const Make &make)
    {
        Pointer current = load();
        Pointer next = make(current);
        while (!replace(current, next)) {
            current = load();
            next = make(current);
        }
    }

private:
    bool replace(const Pointer &current, Pointer &next)
    {
        const std::scoped_lock lock(m_mutex);
        if (m_value != current)
            return false;
        m_value.swap(next);
        return true;
    }

    mutable std::mutex m_mutex;
    Pointer m_value;
};

} // namespace kx
