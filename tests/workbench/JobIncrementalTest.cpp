// JobIncrementalTest.cpp. What a job says of the incremental route.

#include "Job.h"
#include "JobFixture.h"

#include <gtest/gtest.h>

using namespace voz::workbench;

namespace
{
class JobIncrementalTest : public JobFixture
{
protected:
    Job Parsed(std::string const & i_text) const { return ParseJob(i_text, JobPath()); }
    std::string RefusalOf(std::string const & i_text) const
    {
        try
        {
            Parsed(i_text);
        }
        catch (InputError const & error)
        {
            return error.what();
        }
        return "not refused";
    }
};
} // namespace

TEST_F(JobIncrementalTest, TheIncrementalTableHasADefaultForEveryKey)
{
    EXPECT_FALSE(Parsed(Sound()).incremental);
    Job const job = Parsed(Sound() + "[incremental]\n");
    ASSERT_TRUE(job.incremental);
    EXPECT_EQ(job.incremental->templateName, "");
    EXPECT_FALSE(job.incremental->processFlag);
    EXPECT_EQ(job.incremental->processMode, 2);
    EXPECT_EQ(job.incremental->toolMode, 0);
    EXPECT_LT(job.incremental->clearance, 0.0) << "chosen by the thickness";
    EXPECT_EQ(job.incremental->blank + job.incremental->die + job.incremental->punch + job.incremental->binder, "");
    EXPECT_FALSE(job.incremental->isOpenSolver);
}

TEST_F(JobIncrementalTest, ModesOfTheIncrementalRouteTellTheirEffects)
{
    auto const effectOf = [this](std::string const & i_line, std::string const & i_key)
    {
        for (OutcomeParameter const & value : Parsed(Sound() + "[incremental]\n" + i_line).parameters)
            if (value.key == "incremental." + i_key)
                return value.effect;
        return std::string("no such value");
    };
    EXPECT_NE(effectOf("", "process_mode").find("one thickness before"), std::string::npos);
    EXPECT_NE(effectOf("process_mode = -2\n", "process_mode").find("one thickness before"), std::string::npos);
    EXPECT_NE(effectOf("process_mode = 1\n", "process_mode").find("where punch and die"), std::string::npos);
    EXPECT_NE(effectOf("tool_mode = 1\n", "tool_mode").find("one thickness nearer"), std::string::npos);
    EXPECT_NE(effectOf("", "tool_mode").find("where their meshes are"), std::string::npos);
    EXPECT_NE(effectOf("process_flag = true\n", "process_flag").find("flag set"), std::string::npos);
    EXPECT_NE(effectOf("", "process_flag").find("flag clear"), std::string::npos);
}

TEST_F(JobIncrementalTest, TheIncrementalTableIsKeptInTheLockedJob)
{
    Job const job = Parsed(Sound() + "[incremental]\ntemplate = \"mild-steel\"\nprocess_flag = true\n"
                                     "process_mode = -1\ntool_mode = 1\nclearance = \"0.05 mm\"\ndie = \"part.bdf\"\n"
                                     "length_unit = \"cm\"\nopen_solver = true\n");
    std::string const locked = LockedJob(job, {}, Folder());
    Job const again = ParseJob(locked, JobPath());
    ASSERT_TRUE(again.incremental);
    EXPECT_EQ(LockedJob(again, {}, Folder()), locked);
    EXPECT_EQ(again.incremental->templateName, "mild-steel");
    EXPECT_TRUE(again.incremental->processFlag);
    EXPECT_EQ(again.incremental->processMode, -1);
    EXPECT_EQ(again.incremental->toolMode, 1);
    EXPECT_EQ(again.incremental->clearance, 0.05);
    EXPECT_EQ(again.incremental->die, job.incremental->die);
    EXPECT_EQ(again.incremental->unitLength, 10.0);
    EXPECT_TRUE(again.incremental->isOpenSolver);
}

TEST_F(JobIncrementalTest, WhatTheIncrementalTableCannotMeanIsRefused)
{
    auto const refusal = [this](std::string const & i_line) { return RefusalOf(Sound() + "[incremental]\n" + i_line); };
    EXPECT_NE(refusal("process_mode = 3\n").find("must be from -2 to 2"), std::string::npos);
    EXPECT_NE(refusal("tool_mode = 2\n").find("must be 0"), std::string::npos);
    EXPECT_NE(refusal("clearance = \"-1 mm\"\n").find("must not be negative"), std::string::npos);
    EXPECT_NE(refusal("punch = \"none.bdf\"\n").find("incremental.punch: there is no file"), std::string::npos);
    EXPECT_NE(refusal("templat = \"a\"\n").find("the nearest valid key is \"template\""), std::string::npos);
}
