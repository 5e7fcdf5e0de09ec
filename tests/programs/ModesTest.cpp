// ModesTest.cpp. A binder and wanted strains, against figures that come from elsewhere: the geometry of a cylinder, the
// differential equation of the cup.

#include "ExamplesFixture.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{
void LeaveOutputs(Job & io_job)
{
    io_job.outputs.report = io_job.outputs.vtu = io_job.outputs.dxf = io_job.outputs.svg = io_job.outputs.tables =
        false;
}
} // namespace

// --- Binder ------------------------------------------------------------------------------------------------
// On a cylinder of radius 300 the blank keeps its lengths along the arc and across it.
TEST_F(Examples, OnTheBinderTheBlankLiesOnItsCylinder)
{
    Job job = JobOf("curved_binder");
    LeaveOutputs(job);
    Outcome const outcome = FormedJob(job).outcome;
    ASSERT_TRUE(outcome.hasBinder);
    constexpr double kRadius = 300.0;
    std::vector<std::array<double, 2>> onArc;
    for (std::size_t n = 0; n < outcome.nodes.size(); ++n)
    {
        double const * const p = outcome.part.GetNodeData()[n + 1];
        Point3 const & step = outcome.nodes[n].onBinder;
        double const x = p[0] + step[0];
        double const z = p[2] + step[2];
        ASSERT_NEAR(std::hypot(x, z), kRadius, 2e-3) << n;
        onArc.push_back({kRadius * std::atan2(x, z), p[1] + step[1]});
    }
    for (std::size_t n = 1; n < outcome.nodes.size(); n += 7)
    {
        Point3 const & a = outcome.nodes[0].flat;
        Point3 const & b = outcome.nodes[n].flat;
        ASSERT_NEAR(std::hypot(onArc[n][0] - onArc[0][0], onArc[n][1] - onArc[0][1]),
                    std::hypot(b[0] - a[0], b[1] - a[1]), 5e-3)
            << n;
    }
    job.binder.reset();
    Outcome const without = FormedJob(job).outcome;
    EXPECT_FALSE(without.hasBinder);
    for (std::size_t e = 0; e < without.elements.size(); ++e)
        ASSERT_NEAR(outcome.elements[e].major, without.elements[e].major, 1e-5) << "strains are those from the flat";
}

// --- Wanted strains ----------------------------------------------------------------------------------------
// 1.69109 % at the pole is what 100 N/mm at the rim gives: blank radius and punch force of that case.
TEST_F(Examples, AutoStrainFindsTheRestraintOfAStrain)
{
    RunRecord const record = Formed("auto_strain_cup");
    OutcomeSummary const & summary = record.outcome.summary;
    EXPECT_NEAR(0.25 * (summary.blankWidth + summary.blankHeight), 65.75965, 0.05);
    EXPECT_NEAR(summary.punchForce, 54202.72, 0.015 * 54202.72);
    auto const check =
        std::ranges::find(record.outcome.checks, "major strain at the target point", &OutcomeCheck::name);
    ASSERT_NE(check, record.outcome.checks.end());
    EXPECT_TRUE(check->passed) << check->value;
}
