// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QHashFunctions>
#include <QtCore/QString>

#include <cstddef>
#include <functional>

/// Hashes of keys of any type that has a qHash() or a std::hash, and their comparison.
namespace kx::keyhash {

using ::qHash; // beside those found by the argument's own namespace

template <class Key>
concept ByQt = requires(const Key &key, std::size_t seed)
{
    static_cast<std::size_t>(qHash(key, seed));
};
template <class Key>
concept ByStd = requires(const Key &key)
{
    static_cast<std::size_t>(std::hash<Key>{}(key));
};
template <class Key>
concept Hashable = ByQt<Key> || ByStd<Key>;

/// 32 bits that all depend on all bits of the key's own hash.
template <Hashable Key> quint32 hash(const Key &key, std::size_t seed)
{
    std::size_t full = 0;
    if constexpr (ByQt<Key>)
        full = qHash(key, seed);
    else
        full = std::hash<Key>{}(key) ^ seed;
    return static_cast<quint32>(quint64(full) * 0x9E3779B97F4A7C15U >> 32); // Fibonacci hashing (Knuth, TAOCP 6.4)
}

/// The keys' own ==.
template <class Key> bool equal(const Key &a, const Key &b)
{
    return a == b;
}

/// The same answer sooner: texts are often shared, and keys of one make mostly differ at their end.
inline bool equal(const QString &a, const QString &b)
{
    if (a.size() != b.size())
        return false;
    return a.isEmpty() || a.constData() == b.constData() || (a.back() == b.back() && a == b);
}

} // namespace kx::keyhash
