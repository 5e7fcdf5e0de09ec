// OneStepSolveTest.cpp: whole solves of small parts: exact kinematics, invariances, pieces.

#include "OneStepMeshes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace onesteptest;
using namespace voz::onestep;
using voz::examples::Point3;

namespace
{

Point3 flatSquare(double u, double v)
{
    return {100.0 * u, 100.0 * v, 7.0};
}

// A flat square whose rim is prescribed: X = p.x/1.2, Y = p.y/1.1. Inner nodes are distorted; mixed: half of the cells
// are cut.
Problem stretchedSquare(Cells i_cells, bool i_mixed, double i_turn = 0.0, Point3 i_shift = {0, 0, 0})
{
    Problem problem = gridPart(6, 6, i_cells, flatSquare);
    std::mt19937 random(21);
    std::uniform_real_distribution<double> shake(-0.004, 0.004);
    for (int i = 0; i < 49; ++i)
        if (i / 7 > 0 && i / 7 < 6 && i % 7 > 0 && i % 7 < 6)
        {
            problem.nodes[at(i)][0] += shake(random);
            problem.nodes[at(i)][1] += shake(random);
        }
    if (i_mixed)
    {
        std::vector<Element> cut;
        for (std::size_t e = 0; e < problem.elements.size(); ++e)
        {
            auto const n = problem.elements[e].nodes;
            if (e % 2 == 0)
                cut.push_back(problem.elements[e]);
            else
                cut.insert(cut.end(), {{{n[0], n[1], n[2], -1}, 0}, {{n[0], n[2], n[3], -1}, 0}});
        }
        problem.elements = cut;
    }
    double const c = std::cos(i_turn), s = std::sin(i_turn);
    for (int i = 0; i < 49; ++i)
    {
        double const x = problem.nodes[at(i)][0], y = problem.nodes[at(i)][1];
        problem.nodes[at(i)] = {c * x - s * y + 1e-3 * i_shift[0], s * x + c * y + 1e-3 * i_shift[1],
                                0.007 + 1e-3 * i_shift[2]};
        if (i / 7 == 0 || i / 7 == 6 || i % 7 == 0 || i % 7 == 6)
        {
            problem.constraints.push_back({i, i_turn, x / 1.2 - x});
            problem.constraints.push_back({i, i_turn + 0.5 * std::numbers::pi, y / 1.1 - y});
        }
    }
    return problem;
}

// A channel along y: bottom, bend up, wall; quick to solve and with curvature in one direction.
Problem cylinderPart(Cells i_cells)
{
    return problemOf(voz::examples::cylinder(20.0, 0.6, 24, 30.0, 8, i_cells));
}

std::array<double, 3> strainAt(Solution const & i_solution, std::size_t i_point)
{
    return {i_solution.strains.mid[3 * i_point], i_solution.strains.mid[3 * i_point + 1],
            i_solution.strains.mid[3 * i_point + 2]};
}

double span(Solution const & i_solution, int i_component)
{
    double low = 1e300, high = -1e300;
    for (auto const & x : i_solution.flat)
    {
        low = std::min(low, x[at(i_component)]);
        high = std::max(high, x[at(i_component)]);
    }
    return high - low;
}

} // namespace

// A flat sheet without forces is its own blank however it lies: the least inclination used to mislead Newton.
TEST(OneStepSolve, AnInclinedFlatSheetIsItsOwnBlankInAFewSteps)
{
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
        for (double const slope : {0.0, 1.0e-6, 0.01, 0.3, 1.5})
            for (bool const alongX : {true, false})
            {
                Problem const problem = gridPart(8, 12, cells,
                                                 [=](double u, double v)
                                                 {
                                                     double const x = 96.0 * u, y = 64.0 * v;
                                                     return voz::examples::Point3{x, y, slope * (alongX ? x : y)};
                                                 });
                Solution const solution = Solve(problem, {}, {});
                ASSERT_EQ(solution.status, Status::Converged) << slope << ": " << solution.message;
                EXPECT_LE(solution.newtonSteps, 15) << slope;
                for (double const h : solution.strains.mid)
                    EXPECT_NEAR(h, 0.0, 1.0e-12);
            }
}

TEST(OneStepPatch, UniformStrainIsExactOnEveryMesh)
{
    struct
    {
        char const * name;
        Cells cells;
        bool mixed;
    } const meshes[] = {
        {"triangles", Cells::Triangles, false}, {"quadrilaterals", Cells::Quads, false}, {"mixed", Cells::Quads, true}};
    for (auto const & mesh : meshes)
    {
        Settings fine; // a residual of 1e-8 may leave errors of 1e-11 in the strains
        fine.tolerance = 1.0e-13;
        Solution const solution = Solve(stretchedSquare(mesh.cells, mesh.mixed), fine, {});
        ASSERT_EQ(solution.status, Status::Converged) << mesh.name << " " << solution.message;
        for (std::size_t p = 0; p < solution.strains.mid.size() / 3; ++p)
        {
            Principal const h = principal(solution, p);
            EXPECT_NEAR(h.major, std::log(1.2), 1e-12) << mesh.name;
            EXPECT_NEAR(h.minor, std::log(1.1), 1e-12) << mesh.name;
        }
        EXPECT_EQ(solution.stride, mesh.cells == Cells::Quads ? 4 : 1);
    }
}

TEST(OneStepPatch, TurningAndMovingThePartChangesNoStrain)
{
    Solution const still = Solve(stretchedSquare(Cells::Quads, true), {}, {});
    Solution const moved = Solve(stretchedSquare(Cells::Quads, true, 0.7, {1e5, -1e5, 300}), {}, {});
    ASSERT_EQ(moved.status, Status::Converged) << moved.message;
    for (std::size_t i = 0; i < still.strains.mid.size(); ++i)
        EXPECT_NEAR(still.strains.mid[i], moved.strains.mid[i], 1e-9);
}

TEST(OneStepPatch, ComponentsStandInTheFrameOfTheFirstSide)
{
    // one quadrilateral, first side along y: e11 is the strain along y
    Problem problem = gridPart(1, 1, Cells::Quads, flatSquare);
    problem.elements[0].nodes = {1, 3, 2, 0};
    for (int i = 0; i < 4; ++i)
    {
        problem.constraints.push_back({i, 0.0, problem.nodes[at(i)][0] * (1.0 / 1.2 - 1.0)});
        problem.constraints.push_back({i, 0.5 * std::numbers::pi, problem.nodes[at(i)][1] * (1.0 / 1.1 - 1.0)});
    }
    Solution const solution = Solve(problem, {}, {});
    ASSERT_EQ(solution.status, Status::Converged) << solution.message;
    for (std::size_t p = 0; p < 4; ++p)
    {
        EXPECT_NEAR(strainAt(solution, p)[0], std::log(1.1), 1e-12);
        EXPECT_NEAR(strainAt(solution, p)[1], std::log(1.2), 1e-12);
        EXPECT_NEAR(strainAt(solution, p)[2], 0.0, 1e-12);
    }
}

TEST(OneStepPatch, TheShearIsTheEngineeringOne)
{
    // pure stretch along the diagonal: h = ln 1.2 along (1, 1): e11 = e22 = ln(1.2)/2, gamma = ln 1.2
    Problem problem = gridPart(1, 1, Cells::Triangles, flatSquare);
    double const g = 1.0 / 1.2;
    for (int i = 0; i < 4; ++i)
    {
        double const x = problem.nodes[at(i)][0], y = problem.nodes[at(i)][1];
        problem.constraints.push_back({i, 0.0, 0.5 * ((g + 1.0) * x + (g - 1.0) * y) - x});
        problem.constraints.push_back({i, 0.5 * std::numbers::pi, 0.5 * ((g - 1.0) * x + (g + 1.0) * y) - y});
    }
    for (bool const turned : {false, true})
    {
        if (turned) // read backwards along the same side: e1 looks the other way, e2 does not
            for (Element & element : problem.elements)
                element.nodes = {element.nodes[1], element.nodes[0], element.nodes[2], -1};
        Solution const solution = Solve(problem, {}, {});
        ASSERT_EQ(solution.status, Status::Converged) << solution.message;
        EXPECT_NEAR(strainAt(solution, 0)[0], 0.5 * std::log(1.2), 1e-12);
        EXPECT_NEAR(strainAt(solution, 0)[2], turned ? -std::log(1.2) : std::log(1.2), 1e-12);
    }
}

TEST(OneStepDevelopable, ACylinderUnrollsWithoutStrainAndBendsByItsRadius)
{
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Solution const solution = Solve(cylinderPart(cells), {}, {});
        ASSERT_EQ(solution.status, Status::Converged) << solution.message;
        for (double const e : solution.strains.mid)
            EXPECT_NEAR(e, 0.0, 1e-12);
        EXPECT_NEAR(span(solution, 0), 0.02399750, 1e-8);
        EXPECT_NEAR(span(solution, 1), 0.030, 1e-10);
        std::size_t bent = 0, all = 0;
        for (std::size_t p = 0; p < solution.strains.mid.size() / 3; ++p, ++all)
        {
            // none along the axis, so the sum of both components is the one across
            double const across = solution.strains.top[3 * p] + solution.strains.top[3 * p + 1];
            double const below = solution.strains.bottom[3 * p] + solution.strains.bottom[3 * p + 1];
            bent += std::abs(across / 0.019312 - 1.0) < 0.005 && std::abs(below / -0.019693 - 1.0) < 0.005 ? 1 : 0;
        }
        EXPECT_GE(bent + 4, all); // but the triangles that fill a corner of the sheet
    }
}

TEST(OneStepDevelopable, TopIsTheSideOfTheWindingThatCameIn)
{
    Problem problem = cylinderPart(Cells::Quads);
    Solution const up = Solve(problem, {}, {});
    for (Element & element : problem.elements)
        std::swap(element.nodes[1], element.nodes[3]); // the same first corner, read backwards
    Solution const down = Solve(problem, {}, {});
    ASSERT_EQ(down.status, Status::Converged) << down.message;
    std::size_t const p = 4 * 100;
    double const top = up.strains.top[3 * p] + up.strains.top[3 * p + 1];
    EXPECT_GT(top, 0.01);
    EXPECT_NEAR(down.strains.bottom[3 * p] + down.strains.bottom[3 * p + 1], top, 1e-9);
    for (std::size_t i = 0; i < up.flat.size(); ++i)
        EXPECT_NEAR(up.flat[i][0], down.flat[i][0], 1e-10); // not mirrored
}

TEST(OneStepDevelopable, GivenCurvaturesReplaceThoseOfTheMesh)
{
    Problem problem = cylinderPart(Cells::Quads);
    problem.curvatures.assign(problem.elements.size(), {0.0, 25.0, 0.3});
    Solution const solution = Solve(problem, {}, {});
    std::size_t const p = 4 * 100;
    double const across = std::max(solution.strains.top[3 * p], solution.strains.top[3 * p + 1]);
    EXPECT_NEAR(across, std::log(1.0 + 25.0 * 0.39e-3), 1e-9);
}

TEST(OneStepInvariance, AWholePartNeedsNoHoldingForce)
{
    Problem problem = problemOf(voz::examples::cup({}, 2, Extent::Whole, Cells::Triangles));
    restrainRim(problem, 20.0);
    Problem turned = problem;
    for (auto & p : turned.nodes)
        p = {std::cos(0.3) * p[0] - std::sin(0.3) * p[1] + 0.3, std::sin(0.3) * p[0] + std::cos(0.3) * p[1] - 0.05,
             p[2]};
    Solution const still = Solve(problem, {}, {}), moved = Solve(turned, {}, {});
    ASSERT_EQ(moved.status, Status::Converged) << moved.message;
    EXPECT_LT(still.holdingShare, 1e-10);
    EXPECT_LT(moved.holdingShare, 1e-10);
    Problem const quarter = quarterCup({}, 2, Cells::Triangles, 20.0);
    EXPECT_NEAR(reachAlong(problem, still, 0.0), reachAlong(quarter, Solve(quarter, {}, {}), 0.0), 1e-6);
    for (std::size_t i = 0; i < still.flat.size(); ++i)
    {
        double const x = still.flat[i][0], y = still.flat[i][1];
        EXPECT_NEAR(moved.flat[i][0], std::cos(0.3) * x - std::sin(0.3) * y + 0.3, 1e-9);
        EXPECT_NEAR(moved.flat[i][1], std::sin(0.3) * x + std::cos(0.3) * y - 0.05, 1e-9);
    }
}

TEST(OneStepInvariance, NumbersOfNodesDoNotMatter)
{
    Problem const problem = smallCup();
    std::vector<int> place(problem.nodes.size());
    for (std::size_t i = 0; i < place.size(); ++i)
        place[i] = static_cast<int>(i);
    std::mt19937 random(4);
    std::shuffle(place.begin(), place.end(), random);
    Problem shuffled = problem;
    for (std::size_t i = 0; i < place.size(); ++i)
        shuffled.nodes[at(place[i])] = problem.nodes[i];
    for (Element & element : shuffled.elements)
        for (int & node : element.nodes)
            node = node < 0 ? node : place[at(node)];
    for (NodeConstraint & constraint : shuffled.constraints)
        constraint.node = place[at(constraint.node)];
    Solution const a = Solve(problem, {}, {}), b = Solve(shuffled, {}, {});
    ASSERT_EQ(b.status, Status::Converged) << b.message;
    for (std::size_t i = 0; i < place.size(); ++i)
        EXPECT_NEAR(a.flat[i][0], b.flat[at(place[i])][0], 1e-9);
}

TEST(OneStepInvariance, TwoRunsAgreeToTheLastBit)
{
    Problem const problem = quarterCup({}, 3, Cells::Quads, 20.0);
    Solution const a = Solve(problem, {}, {}), b = Solve(problem, {}, {});
    EXPECT_EQ(a.flat, b.flat);
    EXPECT_EQ(a.strains.top, b.strains.top);
    EXPECT_EQ(a.equivalentStress, b.equivalentStress);
    EXPECT_EQ(a.punchForce, b.punchForce);
}

TEST(OneStepPieces, AreSolvedOneByOne)
{
    Problem const single = problemOf(voz::examples::cup({}, 1, Extent::Whole, Cells::Triangles));
    Problem both = single;
    int const count = static_cast<int>(single.nodes.size());
    for (auto const & p : single.nodes)
        both.nodes.push_back({p[0] + 0.2, p[1], p[2]});
    for (Element element : single.elements)
    {
        for (std::size_t k = 0; k < 3; ++k)
            element.nodes[k] += count;
        both.elements.push_back(element);
    }
    Solution const one = Solve(single, {}, {}), two = Solve(both, {}, {});
    ASSERT_EQ(two.status, Status::Converged) << two.message;
    EXPECT_NEAR(two.punchForce, 2.0 * one.punchForce, 1e-6 * one.punchForce);
    for (int i = 0; i < count; ++i)
        EXPECT_NEAR(two.flat[at(count + i)][0], one.flat[at(i)][0] + 0.2, 1e-9);
}

TEST(OneStepPieces, DegenerateElementsAreLeftOutAndTheirNodesFollow)
{
    Problem problem = cylinderPart(Cells::Quads);
    Solution const before = Solve(problem, {}, {});
    int const loose = static_cast<int>(problem.nodes.size());
    auto const a = problem.nodes[0], b = problem.nodes[1];
    problem.nodes.push_back({0.5 * (a[0] + b[0]), 0.5 * (a[1] + b[1]), 0.5 * (a[2] + b[2])});
    problem.elements.push_back({{0, 1, loose, -1}, 0});
    problem.elements.push_back({{5, 5, 6, -1}, 0});
    Solution const after = Solve(problem, {}, {});
    ASSERT_EQ(after.status, Status::Converged) << after.message;
    ASSERT_FALSE(after.warnings.empty());
    EXPECT_NE(after.warnings[0].find("2 elements without area"), std::string::npos);
    EXPECT_NEAR(after.flat[3][0], before.flat[3][0], 1e-12);
    double const drift = 0.5 * (after.flat[0][0] - a[0] + after.flat[1][0] - b[0]);
    EXPECT_NEAR(after.flat[at(loose)][0], problem.nodes[at(loose)][0] + drift, 1e-12);
}

TEST(OneStepDevelopable, AQuadrilateralGivenWithARepeatedNodeIsATriangle)
{
    Problem problem = cylinderPart(Cells::Triangles);
    Solution const triangles = Solve(problem, {}, {});
    for (Element & element : problem.elements)
        element.nodes[3] = element.nodes[2];
    Solution const repeated = Solve(problem, {}, {});
    ASSERT_EQ(repeated.status, Status::Converged) << repeated.message;
    EXPECT_EQ(triangles.flat, repeated.flat);
    EXPECT_EQ(repeated.stride, 4);
    for (std::size_t p = 0; p < 4; ++p) // all four places read the triangle's one point
        EXPECT_EQ(repeated.strains.top[3 * p], triangles.strains.top[0]);
}
