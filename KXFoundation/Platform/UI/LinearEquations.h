// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QList>

namespace kx {

/// Linear equations, taken one by one in the order of their importance: what follows from earlier ones, or contradicts
/// them, is left out. Gauss-Jordan elimination, dense: for dozens of unknowns.
class LinearEquations {
public:
    /// The unknowns, each times its factor, add up to `sum`.
    struct Row {
        QList<double> factors;
        double sum;
    };

    explicit LinearEquations(int unknowns);

    /// A row with all factors 0.
    [[nodiscard]] Row row(double sum) const;
    void add(Row row);
    /// Adds: the unknown has this value.
    void set(int unknown, double value);

    /// One value for each unknown; 0 for those that nothing determines.
    [[nodiscard]] QList<double> solution() const;

private:
    int m_unknowns;
    QList<Row> m_rows;
    QList<int> m_pivots; // of each row: the unknown that appears, with factor 1, in no other
};

} // namespace kx
