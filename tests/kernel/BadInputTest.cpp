// BadInputTest.cpp: every door that solves, on records and meshes that no sane caller gives: a reason or a sound
// answer, never a crash, and always records that can be given back.

#include "CATError.h"
#include "SpoiledJobs.h"
#include "VOZMultiStageSolver.h"
#include "VOZSolverAutoBC.h"
#include "VOZUtilitySolving.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <numbers>

namespace
{

using namespace jobtest;
using testing::HasSubstr;

enum class Door
{
    Evaluate,
    TwoStagesWithBinder,
    EvaluateAutoStrain
};

int runsLeft = 0; // of the callback or the stop function
int countDown(double, void *, void *)
{
    return runsLeft-- > 0 ? 0 : 1;
}
int stopCountDown()
{
    return runsLeft-- > 0 ? 0 : 1;
}

struct Doors : testing::TestWithParam<Door>
{
    static int open(Job & job, VOZProgressCallback callback = nullptr, VOZStopFunction stop = nullptr,
                    std::FILE * log = nullptr)
    {
        if (GetParam() == Door::Evaluate)
            return VOZUtilitySolving::Evaluate(job.data.get(), callback, nullptr, nullptr);
        if (GetParam() == Door::TwoStagesWithBinder)
            return VOZUtilitySolving::TwoStagesWithBinder(1.0, log, nullptr, nullptr, stop, callback, nullptr, nullptr,
                                                          job.data.get());
        VOZSolverAutoBC_s wanted;
        wanted.m_nTargetNode = 0;
        wanted.m_dTargetStrain = 0.01;
        return VOZUtilitySolving::EvaluateAutoStrain(job.data.get(), &wanted, callback, nullptr, nullptr);
    }

    static Job job(SurfaceMesh const & mesh)
    {
        Job made = jobOf(mesh);
        if (GetParam() == Door::TwoStagesWithBinder)
            giveBinder(made, cylinder(200.0, 0.4, 6, 60.0, 3, Cells::Quads));
        return made;
    }

    static void expectNoTrace(Job const & job)
    {
        EXPECT_EQ(job.result->m_padStrainComponentsMid, nullptr);
        EXPECT_EQ(job.result->m_padEquivalentStress, nullptr);
        EXPECT_EQ(job.result->m_dPunchForce, 0.0);
        if (job.blank && job.blank->m_padNodalCoords)
        {
            EXPECT_EQ(job.blank->m_padNodalCoords[0], 0.0);
        }
        if (job.data->m_psBlankOnBinderMesh)
        {
            EXPECT_EQ(job.data->m_psBlankOnBinderMesh->m_padNodalCoords[0], kUntouched);
        }
    }

    // Solved with finite numbers everywhere, or refused with a reason and without a trace.
    static std::string answerTo(Job & job)
    {
        try
        {
            EXPECT_EQ(open(job), VOZUtilitySolving::Done);
        }
        catch (CATError const & error)
        {
            expectNoTrace(job);
            EXPECT_GT(std::string(error.Message()).size(), 5U);
            return error.Message();
        }
        for (int i = 0; i < 3 * job.part->GetNumNodes(); ++i)
            EXPECT_TRUE(std::isfinite(job.blank->m_padNodalCoords[i]));
        for (int i = 0; i < 12 * job.part->GetNumElements(); ++i)
            EXPECT_TRUE(std::isfinite(job.result->m_padStrainComponentsTop[i]));
        VOZMesh_s const * const onBinder = job.data->m_psBlankOnBinderMesh;
        for (int i = 0; onBinder && i < 3 * job.part->GetNumNodes(); ++i)
            EXPECT_TRUE(std::isfinite(onBinder->m_padNodalCoords[i]));
        return "solved";
    }

    static std::string answerTo(SurfaceMesh const & mesh)
    {
        Job given = job(mesh);
        return answerTo(given);
    }
};

std::string doorName(testing::TestParamInfo<Door> const & door)
{
    char const * const names[] = {"Evaluate", "TwoStagesWithBinder", "EvaluateAutoStrain"};
    return names[static_cast<int>(door.param)];
}

INSTANTIATE_TEST_SUITE_P(BadInput, Doors,
                         testing::Values(Door::Evaluate, Door::TwoStagesWithBinder, Door::EvaluateAutoStrain),
                         doorName);

TEST_P(Doors, SayWhatIsWrongWithARecordAndLeaveNoTrace)
{
    for (Spoiled const & spoiled : spoiledJobs())
    {
        Job given = job(patch(Cells::Triangles));
        spoiled.spoil(given);
        if (!given.stage->m_psBlankMesh)
            given.blank = nullptr;
        try
        {
            open(given);
            ADD_FAILURE() << spoiled.message;
        }
        catch (CATError const & error)
        {
            EXPECT_THAT(std::string(error.Message()), HasSubstr(spoiled.message));
        }
        if (given.data->m_nNumStages > 0)
            expectNoTrace(given);
    }
}

TEST_P(Doors, RefuseNoRecordAndAnEmptyOne)
{
    Job none;
    none.data.reset();
    EXPECT_THROW(open(none), CATError);
    Job empty;
    EXPECT_THROW(open(empty), CATError);
    Job placeless = job(patch(Cells::Triangles));
    placeless.stage->SetFormingResult(nullptr);
    EXPECT_THROW(open(placeless), CATError);
}

TEST_P(Doors, AFlangeThatFoldsOverItselfIsNoCrash)
{
    SurfaceMesh mesh; // a plate whose last third is turned back under it
    for (int i = 0; i <= 12; ++i)
        for (int j = 0; j <= 4; ++j)
            mesh.nodes.push_back({i <= 8 ? 5.0 * i : 80.0 - 5.0 * i, 5.0 * j, i <= 8 ? 0.0 : -1.0});
    for (int i = 0; i < 12; ++i)
        for (int j = 0; j < 4; ++j)
            mesh.elements.push_back({5 * i + j, 5 * i + j + 5, 5 * i + j + 6, 5 * i + j + 1});
    answerTo(mesh);
}

TEST_P(Doors, AWallThatLeansPastTheVerticalIsNoCrash)
{
    Profile profile({0.0, 0.0}, 0.0);
    profile.line(20.0, 4).arc(5.0, 1.9, 4).line(20.0, 4).arc(5.0, -1.9, 4).line(10.0, 2);
    answerTo(extrude(profile, 20.0, 4, Cells::Quads));
    answerTo(extrude(profile, 20.0, 4, Cells::Triangles));
}

TEST_P(Doors, ElementsWithoutAreaAndNodesOfNoElementAreNoCrash)
{
    SurfaceMesh mesh = patch(Cells::Triangles);
    mesh.elements.push_back({0, 1, 1, -1});
    mesh.nodes.push_back({3.0, 4.0, 5.0});
    answerTo(mesh);
    mesh.elements.assign(5, {2, 2, 2, 2});
    EXPECT_THAT(answerTo(mesh), HasSubstr("no element of the part has an area"));
}

TEST_P(Doors, PiecesThatDoNotHangTogetherAreSolvedOneByOne)
{
    SurfaceMesh mesh = patch(Cells::Triangles);
    int const shift = static_cast<int>(mesh.nodes.size());
    SurfaceMesh const other = patch(Cells::Quads);
    for (Point3 const & p : other.nodes)
        mesh.nodes.push_back({p[0] + 100.0, p[1], p[2]});
    for (auto const & e : other.elements)
        mesh.elements.push_back({e[0] + shift, e[1] + shift, e[2] + shift, e[3] + shift});
    EXPECT_EQ(answerTo(mesh), "solved");
}

TEST_P(Doors, AClosedMeshIsRefusedWithAReason)
{
    SurfaceMesh const tetrahedron{{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {0, 0, 10}},
                                  {{0, 2, 1, -1}, {0, 1, 3, -1}, {1, 2, 3, -1}, {2, 0, 3, -1}}};
    EXPECT_NE(answerTo(tetrahedron), "solved");
}

TEST_P(Doors, OneElementIsAPart)
{
    SurfaceMesh const triangle{{{0, 0, 0}, {10, 0, 0}, {0, 10, 3}}, {{0, 1, 2, -1}}};
    SurfaceMesh const quadrilateral{{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {{0, 1, 2, 3}}};
    EXPECT_EQ(answerTo(triangle), "solved");
    EXPECT_EQ(answerTo(quadrilateral), "solved");
}

TEST_P(Doors, AllNodesInOnePlaceAreRefused)
{
    EXPECT_NE(answerTo(SurfaceMesh{{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, {{0, 1, 2, -1}}}), "solved");
}

// Three sheets meet along one edge.
TEST_P(Doors, ASideOfThreeElementsIsNoCrash)
{
    answerTo(SurfaceMesh{{{0, 0, 0}, {0, 10, 0}, {10, 5, 0}, {-10, 5, 0}, {0, 5, 10}},
                         {{0, 2, 1, -1}, {0, 1, 3, -1}, {0, 1, 4, -1}}});
}

// Two sheets that touch in one node.
TEST_P(Doors, ANodeThatJoinsTwoSheetsIsNoCrash)
{
    answerTo(
        SurfaceMesh{{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {-10, 0, 0}, {-10, -10, 0}}, {{0, 1, 2, -1}, {0, 3, 4, -1}}});
}

TEST_P(Doors, AMoebiusStripIsNoCrash)
{
    SurfaceMesh mesh;
    constexpr int n = 24;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < 2; ++j)
        {
            double const angle = 2.0 * std::numbers::pi * i / n;
            double const w = j == 0 ? -5.0 : 5.0;
            double const r = 30.0 + w * std::cos(0.5 * angle);
            mesh.nodes.push_back({r * std::cos(angle), r * std::sin(angle), w * std::sin(0.5 * angle)});
        }
    for (int i = 0; i + 1 < n; ++i)
        mesh.elements.push_back({2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1});
    mesh.elements.push_back({2 * n - 2, 1, 0, 2 * n - 1});
    answerTo(mesh);
}

TEST_P(Doors, AVerticalTubeIsNoCrash)
{
    SurfaceMesh mesh;
    constexpr int n = 16;
    for (int row = 0; row <= 4; ++row)
        for (int i = 0; i < n; ++i)
            mesh.nodes.push_back({20.0 * std::cos(2.0 * std::numbers::pi * i / n),
                                  20.0 * std::sin(2.0 * std::numbers::pi * i / n), 5.0 * row});
    for (int row = 0; row < 4; ++row)
        for (int i = 0; i < n; ++i)
            mesh.elements.push_back(
                {row * n + i, row * n + (i + 1) % n, (row + 1) * n + (i + 1) % n, (row + 1) * n + i});
    answerTo(mesh);
}

TEST_P(Doors, AWorkingFolderThatVanishesDuringTheRunIsNoFailure)
{
    static std::filesystem::path folder;
    folder = std::filesystem::path(testing::TempDir()) / ("vanishing" + std::to_string(static_cast<int>(GetParam())));
    std::filesystem::create_directories(folder);
    Job given = job(patch(Cells::Triangles));
    given.data->SetWorkingDir(wide(folder.string()).c_str());
    given.data->SetSummaryFileName(wide("sum.txt").c_str());
    auto const vanish = [](double, void *, void *)
    {
        std::filesystem::remove_all(folder);
        return 0;
    };
    EXPECT_EQ(open(given, vanish), VOZUtilitySolving::Done);
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_P(Doors, ANonzeroAnswerAtEveryCallInTurnEndsTheRun)
{
    for (int calls = 0; calls < 200; ++calls)
    {
        runsLeft = calls;
        Job given = job(patch(Cells::Triangles));
        if (open(given, countDown) == VOZUtilitySolving::Done)
        {
            EXPECT_GT(calls, 5);
            return;
        }
        expectNoTrace(given);
    }
    ADD_FAILURE() << "never done";
}

TEST_P(Doors, AskTheStopFunctionWhereTheyHaveOne)
{
    if (GetParam() != Door::TwoStagesWithBinder)
        return;
    for (int calls : {0, 3, 9})
    {
        runsLeft = calls;
        Job given = job(patch(Cells::Triangles));
        EXPECT_EQ(open(given, nullptr, stopCountDown), VOZUtilitySolving::Stopped);
        expectNoTrace(given);
    }
}

} // namespace
