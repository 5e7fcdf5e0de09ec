// Newton.h: equilibrium by Newton's method with bounded steps.
//
// From afar the first steps mix the secant modulus into the tangent one, ever less of it: between the elastic and the
// plastic part of the curve the stiffness changes by a factor of a thousand, and a tangent step across that knee goes
// far astray, while secant steps (L. M. Kachanov's method) always lead nearer, but slowly.
// Near the solution the factors of one step serve the next ones too, as long as each of these takes most of the
// residual away. The last factorisation stays available: derivatives of the flat by loads come at the price of a solve.

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
        int steps = 0;       // with a matrix of their own
        int reusedSteps = 0; // with the factors of the step before
        bool passed = false;
    };
    enum class From
    {
        Near, // a flat that solves a neighbouring problem: tangents from the first step on
        Afar
    };
    // Steps until the relative residual is at most i_tolerance. io_flat ends at the best state.
    Outcome run(double i_tolerance, int i_maxSteps, Monitor & io_monitor, std::vector<geometry::Vec2> & io_flat,
                From i_from = From::Near);

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
    using Flat = std::vector<geometry::Vec2>;

    bool findStep(std::span<geometry::Vec2 const> i_flat, double i_secantShare);
    double greatestFactor(std::span<geometry::Vec2 const> i_flat) const;
    bool accepts(double i_factor, NewtonState const & i_now, NewtonState & o_next);
    bool correctionShrinks(double i_factor);
    bool paysToRepeat(NewtonState const & i_next) const;
    double nextSecantShare(double i_share, int i_step) const;
    bool search(NewtonState const & i_now, Flat & io_flat, NewtonState & o_next);
    bool advance(double i_secantShare, NewtonState const & i_now, Flat & io_flat, NewtonState & o_next);
    bool repeat(NewtonState const & i_now, Flat & io_flat, NewtonState & o_next);

    MembraneSystem & m_system;
    RigidHolding & m_holding;
    double m_tolerance;
    SparseSolver m_solver;
    std::vector<double> m_residual, m_values, m_step;
    std::vector<double> m_correction; // step from the trial with the factors at hand
    bool m_correctionStands = false;  // m_correction belongs to m_residual
    double m_factor = 1.0;            // of the last step
    bool m_damped = false;            // the last step had to be cut
    bool m_repeats = false;           // m_correction is worth a step
    Flat m_trial;
    Cost m_cost;
};

} // namespace voz::onestep

#endif
