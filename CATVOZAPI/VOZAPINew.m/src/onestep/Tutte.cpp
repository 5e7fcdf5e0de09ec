// Tutte.cpp: W. T. Tutte, Proc. London Math. Soc. 13 (1963) 743, with uniform weights.

#include "onestep/Tutte.h"

#include "onestep/SparseSolver.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace voz::onestep
{

using geometry::Cell;
using geometry::Vec2;

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

double loopLength(Piece const & i_piece, std::vector<int> const & i_loop)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < i_loop.size(); ++i)
        sum +=
            length(i_piece.mesh.position[at(i_loop[(i + 1) % i_loop.size()])] - i_piece.mesh.position[at(i_loop[i])]);
    return sum;
}

std::size_t longestLoop(Piece const & i_piece)
{
    std::size_t best = 0;
    double greatest = -1.0;
    for (std::size_t i = 0; i < i_piece.loops.size(); ++i)
        if (double const size = loopLength(i_piece, i_piece.loops[i]); size > greatest)
        {
            best = i;
            greatest = size;
        }
    return best;
}

using Edges = std::vector<std::pair<int, int>>; // both directions, sorted, each once

Edges collectEdges(Piece const & i_piece, std::size_t i_outer, bool i_crossed)
{
    Edges edges;
    auto const add = [&](int a, int b)
    {
        edges.emplace_back(a, b);
        edges.emplace_back(b, a);
    };
    for (Cell const & cell : i_piece.mesh.cells)
    {
        for (int k = 0; k < cell.count; ++k)
            add(cell.node[at(k)], cell.node[at(cell.next(k))]);
        if (cell.count == 4 && i_crossed)
        {
            add(cell.node[0], cell.node[2]);
            add(cell.node[1], cell.node[3]);
        }
    }
    int vertex = static_cast<int>(i_piece.mesh.position.size());
    for (std::size_t i = 0; i < i_piece.loops.size(); ++i)
    {
        if (i == i_outer)
            continue;
        for (int const node : i_piece.loops[i])
            add(vertex, node);
        ++vertex;
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

// Positions of the outer loop; the surface lies on its left.
void layCircle(Piece const & i_piece, std::vector<int> const & i_loop, std::vector<Vec2> & io_flat,
               std::vector<char> & io_fixed)
{
    double const radius = std::sqrt(i_piece.area / std::numbers::pi);
    double const scale = 2.0 * std::numbers::pi / loopLength(i_piece, i_loop);
    double angle = 0.0;
    for (std::size_t i = 0; i < i_loop.size(); ++i)
    {
        io_flat[at(i_loop[i])] = {radius * std::cos(angle), radius * std::sin(angle)};
        io_fixed[at(i_loop[i])] = 1;
        auto const & position = i_piece.mesh.position;
        angle += scale * length(position[at(i_loop[(i + 1) % i_loop.size()])] - position[at(i_loop[i])]);
    }
}

struct LaplaceSystem
{
    SparsePattern pattern;
    std::vector<double> values, sides; // sides: x of all unknowns, then y
};

LaplaceSystem buildLaplace(Edges const & i_edges, std::vector<int> const & i_unknown, int i_size,
                           std::vector<Vec2> const & i_flat)
{
    LaplaceSystem system;
    system.pattern.size = i_size;
    system.pattern.rowStart.push_back(0);
    system.sides.assign(at(2 * i_size), 0.0);
    for (std::size_t first = 0; first < i_edges.size();)
    {
        int const node = i_edges[first].first;
        std::size_t last = first;
        while (last < i_edges.size() && i_edges[last].first == node)
            ++last;
        int const row = i_unknown[at(node)];
        bool diagonalStands = false;
        for (std::size_t i = first; i < last && row >= 0; ++i)
        {
            int const other = i_edges[i].second, column = i_unknown[at(other)];
            if (column < 0)
            {
                system.sides[at(row)] += i_flat[at(other)].x;
                system.sides[at(i_size + row)] += i_flat[at(other)].y;
                continue;
            }
            if (!diagonalStands && column > row)
            {
                system.pattern.column.push_back(row);
                system.values.push_back(static_cast<double>(last - first));
                diagonalStands = true;
            }
            system.pattern.column.push_back(column);
            system.values.push_back(-1.0);
        }
        if (row >= 0)
        {
            if (!diagonalStands)
            {
                system.pattern.column.push_back(row);
                system.values.push_back(static_cast<double>(last - first));
            }
            system.pattern.rowStart.push_back(static_cast<int>(system.pattern.column.size()));
        }
        first = last;
    }
    return system;
}

} // namespace

std::vector<Vec2> embedByTutte(Piece const & i_piece, bool i_crossed)
{
    std::size_t const nodes = i_piece.mesh.position.size();
    std::size_t const vertices = nodes + i_piece.loops.size() - 1;
    std::vector<Vec2> flat(vertices);
    std::vector<char> fixed(vertices, 0);
    std::size_t const outer = longestLoop(i_piece);
    layCircle(i_piece, i_piece.loops[outer], flat, fixed);

    std::vector<int> unknown(vertices, -1);
    int size = 0;
    for (std::size_t i = 0; i < vertices; ++i)
        if (fixed[i] == 0)
            unknown[i] = size++;
    if (size > 0)
    {
        LaplaceSystem system = buildLaplace(collectEdges(i_piece, outer, i_crossed), unknown, size, flat);
        SparseSolver solver(system.pattern, SparseSolver::Kind::PositiveDefinite);
        if (!solver.factorise(system.values) || !solver.solve(system.sides, 2))
            return {};
        for (std::size_t i = 0; i < vertices; ++i)
            if (unknown[i] >= 0)
                flat[i] = {system.sides[at(unknown[i])], system.sides[at(size + unknown[i])]};
    }
    flat.resize(nodes);
    return flat;
}

} // namespace voz::onestep
