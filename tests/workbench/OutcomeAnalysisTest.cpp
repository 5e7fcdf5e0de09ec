// OutcomeAnalysisTest.cpp. Zones of nodes on plates whose areas are known.

#include "OutcomeAnalysis.h"

#include "Report.h"
#include "VOZHost.h"

#include "MeshFixture.h"
#include "SyntheticOutcome.h"

#include <algorithm>
#include <queue>
#include <random>
#include <set>

namespace voz::workbench
{

namespace
{
constexpr int kSide = 9; // nodes along a side

// Nodes 10 mm apart, row by row; flat, facing +z; all safe.
Outcome Plate()
{
    Outcome outcome;
    outcome.part = VOZCatMesh(kSide * kSide, (kSide - 1) * (kSide - 1));
    for (int n = 0; n < kSide * kSide; ++n)
    {
        double * const row = outcome.part.GetNodeData()[n + 1];
        row[0] = 10.0 * (n % kSide);
        row[1] = 10.0 * (n / kSide);
        row[2] = 0.0;
        NodeOutcome node;
        node.flat = {row[0], row[1], 0.0};
        node.safety = 2;
        outcome.nodes.push_back(node);
    }
    for (int e = 0; e < (kSide - 1) * (kSide - 1); ++e)
    {
        int const first = e / (kSide - 1) * kSide + e % (kSide - 1) + 1;
        int * const row = outcome.part.GetElemData()[e + 1];
        row[0] = first;
        row[1] = first + 1;
        row[2] = first + kSide + 1;
        row[3] = first + kSide;
    }
    outcome.elements.resize(static_cast<std::size_t>(outcome.part.numElem()));
    outcome.undercut.assign(outcome.elements.size(), 0);
    outcome.limit = FormingLimit(1.6, 0.2, 0.8, 10.0, 8.0, 35.0, 0);
    Summarise(outcome);
    return outcome;
}

void Mark(Outcome & io_outcome, int i_column, int i_row, int i_safety)
{
    io_outcome.nodes[static_cast<std::size_t>(kSide * i_row + i_column)].safety = i_safety;
}

std::string PageOf(Outcome const & i_outcome)
{
    meshtest::Folder const folder;
    WriteReport(i_outcome, folder / "report.html");
    return meshtest::ContentOf(folder / "report.html");
}
} // namespace

TEST(GatherZones, AResultWithoutBadNodesHasNone)
{
    EXPECT_TRUE(GatherZones(Plate()).empty());
    EXPECT_NE(PageOf(Plate()).find("No node fails, is marginal or is strongly compressed."), std::string::npos);
}

TEST(GatherZones, TellsNumberPlaceAreaAndNormalLargestFirst)
{
    Outcome outcome = Plate();
    Mark(outcome, 4, 4, 0); // interior: a node, 100 mm2
    for (int const column : {2, 3, 4})
        Mark(outcome, column, 0, 1); // at the edge: 3 x 50 mm2
    Mark(outcome, 0, 8, 4);          // a corner: 25 mm2
    std::vector<OutcomeZone> const zones = GatherZones(outcome);
    ASSERT_EQ(zones.size(), 3U);
    EXPECT_EQ(zones[0].safety, 1);
    EXPECT_EQ(zones[0].place, ZonePlace::Edge);
    EXPECT_NEAR(zones[0].area, 150.0, 1e-9);
    EXPECT_EQ(zones[0].nodes, (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(zones[0].centre, 3);
    EXPECT_EQ(zones[1].safety, 0);
    EXPECT_EQ(zones[1].place, ZonePlace::Interior);
    EXPECT_NEAR(zones[1].area, 100.0, 1e-9);
    EXPECT_EQ(zones[2].safety, 4);
    EXPECT_NEAR(zones[2].area, 25.0, 1e-9);
    for (OutcomeZone const & zone : zones)
        EXPECT_EQ(zone.normal, (Point3{0.0, 0.0, 1.0}));
}

TEST(GatherZones, NodesOfDifferentCodesAreDifferentZonesAndDiagonalsJoin)
{
    Outcome outcome = Plate();
    Mark(outcome, 3, 3, 0);
    Mark(outcome, 4, 4, 0); // across the element
    Mark(outcome, 4, 3, 1);
    std::vector<OutcomeZone> const zones = GatherZones(outcome);
    ASSERT_EQ(zones.size(), 2U);
    EXPECT_EQ(zones[0].nodes.size(), 2U);
    EXPECT_NEAR(zones[0].area, 200.0, 1e-9);
}

TEST(GatherZones, AZoneThatReachesAHoleSaysSo)
{
    Outcome outcome = test::plateWithHole(80.0, 60.0, 10.0, 32, 4);
    Summarise(outcome);
    for (std::size_t n = 0; n < 4; ++n)
        outcome.nodes[n].safety = 0;  // on the hole
    outcome.nodes[32 * 4].safety = 0; // on the outer edge
    outcome.nodes[32 * 2 + 16].safety = 0;
    std::vector<OutcomeZone> const zones = GatherZones(outcome);
    ASSERT_EQ(zones.size(), 3U);
    std::set<ZonePlace> const places = {zones[0].place, zones[1].place, zones[2].place};
    EXPECT_EQ(places.size(), 3U);
    auto const atHole = std::ranges::find(zones, ZonePlace::Hole, &OutcomeZone::place);
    EXPECT_EQ(atHole->nodes, (std::vector<int>{0, 1, 2, 3}));
}

TEST(GatherZones, APlaneOfSymmetryIsNoEdge)
{
    Outcome outcome = Plate();
    Mark(outcome, 0, 4, 0); // on x = 0
    Mark(outcome, 8, 4, 0); // on the far edge
    EXPECT_EQ(GatherZones(outcome)[0].place, ZonePlace::Edge);
    outcome.symmetry.yzSymmetry(true);
    std::vector<OutcomeZone> const zones = GatherZones(outcome);
    ASSERT_EQ(zones.size(), 2U);
    EXPECT_EQ(zones[0].nodes, std::vector<int>{36});
    EXPECT_EQ(zones[0].place, ZonePlace::Interior);
    EXPECT_EQ(zones[1].place, ZonePlace::Edge);
}

TEST(GatherZones, RandomMarksAgreeWithASearchOverThePlate)
{
    std::mt19937 random(3);
    for (int round = 0; round < 20; ++round)
    {
        Outcome outcome = Plate();
        for (NodeOutcome & node : outcome.nodes)
            node.safety = random() % 3 == 0 ? 0 : 2;
        std::set<std::set<int>> expected;
        std::set<int> left;
        for (int n = 0; n < kSide * kSide; ++n)
            if (outcome.nodes[static_cast<std::size_t>(n)].safety == 0)
                left.insert(n);
        while (!left.empty())
        {
            std::set<int> zone;
            std::queue<int> open({*left.begin()});
            left.erase(left.begin());
            for (; !open.empty(); open.pop())
            {
                int const n = open.front();
                zone.insert(n);
                for (int const m : std::set<int>(left))
                    if (std::abs(m % kSide - n % kSide) <= 1 && std::abs(m / kSide - n / kSide) <= 1)
                    {
                        left.erase(m);
                        open.push(m);
                    }
            }
            expected.insert(zone);
        }
        std::set<std::set<int>> found;
        double area = 0.0;
        for (OutcomeZone const & zone : GatherZones(outcome))
        {
            found.insert({zone.nodes.begin(), zone.nodes.end()});
            area += zone.area;
        }
        EXPECT_EQ(found, expected) << round;
        EXPECT_LT(area, 6400.0);
    }
}

TEST(GatherZones, AllNodesTogetherHaveTheAreaOfThePart)
{
    Outcome outcome = test::plateWithHole(80.0, 60.0, 10.0, 32, 4);
    Summarise(outcome);
    for (NodeOutcome & node : outcome.nodes)
        node.safety = 1;
    double area = 0.0;
    for (ElementOutcome const & element : outcome.elements)
        area += element.area;
    std::vector<OutcomeZone> const zones = GatherZones(outcome);
    ASSERT_EQ(zones.size(), 1U);
    EXPECT_NEAR(zones[0].area, area, 1e-9 * area);
}

TEST(GatherZones, NodesBeyondTheLastElementAreNoBrokenContract)
{
    // 81 nodes and 64 elements: the library's own areas ask for elements 65 to 81.
    VOZMemoryHost host;
    VOZHost::Install(&host);
    Outcome outcome = Plate();
    for (NodeOutcome & node : outcome.nodes)
        node.safety = 0;
    GatherZones(outcome);
    EXPECT_EQ(&VOZHost::Current(), &host) << "the host is in force again";
    VOZHost::Install(nullptr);
    EXPECT_TRUE(host.reports.empty());
}

TEST(GatherZones, ATrueBreachStillReachesTheHost)
{
    VOZMemoryHost host;
    VOZHost::Install(&host);
    Outcome outcome = Plate();
    for (NodeOutcome & node : outcome.nodes)
        node.safety = 0;
    outcome.part.GetElemData()[5][2] = 5000; // no such node
    EXPECT_NO_FATAL_FAILURE(GatherZones(outcome));
    VOZHost::Install(nullptr);
    EXPECT_FALSE(host.reports.empty());
}

TEST(AnalyseOutcome, AFlatBlankHasNoCrossings)
{
    Outcome outcome = Plate();
    AnalyseOutcome(outcome);
    EXPECT_FALSE(outcome.flat.AreThere());
    EXPECT_EQ(PageOf(outcome).find("CROSSINGS"), std::string::npos);
}

TEST(AnalyseOutcome, ABlankThatLiesOverItselfIsMarkedOnItsOutline)
{
    // The right end is turned back over the middle, and runs out above the upper edge.
    Outcome outcome = Plate();
    for (int row = 0; row < kSide; ++row)
    {
        Point3 & flat = outcome.nodes[static_cast<std::size_t>(kSide * row + kSide - 1)].flat;
        flat = {45.0 + 0.3 * row, 10.0 * row + 7.0, 0.0};
    }
    Summarise(outcome);
    AnalyseOutcome(outcome);
    ASSERT_TRUE(outcome.flat.AreThere());
    ASSERT_FALSE(outcome.flat.crossings.empty());
    EXPECT_NE(PageOf(outcome).find("<g id=\"CROSSINGS\""), std::string::npos);
}

TEST(AnalyseOutcome, ThePageListsTheZonesWithTheirNumbers)
{
    Outcome outcome = Plate();
    Mark(outcome, 4, 4, 0);
    AnalyseOutcome(outcome);
    std::string const page = PageOf(outcome);
    EXPECT_NE(page.find("<section id=\"zones\">"), std::string::npos);
    EXPECT_NE(page.find("<td>interior</td><td>100.00</td><td>1</td><td>41</td><td>40.00, 40.00, 0.00</td>"),
              std::string::npos);
}

} // namespace voz::workbench
