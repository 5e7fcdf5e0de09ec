// RunChecksTest.cpp. What a result must satisfy, on outcomes made by hand.

#include "RunChecks.h"
#include "SyntheticOutcome.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace voz::workbench;

namespace
{
Outcome Plate()
{
    Outcome outcome = test::plateWithHole(100.0, 60.0, 10.0, 32, 3);
    Summarise(outcome);
    return outcome;
}

OutcomeCheck Named(Outcome const & i_outcome, std::string const & i_begin)
{
    for (OutcomeCheck const & check : CheckOutcome(Job(), i_outcome))
        if (check.name.starts_with(i_begin))
            return check;
    return {};
}
} // namespace

TEST(RunChecks, TheLimitCurveMustCoverTheStrainsThatWereFound)
{
    Outcome outcome = Plate();
    OutcomeCheck const sound = Named(outcome, "minor strain within");
    EXPECT_TRUE(sound.passed);
    EXPECT_TRUE(sound.isWarning);
    EXPECT_EQ(sound.limit, "at most 45.8 %, where the curve ends");
    outcome.elements[3].minor = 45.9;
    EXPECT_FALSE(Named(outcome, "minor strain within").passed);
    outcome.limit = FormingLimit(1.6, 0.2, 0.8, 10.0, 8.0, 35.0, 1);
    EXPECT_EQ(Named(outcome, "minor strain within").limit, "at most 22.9 %, where the curve ends") << "the halved one";
}

TEST(RunChecks, ASymmetricPartMustHaveASymmetricBlank)
{
    Outcome outcome = Plate();
    std::optional<OutcomeCheck> check = SymmetryCheck(Job(), outcome);
    ASSERT_TRUE(check);
    EXPECT_TRUE(check->passed);
    EXPECT_EQ(check->value, "0.000 mm");
    // Wherever the blank lies and however it is turned.
    for (NodeOutcome & node : outcome.nodes)
        node.flat = {7.0 - node.flat[1], 3.0 + node.flat[0], 0.0};
    EXPECT_TRUE(SymmetryCheck(Job(), outcome)->passed);
    outcome.nodes.back().flat[1] += 3.0; // away from the middle
    check = SymmetryCheck(Job(), outcome);
    EXPECT_FALSE(check->passed);
    EXPECT_TRUE(check->isWarning);
    EXPECT_EQ(check->limit, "at most 1.000 mm") << "a hundredth of the blank";
}

TEST(RunChecks, NobodyAsksForSymmetryWhereThePartOrTheProcessHasNone)
{
    Outcome outcome = Plate();
    Job job;
    job.beads.push_back({});
    EXPECT_FALSE(SymmetryCheck(job, outcome)) << "a bead on one side";
    outcome.part.GetNodeData()[5][0] += 1.0;
    EXPECT_FALSE(SymmetryCheck(Job(), outcome)) << "a node without an image";
}
