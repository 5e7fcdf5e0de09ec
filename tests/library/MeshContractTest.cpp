// MeshContractTest.cpp: labels and positions, and accesses outside the mesh: each is reported and stays inside.

#include "MeshFixture.h"

#include "HostFixture.h"
#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <utility>

using namespace meshtest;

namespace
{
using samples::Point;
using samples::Quads;

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
