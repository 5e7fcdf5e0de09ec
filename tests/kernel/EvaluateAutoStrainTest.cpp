// EvaluateAutoStrainTest.cpp: the kernel's door of a job with wanted strains.

#include "CATError.h"
#include "JobFixture.h"
#include "NodeAt.h"
#include "VOZSolverAutoBC.h"
#include "VOZUtilitySolving.h"
#include "autostrain/AutoStrain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace
{

using namespace voz::examples;
using namespace onesteptest;
using testing::HasSubstr;
using voz::autostrain::Reached;
using voz::autostrain::Task;
using voz::onestep::Solution;
using voz::onestep::Status;

using jobtest::Job;
using jobtest::jobOf;

int evaluate(Job & job, VOZSolverAutoBC_s const & wanted)
{
    return VOZUtilitySolving::EvaluateAutoStrain(job.data.get(), &wanted, nullptr, nullptr, nullptr);
}

void holdRim(Job & job, int k, double force)
{
    auto * const edges = new VOZSolverBHF_s[at(6 * k)];
    for (int i = 0; i < 6 * k; ++i)
        edges[i] = {job.part->GetNumElements() - 6 * k + i, 0, force, 1, 2};
    job.bc->SetBHFs(6 * k, edges);
}

// In the record the nodes stand reference first and the strains target first.
TEST(EvaluateAutoStrain, TakesNodesAndStrainsInTheOrderOfTheRecord)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Quads);
    Problem problem = quarterCup({}, 1, Cells::Quads, 40.0);
    int const one = nodeAt(problem, 20.0, 0.0), other = nodeAt(problem, 0.0, 44.0);
    Reached reached;
    Task const task{{one, 0.02}, {other, 0.12}, 1.0};
    Solution const expected = voz::autostrain::solve(problem, {}, task, {}, reached);
    ASSERT_EQ(expected.status, Status::Converged);

    Job job = jobOf(mesh);
    jobtest::quarterSymmetry(job, mesh);
    holdRim(job, 1, 40.0e3);
    VOZSolverAutoBC_s wanted;
    wanted.m_nTargetNode = one;
    wanted.m_nReferenceNode = other;
    wanted.m_dTargetStrain = 0.02;
    wanted.m_dReferenceStrain = 0.12;
    ASSERT_EQ(evaluate(job, wanted), VOZUtilitySolving::Done);
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
        for (std::size_t k = 0; k < 2; ++k)
            EXPECT_NEAR(job.blank->m_padNodalCoords[3 * i + k], expected.flat[i][k], 1e-7);
}

TEST(EvaluateAutoStrain, FillsTheBlankOnTheBinderWhereTheJobHasOne)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Quads);
    Job job = jobOf(mesh);
    jobtest::quarterSymmetry(job, mesh);
    holdRim(job, 1, 40.0e3);
    SurfaceMesh const flat{{{0, 0, 20}, {90, 0, 20}, {90, 90, 20}, {0, 90, 20}}, {{0, 1, 2, 3}}};
    jobtest::giveBinder(job, flat);
    VOZSolverAutoBC_s wanted;
    wanted.m_nTargetNode = 0;
    wanted.m_dTargetStrain = 0.01;
    ASSERT_EQ(evaluate(job, wanted), VOZUtilitySolving::Done);
    double const * const q = job.data->m_psBlankOnBinderMesh->m_padNodalCoords;
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
    {
        EXPECT_NEAR(q[3 * i], job.blank->m_padNodalCoords[3 * i], 1e-12);
        EXPECT_NEAR(q[3 * i + 2], 0.020, 1e-12);
    }
}

TEST(EvaluateAutoStrain, RefusesNodesAndStrainsThatThePartCannotHave)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Quads);
    double const nan = std::nan("");
    struct
    {
        char const * message;
        VOZSolverAutoBC_s wanted;
    } const all[] = {{"the target node of the wanted strains is 9999; expected 0 to", {-1, 9999, 0.1, 0.1, 0.0}},
                     {"the reference node of the wanted strains is -2", {-2, 0, 0.1, 0.1, 0.0}},
                     {"wanted log strain at the target node is nan", {-1, 0, nan, 0.1, 0.0}},
                     {"wanted log strain at the reference node is inf", {0, -1, 0.1, 1.0 / 0.0, 0.0}},
                     {"factor of the first guess", {-1, 0, 0.1, 0.1, nan}}};
    for (auto const & [message, wanted] : all)
    {
        Job job = jobOf(mesh);
        try
        {
            evaluate(job, wanted);
            ADD_FAILURE() << message;
        }
        catch (CATError const & error)
        {
            EXPECT_THAT(std::string(error.Message()), HasSubstr(message));
        }
        EXPECT_EQ(job.result->m_padStrainComponentsMid, nullptr);
    }
    Job job = jobOf(mesh);
    EXPECT_THROW(VOZUtilitySolving::EvaluateAutoStrain(job.data.get(), nullptr, nullptr, nullptr, nullptr), CATError);
    VOZSolverAutoBC_s unused;
    unused.m_dTargetStrain = nan; // no node: never looked at
    EXPECT_EQ(evaluate(job, unused), VOZUtilitySolving::Done);
}

int callsLeft = 0;
int countDown(double, void *, void *)
{
    return callsLeft-- > 0 ? 0 : 1;
}

TEST(EvaluateAutoStrain, ANonzeroAnswerEndsTheRunAtEveryCallInTurn)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Quads);
    int runs = 0;
    for (;; ++runs)
    {
        Job job = jobOf(mesh);
        jobtest::quarterSymmetry(job, mesh);
        holdRim(job, 1, 20.0e3);
        VOZSolverAutoBC_s wanted;
        wanted.m_nTargetNode = 0;
        wanted.m_dTargetStrain = 0.0167;
        callsLeft = runs;
        int const answer = VOZUtilitySolving::EvaluateAutoStrain(job.data.get(), &wanted, countDown, nullptr, nullptr);
        if (answer == VOZUtilitySolving::Done)
            break;
        EXPECT_EQ(answer, VOZUtilitySolving::Stopped);
        EXPECT_EQ(callsLeft, -1);
        EXPECT_EQ(job.result->m_padStrainComponentsMid, nullptr);
        EXPECT_EQ(job.blank->m_padNodalCoords[3], 0.0);
    }
    EXPECT_GT(runs, 25);
}

} // namespace
