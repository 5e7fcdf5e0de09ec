// PieceSolver.cpp: the order of work on a piece.

#include "onestep/PieceSolver.h"

#include "TextOf.h"
#include "onestep/PieceTuner.h"
#include "onestep/Start.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace voz::onestep
{

using geometry::Vec2;

namespace
{

constexpr double kAcceptable = 1.0e-4; // residual at which results are still given, with a warning
constexpr double kPureShift = 1.0e-6;  // of a motion: its turning part
constexpr double kUnbalanced = 0.05;   // share of holding forces that is no rounding and no asymmetry of a cut any more

// One plane of symmetry leaves the shift along it, which the start has not kept: as placing does, without the rest.
void placeAlongFreeShift(Piece const & i_piece, std::vector<Vec2> & io_flat)
{
    std::vector<RigidMotion> const free = freeRigidMotions(i_piece.holds, io_flat);
    if (free.size() != 1 || std::abs(free[0][2]) > kPureShift)
        return;
    Vec2 const along = unit(Vec2{free[0][0], free[0][1]});
    double gap = 0.0;
    for (std::size_t i = 0; i < io_flat.size(); ++i)
        gap += i_piece.weight[i] / i_piece.area * dot(horizontal(i_piece.mesh.position[i]) - io_flat[i], along);
    for (Vec2 & x : io_flat)
        x = x + gap * along;
}

} // namespace

PieceSolver::PieceSolver(Problem const & i_problem, Settings const & i_settings, Piece & io_piece, Monitor & io_monitor)
    : m_problem(i_problem), m_settings(i_settings), m_piece(io_piece), m_monitor(io_monitor)
{
}

void PieceSolver::buildSystem()
{
    m_frames = buildTangentFrames(m_piece, m_problem.toolFriction);
    m_freedoms = heldFreedoms(m_piece.holds, m_frames.tangent, m_frames.projection);
    m_system = std::make_unique<MembraneSystem>(m_piece, m_freedoms, m_problem.materials,
                                                material::LawOptions{m_settings.kappa, m_settings.theta});
    ConstantForces forces = buildConstantForces(m_piece, m_flat);
    if (forces.beadsSkipped > 0)
        m_warnings.push_back(std::to_string(forces.beadsSkipped) +
                             " draw-bead segments without valid coordinates were skipped");
    m_system->setConstantForces(std::move(forces.force));
    m_holding = std::make_unique<RigidHolding>(m_piece, m_freedoms, m_flat);
    m_newton = std::make_unique<Newton>(*m_system, *m_holding, m_settings.tolerance);
}

Status PieceSolver::solve(PieceTuner * io_pTuner)
{
    auto const begin = std::chrono::steady_clock::now();
    m_lockedEdges = applyLocks(m_problem.materials, m_piece);
    if (m_lockedEdges > 0)
        m_monitor.log(std::to_string(m_lockedEdges) + " holder edges are locked: no draw-in");
    Start start = findStart(m_monitor, m_piece);
    m_startSteps = start.steps;
    m_startSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    if (m_monitor.stopped())
        return Status::Stopped;
    if (start.flat.empty())
    {
        m_message = start.reason;
        return Status::Failed;
    }
    m_flat = std::move(start.flat);
    m_monitor.log("start found in " + std::to_string(m_startSteps) + " steps");
    buildSystem();
    m_outcome = climbLadder(m_settings, *m_newton, *m_system, m_monitor, m_flat);
    if (io_pTuner && m_outcome.converged && !m_monitor.stopped())
    {
        io_pTuner->tune(*this);
        m_outcome.stopped = m_monitor.stopped();
    }
    place();
    return judge();
}

Status PieceSolver::solveFrom(std::vector<Vec2> i_flat, std::vector<PointHistory> i_history)
{
    m_flat = std::move(i_flat);
    m_warnings.clear();
    buildSystem();
    m_system->setHistory(std::move(i_history));
    m_outcome = climbLadder(m_settings, *m_newton, *m_system, m_monitor, m_flat);
    return judge();
}

void PieceSolver::place()
{
    bool const pads = std::any_of(m_piece.padShear.begin(), m_piece.padShear.end(), [](double s) { return s != 0.0; });
    if (m_holding->count() == 3 && !pads)
        placeOverPart(m_piece, m_flat);
    else if (!pads)
        placeAlongFreeShift(m_piece, m_flat);
}

bool PieceSolver::resolve(std::vector<geometry::Vec3> i_forces, std::vector<geometry::Vec2> i_from)
{
    std::vector<geometry::Vec3> forces = m_system->constantForces();
    m_flat.swap(i_from);
    m_system->setConstantForces(std::move(i_forces));
    Newton::Outcome const outcome = m_newton->run(m_settings.tolerance, m_settings.maxSteps, m_monitor, m_flat);
    m_outcome.steps += outcome.steps;
    m_outcome.stopped = m_monitor.stopped();
    if (outcome.passed && !m_outcome.stopped)
    {
        m_outcome.state = outcome.state;
        return true;
    }
    m_system->setConstantForces(std::move(forces));
    m_flat.swap(i_from);
    return false;
}

Status PieceSolver::judge()
{
    double const relative = m_outcome.state.relative;
    if (m_outcome.stopped)
        return Status::Stopped;
    if (m_outcome.state.holding > kUnbalanced)
        m_warnings.push_back("the outer actions do not balance: holding forces take " +
                             NumberText(100.0 * m_outcome.state.holding, 0, std::chars_format::fixed) +
                             " % of the reference force");
    if (m_outcome.converged)
        return Status::Converged;
    if (relative <= kAcceptable)
    {
        m_warnings.push_back("equilibrium was reached to " + NumberText(relative, 1, std::chars_format::scientific) +
                             " only");
        return Status::Accepted;
    }
    auto const past = std::upper_bound(m_freedoms.first.begin(), m_freedoms.first.end(), m_outcome.state.worstUnknown);
    int const node = static_cast<int>(past - m_freedoms.first.begin()) - 1;
    int element = -1;
    for (std::size_t c = 0; c < m_piece.mesh.cells.size() && element < 0; ++c)
    {
        auto const & corners = m_piece.mesh.cells[c].node;
        if (std::find(corners.begin(), corners.end(), node) != corners.end())
            element = m_piece.elementOf[c];
    }
    m_message = "no equilibrium was found (residual " + NumberText(relative, 1, std::chars_format::scientific) +
                "); the largest force out of balance is at node " +
                std::to_string(m_piece.nodeOf[static_cast<std::size_t>(node)]) + " of element " +
                std::to_string(element);
    if (PieceSummary const summary = summarise(*m_system, m_flat); summary.neckingPoints > 0)
        m_message +=
            "; the sheet would tear: it thins beyond necking at element " + std::to_string(summary.neckingElement);
    return Status::Failed;
}

} // namespace voz::onestep
