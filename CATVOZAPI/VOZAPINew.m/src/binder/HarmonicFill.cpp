// HarmonicFill.cpp: weights by sorting, one definite system.

#include "binder/HarmonicFill.h"

#include "onestep/SparseSolver.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace voz::binder
{

using geometry::Cell;
using geometry::Vec2;

namespace
{

constexpr double kLeastWeight = 1.0e-3;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

struct Link // between two nodes; each stands once from either end
{
    int from, to;
    double weight;
};

// Half the cotangent of the angle at c goes to the side a-b.
void addTriangle(int a, int b, int c, std::vector<Vec2> const & i_flat, std::vector<Link> & io_links)
{
    int const node[3] = {a, b, c};
    double const twice = std::abs(cross(i_flat[at(b)] - i_flat[at(a)], i_flat[at(c)] - i_flat[at(a)]));
    for (int k = 0; k < 3; ++k)
    {
        int const p = node[(k + 1) % 3], q = node[(k + 2) % 3];
        double const cosine = dot(i_flat[at(p)] - i_flat[at(node[k])], i_flat[at(q)] - i_flat[at(node[k])]);
        double const weight = twice > 0.0 ? 0.5 * cosine / twice : 0.0;
        io_links.push_back({p, q, weight});
        io_links.push_back({q, p, weight});
    }
}

// Sorted by both ends, parts of the same link added up.
std::vector<Link> linksOf(std::vector<Cell> const & i_cells, std::vector<Vec2> const & i_flat)
{
    std::vector<Link> parts;
    parts.reserve(12 * i_cells.size());
    for (Cell const & cell : i_cells)
    {
        addTriangle(cell.node[0], cell.node[1], cell.node[2], i_flat, parts);
        if (cell.count == 4)
            addTriangle(cell.node[0], cell.node[2], cell.node[3], i_flat, parts);
    }
    std::stable_sort(parts.begin(), parts.end(),
                     [](Link const & a, Link const & b) { return std::tie(a.from, a.to) < std::tie(b.from, b.to); });
    std::vector<Link> links;
    for (Link const & part : parts)
    {
        if (!links.empty() && links.back().from == part.from && links.back().to == part.to)
            links.back().weight += part.weight;
        else
            links.push_back(part);
    }
    for (Link & link : links)
        link.weight = std::max(link.weight, kLeastWeight);
    return links;
}

// The unknown nodes that links join to known ones, directly or by others: an unknown number, else -1.
std::vector<int> numberUnknowns(std::vector<Link> const & i_links, std::vector<bool> const & i_known, int & o_count)
{
    std::vector<int> start(i_known.size() + 1, 0), open;
    for (Link const & link : i_links)
        ++start[at(link.from) + 1];
    for (std::size_t i = 1; i < start.size(); ++i)
        start[i] += start[i - 1];
    std::vector<bool> reached = i_known;
    for (std::size_t i = 0; i < i_known.size(); ++i)
        if (i_known[i])
            open.push_back(static_cast<int>(i));
    while (!open.empty())
    {
        int const node = open.back();
        open.pop_back();
        for (int l = start[at(node)]; l < start[at(node) + 1]; ++l)
            if (!reached[at(i_links[at(l)].to)])
            {
                reached[at(i_links[at(l)].to)] = true;
                open.push_back(i_links[at(l)].to);
            }
    }
    std::vector<int> number(i_known.size(), -1);
    o_count = 0;
    for (std::size_t i = 0; i < i_known.size(); ++i)
        if (reached[i] && !i_known[i])
            number[i] = o_count++;
    return number;
}

struct Laplace
{
    onestep::SparsePattern pattern;
    std::vector<double> values;
    std::vector<double> side;
};

Laplace assemble(std::vector<Link> const & i_links, std::vector<int> const & i_number, int i_count,
                 std::vector<double> const & i_value)
{
    Laplace system;
    system.pattern.size = i_count;
    system.pattern.rowStart.push_back(0);
    system.side.assign(at(i_count), 0.0);
    for (std::size_t l = 0; l < i_links.size();)
    {
        int const node = i_links[l].from, row = i_number[at(node)];
        int diagonal = -1;
        double sum = 0.0;
        auto const put = [&](int column, double value)
        {
            system.pattern.column.push_back(column);
            system.values.push_back(value);
        };
        auto const putDiagonal = [&]
        {
            diagonal = static_cast<int>(system.values.size());
            put(row, 0.0);
        };
        for (; l < i_links.size() && i_links[l].from == node; ++l)
        {
            if (row < 0)
                continue;
            double const w = i_links[l].weight;
            sum += w;
            int const column = i_number[at(i_links[l].to)];
            if (column < 0) // known
            {
                system.side[at(row)] += w * i_value[at(i_links[l].to)];
                continue;
            }
            if (diagonal < 0 && column > row)
                putDiagonal();
            put(column, -w);
        }
        if (row < 0)
            continue;
        if (diagonal < 0)
            putDiagonal();
        system.values[at(diagonal)] = sum;
        system.pattern.rowStart.push_back(static_cast<int>(system.values.size()));
    }
    return system;
}

} // namespace

bool fillHarmonically(std::vector<Cell> const & i_cells, std::vector<Vec2> const & i_flat,
                      std::vector<double> & io_value, std::vector<bool> & io_known)
{
    std::vector<Link> const links = linksOf(i_cells, i_flat);
    int count = 0;
    std::vector<int> const number = numberUnknowns(links, io_known, count);
    if (count == 0)
        return true;
    Laplace system = assemble(links, number, count, io_value);
    onestep::SparseSolver solver(system.pattern, onestep::SparseSolver::Kind::PositiveDefinite);
    if (!solver.factorise(system.values) || !solver.solve(system.side, 1))
        return false;
    for (std::size_t i = 0; i < number.size(); ++i)
        if (number[i] >= 0)
        {
            io_value[i] = system.side[at(number[i])];
            io_known[i] = true;
        }
    return true;
}

} // namespace voz::binder
