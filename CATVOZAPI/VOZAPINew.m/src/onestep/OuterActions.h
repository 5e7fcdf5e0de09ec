// OuterActions.h: what acts on the part from outside, beside the tools' normal reaction.
//
// Holder edges pull outward in the element's plane, bead segments away from the part's inside; both are constant
// forces. Pads drag each element towards where its material came from. Newtons, in the stamping frame.

#ifndef OUTERACTIONS_H
#define OUTERACTIONS_H

#include "onestep/Piece.h"

#include <span>

namespace voz::onestep
{

struct ConstantForces
{
    std::vector<geometry::Vec3> force; // per node
    int beadsSkipped = 0;              // segments without valid coordinates
};

// Adds the forces of holder edges alone, per node.
void addHolderForces(Piece const & i_piece, std::vector<HolderEdge> const & i_edges,
                     std::vector<geometry::Vec3> & io_force);

// i_start: flat positions of the start, which tell a bead's outer side.
ConstantForces buildConstantForces(Piece const & i_piece, std::span<geometry::Vec2 const> i_start);

// Friction of the pads on one corner of a cell with displacement u = X - p less its part along the normal:
//     force = tau A/nc u / w,   w = sqrt(|u|^2 + delta^2),   delta = 1e-3 sqrt(total area)
struct PadForce
{
    geometry::Vec3 force;
    geometry::Vec3 slope[2]; // derivative for the two components of X
};

class PadFriction
{
public:
    explicit PadFriction(Piece const & i_piece);
    bool any() const { return !m_cells.empty(); }
    std::vector<int> const & cells() const { return m_cells; }                                  // those under a pad
    PadForce evaluate(int i_place, int i_corner, std::span<geometry::Vec2 const> i_flat) const; // place in cells()

private:
    Piece const & m_piece; // outlives this
    std::vector<int> m_cells;
    std::vector<geometry::Vec3> m_normal;
    std::vector<double> m_share; // tau A/nc, N
    double m_delta = 0.0;
};

} // namespace voz::onestep

#endif
