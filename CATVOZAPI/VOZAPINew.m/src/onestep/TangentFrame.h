// TangentFrame.h: the tangent plane of each node and the projection that equilibrium is taken with.
//
// The membrane forces of a node balance the outer actions in the tangent plane of the tools; along the normal the
// contact balances them. Without tool friction the projection is the pair of tangents. With friction of coefficient mu
// the contact c = N . F drags on the sheet with mu c along t_up, the tangent of rising third coordinate, which makes
// the projection an oblique one:
//
//     P = T - mu t_up N^T,   t_up = T a3 / max(|T a3|, 0.001)
//
// Contact under the punch and over the die has opposite signs of c, so the sheet is held back on both.

#ifndef TANGENTFRAME_H
#define TANGENTFRAME_H

#include "onestep/Piece.h"

namespace voz::onestep
{

struct TangentFrames
{
    std::vector<geometry::Vec3> normal;
    std::vector<std::array<geometry::Vec3, 2>> tangent;    // orthonormal, tangent[1] = normal x tangent[0]
    std::vector<std::array<geometry::Vec3, 2>> projection; // the rows of P
};

TangentFrames buildTangentFrames(Piece const & i_piece, double i_friction);

} // namespace voz::onestep

#endif
