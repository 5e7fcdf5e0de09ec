// MeshTest.cpp: the container's arrays and numbering, and what it computes in one walk.

#include "MeshFixture.h"

#include "VOZCatAxis.h"
#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using namespace meshtest;

namespace
{
using samples::Points;
using samples::Quads;
using samples::Sample;

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
} // namespace
