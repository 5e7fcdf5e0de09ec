// Newton.cpp: step bounds, merit and stop.
//
// A step may change no point's shape by more than a half; it is halved until the residual falls and no point comes near
// to folding. The reference force is that of all element corners together; where a part carries no force (a developable
// one) it is a millionth of the yield force over the part's size, or what rounding makes of no force.

#include "onestep/Newton.h"
#include "TextOf.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace voz::onestep
{

using geometry::IntegrationPoint;
using geometry::Mat2;
using geometry::Vec2;

namespace
{

constexpr double kShapeChange = 0.5; // greatest entry of dG G^-1 in one step
constexpr double kDecrease = 0.1;
constexpr double kFoldShare = 0.02; // det G that a step must leave, where the flat is not folded worse already
constexpr int kHalvings = 13;
constexpr double kCreeping = 0.99; // of the residual: a step that leaves more than this has led nowhere
constexpr int kCreepingSteps = 3;  // in a row, after which a run gives up for the next rung

class Stopwatch // adds the time of its life to a sum
{
public:
    explicit Stopwatch(double & io_sum) : m_sum(io_sum) {}
    ~Stopwatch() { m_sum += std::chrono::duration<double>(std::chrono::steady_clock::now() - m_begin).count(); }
    Stopwatch(Stopwatch const &) = delete;
    Stopwatch & operator=(Stopwatch const &) = delete;

private:
    double & m_sum;
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

double progressShare(double i_relative)
{
    constexpr double kAfterStart = 0.05;
    return kAfterStart + (1.0 - kAfterStart) * std::clamp(-std::log10(std::max(i_relative, 1.0e-8)) / 8.0, 0.0, 1.0);
}

std::string iterationLine(int i_step, NewtonState const & i_state, double i_leastDeterminant)
{
    return TextOf("step ", i_step < 10 ? " " : "", i_step, "   residual ",
                  NumberText(i_state.relative, 3, std::chars_format::scientific), "   holding ",
                  NumberText(i_state.holding, 1, std::chars_format::scientific), "   least det G ",
                  NumberText(i_leastDeterminant, 4, std::chars_format::fixed));
}

} // namespace

Newton::Newton(MembraneSystem & i_system, RigidHolding & i_holding, double i_tolerance)
    : m_system(i_system), m_holding(i_holding), m_tolerance(i_tolerance),
      m_solver(i_system.pattern().sparse(), SparseSolver::Kind::Unsymmetric)
{
}

NewtonState Newton::measure(std::span<Vec2 const> i_flat)
{
    MembraneSystem::Measure const measure = m_system.residual(i_flat, m_residual);
    NewtonState state;
    double const held = m_holding.removeHeldPart(m_residual);
    double squares = 0.0, greatest = -1.0;
    for (std::size_t e = 0; e < m_residual.size(); ++e)
    {
        squares += m_residual[e] * m_residual[e];
        if (state.worstUnknown < 0 || std::abs(m_residual[e]) > greatest) // a place even where nothing is a number
        {
            greatest = std::abs(m_residual[e]);
            state.worstUnknown = static_cast<int>(e);
        }
    }
    state.norm = std::sqrt(squares);
    state.reference = std::max({measure.forceScale, m_system.forceFloor(), measure.rounding / m_tolerance});
    state.relative = state.norm / state.reference;
    state.holding = held / state.reference;
    return state;
}

bool Newton::findStep(std::span<Vec2 const> i_flat)
{
    {
        Stopwatch const watch(m_cost.assembly);
        m_system.jacobian(i_flat, m_values);
    }
    {
        Stopwatch const watch(m_cost.factorisation);
        if (!m_holding.factorise(m_system.pattern(), m_values, m_solver))
            return false;
    }
    for (double & r : m_residual)
        r = -r;
    return solveTangent(m_residual, m_step);
}

bool Newton::solveTangent(std::vector<double> const & i_right, std::vector<double> & o_step)
{
    Stopwatch const watch(m_cost.solves);
    return m_holding.solve(i_right, m_solver, o_step);
}

double Newton::greatestFactor(std::span<Vec2 const> i_flat) const
{
    std::vector<Vec2> const origin(i_flat.size());
    std::vector<Vec2> step;
    m_system.move(m_step, 1.0, origin, step);
    double greatest = 0.0;
    for (IntegrationPoint const & point : m_system.piece().points.points)
    {
        Mat2 const g = inverseGradient(point, i_flat), d = inverseGradient(point, step);
        double const j = det(g);
        Mat2 const change = d * Mat2{g.m22 / j, -g.m12 / j, -g.m21 / j, g.m11 / j};
        greatest = std::max(
            {greatest, std::abs(change.m11), std::abs(change.m12), std::abs(change.m21), std::abs(change.m22)});
    }
    return greatest > kShapeChange ? kShapeChange / greatest : 1.0;
}

bool Newton::search(NewtonState const & i_now, std::vector<Vec2> & io_flat, NewtonState & o_next)
{
    double const least = kFoldShare * std::min(1.0, 10.0 * m_system.leastDeterminant(io_flat));
    double factor = greatestFactor(io_flat);
    for (int halving = 0; halving <= kHalvings; ++halving, factor *= 0.5)
    {
        m_system.move(m_step, factor, io_flat, m_trial);
        if (!(m_system.leastDeterminant(m_trial) > least))
            continue;
        o_next = measure(m_trial);
        if (o_next.norm <= (1.0 - kDecrease * factor) * i_now.norm || o_next.relative <= m_tolerance)
        {
            io_flat.swap(m_trial);
            return true;
        }
    }
    return false;
}

Newton::Outcome Newton::run(double i_tolerance, int i_maxSteps, Monitor & io_monitor, std::vector<Vec2> & io_flat)
{
    Stopwatch const watch(m_cost.total);
    Outcome outcome;
    outcome.state = measure(io_flat);
    int creeping = 0;
    while (true)
    {
        io_monitor.log(iterationLine(outcome.steps, outcome.state, m_system.leastDeterminant(io_flat)));
        outcome.passed = outcome.state.relative <= i_tolerance;
        bool const ends = outcome.passed || outcome.steps == i_maxSteps || creeping == kCreepingSteps;
        if (io_monitor.report(progressShare(outcome.state.relative)) || ends)
            return outcome;
        NewtonState next;
        if (!findStep(io_flat) || !search(outcome.state, io_flat, next))
        {
            outcome.state = measure(io_flat);
            return outcome;
        }
        creeping = next.norm > kCreeping * outcome.state.norm ? creeping + 1 : 0;
        outcome.state = next;
        ++outcome.steps;
    }
}

} // namespace voz::onestep
