// OneStepLadderTest.cpp: the way to an answer: progress, a stop on request, fallbacks, a failure's place.

#include "OneStepMeshes.h"

#include <gtest/gtest.h>

using namespace onesteptest;
using namespace voz::onestep;

TEST(OneStepProgress, NeverRunsBackwardsAndStopsOnRequest)
{
    double last = 0.0;
    int calls = 0;
    bool forward = true;
    Progress watch;
    watch.report = [&](double percent)
    {
        forward = forward && percent >= last;
        last = percent;
        ++calls;
        return 0;
    };
    Problem const problem = smallCup();
    ASSERT_EQ(Solve(problem, {}, watch).status, Status::Converged);
    EXPECT_TRUE(forward);
    EXPECT_NEAR(last, 100.0, 1e-9);
    for (int const stopAt : {1, calls / 2, calls - 2})
    {
        int count = 0;
        Progress stop;
        stop.report = [&](double) { return ++count >= stopAt ? 1 : 0; };
        Solution const solution = Solve(problem, {}, stop);
        EXPECT_EQ(solution.status, Status::Stopped);
        EXPECT_EQ(count, stopAt); // asked no more after the wish
        EXPECT_TRUE(solution.flat.empty());
    }
}

TEST(OneStepLadder, FailureTellsThePlace)
{
    Settings hopeless;
    hopeless.maxSteps = 1;
    Solution const solution = Solve(smallCup(), hopeless, {});
    EXPECT_EQ(solution.status, Status::Failed);
    EXPECT_NE(solution.message.find("at node"), std::string::npos) << solution.message;
    EXPECT_NE(solution.message.find("of element"), std::string::npos);
}

// Three steps solve the easier problems, but not to a tolerance that no rounding allows.
TEST(OneStepLadder, TheLastIncrementOfTheForcesIsHalvedToo)
{
    Settings few;
    few.maxSteps = 3;
    few.tolerance = 1.0e-15;
    std::string lines;
    Progress watch;
    watch.log = [&](std::string const & line) { lines += line + "\n"; };
    Solve(smallCup(), few, watch);
    for (char const * level : {"0.25", "0.5", "0.75", "0.875", "0.9375", "0.96875", "0.984375"})
        EXPECT_NE(lines.find(std::string("outer forces at ") + level + "\n"), std::string::npos) << level;
    EXPECT_EQ(lines.find("0.9921875"), std::string::npos); // 1/64 is the least increment
}

TEST(OneStepLadder, AnswersFromAFallbackEqualTheDirectOnes)
{
    Settings slow;
    slow.maxSteps = 6; // too few for the straight way, enough for the steps of the ladder
    Problem const problem = smallCup();
    std::string lines;
    Progress watch;
    watch.log = [&](std::string const & line) { lines += line + "\n"; };
    Solution const solution = Solve(problem, slow, watch);
    ASSERT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_NE(lines.find("fallback"), std::string::npos);
    Solution const direct = Solve(problem, {}, {});
    for (std::size_t i = 0; i < direct.flat.size(); ++i)
        EXPECT_NEAR(solution.flat[i][0], direct.flat[i][0], 1e-8);
}
