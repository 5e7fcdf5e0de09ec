// Supports.h: what holds a connected piece of the sheet while it springs back.

#ifndef SUPPORTS_H
#define SUPPORTS_H

#include "springback/Springback.h"

#include <Eigen/Core>

namespace voz::springback
{

// The unknowns of a node are its displacement and its spin along the columns of a frame; some of the six are held.
struct Support
{
    Eigen::Matrix3d frame = Eigen::Matrix3d::Identity();
    std::array<bool, 6> held{}; // displacements, spins
};

struct Pin // a held unknown that only takes a rigid motion: nothing pulls on it
{
    int node, component;
};

struct Supports
{
    std::vector<Support> of; // per node of the piece
    std::vector<Pin> pins;
    int freeMotions = 0; // rigid motions that the caller's constraints leave
};

// What the caller holds, by nodes of the piece.
struct Holds
{
    std::vector<int> fixed, clamped;
    std::vector<geometry::SymmetryNode> symmetry;
};

// Where the holds leave the piece free to move it is pinned, in the least way that stops it: a piece that nothing
// holds at three nodes far apart, wholly at the first, across the line to the second there, and out of the plane of all
// three at the third.
Supports supportPiece(std::vector<geometry::Vec3> const & i_position, Holds const & i_holds);

} // namespace voz::springback

#endif
