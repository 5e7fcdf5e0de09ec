// Piece.cpp: the derived parts of a piece.

#include "onestep/Piece.h"

namespace voz::onestep
{

using geometry::Cell;
using geometry::IntegrationPoint;

void completePiece(Piece & io_piece)
{
    auto const at = [](int i) { return static_cast<std::size_t>(i); };
    std::size_t const count = io_piece.mesh.position.size();
    io_piece.points = geometry::buildIntegrationPoints(io_piece.mesh);
    io_piece.weight.assign(count, 0.0);
    io_piece.area = 0.0;
    for (IntegrationPoint const & point : io_piece.points.points)
    {
        io_piece.area += point.area;
        for (int k = 0; k < point.count; ++k)
            io_piece.weight[at(point.node[at(k)])] += point.area / point.count;
    }
    std::vector<bool> symmetric(count, false);
    for (geometry::SymmetryNode const & held : io_piece.symmetry)
        symmetric[at(held.node)] = true;
    io_piece.rimSides.clear();
    for (geometry::Side const & side : io_piece.sides.free)
        if (!(symmetric[at(side.a)] && symmetric[at(side.b)]))
            io_piece.rimSides.push_back(side);
}

} // namespace voz::onestep
