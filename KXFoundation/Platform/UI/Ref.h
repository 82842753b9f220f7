// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/Absence.h>

#include <concepts>
#include <cstddef>
#include <memory>
#include <utility>

namespace kx {

struct AnyRef { };

/// A handle on a shared value that never changes. Copies of a handle are the same object; two handles made of equal
/// values are not. Handles may be used from any thread, one by one like any value.
template <class T> class Ref : public AnyRef {
public:
    /// None.
    Ref() = default;
    Ref(std::nullptr_t) { } // NOLINT(google-explicit-constructor): stands for none wherever a handle is wanted

    /// Whether there is an object.
    explicit operator bool() const { return bool(m_value); }
    /// The value; there must be one.
    const T &operator*() const { return *m_value; }
    const T *operator->() const { return m_value.get(); }

    /// Whether both are the same object, or both none.
    friend bool operator==(const Ref &a, const Ref &b) { return a.m_value == b.m_value; }
    friend bool operator==(const Ref &a, std::nullptr_t) { return !a.m_value; }

    /// Whether both are none, or their values equal.
    [[nodiscard]] bool sameValue(const Ref &other) const
    {
        return m_value == other.m_value || (m_value && other.m_value && *m_value == *other.m_value);
    }

protected:
    Ref(T value) // NOLINT(google-explicit-constructor): for the classes of handles alone
        : m_value(std::make_shared<const T>(std::move(value)))
    {
    }

private:
    std::shared_ptr<const T> m_value;
};

/// Handles that have a size need a word of their own to be told from containers.
template <std::derived_from<AnyRef> T>
requires requires(const T &value)
{
    value.size();
}
struct Absence<T> {
    static bool isAbsent(const T &value) { return value == nullptr; }
    static T absent() { return nullptr; }
};

} // namespace kx
