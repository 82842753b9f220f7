// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QtGlobal>

#include <cstddef>
#include <limits>
#include <vector>

namespace kx {

/// Finds positions by hash: open addressing with linear probing, no more than two fifths in use. It holds neither keys
/// nor values, and starts out without any room: isEmpty().
class PositionTable {
public:
    using Position = quint32;
    static constexpr Position none = std::numeric_limits<Position>::max();

    bool isEmpty() const { return m_cells.empty(); }
    bool hasRoomFor(quint64 count) const { return count * 5 <= m_cells.size() * 2; }

    /// Forgets all positions and makes room for more than `count`.
    void reset(quint64 count)
    {
        std::size_t size = 32;
        while (size < count * 3)
            size *= 2;
        m_cells.assign(size, Cell{});
    }

    /// Calls `visit` with each position under the hash until it answers true; not on an empty table.
    template <class Visitor> void visit(quint32 hash, const Visitor &visit) const
    {
        for (std::size_t cell = home(hash); m_cells[cell].position != none; cell = next(cell)) {
            if (m_cells[cell].hash == hash && visit(m_cells[cell].position))
                return;
        }
    }

    void insert(quint32 hash, Position position)
    {
        std::size_t cell = home(hash);
        while (m_cells[cell].position != none)
            cell = next(cell);
        m_cells[cell] = {position, hash};
    }

    /// Of a position that is in the table under the hash.
    void remove(quint32 hash, Position position)
    {
        std::size_t gap = home(hash);
        while (m_cells[gap].position != position)
            gap = next(gap);
        // Later cells of the run move up where they may, so that no search ends at the gap.
        for (std::size_t cell = next(gap); m_cells[cell].position != none; cell = next(cell)) {
            if (distance(home(m_cells[cell].hash), cell) >= distance(gap, cell)) {
                m_cells[gap] = m_cells[cell];
                gap = cell;
            }
        }
        m_cells[gap] = Cell{};
    }

private:
    struct Cell {
        Position position = none;
        quint32 hash = 0;
    };

    std::size_t home(quint32 hash) const { return hash & (m_cells.size() - 1); }
    std::size_t next(std::size_t cell) const { return (cell + 1) & (m_cells.size() - 1); }
    std::size_t distance(std::size_t from, std::size_t to) const { return (to - from) & (m_cells.size() - 1); }

    std::vector<Cell> m_cells; // a power of two of them
};

} // namespace kx
