// ZonesTest.cpp. Meshes are drawn: nodes at the crossings, elements in the cells; marked nodes are named in the test.

#include "Zones.h"

#include "CATRawColl.h"
#include "ZonesFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using namespace zonesof;

namespace
{
TEST_F(ZonesTest, NoMarkedNodeGivesNoZone)
{
    VOZCatMesh mesh = plate().mesh();
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {}));
    EXPECT_EQ(zones.NbZones(), 0);
    EXPECT_EQ(zones.GetZones(), nullptr);
}

TEST_F(ZonesTest, OnlyExactValuesMark)
{
    VOZCatMesh mesh = plate().mesh();
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh,
                     {{8, 4.4999999}, {10, std::nextafter(4.5, 5.0)}, {15, std::nextafter(0.5, 0.0)}, {17, -0.5}}));
    EXPECT_EQ(zones.NbZones(), 0);
}

TEST_F(ZonesTest, AnIsolatedNodeIsAZoneThatListsItTwice)
{
    VOZCatMesh mesh = plate().mesh();
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{15, 4.5}}));
    ASSERT_EQ(zones.NbZones(), 1);
    Zones::Zone const & zone = *zones.GetZones();
    EXPECT_EQ(listOf(zone.nodes), (Ints{15, 15}));
    EXPECT_EQ(zone.id, 1);
    EXPECT_EQ(zone.type, 1);
    EXPECT_EQ(zone.area, 2.0); // element 15, twice
    EXPECT_EQ(rowOf(zone.normal), (std::vector<double>{0, 0, 1}));
    EXPECT_EQ(zone.next, nullptr);
}

TEST_F(ZonesTest, NeighboursOfDifferentValuesAreTwoZonesTheNewestFirst)
{
    VOZCatMesh mesh = plate().mesh();
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{15, 0.5}, {16, 4.5}}));
    ASSERT_EQ(zones.NbZones(), 2);
    Zones::Zone const & second = *zones.GetZones();
    EXPECT_EQ(second.id, 2);
    EXPECT_EQ(second.type, 1);
    EXPECT_EQ(listOf(second.nodes), (Ints{16, 16}));
    ASSERT_NE(second.next, nullptr);
    EXPECT_EQ(second.next->id, 1);
    EXPECT_EQ(second.next->type, -1);
    EXPECT_EQ(listOf(second.next->nodes), (Ints{15, 15}));
    EXPECT_EQ(second.next->next, nullptr);
}

//   4---3
//   | 1 |     all marked. Chains: 1: 1 2 3 4; 2: 2 1 3 4; 3: 3 1 2 4; 4: 4 1 2 3
//   1---2     waves: from 1: 1 2 3 4; then each from 1, 2, 3, 4, all of whose records are met
TEST_F(ZonesTest, ANodeIsListedForEachRecordOfItAndTheSeedOnceMore)
{
    VOZCatMesh mesh = samples::mesh({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, Quads{{1, 2, 3, 4}});
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{1, 4.5}, {2, 4.5}, {3, 4.5}, {4, 4.5}}));
    ASSERT_EQ(zones.NbZones(), 1);
    Ints const met{1, 1, 2, 3, 4, 2, 1, 3, 4, 3, 1, 2, 4, 4, 1, 2, 3}; // the seed, then in the order of the waves
    EXPECT_EQ(listOf(zones.GetZones()->nodes), Ints(met.rbegin(), met.rend()));
    EXPECT_EQ(zones.GetZones()->type, 3);
    // of the numbers, 1 alone is an element: five cells of 4 mm^2, and twelve reports
    EXPECT_EQ(zones.GetZones()->area, 20.0);
    ASSERT_EQ(host.reports.size(), 12U);
    EXPECT_NE(host.reports[0].text.find("e > 0 && e <= mNumElem"), std::string::npos);
}

// The diagonal corners of a quadrilateral are neighbours, those of two triangles are so along their common side alone.
TEST_F(ZonesTest, ZonesGrowAcrossTheDiagonalsOfQuadrilaterals)
{
    for (bool const split : {false, true})
    {
        VOZCatMesh mesh = plate(split).mesh();
        Zones zones(mesh);
        EXPECT_TRUE(eval(zones, mesh, {{9, 4.5}, {14, 4.5}})); // the corners of a cell that its split does not join
        EXPECT_EQ(zones.NbZones(), split ? 2 : 1);
    }
}

TEST_F(ZonesTest, ANodeOnTheOuterLoopMakesTheZoneReachTheEdge)
{
    VOZCatMesh mesh = plate().mesh();
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{14, 4.5}, {13, 4.5}, {28, 4.5}}));
    std::vector<Zones::Zone const *> const all = zonesOf(zones);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0]->type, 3);
    EXPECT_EQ(all[1]->type, 1);
}

TEST_F(ZonesTest, AZoneOfTheSecondValueKeepsItsTypeOnTheOuterLoop)
{
    VOZCatMesh mesh = plate().mesh();
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{1, 0.5}}));
    ASSERT_EQ(zones.NbZones(), 1);
    EXPECT_EQ(zones.GetZones()->type, -1);
}

//   31--32--33--34--35--36
//    |   |   |   |   |   |
//   25--26--27--28--29--30
//    |   |   |   |   |   |
//   19--20--21--22--23--24      a hole between 15, 16, 22, 21
//    |   |   |   | 2 |   |
//   13--14--15--16--17--18
TEST_F(ZonesTest, AZoneAtAHoleIsOfTypeTwoUntilALaterNodeIsOnTheOuterLoop)
{
    VOZCatMesh mesh = samples::plateWithHole().mesh();
    {
        Zones zones(mesh);
        EXPECT_TRUE(eval(zones, mesh, {{16, 4.5}, {17, 4.5}}));
        EXPECT_EQ(zones.GetZones()->type, 2);
    }
    {
        Zones zones(mesh); // from 16 outwards: 18 is met last
        EXPECT_TRUE(eval(zones, mesh, {{16, 4.5}, {17, 4.5}, {18, 4.5}}));
        EXPECT_EQ(zones.GetZones()->type, 3);
    }
    {
        Zones zones(mesh); // from 12 inwards: 16 is met last
        EXPECT_TRUE(eval(zones, mesh, {{12, 4.5}, {17, 4.5}, {22, 4.5}}));
        EXPECT_EQ(zones.GetZones()->type, 2);
    }
}

TEST_F(ZonesTest, AreasAreThoseOfTheElementsOfTheNodesNumbers)
{
    Grid grid = plate();
    grid.surface = [](double x, double y) { return Point{x * x, y, 0.0}; }; // widths 1, 3, 5, 7, 9
    VOZCatMesh mesh = grid.mesh();
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{8, 4.5}}));
    EXPECT_EQ(zones.GetZones()->area, 2 * 5.0); // element 8: the third cell of the second row
    EXPECT_EQ(zones.GetArea(), 125.0);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(ZonesTest, ANodeNumberBeyondTheElementsIsReportedAndAddsNoArea)
{
    VOZCatMesh mesh = plate().mesh(); // 36 nodes, 25 elements
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{26, 4.5}}));
    EXPECT_EQ(zones.GetZones()->area, 0.0);
    ASSERT_EQ(host.reports.size(), 2U);
    EXPECT_NE(host.reports[0].text.find("e > 0 && e <= mNumElem"), std::string::npos) << host.reports[0].text;
}

// The mesh takes a number beyond its elements for a label.
TEST_F(ZonesTest, ANodeNumberBeyondTheElementsCanBeAnElementsLabel)
{
    Grid grid = plate();
    grid.surface = [](double x, double y) { return Point{x * x, y, 0.0}; };
    VOZCatMesh mesh = grid.mesh();
    mesh.SetFirstElementNumber(25);
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{28, 4.5}}));
    EXPECT_EQ(zones.GetZones()->area, 2 * 5.0); // element 3
    EXPECT_TRUE(host.reports.empty());
}

//   4---3          0 1 2 of the quadrilateral: 1 2 3, 4 mm^2; 3 1 2: 4 2 3, of which 4 2 3 is 3 mm^2.
//   |   \.         0 2 3 would have been 1 3 4
//   1----2
TEST_F(ZonesTest, AQuadrilateralsAreaIsThatOfTwoTrianglesWhichItsDiagonalDoesNotPart)
{
    VOZCatMesh mesh = samples::mesh({{0, 0, 0}, {4, 0, 0}, {3, 2, 0}, {0, 2, 0}}, Quads{{1, 2, 3, 4}});
    EXPECT_EQ(Zones(mesh).GetArea(), 4.0 + 3.0); // the same as its area: 4 + 3
    VOZCatMesh dart = samples::mesh({{0, 0, 0}, {4, 0, 0}, {1, 1, 0}, {0, 4, 0}}, Quads{{1, 2, 3, 4}});
    EXPECT_EQ(Zones(dart).GetArea(), 2.0 + 4.0); // 1 2 3 and 4 2 3, not 2 + 2
    VOZCatMesh triangle = samples::mesh({{0, 0, 0}, {4, 0, 0}, {1, 1, 0}}, Triangles{{1, 3, 2}});
    EXPECT_EQ(Zones(triangle).GetArea(), 2.0);
}

TEST_F(ZonesTest, TheWholeAreaStandsFromTheStartAndEvalLeavesIt)
{
    VOZCatMesh mesh = samples::plateWithHole().mesh();
    Zones zones(mesh);
    EXPECT_EQ(zones.GetArea(), 24.0);
    EXPECT_EQ(zones.NbZones(), 0);
    EXPECT_EQ(zones.GetZones(), nullptr);
    EXPECT_TRUE(eval(zones, mesh, {{8, 4.5}}));
    EXPECT_EQ(zones.GetArea(), 24.0);
}

TEST_F(ZonesTest, ANodesNormalIsThatOfItsLowestElement)
{
    //  a roof: element 1 leans one way, element 2 the other; 2 and 5 are on the ridge
    VOZCatMesh mesh = samples::mesh({{0, 0, 0}, {2, 0, 1}, {4, 0, 0}, {0, 3, 0}, {2, 3, 1}, {4, 3, 0}},
                                    Quads{{1, 2, 5, 4}, {2, 3, 6, 5}});
    Zones zones(mesh);
    for (int n = 0; n <= 7; ++n)
        EXPECT_EQ(rowOf(zones.Normal(n)), (std::vector<double>{0, 0, 0})) << n;
    EXPECT_TRUE(eval(zones, mesh, {}));
    std::vector<double> const left{-3, 0, 6}; // as long as the two sides' parallelogram
    std::vector<double> const right{3, 0, 6};
    for (int const n : {1, 2, 4, 5})
        EXPECT_EQ(rowOf(zones.Normal(n)), left) << n;
    for (int const n : {3, 6})
        EXPECT_EQ(rowOf(zones.Normal(n)), right) << n;
}

TEST_F(ZonesTest, ANodeWithoutElementsFacesDown)
{
    VOZCatMesh mesh = samples::mesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {9, 9, 9}}, Triangles{{1, 2, 3}});
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{4, 4.5}}));
    EXPECT_EQ(rowOf(zones.Normal(4)), (std::vector<double>{0, 0, -1}));
    EXPECT_EQ(rowOf(zones.Normal(1)), (std::vector<double>{0, 0, 1}));
    ASSERT_EQ(zones.NbZones(), 1);
    EXPECT_EQ(listOf(zones.GetZones()->nodes), (Ints{4, 4}));
    EXPECT_EQ(rowOf(zones.GetZones()->normal), (std::vector<double>{0, 0, -1}));
    EXPECT_EQ(rowOf(zones.Normal(5)), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(rowOf(zones.Normal(-1)), (std::vector<double>{0, 0, 0}));
}

TEST_F(ZonesTest, ANullCollectionIsRefused)
{
    VOZCatMesh mesh = plate().mesh();
    Zones zones(mesh);
    EXPECT_FALSE(zones.Eval(nullptr));
    EXPECT_EQ(zones.NbZones(), 0);
    EXPECT_TRUE(eval(zones, mesh, {{15, 4.5}})); // nothing had been run
    EXPECT_EQ(listOf(zones.GetZones()->nodes), (Ints{15, 15}));
}

TEST_F(ZonesTest, ACollectionOfAnotherSizeIsRefused)
{
    VOZCatMesh mesh = plate().mesh();
    for (int const count : {0, 1, 107, 109, 36, 999})
    {
        Zones zones(mesh);
        CATRawColldouble values;
        for (int i = 0; i < count; ++i)
            values.Append(4.5);
        EXPECT_FALSE(zones.Eval(&values)) << count;
        EXPECT_EQ(zones.NbZones(), 0);
        EXPECT_EQ(rowOf(zones.Normal(8)), (std::vector<double>{0, 0, 0}));
    }
}

TEST_F(ZonesTest, OnABoundaryThatIsRefusedAllNodesAreInterior)
{
    VOZCatMesh box = samples::closedBox();
    VOZCatMesh touching = samples::quads({{1, 2, 3, 4}, {3, 5, 7, 6}});
    for (VOZCatMesh * mesh : {&box, &touching})
    {
        Zones zones(*mesh);
        EXPECT_TRUE(eval(zones, *mesh, {{1, 4.5}}));
        ASSERT_EQ(zones.NbZones(), 1);
        EXPECT_EQ(zones.GetZones()->type, 1);
    }
}

TEST_F(ZonesTest, AnEmptyMeshHasNoZones)
{
    VOZCatMesh mesh;
    Zones zones(mesh);
    CATRawColldouble values;
    EXPECT_TRUE(zones.Eval(&values));
    EXPECT_EQ(zones.NbZones(), 0);
    EXPECT_EQ(zones.GetArea(), 0.0);
    EXPECT_EQ(rowOf(zones.Normal(0)), (std::vector<double>{0, 0, 0}));
}

TEST_F(ZonesTest, CornersThatAreNoNodesAreNobodysNeighbours)
{
    for (int const bad : {0, -7, 4, 99, 2147483647, -2147483647 - 1})
    {
        VOZCatMesh mesh = samples::mesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, Quads{{1, 2, 3, bad}, {bad, 2, bad, bad}});
        testing::internal::CaptureStdout();
        Zones zones(mesh);
        EXPECT_TRUE(eval(zones, mesh, {{1, 4.5}, {2, 4.5}, {3, 4.5}})) << bad;
        testing::internal::GetCapturedStdout();
        ASSERT_EQ(zones.NbZones(), 1);
        Ints const list = listOf(zones.GetZones()->nodes);
        EXPECT_EQ(list.size(), 10U);
        EXPECT_EQ(std::set<int>(list.begin(), list.end()), (std::set<int>{1, 2, 3}));
    }
}

TEST_F(ZonesTest, ASecondRunStaysInsideTheObject)
{
    VOZCatMesh mesh = plate().mesh();
    Zones zones(mesh);
    EXPECT_TRUE(eval(zones, mesh, {{15, 4.5}, {16, 4.5}, {1, 0.5}}));
    EXPECT_TRUE(eval(zones, mesh, {{15, 4.5}, {16, 4.5}, {1, 0.5}}));
    for (Zones::Zone const * zone = zones.GetZones(); zone; zone = zone->next)
        for (int const n : listOf(zone->nodes))
            EXPECT_TRUE(n >= 1 && n <= 36);
}

class Opened : public Zones
{
public:
    using Zones::AddNode;
    using Zones::AddToList;
    using Zones::AddZone;
    using Zones::Area;
    using Zones::BuildZone;
    using Zones::ElemNormal;
    using Zones::Zones;
};

TEST_F(ZonesTest, CellsLinkToTheOneGiven)
{
    VOZCatMesh mesh = plate().mesh();
    Opened zones(mesh);
    Zones::INT_LIST last{1, nullptr};
    Zones::INT_LIST * const cell = zones.AddToList(&last, 7);
    EXPECT_EQ(listOf(cell), (Ints{7, 1}));
    Zones::Node * const node = zones.AddNode(nullptr, 4);
    Zones::Node * const before = zones.AddNode(node, 5);
    EXPECT_EQ(before->next, node);
    for (Zones::Node const * record : {node, before})
    {
        EXPECT_EQ(record->type, 1);
        EXPECT_EQ(record->visited, 0);
        EXPECT_EQ(record->value, -1.0);
        EXPECT_EQ(record->elements, nullptr);
        EXPECT_EQ(rowOf(record->normal), (std::vector<double>{0, 0, 0}));
    }
    EXPECT_EQ(node->id, 4);
    EXPECT_EQ(before->id, 5);
    node->normal = Vec();
    node->normal[1] = 3.0;
    Zones::Node * const third = zones.AddNode(node, 6); // zero, whatever stands behind it
    EXPECT_EQ(rowOf(third->normal), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(rowOf(before->normal), (std::vector<double>{0, 0, 0}));
    Zones::Zone * const zone = zones.AddZone(nullptr, cell);
    EXPECT_EQ(zone->nodes, cell);
    EXPECT_EQ(zone->area, 0.0);
    EXPECT_EQ(zone->next, nullptr);
    delete cell;
    delete third;
    delete before;
    delete node;
    delete zone;
}

TEST_F(ZonesTest, ASeedThatIsNullOrVisitedMakesNoZone)
{
    VOZCatMesh mesh = plate().mesh();
    Opened zones(mesh);
    EXPECT_FALSE(zones.BuildZone(nullptr, 4.5));
    Zones::Node seed{1, 1, 1, 4.5, nullptr, nullptr, Vec()};
    EXPECT_FALSE(zones.BuildZone(&seed, 4.5));
    EXPECT_EQ(zones.NbZones(), 0);
}

} // namespace
