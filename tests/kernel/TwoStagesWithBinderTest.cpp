// TwoStagesWithBinderTest.cpp: the kernel's door of a job with a binder.

#include "CATError.h"
#include "JobFixture.h"
#include "VOZMultiStageSolver.h"
#include "VOZUtilitySolving.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace
{

using namespace jobtest;
using testing::HasSubstr;

int stopAfter = 0; // asks
int stopsAsked = 0;
int stopNow()
{
    return ++stopsAsked > stopAfter ? 1 : 0;
}

int run(Job & job, std::FILE * log = nullptr, VOZStopFunction stop = nullptr, VOZProgressCallback callback = nullptr)
{
    return VOZUtilitySolving::TwoStagesWithBinder(1.0, log, nullptr, nullptr, stop, callback, nullptr, nullptr,
                                                  job.data.get());
}

double const * onBinder(Job const & job, std::size_t node)
{
    return job.data->m_psBlankOnBinderMesh->m_padNodalCoords + 3 * node;
}

TEST(TwoStagesWithBinder, WritesTheBlankOnTheBinderInTheGlobalFrame)
{
    SurfaceMesh mesh = cup({}, 1, Extent::Whole, Cells::Triangles);
    SurfaceMesh binder = cylinder(300.0, 0.4, 12, 200.0, 8, Cells::Quads);
    Job straight = jobOf(mesh);
    giveBinder(straight, binder);
    ASSERT_EQ(run(straight), VOZUtilitySolving::Done);
    for (SurfaceMesh * const moved : {&mesh, &binder})
        for (Point3 & p : moved->nodes)
            p = {p[2] + 500.0, p[0] - 200.0, p[1] + 70.0};
    Job turned = jobOf(mesh);
    giveBinder(turned, binder);
    double const rows[9] = {0, 1, 0, 0, 0, 1, 1, 0, 0};
    double const origin[3] = {0.5, -0.2, 0.07};
    turned.stage->SetLocalCS(rows, origin);
    ASSERT_EQ(run(turned), VOZUtilitySolving::Done);
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
    {
        double const * const q = onBinder(straight, i);
        double const * const p = onBinder(turned, i);
        EXPECT_NEAR(p[0] - 0.5, q[2], 1e-9);
        EXPECT_NEAR(p[1] + 0.2, q[0], 1e-9);
        EXPECT_NEAR(p[2] - 0.07, q[1], 1e-9);
    }
    // triangles beside a binder of quadrilaterals: a stride of four
    for (std::size_t e = 0; e < mesh.elements.size(); ++e)
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_EQ(straight.result->m_padStrainComponentsTop[12 * e + 9 + k],
                      straight.result->m_padStrainComponentsTop[12 * e + k]);
}

void expectNoTrace(Job const & job)
{
    EXPECT_EQ(job.result->m_padStrainComponentsMid, nullptr);
    EXPECT_EQ(job.result->m_dPunchForce, 0.0);
    for (int i = 0; i < 3 * job.part->GetNumNodes(); ++i)
    {
        EXPECT_EQ(job.blank->m_padNodalCoords[i], 0.0);
        EXPECT_EQ(job.data->m_psBlankOnBinderMesh->m_padNodalCoords[i], jobtest::kUntouched);
    }
}

TEST(TwoStagesWithBinder, TheStopFunctionEndsEitherStageAtEveryAsk)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Whole, Cells::Quads);
    SurfaceMesh const binder = dome(300.0, 0.4, 1, Extent::Whole, Cells::Triangles);
    int runs = 0;
    for (stopAfter = 0;; ++stopAfter, ++runs)
    {
        stopsAsked = 0;
        Job job = jobOf(mesh);
        giveBinder(job, binder);
        int const answer = run(job, nullptr, stopNow);
        if (answer == VOZUtilitySolving::Done)
            break;
        EXPECT_EQ(answer, VOZUtilitySolving::Stopped);
        EXPECT_EQ(stopsAsked, stopAfter + 1); // not asked again
        expectNoTrace(job);
    }
    EXPECT_GT(runs, 12);
}

int callsLeft = 0;
int answerNonzero(double, void *, void *)
{
    return callsLeft-- > 0 ? 0 : 7;
}

TEST(TwoStagesWithBinder, ANonzeroAnswerOfTheCallbackEndsTheRun)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Whole, Cells::Quads);
    for (int calls : {0, 5, 15})
    {
        callsLeft = calls;
        Job job = jobOf(mesh);
        giveBinder(job, dome(300.0, 0.4, 1, Extent::Whole, Cells::Triangles));
        EXPECT_EQ(run(job, nullptr, nullptr, answerNonzero), VOZUtilitySolving::Stopped);
        expectNoTrace(job);
    }
}

TEST(TwoStagesWithBinder, LogsIntoTheGivenFileAndLeavesItOpen)
{
    std::FILE * const log = std::tmpfile();
    ASSERT_NE(log, nullptr);
    std::fputs("banner\n", log);
    Job job = jobOf(cup({}, 1, Extent::Whole, Cells::Quads));
    giveBinder(job, dome(300.0, 0.4, 1, Extent::Whole, Cells::Triangles));
    EXPECT_EQ(run(job, log), VOZUtilitySolving::Done);
    std::fputs("after\n", log);
    std::rewind(log);
    std::string text;
    for (int letter; (letter = std::fgetc(log)) != EOF;)
        text.push_back(static_cast<char>(letter));
    std::fclose(log);
    EXPECT_THAT(text, testing::StartsWith("banner\nstage 1: "));
    EXPECT_THAT(text, HasSubstr("\nstage 2: the part\n"));
    EXPECT_THAT(text, HasSubstr("\nblank on the binder: "));
    EXPECT_THAT(text, testing::EndsWith("converged\nafter\n"));
}

TEST(TwoStagesWithBinder, RefusesAJobWithoutABinderOrAPlaceForTheBlankOnIt)
{
    auto const messageOf = [](Job & job)
    {
        try
        {
            run(job);
        }
        catch (CATError const & error)
        {
            return std::string(error.Message());
        }
        return std::string("solved");
    };
    SurfaceMesh const mesh = cylinder(20.0, 0.6, 6, 30.0, 4, Cells::Triangles);
    Job job = jobOf(mesh);
    EXPECT_THAT(messageOf(job), HasSubstr("the job has no binder mesh"));
    job.data->SetBinderMeshData(jobtest::partOf(mesh), nullptr);
    EXPECT_THAT(messageOf(job), HasSubstr("no mesh for the blank on the binder; expected one with coordinates for 35"));
    giveBinder(job, mesh);
    job.data->m_psBinderMesh->m_padNodalCoords[7] = std::nan("");
    EXPECT_THAT(messageOf(job), HasSubstr("of node 2 of the binder is nan"));
    expectNoTrace(job);
    giveBinder(job, mesh);
    job.data->m_psBinderMesh->GetElements()[4].m_anNodeIndices[2] = 35;
    EXPECT_THAT(messageOf(job), HasSubstr("element 4 of the binder names node 35; expected 0 to 34"));
    giveBinder(job, mesh);
    job.data->m_psBinderMesh->m_psTopology->m_nNumElements = -7;
    EXPECT_THAT(messageOf(job), HasSubstr("the binder mesh has 35 nodes and -7 elements"));
    giveBinder(job, mesh);
    job.data->m_psBinderMesh->GetElements()[4].m_nMaterialIndex = 99;
    EXPECT_THAT(messageOf(job), HasSubstr("element 4 of the binder names material 99; expected 0 to 0"));
}

} // namespace
