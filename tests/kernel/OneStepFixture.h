// OneStepFixture.h: solving and telling in the tests of the one-step solver.

#ifndef ONESTEPFIXTURE_H
#define ONESTEPFIXTURE_H

#include "OneStepProblems.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace onesteptest
{

inline Solution solve(Problem const & problem, Settings const & settings = {})
{
    Solution solution = voz::onestep::Solve(problem, settings, {});
    EXPECT_EQ(solution.status, Status::Converged) << solution.message << " after " << solution.newtonSteps << " steps";
    EXPECT_LE(solution.residual, settings.tolerance);
    EXPECT_LE(solution.newtonSteps, 25);
    return solution;
}

// A measured number for the record of the run.
template <class... Values>
void tell(char const * format, Values... values)
{
    std::printf("             ");
    std::printf(format, values...);
    std::printf("\n");
}

} // namespace onesteptest

#endif
