// Binder.cpp: both meshes are laid flat over the same frame; the flat of the one leads to places on the other.

#include "binder/Binder.h"

#include "TextOf.h"
#include "onestep/Partition.h"
#include "onestep/ProblemCheck.h"

#include <algorithm>
#include <cmath>

namespace voz::binder
{

using geometry::Vec2;
using geometry::Vec3;
using onestep::Partition;
using onestep::Piece;
using onestep::Problem;
using onestep::Progress;
using onestep::Solution;
using onestep::Status;

namespace
{

constexpr double kBinderShare = 0.3; // of the progress
constexpr double kInPlane = 1.0e-3;  // of a side's length: how far its ends may lie off a plane of symmetry

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

struct Plane // x . direction = offset
{
    Vec2 direction;
    double offset, tolerance;
};

std::vector<Plane> symmetryPlanes(Problem const & i_part)
{
    std::vector<Plane> planes;
    Partition const parts = partition(i_part);
    for (std::size_t p = 0; p < parts.pieces.size(); ++p)
    {
        Piece const & piece = parts.pieces[p];
        double const tolerance = kInPlane * std::sqrt(piece.area);
        for (geometry::SymmetryNode const & held : piece.symmetry)
        {
            Vec2 const x = horizontal(piece.mesh.position[at(held.node)]) + parts.shift[p];
            double const offset = dot(x, held.direction);
            bool known = false;
            for (Plane const & plane : planes)
            {
                double const sign = dot(plane.direction, held.direction) < 0.0 ? -1.0 : 1.0;
                known = known || (length(sign * held.direction - plane.direction) < 1.0e-6 &&
                                  std::abs(sign * offset - plane.offset) < tolerance);
            }
            if (!known)
                planes.push_back({held.direction, offset, tolerance});
        }
    }
    return planes;
}

void holdToPlanes(std::vector<Plane> const & i_planes, Problem & io_binder)
{
    Partition const parts = partition(io_binder);
    for (std::size_t p = 0; p < parts.pieces.size(); ++p)
        for (geometry::Side const & side : parts.pieces[p].sides.free)
        {
            Piece const & piece = parts.pieces[p];
            Vec2 const a = horizontal(piece.mesh.position[at(side.a)]) + parts.shift[p];
            Vec2 const b = horizontal(piece.mesh.position[at(side.b)]) + parts.shift[p];
            for (Plane const & plane : i_planes)
            {
                double const slack = std::min(plane.tolerance, kInPlane * length(b - a));
                if (std::abs(dot(a, plane.direction) - plane.offset) > slack ||
                    std::abs(dot(b, plane.direction) - plane.offset) > slack)
                    continue;
                double const angle = std::atan2(plane.direction.y, plane.direction.x);
                for (int const node : {side.a, side.b})
                    io_binder.constraints.push_back({piece.nodeOf[at(node)], angle, 0.0});
            }
        }
}

bool solved(Solution const & i_solution)
{
    return i_solution.status == Status::Converged || i_solution.status == Status::Accepted;
}

void say(Progress const & i_progress, std::string const & i_line)
{
    if (i_progress.log)
        i_progress.log(i_line);
}

Progress shareOf(Progress const & i_progress, double i_from, double i_share)
{
    Progress part = i_progress;
    if (i_progress.report)
        part.report = [&i_progress, i_from, i_share](double percent)
        { return i_progress.report(i_from + i_share * percent); };
    return part;
}

} // namespace

Problem binderProblem(Problem const & i_part, BinderSurface const & i_binder)
{
    Problem problem;
    problem.nodes = i_binder.nodes;
    problem.elements = i_binder.elements;
    for (onestep::Element & element : problem.elements)
        element.material = 0;
    if (!i_part.materials.empty())
        problem.materials.push_back(i_part.materials.front());
    if (checkProblem(i_part, {}).empty() && checkProblem(problem, {}).empty()) // else the solve tells what is wrong
        holdToPlanes(symmetryPlanes(i_part), problem);
    return problem;
}

FlatImage imageOf(Problem const & i_binder, Solution const & i_solution)
{
    Partition parts = partition(i_binder);
    std::vector<FlatImage::Part> images;
    for (std::size_t p = 0; p < parts.pieces.size(); ++p)
    {
        Piece & piece = parts.pieces[p];
        FlatImage::Part image;
        for (std::size_t i = 0; i < piece.nodeOf.size(); ++i)
        {
            auto const & x = i_binder.nodes[at(piece.nodeOf[i])];
            auto const & y = i_solution.flat[at(piece.nodeOf[i])];
            piece.mesh.position[i] = {x[0], x[1], x[2]};
            image.flat.push_back({y[0], y[1]});
        }
        image.mesh = std::move(piece.mesh);
        image.loops = std::move(piece.loops);
        image.free = std::move(piece.sides.free);
        images.push_back(std::move(image));
    }
    return FlatImage(std::move(images));
}

TwoStages solveWithBinder(Problem const & i_part, BinderSurface const & i_binder, onestep::Settings const & i_settings,
                          Progress const & i_progress, PartSolve const & i_solvePart)
{
    TwoStages stages;
    say(i_progress, "stage 1: the binder is laid flat");
    Problem const binder = binderProblem(i_part, i_binder);
    stages.binder = onestep::Solve(binder, i_settings, shareOf(i_progress, 0.0, kBinderShare));
    if (!solved(stages.binder))
    {
        stages.part.status = stages.binder.status;
        stages.part.message = "binder: " + stages.binder.message;
        return stages;
    }
    say(i_progress, "stage 2: the part");
    Progress const rest = shareOf(i_progress, 100.0 * kBinderShare, 1.0 - kBinderShare);
    stages.part = i_solvePart ? i_solvePart(rest) : onestep::Solve(i_part, i_settings, rest);
    for (std::string const & warning : stages.binder.warnings)
        stages.part.warnings.push_back("binder: " + warning);
    if (!solved(stages.part))
        return stages;
    stages.closing = closeOnBinder(i_part, stages.part.flat, imageOf(binder, stages.binder));
    Closing const & closing = stages.closing;
    say(i_progress, TextOf("blank on the binder: ", closing.onBinder, " nodes lie on it (", closing.overlapped,
                           " where it lies over itself), ", closing.beyondRim, " beyond its rim, ", closing.overOpening,
                           " over openings"));
    return stages;
}

} // namespace voz::binder
