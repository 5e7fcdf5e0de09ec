// EvaluateFixture.h: the kernel's door of one stage, opened for an answer or for a refusal.

#ifndef EVALUATEFIXTURE_H
#define EVALUATEFIXTURE_H

#include "CATError.h"
#include "JobFixture.h"
#include "VOZUtilitySolving.h"

#include <gtest/gtest.h>

namespace jobtest
{

inline std::string errorOf(Job & job)
{
    try
    {
        VOZUtilitySolving::Evaluate(job.data.get(), nullptr, nullptr, nullptr);
    }
    catch (CATError const & error)
    {
        EXPECT_EQ(job.result->m_padStrainComponentsMid, nullptr);
        EXPECT_EQ(job.result->m_dPunchForce, 0.0);
        return error.Message();
    }
    return "solved";
}

inline void solve(Job & job)
{
    ASSERT_EQ(VOZUtilitySolving::Evaluate(job.data.get(), nullptr, nullptr, nullptr), VOZUtilitySolving::Done);
}

} // namespace jobtest

#endif
