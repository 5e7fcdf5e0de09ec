// Orientation.cpp: winding by a walk over the sides.
//
// Neighbours agree when they run along their common side in opposite ways.

#include "geometry/Orientation.h"

namespace voz::geometry
{

namespace
{

constexpr double kFaceUpShare = 0.05; // of the area; below it up and down are not told apart

void walkPiece(SideTable const & i_sides, int i_first, SurfaceMesh & io_mesh, Pieces & io_pieces)
{
    auto const at = [](int i) { return static_cast<std::size_t>(i); };
    std::vector<int> queue(1, i_first);
    io_pieces.ofCell[at(i_first)] = io_pieces.count;
    for (std::size_t q = 0; q < queue.size(); ++q)
    {
        int const c = queue[q];
        Cell const & cell = io_mesh.cells[at(c)];
        for (int corner = 0; corner < cell.count; ++corner)
        {
            int const other = i_sides.across[at(c)][at(corner)];
            if (other < 0)
                continue;
            double const sign = i_sides.acrossIsAligned[at(c)][at(corner)] ? -cell.sign : cell.sign;
            if (io_pieces.ofCell[at(other)] < 0)
            {
                io_pieces.ofCell[at(other)] = io_pieces.count;
                io_mesh.cells[at(other)].sign = sign;
                queue.push_back(other);
            }
            else if (io_mesh.cells[at(other)].sign != sign && io_pieces.twisted < 0)
                io_pieces.twisted = other;
        }
    }
}

} // namespace

Pieces orient(SideTable const & i_sides, SurfaceMesh & io_mesh)
{
    Pieces pieces;
    pieces.ofCell.assign(io_mesh.cells.size(), -1);
    for (Cell & cell : io_mesh.cells)
        cell.sign = 1.0;
    for (int c = 0; c < static_cast<int>(io_mesh.cells.size()); ++c)
        if (pieces.ofCell[static_cast<std::size_t>(c)] < 0)
        {
            walkPiece(i_sides, c, io_mesh, pieces);
            ++pieces.count;
        }
    std::vector<double> up(static_cast<std::size_t>(pieces.count)), area(up.size());
    for (std::size_t c = 0; c < io_mesh.cells.size(); ++c)
    {
        Vec3 const a = vectorArea(io_mesh, io_mesh.cells[c]);
        up[static_cast<std::size_t>(pieces.ofCell[c])] += a.z;
        area[static_cast<std::size_t>(pieces.ofCell[c])] += length(a);
    }
    for (std::size_t i = 0; i < up.size(); ++i)
        pieces.windingIsOpen.push_back(std::abs(up[i]) < kFaceUpShare * area[i]);
    for (std::size_t c = 0; c < io_mesh.cells.size(); ++c)
    {
        auto const piece = static_cast<std::size_t>(pieces.ofCell[c]);
        if (up[piece] < 0.0 && !pieces.windingIsOpen[piece])
            io_mesh.cells[c].sign = -io_mesh.cells[c].sign;
    }
    return pieces;
}

} // namespace voz::geometry
