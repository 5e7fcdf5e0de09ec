// MembraneSystem.h: residual and Jacobian of the tangential equilibrium.
//
//     R_e = V_e . (F_i - Fext_i),   F_i = sum over points of [e1 e2] f_k,   f_k = A R diag(n_1, n_2) dN'_k
//
// One equation per unknown; V_e is the row of the projection that Freedoms keeps. The Jacobian is exact and unsymmetric
// (thickness in the force, projection). Holds references to the piece and the freedoms, which must outlive it.

#ifndef MEMBRANESYSTEM_H
#define MEMBRANESYSTEM_H

#include "material/SteppedLaw.h"
#include "onestep/ElementPattern.h"
#include "onestep/Kinematics.h"
#include "onestep/OuterActions.h"

namespace voz::onestep
{

// The strain tensor of a point in its frame.
material::PlaneTensor strainTensor(PointStrain const & i_strain);

// What earlier steps of the stroke have made of a point's material (multistep/). `stretch` takes a vector of the flat
// to the same one in the sheet before this step; the law's start stress is in the point's frame.
struct PointHistory
{
    geometry::Mat2 stretch;
    material::StepHistory law;
};

class MembraneSystem
{
public:
    MembraneSystem(Piece const & i_piece, Freedoms const & i_freedoms, std::vector<MaterialLaw> const & i_materials,
                   material::LawOptions const & i_options);

    // Another law or another level of the outer actions, for the fallbacks.
    void setLaw(material::LawOptions const & i_options);
    void setConstantForces(std::vector<geometry::Vec3> i_forces) { m_constant = std::move(i_forces); }
    void setLoadFactor(double i_factor) { m_loadFactor = i_factor; }
    std::vector<geometry::Vec3> const & constantForces() const { return m_constant; }

    // One per integration point; empty: the sheet comes flat and unstrained, in one step.
    void setHistory(std::vector<PointHistory> i_history) { m_history = std::move(i_history); }
    bool hasHistory() const { return !m_history.empty(); }

    ElementPattern const & pattern() const { return m_pattern; }
    Piece const & piece() const { return m_piece; }
    Freedoms const & freedoms() const { return m_freedoms; }
    material::MembraneLaw const & law(int i_cell) const
    {
        return m_laws[static_cast<std::size_t>(m_piece.material[static_cast<std::size_t>(i_cell)])];
    }

    // Residual per equation. Needs det G > 0 at all points.
    struct Measure
    {
        double forceScale; // root of the sum of squares of the corner forces, N
        double rounding;   // what the rounding of the flat's coordinates makes of no force, N
    };
    Measure residual(std::span<geometry::Vec2 const> i_flat, std::vector<double> & o_residual) const;

    // Values of the Jacobian in the order of the pattern. i_secantShare: see MembraneLaw; 0: the exact one.
    void jacobian(std::span<geometry::Vec2 const> i_flat, std::vector<double> & o_values,
                  double i_secantShare = 0.0) const;

    // F_i - Fext_i per node, in space.
    std::vector<geometry::Vec3> nodeForces(std::span<geometry::Vec2 const> i_flat) const;

    double leastDeterminant(std::span<geometry::Vec2 const> i_flat) const;

    // The strain that a point has hardened with, in this step and those before it.
    double hardeningStrain(std::size_t i_point, std::span<geometry::Vec2 const> i_flat) const;

    // X + factor * column-wise step.
    void move(std::span<double const> i_step, double i_factor, std::span<geometry::Vec2 const> i_from,
              std::vector<geometry::Vec2> & o_to) const;

    // Below this residual (N) a part has no force at all: 1e-6 of the yield force over the part's size.
    double forceFloor() const { return m_forceFloor; }

private:
    struct PointRows // of the equations of a point's corners, in its frame
    {
        geometry::Vec2 row[4][2];
    };
    // Forces of a point on its corners, in its frame; returns the stiffness t_f S k2, N/m.
    double pointForces(std::size_t i_point, std::span<geometry::Vec2 const> i_flat, geometry::Vec2 * o_force) const;
    void addPointJacobian(std::size_t i_point, std::span<geometry::Vec2 const> i_flat, double i_secantShare,
                          std::vector<double> & io_values) const;
    void addSteppedJacobian(std::size_t i_point, std::span<geometry::Vec2 const> i_flat,
                            std::vector<double> & io_values) const;
    void addPadJacobian(std::span<geometry::Vec2 const> i_flat, std::vector<double> & io_values) const;
    void addPadForces(std::span<geometry::Vec2 const> i_flat, std::vector<geometry::Vec3> & io_outer) const;

    Piece const & m_piece;
    Freedoms const & m_freedoms;
    std::vector<MaterialLaw> const & m_materials;
    ElementPattern m_pattern;
    std::vector<material::MembraneLaw> m_laws; // per material
    std::vector<PointRows> m_rows;             // per point
    std::vector<geometry::Vec3> m_constant;    // outer forces per node
    std::vector<PointHistory> m_history;       // per point, or empty
    PadFriction m_pads;
    double m_loadFactor = 1.0;
    double m_forceFloor = 0.0;
};

} // namespace voz::onestep

#endif
