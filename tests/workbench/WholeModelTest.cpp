// WholeModelTest.cpp: a job on half a plate says the same of the whole plate.

#include "WholeModel.h"
#include "JobFixture.h"

#include <algorithm>
#include <cmath>

using namespace voz::workbench;

namespace
{
// The plate of the fixture, x from 0 to 8 and y from 0 to 6, with the plane x = 0.
class WholeModel : public JobFixture
{
protected:
    WholeJob Whole(std::string const & i_more) const
    {
        Job const job =
            ParseJob(Sound() + i_more + "[[symmetry.plane]]\nnormal = [1, 0, 0]\npoint_mm = [0, 0, 0]\n", JobPath());
        JobModel const model = ReadModel(job);
        return MakeWholeJob(job, model, FindTipping(job, model));
    }
};
} // namespace

TEST_F(WholeModel, HasBothHalvesWeldedAlongThePlane)
{
    WholeJob const whole = Whole("");
    VOZCatMesh const & mesh = whole.model.mesh.mesh;
    EXPECT_EQ(mesh.numNode(), 36) << "20 and 20, less the 4 on the plane";
    EXPECT_EQ(mesh.numElem(), 24);
    EXPECT_TRUE(whole.job.planes.empty());
    EXPECT_TRUE(whole.tipping.symmetry.noSymmetry());
    EXPECT_EQ(whole.tipping.undercut.size(), 24U);
    EXPECT_EQ(whole.model.report.loops.size(), 1U);
    EXPECT_NEAR(whole.model.report.area, 96.0, 1e-9);
    EXPECT_FALSE(whole.model.report.HasErrors());
}

TEST_F(WholeModel, IdsOfImagesAreNewOnes)
{
    WholeJob const whole = Whole("");
    std::vector<int> ids = whole.model.mesh.nodeIds;
    EXPECT_EQ(ids[0], 1);
    EXPECT_EQ(ids[20], 21);
    std::ranges::sort(ids);
    EXPECT_TRUE(std::ranges::adjacent_find(ids) == ids.end());
    EXPECT_EQ(whole.model.mesh.elementIds.back(), 24);
}

TEST_F(WholeModel, SetsSelectionsAndBeadsHoldTheirImages)
{
    WholeJob const whole = Whole(Everything());
    EXPECT_EQ(whole.model.mesh.sets[1].elements.size(), 6U);
    ASSERT_EQ(whole.job.pads.size(), 1U);
    EXPECT_EQ(ElementsOf(whole.job.pads[0].elements, whole.job, whole.model).size(), 18U);
    ASSERT_EQ(whole.job.holders.size(), 1U);
    EXPECT_NEAR(whole.job.holders[0].force, 10000.0, 1e-9) << "the force of the edges' images, too";
    EXPECT_EQ(NodesOf(whole.job.holders[0].edges, whole.job, whole.model).size(), 5U)
        << "one of the three on the plane";
    ASSERT_EQ(whole.job.beads.size(), 2U);
    EXPECT_NEAR(whole.job.beads[1].points[1][0], -25.4, 1e-9);
    EXPECT_NEAR(whole.job.beads[1].points[1][1], 0.0, 1e-12);
}

TEST_F(WholeModel, ADisplacementAcrossThePlaneTurnsItsSign)
{
    WholeJob const whole = Whole("[[constraint]]\nx = \"1.5 mm\"\nnodes = [5]\n");
    ASSERT_EQ(whole.job.constraints.size(), 2U);
    EXPECT_EQ(*whole.job.constraints[0].x, 1.5);
    EXPECT_EQ(*whole.job.constraints[1].x, -1.5);
    EXPECT_EQ(NodesOf(whole.job.constraints[1].nodes, whole.job, whole.model).size(), 1U);
}

TEST_F(WholeModel, OfAWholeJobIsTheJob)
{
    Job const job = ParseJob(Sound() + Everything(), JobPath());
    JobModel const model = ReadModel(job);
    WholeJob const whole = MakeWholeJob(job, model, FindTipping(job, model));
    EXPECT_EQ(whole.model.mesh.mesh.numNode(), 20);
    EXPECT_EQ(whole.job.beads.size(), job.beads.size());
    EXPECT_TRUE(whole.remarks.empty());
}
