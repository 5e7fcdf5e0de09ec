// SpringbackPartsTest.cpp: formed parts from the one-step solve, let go.

#include "SpringbackFixture.h"

#include "onestep/OneStep.h"

#include <algorithm>
#include <numeric>
#include <random>

using namespace springtest;

namespace
{

bool onPlane(double x)
{
    return std::abs(x) < 1e-9;
}

// The part solved in one step; what the planes x = 0 and y = 0 cut lies on planes of symmetry where asked for.
Problem formed(SurfaceMesh const & mesh, Extent extent)
{
    voz::onestep::Problem one;
    for (Point3 const & x : mesh.nodes)
    {
        int const node = static_cast<int>(one.nodes.size());
        one.nodes.push_back({0.001 * x[0], 0.001 * x[1], 0.001 * x[2]});
        if (extent != Extent::Whole && onPlane(x[0]))
            one.constraints.push_back({node, 0.0, 0.0});
        if (extent == Extent::Quarter && onPlane(x[1]))
            one.constraints.push_back({node, 0.5 * kPi, 0.0});
    }
    for (auto const & nodes : mesh.elements)
        one.elements.push_back({nodes, 0});
    one.materials.push_back(mildSteel());
    auto const solution = voz::onestep::Solve(one, {}, {});
    EXPECT_EQ(solution.status, voz::onestep::Status::Converged) << solution.message;

    Problem problem;
    problem.formed = one.nodes;
    problem.elements = one.elements;
    problem.materials = one.materials;
    for (auto const & x : solution.flat)
        problem.flat.push_back({x[0], x[1], 0.0});
    for (voz::onestep::NodeConstraint const & c : one.constraints)
        problem.symmetry.push_back({c.node, {std::cos(c.angle), std::sin(c.angle)}});
    return problem;
}

SquareCup coarseCup()
{
    SquareCup shape = squareCup40();
    shape.rowsBottom = 4;
    shape.rowsArc = 3;
    shape.rowsWall = 5;
    shape.rowsFlange = 6;
    shape.cellsSide = 4;
    shape.cellsCorner = 6;
    return shape;
}

} // namespace

TEST(SpringbackParts, Explore)
{
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
        for (Extent const extent : {Extent::Quarter})
        {
            Problem const problem = formed(squareCup(coarseCup(), extent, cells), extent);
            voz::onestep::Progress progress;
            progress.log = [](std::string const & s) { std::puts(s.c_str()); };
            Solution const s = voz::springback::Solve(problem, {1e-14, 0.25, 1.0 / 64, 12}, progress);
            tell("%d elements: status %d %s, %d load steps %d newton, greatest %.4f mm at %d, pins %g", (int)problem.elements.size(), (int)s.status, s.message.c_str(), s.loadSteps, s.newtonSteps, 1000 * s.greatestMove, s.greatestMoveNode, s.pinReaction);
        }
}
