// Springback.cpp: check, build the sheet, take it apart into pieces, unload each, carry the nodes that nothing holds.
//
// Unloading with the stresses of a one-step solve and bending through the thickness: J. L. Batoz, Y. Q. Guo, F.
// Mercier, Eng. Comput. 15 (1998) 864. Triangles that share a node belong to one piece: a common node joins both
// displacements and turns.

#include "springback/Springback.h"

#include "TextOf.h"
#include "springback/FormedSheet.h"
#include "springback/NearestNode.h"
#include "springback/Unloading.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace voz::springback
{

using geometry::Vec3;

namespace
{

constexpr double kShareOfBuilding = 5.0; // percent of the progress
constexpr double kGreatestImbalance = 1e-10;
constexpr double kGreatestReaction = 1.0e-6;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// The piece of each node by the triangles that join them; -1: a node without triangles.
std::vector<int> piecesOfNodes(FormedSheet const & i_sheet, int & o_count)
{
    std::vector<int> parent(i_sheet.position.size());
    std::iota(parent.begin(), parent.end(), 0);
    auto const root = [&](int node)
    {
        while (parent[at(node)] != node)
            node = parent[at(node)] = parent[at(parent[at(node)])];
        return node;
    };
    std::vector<int> piece(i_sheet.position.size(), -1);
    for (ShellTriangle const & triangle : i_sheet.triangles)
        for (int const node : triangle.node)
        {
            int const a = root(triangle.node[0]), b = root(node);
            parent[at(std::max(a, b))] = std::min(a, b);
            piece[at(node)] = 0;
        }
    o_count = 0;
    std::vector<int> number(piece.size(), -1);
    for (int node = 0; node < static_cast<int>(piece.size()); ++node)
        if (piece[at(node)] == 0)
        {
            int & of = number[at(root(node))];
            if (of < 0)
                of = o_count++;
            piece[at(node)] = of;
        }
    return piece;
}

struct Assigned // nodes of the problem in the pieces
{
    std::vector<int> pieceOf, indexOf;
};

std::vector<SheetPiece> takeApart(FormedSheet & io_sheet, Assigned & o_assigned)
{
    int count = 0;
    o_assigned.pieceOf = piecesOfNodes(io_sheet, count);
    o_assigned.indexOf.assign(io_sheet.position.size(), -1);
    std::vector<SheetPiece> pieces(at(count));
    for (int node = 0; node < static_cast<int>(io_sheet.position.size()); ++node)
        if (int const p = o_assigned.pieceOf[at(node)]; p >= 0)
        {
            o_assigned.indexOf[at(node)] = static_cast<int>(pieces[at(p)].nodeOf.size());
            pieces[at(p)].nodeOf.push_back(node);
            pieces[at(p)].position.push_back(io_sheet.position[at(node)]);
        }
    for (std::size_t t = 0; t < io_sheet.triangles.size(); ++t)
    {
        ShellTriangle & triangle = io_sheet.triangles[t];
        SheetPiece & piece = pieces[at(o_assigned.pieceOf[at(triangle.node[0])])];
        for (int & node : triangle.node)
            node = o_assigned.indexOf[at(node)];
        piece.triangles.push_back(triangle);
        piece.elementOf.push_back(io_sheet.elementOf[t]);
    }
    io_sheet.triangles = {};
    return pieces;
}

void support(Problem const & i_problem, Assigned const & i_assigned, std::vector<SheetPiece> & io_pieces)
{
    std::vector<Holds> holds(io_pieces.size());
    auto const place = [&](std::vector<int> const & nodes, std::vector<int> Holds::*list)
    {
        for (int const node : nodes)
            if (node >= 0 && node < static_cast<int>(i_assigned.pieceOf.size()) && i_assigned.pieceOf[at(node)] >= 0)
                (holds[at(i_assigned.pieceOf[at(node)])].*list).push_back(i_assigned.indexOf[at(node)]);
    };
    place(i_problem.fixed, &Holds::fixed);
    place(i_problem.clamped, &Holds::clamped);
    for (geometry::SymmetryNode const & plane : i_problem.symmetry)
        if (int const p = i_assigned.pieceOf[at(plane.node)]; p >= 0)
            holds[at(p)].symmetry.push_back({i_assigned.indexOf[at(plane.node)], plane.direction});
    for (std::size_t p = 0; p < io_pieces.size(); ++p)
        io_pieces[p].supports = supportPiece(io_pieces[p].position, holds[p]);
}

void logPins(SheetPiece const & i_piece, onestep::Monitor const & i_monitor)
{
    if (i_piece.supports.pins.empty())
        return;
    std::string line = TextOf(i_piece.supports.freeMotions, " rigid motions are pinned, at nodes");
    int last = -1;
    for (Pin const & pin : i_piece.supports.pins)
        if (pin.node != last)
        {
            line += TextOf(" ", i_piece.nodeOf[at(pin.node)]);
            last = pin.node;
        }
    i_monitor.log(line);
}

void logCost(UnloadingOutcome const & i_outcome, onestep::Monitor const & i_monitor)
{
    auto const seconds = [](double value) { return NumberText(value, 3, std::chars_format::fixed); };
    UnloadingOutcome::Cost const & cost = i_outcome.cost;
    i_monitor.log(TextOf("time: unloading ", seconds(cost.total), " s (analysis ", seconds(cost.analysis),
                         ", assembly ", seconds(cost.assembly), ", factorisation ", seconds(cost.factorisation), " in ",
                         cost.factorisations, ", solves ", seconds(cost.solves), ")"));
}

void noteOutcome(SheetPiece const & i_piece, SheetSystem const & i_system, UnloadingOutcome const & i_outcome,
                 Solution & io_solution)
{
    io_solution.loadSteps = std::max(io_solution.loadSteps, i_outcome.loadSteps);
    io_solution.newtonSteps = std::max(io_solution.newtonSteps, i_outcome.newtonSteps);
    io_solution.residual = std::max(io_solution.residual, i_outcome.residual);
    io_solution.imbalance = std::max(io_solution.imbalance, i_system.imbalance());
    io_solution.pinReaction = std::max(io_solution.pinReaction, i_outcome.pinReaction);
    if (i_outcome.status == Status::Accepted)
        io_solution.warnings.push_back(TextOf(
            "balance was reached to ", NumberText(i_outcome.residual, 1, std::chars_format::scientific), " only"));
    if (i_system.imbalance() > kGreatestImbalance)
        io_solution.warnings.push_back(TextOf("the initial forces do not balance: ",
                                              NumberText(i_system.imbalance(), 1, std::chars_format::scientific)));
    if (i_outcome.pinReaction > std::max(kGreatestReaction, 10.0 * i_outcome.residual))
        io_solution.warnings.push_back(
            TextOf("the pins carry ", NumberText(i_outcome.pinReaction, 1, std::chars_format::scientific),
                   " of the forces; expected none (the fixed nodes hold the part against itself)"));
    if (i_outcome.status == Status::Failed && i_outcome.worstNode >= 0)
    {
        int element = -1;
        for (std::size_t t = 0; t < i_piece.triangles.size() && element < 0; ++t)
            if (std::ranges::find(i_piece.triangles[t].node, i_outcome.worstNode) != i_piece.triangles[t].node.end())
                element = i_piece.elementOf[t];
        io_solution.message = TextOf("no balance was found beyond ", NumberText(100.0 * i_outcome.load, 3),
                                     " % of the stresses; the largest force out of balance is at node ",
                                     i_piece.nodeOf[at(i_outcome.worstNode)], " of element ", element);
    }
}

// Nodes without elements move as the nearest node that has one.
void carryLooseNodes(Problem const & i_problem, Assigned const & i_assigned, Solution & io_solution)
{
    std::vector<Vec3> position;
    std::vector<int> kept;
    for (int i = 0; i < static_cast<int>(i_problem.formed.size()); ++i)
    {
        auto const & x = i_problem.formed[at(i)];
        position.push_back({x[0], x[1], x[2]});
        if (i_assigned.pieceOf[at(i)] >= 0)
            kept.push_back(i);
    }
    if (kept.size() == position.size())
        return;
    NearestNode const nearest(position, std::move(kept));
    for (int i = 0; i < static_cast<int>(position.size()); ++i)
        if (i_assigned.pieceOf[at(i)] < 0)
        {
            int const leader = nearest.find(position[at(i)]);
            for (std::size_t k = 0; k < 3; ++k)
                io_solution.shape[at(i)][k] += io_solution.shape[at(leader)][k] - i_problem.formed[at(leader)][k];
        }
}

void measureMove(Problem const & i_problem, Solution & io_solution)
{
    for (std::size_t i = 0; i < io_solution.shape.size(); ++i)
    {
        auto const & a = io_solution.shape[i];
        auto const & b = i_problem.formed[i];
        double const move = std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
        if (move > io_solution.greatestMove || io_solution.greatestMoveNode < 0)
        {
            io_solution.greatestMove = move;
            io_solution.greatestMoveNode = static_cast<int>(i);
        }
    }
}

Solution ended(Status i_status, std::string i_message, Solution i_solution, onestep::Monitor const & i_monitor)
{
    for (std::string const & warning : i_solution.warnings)
        i_monitor.log("warning: " + warning);
    i_solution.status = i_status;
    if (!i_message.empty())
        i_solution.message = std::move(i_message);
    bool const shaped = i_status == Status::Converged || i_status == Status::Accepted || i_status == Status::NoForming;
    if (!shaped)
        i_solution.shape.clear();
    return i_solution;
}

// False: the run ends here, with the status of the solution.
bool unloadPiece(SheetPiece const & i_piece, Settings const & i_settings, onestep::Monitor & io_monitor,
                 Solution & io_solution)
{
    logPins(i_piece, io_monitor);
    SheetSystem system(i_piece);
    SheetState state = formedState(i_piece);
    UnloadingOutcome const outcome = unload(system, i_settings, io_monitor, state);
    noteOutcome(i_piece, system, outcome, io_solution);
    logCost(outcome, io_monitor);
    if (outcome.status != Status::Converged)
        io_solution.status = outcome.status;
    if (outcome.status == Status::Failed || outcome.status == Status::Stopped)
        return false;
    for (std::size_t i = 0; i < i_piece.nodeOf.size(); ++i)
    {
        auto & x = io_solution.shape[at(i_piece.nodeOf[i])];
        for (int k = 0; k < 3; ++k)
            x[at(k)] += state.displacement[i](k);
    }
    return true;
}

} // namespace

Solution Solve(Problem const & i_problem, Settings const & i_settings, onestep::Progress const & i_progress)
{
    Solution solution;
    onestep::Monitor monitor(i_progress);
    if (std::string refusal = checkProblem(i_problem, i_settings); !refusal.empty())
        return ended(Status::Refused, std::move(refusal), std::move(solution), monitor);
    solution.shape = i_problem.formed;
    if (isUnformed(i_problem))
        return ended(Status::NoForming,
                     "the flat mesh and the part have the same lengths to 0.1 %: nothing was formed, so the shape is "
                     "the part (displacements in metres beside a mesh in millimetres look like this)",
                     std::move(solution), monitor);
    if (std::string refusal = checkFlatness(i_problem); !refusal.empty())
        return ended(Status::Refused, std::move(refusal), std::move(solution), monitor);
    FormedSheet sheet = buildSheet(i_problem);
    solution.warnings = sheet.warnings;
    if (!sheet.refusal.empty())
        return ended(Status::Refused, sheet.refusal, std::move(solution), monitor);
    Assigned assigned;
    double const all = static_cast<double>(sheet.triangles.size());
    std::vector<SheetPiece> pieces = takeApart(sheet, assigned);
    support(i_problem, assigned, pieces);
    solution.pieces = static_cast<int>(pieces.size());
    solution.status = Status::Converged;
    monitor.setRange(0.0, kShareOfBuilding);
    if (monitor.report(1.0))
        return ended(Status::Stopped, "stopped on request", std::move(solution), monitor);
    double done = kShareOfBuilding;
    for (SheetPiece & piece : pieces)
    {
        double const share = (100.0 - kShareOfBuilding) * static_cast<double>(piece.triangles.size()) / all;
        monitor.setRange(done, done + share);
        done += share;
        if (!unloadPiece(piece, i_settings, monitor, solution))
            return ended(solution.status, solution.status == Status::Stopped ? "stopped on request" : "",
                         std::move(solution), monitor);
        piece = {}; // its memory serves the next
    }
    carryLooseNodes(i_problem, assigned, solution);
    measureMove(i_problem, solution);
    return ended(solution.status, "", std::move(solution), monitor);
}

} // namespace voz::springback
