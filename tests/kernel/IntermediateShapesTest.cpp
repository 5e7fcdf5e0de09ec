// IntermediateShapesTest.cpp: the stroke in two and three steps: what it must leave alone, what it moves and how far,
// and its parts.

#include "OneStepFixture.h"
#include "multistep/FlatMap.h"
#include "multistep/FormedSurface.h"
#include "multistep/StrokeHistory.h"
#include "onestep/Partition.h"

#include <algorithm>

namespace
{

using namespace onesteptest;
using voz::geometry::Vec2;
using voz::geometry::Vec3;
using voz::onestep::Piece;
using voz::onestep::Progress;

struct Cup40
{
    SurfaceMesh mesh;
    Problem problem;
    int rays, first; // of the rim's nodes
};

// Mesh index m of the verification of the square cup; quarter with 9.4 N/mm along the rim.
Cup40 squareCupOf(int m, double friction = 0.0)
{
    SquareCup shape = squareCup40();
    shape.rowsBottom = 4 * m;
    shape.rowsArc = 3 * m;
    shape.rowsWall = 5 * m;
    shape.rowsFlange = 6 * m;
    shape.cellsSide = 4 * m;
    shape.cellsCorner = 6 * m;
    Cup40 cup{squareCup(shape, Extent::Quarter, Cells::Triangles), {}, 14 * m + 1, 0};
    cup.first = static_cast<int>(cup.mesh.nodes.size()) - cup.rays;
    cup.problem = problemOf(cup.mesh, mildSteel());
    quarterSymmetry(cup.problem, cup.mesh);
    restrain(cup.problem, cup.mesh, 9.4, [&](Point3 const & p) { return p[2] == 40.0; });
    auto & holders = cup.problem.holders;
    auto const inPlane = [&](voz::onestep::HolderEdge const & edge)
    {
        auto const node = [&](int corner)
        {
            auto const & nodes = cup.mesh.elements[static_cast<std::size_t>(edge.element)];
            return cup.mesh.nodes[static_cast<std::size_t>(nodes[static_cast<std::size_t>(corner)])];
        };
        Point3 const a = node(edge.corner1), b = node(edge.corner2);
        return (a[0] == 0.0 && b[0] == 0.0) || (a[1] == 0.0 && b[1] == 0.0);
    };
    holders.erase(std::remove_if(holders.begin(), holders.end(), inPlane), holders.end());
    cup.problem.toolFriction = friction;
    return cup;
}

Settings inSteps(int steps)
{
    Settings settings;
    settings.steps = steps;
    return settings;
}

Solution solveInSteps(Problem const & problem, int steps)
{
    Solution solution = voz::onestep::Solve(problem, inSteps(steps), {});
    EXPECT_EQ(solution.status, Status::Converged) << solution.message;
    return solution;
}

// --- What it leaves alone --------------------------------------------------------------------------------------------

TEST(IntermediateShapes, OneStepIsThePlainSolveToTheLastBit)
{
    Cup40 const cup = squareCupOf(1);
    Solution const plain = solve(cup.problem), one = solveInSteps(cup.problem, 1);
    EXPECT_EQ(plain.flat, one.flat);
    EXPECT_EQ(plain.strains.mid, one.strains.mid);
    EXPECT_EQ(plain.equivalentStress, one.equivalentStress);
    EXPECT_EQ(plain.punchForce, one.punchForce);
    EXPECT_EQ(plain.work, one.work);
}

TEST(IntermediateShapes, OtherNumbersOfStepsAreRefused)
{
    Cup40 const cup = squareCupOf(1);
    for (int const steps : {-1, 0, 4})
    {
        Solution const solution = voz::onestep::Solve(cup.problem, inSteps(steps), {});
        EXPECT_EQ(solution.status, Status::Refused);
        EXPECT_EQ(solution.message, "steps of the stroke: " + std::to_string(steps) + "; expected 1, 2 or 3");
    }
}

// A cylinder, a cone and a bracket with a hole unroll; no shape on the way changes a bit of that.
TEST(IntermediateShapes, PartsThatUnrollWithoutStrainStayAsTheyAre)
{
    for (SurfaceMesh const & mesh :
         {cylinder(20.0, 0.6, 24, 30.0, 6, Cells::Triangles), cone(0.6, 20.0, 60.0, 1.0, 24, 8, Cells::Quads),
          bracket(Bracket{}, Cells::Triangles)})
    {
        Problem const problem = problemOf(mesh, mildSteel());
        Solution const plain = solve(problem);
        for (int const steps : {2, 3})
        {
            Solution const stepped = solveInSteps(problem, steps);
            EXPECT_EQ(plain.flat, stepped.flat);
            EXPECT_EQ(plain.strains.mid, stepped.strains.mid);
        }
    }
}

// The channel's strain follows from its force alone, whatever the path.
TEST(IntermediateShapes, AChannelKeepsItsClosedForm)
{
    for (double const force : {240.0, 300.0})
    {
        SurfaceMesh const mesh = halfHat(Hat{}, 10.0, 12, 2, Cells::Triangles);
        Problem problem = problemOf(mesh, mildSteel());
        double const end = mesh.nodes.back()[0];
        hold(problem, mesh, onPlaneX, 0.0);
        hold(
            problem, mesh, [](Point3 const & p) { return p[1] == 0.0 || p[1] == 10.0; }, kHalfPi);
        restrain(problem, mesh, force, [end](Point3 const & p) { return p[0] == end; });
        int const last = static_cast<int>(mesh.nodes.size()) - 3; // y = 0 at the end
        double const plain = flatRadius(solve(problem), last);
        for (int const steps : {2, 3})
        {
            double const stepped = flatRadius(solveInSteps(problem, steps), last);
            tell("%g N/mm, %d steps: %.4f mm, plain %.4f", force, steps, stepped, plain);
            EXPECT_NEAR(stepped / plain, 1.0, 3e-4);
        }
    }
}

// Round cups: their blank follows from their volume, which no path changes by much.
TEST(IntermediateShapes, RoundCupsMoveByLessThanFourHundredthsOfAPercent)
{
    for (double const force : {0.0, 20.0})
    {
        SurfaceMesh const mesh = cup(Cup{}, 2, Extent::Quarter, Cells::Triangles);
        Problem problem = problemOf(mesh, mildSteel());
        quarterSymmetry(problem, mesh);
        if (force > 0.0)
            restrain(problem, mesh, force, [](Point3 const & p) { return std::hypot(p[0], p[1]) > 57.0 - 1e-6; });
        int const rim = static_cast<int>(mesh.nodes.size()) - 1;
        Solution const plain = solve(problem);
        for (int const steps : {2, 3})
        {
            Solution const stepped = solveInSteps(problem, steps);
            tell("%g N/mm, %d steps: R %.4f, plain %.4f; force %.0f, plain %.0f N", force, steps,
                 flatRadius(stepped, rim), flatRadius(plain, rim), stepped.punchForce, plain.punchForce);
            EXPECT_NEAR(flatRadius(stepped, rim) / flatRadius(plain, rim), 1.0, 4e-4);
        }
    }
}

// --- What it moves ---------------------------------------------------------------------------------------------------

// The true blank is a square of half side 75. The middle of a side moves towards it, the diagonal (106.07) away: the
// numbers are those of docs/intermediate-shapes.md.
TEST(IntermediateShapes, TheSidesOfTheSquareCupMoveTowardsTheMeasuredBlank)
{
    Cup40 const cup = squareCupOf(2);
    Solution const plain = solve(cup.problem), two = solveInSteps(cup.problem, 2);
    double const side1 = flatRadius(plain, cup.first), side2 = flatRadius(two, cup.first);
    double const far1 = flatRadius(plain, cup.first + cup.rays / 2), far2 = flatRadius(two, cup.first + cup.rays / 2);
    tell("side %.3f -> %.3f, diagonal %.3f -> %.3f, force %.0f -> %.0f", side1, side2, far1, far2, plain.punchForce,
         two.punchForce);
    EXPECT_NEAR(side2 - side1, -0.62, 0.05);
    EXPECT_NEAR(far2 - far1, 0.41, 0.05);
    EXPECT_TRUE(two.warnings.empty() || two.warnings.front().find("did not succeed") == std::string::npos);
    EXPECT_NEAR(extremes(cup.problem, two).greatestThickness, 0.263, 0.01);
}

TEST(SlowIntermediateShapes, ThreeStepsMoveTheSidesFartherAlsoWithFriction)
{
    Cup40 const cup = squareCupOf(2), rubbed = squareCupOf(2, 0.144);
    EXPECT_NEAR(flatRadius(solveInSteps(cup.problem, 3), cup.first), 77.635, 0.05);
    EXPECT_NEAR(flatRadius(solveInSteps(rubbed.problem, 2), cup.first), 77.82, 0.05);
    EXPECT_NEAR(flatRadius(solveInSteps(rubbed.problem, 3), cup.first), 77.69, 0.05);
}

TEST(IntermediateShapes, TwoRunsAgreeToTheLastBit)
{
    Cup40 const cup = squareCupOf(1);
    Solution const a = solveInSteps(cup.problem, 2), b = solveInSteps(cup.problem, 2);
    EXPECT_EQ(a.flat, b.flat);
    EXPECT_EQ(a.strains.top, b.strains.top);
    EXPECT_EQ(a.equivalentStress, b.equivalentStress);
}

// The strains reported are the total ones of the flat and the part: their thickness is that of the areas.
TEST(IntermediateShapes, TheReportedStrainsKeepTheVolume)
{
    Cup40 const cup = squareCupOf(1);
    Solution const two = solveInSteps(cup.problem, 2);
    double volume = 0.0;
    for (std::size_t e = 0; e < cup.problem.elements.size(); ++e)
    {
        SurfaceMesh const one{cup.mesh.nodes, {cup.mesh.elements[e]}};
        volume += area(one) * std::exp(thicknessStrain(cup.problem, two, e));
    }
    EXPECT_NEAR(volume / flatArea(cup.problem, two), 1.0, 1e-9);
}

// --- Stop and progress -----------------------------------------------------------------------------------------------

TEST(IntermediateShapes, TheStopFunctionEndsItWhereverItAnswers)
{
    Cup40 const cup = squareCupOf(1);
    int calls = 0;
    double last = 0.0;
    Progress count;
    count.report = [&](double percent)
    {
        EXPECT_GE(percent, last);
        EXPECT_LE(percent, 100.0);
        last = percent;
        ++calls;
        return 0;
    };
    Solution const whole = voz::onestep::Solve(cup.problem, inSteps(2), count);
    EXPECT_EQ(whole.status, Status::Converged);
    int const all = calls;
    EXPECT_GT(all, 60);
    for (int const stopAt : {1, all / 4, all / 2, all - 1}) // plain solve, laying, sliding, last pass
    {
        int call = 0;
        Progress stop;
        stop.report = [&](double) { return ++call >= stopAt ? 1 : 0; };
        Solution const solution = voz::onestep::Solve(cup.problem, inSteps(2), stop);
        EXPECT_EQ(solution.status, Status::Stopped) << stopAt;
        EXPECT_TRUE(solution.flat.empty());
    }
}

// --- Its parts -------------------------------------------------------------------------------------------------------

Piece pieceOf(SurfaceMesh const & mesh)
{
    return voz::onestep::partition(problemOf(mesh, mildSteel())).pieces.front();
}

std::vector<Vec2> projection(Piece const & piece)
{
    std::vector<Vec2> flat;
    for (Vec3 const p : piece.mesh.position)
        flat.push_back({p.x, p.y});
    return flat;
}

TEST(FlatMap, GivesTheMeshInsideAndGoesOnStraightBeyondTheRim)
{
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Piece piece = pieceOf(extrude(Profile({0.0, 0.0}, 0.0).line(40.0, 8), 30.0, 6, cells));
        std::vector<Vec2> const flat = projection(piece); // the plane is its own flat
        for (Vec3 & p : piece.mesh.position)              // a plane at a slope over it, twice as wide
            p = {2.0 * p.x, p.y, 0.5 * p.x + p.y};
        voz::multistep::FlatMap const map(piece, flat);
        for (Vec2 const q : {Vec2{0.001, 0.002}, Vec2{-0.01, 0.005}, Vec2{0.03, -0.02}, Vec2{0.05, 0.05}})
        {
            Vec3 const p = map.position(q);
            EXPECT_NEAR(p.x - map.position({}).x, 2.0 * q.x, 1e-15);
            EXPECT_NEAR(p.y - map.position({}).y, q.y, 1e-15);
            EXPECT_NEAR(p.z - map.position({}).z, 0.5 * q.x + q.y, 1e-15);
        }
    }
}

TEST(FormedSurface, BringsAPointBackOnTheSurfaceButNotOneBeyondTheRim)
{
    Piece const piece = pieceOf(extrude(Profile({0.0, 0.0}, 0.0).line(40.0, 8), 30.0, 6, Cells::Triangles));
    voz::multistep::FormedSurface const surface(piece);
    double const z = piece.mesh.position.front().z;
    Vec3 low = piece.mesh.position.front(), high = low;
    for (Vec3 const p : piece.mesh.position)
    {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), z};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), z};
    }
    Vec3 const inside = 0.5 * (low + high) + Vec3{0.0003, 0.0002, 0.0005};
    Vec3 const foot = surface.nearest(inside);
    EXPECT_NEAR(foot.x, inside.x, 1e-15);
    EXPECT_NEAR(foot.y, inside.y, 1e-15);
    EXPECT_NEAR(foot.z, z, 1e-15);
    for (Vec3 const beyond : {high + Vec3{0.002, -0.01, 0.001}, low - Vec3{0.3, 0.0, 0.0}})
    {
        Vec3 const same = surface.nearest(beyond);
        EXPECT_EQ(same.x, beyond.x);
        EXPECT_EQ(same.y, beyond.y);
        EXPECT_EQ(same.z, beyond.z);
    }
}

// A flat stretched in its plane first to a shape, then to the part: increments along the axes, and the rest of the way.
TEST(StrokeHistory, StretchesAlongTheAxesGiveTheirStrainsThicknessAndRest)
{
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Piece const piece = pieceOf(extrude(Profile({0.0, 0.0}, 0.0).line(40.0, 4), 30.0, 3, cells));
        std::vector<Vec2> flat = projection(piece);
        voz::multistep::NodePlaces shape;
        for (std::size_t i = 0; i < flat.size(); ++i)
        {
            Vec2 const x = flat[i];
            flat[i] = {x.x / 1.2, x.y / 0.9};
            // half the way, and turned out of the plane, which changes nothing
            shape.push_back({0.0, flat[i].y * std::sqrt(0.9), flat[i].x * std::sqrt(1.2)});
        }
        std::vector<voz::material::MembraneLaw> const laws{
            voz::material::MembraneLaw(mildSteel(), voz::material::LawOptions{})};
        auto const history = voz::multistep::strokeHistory(piece, laws, flat, std::span(&shape, 1));
        ASSERT_EQ(history.size(), piece.points.points.size());
        double const h1 = 0.5 * std::log(1.2), h2 = 0.5 * std::log(0.9);
        for (std::size_t q = 0; q < history.size(); ++q)
        {
            auto const & at = history[q];
            EXPECT_NEAR(at.law.thickness, 0.78e-3 * std::exp(-h1 - h2), 1e-15);
            auto const rest =
                voz::onestep::evaluateStrain(at.stretch * voz::onestep::inverseGradient(piece.points.points[q], flat));
            EXPECT_NEAR(rest.h2, h1, 1e-12); // the second is the major one
            EXPECT_NEAR(rest.h1, h2, 1e-12);
            EXPECT_NEAR(hardenedStrain(laws.front(), at.law, {}), laws.front().equivalentStrain(h1, h2), 1e-12);
            // the stress to begin with lies along the stretch, whatever the frame of the point
            auto const way = voz::onestep::strainTensor(rest);
            EXPECT_NEAR(at.law.start.m12 * (way.m11 - way.m22), way.m12 * (at.law.start.m11 - at.law.start.m22), 1e-12);
            EXPECT_GT(at.law.start.m11 * way.m11 + at.law.start.m22 * way.m22, 0.0);
        }
    }
}

} // namespace
