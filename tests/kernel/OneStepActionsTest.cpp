// OneStepActionsTest.cpp: constraints, holders, beads, pads and friction in whole solves of small parts.

#include "OneStepMeshes.h"

#include <gtest/gtest.h>

using namespace onesteptest;
using namespace voz::onestep;

TEST(OneStepConstraints, AngleAboveAThousandHoldsBothComponents)
{
    Problem problem = smallCup();
    problem.constraints.push_back({40, 1500.0, 0.123});
    Solution const solution = Solve(problem, {}, {});
    ASSERT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_NEAR(solution.flat[40][0], problem.nodes[40][0], 1e-15);
    EXPECT_NEAR(solution.flat[40][1], problem.nodes[40][1], 1e-15);
}

TEST(OneStepConstraints, AnObliqueOneHoldsItsDirectionAlone)
{
    Problem problem = problemOf(voz::examples::cup({}, 1, Extent::Whole, Cells::Quads));
    int const node = static_cast<int>(problem.nodes.size()) - 3;
    auto const p = problem.nodes[at(node)];
    double const c = std::cos(0.7), s = std::sin(0.7);
    problem.constraints = {{node, 0.7, 0.002}};
    Solution const solution = Solve(problem, {}, {});
    ASSERT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_NEAR(c * solution.flat[at(node)][0] + s * solution.flat[at(node)][1], c * p[0] + s * p[1] + 0.002, 1e-12);
}

TEST(OneStepConstraints, UnusedRecordsAreSkipped)
{
    Problem problem = smallCup();
    Solution const before = Solve(problem, {}, {});
    problem.constraints.push_back({-1, 0.3, 5.0});
    problem.constraints.push_back({1000000, std::nan(""), 5.0});
    Solution const after = Solve(problem, {}, {});
    EXPECT_EQ(before.flat, after.flat);
}

TEST(OneStepActions, AnEnormousForceIsALock)
{
    Problem problem = smallCup(0.0);
    restrainRim(problem, 1.0e9);
    Solution const solution = Solve(problem, {}, {});
    ASSERT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_EQ(solution.lockedEdges, 6); // the rim alone, not the planes of symmetry
    for (std::size_t i = 0; i < problem.nodes.size(); ++i)
    {
        bool const onRim = std::hypot(problem.nodes[i][0], problem.nodes[i][1]) > 0.0569;
        for (std::size_t k = 0; k < 2 && onRim; ++k)
            EXPECT_NEAR(solution.flat[i][k], problem.nodes[i][k], 1e-15);
    }
}

TEST(OneStepActions, EdgesInPlanesOfSymmetryCarryNoRestraint)
{
    Problem all = smallCup(20.0), rim = smallCup(0.0);
    for (HolderEdge const & edge : all.holders)
    {
        auto const & nodes = all.elements[at(edge.element)].nodes;
        auto const radius = [&](int corner)
        { return std::hypot(all.nodes[at(nodes[at(corner)])][0], all.nodes[at(nodes[at(corner)])][1]); };
        if (radius(edge.corner1) > 0.0569 && radius(edge.corner2) > 0.0569)
            rim.holders.push_back(edge);
    }
    EXPECT_EQ(rim.holders.size(), 6u);
    EXPECT_LT(rim.holders.size(), all.holders.size());
    EXPECT_EQ(Solve(all, {}, {}).flat, Solve(rim, {}, {}).flat);
}

TEST(OneStepActions, RestraintStretchesAndShrinksTheBlank)
{
    double before = 1.0;
    for (double const force : {0.0, 20.0, 100.0, 200.0})
    {
        Problem const problem = smallCup(force);
        Solution const solution = Solve(problem, {}, {});
        ASSERT_EQ(solution.status, Status::Converged) << solution.message;
        double const reach = reachAlong(problem, solution, 0.0) * 1e-3;
        EXPECT_LT(reach, before);
        before = reach;
    }
}

// A bead along the whole flange acts like the same restraint at the rim beyond it.
TEST(OneStepActions, ABeadPullsAwayFromTheInside)
{
    Problem problem = smallCup(0.0);
    double const free = reachAlong(problem, Solve(problem, {}, {}), 0.0);
    Problem const held = smallCup(50.0);
    double const restrained = reachAlong(held, Solve(held, {}, {}), 0.0);
    for (FreeSide const & side : freeSides(problem)) // a line through the middle of each rim triangle, along the rim
    {
        auto const & nodes = problem.elements[at(side.element)].nodes;
        if (std::hypot(problem.nodes[at(side.node1)][0], problem.nodes[at(side.node1)][1]) < 0.0569 ||
            std::hypot(problem.nodes[at(side.node2)][0], problem.nodes[at(side.node2)][1]) < 0.0569)
            continue;
        int const inner = 3 - side.corner1 - side.corner2;
        ASSERT_GE(nodes[at(inner)], 0);
        std::array<std::array<double, 2>, 3> const corner = {{{0, 0}, {1, 0}, {0, 1}}};
        auto const middle = [&](int k, std::size_t c) { return 0.05 * corner[at(inner)][c] + 0.95 * corner[at(k)][c]; };
        problem.beads.push_back(
            {side.element,
             50.0e3 / 0.95,
             {middle(side.corner1, 0), middle(side.corner1, 1), middle(side.corner2, 0), middle(side.corner2, 1)}});
    }
    ASSERT_EQ(problem.beads.size(), 6u);
    double const beaded = reachAlong(problem, Solve(problem, {}, {}), 0.0);
    EXPECT_LT(beaded, free);
    EXPECT_NEAR(beaded, restrained, 0.1 * (free - restrained));
}

TEST(OneStepActions, ABeadWithoutCoordinatesIsSkippedAndCounted)
{
    Problem problem = smallCup();
    Solution const before = Solve(problem, {}, {});
    problem.beads.push_back({3, 1e5, {0.0, 0.0, 0.0, 0.0}});
    Solution const after = Solve(problem, {}, {});
    EXPECT_EQ(before.flat, after.flat);
    ASSERT_FALSE(after.warnings.empty());
    EXPECT_NE(after.warnings[0].find("1 draw-bead segments"), std::string::npos);
}

TEST(OneStepActions, APadHoldsTheFlangeBack)
{
    Problem problem = smallCup(0.0);
    double const free = reachAlong(problem, Solve(problem, {}, {}), 0.0);
    problem.padShear.assign(problem.elements.size(), 0.0);
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
    {
        double least = 1.0;
        for (int k = 0; k < 3; ++k)
        {
            auto const & p = problem.nodes[at(problem.elements[e].nodes[at(k)])];
            least = std::min(least, std::hypot(p[0], p[1]));
        }
        problem.padShear[e] = least > 0.0449 ? 1.5e6 : 0.0;
    }
    Solution const solution = Solve(problem, {}, {});
    ASSERT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_LT(reachAlong(problem, solution, 0.0), free - 0.05);
}

TEST(OneStepActions, ToolFrictionRaisesTheForce)
{
    Problem problem = smallCup();
    double const smooth = Solve(problem, {}, {}).punchForce;
    problem.toolFriction = 0.144;
    EXPECT_GT(Solve(problem, {}, {}).punchForce, 1.15 * smooth);
}
