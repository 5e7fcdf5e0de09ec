// Partition.h: a Problem taken apart into connected pieces.

#ifndef PARTITION_H
#define PARTITION_H

#include "onestep/Piece.h"

namespace voz::onestep
{

struct Partition
{
    std::vector<Piece> pieces;
    std::string refusal; // not empty: the mesh cannot be laid flat
    std::vector<std::string> warnings;
    std::vector<geometry::Vec2>
        shift;                // per piece: its positions were moved by minus this, so that digits are not lost far out
    std::vector<int> dropped; // degenerate elements
};

// A mesh without its degenerate cells (no area, repeated nodes), in the order of the elements.
struct Whole
{
    geometry::SurfaceMesh mesh;
    std::vector<int> elementOf; // per cell
};
Whole buildWhole(std::vector<std::array<double, 3>> const & i_nodes, std::vector<Element> const & i_elements,
                 std::vector<int> & o_dropped);

// Drops degenerate elements, orients, refuses what is no surface with a boundary. The problem must have passed
// checkProblem.
Partition partition(Problem const & i_problem);

} // namespace voz::onestep

#endif
