// SimplicialLu.cpp: up-looking factorisation, row by row.
//
// T. A. Davis, Direct Methods for Sparse Linear Systems, SIAM 2006 (elimination tree, reach of a row), carried over
// from L L^T to L D U: with row y = a_k of the lower and column z of the upper part, for each i of the reach of k in
// ascending order of the tree
//     y_j -= y_i U_ij,   z_j -= L_ji z_i   (j > i in column i),   d_k -= y_i z_i / d_i,   L_ki = y_i / d_i,   U_ik =
//     z_i / d_i

#include "onestep/SimplicialLu.h"

#include <Eigen/OrderingMethods>
#include <Eigen/SparseCore>

#include <algorithm>
#include <cmath>

namespace voz::onestep
{

namespace
{

constexpr double kLeastPivot = 1.0e-14; // of the greatest entry
constexpr double kResidual = 1.0e-12;   // of the right side
constexpr double kWorstResidual = 1.0e-6;
constexpr int kRefinements = 5;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

SimplicialLu::SimplicialLu(SparsePattern const & i_pattern) : m_pattern(i_pattern)
{
    std::vector<double> const ones(m_pattern.column.size(), 1.0);
    using Matrix = Eigen::SparseMatrix<double, Eigen::ColMajor, int>;
    Matrix const graph =
        Eigen::Map<Matrix const>(m_pattern.size, m_pattern.size, static_cast<Eigen::Index>(ones.size()),
                                 m_pattern.rowStart.data(), m_pattern.column.data(), ones.data());
    Eigen::PermutationMatrix<Eigen::Dynamic, Eigen::Dynamic, int> order;
    Eigen::AMDOrdering<int>()(graph, order);
    m_order.assign(order.indices().data(), order.indices().data() + m_pattern.size);
    m_place.resize(m_order.size());
    for (int k = 0; k < m_pattern.size; ++k)
        m_place[at(m_order[at(k)])] = k;
    analyse();
}

void SimplicialLu::analyse()
{
    int const size = m_pattern.size;
    std::vector<int> mark(at(size), -1), count(at(size), 0);
    m_parent.assign(at(size), -1);
    for (int k = 0; k < size; ++k)
    {
        mark[at(k)] = k;
        int const given = m_order[at(k)];
        for (int e = m_pattern.rowStart[at(given)]; e < m_pattern.rowStart[at(given) + 1]; ++e)
            for (int i = m_place[at(m_pattern.column[at(e)])]; i < k && mark[at(i)] != k; i = m_parent[at(i)])
            {
                if (m_parent[at(i)] < 0)
                    m_parent[at(i)] = k;
                ++count[at(i)];
                mark[at(i)] = k;
            }
    }
    m_start.assign(1, 0);
    for (int const c : count)
        m_start.push_back(m_start.back() + c);
    m_row.resize(at(m_start.back()));
    m_lower.resize(m_row.size());
    m_upper.resize(m_row.size());
    m_pivot.resize(at(size));
}

// Columns of L with an entry in the row, each before those that depend on it: o_path[first] .. the end.
int SimplicialLu::reach(int i_row, std::vector<int> & io_mark, std::vector<int> & o_path) const
{
    int top = m_pattern.size;
    int const given = m_order[at(i_row)];
    std::vector<int> & path = o_path;
    io_mark[at(i_row)] = i_row;
    for (int e = m_pattern.rowStart[at(given)]; e < m_pattern.rowStart[at(given) + 1]; ++e)
    {
        int length = 0;
        for (int i = m_place[at(m_pattern.column[at(e)])]; i < i_row && io_mark[at(i)] != i_row; i = m_parent[at(i)])
        {
            path[at(length++)] = i;
            io_mark[at(i)] = i_row;
        }
        while (length > 0)
            path[at(--top)] = path[at(--length)];
    }
    return top;
}

bool SimplicialLu::factorise(std::span<double const> i_values)
{
    int const size = m_pattern.size;
    m_values.assign(i_values.begin(), i_values.end());
    double greatest = 0.0;
    for (double const v : m_values)
        greatest = std::max(greatest, std::abs(v));
    std::vector<int> mark(at(size), -1), path(at(size)), fill(m_start.begin(), m_start.end() - 1);
    std::vector<double> y(at(size), 0.0), z(at(size), 0.0);
    for (int k = 0; k < size; ++k)
    {
        int const given = m_order[at(k)];
        for (int e = m_pattern.rowStart[at(given)]; e < m_pattern.rowStart[at(given) + 1]; ++e)
            if (int const i = m_place[at(m_pattern.column[at(e)])]; i <= k)
            {
                y[at(i)] = m_values[at(e)];
                z[at(i)] = m_values[at(m_pattern.find(m_pattern.column[at(e)], given))];
            }
        double pivot = y[at(k)];
        y[at(k)] = z[at(k)] = 0.0;
        for (int top = reach(k, mark, path); top < size; ++top)
        {
            int const i = path[at(top)];
            double const yi = y[at(i)], zi = z[at(i)];
            y[at(i)] = z[at(i)] = 0.0;
            for (int p = m_start[at(i)]; p < fill[at(i)]; ++p)
            {
                y[at(m_row[at(p)])] -= yi * m_upper[at(p)];
                z[at(m_row[at(p)])] -= zi * m_lower[at(p)];
            }
            double const inverse = 1.0 / m_pivot[at(i)];
            int const place = fill[at(i)]++;
            m_row[at(place)] = k;
            m_lower[at(place)] = yi * inverse;
            m_upper[at(place)] = zi * inverse;
            pivot -= yi * zi * inverse;
        }
        if (!(std::abs(pivot) > kLeastPivot * greatest))
            return false;
        m_pivot[at(k)] = pivot;
    }
    return true;
}

void SimplicialLu::substitute(std::vector<double> & io_permuted) const
{
    int const size = m_pattern.size;
    for (int i = 0; i < size; ++i)
        for (int p = m_start[at(i)]; p < m_start[at(i) + 1]; ++p)
            io_permuted[at(m_row[at(p)])] -= m_lower[at(p)] * io_permuted[at(i)];
    for (int i = size - 1; i >= 0; --i)
    {
        double sum = io_permuted[at(i)] / m_pivot[at(i)];
        for (int p = m_start[at(i)]; p < m_start[at(i) + 1]; ++p)
            sum -= m_upper[at(p)] * io_permuted[at(m_row[at(p)])];
        io_permuted[at(i)] = sum;
    }
}

bool SimplicialLu::solve(std::span<double> io_side) const
{
    auto const norm = [](auto const & i_vector)
    {
        double squares = 0.0;
        for (double const v : i_vector)
            squares += v * v;
        return std::sqrt(squares);
    };
    std::size_t const size = io_side.size();
    std::vector<double> const right(io_side.begin(), io_side.end());
    std::vector<double> residual = right, permuted(size);
    std::fill(io_side.begin(), io_side.end(), 0.0);
    double const scale = norm(right);
    double before = scale;
    for (int round = 0; round < kRefinements && before > kResidual * scale; ++round)
    {
        for (std::size_t k = 0; k < size; ++k)
            permuted[k] = residual[at(m_order[k])];
        substitute(permuted);
        for (std::size_t k = 0; k < size; ++k)
            io_side[at(m_order[k])] += permuted[k];
        residual = right;
        for (int row = 0; row < m_pattern.size; ++row)
            for (int e = m_pattern.rowStart[at(row)]; e < m_pattern.rowStart[at(row) + 1]; ++e)
                residual[at(row)] -= m_values[at(e)] * io_side[at(m_pattern.column[at(e)])];
        double const now = norm(residual);
        if (!(now < 0.5 * before))
        {
            before = now;
            break;
        }
        before = now;
    }
    return before <= kWorstResidual * scale;
}

} // namespace voz::onestep
