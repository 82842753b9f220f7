// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/LinearEquations.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kx {

namespace {

void subtract(LinearEquations::Row &from, const LinearEquations::Row &row, int pivot)
{
    const double times = from.factors.at(pivot);
    if (times == 0)
        return;
    for (int i = 0; i < row.factors.size(); ++i)
        from.factors[i] -= times * row.factors.at(i);
    from.factors[pivot] = 0;
    from.sum -= times * row.sum;
}

} // namespace

LinearEquations::LinearEquations(int unknowns)
    : m_unknowns(unknowns)
{
}

LinearEquations::Row LinearEquations::row(double sum) const
{
    return {QList<double>(m_unknowns, 0.0), sum};
}

void LinearEquations::add(Row row)
{
    const auto larger = [](double a, double b) { return std::abs(a) < std::abs(b); };
    if (row.factors.isEmpty())
        return;
    const double scale = std::abs(*std::max_element(row.factors.cbegin(), row.factors.cend(), larger));
    for (int i = 0; i < m_rows.size(); ++i)
        subtract(row, m_rows.at(i), m_pivots.at(i));
    const auto largest = std::max_element(row.factors.cbegin(), row.factors.cend(), larger);
    if (std::abs(*largest) <= scale * 1e-9)
        return;
    const int pivot = int(largest - row.factors.cbegin());
    const double times = 1 / *largest;
    for (double &factor : row.factors)
        factor *= times;
    row.sum *= times;
    row.factors[pivot] = 1;
    for (Row &other : m_rows)
        subtract(other, row, pivot);
    m_rows.append(std::move(row));
    m_pivots.append(pivot);
}

void LinearEquations::set(int unknown, double value)
{
    Row one = row(value);
    one.factors[unknown] = 1;
    add(std::move(one));
}

QList<double> LinearEquations::solution() const
{
    QList<double> values(m_unknowns, 0.0);
    for (int i = 0; i < m_rows.size(); ++i)
        values[m_pivots.at(i)] = m_rows.at(i).sum;
    return values;
}

} // namespace kx
