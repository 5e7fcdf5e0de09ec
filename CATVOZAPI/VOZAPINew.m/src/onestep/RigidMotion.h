// RigidMotion.h: the rigid motions of the flat that constraints leave free: placing, holding, solving beside them.
//
// Modes are (1, 0), (0, 1) and (-(y - yc), x - xc)/size; a motion is three coefficients of them.

#ifndef RIGIDMOTION_H
#define RIGIDMOTION_H

#include "onestep/Constraints.h"
#include "onestep/ElementPattern.h"

#include <span>

namespace voz::onestep
{

using RigidMotion = std::array<double, 3>;

// An orthonormal basis (of coefficients) of the motions that no hold resists: none to three.
std::vector<RigidMotion> freeRigidMotions(std::vector<Hold> const & i_holds, std::span<geometry::Vec2 const> i_flat);

// Turns and shifts io_flat as near to the projection of the part as a rigid motion can, in the mean square weighted by
// the nodes' areas; holds go before (see the source).
void placeOverPart(Piece const & i_piece, std::vector<geometry::Vec2> & io_flat);

// How far the holds are missed by the best placing of i_flat, in the mean square, m^2; 0 without holds.
double placingError(Piece const & i_piece, std::span<geometry::Vec2 const> i_flat);

// The unknowns that stop given columns of motions when they are pinned: as many as there are columns, distinct.
std::vector<int> choosePins(std::vector<std::vector<double>> i_columns);

// Pins among the unknowns x, y of every node (2 i, 2 i + 1) against the motions that the holds leave free.
std::vector<int> rigidPins(std::vector<Hold> const & i_holds, std::span<geometry::Vec2 const> i_flat);

// Tangential equilibrium cannot in general be had against the free motions; as many holding forces make up for it.
class RigidHolding
{
public:
    RigidHolding(Piece const & i_piece, Freedoms const & i_freedoms, std::span<geometry::Vec2 const> i_start);

    int count() const { return static_cast<int>(m_forces.size()); }

    // Takes the part along the holding forces out of a residual; returns its size, N.
    double removeHeldPart(std::vector<double> & io_residual) const;

    // Newton step of the bordered system  [J Br; Cr^T 0]  by one factorisation of J + alpha Q E^T. Pattern, values and
    // solver outlive the use of the factors. io_values: the Jacobian; changed at the pins. False: singular.
    bool factorise(ElementPattern const & i_pattern, std::vector<double> & io_values, SparseSolver & io_solver);

    // Improved against the system itself until its residual is small, as far as that goes. False: no factors, or a
    // number that is not finite.
    bool solve(std::vector<double> const & i_right, std::vector<double> & o_step);

private:
    struct Pin // the equation and the unknown that alpha ties together; both of one node
    {
        int equation, unknown;
    };
    static std::vector<Pin> choosePairs(Freedoms const & i_freedoms, std::vector<std::vector<double>> i_forces,
                                        std::vector<std::vector<double>> i_rows);
    bool solveOnce(std::vector<double> const & i_right, std::vector<double> const & i_motion,
                   std::vector<double> & o_step);
    std::vector<double> motionOf(std::vector<double> const & i_step) const; // Cr^T of a step
    void residualOf(std::vector<double> const & i_right, std::vector<double> const & i_step,
                    std::vector<double> & o_residual) const;

    std::vector<std::vector<double>> m_forces; // columns of Br, orthonormal
    std::vector<std::vector<double>> m_rows;   // columns of Cr
    std::vector<Pin> m_pins;
    double m_alpha = 0.0;
    SparsePattern const * m_pattern = nullptr; // of the present factors, and the values and the solver that go with it
    std::vector<double> const * m_values = nullptr;
    SparseSolver * m_solver = nullptr;
    std::vector<double> m_border; // Zb and Zq of the present factors; empty: not solved for yet
};

} // namespace voz::onestep

#endif
