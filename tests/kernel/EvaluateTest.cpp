// EvaluateTest.cpp: the kernel's door: records in, results out. What it refuses stands in
// BadInputTest, the files of a run in EvaluateFilesTest.

#include "EvaluateFixture.h"
#include "SpoiledJobs.h"
#include "VOZHost.h"
#include "VOZSolverAutoBC.h"
#include "records/JobProblem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace
{

using namespace jobtest;
using testing::HasSubstr;

constexpr double kPi = 3.141592653589793;

double const * blankRow(Job const & job, int node)
{
    return job.blank->m_padNodalCoords + 3 * node;
}

double blankDistance(Job const & job, int a, int b)
{
    double const * const p = blankRow(job, a);
    double const * const q = blankRow(job, b);
    return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

// --- Answers
// -----------------------------------------------------------------------------------------------------------

TEST(Evaluate, WritesTheBlankInMetresAndTheStrainsOfThreeLayers)
{
    Job job = jobOf(patch(Cells::Triangles));
    solve(job);
    EXPECT_NEAR(blankDistance(job, 0, 4), 0.030, 1e-12);
    ASSERT_NE(job.result->m_padStrainComponentsMid, nullptr);
    ASSERT_NE(job.result->m_padEquivalentStress, nullptr);
    for (int i = 0; i < 48 * 3; ++i)
        EXPECT_NEAR(job.result->m_padStrainComponentsMid[i], 0.0, 1e-12);
    // The top is the outside of the bend: stretched by ln(1 + 0.39 / 20) across.
    double greatest = 0.0;
    for (int i = 0; i < 48 * 3; ++i)
        greatest = std::max(greatest, job.result->m_padStrainComponentsTop[i]);
    EXPECT_NEAR(greatest, 0.0193, 0.0005);
}

// Strides: 1 for triangles alone, with the other three places of each element unused; 4 as soon as any mesh of the
// job holds a quadrilateral, and then a triangle's point repeats.
TEST(Evaluate, StridesByOneForTrianglesAndByFourWithAQuadrilateralAnywhere)
{
    SurfaceMesh const mesh = patch(Cells::Triangles);
    Job plain = jobOf(mesh);
    solve(plain);
    Job withBinder = jobOf(mesh);
    withBinder.data->SetBinderMeshData(partOf(patch(Cells::Quads)), nullptr);
    solve(withBinder);
    for (std::size_t e = 0; e < mesh.elements.size(); ++e)
        for (std::size_t point = 0; point < 4; ++point)
            for (std::size_t k = 0; k < 3; ++k)
                EXPECT_EQ(withBinder.result->m_padStrainComponentsTop[(4 * e + point) * 3 + k],
                          plain.result->m_padStrainComponentsTop[e * 3 + k]);
    std::size_t const numElements = mesh.elements.size();
    for (std::size_t i = 3 * numElements; i < 12 * numElements; ++i)
        ASSERT_EQ(plain.result->m_padStrainComponentsTop[i], 0.0); // allocated, not used
}

TEST(Evaluate, ABinderWithACountThatIsNoneIsNotRead)
{
    Job job = jobOf(patch(Cells::Triangles));
    VOZMesh_s * const binder = partOf(patch(Cells::Quads));
    binder->m_psTopology->m_nNumElements = -7;
    job.data->SetBinderMeshData(binder, nullptr);
    solve(job);
}

TEST(Evaluate, TheFrameAndItsOriginCarryTheAnswer)
{
    // The part stands on end and far away: its stamping direction is the global x.
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Quads);
    Job straight = jobOf(mesh);
    quarterSymmetry(straight, mesh);
    solve(straight);

    SurfaceMesh moved = mesh;
    for (Point3 & p : moved.nodes)
        p = {p[2] + 500.0, p[0] - 200.0, p[1] + 70.0}; // local x is global y, local y is global z
    Job turned = jobOf(moved);
    quarterSymmetry(turned, mesh); // the same nodes
    double const rows[9] = {0, 1, 0, 0, 0, 1, 1, 0, 0};
    double const origin[3] = {0.5, -0.2, 0.07};
    turned.stage->SetLocalCS(rows, origin);
    solve(turned);
    for (int i = 0; i < static_cast<int>(mesh.nodes.size()); ++i)
    {
        double const * const p = blankRow(straight, i);
        double const * const q = blankRow(turned, i);
        EXPECT_EQ(p[2], 0.0);
        EXPECT_NEAR(q[0], 0.5, 1e-15); // the plane through the origin
        EXPECT_NEAR(q[1] + 0.2, p[0], 1e-10);
        EXPECT_NEAR(q[2] - 0.07, p[1], 1e-10);
    }
    EXPECT_NEAR(turned.result->m_dPunchForce, straight.result->m_dPunchForce, 1e-6 * straight.result->m_dPunchForce);
}

// A cup's quarter with restraint: forces are newtons per metre of edge, the punch force is in newtons.
TEST(Evaluate, TakesRestraintInNewtonsPerMetreAndGivesTheForceInNewtons)
{
    constexpr int k = 2;
    SurfaceMesh const mesh = cup({}, k, Extent::Quarter, Cells::Quads);
    Job job = jobOf(mesh);
    quarterSymmetry(job, mesh);
    constexpr int rim = 6 * k;
    auto * const edges = new VOZSolverBHF_s[rim];
    for (int i = 0; i < rim; ++i)
    {
        edges[i].m_nElement = static_cast<int>(mesh.elements.size()) - rim + i;
        edges[i].m_nFirstPosition = 1;
        edges[i].m_nSecondPosition = 2;
        edges[i].m_dForce = 20.0e3; // 20 N/mm
    }
    job.bc->SetBHFs(rim, edges);
    solve(job);
    double const * const last = blankRow(job, static_cast<int>(mesh.nodes.size()) - 1);
    EXPECT_NEAR(std::hypot(last[0], last[1]), 0.06689712, 5e-5);
    EXPECT_NEAR(4.0 * job.result->m_dPunchForce, 34511.86, 350.0);
}

// The value is the displacement from the part to the flat, in millimetres.
TEST(Evaluate, PrescribedDisplacementsAreMillimetresFromPartToFlat)
{
    SurfaceMesh mesh{{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {{0, 1, 2, 3}}};
    Job job = jobOf(mesh);
    auto * const records = new VOZSolverNodeConstraint2D_s[8];
    for (int i = 0; i < 4; ++i)
        for (int axis = 0; axis < 2; ++axis)
        {
            VOZSolverNodeConstraint2D_s & record = records[2 * i + axis];
            record.m_nNode = i;
            record.m_dAngle = axis == 0 ? 0.0 : kPi / 2.0;
            record.m_dDisplacement = axis == 0 && mesh.nodes[static_cast<std::size_t>(i)][0] > 5.0 ? -2.0 : 0.0;
        }
    job.bc->SetNodeConstraints2D(8, records);
    solve(job);
    EXPECT_NEAR(blankRow(job, 1)[0], 0.008, 1e-15);
    EXPECT_NEAR(blankRow(job, 2)[0], 0.008, 1e-15);
    EXPECT_NEAR(blankRow(job, 2)[1], 0.010, 1e-15);
    EXPECT_NEAR(job.result->m_padStrainComponentsMid[0], std::log(10.0 / 8.0), 1e-12);
    EXPECT_NEAR(job.result->m_padStrainComponentsMid[1], 0.0, 1e-12);
}

TEST(Evaluate, TheSentinelAngleHoldsBothDirections)
{
    SurfaceMesh const mesh = dome(50.0, 40.0 * kPi / 180.0, 1, Extent::Whole, Cells::Triangles);
    Job job = jobOf(mesh);
    std::size_t const rim = 24;
    auto * const records = new VOZSolverNodeConstraint2D_s[rim];
    for (std::size_t i = 0; i < rim; ++i)
    {
        records[i].m_nNode = static_cast<int>(mesh.nodes.size() - rim + i);
        records[i].m_dAngle = 1001.0;
        records[i].m_dDisplacement = 7.0; // plays no part
    }
    job.bc->SetNodeConstraints2D(static_cast<int>(rim), records);
    solve(job);
    for (std::size_t i = mesh.nodes.size() - rim; i < mesh.nodes.size(); ++i)
        for (std::size_t k = 0; k < 2; ++k)
            EXPECT_NEAR(blankRow(job, static_cast<int>(i))[k], 0.001 * mesh.nodes[i][k], 1e-14);
}

TEST(Evaluate, ConstraintsWithoutANodeOfTheMeshArePassedOver)
{
    SurfaceMesh const mesh = patch(Cells::Triangles);
    Job job = jobOf(mesh);
    auto * const records = new VOZSolverNodeConstraint2D_s[3];
    records[1].m_nNode = static_cast<int>(mesh.nodes.size());
    records[2].m_nNode = -7;
    records[2].m_dAngle = std::numeric_limits<double>::quiet_NaN(); // never looked at
    job.bc->SetNodeConstraints2D(3, records);
    solve(job);
}

TEST(Evaluate, ToolFrictionActsOnlyWithTheProcessFlag)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Quads);
    double force[3];
    for (int turn = 0; turn < 3; ++turn)
    {
        Job job = jobOf(mesh);
        quarterSymmetry(job, mesh);
        constexpr int rim = 6;
        auto * const edges = new VOZSolverBHF_s[rim];
        for (int i = 0; i < rim; ++i)
        {
            edges[i].m_nElement = static_cast<int>(mesh.elements.size()) - rim + i;
            edges[i].m_nFirstPosition = 1;
            edges[i].m_nSecondPosition = 2;
            edges[i].m_dForce = 20.0e3;
        }
        job.bc->SetBHFs(rim, edges);
        job.bc->SetProcess(turn == 2, turn == 0 ? 0.0 : 0.144);
        solve(job);
        force[turn] = job.result->m_dPunchForce;
    }
    EXPECT_EQ(force[1], force[0]);
    EXPECT_GT(force[2], 1.2 * force[0]);
}

// Two sheets side by side, pulled by one force: each stretches by its own law. The closed form of plane strain is
// t0 exp(-B h) k sbar(k h) = f; a sheet of twice the thickness and half the strength carries it at the same strain.
TEST(Evaluate, EveryElementHasTheThicknessAndTheLawOfItsMaterial)
{
    SurfaceMesh mesh;
    for (int i = 0; i <= 8; ++i)
        for (int j = 0; j <= 2; ++j)
            mesh.nodes.push_back({10.0 * i, 5.0 * j, 0.0});
    for (int i = 0; i < 8; ++i)
        for (int j = 0; j < 2; ++j)
        {
            int const a = 3 * i + j;
            mesh.elements.push_back({a, a + 3, a + 4, a + 1});
        }
    Sheet const steel;
    Sheet thick = steel; // twice as thick: much less strain
    thick.thickness *= 2.0;
    Job job = jobOf(mesh, {steel, thick});
    for (int e = 8; e < 16; ++e)
        job.part->GetElements()[e].m_nMaterialIndex = 1;
    auto * const records = new VOZSolverNodeConstraint2D_s[30];
    int count = 0;
    for (int i = 0; i <= 8; ++i)
        for (int j : {0, 2})
        {
            records[count].m_nNode = 3 * i + j;
            records[count++].m_dAngle = kPi / 2.0; // plane strain
        }
    for (int j = 0; j <= 2; ++j)
        records[count++].m_nNode = j; // x = 0 held
    job.bc->SetNodeConstraints2D(count, records);
    auto * const edges = new VOZSolverBHF_s[2];
    for (int j = 0; j < 2; ++j)
        edges[j] = {14 + j, 0, 240.0e3, 1, 2};
    job.bc->SetBHFs(2, edges);
    solve(job);
    for (int e = 0; e < 16; ++e)
        EXPECT_NEAR(job.result->m_padStrainComponentsMid[12 * e], e < 8 ? 0.023293 : 0.000470, 1e-6) << e;
}

TEST(Evaluate, ATableOfPointsReplacesThePowerLaw)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Quads);
    Job power = jobOf(mesh);
    quarterSymmetry(power, mesh);
    solve(power);
    Job table = jobOf(mesh);
    quarterSymmetry(table, mesh);
    VOZMechanicalProp_s & prop = table.data->m_pasMaterialProperties[0];
    Sheet const sheet;
    double const e0 = std::pow(sheet.yield / sheet.k, 1.0 / sheet.n);
    constexpr int points = 60;
    prop.m_nNumPoints = points;
    prop.m_padPoints = new double[2 * points];
    for (int i = 0; i < points; ++i)
    {
        double const strain = 0.6 * std::pow(i / (points - 1.0), 3.0);
        prop.m_padPoints[2 * i] = strain;
        prop.m_padPoints[2 * i + 1] = sheet.k * std::pow(e0 + strain, sheet.n);
    }
    prop.m_dKValue = prop.m_dNValue = 0.0; // not looked at
    VOZMechanicalProp_s::EvalMechanicalDataForSolver(prop);
    solve(table);
    int const rim = static_cast<int>(mesh.nodes.size()) - 1;
    EXPECT_NEAR(blankRow(table, rim)[1], blankRow(power, rim)[1], 2e-5);
    EXPECT_NEAR(table.result->m_dPunchForce, power.result->m_dPunchForce, 0.01 * power.result->m_dPunchForce);
}

TEST(Evaluate, ASecondRunReplacesTheFirstOnesResults)
{
    Job job = jobOf(patch(Cells::Triangles));
    solve(job);
    double const first = job.result->m_padStrainComponentsTop[0];
    solve(job);
    EXPECT_EQ(job.result->m_padStrainComponentsTop[0], first);
}

// --- Progress --------------------------------------------------------------------------------------------------------

struct Watch
{
    std::vector<double> percents;
    void * reserved = nullptr;
    int stopAfter = 1000;
};

int watch(double percent, void * task, void * reserved)
{
    auto * const self = static_cast<Watch *>(task);
    self->percents.push_back(percent);
    self->reserved = reserved;
    return static_cast<int>(self->percents.size()) > self->stopAfter ? 1 : 0;
}

TEST(Evaluate, ProgressRisesToAHundredWithBothPointersHandedThrough)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Triangles);
    Job job = jobOf(mesh);
    quarterSymmetry(job, mesh);
    Watch self;
    int other = 0;
    EXPECT_EQ(VOZUtilitySolving::Evaluate(job.data.get(), watch, &self, &other), 0);
    ASSERT_GT(self.percents.size(), 3U);
    EXPECT_TRUE(std::is_sorted(self.percents.begin(), self.percents.end()));
    EXPECT_GE(self.percents.front(), 0.0);
    EXPECT_EQ(self.percents.back(), 100.0);
    EXPECT_EQ(self.reserved, &other);
}

TEST(Evaluate, ANonzeroAnswerOfTheCallbackStopsTheRunWithoutResults)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Triangles);
    Job job = jobOf(mesh);
    quarterSymmetry(job, mesh);
    Watch self;
    self.stopAfter = 2;
    EXPECT_EQ(VOZUtilitySolving::Evaluate(job.data.get(), watch, &self, nullptr), VOZUtilitySolving::Stopped);
    EXPECT_EQ(job.result->m_padStrainComponentsMid, nullptr);
    EXPECT_EQ(blankRow(job, 5)[0], 0.0);
}

// A failed job leaves no trace of an earlier answer.
TEST(EvaluateRefuses, WithTheOldResultsTakenAway)
{
    Job job = jobOf(patch(Cells::Triangles));
    solve(job);
    prop(job).m_dRValue = kNaN;
    EXPECT_THAT(errorOf(job), HasSubstr("r-value"));
    Job sound = jobOf(patch(Cells::Triangles));
    solve(sound);
    sound.stage->SetBlankMeshData(nullptr); // before any number is looked at
    EXPECT_THAT(errorOf(sound), HasSubstr("has no blank mesh"));
}

// --- Conversion ------------------------------------------------------------------------------------------------------

TEST(JobProblem, ConvertsEveryRecordWithItsUnit)
{
    SurfaceMesh const mesh = patch(Cells::Quads);
    Job job = jobOf(mesh);
    holder(job, {2, 0, 9400.0, 3, 0});
    bead(job, 5, 1234.0, 0.5);
    constraint(job, 0.25, 3.0);
    auto * const shear = new double[24]();
    shear[3] = 2.5e5;
    job.bc->SetPressureFrictionValues(shear);
    job.bc->SetProcess(true, 0.12);
    job.part->m_padCurvatures = new double[72]();
    job.part->m_padCurvatures[4] = 50.0;
    auto const problem = ProblemOf(*job.data, *job.stage);
    ASSERT_EQ(problem.nodes.size(), mesh.nodes.size());
    EXPECT_DOUBLE_EQ(problem.nodes[8][2], 0.001 * mesh.nodes[8][2]);
    ASSERT_EQ(problem.holders.size(), 1U);
    EXPECT_EQ(problem.holders[0].element, 2);
    EXPECT_EQ(problem.holders[0].corner1, 3);
    EXPECT_EQ(problem.holders[0].corner2, 0);
    EXPECT_EQ(problem.holders[0].force, 9400.0);
    ASSERT_EQ(problem.beads.size(), 1U);
    EXPECT_EQ(problem.beads[0].natural[2], 0.5);
    ASSERT_EQ(problem.constraints.size(), 1U);
    EXPECT_EQ(problem.constraints[0].angle, 0.25);
    EXPECT_DOUBLE_EQ(problem.constraints[0].value, 0.003);
    ASSERT_EQ(problem.padShear.size(), 24U);
    EXPECT_EQ(problem.padShear[3], 2.5e5);
    EXPECT_EQ(problem.toolFriction, 0.12);
    ASSERT_EQ(problem.curvatures.size(), 24U);
    EXPECT_EQ(problem.curvatures[1][1], 50.0);
    EXPECT_EQ(problem.materials[0].kValue, 565.32e6);
    EXPECT_EQ(problem.materials[0].youngsModulus, 2.1e11);
}

// An edge without force still tells which edges a search for strains may restrain.
TEST(JobProblem, HoldersWithoutForceStayAndPadsWithoutPressureAskForNothing)
{
    Job job = jobOf(patch(Cells::Quads));
    holder(job, {2, 0, 0.0, 3, 0});
    job.bc->SetPressureFrictionValues(new double[24]());
    auto const problem = ProblemOf(*job.data, *job.stage);
    ASSERT_EQ(problem.holders.size(), 1U);
    EXPECT_EQ(problem.holders[0].force, 0.0);
    EXPECT_TRUE(problem.padShear.empty());
}

// --- Steps of the stroke, which a host asks for through its environment ---------------------------------------------

class AskingHost : public VOZMemoryHost
{
public:
    explicit AskingHost(std::string i_steps) : m_outer(Current()), m_steps(std::move(i_steps)) { Install(this); }
    ~AskingHost() override { Install(&m_outer); }
    AskingHost(AskingHost const &) = delete;
    AskingHost & operator=(AskingHost const &) = delete;
    std::optional<std::string> EnvironmentValue(std::string const & i_name) override
    {
        return i_name == "VOZStrokeSteps" ? m_steps : m_outer.EnvironmentValue(i_name);
    }

private:
    VOZHost & m_outer;
    std::string m_steps;
};

std::vector<double> blankInSteps(std::string const & steps, bool byTheDoorOfStrains = false)
{
    AskingHost const host(steps);
    SurfaceMesh const mesh = cup(Cup{}, 1, Extent::Whole, Cells::Triangles);
    Job job = jobOf(mesh);
    VOZSolverAutoBC_s const none;
    if (byTheDoorOfStrains)
        VOZUtilitySolving::EvaluateAutoStrain(job.data.get(), &none, nullptr, nullptr, nullptr);
    else
        solve(job);
    return {job.blank->m_padNodalCoords, job.blank->m_padNodalCoords + 3 * mesh.nodes.size()};
}

TEST(StrokeSteps, AreOneWhereTheHostSaysNothingAndMoveTheBlankWhereItAsksForTwo)
{
    std::vector<double> const one = blankInSteps("1"), two = blankInSteps("2");
    EXPECT_EQ(blankInSteps(""), one);
    EXPECT_EQ(blankInSteps("2", true), two) << "no strain is wanted after all";
    double moved = 0.0;
    for (std::size_t i = 0; i < one.size(); ++i)
        moved = std::max(moved, std::fabs(one[i] - two[i]));
    EXPECT_GT(moved, 1e-6);
    EXPECT_LT(moved, 1e-3); // metres: the same cup
}

TEST(StrokeSteps, AnyOtherValueIsRefused)
{
    for (std::string const wrong : {"0", "4", "12", "two", " 2"})
    {
        AskingHost const host(wrong);
        Job job = jobOf(patch(Cells::Triangles));
        EXPECT_EQ(errorOf(job), "the environment value VOZStrokeSteps is \"" + wrong + "\"; expected 1, 2 or 3");
    }
}

} // namespace
