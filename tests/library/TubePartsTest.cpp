// TubePartsTest.cpp: the steps of the opening, each by itself.

#include "Tube.h"

#include "BoundaryFixture.h"
#include "TubeFixture.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

using namespace tubes;

namespace
{
class OpenTube : public Tube
{
public:
    using Tube::BuildMap;
    using Tube::IntersectEdge;
    using Tube::IntersectElem;
    using Tube::Side;
    using Tube::Split;
    using Tube::Tube;
    using Tube::UpdateConnectivity;
};

TEST_F(TubeTest, AnEdgeMissesThePlaneOnlyIfBothEndsAreOnTheSameSide)
{
    VOZCatMesh mesh =
        samples::mesh({{0, 1, 0}, {0, -1, 0}, {0, 2, 0}, {0, 0.001, 0}, {0, -0.001, 0}, {0, 0.0011, 0}, {0, -3, 0}},
                      Triangles{{1, 2, 3}});
    ElemProperty property;
    VOZCatAxis const axis;
    OpenTube const tube(mesh, property, axis, 1.0);
    EXPECT_TRUE(tube.IntersectEdge(1, 2));
    EXPECT_FALSE(tube.IntersectEdge(1, 3));
    EXPECT_FALSE(tube.IntersectEdge(2, 7));
    EXPECT_TRUE(tube.IntersectEdge(1, 4)); // the bound itself is on the plane
    EXPECT_TRUE(tube.IntersectEdge(2, 5));
    EXPECT_FALSE(tube.IntersectEdge(1, 6));
    EXPECT_TRUE(tube.IntersectEdge(4, 5));
}

//   4---3
//   |   |     only corner 3 is below: the sides 2-3 and 3-4 cross, and the diagonal 1-3
//   1---2
TEST_F(TubeTest, AQuadrilateralIsTestedByItsDiagonals)
{
    auto const crosses = [](std::array<double, 4> const & y, bool triangle)
    {
        VOZCatMesh mesh =
            samples::mesh({{0, y[0], 0}, {1, y[1], 0}, {1, y[2], 1}, {0, y[3], 1}}, Quads{{1, 2, 3, triangle ? 1 : 4}});
        ElemProperty property;
        VOZCatAxis const axis;
        return OpenTube(mesh, property, axis, 1.0).IntersectElem(1);
    };
    EXPECT_TRUE(crosses({1, 1, -1, 1}, false));
    EXPECT_TRUE(crosses({1, -1, 1, 1}, false));
    EXPECT_FALSE(crosses({1, -1, 1, -1}, false)); // all four sides cross, but no diagonal does
    EXPECT_FALSE(crosses({1, 1, 1, 1}, false));
    EXPECT_TRUE(crosses({1, 1, -1, 0}, true));
    EXPECT_TRUE(crosses({-1, 1, 1, 0}, true));
    EXPECT_TRUE(crosses({1, -1, 1, 0}, true));
    EXPECT_FALSE(crosses({1, 1, 1, -1}, true));
}

TEST_F(TubeTest, TheSideOfAnElementIsThatOfItsFarthestNode)
{
    auto const side = [](double a, double b, double c, bool skip = false)
    {
        VOZCatMesh mesh = samples::mesh({{0, a, 0}, {1, b, 0}, {0, c, 1}}, Triangles{{1, 2, 3}});
        ElemProperty property;
        VOZCatAxis const axis;
        return OpenTube(mesh, property, axis, 1.0).Side(1, skip);
    };
    EXPECT_EQ(side(1, -2, 0), -1);
    EXPECT_EQ(side(2, -1, 0), 1);
    EXPECT_EQ(side(-1, 1, 0), -1); // of two as far the first
    EXPECT_EQ(side(1, -1, 0), 1);
    EXPECT_EQ(side(0, 0, 0), 0);
    EXPECT_EQ(side(0.0005, -0.0009, 0), 0);
    EXPECT_EQ(side(5, 5, 5, true), 0);
    VOZCatMesh mesh = samples::mesh({{0, 9, 0}, {1, 9, 0}}, Triangles{{1, 2, 3}});
    ElemProperty property;
    VOZCatAxis const axis;
    OpenTube const tube(mesh, property, axis, 1.0);
    EXPECT_EQ(tube.Side(1, false), -1); // a node that is not there yet
    EXPECT_EQ(tube.Side(1, true), -1);
}

TEST_F(TubeTest, WithoutAPathNothingIsMoved)
{
    VOZCatMesh mesh = Pipe().mesh();
    ElemProperty property;
    VOZCatAxis const axis;
    OpenTube tube(mesh, property, axis, 1.0);
    tube.BuildMap();
    EXPECT_EQ(tube.UpdateConnectivity(), 84);
}

// The elements stand station by station: of 24, the nodes of station 3 have none.
TEST_F(TubeTest, ANodeOfThePathWithoutElementsEndsTheMoveHalfWay)
{
    Pipe const pipe;
    VOZCatMesh mesh = pipe.mesh();
    ElemProperty property;
    VOZCatAxis const axis;
    OpenTube tube(mesh, property, axis, 0.0);
    Chained chained(mesh);
    tube.BuildMap();
    ASSERT_TRUE(tube.Split(chained.edges, chained.loops, 1.0));
    EXPECT_EQ(pointsOf(mesh), pointsOf(pipe.mesh()));
    EXPECT_EQ(rowsOf(mesh), rowsOf(pipe.mesh()));
    mesh.numElem(24);
    tube.BuildMap();
    EXPECT_EQ(tube.UpdateConnectivity(), -1);
    EXPECT_EQ(mesh.numNode(), 84);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(Ints(mesh.elem(12 * i + 12), mesh.elem(12 * i + 12) + 4),
                  (Ints{pipe.node(i, 11), pipe.node(i + 1, 11), 84 + i + 2, 84 + i + 1}));
}

TEST_F(TubeTest, AllTubesShareOneStateWhichEachConstructionAndDestructionClears)
{
    VOZCatMesh mesh = Pipe().mesh();
    VOZCatMesh other = Pipe().mesh();
    ElemProperty property;
    property.sizeDispBC(2);
    VOZCatAxis const axis;
    OpenTube first(mesh, property, axis, 0.0);
    ASSERT_TRUE(first.Eval(1.0));
    EXPECT_EQ(first.UpdateConnectivity(), 91 + 7);
    auto second = std::make_unique<Tube>(other, property, axis, 0.0);
    EXPECT_EQ(first.UpdateConnectivity(), 91); // no path
    ASSERT_TRUE(second->Eval(1.0));
    EXPECT_EQ(first.UpdateConnectivity(), 91 + 7); // the second's
    second.reset();
    EXPECT_EQ(first.UpdateConnectivity(), 91);
}
} // namespace
