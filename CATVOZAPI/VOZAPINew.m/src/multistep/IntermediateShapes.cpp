// IntermediateShapes.cpp: shapes laid from the formed part towards the flat, then solved in turn.

#include "multistep/IntermediateShapes.h"

#include "TextOf.h"
#include "multistep/FlatMap.h"
#include "multistep/FormedSurface.h"
#include "multistep/StrokeHistory.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::multistep
{

using geometry::IntegrationPoint;
using geometry::Vec2;
using geometry::Vec3;
using onestep::Monitor;
using onestep::Piece;
using onestep::PieceSolver;
using onestep::Problem;
using onestep::Settings;
using onestep::Status;

namespace
{

constexpr double kElasticStrain = 0.002; // ebar up to which a path leaves no trace
constexpr double kShareStep = 0.1;       // of the height, by which shapes are laid one after the other
constexpr int kSlidesPerStep = 1;        // while they are laid
constexpr int kSlides = 3;               // of a shape in a pass
constexpr int kPasses = 8;               // over all shapes and the formed part
constexpr int kHalvings = 6;             // of a slide that folds a cell
constexpr double kShapeAtRest = 3.0e-4;  // apart, in units of the part's size
constexpr double kFlatAtRest = 3.0e-4;   // moved
constexpr double kFlatHardlyMoves = 1.0e-2;
constexpr double kLayingTolerance = 1.0e-3; // of equilibrium, while shapes are laid
constexpr double kShapeTolerance = 1.0e-6;  // on the shapes
constexpr double kProgressShare = 0.1;      // of what is left of the progress, per solve

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

bool solved(Status i_status)
{
    return i_status == Status::Converged || i_status == Status::Accepted;
}

double farthestApart(std::vector<Vec2> const & a, std::vector<Vec2> const & b)
{
    double greatest = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i)
        greatest = std::max(greatest, length(a[i] - b[i]));
    return greatest;
}

std::string millimetres(double i_metres)
{
    return NumberText(1000.0 * i_metres, 4, std::chars_format::fixed) + " mm";
}

class Stroke
{
public:
    Stroke(Problem const & i_problem, Settings const & i_settings, Monitor & io_monitor, PieceSolver & io_final)
        : m_problem(i_problem), m_settings(i_settings), m_monitor(io_monitor), m_final(io_final),
          m_surface(io_final.piece()), m_shape(io_final.piece()), m_flat(io_final.flat()),
          m_size(std::sqrt(io_final.piece().area)), m_done(io_monitor.from()), m_end(io_monitor.to()),
          m_exact(i_settings.tolerance)
    {
        m_settings.tolerance = std::max(m_settings.tolerance, kLayingTolerance);
        for (onestep::MaterialLaw const & law : i_problem.materials)
            m_laws.emplace_back(law, material::LawOptions{i_settings.kappa, i_settings.theta});
        for (int k = 1; k < i_settings.steps; ++k)
            m_shares.push_back(static_cast<double>(k) / i_settings.steps);
        m_places.resize(m_shares.size());
    }

    // False: the stroke in steps did not succeed; message() tells why, unless the run was stopped.
    bool run()
    {
        if (!layShapes())
            return false;
        double moved = 0.0;
        for (int pass = 1; pass <= kPasses; ++pass)
        {
            for (std::size_t k = 0; k < m_places.size(); ++k)
                if (!settle(k))
                    return false;
            if (!solveFormed(moved))
                return false;
            m_monitor.log(TextOf("steps of the stroke, pass ", pass, ": the flat moves by ", millimetres(moved)));
            if (moved <= kFlatAtRest * m_size)
                break;
        }
        if (moved > kFlatHardlyMoves * m_size)
            return fail("the flat does not come to rest");
        if (moved > kFlatAtRest * m_size)
            m_final.warn("stroke in steps: the flat still moves by " + millimetres(moved) + " from pass to pass");
        finish();
        return true;
    }
    std::string const & message() const { return m_message; }

private:
    bool fail(std::string i_message)
    {
        m_message = std::move(i_message);
        return false;
    }

    void nextSolve()
    {
        double const from = m_done;
        m_done += kProgressShare * (m_end - m_done);
        m_monitor.setRange(from, m_done);
    }

    // From the formed part the height falls little by little, and the material follows each time: so that no slide is
    // long, and each begins with a flat that is nearly right. The histories count afterwards.
    bool layShapes()
    {
        double share = 1.0;
        NodePlaces places = m_final.piece().mesh.position;
        for (std::size_t k = m_shares.size(); k-- > 0;)
        {
            double const from = share;
            int const count = static_cast<int>(std::ceil((from - m_shares[k]) / kShareStep - 1.0e-9));
            for (int i = 1; i <= count; ++i)
            {
                double const next = from + (m_shares[k] - from) * i / count;
                for (Vec3 & place : places)
                    place.z *= next / share;
                share = next;
                for (int slide = 0; slide < kSlidesPerStep; ++slide)
                    if (double apart = 0.0; !slideOnce(share, {}, 0.0, places, apart))
                        return false;
            }
            m_places[k] = places;
        }
        m_settings.tolerance = std::max(m_exact, kShapeTolerance);
        return true;
    }

    // Slides the nodes of a shape until its flat is that of the formed part.
    bool settle(std::size_t i_shape)
    {
        std::span<NodePlaces const> const before(m_places.data(), i_shape);
        NodePlaces places = m_places[i_shape];
        double apart = 0.0;
        for (int slide = 0; slide < kSlides; ++slide)
        {
            if (!slideOnce(m_shares[i_shape], before, kShapeAtRest * m_size, places, apart))
                return false;
            if (apart <= kShapeAtRest * m_size)
                break;
        }
        m_places[i_shape] = std::move(places);
        m_monitor.log(TextOf("intermediate shape ", i_shape + 1, ": flats apart by ", millimetres(apart)));
        return true;
    }

    // Equilibrium on a shape, and its nodes moved to where their material lies in the flat that this gives; they stay
    // where that is no farther than i_rest. o_apart: how far it was.
    bool slideOnce(double i_share, std::span<NodePlaces const> i_before, double i_rest, NodePlaces & io_places,
                   double & o_apart)
    {
        m_shape.mesh.position = io_places;
        completePiece(m_shape);
        nextSolve();
        PieceSolver solver(m_problem, m_settings, m_shape, m_monitor);
        Status const status = solver.solveFrom(m_flat, strokeHistory(m_shape, m_laws, m_flat, i_before));
        if (!solved(status))
            return fail(solver.message());
        o_apart = farthestApart(m_flat, solver.flat());
        if (o_apart <= i_rest)
            return true;
        FlatMap const map(m_shape, solver.flat());
        NodePlaces goal;
        goal.reserve(m_flat.size());
        for (Vec2 const x : m_flat)
            goal.push_back(map.position(x));
        return moveTo(goal, i_share, io_places);
    }

    // As far towards the goal as leaves no cell folded over the flat.
    bool moveTo(NodePlaces const & i_goal, double i_share, NodePlaces & io_places)
    {
        double factor = 1.0;
        for (int halving = 0; halving <= kHalvings; ++halving, factor *= 0.5)
        {
            for (std::size_t i = 0; i < i_goal.size(); ++i)
            {
                Vec3 place = io_places[i] + factor * (i_goal[i] - io_places[i]);
                place.z /= i_share; // the surface is known at its full height
                place = m_surface.nearest(place);
                place.z *= i_share;
                m_shape.mesh.position[i] = place;
            }
            holdSymmetry();
            completePiece(m_shape);
            if (leastDeterminant() > 0.0)
            {
                io_places = m_shape.mesh.position;
                return true;
            }
        }
        return fail("the nodes of an intermediate shape cannot be slid without folding it");
    }

    void holdSymmetry()
    {
        for (geometry::SymmetryNode const & held : m_shape.symmetry)
        {
            Vec3 & place = m_shape.mesh.position[at(held.node)];
            Vec3 const formed = m_final.piece().mesh.position[at(held.node)];
            Vec2 const back = dot(horizontal(formed - place), held.direction) * held.direction;
            place = place + lifted(back);
        }
    }

    double leastDeterminant() const
    {
        double least = std::numeric_limits<double>::infinity();
        for (IntegrationPoint const & point : m_shape.points.points)
        {
            double const here = det(onestep::inverseGradient(point, m_flat));
            least = std::isfinite(here) ? std::min(least, here) : -1.0;
        }
        return least;
    }

    bool solveFormed(double & o_moved)
    {
        nextSolve();
        if (!solved(m_final.solveFrom(m_flat, strokeHistory(m_final.piece(), m_laws, m_flat, m_places))))
            return fail(m_final.message());
        o_moved = farthestApart(m_flat, m_final.flat());
        m_flat = m_final.flat();
        return true;
    }

    // The placing turns the flat, and the history is written in its axes.
    void finish()
    {
        m_final.place();
        m_final.system().setHistory(strokeHistory(m_final.piece(), m_laws, m_final.flat(), m_places));
    }

    Problem const & m_problem;
    Settings m_settings; // of the shapes
    Monitor & m_monitor;
    PieceSolver & m_final;
    FormedSurface m_surface;
    Piece m_shape; // the piece with its nodes on the shape in hand
    std::vector<Vec2> m_flat;
    std::vector<material::MembraneLaw> m_laws; // per material
    std::vector<double> m_shares;              // of the height, per shape
    std::vector<NodePlaces> m_places;          // per shape
    double m_size;
    double m_done, m_end; // of the progress, percent
    double m_exact;       // the tolerance asked for
    std::string m_message;
};

double greatestStrain(PieceSolver & io_solver)
{
    double greatest = 0.0;
    for (std::size_t q = 0; q < io_solver.piece().points.points.size(); ++q)
        greatest = std::max(greatest, io_solver.system().hardeningStrain(q, io_solver.flat()));
    return greatest;
}

} // namespace

Status formInSteps(Problem const & i_problem, Settings const & i_settings, Monitor & io_monitor,
                   PieceSolver & io_solver)
{
    double const end = io_monitor.to();
    Status const plain =
        io_solver.outcome().converged ? Status::Converged : Status::Accepted; // as it came, or it would not be here
    if (greatestStrain(io_solver) <= kElasticStrain)
    {
        io_monitor.log("steps of the stroke: no strain beyond the elastic, so one step says all");
        return plain;
    }
    std::vector<Vec2> const flat = io_solver.flat();
    Stroke stroke(i_problem, i_settings, io_monitor, io_solver);
    bool const done = stroke.run();
    if (io_monitor.stopped())
        return Status::Stopped;
    if (done)
        return io_solver.outcome().converged ? Status::Converged : Status::Accepted;
    io_monitor.setRange(end, end);
    Status const status = io_solver.solveFrom(flat, {});
    io_solver.warn("the stroke in " + std::to_string(i_settings.steps) +
                   " steps did not succeed, the answer is that of one step: " + stroke.message());
    return status;
}

} // namespace voz::multistep
