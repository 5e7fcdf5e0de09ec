// MeshCheckTest.cpp: each fault on the smallest mesh that has it. Meshes are drawn: nodes at the crossings, elements in
// the cells; ids are ten times the position, so that none is taken for the other.

#include "MeshFixture.h"

#include "MeshCheck.h"
#include "MeshTopology.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

using namespace voz::workbench;
using namespace voz::workbench::meshtest;

namespace
{
MeshModel modelOf(std::vector<Point> const & points, std::vector<Row> const & rows)
{
    MeshModel model;
    model.format = MeshFormat::Obj;
    model.mesh.sizeNode(static_cast<int>(points.size()));
    model.mesh.sizeElem(static_cast<int>(rows.size()));
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        std::copy(points[i].begin(), points[i].end(), model.mesh.GetNodeData()[i + 1]);
        model.nodeIds.push_back(static_cast<int>(10 * (i + 1)));
    }
    ElementSet all{1, "", {}, 0.0};
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        std::copy(rows[i].begin(), rows[i].end(), model.mesh.GetElemData()[i + 1]);
        model.elementIds.push_back(static_cast<int>(10 * (i + 1)));
        all.elements.push_back(static_cast<int>(i + 1));
    }
    model.sets.push_back(all);
    return model;
}

// Columns x rows of unit squares in the xy plane, numbered along x.
std::vector<Point> gridPoints(int columns, int rows)
{
    std::vector<Point> points;
    for (int y = 0; y <= rows; ++y)
        for (int x = 0; x <= columns; ++x)
            points.push_back({static_cast<double>(x), static_cast<double>(y), 0.0});
    return points;
}

std::vector<Row> gridRows(int columns, int rows)
{
    std::vector<Row> all;
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x)
        {
            int const n = y * (columns + 1) + x + 1;
            all.push_back({n, n + 1, n + columns + 2, n + columns + 1});
        }
    return all;
}

std::vector<Finding> of(MeshReport const & report, FindingKind kind)
{
    std::vector<Finding> found;
    for (Finding const & finding : report.findings)
        if (finding.kind == kind)
            found.push_back(finding);
    return found;
}

// The kinds found, with their counts.
std::map<std::string, long> kindsOf(MeshReport const & report)
{
    std::map<std::string, long> kinds;
    for (int k = 0; k < kFindingKinds; ++k)
        if (long const count = report.Count(static_cast<FindingKind>(k)); count > 0)
            kinds[NameOf(static_cast<FindingKind>(k)).key] = count;
    return kinds;
}
using Kinds = std::map<std::string, long>;
} // namespace

TEST(MeshCheck, FindsNothingWrongWithAGoodMesh)
{
    MeshReport const report = CheckMesh(modelOf(gridPoints(3, 2), gridRows(3, 2)));
    EXPECT_EQ(kindsOf(report), Kinds{});
    EXPECT_FALSE(report.HasErrors());
    EXPECT_EQ(report.nodes, 12);
    EXPECT_EQ(report.elements, 6);
    EXPECT_EQ(report.quadrilaterals, 6);
    EXPECT_EQ(report.triangles, 0);
    EXPECT_EQ(report.freeEdges, 10);
    EXPECT_EQ(report.innerEdges, 7);
    EXPECT_DOUBLE_EQ(report.area, 6.0);
    EXPECT_EQ(report.boxHigh, (Point{3, 2, 0}));
    EXPECT_EQ(report.shortestEdge, 1.0);
    EXPECT_EQ(report.longestEdge, 1.0);
    EXPECT_EQ(report.meanEdge, 1.0);
    ASSERT_EQ(report.loops.size(), 1U);
    EXPECT_EQ(report.loops[0].edges, 10);
    EXPECT_EQ(report.loops[0].length, 10.0);
    EXPECT_EQ(report.loops[0].firstNode, 10);
    EXPECT_TRUE(report.loops[0].isClosed);
    ASSERT_EQ(report.pieces.size(), 1U);
    EXPECT_EQ(report.pieces[0].elements, 6);
}

//   9--10--11--12
//   | 6 | 7 | 8 |
//   5---6---7---8      the middle square is missing: a hole
TEST(MeshCheck, ListsTheBoundaryLoopsLongestFirst)
{
    std::vector<Row> rows = gridRows(3, 3);
    rows.erase(rows.begin() + 4);
    MeshReport const report = CheckMesh(modelOf(gridPoints(3, 3), rows));
    ASSERT_EQ(report.loops.size(), 2U);
    EXPECT_EQ(report.loops[0].edges, 12);
    EXPECT_EQ(report.loops[1].edges, 4);
    EXPECT_EQ(report.loops[1].firstNode, 60);
    EXPECT_EQ(report.loops[1].place, (Point{1, 1, 0}));
    EXPECT_EQ(kindsOf(report), Kinds{});
}

//       7---8---9
//           | 2 |
//   4---5---6          the squares meet at node 5 alone
//   | 1 |
//   1---2
TEST(MeshCheck, NamesTheNodeWhereTheBoundaryIsNoSimpleLoop)
{
    MeshReport const report = CheckMesh(modelOf(gridPoints(2, 2), {{1, 2, 5, 4}, {5, 6, 9, 8}}));
    ASSERT_EQ(report.loops.size(), 1U);
    EXPECT_FALSE(report.loops[0].isClosed);
    EXPECT_EQ(report.loops[0].edges, 8);
    auto const found = of(report, FindingKind::OpenBoundary);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].node, 50);
    EXPECT_EQ(found[0].value, 4.0);
    EXPECT_EQ(kindsOf(report), (Kinds{{"open_boundary", 1}, {"separate_piece", 1}, {"lone_node", 2}}));
}

TEST(MeshCheck, NamesElementsThatRunAgainstMostOfTheirPiece)
{
    std::vector<Row> rows = gridRows(3, 1);
    std::swap(rows[0][1], rows[0][3]);
    MeshReport const report = CheckMesh(modelOf(gridPoints(3, 1), rows));
    auto const found = of(report, FindingKind::Flipped);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].element, 10);
    EXPECT_EQ(found[0].place, (Point{0.5, 0.5, 0}));
    EXPECT_TRUE(report.HasErrors());
}

TEST(MeshCheck, GoesWithTheLowestElementAtATie)
{
    std::vector<Row> rows = gridRows(2, 1);
    std::swap(rows[0][1], rows[0][3]);
    auto const found = of(CheckMesh(modelOf(gridPoints(2, 1), rows)), FindingKind::Flipped);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].element, 20);
}

// A strip of squares closed with a half turn.
TEST(MeshCheck, SaysThatAMoebiusStripCannotBeOriented)
{
    int const n = 12;
    std::vector<Point> points;
    std::vector<Row> rows;
    for (int i = 0; i < n; ++i)
    {
        double const turn = 6.283185307179586 * i / n;
        for (double const side : {-1.0, 1.0})
        {
            double const radius = 10.0 + side * std::cos(turn / 2);
            points.push_back({radius * std::cos(turn), radius * std::sin(turn), side * std::sin(turn / 2)});
        }
        int const a = 2 * i + 1, b = 2 * i + 2;
        rows.push_back(i + 1 < n ? Row{a, a + 2, b + 2, b} : Row{a, 2, 1, b});
    }
    MeshReport const report = CheckMesh(modelOf(points, rows));
    EXPECT_EQ(report.Count(FindingKind::NotOrientable), 1);
    EXPECT_EQ(report.Count(FindingKind::Flipped), 0);
    ASSERT_EQ(report.loops.size(), 1U);
    EXPECT_EQ(report.loops[0].edges, 2 * n);
}

// Three squares on the edge 1-2.
TEST(MeshCheck, NamesTheEdgeWithMoreThanTwoElements)
{
    std::vector<Point> const points{{0, 0, 0},  {1, 0, 0},  {1, 1, 0}, {0, 1, 0},
                                    {1, -1, 0}, {0, -1, 0}, {1, 0, 1}, {0, 0, 1}};
    MeshReport const report = CheckMesh(modelOf(points, {{1, 2, 3, 4}, {2, 1, 6, 5}, {1, 2, 7, 8}}));
    auto const found = of(report, FindingKind::NonManifoldEdge);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].node, 10);
    EXPECT_EQ(found[0].otherNode, 20);
    EXPECT_EQ(found[0].element, 30);
    EXPECT_EQ(found[0].value, 3.0);
    EXPECT_EQ(found[0].place, (Point{0.5, 0, 0}));
    EXPECT_EQ(report.pieces.size(), 1U);
}

TEST(MeshCheck, NamesDuplicatesWhateverTheirFirstCornerAndDirection)
{
    std::vector<Row> rows = gridRows(2, 1);
    rows.push_back({5, 4, 1, 2});
    rows.push_back({2, 1, 4, 5});
    MeshReport const report = CheckMesh(modelOf(gridPoints(2, 1), rows));
    auto const found = of(report, FindingKind::Duplicate);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].element, 30);
    EXPECT_EQ(found[0].otherElement, 10);
    EXPECT_EQ(found[1].element, 40);
    EXPECT_EQ(kindsOf(report), (Kinds{{"duplicate", 2}})); // the cause alone: no edge of three, nothing flipped
}

TEST(MeshCheck, NamesElementsWithRepeatedCornersAndWithoutArea)
{
    std::vector<Row> rows = gridRows(3, 1);
    rows.push_back({1, 1, 2, 1}); // a point and a node
    rows.push_back({1, 2, 6, 6}); // a quadrilateral that ought to be a triangle
    rows.push_back({1, 2, 3, 1}); // along the lower side
    MeshReport const report = CheckMesh(modelOf(gridPoints(3, 1), rows));
    auto const repeated = of(report, FindingKind::RepeatedNode);
    ASSERT_EQ(repeated.size(), 2U);
    EXPECT_EQ(repeated[0].element, 40);
    EXPECT_EQ(repeated[1].element, 50);
    auto const flat = of(report, FindingKind::ZeroArea);
    ASSERT_EQ(flat.size(), 1U);
    EXPECT_EQ(flat[0].element, 60);
    EXPECT_EQ(flat[0].value, 0.0);
    EXPECT_EQ(report.Count(FindingKind::Sliver), 0);
}

TEST(MeshCheck, NamesNodesNearerThanTheToleranceAndLoneOnes)
{
    std::vector<Point> points = gridPoints(1, 1);
    points.push_back({1.0, 1.0005, 0.0});
    CheckOptions options;
    options.pairTolerance = 0.001;
    MeshReport const report = CheckMesh(modelOf(points, gridRows(1, 1)), options);
    auto const pairs = of(report, FindingKind::ClosePair);
    ASSERT_EQ(pairs.size(), 1U);
    EXPECT_EQ(pairs[0].node, 50);
    EXPECT_EQ(pairs[0].otherNode, 40);
    EXPECT_NEAR(pairs[0].value, 0.0005, 1e-12);
    auto const lone = of(report, FindingKind::LoneNode);
    ASSERT_EQ(lone.size(), 1U);
    EXPECT_EQ(lone[0].node, 50);
    options.pairTolerance = 0.0004;
    EXPECT_EQ(CheckMesh(modelOf(points, gridRows(1, 1)), options).Count(FindingKind::ClosePair), 0);
}

TEST(MeshCheck, JudgesShapesByTheLimitsAlone)
{
    std::vector<Point> const points{{0, 0, 0},  {20, 0, 0}, {20, 1, 0},   {0, 1, 0},    // 1 : 20
                                    {30, 0, 0}, {31, 0, 0}, {31, 1, 0.5}, {30, 1, 0},   // warped
                                    {40, 0, 0}, {50, 0, 0}, {45, 0.5, 0},               // flat corners of 5.7 degrees
                                    {60, 0, 0}, {70, 0, 0}, {61, 1, 0},   {60, 10, 0}}; // notched at the third
    std::vector<Row> const rows{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 9}, {12, 13, 14, 15}};
    MeshReport const report = CheckMesh(modelOf(points, rows));
    ASSERT_EQ(of(report, FindingKind::Aspect).size(), 1U);
    EXPECT_EQ(of(report, FindingKind::Aspect)[0].element, 10);
    EXPECT_DOUBLE_EQ(of(report, FindingKind::Aspect)[0].value, 20.0);
    ASSERT_EQ(of(report, FindingKind::Warp).size(), 1U);
    EXPECT_EQ(of(report, FindingKind::Warp)[0].element, 20);
    EXPECT_NEAR(of(report, FindingKind::Warp)[0].value, 36.8699, 1e-4); // acos 0.8
    ASSERT_EQ(of(report, FindingKind::Sliver).size(), 2U);
    EXPECT_EQ(of(report, FindingKind::Sliver)[0].element, 30);
    EXPECT_NEAR(of(report, FindingKind::Sliver)[0].value, 5.71, 0.01);
    ASSERT_EQ(of(report, FindingKind::Concave).size(), 1U);
    EXPECT_EQ(of(report, FindingKind::Concave)[0].element, 40);
    EXPECT_NEAR(of(report, FindingKind::Concave)[0].value, 257.3, 0.1);
    EXPECT_EQ(report.Count(FindingKind::SeparatePiece), 3);

    CheckOptions wide;
    wide.aspectLimit = 25.0;
    wide.warpLimit = 45.0;
    wide.sliverAngle = 1.0;
    EXPECT_EQ(kindsOf(CheckMesh(modelOf(points, rows), wide)), (Kinds{{"concave", 1}, {"separate_piece", 3}}));
}

TEST(MeshCheck, ListsThePiecesLargestFirst)
{
    std::vector<Point> points = gridPoints(1, 1);
    for (Point const & p : gridPoints(2, 1))
        points.push_back({p[0] + 5.0, p[1], p[2]});
    std::vector<Row> rows = gridRows(1, 1);
    for (Row row : gridRows(2, 1))
    {
        for (int & n : row)
            n += 4;
        rows.push_back(row);
    }
    MeshReport const report = CheckMesh(modelOf(points, rows));
    ASSERT_EQ(report.pieces.size(), 2U);
    EXPECT_EQ(report.pieces[0].elements, 2);
    EXPECT_EQ(report.pieces[0].firstElement, 20);
    EXPECT_DOUBLE_EQ(report.pieces[0].area, 2.0);
    auto const found = of(report, FindingKind::SeparatePiece);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].element, 20);
    EXPECT_EQ(found[0].value, 2.0);
    EXPECT_FALSE(report.HasErrors());
}

TEST(MeshCheck, KeepsAsManyFindingsAsAskedAndCountsAll)
{
    std::vector<Point> points = gridPoints(1, 1);
    for (int i = 0; i < 50; ++i)
        points.push_back({5.0, 5.0 + i, 0.0});
    CheckOptions options;
    options.listed = 7;
    MeshReport const report = CheckMesh(modelOf(points, gridRows(1, 1)), options);
    EXPECT_EQ(report.Count(FindingKind::LoneNode), 50);
    EXPECT_EQ(of(report, FindingKind::LoneNode).size(), 7U);
}

TEST(MeshCheck, AgreesWithASlowCountOfEdgesOnRandomMeshes)
{
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round)
    {
        int const nodes = 4 + static_cast<int>(random() % 12);
        std::vector<Point> points;
        for (int n = 0; n < nodes; ++n)
            points.push_back({static_cast<double>(random() % 1000), static_cast<double>(random() % 1000),
                              static_cast<double>(random() % 1000)});
        std::vector<Row> rows;
        std::set<std::set<int>> known;
        while (rows.size() < 10)
        {
            std::set<int> corners;
            while (corners.size() < 3 + random() % 2)
                corners.insert(1 + static_cast<int>(random() % static_cast<unsigned>(nodes)));
            std::vector<int> order(corners.begin(), corners.end());
            std::shuffle(order.begin(), order.end(), random);
            if (!known.insert(corners).second && known.size() < 4)
                continue;
            rows.push_back({order[0], order[1], order[2], order.size() > 3 ? order[3] : order[0]});
        }
        std::map<std::pair<int, int>, int> edges;
        known.clear();
        long twins = 0;
        for (Row const & row : rows)
        {
            int const corners = row[0] == row[3] ? 3 : 4;
            if (!known.insert({row.begin(), row.begin() + corners}).second)
            {
                ++twins;
                continue;
            }
            for (int k = 0; k < corners; ++k)
            {
                auto const c = static_cast<std::size_t>(k);
                auto const d = static_cast<std::size_t>((k + 1) % corners);
                ++edges[{std::min(row[c], row[d]), std::max(row[c], row[d])}];
            }
        }
        int free = 0, branched = 0;
        for (auto const & edge : edges)
        {
            free += edge.second == 1 ? 1 : 0;
            branched += edge.second > 2 ? 1 : 0;
        }
        MeshReport const report = CheckMesh(modelOf(points, rows));
        ASSERT_EQ(report.freeEdges, free);
        ASSERT_EQ(report.innerEdges, static_cast<int>(edges.size()) - free);
        ASSERT_EQ(report.Count(FindingKind::NonManifoldEdge), branched);
        ASSERT_EQ(report.Count(FindingKind::Duplicate), twins);
    }
}

TEST(MeshCheck, TellsItsFindingsInWords)
{
    std::vector<Row> rows = gridRows(3, 1);
    rows.push_back(rows[1]);
    std::swap(rows[0][1], rows[0][3]);
    MeshModel model = modelOf(gridPoints(3, 1), rows);
    model.sets[0] = {4, "skin", {1, 2, 3, 4}, 0.8};
    model.skipped = {{"l", 2}};
    model.remarks = {"Something to know."};
    EXPECT_EQ(ReportAsText(model, CheckMesh(model)), "OBJ: 8 nodes, 4 elements (0 triangles, 4 quadrilaterals)\n"
                                                     "bounding box: (0, 0, 0) mm to (3, 1, 0) mm\n"
                                                     "area: 3 mm2; edges: shortest 1 mm, mean 1 mm, longest 1 mm\n"
                                                     "edges: 8 free, 2 inner\n"
                                                     "boundary: 1 loop\n"
                                                     "  8 edges, 8 mm, from node 10 at (0, 0, 0) mm\n"
                                                     "pieces: 1\n"
                                                     "set 4 \"skin\": 4 elements, thickness 0.8 mm\n"
                                                     "skipped: 2 l\n"
                                                     "remark: Something to know.\n"
                                                     "error: element that repeats another: 1\n"
                                                     "  element 40 with element 20 at (1.5, 0.5, 0) mm\n"
                                                     "error: element that runs against its piece: 1\n"
                                                     "  element 10 at (0.5, 0.5, 0) mm\n");
    EXPECT_NE(
        ReportAsText(modelOf(gridPoints(1, 1), gridRows(1, 1)), CheckMesh(modelOf(gridPoints(1, 1), gridRows(1, 1))))
            .find("\nno errors\n"),
        std::string::npos);
}

TEST(MeshCheck, GivesTheSameFactsAsJson)
{
    std::vector<Point> points = gridPoints(2, 1);
    points.push_back({0.0, 0.0, 1e-6});
    MeshModel model = modelOf(points, gridRows(2, 1));
    model.sets[0].thickness = 1.5;
    nlohmann::json const json = ReportAsJson(model, CheckMesh(model));
    EXPECT_EQ(json["schema"], 1);
    EXPECT_EQ(json["elements"], 2);
    EXPECT_EQ(json["area_mm2"], 2.0);
    EXPECT_EQ(json["sets"][0]["thickness_mm"], 1.5);
    EXPECT_EQ(json["counts"]["close_pair"], 1);
    EXPECT_EQ(json["counts"]["flipped"], 0);
    ASSERT_EQ(json["findings"].size(), 2U);
    EXPECT_EQ(json["findings"][0]["kind"], "close_pair");
    EXPECT_EQ(json["findings"][0]["node"], 70);
    EXPECT_EQ(json["findings"][0]["other_node"], 10);
    EXPECT_EQ(json["findings"][0]["value_mm"], 1e-6);
    EXPECT_EQ(json["findings"][1]["kind"], "lone_node");
    EXPECT_EQ(json["has_errors"], true);
    EXPECT_EQ(json["loops"][0]["length_mm"], 6.0);
    EXPECT_TRUE(json["file_unit"].is_null());
}
