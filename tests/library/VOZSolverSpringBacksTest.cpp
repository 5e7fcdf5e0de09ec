// VOZSolverSpringBacksTest.cpp: what the springback driver prepares, holds and trims.

#include "SpringBacksFixture.h"

#include "CATError.h"
#include "FailingNew.h"
#include "VOZMesh.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <set>

using springbacks::Probe;
using springbacks::SpringBacks;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
constexpr int kCode = 1549556828;
} // namespace

TEST_F(SpringBacks, BeginsWithoutAShapeAndIsOfItsClass)
{
    EXPECT_EQ(driver.m_padXYZ, nullptr);
    EXPECT_STREQ(driver.IsA(), "VOZSolverSpringBacks");
    EXPECT_EQ(driver.IsAKindOf("VOZSolverMultiStage"), 1);
    EXPECT_EQ(driver.IsAKindOf("VOZSolver"), 1);
}

// Run, up to the kernel

TEST_F(SpringBacks, MissingDisplacementsStopTheRunWithTheirAssertion)
{
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:m_adDisp != NULL"));
    EXPECT_EQ(driver.m_padXYZ, nullptr);
}

TEST_F(SpringBacks, ALostShapeIsReported)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library allocates by operators of its own here";
    // every allocation of the preparation in turn: the one of the shape reports itself, and no run goes on
    bool found = false;
    for (int number = 1; number < 60 && !found; ++number)
    {
        host.reports.clear();
        Probe lost;
        give(lost);
        FailingNew const failing(number);
        if (lost.Run(nullptr) != E_FAIL)
            FAIL() << "there are no displacements";
        std::vector<std::string> const texts = reported();
        found = std::find(texts.begin(), texts.end(), "AssertionFailed:m_padXYZ") != texts.end();
    }
    EXPECT_TRUE(found);
}

TEST_F(SpringBacks, ABinderIsLeftOut)
{
    binder = dome(5, 4, true);
    meshes[1] = &binder;
    meshCount = 2;
    give(driver);
    EXPECT_EQ(driver.Run(nullptr), E_FAIL); // for want of displacements
    EXPECT_EQ(driver.m_nMesh, 1);
    ASSERT_NE(driver.m_psIOData->m_pasStages, nullptr);
    EXPECT_EQ(driver.m_psIOData->m_psBinderMesh, nullptr);
    EXPECT_EQ(driver.m_psIOData->m_psBlankOnBinderMesh, nullptr);
}

TEST_F(SpringBacks, AJobThatCannotBePreparedFailsWithoutAText)
{
    host.environment.erase("CATTemp");
    EXPECT_EQ(driver.Run(nullptr), E_FAIL) << "no folder";
    host.environment["CATTemp"] = work.Path();
    meshes[0] = nullptr;
    EXPECT_EQ(driver.Run(nullptr), E_FAIL) << "no part";
    meshCount = 0;
    give(driver);
    EXPECT_EQ(driver.Run(nullptr), E_FAIL) << "no mesh";
    EXPECT_THAT(reported(), IsEmpty());
    Probe empty;
    EXPECT_EQ(empty.Run(nullptr), E_FAIL);
    LayerStores stores(part);
    EXPECT_EQ(empty.GetResults(stores.layers()), E_FAIL);
}

// The mesh check of the preparation or the kernel's own: an error of the kernel passes through.
TEST_F(SpringBacks, DisplacementsThatAreNoNumbersLeaveNoShape)
{
    std::vector<std::array<double, 3>> rows(static_cast<std::size_t>(part.numNode()), {0.0, 0.0, 0.0});
    rows[3][1] = std::numeric_limits<double>::quiet_NaN();
    driver.SetDisplacements(reinterpret_cast<double const(*)[3]>(rows.data()));
    long status = E_FAIL;
    try
    {
        status = driver.Run(nullptr);
    }
    catch (CATError const & error)
    {
        EXPECT_STRNE(error.Message(), "");
    }
    EXPECT_EQ(status, E_FAIL);
    EXPECT_EQ(driver.m_padXYZ, nullptr);
    LayerStores stores(part);
    driver.GetResults(stores.layers());
    EXPECT_EQ(stores[0].disp(1, 0), 0.0F);
}

// What is held

TEST_F(SpringBacks, WithoutFixityAndTablesNoRecordGoesIn)
{
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    EXPECT_EQ(driver.held(), nullptr);
}

TEST_F(SpringBacks, WithoutFixityATableThatHoldsNoNodeWhollyIsNoRecord)
{
    hold({1, 2}, true, 0.0, false, 0.0);
    hold({3}, false, 0.0, true, 0.0);
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    EXPECT_EQ(driver.held(), nullptr);
}

// Four places for four nodes of tables, of which two are held: the rest stay at -1 and are counted.
TEST_F(SpringBacks, FullyHeldNodesComeFirstAndLeftOverPlacesStayBelowZero)
{
    hold({7}, true, 1.0, false, 0.0);
    hold({2, 5}, true, 1.0, true, 2.0);
    hold({9}, false, 0.0, true, 0.0);
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    ASSERT_NE(driver.held(), nullptr);
    EXPECT_THAT(driver.heldNodes(), ElementsAre(1, 4, -1, -1));
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(driver.held()->m_panCodes[i], kCode) << "0x5C in every byte";
}

TEST_F(SpringBacks, FixityOfAnUntrimmedPartHoldsAllLoopsOfTheMesh)
{
    property.setSprinkbackFixity(true);
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    EXPECT_EQ(driver.heldNodes(), loopNodes(part));
    EXPECT_EQ(driver.heldNodes().size(), 10u);
}

TEST_F(SpringBacks, LoopNodesComeBeforeThoseOfTheTables)
{
    property.setSprinkbackFixity(true);
    hold({6}, true, 0.0, true, 0.0);
    hold({7}, true, 0.0, false, 0.0);
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    std::vector<int> expected = loopNodes(part);
    expected.insert(expected.end(), {5, -1});
    EXPECT_EQ(driver.heldNodes(), expected);
}

//   9--10--11--12
//   | 4 | 5 | 6 |
//   5---6---7---8     element 1 trimmed: the boundary runs over node 6
//   | 1 | 2 | 3 |
//   1---2---3---4
TEST_F(SpringBacks, FixityFollowsTheTrimmedBoundary)
{
    property.setSprinkbackFixity(true);
    trim({1});
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    std::vector<int> const nodes = driver.heldNodes();
    EXPECT_EQ(nodes.size(), 10u);
    EXPECT_EQ(std::set<int>(nodes.begin(), nodes.end()), (std::set<int>{1, 2, 3, 4, 5, 7, 8, 9, 10, 11}));
}

TEST_F(SpringBacks, TrimmedElementsAreLabels)
{
    part.IdsOffset(1000, 500);
    property.setSprinkbackFixity(true);
    trim({501});
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    std::vector<int> const nodes = driver.heldNodes();
    EXPECT_EQ(std::set<int>(nodes.begin(), nodes.end()), (std::set<int>{1, 2, 3, 4, 5, 7, 8, 9, 10, 11}));
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    driver.Trimming(mesh);
    EXPECT_EQ(std::vector<int>(mesh.m_panElementsStatus, mesh.m_panElementsStatus + 6),
              (std::vector<int>{1, 0, 0, 0, 0, 0}));
    EXPECT_THAT(reported(), IsEmpty());
}

TEST_F(SpringBacks, TrimmingEveryElementFailsWhereFixityIsOn)
{
    trim({1, 2, 3, 4, 5, 6});
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), 0) << "fixity off";
    property.setSprinkbackFixity(true);
    EXPECT_EQ(driver.BoundaryFixity(part), E_FAIL);
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
}

//   9--10--11--12
//   | 4 | 5 | 6 |     1 and 5 are left of 1, 2, 4, 5: they meet at node 6 alone
//   5---6---7---8
//   | 1 | 2 | 3 |
//   1---2---3---4
TEST_F(SpringBacks, ATrimmedBoundaryThatIsNoSimpleCurveFails)
{
    property.setSprinkbackFixity(true);
    trim({2, 4, 3, 6});
    prepare();
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
    EXPECT_NE(driver.m_nLoopError, 0);
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL) << "and it stays so";
}

TEST_F(SpringBacks, TrimmedLabelsOutsideTheMeshAreReportedAndPassedOver)
{
    property.setSprinkbackFixity(true);
    trim({1, 0, 7, -3});
    prepare();
    EXPECT_EQ(driver.BoundaryFixity(part), 0);
    EXPECT_THAT(reported(), ElementsAre("iElem <= iSize && iElem > 0", "iElem <= iSize && iElem > 0",
                                        "iElem <= iSize && iElem > 0"));
    host.reports.clear();
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    driver.Trimming(mesh);
    EXPECT_THAT(reported(), ElementsAre("iElem < iSize && iElem >= 0", "iElem < iSize && iElem >= 0",
                                        "iElem < iSize && iElem >= 0"));
    EXPECT_EQ(std::vector<int>(mesh.m_panElementsStatus, mesh.m_panElementsStatus + 6),
              (std::vector<int>{1, 0, 0, 0, 0, 0}));
}

TEST_F(SpringBacks, FewerThanThreeNodesFail)
{
    trim({1});
    VOZCatMesh const two = samples::mesh({{0, 0, 0}, {1, 0, 0}}, samples::Quads{{1, 2, 1, 2}, {1, 2, 1, 2}});
    EXPECT_EQ(driver.BoundaryFixity(two), E_FAIL);
}

TEST_F(SpringBacks, HeldNodesNeedTheProcessTheLoopsAndAStage)
{
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL) << "nothing is prepared";
    prepare();
    driver.m_nLoopError = 1;
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
    driver.m_nLoopError = 0;
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    driver.SetBoundaryConditions(meshes.data(), meshCount, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
    EXPECT_EQ(driver.BoundaryFixity(part), E_FAIL);
}

TEST_F(SpringBacks, AStageWithoutConditionsGetsThem)
{
    hold({2}, true, 0.0, true, 0.0);
    prepare();
    driver.stage().SetBCData(nullptr);
    driver.m_psBCData = nullptr;
    EXPECT_EQ(driver.SetDispConstraints(), 0);
    ASSERT_NE(driver.stage().m_psBCData, nullptr);
    EXPECT_EQ(driver.m_psBCData, driver.stage().m_psBCData);
    EXPECT_THAT(driver.heldNodes(), ElementsAre(1));
}

TEST_F(SpringBacks, LostListsAreReported)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library allocates by operators of its own here";
    hold({2}, true, 0.0, true, 0.0);
    prepare();
    {
        FailingNew const failing(1);
        EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
    }
    {
        FailingNew const failing(2);
        EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
    }
    property.setSprinkbackFixity(true);
    trim({1});
    {
        FailingNew const failing(1);
        EXPECT_EQ(driver.SetDispConstraints(), E_FAIL);
    }
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:panNodeIndices", "AssertionFailed:panDisplCodes",
                                        "AssertionFailed:m_pFreeEdge"));
    EXPECT_EQ(driver.m_pFreeEdge, nullptr);
    EXPECT_EQ(driver.m_pFreeLoops, nullptr);
}

// Trimming

TEST_F(SpringBacks, WithoutTrimmedElementsThereIsNoStatus)
{
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    driver.Trimming(mesh);
    EXPECT_EQ(mesh.m_panElementsStatus, nullptr);
}

TEST_F(SpringBacks, ATrimmingSizeWithoutItsListIsReported)
{
    property.setTrimmingSize(3);
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    driver.Trimming(mesh);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:panTrimElems"));
    EXPECT_EQ(mesh.m_panElementsStatus, nullptr);
    VOZMesh_s const empty;
    host.reports.clear();
    trim({1});
    driver.Trimming(const_cast<VOZMesh_s &>(empty));
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:iSize > 0"));
}
