// SpringbackStepsTest.cpp: how the stresses are let go, and what holds the part meanwhile.

#include "SpringbackFixture.h"

#include <algorithm>

using namespace springtest;
using voz::springback::Settings;

namespace
{

// Turns by 0.7 rad while it springs back.
Problem arc()
{
    return sector(100.0, 2.0, 12, 2, Cells::Triangles);
}

double greatestDifference(std::vector<std::array<double, 3>> const & a, std::vector<std::array<double, 3>> const & b)
{
    EXPECT_EQ(a.size(), b.size());
    double greatest = 0.0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        greatest = std::max(greatest, std::hypot(a[i][0] - b[i][0], a[i][1] - b[i][1], a[i][2] - b[i][2]));
    return greatest;
}

} // namespace

TEST(SpringbackSteps, TheShapeDoesNotDependOnTheStepsOfTheLoad)
{
    Problem const problem = arc();
    Solution const four = solve(problem);
    EXPECT_EQ(four.loadSteps, 4);
    for (double const first : {1.0, 0.5, 0.1})
    {
        Settings settings;
        settings.firstLoadStep = first;
        Solution const solution = solve(problem, settings);
        EXPECT_EQ(solution.loadSteps, static_cast<int>(std::lround(1.0 / first)));
        EXPECT_LT(greatestDifference(solution.shape, four.shape), 1e-6 * four.greatestMove) << first;
    }
}

TEST(SpringbackSteps, AStepThatFailsIsHalvedFromTheLastBalance)
{
    Problem const problem = arc();
    Settings settings;
    settings.maxSteps = 4; // too few for a quarter of the load
    settings.leastLoadStep = 1.0e-4;
    std::vector<std::string> log;
    voz::onestep::Progress progress;
    progress.log = [&log](std::string const & line) { log.push_back(line); };
    std::vector<double> reports;
    progress.report = [&reports](double percent)
    {
        reports.push_back(percent);
        return 0;
    };
    Solution const solution = voz::springback::Solve(problem, settings, progress);
    ASSERT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_GT(solution.loadSteps, 4);
    EXPECT_TRUE(std::ranges::any_of(
        log, [](std::string const & line)
        { return line.find("no balance at load ") == 0 && line.find(": back to ") != std::string::npos; }));
    EXPECT_TRUE(std::ranges::is_sorted(reports));
    EXPECT_LT(greatestDifference(solution.shape, solve(problem).shape), 1e-6 * solution.greatestMove);
}

TEST(SpringbackSteps, WithoutBalanceThereIsNoShapeAndTheMessageTellsWhere)
{
    Settings settings;
    settings.maxSteps = 1;
    Solution const solution = voz::springback::Solve(arc(), settings, {});
    EXPECT_EQ(solution.status, Status::Failed);
    EXPECT_TRUE(solution.shape.empty());
    EXPECT_NE(solution.message.find("no balance was found beyond 0 % of the stresses"), std::string::npos)
        << solution.message;
    EXPECT_NE(solution.message.find(" of element "), std::string::npos) << solution.message;
}

TEST(SpringbackSteps, AToleranceBelowRoundingGivesAShapeWithAWarning)
{
    Settings settings;
    settings.tolerance = 1.0e-30;
    Problem const problem = arc();
    Solution const solution = voz::springback::Solve(problem, settings, {});
    EXPECT_EQ(solution.status, Status::Accepted);
    ASSERT_EQ(solution.warnings.size(), 1U);
    EXPECT_EQ(solution.warnings[0].find("balance was reached to "), 0U);
    EXPECT_LT(greatestDifference(solution.shape, solve(problem).shape), 1e-6 * solution.greatestMove);
}

TEST(SpringbackSteps, WhatHeldNodesLeaveFreeIsPinnedWithoutForce)
{
    Problem const clamped = arc();
    Solution const expected = solve(clamped);
    Problem problem = clamped;
    problem.clamped.clear();
    for (std::size_t const held : {std::size_t{0}, std::size_t{1}, std::size_t{2}})
    {
        problem.fixed.clear();
        for (std::size_t k = 0; k < held; ++k) // of one generator
            problem.fixed.push_back(clamped.clamped[k]);
        std::string pinned;
        voz::onestep::Progress progress;
        progress.log = [&pinned](std::string const & line)
        {
            if (line.find("rigid motions are pinned") != std::string::npos)
                pinned = line;
        };
        Solution const solution = voz::springback::Solve(problem, {}, progress);
        ASSERT_EQ(solution.status, Status::Converged);
        EXPECT_EQ(pinned.substr(0, 2), held == 0 ? "3 " : "1 ") << pinned; // planes hold y and two turns
        EXPECT_LT(solution.pinReaction, 1e-8);
        for (int const node : problem.fixed)
            EXPECT_EQ(solution.shape[static_cast<std::size_t>(node)], problem.formed[static_cast<std::size_t>(node)]);
        double worst = 0.0; // of distances from the first node
        for (std::size_t i = 1; i < solution.shape.size(); ++i)
        {
            auto const d = [i](std::vector<std::array<double, 3>> const & x)
            { return std::hypot(x[i][0] - x[0][0], x[i][1] - x[0][1], x[i][2] - x[0][2]); };
            worst = std::max(worst, std::abs(d(solution.shape) - d(expected.shape)));
        }
        EXPECT_LT(worst, 1e-5 * expected.greatestMove) << held;
    }
}
