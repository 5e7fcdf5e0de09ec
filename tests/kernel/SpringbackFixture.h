// SpringbackFixture.h: springback problems solved and told about in tests.

#ifndef SPRINGBACKFIXTURE_H
#define SPRINGBACKFIXTURE_H

#include "SpringbackCases.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace springtest
{

inline Solution solve(Problem const & problem, voz::springback::Settings const & settings = {})
{
    Solution solution = voz::springback::Solve(problem, settings, {});
    EXPECT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_LT(solution.imbalance, 1.0e-10);
    EXPECT_LE(solution.residual, settings.tolerance);
    return solution;
}

template <class... Values>
void tell(char const * format, Values... values)
{
    std::printf("             ");
    std::printf(format, values...);
    std::printf("\n");
}

} // namespace springtest

#endif
