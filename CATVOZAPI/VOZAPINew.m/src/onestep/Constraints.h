// Constraints.h: what is prescribed in the flat, and the numbering of what is left to be found.
//
// A constraint reads X . (cos a, sin a) = p . (cos a, sin a) + v; an angle above 1000 prescribes both components, X =
// p. Constraints are eliminated: a node keeps as many unknowns and equations as it has free directions.

#ifndef CONSTRAINTS_H
#define CONSTRAINTS_H

#include "onestep/Piece.h"

namespace voz::onestep
{

// Adds X . direction = target to a hold. A direction that is held already stays as it was first given.
void addHold(geometry::Vec2 i_direction, double i_target, Hold & io_hold);

// X = p.
void holdWholly(geometry::Vec2 i_position, Hold & io_hold);

// Fills holds and symmetry nodes of the piece from constraints whose nodes are the piece's.
void applyConstraints(std::vector<NodeConstraint> const & i_constraints, Piece & io_piece);

// Planes of symmetry show by free sides of which both nodes are held to them with the value 0. Ascending by node.
std::vector<geometry::SymmetryNode> findSymmetry(geometry::SurfaceMesh const & i_mesh,
                                                 geometry::SideTable const & i_sides,
                                                 std::vector<NodeConstraint> const & i_constraints);

// Above this force per length, N/m, a holder edge is a lock.
double lockStrength(MaterialLaw const & i_law);

// Holder edges whose force is far above anything that the sheet can carry mean "no draw-in": their nodes are held and
// the edges removed. Edges in a plane of symmetry are removed as well. Returns the number of locked edges.
int applyLocks(std::vector<MaterialLaw> const & i_materials, Piece & io_piece);

// The position nearest to i_flat that satisfies the hold.
geometry::Vec2 heldPosition(Hold const & i_hold, geometry::Vec2 i_flat);

// Unknowns and equations of a solve. Unknown u of a node moves it along column[u]; its equation is that of the force
// along equation[u].
struct Freedoms
{
    int size = 0;
    std::vector<int> first; // per node; node i has the unknowns first[i] .. first[i + 1] - 1
    std::vector<geometry::Vec2> column;
    std::vector<geometry::Vec3> equation;
};

// All nodes free (the start works this way: constraints act by penalty there).
Freedoms freeFreedoms(std::size_t i_nodes);

// Constrained nodes keep the direction across their constraint, and the equation of the tangent that lies along it.
// i_projection: the two rows of the tangential projection per node (TangentFrame.h).
Freedoms heldFreedoms(std::vector<Hold> const & i_holds, std::vector<std::array<geometry::Vec3, 2>> const & i_tangent,
                      std::vector<std::array<geometry::Vec3, 2>> const & i_projection);

} // namespace voz::onestep

#endif
