// BinderTest.cpp: where the blank lies when it has closed on the binder.

#include "binder/Binder.h"
#include "OneStepMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using namespace voz::examples;
using namespace onesteptest;
using testing::HasSubstr;
using voz::binder::BinderSurface;
using voz::binder::Closing;
using voz::binder::TwoStages;
using voz::onestep::Solution;
using voz::onestep::Status;

constexpr double kPi = 3.141592653589793;

BinderSurface surfaceOf(Problem const & problem)
{
    return {problem.nodes, problem.elements};
}

using Place = std::function<Point3(double, double)>; // from x, y in mm

// A grid over the rectangle, mm; cells for which `leave` holds at the middle are left out.
Problem sheet(Point2 low, Point2 high, int columns, int rows, Cells cells, Place const & place,
              std::function<bool(double, double)> const & leave = {})
{
    Problem problem = gridPart(rows, columns, cells,
                               [&](double u, double v)
                               { return place(low[0] + u * (high[0] - low[0]), low[1] + v * (high[1] - low[1])); });
    if (!leave)
        return problem;
    std::vector<voz::onestep::Element> kept;
    std::size_t const perCell = problem.elements.size() / at(rows * columns);
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
    {
        auto const cell = static_cast<int>(e / perCell);
        double const u = (cell % columns + 0.5) / columns, v = (cell / columns + 0.5) / rows;
        if (!leave(low[0] + u * (high[0] - low[0]), low[1] + v * (high[1] - low[1])))
            kept.push_back(problem.elements[e]);
    }
    // nodes of no element stay: they are nobody's
    problem.elements = kept;
    return problem;
}

Point3 level(double x, double y)
{
    return {x, y, 0.0};
}

Problem plate(double halfX, double halfY, int columns, int rows, Cells cells)
{
    return sheet({-halfX, -halfY}, {halfX, halfY}, columns, rows, cells, level);
}

TwoStages closed(Problem const & part, Problem const & binder)
{
    TwoStages stages = voz::binder::solveWithBinder(part, surfaceOf(binder), {}, {});
    EXPECT_EQ(stages.binder.status, Status::Converged) << stages.binder.message;
    EXPECT_EQ(stages.part.status, Status::Converged) << stages.part.message;
    EXPECT_EQ(stages.closing.position.size(), part.nodes.size());
    return stages;
}

double greatestStrain(Solution const & solution)
{
    double greatest = 0.0;
    for (double const h : solution.strains.mid)
        greatest = std::max(greatest, std::abs(h));
    return greatest;
}

// --- Stage one -------------------------------------------------------------------------------------------------------

TEST(Binder, DevelopableBindersAreLaidFlatWithoutStrain)
{
    Problem const part = plate(10.0, 10.0, 2, 2, Cells::Quads);
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
        for (SurfaceMesh const & mesh :
             {cylinder(200.0, 0.4, 16, 150.0, 10, cells), cone(0.6, 60.0, 160.0, 0.8, 20, 8, cells)})
        {
            TwoStages const stages = closed(part, problemOf(mesh));
            EXPECT_LT(greatestStrain(stages.binder), 1.0e-12);
        }
}

// --- Closing ---------------------------------------------------------------------------------------------------------

// Inside, beyond the rim and over the opening alike: q = (X, z0).
TEST(Binder, OnAFlatBinderEveryNodeLiesAtItsHeight)
{
    for (Cells const partCells : {Cells::Triangles, Cells::Quads})
        for (Cells const binderCells : {Cells::Triangles, Cells::Quads})
        {
            Problem const part = problemOf(cup({}, 1, Extent::Whole, partCells));
            auto const place = [](double x, double y) { return Point3{x, y, 12.5}; };
            auto const hole = [](double x, double y) { return std::abs(x) < 30.0 && std::abs(y) < 30.0; };
            Problem const binder = sheet({-60.0, -70.0}, {60.0, 70.0}, 12, 14, binderCells, place, hole);
            TwoStages const stages = closed(part, binder);
            for (std::size_t i = 0; i < part.nodes.size(); ++i)
            {
                EXPECT_NEAR(stages.closing.position[i][0], stages.part.flat[i][0], 1e-14);
                EXPECT_NEAR(stages.closing.position[i][1], stages.part.flat[i][1], 1e-14);
                EXPECT_NEAR(stages.closing.position[i][2], 0.0125, 1e-14);
            }
            EXPECT_GT(stages.closing.onBinder, 20);
            EXPECT_GT(stages.closing.beyondRim, 5);
            EXPECT_GT(stages.closing.overOpening, 20);
            EXPECT_EQ(stages.closing.overlapped, 0);
            EXPECT_EQ(stages.closing.onBinder + stages.closing.beyondRim + stages.closing.overOpening,
                      static_cast<int>(part.nodes.size()));
        }
}

// q = (R sin(X/R), Y, R cos(X/R)) but for the facets: chords of length h for arcs, and their sagitta h^2/(8 R).
TEST(Binder, OnACylinderTheBlankWindsAroundIt)
{
    constexpr double radius = 200.0, halfAngle = 0.4;
    constexpr int strips = 32;
    double const h = 2.0 * radius * halfAngle / strips;
    Problem const part = sheet({-60.0, 30.0}, {60.0, 110.0}, 13, 9, Cells::Triangles, level);
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        TwoStages const stages = closed(part, problemOf(cylinder(radius, halfAngle, strips, 150.0, 10, cells)));
        EXPECT_EQ(stages.closing.onBinder, static_cast<int>(part.nodes.size()));
        for (std::size_t i = 0; i < part.nodes.size(); ++i)
        {
            double const x = 1000.0 * stages.part.flat[i][0], y = 1000.0 * stages.part.flat[i][1];
            auto const & q = stages.closing.position[i];
            double const slack = std::abs(x) * h * h / (24.0 * radius * radius) + h * h / (8.0 * radius) + 1e-9;
            EXPECT_NEAR(1000.0 * q[0], radius * std::sin(x / radius), slack);
            EXPECT_NEAR(1000.0 * q[1], y, 1e-9);
            EXPECT_NEAR(1000.0 * q[2], radius * std::cos(x / radius), slack);
            // exactly: on the chord of its facet
            double const chord = 2.0 * radius * std::sin(halfAngle / strips);
            double const facet = std::floor(x / chord), along = x / chord - facet;
            double const a = 2.0 * halfAngle / strips * facet, b = a + 2.0 * halfAngle / strips;
            EXPECT_NEAR(1000.0 * q[0], radius * ((1.0 - along) * std::sin(a) + along * std::sin(b)), 1e-9);
            EXPECT_NEAR(1000.0 * q[2], radius * ((1.0 - along) * std::cos(a) + along * std::cos(b)), 1e-9);
        }
    }
}

// An inclined plane goes on as a plane, over its rim and over its hole.
TEST(Binder, AnInclinedBinderGoesOnStraightAndFillsItsHoleStraight)
{
    constexpr double slope = 0.3;
    double const stretch = std::sqrt(1.0 + slope * slope);
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Problem const part = plate(70.0, 50.0, 14, 10, Cells::Triangles);
        auto const place = [=](double x, double y) { return Point3{x, y, slope * x}; };
        auto const hole = [](double x, double y) { return std::abs(x) < 16.0 && std::abs(y) < 16.0; };
        Problem const binder = sheet({-48.0, -32.0}, {48.0, 32.0}, 12, 8, cells, place, hole);
        TwoStages const stages = closed(part, binder);
        EXPECT_GT(stages.closing.overOpening, 4);
        EXPECT_GT(stages.closing.beyondRim, 20);
        for (std::size_t i = 0; i < part.nodes.size(); ++i)
        {
            double const x = stages.part.flat[i][0] / stretch;
            EXPECT_NEAR(stages.closing.position[i][0], x, 1e-12);
            EXPECT_NEAR(stages.closing.position[i][1], stages.part.flat[i][1], 1e-12);
            EXPECT_NEAR(stages.closing.position[i][2], slope * x, 1e-12);
        }
    }
}

// A quarter is laid flat with its planes of symmetry where they are: half the cylinder is the cylinder.
TEST(Binder, ABinderCutByAPlaneOfSymmetryStaysOnIt)
{
    SurfaceMesh const part = cup({}, 1, Extent::Half, Cells::Quads), whole = cup({}, 1, Extent::Whole, Cells::Quads);
    Problem half = problemOf(part);
    for (std::size_t i = 0; i < half.nodes.size(); ++i)
        if (half.nodes[i][0] == 0.0)
            half.constraints.push_back({static_cast<int>(i), 0.0, 0.0});
    constexpr double radius = 150.0;
    auto const place = [](double x, double y) {
        return Point3{radius * std::sin(x / radius), y, radius * std::cos(x / radius)};
    };
    // the opening reaches the plane: on the half it lies on the outer rim
    auto const hole = [](double x, double y) { return std::abs(x) < 30.0 && std::abs(y) < 40.0; };
    Problem const halfBinder = sheet({0.0, -80.0}, {80.0, 80.0}, 8, 16, Cells::Quads, place, hole);
    Problem const wholeBinder = sheet({-80.0, -80.0}, {80.0, 80.0}, 16, 16, Cells::Quads, place, hole);
    TwoStages const cut = closed(half, halfBinder), full = closed(problemOf(whole), wholeBinder);
    EXPECT_EQ(cut.closing.beyondRim, 0);
    EXPECT_GT(cut.closing.overOpening, 30);
    int compared = 0;
    for (std::size_t i = 0; i < part.nodes.size(); ++i)
    {
        if (part.nodes[i][0] == 0.0)
        {
            EXPECT_NEAR(cut.closing.position[i][0], 0.0, 1e-12);
        }
        for (std::size_t k = 0; k < whole.nodes.size(); ++k)
            if (std::hypot(part.nodes[i][0] - whole.nodes[k][0], part.nodes[i][1] - whole.nodes[k][1],
                           part.nodes[i][2] - whole.nodes[k][2]) < 1e-9)
            {
                ++compared;
                for (std::size_t axis = 0; axis < 3; ++axis)
                    EXPECT_NEAR(cut.closing.position[i][axis], full.closing.position[k][axis], 1e-6);
            }
    }
    EXPECT_EQ(compared, static_cast<int>(part.nodes.size()));
}

// Two sheets over each other: from what is single the blank stays on its sheet.
TEST(Binder, WhereTheBinderLiesOverItselfTheBlankKeepsToItsNeighboursHeight)
{
    Problem const part = plate(45.0, 20.0, 18, 8, Cells::Triangles);
    auto const lower = [](double x, double y) { return Point3{x, y, 0.0}; };
    auto const upper = [](double x, double y) { return Point3{x, y, 10.0}; };
    Problem binder = sheet({-50.0, -30.0}, {50.0, 30.0}, 10, 6, Cells::Quads, lower);
    Problem const over = sheet({-20.0, -10.0}, {20.0, 10.0}, 4, 2, Cells::Triangles, upper);
    int const shift = static_cast<int>(binder.nodes.size());
    binder.nodes.insert(binder.nodes.end(), over.nodes.begin(), over.nodes.end());
    for (auto element : over.elements)
    {
        for (int & node : element.nodes)
            node += node < 0 ? 0 : shift;
        binder.elements.push_back(element);
    }
    TwoStages const stages = closed(part, binder);
    EXPECT_GT(stages.closing.overlapped, 10);
    for (std::size_t i = 0; i < part.nodes.size(); ++i)
        EXPECT_NEAR(stages.closing.position[i][2], 0.0, 1e-12); // the lower one surrounds the upper one
}

TEST(Binder, TheSeamOfTwoSheetsThatOverlapIsCrossedOnce)
{
    Problem const part = plate(45.0, 20.0, 30, 6, Cells::Quads);
    Problem binder = sheet({-50.0, -30.0}, {10.0, 30.0}, 6, 6, Cells::Quads,
                           [](double x, double y) {
                               return Point3{x, y, 0.0};
                           });
    Problem const right = sheet({-10.0, -30.0}, {50.0, 30.0}, 6, 6, Cells::Quads,
                                [](double x, double y) {
                                    return Point3{x, y, 5.0};
                                });
    int const shift = static_cast<int>(binder.nodes.size());
    binder.nodes.insert(binder.nodes.end(), right.nodes.begin(), right.nodes.end());
    for (auto element : right.elements)
    {
        for (int & node : element.nodes)
            node += shift;
        binder.elements.push_back(element);
    }
    TwoStages const stages = closed(part, binder);
    EXPECT_GT(stages.closing.overlapped, 20);
    for (int row = 0; row <= 6; ++row)
    {
        bool crossed = false;
        for (int column = 0; column <= 30; ++column)
        {
            std::size_t const i = at(row * 31 + column);
            bool const high = stages.closing.position[i][2] > 0.0025;
            EXPECT_NEAR(stages.closing.position[i][2], high ? 0.005 : 0.0, 1e-12);
            EXPECT_TRUE(high || !crossed);
            crossed = crossed || high;
            if (part.nodes[i][0] < -0.0101)
            {
                EXPECT_FALSE(high);
            }
            if (part.nodes[i][0] > 0.0101)
            {
                EXPECT_TRUE(high);
            }
        }
    }
}

TEST(Binder, ABlankThatMissesTheBinderGoesOnFromTheNearestRim)
{
    Problem const part = plate(10.0, 10.0, 4, 4, Cells::Quads);
    Problem const binder = sheet({100.0, 100.0}, {120.0, 120.0}, 2, 2, Cells::Triangles,
                                 [](double x, double y) {
                                     return Point3{x, y, 3.0};
                                 });
    TwoStages const stages = closed(part, binder);
    EXPECT_EQ(stages.closing.beyondRim, 25);
    for (std::size_t i = 0; i < part.nodes.size(); ++i)
        EXPECT_NEAR(stages.closing.position[i][2], 0.003, 1e-13);
}

// --- The run ---------------------------------------------------------------------------------------------------------

TEST(Binder, ThePartsStrainsAreThoseWithoutABinder)
{
    Problem const part = quarterCup({}, 2, Cells::Triangles, 20.0);
    Solution const alone = voz::onestep::Solve(part, {}, {});
    TwoStages const stages = closed(part, problemOf(cylinder(300.0, 0.4, 12, 200.0, 8, Cells::Quads)));
    EXPECT_EQ(stages.part.strains.mid, alone.strains.mid);
    EXPECT_EQ(stages.part.strains.top, alone.strains.top);
    EXPECT_EQ(stages.part.flat, alone.flat);
    EXPECT_EQ(stages.part.punchForce, alone.punchForce);
}

TEST(Binder, StageOneTakesThirtyPercentAndProgressNeverFalls)
{
    Problem const part = quarterCup({}, 1, Cells::Quads, 20.0);
    Problem const binder = problemOf(dome(300.0, 0.4, 2, Extent::Whole, Cells::Triangles));
    std::vector<double> told;
    std::vector<std::string> lines;
    std::size_t toldBeforeTwo = 0;
    voz::onestep::Progress progress;
    progress.report = [&](double percent)
    {
        told.push_back(percent);
        return 0;
    };
    progress.log = [&](std::string const & line)
    {
        lines.push_back(line);
        if (line == "stage 2: the part")
            toldBeforeTwo = told.size();
    };
    voz::binder::solveWithBinder(part, surfaceOf(binder), {}, progress);
    ASSERT_GT(toldBeforeTwo, 3U);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_DOUBLE_EQ(told[toldBeforeTwo - 1], 30.0);
    EXPECT_DOUBLE_EQ(told.back(), 100.0);
    EXPECT_EQ(lines.front(), "stage 1: the binder is laid flat");
    EXPECT_THAT(lines.back(), HasSubstr("blank on the binder: "));
}

TEST(Binder, ABinderThatCannotBeLaidFlatIsNamed)
{
    Problem const part = plate(10.0, 10.0, 2, 2, Cells::Quads);
    SurfaceMesh const tetrahedron{{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {0, 0, 10}},
                                  {{0, 2, 1, -1}, {0, 1, 3, -1}, {1, 2, 3, -1}, {2, 0, 3, -1}}};
    TwoStages const stages = voz::binder::solveWithBinder(part, surfaceOf(problemOf(tetrahedron)), {}, {});
    EXPECT_EQ(stages.part.status, Status::Refused);
    EXPECT_THAT(stages.part.message, testing::StartsWith("binder: "));
    EXPECT_TRUE(stages.closing.position.empty());
    BinderSurface wrong = surfaceOf(part);
    wrong.elements[0].nodes[1] = 99;
    EXPECT_THAT(voz::binder::solveWithBinder(part, wrong, {}, {}).part.message,
                testing::StartsWith("binder: element 0"));
}

} // namespace
