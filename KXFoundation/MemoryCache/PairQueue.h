// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/MemoryCache/KeyHash.h>
#include <KXFoundation/MemoryCache/PositionTable.h>
#include <KXFoundation/MemoryCache/_KXMemoryCachePair.h>
#include <KXFoundation/Platform/Core/Absence.h>

#include <QtCore/QList>

#include <cstddef>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace kx {

/// Pairs in the order in which they were set, found by key. Operations cost what the walks that define them would not:
/// a few pairs are walked without hashing, more are found through a table; the order is a linked list over the slots.
///
/// Keys are unique but for those that setPairs() brings in. Room for pairs is kept until clear(). Pairs count up to
/// 2^32 - 2. `WalkIndex` is the signed number type in which the defining walks count; it shows only when there are more
/// pairs than it can tell apart.
template <class Key, class Value, class WalkIndex = qint32> class PairQueue {
public:
    using Pair = _KXMemoryCachePair<Key, Value>;

    quint64 count() const { return m_count; }

    /// The value of the newest pair with the key, or null. Valid until the next change.
    const Value *newest(const Key &key) const
    {
        const Position position = find<Newest>(key, hashIfIndexed(key));
        return position == none ? nullptr : &m_slots[position].pair->value();
    }

    /// Puts the pair last, in place of all pairs with its key, which is not absent. Deliberate: those stay when the
    /// count, as a WalkIndex, is negative.
    void set(Pair &&pair)
    {
        const quint32 hash = hashIfIndexed(pair.key());
        if (static_cast<WalkIndex>(m_count) <= 0) {
            m_repeats = m_repeats || m_count > 0;
            append(std::move(pair), hash);
        } else if (m_repeats) {
            setRepeated(std::move(pair), hash);
        } else if (const Position position = find<Newest>(pair.key(), hash); position != none) {
            // The hash is the same, so the table need not know. The old pair goes with the argument: not before all is
            // in order, because its end may call us again.
            std::swap(*m_slots[position].pair, pair);
            if (position != m_last) {
                unlink(position);
                linkLast(position);
            }
        } else {
            append(std::move(pair), hash);
        }
    }

    /// Removes the oldest pair with the key, or the last pair if there is none. Deliberate: what counts is the pair's
    /// index as a WalkIndex; a negative one removes nothing.
    void removeOldestOrLast(const Key &key)
    {
        Position position = isAbsent(key) ? none : find<Oldest>(key, hashIfIndexed(key));
        if (position == none)
            position = m_last;
        if (m_count > quint64(std::numeric_limits<WalkIndex>::max()))
            position = at(static_cast<WalkIndex>(indexOf(position)));
        remove(position);
    }

    void removeFirst() { remove(m_first); }
    void removeLast() { remove(m_last); }

    void clear() { PairQueue().swap(*this); }

    QList<Pair> pairs() const
    {
        QList<Pair> list;
        list.reserve(static_cast<qsizetype>(m_count));
        for (Position position = m_first; position != none; position = m_slots[position].newer)
            list.append(*m_slots[position].pair);
        return list;
    }

    void setPairs(const QList<Pair> &pairs)
    {
        PairQueue queue;
        queue.m_repeats = !keyhash::Hashable<Key>; // too dear to find out
        for (const Pair &pair : pairs) {
            const quint32 hash = queue.hashIfIndexed(pair.key());
            queue.m_repeats = queue.m_repeats || queue.template find<Newest>(pair.key(), hash) != none;
            queue.append(Pair(pair), hash);
        }
        queue.swap(*this); // the old pairs go when all is in order
    }

private:
    using Position = PositionTable::Position; // in m_slots
    static constexpr Position none = PositionTable::none;
    static constexpr quint64 fewPairs = 8; // walking these is cheaper than hashing a key

    struct Slot {
        std::optional<Pair> pair; // none in a free slot
        quint64 stamp = 0; // larger in newer pairs
        Position older = none;
        Position newer = none; // in a free slot: the next free one
        quint32 hash = 0; // of the key, once there is a table
    };
    enum End { Oldest, Newest };

    void swap(PairQueue &other) noexcept
    {
        std::swap(m_slots, other.m_slots);
        std::swap(m_table, other.m_table);
        std::swap(m_seed, other.m_seed);
        std::swap(m_count, other.m_count);
        std::swap(m_stamp, other.m_stamp);
        std::swap(m_first, other.m_first);
        std::swap(m_last, other.m_last);
        std::swap(m_free, other.m_free);
        std::swap(m_repeats, other.m_repeats);
    }

    bool holds(Position position, const Key &key) const
    {
        const Key &own = m_slots[position].pair->key();
        return keyhash::equal(own, key) && !isAbsent(own);
    }

    // The pair nearest to one end with this key, which is not absent.
    template <End end> Position find(const Key &key, quint32 hash) const
    {
        if (m_table.isEmpty()) {
            Position position = end == Newest ? m_last : m_first;
            while (position != none && !holds(position, key))
                position = end == Newest ? m_slots[position].older : m_slots[position].newer;
            return position;
        }
        Position found = none;
        m_table.visit(hash, [&](Position position) {
            if (!holds(position, key))
                return false;
            if (found == none || (m_slots[position].stamp > m_slots[found].stamp) == (end == Newest))
                found = position;
            return !m_repeats;
        });
        return found;
    }

    quint64 indexOf(Position position) const
    {
        quint64 index = 0;
        while ((position = m_slots[position].older) != none)
            ++index;
        return index;
    }

    Position at(WalkIndex index) const
    {
        Position position = index < 0 ? none : m_first;
        for (; position != none && index > 0; --index)
            position = m_slots[position].newer;
        return position;
    }

    void setRepeated(Pair &&pair, quint32 hash)
    {
        std::vector<Pair> dropped; // until all is in order
        for (Position position; (position = find<Newest>(pair.key(), hash)) != none;)
            dropped.push_back(take(position));
        append(std::move(pair), hash);
    }

    // With the hash of its key, if there is a table.
    void append(Pair &&pair, quint32 hash)
    {
        Position position = m_free;
        if (position != none) {
            m_free = m_slots[position].newer;
        } else {
            Q_ASSERT(m_slots.size() < none);
            position = static_cast<Position>(m_slots.size());
            m_slots.emplace_back();
        }
        Slot &slot = m_slots[position];
        slot.pair.emplace(std::move(pair));
        slot.hash = hash;
        linkLast(position);
        ++m_count;
        addToTable(position);
    }

    // Does nothing at `none`.
    void remove(Position position)
    {
        if (position != none)
            take(position);
    }

    // The pair goes out to the caller, so that it ends when all is in order: its end may call us again.
    Pair take(Position position)
    {
        if (!m_table.isEmpty())
            m_table.remove(m_slots[position].hash, position);
        unlink(position);
        --m_count;
        Slot &slot = m_slots[position];
        Pair pair = *std::move(slot.pair);
        slot.pair.reset();
        slot.newer = std::exchange(m_free, position);
        if (m_count == 0)
            m_repeats = false;
        return pair;
    }

    void linkLast(Position position)
    {
        Slot &slot = m_slots[position];
        slot.stamp = ++m_stamp;
        slot.older = m_last;
        slot.newer = none;
        (m_last == none ? m_first : m_slots[m_last].newer) = position;
        m_last = position;
    }

    void unlink(Position position)
    {
        const Slot &slot = m_slots[position];
        (slot.older == none ? m_first : m_slots[slot.older].newer) = slot.newer;
        (slot.newer == none ? m_last : m_slots[slot.newer].older) = slot.older;
    }

    // The table comes with the first pair too many and stays until the queue is cleared.

    quint32 hashIfIndexed(const Key &key) const
    {
        if constexpr (keyhash::Hashable<Key>) {
            if (!m_table.isEmpty())
                return keyhash::hash(key, m_seed);
        }
        return 0;
    }

    // With the pair linked and counted.
    void addToTable(Position position)
    {
        if constexpr (keyhash::Hashable<Key>) {
            if (m_table.isEmpty()) {
                if (m_count <= fewPairs)
                    return;
                for (Position at = m_first; at != none; at = m_slots[at].newer)
                    m_slots[at].hash = keyhash::hash(m_slots[at].pair->key(), m_seed);
            }
            if (m_table.hasRoomFor(m_count)) {
                m_table.insert(m_slots[position].hash, position);
                return;
            }
            m_table.reset(m_count);
            for (Position at = m_first; at != none; at = m_slots[at].newer)
                m_table.insert(m_slots[at].hash, at);
        }
    }

    std::vector<Slot> m_slots;
    PositionTable m_table;
    quint64 m_count = 0;
    quint64 m_stamp = 0;
    std::size_t m_seed = QHashSeed::globalSeed();
    Position m_first = none;
    Position m_last = none;
    Position m_free = none;
    bool m_repeats = false; // several pairs may have the same key
};

} // namespace kx
