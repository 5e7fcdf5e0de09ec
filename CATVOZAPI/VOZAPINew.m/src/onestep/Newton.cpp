// Newton.cpp: step bounds, merit and stop.
//
// A step may change no point's shape by more than a half; it is halved until no point comes near to folding and either
// the residual falls or the step that the same factors give from there is the shorter one. The second test is that of
// P. Deuflhard, Newton Methods for Nonlinear Problems, Springer 2004: it does not see the scale of the equations, of
// which those of elastic zones are a thousand times stiffer than those of plastic ones. The reference force is that of
// all element corners together; where a part carries no force (a developable one) it is a millionth of the yield force
// over the part's size, or what rounding makes of no force.

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
constexpr double kDecrease = 0.05;
constexpr double kFoldShare = 0.02; // det G that a step must leave, where the flat is not folded worse already
constexpr int kHalvings = 13;
constexpr double kShortening = 0.25;  // of the correction, times the factor
constexpr double kRepeatDrop = 0.3;   // of the residual and of the step, that a repeated step may leave
constexpr int kRepeats = 5;           // repeated steps that cost as much as a step of its own
constexpr double kSecantDecay = 0.75; // of the share of the secant modulus, per step
constexpr double kLeastSecantShare = 0.2, kSlowSecantShare = 0.5;
constexpr int kSecantSteps = 14;
constexpr double kNearlySolved = 1.0e-3; // relative residual from which on tangents do
constexpr double kCreeping = 0.99;       // of the residual: a short step that leaves more than this has led nowhere
constexpr double kShortFactor = 0.05;
constexpr int kCreepingSteps = 3; // in a row, after which a run gives up for the next rung

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

double norm(std::vector<double> const & i_values)
{
    double squares = 0.0;
    for (double const v : i_values)
        squares += v * v;
    return std::sqrt(squares);
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

// The step from a flat whose residual is at hand.
bool Newton::findStep(std::span<Vec2 const> i_flat, double i_secantShare)
{
    {
        Stopwatch const watch(m_cost.assembly);
        m_system.jacobian(i_flat, m_values, i_secantShare);
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
    return m_holding.solve(i_right, o_step);
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

// The correction: the step from the trial by the factors of this step.
bool Newton::correctionShrinks(double i_factor)
{
    std::vector<double> right(m_residual.size());
    std::transform(m_residual.begin(), m_residual.end(), right.begin(), [](double r) { return -r; });
    m_correctionStands = solveTangent(right, m_correction);
    return m_correctionStands && norm(m_correction) <= (1.0 - kShortening * i_factor) * norm(m_step);
}

bool Newton::accepts(double i_factor, NewtonState const & i_now, NewtonState & o_next)
{
    o_next = measure(m_trial);
    m_correctionStands = false;
    return o_next.norm <= (1.0 - kDecrease * i_factor) * i_now.norm || o_next.relative <= m_tolerance ||
           correctionShrinks(i_factor);
}

// Whether a few steps with the factors at hand, which cost about a fifth of a new matrix each, lead to the end.
bool Newton::paysToRepeat(NewtonState const & i_next) const
{
    double const shrinks = norm(m_correction) / norm(m_step);
    return shrinks < kRepeatDrop && i_next.relative * std::pow(shrinks, kRepeats) <= m_tolerance;
}

bool Newton::search(NewtonState const & i_now, Flat & io_flat, NewtonState & o_next)
{
    double const least = kFoldShare * std::min(1.0, 10.0 * m_system.leastDeterminant(io_flat));
    double factor = greatestFactor(io_flat);
    m_repeats = false;
    for (int halving = 0; halving <= kHalvings; ++halving, factor *= 0.5)
    {
        m_system.move(m_step, factor, io_flat, m_trial);
        if (!(m_system.leastDeterminant(m_trial) > least) || !accepts(factor, i_now, o_next))
            continue;
        io_flat.swap(m_trial);
        m_damped = halving > 0;
        m_factor = factor;
        if (factor == 1.0 && o_next.norm <= kRepeatDrop * i_now.norm)
        {
            if (!m_correctionStands)
                correctionShrinks(factor);
            m_repeats = m_correctionStands && paysToRepeat(o_next);
        }
        return true;
    }
    return false;
}

// A step with the factors of the one before. False: it took too little away, and nothing has changed but the trial.
bool Newton::repeat(NewtonState const & i_now, Flat & io_flat, NewtonState & o_next)
{
    double const least = kFoldShare * std::min(1.0, 10.0 * m_system.leastDeterminant(io_flat));
    m_repeats = false;
    m_step.swap(m_correction);
    m_system.move(m_step, 1.0, io_flat, m_trial);
    std::vector<double> const before = m_residual;
    if (m_system.leastDeterminant(m_trial) > least)
    {
        o_next = measure(m_trial);
        if (o_next.norm <= kRepeatDrop * i_now.norm)
        {
            io_flat.swap(m_trial);
            correctionShrinks(1.0);
            m_repeats = m_correctionStands && paysToRepeat(o_next);
            return true;
        }
    }
    m_residual = before;
    return false;
}

// It falls from step to step; where a step had to be cut after all it rises again, but not in a run that goes on long
// and not to the slow half of its range.
double Newton::nextSecantShare(double i_share, int i_step) const
{
    if (m_damped && i_step < kSecantSteps && i_share < kSlowSecantShare)
        return std::max(i_share, kLeastSecantShare) / kSecantDecay;
    return i_share * kSecantDecay;
}

bool Newton::advance(double i_secantShare, NewtonState const & i_now, Flat & io_flat, NewtonState & o_next)
{
    return findStep(io_flat, i_secantShare) && search(i_now, io_flat, o_next);
}

Newton::Outcome Newton::run(double i_tolerance, int i_maxSteps, Monitor & io_monitor, std::vector<Vec2> & io_flat,
                            From i_from)
{
    Stopwatch const watch(m_cost.total);
    Outcome outcome;
    outcome.state = measure(io_flat);
    m_repeats = false;
    double secantShare = i_from == From::Afar ? 1.0 : 0.0;
    int creeping = 0;
    while (true)
    {
        io_monitor.log(iterationLine(outcome.steps, outcome.state, m_system.leastDeterminant(io_flat)));
        outcome.passed = outcome.state.relative <= i_tolerance;
        bool const ends = outcome.passed || outcome.steps == i_maxSteps || creeping == kCreepingSteps;
        if (io_monitor.report(progressShare(outcome.state.relative)) || ends)
            return outcome;
        NewtonState next;
        if (m_repeats && repeat(outcome.state, io_flat, next))
        {
            outcome.state = next;
            ++outcome.reusedSteps;
            continue;
        }
        if (secantShare < kLeastSecantShare || outcome.state.relative < kNearlySolved)
            secantShare = 0.0;
        bool moved = advance(secantShare, outcome.state, io_flat, next);
        for (double const other : {0.0, 1.0}) // what the one modulus cannot do the other may
        {
            if (moved || i_from == From::Near || secantShare == other)
                continue;
            secantShare = other;
            measure(io_flat);
            moved = advance(secantShare, outcome.state, io_flat, next);
        }
        if (!moved)
        {
            outcome.state = measure(io_flat);
            return outcome;
        }
        bool const creeps = m_factor < kShortFactor && next.norm > kCreeping * outcome.state.norm;
        creeping = creeps ? creeping + 1 : 0;
        outcome.state = next;
        if (i_from == From::Afar)
            secantShare = nextSecantShare(secantShare, outcome.steps);
        ++outcome.steps;
    }
}

} // namespace voz::onestep
