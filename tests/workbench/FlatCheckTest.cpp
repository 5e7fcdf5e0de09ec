// FlatCheckTest.cpp. Patterns lie in the xy plane; the reference compares every edge with every other.

#include "FlatCheck.h"

#include "EdgeIntersection.h"
#include "EdgeSets.h"
#include "MeshFixture.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace voz::workbench
{

namespace
{
using Segment = std::pair<int, int>; // lower node first

Segment SegmentOf(FlatEdge const & i_edge)
{
    return std::minmax(i_edge.start, i_edge.end);
}

// A strip of cells x rows quadrilaterals along a line of centres; its width points to the left of the line.
template <class Centre>
VOZCatMesh Strip(int i_cells, int i_rows, double i_width, Centre i_centre)
{
    VOZCatMesh mesh((i_cells + 1) * (i_rows + 1), i_cells * i_rows);
    for (int i = 0; i <= i_cells; ++i)
    {
        auto const [x, y, heading] = i_centre(static_cast<double>(i) / i_cells);
        for (int j = 0; j <= i_rows; ++j)
        {
            double const across = i_width * (static_cast<double>(j) / i_rows - 0.5);
            double * const row = mesh.GetNodeData()[i * (i_rows + 1) + j + 1];
            row[0] = x - across * std::sin(heading);
            row[1] = y + across * std::cos(heading);
            row[2] = 0.0;
        }
    }
    for (int i = 0; i < i_cells; ++i)
        for (int j = 0; j < i_rows; ++j)
        {
            int const first = i * (i_rows + 1) + j + 1;
            int * const row = mesh.GetElemData()[i * i_rows + j + 1];
            row[0] = first;
            row[1] = first + i_rows + 1;
            row[2] = first + i_rows + 2;
            row[3] = first + 1;
        }
    return mesh;
}

struct Place
{
    double x, y, heading;
};

VOZCatMesh Plate(int i_cells)
{
    return Strip(i_cells, i_cells, 100.0, [](double t) { return Place{100.0 * t, 50.0, 0.0}; });
}

// Once and a bit round a circle: the end lies over the beginning.
VOZCatMesh Curl(double i_turns)
{
    return Strip(60, 4, 10.0,
                 [=](double t)
                 {
                     double const angle = 2.0 * 3.14159265358979 * i_turns * t + 0.01;
                     return Place{50.0 * std::cos(angle), 50.0 * std::sin(angle), angle + 0.5 * 3.14159265358979};
                 });
}

// Each edge with all that cross it, by the segment test alone, in doubles.
std::map<Segment, std::set<Segment>> BruteForce(VOZCatMesh const & i_mesh)
{
    FreeEdgeSet const free(i_mesh);
    InternalEdgeSet const inner(i_mesh);
    std::vector<Segment> edges;
    for (int k = 1; k <= free.numEdge(); ++k)
        edges.push_back(std::minmax(free.startNode(k), free.endNode(k)));
    for (int k = 1; k <= inner.numEdge(); ++k)
        edges.push_back(std::minmax(inner.startNode(k), inner.endNode(k)));
    auto const side = [&](int a, int b, int c)
    {
        auto const * const p = i_mesh.GetNodeData();
        return (p[b][0] - p[a][0]) * (p[c][1] - p[a][1]) - (p[b][1] - p[a][1]) * (p[c][0] - p[a][0]);
    };
    std::map<Segment, std::set<Segment>> crossings;
    for (auto const & [a, b] : edges)
        for (auto const & [c, d] : edges)
            if (a != c && a != d && b != c && b != d && side(a, b, c) * side(a, b, d) < 0.0 &&
                side(c, d, a) * side(c, d, b) < 0.0)
                crossings[{a, b}].insert({c, d});
    return crossings;
}

void ExpectAsBruteForce(VOZCatMesh const & i_mesh)
{
    auto const expected = BruteForce(i_mesh);
    FlatFaults const found = CheckFlat(i_mesh);
    EXPECT_EQ(found.crossings.size(), expected.size());
    for (FlatCrossing const & crossing : found.crossings)
    {
        auto const row = expected.find(SegmentOf(crossing.edge));
        ASSERT_NE(row, expected.end());
        EXPECT_TRUE(row->second.contains(SegmentOf(crossing.partner))) << "the partner is one of those that it crosses";
    }
}

MeshModel ModelOf(VOZCatMesh const & i_mesh)
{
    MeshModel model;
    model.mesh = i_mesh;
    for (int n = 1; n <= i_mesh.numNode(); ++n)
        model.nodeIds.push_back(1000 + n);
    for (int e = 1; e <= i_mesh.numElem(); ++e)
        model.elementIds.push_back(2000 + e);
    return model;
}
} // namespace

TEST(FlatCheck, APlateHasNoFault)
{
    FlatFaults const faults = CheckFlat(Plate(12));
    EXPECT_FALSE(faults.AreThere());
    EXPECT_EQ(faults.depth, 0.0);
}

TEST(FlatCheck, AnEmptyMeshHasNoFault)
{
    EXPECT_FALSE(CheckFlat(VOZCatMesh()).AreThere());
}

TEST(FlatCheck, AStripThatCurlsOverItselfIsReportedAtEveryEdge)
{
    EXPECT_FALSE(CheckFlat(Curl(0.9)).AreThere());
    VOZCatMesh const curl = Curl(1.13);
    ExpectAsBruteForce(curl);
    FlatFaults const faults = CheckFlat(curl);
    ASSERT_FALSE(faults.crossings.empty());
    EXPECT_TRUE(faults.turned.empty()) << "it lies over itself, but nothing is turned";
    EXPECT_TRUE(std::ranges::any_of(faults.crossings, &FlatCrossing::isOverlap)) << "outline over outline";
    for (FlatCrossing const & crossing : faults.crossings)
    {
        EXPECT_EQ(crossing.isOverlap, crossing.edge.isFree && crossing.partner.isFree);
        double const radius = std::hypot(crossing.place[0], crossing.place[1]);
        EXPECT_GT(radius, 44.0);
        EXPECT_LT(radius, 56.0);
    }
}

TEST(FlatCheck, ThePlaceOfACrossingIsWhereBothEdgesMeet)
{
    // Two triangles of one piece: the tip of the second lies beyond the far side of the first.
    double const nodes[4][3] = {{0, 0, 0}, {10, 0, 0}, {5, 10, 0}, {5, -2, 0}};
    int const elems[2][4] = {{1, 2, 3, 1}, {2, 4, 3, 2}};
    FlatFaults const faults = CheckFlat(VOZCatMesh(4, 2, nodes, elems));
    // 4-3 runs down through 1-2 at (5, 0).
    ASSERT_EQ(faults.crossings.size(), 2U);
    for (FlatCrossing const & crossing : faults.crossings)
    {
        EXPECT_NEAR(crossing.place[0], 5.0, 1e-12);
        EXPECT_NEAR(crossing.place[1], 0.0, 1e-12);
        EXPECT_TRUE(crossing.isOverlap);
    }
    EXPECT_EQ(SegmentOf(faults.crossings[0].edge), SegmentOf(faults.crossings[1].partner));
    EXPECT_EQ(faults.turned, std::vector<int>{2}) << "its area runs against the larger of the two";
}

TEST(FlatCheck, AFoldIsToldByTheTurnedElementsToo)
{
    // The middle of a plate is drawn over its right half.
    VOZCatMesh mesh = Plate(10);
    for (int n = 1; n <= mesh.numNode(); ++n)
        if (std::abs(mesh.GetNodeData()[n][0] - 50.0) < 1.0)
            mesh.GetNodeData()[n][0] += 24.5;
    FlatFaults const faults = CheckFlat(mesh);
    EXPECT_EQ(faults.turned.size(), 10U);
    for (int const e : faults.turned)
        EXPECT_GT(e, 50) << "the column that follows";
    // The strips slide along each other's lines: sides that cross are those between the rows, at no angle.
    EXPECT_TRUE(faults.AreThere());
}

TEST(FlatCheck, RandomPatternsAgreeWithBruteForce)
{
    std::mt19937 random(7);
    for (int round = 0; round < 12; ++round)
    {
        VOZCatMesh mesh = Plate(4 + round);
        double const shake = 100.0 / (4 + round) * (0.3 + 0.15 * round);
        std::uniform_real_distribution<double> number(-shake, shake);
        for (int n = 1; n <= mesh.numNode(); ++n)
            for (int c = 0; c < 2; ++c)
                mesh.GetNodeData()[n][c] += number(random);
        SCOPED_TRACE(round);
        ExpectAsBruteForce(mesh);
    }
}

TEST(FlatCheck, NeitherPlaceNorSizeNorNumberingMatters)
{
    VOZCatMesh const curl = Curl(1.13);
    FlatFaults const here = CheckFlat(curl);
    for (double const size : {1e-3, 1.0, 1e4})
    {
        VOZCatMesh there = curl;
        for (int n = 1; n <= there.numNode(); ++n)
            for (int c = 0; c < 2; ++c)
                there.GetNodeData()[n][c] = size * (there.GetNodeData()[n][c] + 3000.0);
        FlatFaults const found = CheckFlat(there);
        ASSERT_EQ(found.crossings.size(), here.crossings.size()) << size;
        for (std::size_t i = 0; i < found.crossings.size(); ++i)
            EXPECT_EQ(SegmentOf(found.crossings[i].edge), SegmentOf(here.crossings[i].edge)) << size;
    }
}

TEST(FlatCheck, DepthAlongZIsToldAndNotLookedAt)
{
    VOZCatMesh mesh = Plate(6);
    mesh.GetNodeData()[3][2] = 2.5;
    FlatFaults const faults = CheckFlat(mesh);
    EXPECT_FALSE(faults.AreThere());
    EXPECT_EQ(faults.depth, 2.5);
}

TEST(FlatCheck, TextNamesTheIdsOfTheFileUpToTheListedNumber)
{
    double const nodes[4][3] = {{0, 0, 0}, {10, 0, 0}, {5, 10, 0}, {5, -2, 0}};
    int const elems[2][4] = {{1, 2, 3, 1}, {2, 4, 3, 2}};
    MeshModel const model = ModelOf(VOZCatMesh(4, 2, nodes, elems));
    FlatFaults const faults = CheckFlat(model.mesh);
    std::string const text = FlatFaultsAsText(faults, model, 1);
    EXPECT_NE(text.find("edges that cross another: 2\n    overlap: edge 1001-1002 crosses 1004-1003 at 5.000 0.000 mm\n"
                        "  elements that are turned over: 1\n    element 2002\n"),
              std::string::npos)
        << text;
    nlohmann::json const json = FlatFaultsAsJson(faults, model);
    EXPECT_EQ(json["crossings"].size(), 2U);
    EXPECT_EQ(json["crossings"][0]["kind"], "overlap");
    EXPECT_EQ(json["crossings"][0]["edge"], (nlohmann::json{1001, 1002}));
    EXPECT_EQ(json["crossings"][0]["partner"], (nlohmann::json{1004, 1003}));
    EXPECT_EQ(json["turned_elements"], nlohmann::json({2002}));
    EXPECT_EQ(json["has_faults"], true);
}

} // namespace voz::workbench
