// MeshTest.cpp: the container's arrays, numbering and contracts, and what it computes in one walk.

#include "Mesh.h"

#include "HostFixture.h"
#include "SampleMeshes.h"
#include "VOZCatAxis.h"
#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <utility>

namespace
{
using samples::Grid;
using samples::Ints;
using samples::Point;
using samples::Points;
using samples::Quads;
using samples::Sample;

constexpr char const * kNodeCoordinate = "n > 0 && n <= mNumNode && c < 3";
constexpr char const * kNode = "n > 0 && n <= mNumNode";
constexpr char const * kCorner = "e > 0 && e <= mNumElem && n < 4";
constexpr char const * kElem = "e > 0 && e <= mNumElem";

class MeshContract : public HostFixture
{
protected:
    // The one report since the last call; "" if none, "several" if more.
    std::string report()
    {
        std::string result;
        if (host.reports.size() == 1)
        {
            result = host.reports[0].text;
            EXPECT_EQ(host.reports[0].file, "Mesh");
            EXPECT_GT(host.reports[0].line, 0);
        }
        else if (!host.reports.empty())
            result = "several";
        host.reports.clear();
        return result;
    }
};

Ints rowOf(VOZCatMesh const & mesh, int e)
{
    return {mesh.ElementValue(e, 0), mesh.ElementValue(e, 1), mesh.ElementValue(e, 2), mesh.ElementValue(e, 3)};
}

bool sameRows(VOZCatMesh const & a, VOZCatMesh const & b)
{
    if (a.numElem() != b.numElem() || a.numNode() != b.numNode())
        return false;
    for (int e = 1; e <= a.numElem(); ++e)
        if (rowOf(a, e) != rowOf(b, e))
            return false;
    for (int n = 1; n <= a.numNode(); ++n)
        if (std::memcmp(a.GetNodeData()[n], b.GetNodeData()[n], sizeof(double[3])) != 0)
            return false;
    return true;
}

// Ten nodes in two rows of five, four quadrilaterals between.
VOZCatMesh tenNodes()
{
    Grid grid;
    grid.columns = 4;
    grid.rows = 1;
    grid.x1 = 4;
    return grid.mesh();
}

TEST(Mesh, OfNothingHasNullArrays)
{
    VOZCatMesh const mesh;
    EXPECT_EQ(mesh.numNode(), 0);
    EXPECT_EQ(mesh.numElem(), 0);
    EXPECT_EQ(mesh.GetNodeData(), nullptr);
    EXPECT_EQ(mesh.GetElemData(), nullptr);
    EXPECT_EQ(mesh.GetCrvData(), nullptr);
    EXPECT_EQ(mesh.GetName(), nullptr);
    EXPECT_EQ(mesh.GetFirstNodeNumber(), 0);
    EXPECT_EQ(mesh.GetFirstElementNumber(), 0);
}

TEST(Mesh, OfNothingComputesSentinelsAndNothing)
{
    VOZCatMesh mesh;
    double largest = 0.0;
    double smallest = 0.0;
    mesh.EvalMeshElementSize(largest, smallest);
    EXPECT_EQ(largest, -3.4028234663852886e38);
    EXPECT_EQ(smallest, 3.4028234663852886e38);
    largest = smallest = 0.0;
    mesh.EvalMeshMinMaxZ(largest, smallest);
    EXPECT_EQ(largest, -3.4028234663852886e38);
    EXPECT_EQ(smallest, 3.4028234663852886e38);
    double marker = 0.0;
    double * normals = &marker;
    EXPECT_EQ(mesh.EvalNodesNormal(normals), 0);
    EXPECT_EQ(normals, &marker);
    mesh.reverse();
    mesh.IdsOffset(5, 6);
    mesh.Translate(vec(1, 2, 3));
    VOZCatAxis const axis;
    mesh.Transform(&axis, 1);
    EXPECT_FALSE(mesh.orient(nullptr));
}

TEST(Mesh, HoldsItsFieldsInOrder)
{
    VOZCatMesh mesh(3, 2);
    char const name[] = "blank";
    mesh.SetName(name);
    mesh.SetFirstNodeNumber(70);
    mesh.SetFirstElementNumber(80);
    struct
    {
        void * table;
        char const * name;
        double (*nodes)[3];
        int numNode;
        int (*elems)[4];
        int numElem;
        int firstNode;
        int firstElem;
        double (*curvature)[3];
    } fields;
    static_assert(sizeof(fields) == sizeof(VOZCatMesh));
    std::memcpy(&fields, static_cast<void const *>(&mesh), sizeof(fields));
    EXPECT_EQ(fields.name, name);
    EXPECT_EQ(fields.nodes, mesh.GetNodeData());
    EXPECT_EQ(fields.numNode, 3);
    EXPECT_EQ(fields.elems, mesh.GetElemData());
    EXPECT_EQ(fields.numElem, 2);
    EXPECT_EQ(fields.firstNode, 70);
    EXPECT_EQ(fields.firstElem, 80);
    EXPECT_EQ(fields.curvature, nullptr);
}

TEST(Mesh, TakesZeroBasedSourcesToPositions)
{
    double const nodes[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    int const elems[2][4] = {{1, 2, 3, 1}, {-5, 1000, 3, 0}};
    VOZCatMesh const mesh(3, 2, nodes, elems);
    EXPECT_EQ(mesh.NodeValue(1, 0), 1);
    EXPECT_EQ(mesh.NodeValue(3, 2), 9);
    EXPECT_EQ(rowOf(mesh, 1), (Ints{1, 2, 3, 1}));
    EXPECT_EQ(rowOf(mesh, 2), (Ints{-5, 1000, 3, 0}));
}

TEST(Mesh, CopiesAreDeepButForTheName)
{
    VOZCatMesh mesh = tenNodes();
    mesh.SetName("blank");
    mesh.IdsOffset(100, 200);
    double(*const curvature)[3] = new double[5][3]();
    curvature[4][2] = 6.5;
    mesh.SetCurvatureValues(curvature);
    VOZCatMesh const copy(mesh);
    VOZCatMesh assigned(2, 1);
    assigned.SetName("tool");
    assigned = mesh;
    EXPECT_EQ(copy.GetName(), nullptr);
    EXPECT_STREQ(assigned.GetName(), "tool");
    for (VOZCatMesh const * const other : {&copy, &std::as_const(assigned)})
    {
        EXPECT_TRUE(sameRows(*other, mesh));
        EXPECT_NE(other->GetNodeData(), mesh.GetNodeData());
        EXPECT_NE(other->GetElemData(), mesh.GetElemData());
        EXPECT_NE(other->GetCrvData(), mesh.GetCrvData());
        EXPECT_EQ(other->GetCrvData()[4][2], 6.5);
        EXPECT_EQ(other->GetFirstNodeNumber(), 100);
        EXPECT_EQ(other->GetFirstElementNumber(), 200);
    }
    mesh.node(1, vec(99, 99, 99));
    EXPECT_EQ(copy.NodeValue(1, 0), 0);
}

TEST(Mesh, AssigningItselfIsHarmless)
{
    VOZCatMesh mesh = tenNodes();
    VOZCatMesh const before(mesh);
    VOZCatMesh & self = mesh;
    mesh = self;
    EXPECT_TRUE(sameRows(mesh, before));
}

TEST(Mesh, SizingKeepsTheFirstRows)
{
    VOZCatMesh mesh = tenNodes();
    VOZCatMesh const before(mesh);
    mesh.sizeNode(20);
    EXPECT_EQ(mesh.numNode(), 20);
    for (int n = 1; n <= 10; ++n)
        EXPECT_EQ(mesh.NodeValue(n, 0), before.NodeValue(n, 0));
    mesh.sizeNode(3);
    EXPECT_EQ(mesh.numNode(), 3);
    EXPECT_EQ(mesh.NodeValue(3, 0), before.NodeValue(3, 0));
    mesh.sizeElem(2);
    EXPECT_EQ(rowOf(mesh, 2), rowOf(before, 2));
    mesh.sizeElem(6);
    EXPECT_EQ(mesh.numElem(), 6);
    EXPECT_EQ(rowOf(mesh, 2), rowOf(before, 2));
    mesh.sizeNode(0);
    mesh.sizeElem(0);
    EXPECT_EQ(mesh.GetNodeData(), nullptr);
    EXPECT_EQ(mesh.GetElemData(), nullptr);
    mesh.sizeNode(1);
    EXPECT_NE(mesh.GetNodeData(), nullptr);
}

TEST(Mesh, CurvatureFollowsTheElementsOfASizedMesh)
{
    VOZCatMesh mesh = tenNodes();
    double(*const curvature)[3] = new double[5][3]();
    curvature[2][1] = 8.0;
    mesh.SetCurvatureValues(curvature);
    mesh.sizeElem(40);
    VOZCatMesh const copy(mesh); // reads one row per element
    EXPECT_EQ(copy.GetCrvData()[2][1], 8.0);
    VOZCatMesh fresh;
    double(*const early)[3] = new double[4][3]();
    fresh.SetCurvatureValues(early);
    fresh.sizeElem(3); // the rows were handed over for the elements to come
    EXPECT_EQ(fresh.GetCrvData(), early);
}

TEST(Mesh, NodesAreAppendedInOrder)
{
    VOZCatMesh mesh = tenNodes();
    double const more[2][3] = {{7, 8, 9}, {10, 11, 12}};
    mesh.addNode(more, 2);
    EXPECT_EQ(mesh.numNode(), 12);
    EXPECT_EQ(mesh.NodeValue(10, 0), 4);
    EXPECT_EQ(mesh.NodeValue(11, 2), 9);
    EXPECT_EQ(mesh.NodeValue(12, 0), 10);
    mesh.addNode(mesh.GetNodeData() + 11, 2); // its own rows
    EXPECT_EQ(mesh.NodeValue(14, 0), 10);
    mesh.addNode(nullptr, 0);
    EXPECT_EQ(mesh.numNode(), 14);
    VOZCatMesh empty;
    empty.addNode(more, 1);
    EXPECT_EQ(empty.NodeValue(1, 1), 8);
}

TEST(Mesh, CountsAreOverwrittenWithoutTouchingTheArrays)
{
    VOZCatMesh mesh = tenNodes();
    double(*const nodes)[3] = mesh.GetNodeData();
    mesh.numNode(4);
    mesh.numElem(1);
    EXPECT_EQ(mesh.numNode(), 4);
    EXPECT_EQ(mesh.numElem(), 1);
    EXPECT_EQ(mesh.GetNodeData(), nodes);
    EXPECT_EQ(nodes[10][0], 4);
}

TEST(Mesh, ANodeIsAViewOfItsRow)
{
    VOZCatMesh mesh = tenNodes();
    Vec node = mesh.node(2);
    node[2] = 5;
    EXPECT_EQ(mesh.NodeValue(2, 2), 5);
    node = vec(7, 8, 9);
    EXPECT_EQ(mesh.GetNodeData()[2][0], 7);
    mesh.node(3, node);
    EXPECT_EQ(mesh.node(3, 1), 8);
}

TEST_F(MeshContract, LabelsAndPositionsNameTheSameNode)
{
    VOZCatMesh mesh(50, 0);
    mesh.node(3, vec(1, 2, 3));
    mesh.SetFirstNodeNumber(1000);
    EXPECT_EQ(mesh.node(1003, 1), 2);
    EXPECT_EQ(members(mesh.node(1003)).values, mesh.GetNodeData()[3]);
    mesh.node(1050, vec(4, 4, 4));
    EXPECT_EQ(mesh.NodeValue(50, 0), 4);
    EXPECT_EQ(report(), "");
    mesh.node(1051, 1);
    EXPECT_EQ(report(), kNodeCoordinate);
    mesh.node(1000, 1);
    EXPECT_EQ(report(), kNodeCoordinate);
    mesh.node(51, 0);
    EXPECT_EQ(report(), kNodeCoordinate);
}

TEST_F(MeshContract, BelowTheOffsetAPositionWins)
{
    VOZCatMesh mesh(50, 0);
    for (int n = 1; n <= 50; ++n)
        mesh.node(n, vec(n, 0, 0));
    mesh.SetFirstNodeNumber(10);
    EXPECT_EQ(mesh.node(50, 0), 50);
    EXPECT_EQ(mesh.node(51, 0), 41);
    EXPECT_EQ(report(), "");
}

TEST_F(MeshContract, AfterAnOffsetPositionsStayAndLabelsMove)
{
    VOZCatMesh mesh = tenNodes();
    VOZCatMesh const before(mesh);
    mesh.IdsOffset(100, 200);
    for (int e = 1; e <= 4; ++e)
        for (int k = 0; k < 4; ++k)
        {
            EXPECT_EQ(mesh.elem(e, k), before.elem(e, k));
            EXPECT_EQ(mesh.ElementValue(e, k), before.elem(e, k) + 100);
            EXPECT_EQ(mesh.elem(200 + e, k), before.elem(e, k));
        }
    EXPECT_EQ(mesh.node(103, 0), before.node(3, 0));
    EXPECT_EQ(mesh.elem(5), nullptr);
    EXPECT_EQ(report(), "");
    mesh.IdsOffset(1, 1);
    EXPECT_EQ(mesh.GetFirstNodeNumber(), 101);
    EXPECT_EQ(mesh.GetFirstElementNumber(), 201);
    EXPECT_EQ(mesh.ElementValue(1, 0), 102);
}

TEST_F(MeshContract, AStoredCornerIsTakenAsItStands)
{
    VOZCatMesh const mesh = []
    {
        VOZCatMesh result = tenNodes();
        result.IdsOffset(100, 0);
        return result;
    }();
    mesh.elem(2, 3, 105); // a const mesh, too
    EXPECT_EQ(mesh.elem(2, 3), 5);
    EXPECT_EQ(mesh.ElementValue(2, 3), 105);
    EXPECT_EQ(report(), "");
}

TEST_F(MeshContract, TheRawRowIsNullOutsideTheLabelsAndUnresolvedInside)
{
    VOZCatMesh mesh = tenNodes();
    EXPECT_EQ(mesh.elem(4), mesh.GetElemData()[4]);
    EXPECT_EQ(mesh.elem(-1), nullptr);
    EXPECT_EQ(mesh.elem(5), nullptr);
    EXPECT_EQ(report(), "");
    EXPECT_EQ(mesh.elem(0), mesh.GetElemData()[0]); // inside the closed range, but no position
    EXPECT_EQ(report(), kElem);
    mesh.SetFirstElementNumber(2);
    EXPECT_EQ(mesh.elem(3), mesh.GetElemData()[3]);
    EXPECT_EQ(report(), "");
    EXPECT_EQ(mesh.elem(6), mesh.GetElemData()[0]); // the last label, which no offset brings back
    EXPECT_EQ(report(), kElem);
    EXPECT_EQ(mesh.elem(7), nullptr);
    EXPECT_EQ(mesh.elem(1), nullptr);
    mesh.SetFirstElementNumber(std::numeric_limits<int>::max());
    EXPECT_EQ(mesh.elem(1), nullptr);
    EXPECT_EQ(report(), "");
}

TEST_F(MeshContract, ABadNodeGoesToRowZero)
{
    VOZCatMesh mesh = tenNodes();
    for (int const n : {0, -1, 11, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
    {
        EXPECT_EQ(std::as_const(mesh).node(n, 2), 0.0);
        EXPECT_EQ(report(), kNodeCoordinate) << n;
        EXPECT_EQ(members(mesh.node(n)).values, mesh.GetNodeData()[0]);
        EXPECT_EQ(report(), kNode) << n;
    }
    VOZCatMesh const before(mesh);
    mesh.node(11, vec(1, 2, 3));
    EXPECT_EQ(report(), kNode);
    EXPECT_TRUE(sameRows(mesh, before));
    EXPECT_EQ(mesh.GetNodeData()[0][1], 2);
}

TEST_F(MeshContract, ABadCoordinateOrCornerGoesToRowZero)
{
    VOZCatMesh mesh = tenNodes();
    VOZCatMesh const before(mesh);
    for (int const c : {3, 1000000, -1})
    {
        mesh.node(1, c);
        EXPECT_EQ(report(), kNodeCoordinate) << c;
    }
    for (int const k : {4, 1000000, -1})
    {
        EXPECT_EQ(mesh.elem(1, k), 0) << k;
        EXPECT_EQ(report(), kCorner) << k;
        mesh.elem(1, k, 0);
        EXPECT_EQ(report(), kCorner) << k;
    }
    EXPECT_TRUE(sameRows(mesh, before));
}

TEST_F(MeshContract, ABadElementGoesToRowZero)
{
    VOZCatMesh mesh = tenNodes();
    VOZCatMesh const before(mesh);
    for (int const e : {0, -1, 5, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
    {
        EXPECT_EQ(mesh.elem(e, 1), 0);
        EXPECT_EQ(report(), kCorner) << e;
        mesh.elem(e, 1, 0);
        EXPECT_EQ(report(), kCorner) << e;
        EXPECT_EQ(mesh.isTriangle(e), 1); // row 0 is all zeros
        EXPECT_EQ(report(), kElem) << e;
        EXPECT_EQ(mesh.GetElementNodePosition(e, 3), -1);
        EXPECT_EQ(report(), kCorner) << e;
    }
    EXPECT_TRUE(sameRows(mesh, before));
}

TEST_F(MeshContract, AnEmptyMeshAnswersWithZerosThatAreNobodys)
{
    VOZCatMesh mesh;
    EXPECT_EQ(mesh.node(1, 0), 0.0);
    EXPECT_EQ(report(), kNodeCoordinate);
    Vec nowhere = mesh.node(1);
    EXPECT_EQ(report(), kNode);
    nowhere[0] = 4;
    mesh.node(1, vec(1, 2, 3));
    EXPECT_EQ(report(), kNode);
    EXPECT_EQ(mesh.node(1, 0), 0.0);
    EXPECT_EQ(report(), kNodeCoordinate);
    mesh.elem(1, 2, 9);
    EXPECT_EQ(report(), kCorner);
    EXPECT_EQ(mesh.elem(1, 2), 0);
    EXPECT_EQ(report(), kCorner);
    EXPECT_EQ(mesh.isTriangle(1), 1);
    EXPECT_EQ(report(), kElem);
    double xi = 5;
    double eta = 6;
    mesh.naturalCoord(7, 1, xi, eta);
    EXPECT_EQ(report(), "elem > 0 && elem <= mNumElem");
    EXPECT_EQ(xi, 5);
    EXPECT_EQ(eta, 6);
    ASSERT_NE(mesh.elem(0), nullptr);
    EXPECT_EQ(mesh.elem(0)[0], 0);
}

TEST_F(MeshContract, CountsRaisedOverNoArrayReadNothing)
{
    VOZCatMesh mesh;
    mesh.numNode(1000000);
    mesh.numElem(1000000);
    EXPECT_EQ(mesh.node(7, 0), 0.0);
    EXPECT_EQ(mesh.elem(7, 0), 0);
    double largest = 0.0;
    double smallest = 0.0;
    mesh.EvalMeshElementSize(largest, smallest);
    mesh.EvalMeshMinMaxZ(largest, smallest);
    mesh.reverse();
    mesh.IdsOffset(1, 1);
    mesh.Translate(vec(1, 1, 1));
    VOZCatMesh const copy(mesh);
    EXPECT_EQ(copy.numNode(), 1000000);
    EXPECT_EQ(copy.GetNodeData(), nullptr);
    mesh.sizeNode(2);
    mesh.sizeElem(2);
    EXPECT_EQ(mesh.numNode(), 2);
}

TEST(Mesh, ATriangleIsARowWhoseFourthEntryRepeatsTheFirst)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 1}, {1, 2, 3, 3}, {1, 2, 3, 0}});
    EXPECT_EQ(mesh.isTriangle(1), 1);
    EXPECT_EQ(mesh.isTriangle(2), 0);
    EXPECT_EQ(mesh.isTriangle(3), 0); // a zero is no marker
    mesh.IdsOffset(40, 50);
    EXPECT_EQ(mesh.isTriangle(1), 1);
    EXPECT_EQ(mesh.isTriangle(51), 1);
    EXPECT_EQ(mesh.isTriangle(52), 0);
}

TEST(Mesh, ReverseExchangesTheCornersBesideTheFirst)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 1}, {1, 2, 3, 4}});
    mesh.reverse();
    EXPECT_EQ(rowOf(mesh, 1), (Ints{1, 3, 2, 1}));
    EXPECT_EQ(rowOf(mesh, 2), (Ints{1, 4, 3, 2}));
}

TEST(Mesh, ReversingTwiceRestoresEveryRow)
{
    for (Sample & sample : samples::cleanSamples())
    {
        VOZCatMesh const before(sample.mesh);
        sample.mesh.reverse();
        EXPECT_FALSE(sameRows(sample.mesh, before)) << sample.name;
        sample.mesh.reverse();
        EXPECT_TRUE(sameRows(sample.mesh, before)) << sample.name;
    }
}

TEST_F(MeshContract, NaturalCoordinatesGoByStoredLabel)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 4}, {5, 6, 7, 5}});
    mesh.IdsOffset(100, 200);
    double const expected[7][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {0, 0}, {1, 0}, {0, 1}};
    for (int n = 1; n <= 7; ++n)
    {
        double xi = 9;
        double eta = 9;
        mesh.naturalCoord(n, n <= 4 ? 1 : 2, xi, eta); // a position is no label here
        EXPECT_EQ(xi, 9);
        mesh.naturalCoord(100 + n, n <= 4 ? 1 : 2, xi, eta);
        EXPECT_EQ(xi, expected[n - 1][0]) << n;
        EXPECT_EQ(eta, expected[n - 1][1]) << n;
    }
    EXPECT_EQ(report(), "");
    double xi = 9;
    double eta = 9;
    mesh.naturalCoord(101, 201, xi, eta); // nor is an element's label resolved
    EXPECT_EQ(report(), "elem > 0 && elem <= mNumElem");
    EXPECT_EQ(xi, 9);
    EXPECT_EQ(eta, 9);
}

TEST(Mesh, OfARepeatedCornerTheLastGivesTheNaturalCoordinates)
{
    VOZCatMesh const mesh = samples::quads({{1, 2, 3, 3}});
    double xi = 9;
    double eta = 9;
    mesh.naturalCoord(3, 1, xi, eta);
    EXPECT_EQ(xi, -1);
    EXPECT_EQ(eta, 1);
}

TEST(Mesh, TheCornerOfANodeIsItsFirst)
{
    VOZCatMesh mesh = samples::quads({{4, 2, 3, 1}, {5, 6, 7, 5}, {1, 2, 3, 3}});
    mesh.IdsOffset(100, 0);
    EXPECT_EQ(mesh.GetElementNodePosition(1, 4), 0);
    EXPECT_EQ(mesh.GetElementNodePosition(1, 1), 3);
    EXPECT_EQ(mesh.GetElementNodePosition(2, 5), 0);
    EXPECT_EQ(mesh.GetElementNodePosition(2, 7), 2);
    EXPECT_EQ(mesh.GetElementNodePosition(3, 3), 2);
    EXPECT_EQ(mesh.GetElementNodePosition(1, 5), -1);
    EXPECT_EQ(mesh.GetElementNodePosition(1, 104), -1);
}

//   4-----3      edges 3, 2, 3, 2; the triangle's third side is the quadrilateral's diagonal
//   |     |
//   1-----2
TEST(Mesh, ElementSizeIsOverThreeOrFourSides)
{
    Points const corners{{0, 0, 0}, {3, 0, 0}, {3, 2, 0}, {0, 2, 0}};
    double largest = 0.0;
    double smallest = 0.0;
    samples::mesh(corners, Quads{{1, 2, 3, 4}}).EvalMeshElementSize(largest, smallest);
    EXPECT_EQ(largest, 3);
    EXPECT_EQ(smallest, 2);
    samples::mesh(corners, Quads{{1, 2, 3, 1}}).EvalMeshElementSize(largest, smallest);
    EXPECT_EQ(largest, std::sqrt(13.0));
    EXPECT_EQ(smallest, 2);
}

TEST(Mesh, TheRangeOfZCountsUnusedNodes)
{
    VOZCatMesh const mesh =
        samples::mesh({{0, 0, 1}, {1, 0, 2}, {0, 1, 3}, {9, 9, 40}, {9, 9, -50}}, Quads{{1, 2, 3, 1}});
    double largest = 0.0;
    double smallest = 0.0;
    mesh.EvalMeshMinMaxZ(largest, smallest);
    EXPECT_EQ(largest, 40);
    EXPECT_EQ(smallest, -50);
}

TEST(Mesh, FacesAwayOnlyBelowADotProductOfZero)
{
    VOZCatMesh mesh = tenNodes();
    VOZCatMesh const before(mesh);
    Vec up = vec(0, 0, 1);
    Vec down = vec(0, 0, -1);
    Vec across = vec(1, 0, 0);
    EXPECT_FALSE(mesh.orient(nullptr));
    EXPECT_FALSE(mesh.orient(&up));
    EXPECT_TRUE(mesh.orient(&down));
    EXPECT_FALSE(mesh.orient(&across));
    EXPECT_TRUE(sameRows(mesh, before));
    mesh.reverse();
    EXPECT_TRUE(mesh.orient(nullptr));
    EXPECT_FALSE(mesh.orient(&across));
}

TEST(Mesh, TheAverageNormalIsWeightedByArea)
{
    // a 3 x 4 rectangle facing z and a 1 x 4 one facing x
    VOZCatMesh const mesh = samples::mesh({{0, 0, 0}, {3, 0, 0}, {3, 4, 0}, {0, 4, 0}, {0, 0, 1}, {0, 4, 1}},
                                          Quads{{1, 2, 3, 4}, {1, 4, 6, 5}});
    double normal[3] = {};
    mesh.EvalAverageNormal(normal);
    EXPECT_EQ(normal[0], 8 / std::sqrt(640.0));
    EXPECT_EQ(normal[1], 0);
    EXPECT_EQ(normal[2], 24 / std::sqrt(640.0));
}

TEST_F(MeshContract, NodeNormalsAreMeansOfUnitNormals)
{
    VOZCatMesh mesh = samples::mesh({{0, 0, 0}, {3, 0, 0}, {3, 4, 0}, {0, 4, 0}, {0, 0, 1}, {0, 4, 1}},
                                    Quads{{1, 2, 3, 4}, {1, 4, 6, 5}});
    mesh.IdsOffset(100, 200);
    double * raw = nullptr;
    ASSERT_EQ(mesh.EvalNodesNormal(raw), 6);
    std::unique_ptr<double[]> const normals(raw);
    Point const expected[6] = {{0.5, 0, 0.5}, {0, 0, 1}, {0, 0, 1}, {0.5, 0, 0.5}, {1, 0, 0}, {1, 0, 0}};
    for (std::size_t n = 0; n < 6; ++n)
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_EQ(normals[3 * n + c], expected[n][c]) << n << c;
    EXPECT_EQ(report(), "");
}

TEST_F(MeshContract, ANodeWithoutAnElementBreaksTheContractOfItsNormal)
{
    VOZCatMesh const mesh = samples::mesh({{0, 0, 1}, {1, 0, 2}, {0, 1, 3}, {9, 9, 9}}, Quads{{1, 2, 3, 1}});
    double * raw = nullptr;
    ASSERT_EQ(mesh.EvalNodesNormal(raw), 4);
    std::unique_ptr<double[]> const normals(raw);
    EXPECT_EQ(report(), "ar_nOccurances[n] > 0");
    EXPECT_TRUE(std::isnan(normals[9]));
    EXPECT_FALSE(std::isnan(normals[8]));
}

TEST_F(MeshContract, WalksOverABadCornerReportItAndStayInside)
{
    VOZCatMesh mesh = samples::mesh({{0, 0, 1}, {1, 0, 2}, {0, 1, 3}}, Quads{{1, 2, 4, 1}, {1, 2, -2000000000, 3}});
    mesh.SetFirstNodeNumber(0);
    double largest = 0.0;
    double smallest = 0.0;
    mesh.EvalMeshElementSize(largest, smallest);
    EXPECT_EQ(host.reports.size(), 4U); // each bad corner ends two sides
    for (VOZMemoryHost::Report const & broken : host.reports)
        EXPECT_EQ(broken.text, kNodeCoordinate);
    EXPECT_EQ(largest, std::sqrt(10.0)); // as if the corner were row 0: the origin
    host.reports.clear();
    double * raw = nullptr;
    ASSERT_EQ(mesh.EvalNodesNormal(raw), 3);
    std::unique_ptr<double[]> const normals(raw);
    EXPECT_EQ(host.reports.size(), 2U);
}

TEST(Mesh, TransformsByDirection)
{
    VOZCatAxis axis;
    axis.axis(0, vec(0, 1, 0));
    axis.axis(1, vec(-1, 0, 0));
    axis.origin(vec(10, 20, 30));
    VOZCatMesh const before = samples::hat();
    for (int const direction : {0, 1, 2, 3})
    {
        VOZCatMesh mesh(before);
        mesh.Transform(&axis, direction);
        for (int n = 1; n <= mesh.numNode(); ++n)
        {
            Vec const p = vec(before.NodeValue(n, 0), before.NodeValue(n, 1), before.NodeValue(n, 2));
            EXPECT_EQ(mesh.node(n), direction == 2 ? axis.fromGlobal(p) : axis.toGlobal(p)) << n;
        }
    }
    VOZCatMesh mesh(before);
    mesh.Transform(nullptr, 2);
    EXPECT_TRUE(sameRows(mesh, before));
}

TEST(Mesh, TranslatesEveryNodeEvenByOneOfItsOwn)
{
    VOZCatMesh const before = samples::hat();
    VOZCatMesh byRow(before);
    double const row[3] = {1, -2, 3};
    byRow.Translate(row);
    VOZCatMesh byVec(before);
    byVec.Translate(vec(1, -2, 3));
    EXPECT_TRUE(sameRows(byRow, byVec));
    EXPECT_EQ(byRow.NodeValue(5, 0), before.NodeValue(5, 0) + 1);
    VOZCatMesh mesh(before);
    mesh.Translate(mesh.node(2));
    for (int n = 1; n <= mesh.numNode(); ++n)
        EXPECT_EQ(mesh.NodeValue(n, 0), before.NodeValue(n, 0) + before.NodeValue(2, 0));
}

TEST(Mesh, LabelOffsetsChangeNoFigure)
{
    for (Sample & sample : samples::cleanSamples())
    {
        double before[4] = {};
        double after[4] = {};
        sample.mesh.EvalMeshElementSize(before[0], before[1]);
        sample.mesh.EvalAverageNormal(before + 1);
        sample.mesh.IdsOffset(1000, 2000);
        sample.mesh.EvalMeshElementSize(after[0], after[1]);
        sample.mesh.EvalAverageNormal(after + 1);
        EXPECT_EQ(std::memcmp(before, after, sizeof(before)), 0) << sample.name;
    }
}

// Whatever the index, an access stays within the mesh; run under the address sanitizer this is the proof.
TEST_F(MeshContract, RandomIndicesStayInside)
{
    std::mt19937 random(5);
    VOZCatMesh mesh = tenNodes();
    mesh.IdsOffset(1000, 2000);
    auto const any = [&random]
    {
        static int const near[] = {-1, 0, 1, 4, 5, 10, 11, 1000, 1001, 1010, 1011, 2000, 2001, 2004, 2005};
        return random() % 2 ? near[random() % std::size(near)] : static_cast<int>(random());
    };
    for (int i = 0; i < 20000; ++i)
    {
        int const index = any();
        int const column = random() % 4 ? static_cast<int>(random() % 6) - 1 : any();
        mesh.node(index, column);
        mesh.node(index);
        mesh.elem(index, column);
        mesh.elem(index);
        mesh.isTriangle(index);
        mesh.GetElementNodePosition(index, column);
        double xi = 0;
        double eta = 0;
        mesh.naturalCoord(column, index, xi, eta);
        if (mesh.elem(index, column) == -1000)
            mesh.elem(index, column, 0);
    }
    EXPECT_GT(host.reports.size(), 1000U);
}
} // namespace
