// OneStep.cpp: the one-step inverse solve.
//
// Check, take apart into pieces, solve each, put the results together. Deformation theory in one step from the flat to
// the final shape: Y. Q. Guo, J. L. Batoz, J. M. Detraux, P. Duroux, Int. J. Numer. Meth. Eng. 30 (1990) 1385; C. H.
// Lee, H. Huh, J. Mater. Process. Technol. 80-81 (1998) 76.

#include "onestep/OneStep.h"

#include "TextOf.h"
#include "multistep/IntermediateShapes.h"
#include "onestep/Partition.h"
#include "onestep/PieceSolver.h"
#include "onestep/PieceTuner.h"
#include "onestep/ProblemCheck.h"

#include <algorithm>
#include <limits>

namespace voz::onestep
{

using geometry::Vec2;

namespace
{

constexpr double kPlainShare = 0.2; // of the progress, where more steps are asked for

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

class Collector
{
public:
    Collector(Problem const & i_problem, Solution & io_solution) : m_problem(i_problem), m_solution(io_solution)
    {
        bool const quads = std::any_of(i_problem.elements.begin(), i_problem.elements.end(),
                                       [](Element const & element) { return element.nodes[3] != -1; });
        m_solution.stride = quads ? 4 : 1;
        std::size_t const points = i_problem.elements.size() * at(m_solution.stride);
        for (auto * const layer : {&m_solution.strains.mid, &m_solution.strains.top, &m_solution.strains.bottom})
            layer->assign(3 * points, 0.0);
        m_solution.equivalentStress.assign(3 * points, 0.0);
        for (auto const & p : i_problem.nodes) // nodes of no piece stay where they are
            m_solution.flat.push_back({p[0], p[1]});
        m_solved.assign(i_problem.nodes.size(), false);
        m_solution.leastDeterminant = std::numeric_limits<double>::infinity();
    }

    void addPiece(PieceSolver & io_solver, Vec2 i_shift)
    {
        addFlat(io_solver, i_shift);
        addPoints(io_solver);
        PieceSummary const summary = summarise(io_solver.system(), io_solver.flat());
        m_solution.punchForce += summary.punchForce;
        m_solution.work += summary.work;
        m_solution.greatestStrain = std::max(m_solution.greatestStrain, summary.greatestStrain);
        m_solution.neckingPoints += summary.neckingPoints;
        if (summary.neckingPoints > 0)
            m_solution.warnings.push_back("necking is expected at element " + std::to_string(summary.neckingElement) +
                                          " (" + std::to_string(summary.neckingPoints) + " points)");
        m_solution.leastDeterminant =
            std::min(m_solution.leastDeterminant, io_solver.system().leastDeterminant(io_solver.flat()));
    }

    // Nodes that only dropped elements hold move as their neighbours do.
    void carryLooseNodes(std::vector<int> const & i_dropped)
    {
        for (bool moved = true; moved;)
        {
            moved = false;
            for (int const e : i_dropped)
                moved = carryAlong(m_problem.elements[at(e)]) || moved;
        }
    }

private:
    void addFlat(PieceSolver const & i_solver, Vec2 i_shift)
    {
        for (std::size_t i = 0; i < i_solver.flat().size(); ++i)
        {
            int const node = i_solver.piece().nodeOf[i];
            if (m_solved[at(node)])
                continue; // a node of two pieces lies with the first
            Vec2 const x = i_solver.flat()[i] + i_shift;
            m_solution.flat[at(node)] = {x.x, x.y};
            m_solved[at(node)] = true;
        }
    }

    void addPoints(PieceSolver & io_solver)
    {
        std::vector<PointResult> const results =
            pointResults(io_solver.system(), io_solver.flat(), m_problem.curvatures);
        Piece const & piece = io_solver.piece();
        for (std::size_t c = 0; c < piece.mesh.cells.size(); ++c)
            for (int place = 0; place < m_solution.stride; ++place)
            {
                PointResult const & result = results[at(piece.points.reported[c][at(place)])];
                std::size_t const row = 3 * (at(piece.elementOf[c]) * at(m_solution.stride) + at(place));
                write(result.mid, row, m_solution.strains.mid);
                write(result.top, row, m_solution.strains.top);
                write(result.bottom, row, m_solution.strains.bottom);
                std::copy(result.stress.begin(), result.stress.end(),
                          m_solution.equivalentStress.begin() + static_cast<std::ptrdiff_t>(row));
            }
    }

    static void write(Strain const & i_strain, std::size_t i_row, std::vector<double> & io_layer)
    {
        io_layer[i_row] = i_strain.e11;
        io_layer[i_row + 1] = i_strain.e22;
        io_layer[i_row + 2] = i_strain.shear;
    }

    bool carryAlong(Element const & i_element)
    {
        Vec2 drift;
        int known = 0, loose = 0;
        for (int const node : i_element.nodes)
        {
            if (node < 0)
                continue;
            if (!m_solved[at(node)])
            {
                ++loose;
                continue;
            }
            ++known;
            drift = drift + Vec2{m_solution.flat[at(node)][0] - m_problem.nodes[at(node)][0],
                                 m_solution.flat[at(node)][1] - m_problem.nodes[at(node)][1]};
        }
        if (known == 0 || loose == 0)
            return false;
        for (int const node : i_element.nodes)
            if (node >= 0 && !m_solved[at(node)])
            {
                m_solution.flat[at(node)][0] = m_problem.nodes[at(node)][0] + drift.x / known;
                m_solution.flat[at(node)][1] = m_problem.nodes[at(node)][1] + drift.y / known;
                m_solved[at(node)] = true;
            }
        return true;
    }

    Problem const & m_problem;
    Solution & m_solution;
    std::vector<bool> m_solved;
};

void noteRun(PieceSolver const & i_solver, Solution & io_solution)
{
    io_solution.newtonSteps = std::max(io_solution.newtonSteps, i_solver.outcome().steps);
    io_solution.startSteps = std::max(io_solution.startSteps, i_solver.startSteps());
    io_solution.fallback = std::max(io_solution.fallback, i_solver.outcome().rung);
    io_solution.lockedEdges += i_solver.lockedEdges();
    io_solution.residual = std::max(io_solution.residual, i_solver.outcome().state.relative);
    io_solution.holdingShare = std::max(io_solution.holdingShare, i_solver.outcome().state.holding);
    io_solution.warnings.insert(io_solution.warnings.end(), i_solver.warnings().begin(), i_solver.warnings().end());
}

void logWarnings(Solution const & i_solution, Monitor const & i_monitor)
{
    for (std::string const & warning : i_solution.warnings)
        i_monitor.log("warning: " + warning);
}

Solution without(Status i_status, std::string i_message, Solution i_solution)
{
    i_solution.status = i_status;
    i_solution.message = std::move(i_message);
    i_solution.flat.clear();
    i_solution.strains = {};
    i_solution.equivalentStress.clear();
    return i_solution;
}

void logCost(PieceSolver & io_solver, Monitor const & i_monitor)
{
    Newton::Cost const & cost = io_solver.newton().cost();
    auto const seconds = [](double value) { return NumberText(value, 3, std::chars_format::fixed); };
    i_monitor.log(TextOf("time: start ", seconds(io_solver.startSeconds()), " s, Newton ", seconds(cost.total),
                         " s (assembly ", seconds(cost.assembly), ", factorisation ", seconds(cost.factorisation),
                         ", solves ", seconds(cost.solves), ")"));
}

// The plain solve, and upon it the further steps of the stroke, which take most of the time.
Status solveInSteps(Problem const & i_problem, Settings const & i_settings, Monitor & io_monitor,
                    PieceSolver & io_solver)
{
    double const from = io_monitor.from(), to = io_monitor.to(), middle = from + kPlainShare * (to - from);
    io_monitor.setRange(from, middle);
    Status const status = io_solver.solve();
    if (status != Status::Converged && status != Status::Accepted)
        return status;
    io_monitor.setRange(middle, to);
    return multistep::formInSteps(i_problem, i_settings, io_monitor, io_solver);
}

} // namespace

Solution Solve(Problem const & i_problem, Settings const & i_settings, Progress const & i_progress)
{
    return SolveTuned(i_problem, i_settings, i_progress, nullptr);
}

Solution SolveTuned(Problem const & i_problem, Settings const & i_settings, Progress const & i_progress,
                    PieceTuner * io_pTuner)
{
    Solution solution;
    if (std::string refusal = checkProblem(i_problem, i_settings); !refusal.empty())
        return without(Status::Refused, std::move(refusal), std::move(solution));
    Partition parts = partition(i_problem);
    if (io_pTuner && parts.refusal.empty())
        io_pTuner->arrange(parts);
    solution.warnings = parts.warnings;
    Monitor monitor(i_progress);
    if (!parts.refusal.empty())
    {
        logWarnings(solution, monitor);
        return without(Status::Refused, parts.refusal, std::move(solution));
    }
    Collector collector(i_problem, solution);
    solution.status = Status::Converged;
    double done = 0.0, all = 0.0;
    for (Piece const & piece : parts.pieces)
        all += static_cast<double>(piece.mesh.cells.size());
    for (std::size_t i = 0; i < parts.pieces.size(); ++i)
    {
        double const share = 100.0 * static_cast<double>(parts.pieces[i].mesh.cells.size()) / all;
        monitor.setRange(done, done + share);
        done += share;
        if (io_pTuner)
            io_pTuner->prepare(parts.pieces[i], parts.shift[i]);
        PieceSolver solver(i_problem, i_settings, parts.pieces[i], monitor);
        bool const inSteps = i_settings.steps > 1 && !io_pTuner;
        Status const status = inSteps ? solveInSteps(i_problem, i_settings, monitor, solver) : solver.solve(io_pTuner);
        noteRun(solver, solution);
        if (status != Status::Converged && status != Status::Accepted)
        {
            logWarnings(solution, monitor);
            std::string const reason = status == Status::Stopped ? "stopped on request" : solver.message();
            return without(status, reason, std::move(solution));
        }
        logCost(solver, monitor);
        if (status == Status::Accepted)
            solution.status = Status::Accepted;
        collector.addPiece(solver, parts.shift[i]);
        if (!solver.piece().symmetry.empty())
            monitor.log("planes of symmetry: punch force and work are those of the piece as given, not of the whole");
    }
    collector.carryLooseNodes(parts.dropped);
    logWarnings(solution, monitor);
    return solution;
}

} // namespace voz::onestep
