// HoleFillingTest.cpp: the holes of a whole mesh.

#include "HoleFilling.h"

#include "BoundaryFixture.h"
#include "CATError.h"
#include "ElemNormal.h"
#include "HoleFixture.h"
#include "HostFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <set>
#include <string>

using namespace holes;

namespace
{
Grid plateWithTwoHoles()
{
    Grid grid;
    grid.columns = 9;
    grid.rows = 5;
    grid.x1 = 9;
    grid.y1 = 5;
    grid.surface = [](double x, double y) { return Point{x, y, 0.1 * x * y}; };
    grid.drop = [](int column, int row)
    { return (row == 2 && column >= 1 && column <= 3) || (row >= 1 && row <= 3 && column >= 5 && column <= 7); };
    return grid;
}

//   4---3
//   | 1 |
//   1---2
TEST(FillAllHoles, AMeshWithAnOuterLoopAloneGetsNothing)
{
    Filled const filled(samples::quads({{1, 2, 3, 4}}));
    EXPECT_EQ(filled.result, 0);
    EXPECT_EQ(filled.numNode, 4);
    EXPECT_EQ(filled.numElem, 1);
    EXPECT_EQ(Ints(filled.elems[0], filled.elems[0] + 4), (Ints{1, 2, 3, 4}));
}

//   4---3---6
//   | 1 | 2 |      2 runs the other way
//   1---2---5
TEST(FillAllHoles, OrientationIsMadeToAgreeWhereThereIsNoHoleToo)
{
    Filled const filled(samples::quads({{1, 2, 3, 4}, {2, 3, 6, 5}}));
    EXPECT_EQ(filled.result, 0);
    EXPECT_EQ(Ints(filled.elems[1], filled.elems[1] + 4), (Ints{2, 5, 6, 3}));
}

TEST(FillAllHoles, LeavesOneLoopAndAgreeingOrientation)
{
    VOZCatMesh const mesh = plateWithTwoHoles().mesh();
    Filled const filled(mesh);
    EXPECT_EQ(filled.result, 0);
    VOZCatMesh closed = filled.mesh();
    Chained const chained(closed);
    EXPECT_EQ(chained.error, 0);
    EXPECT_EQ(chained.loops.numLoops(), 1);
    EXPECT_EQ(chained.loops.numLoopEdges(1), 2 * (9 + 5));
    for (int e = 1; e <= closed.numElem(); ++e)
        EXPECT_GT(ElemNormal(closed).normal(e, 2), 0.0) << e;
}

TEST(FillAllHoles, NewNodesAreNumberedWithoutGapsHoleAfterHole)
{
    VOZCatMesh const mesh = plateWithTwoHoles().mesh();
    Chained const chained(mesh);
    ASSERT_EQ(chained.loops.numLoops(), 3);
    Filled const filled(mesh);

    int nextId = mesh.numNode() + 1;
    int row = mesh.numNode();
    std::set<std::set<int>> faces;
    for (int l = 1; l <= 3; ++l)
    {
        if (l == chained.loops.outerLoopNum())
            continue;
        std::vector<int> numbers;
        Wire wire;
        for (int const k : walk(chained.loops, l))
        {
            int const n = chained.edges.startNode(k);
            numbers.push_back(n);
            wire.push_back({static_cast<float>(mesh.node(n, 0)), static_cast<float>(mesh.node(n, 1)),
                            static_cast<float>(mesh.node(n, 2))});
        }
        Patch const patch(wire, static_cast<int>(wire.size()), HoleMemory(), numbers);
        for (int i = 0; i < patch.numPoint; ++i, ++row)
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(filled.nodes[row][c], static_cast<double>(patch.coords[i][c]));
        for (Face face : patch.allFaces())
        {
            for (int & corner : face)
                corner += corner > 100 ? nextId - 101 : 0;
            faces.insert({face[0], face[1], face[2]});
        }
        nextId += patch.numPoint;
    }
    EXPECT_EQ(filled.numNode, row);
    std::vector<Face> added;
    for (int e = mesh.numElem(); e < filled.numElem; ++e)
        added.push_back({filled.elems[e][0], filled.elems[e][1], filled.elems[e][2], filled.elems[e][3]});
    EXPECT_EQ(cornerSets(added), faces);
    EXPECT_EQ(added.size(), faces.size());
}

TEST(FillAllHoles, NoOldNodeMovesAndNoOldElementChangesItsCorners)
{
    VOZCatMesh const mesh = plateWithTwoHoles().mesh();
    Filled const filled(mesh);
    for (int n = 1; n <= mesh.numNode(); ++n)
        EXPECT_EQ(std::memcmp(mesh.GetNodeData()[n], filled.nodes[n - 1], sizeof(double[3])), 0);
    for (int e = 1; e <= mesh.numElem(); ++e)
        EXPECT_EQ(Ints(mesh.GetElemData()[e], mesh.GetElemData()[e] + 4),
                  Ints(filled.elems[e - 1], filled.elems[e - 1] + 4));
}

TEST(FillAllHoles, ATriangularHoleGetsItsCentreAndOneRound)
{
    //      6
    //     /|\        a triangle 1 2 3 left out of the middle of 4 5 6
    //    / 3 \       .
    //   / / \ \      .
    //  /.1---2.\     .
    // 4---------5
    VOZCatMesh const mesh =
        samples::mesh(Points{{-1, 0, 0}, {1, 0, 0}, {0, 1.7, 0}, {-5, -2, 0}, {5, -2, 0}, {0, 7, 0}},
                      Quads{{4, 5, 2, 1}, {5, 6, 3, 2}, {6, 4, 1, 3}});
    Filled const filled(mesh);
    EXPECT_EQ(filled.numNode, 6 + 2);
    EXPECT_EQ(filled.numElem, 3 + 5);
}

TEST(FillAllHoles, EverySampleEndsWithTheOuterLoopAlone)
{
    for (samples::Sample const & sample : samples::cleanSamples())
    {
        Chained const before(sample.mesh);
        Filled const filled(sample.mesh);
        EXPECT_EQ(filled.result, 0) << sample.name;
        if (before.loops.outerLoopNum() == 0)
            continue;
        Chained const after(filled.mesh());
        EXPECT_EQ(after.loops.numLoops(), 1) << sample.name;
    }
}

//       6---7
//       | 2 |
//   4---3---5      node 3 has four free edges
//   | 1 |
//   1---2
TEST(FillAllHoles, ABrokenBoundaryIsNotNoticedAndNothingIsFilled)
{
    Filled const filled(samples::quads({{1, 2, 3, 4}, {3, 5, 7, 6}}));
    EXPECT_EQ(filled.result, 0);
    EXPECT_EQ(filled.numElem, 2);
    Filled const closed(samples::closedBox());
    EXPECT_EQ(closed.result, 0);
    EXPECT_EQ(closed.numElem, 6);
}

class FillAllHolesOnAHost : public HostFixture
{
};

TEST_F(FillAllHolesOnAHost, BadCornersAreReportedAndHarmNothing)
{
    std::mt19937 random(5);
    testing::internal::CaptureStdout(); // the adjacency's own messages
    for (int run = 0; run < 300; ++run)
    {
        VOZCatMesh mesh = plateWithTwoHoles().mesh();
        for (int i = 0; i < 3; ++i)
        {
            int const bad[] = {0, -1, 10000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 7};
            mesh.GetElemData()[1 + random() % 30][random() % 4] = bad[random() % 6];
        }
        Filled const filled(mesh);
        EXPECT_EQ(filled.result, 0);
    }
    EXPECT_NE(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(host.reports.empty());
}

TEST_F(FillAllHolesOnAHost, NothingIsTouchedForANegativeCountOrAMissingArray)
{
    int numNode = 3;
    int numElem = 1;
    double(*nodes)[3] = nullptr;
    int(*elems)[4] = nullptr;
    EXPECT_EQ(FillAllHoles(numNode, nullptr, numElem, &elems), 1);
    EXPECT_EQ(FillAllHoles(numNode, &nodes, numElem, nullptr), 1);
    EXPECT_EQ(FillAllHoles(numNode, &nodes, numElem, &elems), 1);
    numNode = -1;
    EXPECT_EQ(FillAllHoles(numNode, &nodes, numElem, &elems), 1);
    numNode = 0;
    numElem = 0;
    EXPECT_EQ(FillAllHoles(numNode, &nodes, numElem, &elems), 0);
    EXPECT_EQ(nodes, nullptr);
}

std::string messagesOf(VOZCatMesh const & mesh, int calls, int & o_result, int & o_numElem)
{
    s_callsLeft = calls;
    testing::internal::CaptureStderr();
    Filled const filled(mesh, {allocateUntil, growUntil});
    o_result = filled.result;
    o_numElem = filled.numElem;
    return testing::internal::GetCapturedStderr();
}

// For one hole: coordinates, numbers; ids, coordinates and faces of the patch; nodes and elements grown.
TEST(FillAllHoles, SaysWhichMemoryRanOut)
{
    VOZCatMesh const mesh = samples::plateWithHole().mesh();
    int result = 0;
    int numElem = 0;
    EXPECT_EQ(messagesOf(mesh, 0, result, numElem), "cannot allocal memory for hole nodal coord.\n");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(messagesOf(mesh, 1, result, numElem), "cannot allocal memory for hole nodal Id.\n");
    EXPECT_EQ(result, 1);
    for (int calls = 2; calls < 5; ++calls) // the hole stays open, and that is no failure
    {
        EXPECT_EQ(messagesOf(mesh, calls, result, numElem), "Error in fill hole.\n");
        EXPECT_EQ(result, 0);
        EXPECT_EQ(numElem, mesh.numElem());
    }
    for (int calls = 5; calls < 7; ++calls)
    {
        EXPECT_EQ(messagesOf(mesh, calls, result, numElem), "smffll catch exception.\n");
        EXPECT_EQ(result, 1);
    }
    EXPECT_EQ(messagesOf(mesh, 7, result, numElem), "");
    EXPECT_EQ(result, 0);
}

class RaisingHost : public VOZMemoryHost
{
public:
    void BrokenContract(std::string const & text, std::string const &, int) override
    {
        throw CATError(CATUnicodeString(text.c_str()), "RaisingHost", 1);
    }
};

TEST(FillAllHoles, AHostThatRaisesIsCaughtWithAMessage)
{
    RaisingHost host;
    VOZHost::Install(&host);
    VOZCatMesh mesh = samples::plateWithHole().mesh();
    mesh.GetElemData()[1][0] = 99999;
    testing::internal::CaptureStderr();
    Filled const filled(mesh);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "smffll catch exception.\n");
    EXPECT_EQ(filled.result, 1);
    VOZHost::Install(nullptr);
}
} // namespace
