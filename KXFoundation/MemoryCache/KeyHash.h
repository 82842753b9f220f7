// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QHashFunctions>
#include <QtCore/QString>

#include <cstddef>
#include <cstring>
#include <functional>
#include <type_traits>

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

/// The 128 bits of a product, folded to 64: a cheap and thorough mix.
inline quint64 mixed(quint64 a, quint64 b)
{
    __extension__ using Wide = unsigned __int128;
    const Wide product = Wide(a) * b;
    return quint64(product) ^ quint64(product >> 64);
}

/// Of UTF-16, four units a step. Qt's own hash of a longer text leaves the vector unit's upper halves in use on newer
/// processors; there, copying the key afterwards costs ten times as much as hashing it.
inline quint64 textHash(QStringView text, quint64 seed)
{
    constexpr quint64 stepFactor = 0xD6E8FEB86659FD93U; // odd, its bits well spread
    constexpr qsizetype unitsPerStep = 4;
    quint64 state = seed + quint64(text.size());
    const auto take = [&state](quint64 units) { state = mixed(state ^ units, stepFactor); };
    if (text.size() < unitsPerStep) {
        quint64 units = 0;
        for (const QChar unit : text)
            units = units << 16 | unit.unicode();
        take(units);
        return state;
    }
    const auto takeAt = [&](qsizetype at) {
        quint64 units = 0;
        std::memcpy(&units, text.utf16() + at, sizeof units);
        take(units);
    };
    qsizetype at = 0;
    for (; at + unitsPerStep < text.size(); at += unitsPerStep)
        takeAt(at);
    takeAt(text.size() - unitsPerStep); // overlaps the step before unless they are aligned
    return state;
}

/// 32 bits that all depend on all bits of the key's own hash.
template <Hashable Key> quint32 hash(const Key &key, std::size_t seed)
{
    std::size_t full = 0;
    if constexpr (std::is_same_v<Key, QString>)
        full = textHash(key, seed);
    else if constexpr (ByQt<Key>)
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
