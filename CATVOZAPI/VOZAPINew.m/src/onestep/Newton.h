// Newton.h: equilibrium by Newton's method with bounded steps.
//
// The factorisation of the last step stays available: derivatives of the flat by loads come at the price of a solve.

#ifndef NEWTON_H
#define NEWTON_H

#include "onestep/MembraneSystem.h"
#include "onestep/Monitor.h"
#include "onestep/RigidMotion.h"

namespace voz::onestep
{

struct NewtonState // of a flat
{
    double relative = 0.0;  // |R less its held part| over the reference force
    double reference = 0.0; // N
    double norm = 0.0;      // |R less its held part|, N
    double holding = 0.0;   // |lambda| over the reference force
    int worstUnknown = -1;  // where the residual is greatest
};

class Newton
{
public:
    // All outlive this. i_tolerance: the final one, at which rounding errors must count as no force.
    Newton(MembraneSystem & i_system, RigidHolding & i_holding, double i_tolerance);

    struct Outcome
    {
        NewtonState state;
        int steps = 0;
        bool passed = false;
    };
    // Steps until the relative residual is at most i_tolerance. io_flat ends at the best state.
    Outcome run(double i_tolerance, int i_maxSteps, Monitor & io_monitor, std::vector<geometry::Vec2> & io_flat);

    NewtonState measure(std::span<geometry::Vec2 const> i_flat);

    // J^-1 of a right side (per equation) with the factorisation at hand; false before any, or where it fails.
    bool solveTangent(std::vector<double> const & i_right, std::vector<double> & o_step);

    // Time spent, s: whole runs, and in them assembly, numeric factorisation and solves.
    struct Cost
    {
        double total = 0.0, assembly = 0.0, factorisation = 0.0, solves = 0.0;
    };
    Cost const & cost() const { return m_cost; }

private:
    bool findStep(std::span<geometry::Vec2 const> i_flat);
    double greatestFactor(std::span<geometry::Vec2 const> i_flat) const;
    bool search(NewtonState const & i_now, std::vector<geometry::Vec2> & io_flat, NewtonState & o_next);

    MembraneSystem & m_system;
    RigidHolding & m_holding;
    double m_tolerance;
    SparseSolver m_solver;
    std::vector<double> m_residual, m_values, m_step;
    std::vector<geometry::Vec2> m_trial;
    Cost m_cost;
};

} // namespace voz::onestep

#endif
