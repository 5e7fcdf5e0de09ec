// SurfaceMesh.cpp: sides by sorting, loops by walking.
//
// Two cells are neighbours when they share both nodes of a side; node numbers are compared, never coordinates.

#include "geometry/SurfaceMesh.h"

#include <algorithm>
#include <tuple>

namespace voz::geometry
{

namespace
{

struct SideKey
{
    int low, high, cell, corner;
    bool operator<(SideKey const & i_other) const
    {
        return std::tie(low, high, cell, corner) < std::tie(i_other.low, i_other.high, i_other.cell, i_other.corner);
    }
};

std::vector<SideKey> sortedSides(SurfaceMesh const & i_mesh)
{
    std::vector<SideKey> keys;
    keys.reserve(4 * i_mesh.cells.size());
    for (int c = 0; c < static_cast<int>(i_mesh.cells.size()); ++c)
    {
        Cell const & cell = i_mesh.cells[static_cast<std::size_t>(c)];
        for (int corner = 0; corner < cell.count; ++corner)
        {
            int const a = cell.node[static_cast<std::size_t>(corner)];
            int const b = cell.node[static_cast<std::size_t>(cell.next(corner))];
            keys.push_back({std::min(a, b), std::max(a, b), c, corner});
        }
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

void joinAcross(SurfaceMesh const & i_mesh, SideKey const & i_one, SideKey const & i_other, SideTable & io_table)
{
    auto const at = [](int i) { return static_cast<std::size_t>(i); };
    int const first = i_mesh.cells[at(i_one.cell)].node[at(i_one.corner)];
    int const second = i_mesh.cells[at(i_other.cell)].node[at(i_other.corner)];
    io_table.across[at(i_one.cell)][at(i_one.corner)] = i_other.cell;
    io_table.across[at(i_other.cell)][at(i_other.corner)] = i_one.cell;
    io_table.acrossIsAligned[at(i_one.cell)][at(i_one.corner)] = first == second;
    io_table.acrossIsAligned[at(i_other.cell)][at(i_other.corner)] = first == second;
}

} // namespace

SideTable buildSideTable(SurfaceMesh const & i_mesh)
{
    SideTable table;
    table.across.assign(i_mesh.cells.size(), {-1, -1, -1, -1});
    table.acrossIsAligned.assign(i_mesh.cells.size(), {false, false, false, false});
    std::vector<SideKey> const keys = sortedSides(i_mesh);
    for (std::size_t i = 0; i < keys.size();)
    {
        std::size_t end = i + 1;
        while (end < keys.size() && keys[end].low == keys[i].low && keys[end].high == keys[i].high)
            ++end;
        if (end - i == 2)
            joinAcross(i_mesh, keys[i], keys[i + 1], table);
        else if (end - i > 2 && table.crowded < 0)
            table.crowded = keys[i + 2].cell;
        ++table.numberOfEdges;
        i = end;
    }
    for (int c = 0; c < static_cast<int>(i_mesh.cells.size()); ++c)
    {
        Cell const & cell = i_mesh.cells[static_cast<std::size_t>(c)];
        for (int corner = 0; corner < cell.count; ++corner)
            if (table.across[static_cast<std::size_t>(c)][static_cast<std::size_t>(corner)] < 0)
                table.free.push_back({cell.node[static_cast<std::size_t>(corner)],
                                      cell.node[static_cast<std::size_t>(cell.next(corner))], c, corner});
    }
    return table;
}

NodeCells buildNodeCells(SurfaceMesh const & i_mesh)
{
    NodeCells table;
    table.start.assign(i_mesh.position.size() + 1, 0);
    for (Cell const & cell : i_mesh.cells)
        for (int corner = 0; corner < cell.count; ++corner)
            ++table.start[static_cast<std::size_t>(cell.node[static_cast<std::size_t>(corner)]) + 1];
    for (std::size_t i = 1; i < table.start.size(); ++i)
        table.start[i] += table.start[i - 1];
    table.cell.resize(static_cast<std::size_t>(table.start.back()));
    std::vector<int> fill(table.start.begin(), table.start.end() - 1);
    for (int c = 0; c < static_cast<int>(i_mesh.cells.size()); ++c)
    {
        Cell const & cell = i_mesh.cells[static_cast<std::size_t>(c)];
        for (int corner = 0; corner < cell.count; ++corner)
        {
            int & place = fill[static_cast<std::size_t>(cell.node[static_cast<std::size_t>(corner)])];
            table.cell[static_cast<std::size_t>(place++)] = c;
        }
    }
    return table;
}

std::vector<std::vector<int>> traceLoops(SurfaceMesh const & i_mesh, SideTable const & i_sides)
{
    auto const at = [](int i) { return static_cast<std::size_t>(i); };
    std::size_t const count = i_sides.free.size();
    std::vector<int> head(count), next(count, -1), firstOut(i_mesh.position.size(), -1);
    std::vector<int> tail(count);
    for (std::size_t s = count; s-- > 0;)
    {
        Side const & side = i_sides.free[s];
        bool const turned = i_mesh.cells[at(side.cell)].sign < 0.0;
        tail[s] = turned ? side.b : side.a;
        head[s] = turned ? side.a : side.b;
        next[s] = firstOut[at(tail[s])];
        firstOut[at(tail[s])] = static_cast<int>(s);
    }
    std::vector<std::vector<int>> loops;
    std::vector<int> place(i_mesh.position.size(), -1), path;
    for (std::size_t s = 0; s < count; ++s)
    {
        int node = tail[s];
        path.assign(1, node);
        place[at(node)] = 0;
        while (firstOut[at(node)] >= 0)
        {
            int const side = firstOut[at(node)];
            firstOut[at(node)] = next[at(side)];
            node = head[at(side)];
            if (place[at(node)] < 0)
            {
                place[at(node)] = static_cast<int>(path.size());
                path.push_back(node);
                continue;
            }
            // The walk has met itself: what lies between is a loop; the walk goes on from its first node.
            auto const from = path.begin() + place[at(node)];
            loops.emplace_back(from, path.end());
            for (auto it = from + 1; it != path.end(); ++it)
                place[at(*it)] = -1;
            path.erase(from + 1, path.end());
        }
        for (int const visited : path)
            place[at(visited)] = -1;
    }
    return loops;
}

Vec3 vectorArea(SurfaceMesh const & i_mesh, Cell const & i_cell)
{
    auto const at = [&](int corner)
    { return i_mesh.position[static_cast<std::size_t>(i_cell.node[static_cast<std::size_t>(corner)])]; };
    Vec3 const area = i_cell.count == 3 ? cross(at(1) - at(0), at(2) - at(0)) : cross(at(2) - at(0), at(3) - at(1));
    return (0.5 * i_cell.sign) * area;
}

double cellArea(SurfaceMesh const & i_mesh, Cell const & i_cell)
{
    return length(vectorArea(i_mesh, i_cell));
}

} // namespace voz::geometry
