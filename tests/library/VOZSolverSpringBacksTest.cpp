// VOZSolverSpringBacksTest.cpp: what the springback driver prepares, holds, trims, aligns and gives back. Shapes are
// put into the driver by hand: what the kernel makes of a job is tested with the kernel.

#include "VOZSolverSpringBacks.h"

#include "CATError.h"
#include "DriverFixture.h"
#include "EdgeSets.h"
#include "FailingNew.h"
#include "FreeEdgeLoops.h"
#include "LoopFilters.h"
#include "PointAlignment.h"
#include "VOZFormingResult.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverBCData.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
constexpr int kCode = 1549556828;

class Probe : public VOZSolverSpringBacks
{
public:
    using VOZSolverMultiStage::FillInXenSolverData;
    using VOZSolverSpringBacks::Alignment;
    using VOZSolverSpringBacks::BoundaryFixity;
    using VOZSolverSpringBacks::ConvertMeshData;
    using VOZSolverSpringBacks::SetDispConstraints;
    using VOZSolverSpringBacks::Trimming;

    using VOZSolverSpringBacks::m_nLoopError;
    using VOZSolverSpringBacks::m_nMesh;
    using VOZSolverSpringBacks::m_padXYZ;
    using VOZSolverSpringBacks::m_pFreeEdge;
    using VOZSolverSpringBacks::m_pFreeLoops;
    using VOZSolverSpringBacks::m_psBCData;
    using VOZSolverSpringBacks::m_psFormingResult;
    using VOZSolverSpringBacks::m_psIOData;

    VOZSolverStage_s & stage() { return *m_psIOData->m_pasStages; }
    VOZSBConstraints_s const * held() { return stage().m_psBCData->m_psSBConstraints; }
    std::vector<int> heldNodes()
    {
        return held() ? std::vector<int>(held()->m_panNodeIndices, held()->m_panNodeIndices + held()->m_nCount)
                      : std::vector<int>();
    }
};

class SpringBacks : public DriverFixture
{
protected:
    SpringBacks() : DriverFixture(dome(3, 2, false)) { give(driver); }

    void prepare() { ASSERT_EQ(driver.FillInXenSolverData(), 0); }

    void trim(std::vector<int> const & labels)
    {
        property.setTrimmingSize(static_cast<int>(labels.size()));
        int * const rows = new int[labels.size()];
        std::copy(labels.begin(), labels.end(), rows);
        property.setTrimming(rows);
    }

    void align(std::vector<int> const & nodes)
    {
        property.setAlignmentSize(static_cast<int>(nodes.size()));
        int * const rows = new int[nodes.size()];
        std::copy(nodes.begin(), nodes.end(), rows);
        property.setAlignment(rows);
    }

    // The part in metres, turned by an angle about x and shifted.
    void giveShape(double angle, double shift)
    {
        std::size_t const count = static_cast<std::size_t>(part.numNode());
        delete[] driver.m_padXYZ;
        driver.m_padXYZ = new double[3 * count];
        for (int n = 1; n <= part.numNode(); ++n)
        {
            double * const row = driver.m_padXYZ + 3 * (n - 1);
            double const y = 0.001 * part.node(n, 1);
            double const z = 0.001 * part.node(n, 2);
            row[0] = 0.001 * part.node(n, 0) + shift;
            row[1] = std::cos(angle) * y - std::sin(angle) * z;
            row[2] = std::sin(angle) * y + std::cos(angle) * z - shift;
        }
    }

    double farthest() const // of the shape from the part, metres
    {
        double most = 0.0;
        for (int n = 1; n <= part.numNode(); ++n)
            for (int k = 0; k < 3; ++k)
                most = std::max(most, std::fabs(driver.m_padXYZ[3 * (n - 1) + k] - 0.001 * part.node(n, k)));
        return most;
    }

    // The start nodes, from 0, of all loops of a mesh.
    static std::vector<int> loopNodes(VOZCatMesh const & mesh)
    {
        FreeEdgeSet const edges(mesh);
        int error = 0;
        FreeEdgeLoops const loops(edges, mesh, &error);
        std::vector<int> nodes;
        for (int l = 1; l <= loops.numLoops(); ++l)
            for (int i = 1; i <= loops.numLoopEdges(l); ++i)
                nodes.push_back(edges.startNode(loops.loopEdge(l, i)) - 1);
        return nodes;
    }

    Probe driver;
};
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

// The shape

TEST_F(SpringBacks, WithoutAStageThereAreNoResults)
{
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), E_FAIL);
}

TEST_F(SpringBacks, WithoutAShapeTheDisplacementsStayAsTheyAre)
{
    prepare();
    LayerStores stores(part);
    stores[0].disp(3, 1, 7.0F);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_EQ(stores[0].disp(3, 1), 7.0F);
    EXPECT_EQ(driver.m_psFormingResult, driver.stage().m_psFormingResult);
}

TEST_F(SpringBacks, DisplacementsAreMetresFromThePartToTheShape)
{
    double const s = std::sqrt(0.5); // the frame is turned by 45 degrees about x, its origin aside
    double const rows[3][3] = {{1, 0, 0}, {0, s, s}, {0, -s, s}};
    for (int i = 0; i < 3; ++i)
        axis.axis(i, Vec(rows[i]));
    prepare();
    giveShape(0.1, 0.004);
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    for (int n = 1; n <= part.numNode(); ++n)
    {
        double d[3];
        for (int k = 0; k < 3; ++k)
        {
            d[k] = driver.m_padXYZ[3 * (n - 1) + k] - driver.stage().m_psPartMesh->m_padNodalCoords[3 * (n - 1) + k];
            EXPECT_EQ(stores[0].disp(n, k), static_cast<float>(d[k]));
            EXPECT_EQ(stores[0].dispOnBinder(n, k), static_cast<float>(d[k]));
            EXPECT_EQ(stores[1].disp(n, k), 0.0F);
            EXPECT_EQ(stores[2].disp(n, k), 0.0F);
        }
        EXPECT_NEAR(stores[0].disp2d(n, 0), d[0], 1e-8);
        EXPECT_NEAR(stores[0].disp2d(n, 1), s * d[1] + s * d[2], 1e-8);
        EXPECT_EQ(stores[0].disp2d(n, 2), 0.0F);
    }
}

TEST_F(SpringBacks, OnlyTheFirstStoreIsNeeded)
{
    prepare();
    giveShape(0.1, 0.004);
    Result top(part);
    Result * layers[3] = {&top, nullptr, nullptr};
    EXPECT_EQ(driver.GetResults(layers), 0);
    EXPECT_NE(top.disp(1, 0), 0.0F);
    Result * none[3] = {nullptr, nullptr, nullptr};
    EXPECT_EQ(driver.GetResults(none), 0);
    EXPECT_EQ(driver.GetResults(nullptr), 0);
}

TEST_F(SpringBacks, WithoutAlignmentNodesTheShapeStays)
{
    prepare();
    giveShape(0.1, 0.004);
    double const before = farthest();
    driver.Alignment();
    EXPECT_EQ(farthest(), before);
}

TEST_F(SpringBacks, ARigidMotionIsTakenBackByThreeNodes)
{
    align({1, 4, 9});
    prepare();
    giveShape(0.1, 0.004);
    EXPECT_GT(farthest(), 0.004);
    driver.Alignment();
    EXPECT_LT(farthest(), 1e-7) << "single precision of millimetres";
}

TEST_F(SpringBacks, AlignmentIsThatOfThePointPairs)
{
    for (std::vector<int> const & nodes : {std::vector<int>{6}, {6, 7}, {1, 2, 3}, {1, 4, 9, 12}, {1, 4, 9, 12, 6}})
    {
        align(nodes);
        prepare();
        giveShape(0.2, 0.01);
        std::vector<double> target;
        std::vector<double> source;
        for (int const n : nodes)
            for (int k = 0; k < 3; ++k)
            {
                target.push_back(driver.stage().m_psPartMesh->m_padNodalCoords[3 * (n - 1) + k]);
                source.push_back(driver.m_padXYZ[3 * (n - 1) + k]);
            }
        double matrix[16];
        pointalignment::AlignPoints(target.data(), source.data(), static_cast<int>(nodes.size()), matrix);
        std::vector<double> expected(driver.m_padXYZ, driver.m_padXYZ + 3 * part.numNode());
        for (int n = 0; n < part.numNode(); ++n)
            pointalignment::TransformPoint(expected.data() + 3 * n, matrix);
        driver.Alignment();
        EXPECT_EQ(std::vector<double>(driver.m_padXYZ, driver.m_padXYZ + 3 * part.numNode()), expected);
    }
}

// Two pairs of another distance: the first run fits the second pair, and the second run finds it fitted.
TEST_F(SpringBacks, ASecondReadingAlignsOnceMore)
{
    align({1, 4, 9, 12});
    prepare();
    giveShape(0.1, 0.004);
    driver.m_padXYZ[3 * 11 + 2] += 0.002; // the shape is no rigid image: each fit leaves something
    LayerStores stores(part);
    driver.GetResults(stores.layers());
    std::vector<double> const once(driver.m_padXYZ, driver.m_padXYZ + 3 * part.numNode());
    driver.GetResults(stores.layers());
    std::vector<double> const twice(driver.m_padXYZ, driver.m_padXYZ + 3 * part.numNode());
    EXPECT_NE(once, twice);
    for (std::size_t i = 0; i < once.size(); ++i)
        EXPECT_NEAR(once[i], twice[i], 1e-3);
    EXPECT_EQ(stores[0].disp(1, 2), static_cast<float>(twice[2] - driver.stage().m_psPartMesh->m_padNodalCoords[2]));
}

TEST_F(SpringBacks, AlignmentNodesOutsideTheMeshAreNoPairs)
{
    align({0, -1, 13, 2147483647, 6});
    prepare();
    giveShape(0.0, 0.004);
    driver.Alignment();
    EXPECT_LT(farthest(), 1e-8) << "one pair is left";
}

TEST_F(SpringBacks, AnAlignmentSizeWithoutItsListIsReported)
{
    property.setAlignmentSize(2);
    prepare();
    giveShape(0.0, 0.004);
    driver.Alignment();
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:p_arAlignment != NULL"));
}
