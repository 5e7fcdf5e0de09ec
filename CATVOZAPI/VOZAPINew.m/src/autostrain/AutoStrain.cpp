// AutoStrain.cpp: a tuner that changes the restraint between solves; strains at nodes and their slopes.
//
// With R(X, s) = P (F(X) - Fext(s)) = 0 a level s moves the flat by dX/ds = J^-1 P dFext/ds, for which the last
// factorisation serves, and the strain of a node follows through NodeStrain.

#include "autostrain/AutoStrain.h"

#include "TextOf.h"
#include "autostrain/NodeStrain.h"
#include "autostrain/RestraintEdges.h"
#include "onestep/PieceSolver.h"
#include "onestep/PieceTuner.h"

#include <algorithm>
#include <cmath>

namespace voz::autostrain
{

using geometry::IntegrationPoint;
using geometry::Vec2;
using geometry::Vec3;
using onestep::HolderEdge;
using onestep::inverseGradient;
using onestep::Piece;
using onestep::PieceSolver;
using onestep::Problem;
using onestep::Progress;
using onestep::Solution;
using onestep::Status;

namespace
{

constexpr double kTearing = 1.0;    // log thinning
constexpr double kFirstShare = 0.4; // of the progress: the solve at the first level
constexpr double kRoundShare = 0.3; // of what is then left: each round

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// What a level does to a piece that is in equilibrium.
class Response
{
public:
    // i_shares: of the levels in each of the piece's holders; i_level: the one that acts now.
    Response(PieceSolver & io_solver, std::vector<Pair> const & i_shares, Pair i_level,
             std::vector<int> const & i_nodes)
        : m_solver(io_solver), m_level(i_level), m_base(io_solver.system().constantForces())
    {
        Piece const & piece = io_solver.piece();
        for (int const node : i_nodes)
            m_strains.emplace_back(piece, node);
        for (std::size_t j = 0; j < i_nodes.size(); ++j)
        {
            std::vector<HolderEdge> edges = piece.holders;
            for (std::size_t e = 0; e < edges.size(); ++e)
                edges[e].force = i_shares[e][j];
            m_unit[j].resize(m_base.size());
            onestep::addHolderForces(piece, edges, m_unit[j]);
        }
        for (std::size_t j = 0; j < i_nodes.size(); ++j)
            for (std::size_t i = 0; i < m_base.size(); ++i)
                m_base[i] = m_base[i] - i_level[j] * m_unit[j][i];
    }

    // Solves for a level, from a flat. False: no equilibrium; nothing has changed.
    bool apply(Pair i_level, std::vector<Vec2> i_from)
    {
        std::vector<Vec3> forces = m_base;
        for (std::size_t j = 0; j < m_strains.size(); ++j)
            for (std::size_t i = 0; i < forces.size(); ++i)
                forces[i] = forces[i] + i_level[j] * m_unit[j][i];
        if (!m_solver.resolve(std::move(forces), std::move(i_from)))
            return false;
        m_level = i_level;
        return true;
    }

    Sample measure()
    {
        Sample sample;
        sample.level = m_level;
        for (std::size_t i = 0; i < m_strains.size(); ++i)
            sample.value[i] = m_strains[i].value(m_solver.flat());
        for (IntegrationPoint const & point : m_solver.piece().points.points)
        {
            onestep::PointStrain const strain = onestep::evaluateStrain(inverseGradient(point, m_solver.flat()));
            sample.torn = sample.torn || strain.h1 + strain.h2 > kTearing;
        }
        sample.hasSlope = true;
        for (std::size_t j = 0; j < m_strains.size(); ++j)
        {
            std::vector<Vec2> motion;
            sample.hasSlope = sample.hasSlope && findMotion(m_unit[j], motion);
            for (std::size_t i = 0; i < m_strains.size() && sample.hasSlope; ++i)
                sample.slope[i][j] = m_strains[i].slope(m_solver.flat(), motion);
        }
        return sample;
    }

private:
    bool findMotion(std::vector<Vec3> const & i_force, std::vector<Vec2> & o_motion)
    {
        onestep::Freedoms const & freedoms = m_solver.system().freedoms();
        std::vector<double> right(at(freedoms.size)), step;
        for (std::size_t i = 0; i < i_force.size(); ++i)
            for (int e = freedoms.first[i]; e < freedoms.first[i + 1]; ++e)
                right[at(e)] = dot(freedoms.equation[at(e)], i_force[i]);
        if (!m_solver.newton().solveTangent(right, step))
            return false;
        m_solver.system().move(step, 1.0, std::vector<Vec2>(i_force.size()), o_motion);
        return true;
    }

    PieceSolver & m_solver;
    Pair m_level;
    std::vector<Vec3> m_base; // all that acts but the restraint, per node
    std::array<std::vector<Vec3>, 2> m_unit;
    std::vector<NodeStrain> m_strains;
};

class Tuner : public onestep::PieceTuner
{
public:
    Tuner(Problem const & i_problem, std::vector<Wish> i_wishes, double i_guessFactor)
        : m_problem(i_problem), m_wishes(std::move(i_wishes)), m_guessFactor(i_guessFactor)
    {
    }

    void arrange(onestep::Partition & io_parts) override
    {
        io_parts.refusal = putWishesFirst(io_parts);
        if (!io_parts.refusal.empty())
            return;
        FirstLevel const first = firstLevel(m_problem, io_parts.pieces, m_guessFactor);
        m_level = {first.level, first.level};
        m_scale = first.scale;
        for (Piece & piece : io_parts.pieces)
            piece.holders = restraintEdges(m_problem, piece);
        if (io_parts.pieces.front().holders.empty())
            io_parts.refusal = TextOf("the sheet of node ", m_wishes.front().node,
                                      ", at which a strain is wanted, has no edge to restrain; expected one or more");
    }

    void prepare(Piece & io_piece, Vec2 i_shift) override
    {
        m_shift = i_shift;
        for (HolderEdge & edge : io_piece.holders)
        {
            Pair const share = sharesOf(io_piece, edge);
            edge.force = share[0] * m_level[0] + share[1] * m_level[1];
        }
    }

    void tune(PieceSolver & io_solver) override
    {
        if (m_search)
            return; // the pieces that follow take the levels as they are
        Piece const & piece = io_solver.piece();
        std::vector<int> nodes;
        Pair wanted{};
        for (Wish const & wish : m_wishes)
        {
            wanted[nodes.size()] = wish.strain;
            nodes.push_back(placeOf(piece, wish.node));
        }
        std::vector<Pair> shares;
        for (HolderEdge const & edge : piece.holders) // those in planes of symmetry are gone by now
            shares.push_back(sharesOf(piece, edge));
        Response response(io_solver, shares, m_level, nodes);
        m_search = std::make_unique<LevelSearch>(static_cast<int>(nodes.size()), wanted, m_scale);
        search(io_solver, response);
        m_level = m_search->best().level;
        m_done = 1.0;
        io_solver.monitor().report(1.0);
    }

    // The share of the search in the progress that is done.
    double done() const { return m_done; }
    LevelSearch const * search() const { return m_search.get(); } // null: the part was not solved at all

private:
    void search(PieceSolver & io_solver, Response & io_response)
    {
        Sample sample = io_response.measure();
        std::vector<Vec2> best = io_solver.flat();
        tell(io_solver, sample);
        bool goesOn = m_search->accept(sample);
        while (goesOn && !io_solver.monitor().stopped())
        {
            m_done += kRoundShare * (1.0 - m_done);
            if (!io_response.apply(m_search->nextLevel(), io_solver.flat()))
            {
                io_solver.monitor().log("auto strain: no equilibrium at this restraint");
                goesOn = m_search->reject();
                continue;
            }
            sample = io_response.measure();
            tell(io_solver, sample);
            goesOn = m_search->accept(sample);
            if (m_search->best().level == sample.level)
                best = io_solver.flat();
        }
        if (m_search->best().level != sample.level && !io_solver.monitor().stopped())
            io_response.apply(m_search->best().level, std::move(best)); // in equilibrium already
    }

    void tell(PieceSolver & io_solver, Sample const & i_sample) const
    {
        std::string line = TextOf("auto strain, round ", m_search->rounds(), ":");
        for (std::size_t i = 0; i < m_wishes.size(); ++i)
            line += TextOf(i == 0 ? " " : "; ", "level ", NumberText(i_sample.level[i], 8), " N/m, strain at node ",
                           m_wishes[i].node, " ", NumberText(i_sample.value[i], 8), " (wanted ",
                           NumberText(m_wishes[i].strain, 8), ")");
        io_solver.monitor().log(line);
    }

    static int placeOf(Piece const & i_piece, int i_node) // -1: not in the piece
    {
        auto const place = std::lower_bound(i_piece.nodeOf.begin(), i_piece.nodeOf.end(), i_node);
        return place != i_piece.nodeOf.end() && *place == i_node ? static_cast<int>(place - i_piece.nodeOf.begin())
                                                                 : -1;
    }

    // Empty, or why the wishes cannot be met.
    std::string putWishesFirst(onestep::Partition & io_parts) const
    {
        for (std::size_t p = 0; p < io_parts.pieces.size(); ++p)
        {
            auto const holds = [&](Wish const & wish) { return placeOf(io_parts.pieces[p], wish.node) >= 0; };
            if (!std::all_of(m_wishes.begin(), m_wishes.end(), holds))
                continue;
            if (p > 0)
            {
                std::swap(io_parts.pieces[0], io_parts.pieces[p]);
                std::swap(io_parts.shift[0], io_parts.shift[p]);
            }
            return {};
        }
        for (Wish const & wish : m_wishes)
            if (std::none_of(io_parts.pieces.begin(), io_parts.pieces.end(),
                             [&](Piece const & piece) { return placeOf(piece, wish.node) >= 0; }))
                return TextOf("node ", wish.node, ", at which a strain is wanted, belongs to no element with an area");
        return TextOf("the nodes ", m_wishes.front().node, " and ", m_wishes.back().node,
                      ", at which strains are wanted, lie on sheets that do not hang together; expected one sheet");
    }

    Pair sharesOf(Piece const & i_piece, HolderEdge const & i_edge) const
    {
        if (m_wishes.size() == 1)
            return {1.0, 0.0};
        std::array<Vec2, 2> places;
        for (std::size_t i = 0; i < 2; ++i)
        {
            auto const & x = m_problem.nodes[at(m_wishes[i].node)];
            places[i] = Vec2{x[0], x[1]} - m_shift;
        }
        return levelShares(i_piece, i_edge, places);
    }

    Problem const & m_problem;
    std::vector<Wish> m_wishes; // one or two
    double m_guessFactor;
    Pair m_level{};
    double m_scale = 0.0;
    Vec2 m_shift; // of the piece at hand
    std::unique_ptr<LevelSearch> m_search;
    double m_done = 0.0;
};

Reached reachedBy(LevelSearch const & i_search, Task const & i_task)
{
    Reached reached;
    reached.searched = true;
    reached.met = i_search.met();
    reached.reason = i_search.reason();
    reached.rounds = i_search.rounds();
    std::size_t next = 0;
    if (i_task.target.node >= 0)
    {
        reached.targetLevel = i_search.best().level[next];
        reached.targetStrain = i_search.best().value[next++];
    }
    if (i_task.reference.node >= 0)
    {
        reached.referenceLevel = i_search.best().level[next];
        reached.referenceStrain = i_search.best().value[next];
    }
    return reached;
}

std::string closingLine(Reached const & i_reached, Task const & i_task)
{
    if (!i_reached.searched)
        return "auto strain: not met, " + i_reached.reason;
    std::string line = i_reached.met ? "auto strain: met" : "auto strain: not met, " + i_reached.reason + "; it stands";
    line += TextOf(" after ", i_reached.rounds, " rounds at");
    auto const add = [&](char const * i_strWhich, Wish const & i_wish, double i_level, double i_strain)
    {
        if (i_wish.node >= 0)
            line += TextOf(" ", NumberText(i_level, 8), " N/m for the ", i_strWhich, " node ", i_wish.node, " (strain ",
                           NumberText(i_strain, 8), ", wanted ", NumberText(i_wish.strain, 8), ")");
    };
    add("target", i_task.target, i_reached.targetLevel, i_reached.targetStrain);
    add("reference", i_task.reference, i_reached.referenceLevel, i_reached.referenceStrain);
    return line;
}

} // namespace

Solution solve(Problem const & i_problem, onestep::Settings const & i_settings, Task const & i_task,
               Progress const & i_progress, Reached & o_reached)
{
    o_reached = {};
    std::vector<Wish> wishes;
    for (Wish const & wish : {i_task.target, i_task.reference})
        if (wish.node >= 0)
            wishes.push_back(wish);
    if (wishes.empty())
    {
        o_reached.met = true;
        return onestep::Solve(i_problem, i_settings, i_progress);
    }
    Tuner tuner(i_problem, wishes, i_task.guessFactor);
    Progress progress = i_progress;
    if (i_progress.report)
        progress.report = [&](double percent)
        { return i_progress.report(kFirstShare * percent + (1.0 - kFirstShare) * 100.0 * tuner.done()); };
    Solution solution = onestep::SolveTuned(i_problem, i_settings, progress, &tuner);
    if (solution.status != Status::Converged && solution.status != Status::Accepted)
        return solution;
    if (tuner.search())
        o_reached = reachedBy(*tuner.search(), i_task);
    else
        o_reached.reason = "the first restraint led only near equilibrium, and no other was tried";
    std::string const line = closingLine(o_reached, i_task);
    if (i_progress.log)
        i_progress.log(line);
    if (!o_reached.met)
        solution.warnings.push_back(line);
    return solution;
}

} // namespace voz::autostrain
