// SheetSystem.h: forces out of balance and their tangent, for a connected piece of the sheet.

#ifndef SHEETSYSTEM_H
#define SHEETSYSTEM_H

#include "onestep/ElementPattern.h"
#include "springback/ShellTriangle.h"
#include "springback/Supports.h"

namespace voz::springback
{

struct SheetPiece
{
    std::vector<geometry::Vec3> position; // of its nodes, as formed
    std::vector<int> nodeOf;              // -> Problem
    std::vector<ShellTriangle> triangles; // with nodes of the piece
    std::vector<int> elementOf;           // -> Problem, per triangle
    Supports supports;
};

struct SheetState
{
    std::vector<Eigen::Vector3d> displacement; // since the forming, m
    std::vector<Eigen::Quaterniond> rotation;  // since the forming
};

SheetState formedState(SheetPiece const & i_piece);

class SheetSystem
{
public:
    explicit SheetSystem(SheetPiece const & i_piece); // which outlives this

    int size() const { return m_pattern.sparse().size; }
    onestep::SparsePattern const & pattern() const { return m_pattern.sparse(); }
    double rotationScale() const { return m_length; } // unknown of a spin over the spin, m

    // Sizes of the corner forces of the stresses: summed over the nodes, moments over the rotation scale. 0: no stress.
    double referenceForce() const { return m_reference; }
    // Sums of the initial forces and moments over their sizes: rounding alone.
    double imbalance() const { return m_imbalance; }

    // Out of balance with this share of the stresses; the tangent's symmetric part where asked for.
    void evaluate(SheetState const & i_state, double i_load, bool i_withTangent);
    std::vector<double> const & residual() const { return m_residual; } // per unknown, N
    std::vector<double> const & tangent() const { return m_tangent; }   // in the order of the pattern
    double pinReaction() const;                                         // the greatest force in a pin, N

    // Moves and turns the nodes; false: a number is not finite. The turns are bounded.
    bool move(std::vector<double> const & i_change, SheetState & io_state) const;

    int nodeOfUnknown(int i_unknown) const;

private:
    void assembleTangent(std::size_t i_triangle, Matrix18 const & i_tangent);
    void weighInitialForces();

    SheetPiece const & m_piece;
    std::vector<int> m_component; // per unknown; filled while m_first is made
    std::vector<int> m_first;     // unknowns of node i: m_first[i] .. m_first[i + 1] - 1
    onestep::ElementPattern m_pattern;
    double m_length = 1.0, m_reference = 0.0, m_imbalance = 0.0;
    std::vector<double> m_nodeForce; // 6 per node, in the frame of its support
    std::vector<double> m_residual, m_tangent;
};

} // namespace voz::springback

#endif
