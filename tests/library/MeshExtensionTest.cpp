// MeshExtensionTest.cpp. The extended mesh is compared with one that the test puts together itself, from the same
// offset line and the same patch operation.
//
// A patch between two lines folds over: it starts as a star from a centroid that lies inside the part, and nothing in
// its method unfolds it. What holds for it all the same is tested: its signed area, its boundary, its numbering.

#include "MeshExtension.h"
#include "BoundaryFixture.h"
#include "ConfigFixture.h"
#include "DeckJobs.h"
#include "ElemNormal.h"
#include "HoleFilling.h"
#include "SampleMeshes.h"
#include "VOZInitEvalPOL.h"
#include "VOZSolver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <set>

namespace
{
using samples::Grid;
using samples::Ints;
using samples::Point;
using samples::Points;
using samples::Quads;

// A square cup, 40 by 40 and 20 deep with an inclined wall, on a flange of 100 by 100.
VOZCatMesh cup(int cells = 20)
{
    Grid grid;
    grid.columns = grid.rows = cells;
    grid.x0 = grid.y0 = -50.0;
    grid.x1 = grid.y1 = 50.0;
    grid.surface = [](double x, double y)
    {
        double const r = std::max(std::fabs(x), std::fabs(y));
        return Point{x, y, r < 20.0 ? -20.0 : r < 30.0 ? 2.0 * (r - 30.0) : 0.0};
    };
    return grid.mesh();
}

std::string const kOn = "First=1\nExtendMeshPart=1\n";

class MeshExtension : public ConfigFixture
{
protected:
    VOZCatMesh extended(std::string const & text, VOZCatMesh mesh, double offset = 10.0) const
    {
        config(text);
        VOZSolver::MeshExtension(mesh, offset, 0.0, 0.0);
        return mesh;
    }
    bool isLeftAlone(std::string const & text, double offset = 10.0) const
    {
        return extended(text, cup(4), offset).numElem() == 16;
    }
};

double reach(VOZCatMesh const & mesh) // the largest x
{
    double most = 0.0;
    for (int n = 1; n <= mesh.numNode(); ++n)
        most = std::max(most, mesh.node(n, 0));
    return most;
}

TEST_F(MeshExtension, IsOffWithoutItsKey)
{
    EXPECT_TRUE(isLeftAlone("First=1\nOther=1\n"));
    EXPECT_TRUE(isLeftAlone("First=1\nExtendMeshPart=0\n"));
    EXPECT_TRUE(isLeftAlone("First=1\nExtendMeshPart=-1\n"));
    EXPECT_TRUE(isLeftAlone("First=1\nExtendMeshPart=0.9\n")) << "an integer: truncated";
    EXPECT_FALSE(isLeftAlone(kOn));
    EXPECT_FALSE(isLeftAlone("First=1\nExtendMeshPart=2\n"));
}

TEST_F(MeshExtension, AKeyOnTheFirstLineCountsAsAbsent)
{
    EXPECT_TRUE(isLeftAlone("ExtendMeshPart=1\nLast=1\n"));
    EXPECT_FALSE(isLeftAlone("# a comment is no entry, but\nFirst=1\nExtendMeshPart=1\n"));
    EXPECT_TRUE(isLeftAlone("# a comment is no entry\nExtendMeshPart=1\n"));
    // the factor on the first line: 400 x 1.0 x 0.02 all the same
    VOZCatMesh const mesh = extended("ExtendMeshOffsetFactor=0.25\nExtendMeshPart=1\n", cup(), 0.0);
    EXPECT_NEAR(reach(mesh), 58.0, 1e-6);
}

TEST_F(MeshExtension, WithoutAConfigurationFileNothingHappens)
{
    VOZCatMesh mesh = cup(4);
    VOZSolver::MeshExtension(mesh, 10.0, 0.0, 0.0);
    EXPECT_EQ(mesh.numElem(), 16);
    host.environment.clear();
    VOZSolver::MeshExtension(mesh, 10.0, 0.0, 0.0);
    EXPECT_EQ(mesh.numElem(), 16);
}

TEST_F(MeshExtension, AnOffsetOfAtMostAThousandthIsReplacedByThePerimetersShare)
{
    for (double const offset : {0.001, 0.0, -5.0})
        EXPECT_NEAR(reach(extended(kOn, cup(), offset)), 50.0 + 400.0 * 0.02, 1e-6) << offset;
    std::string const half = kOn + "ExtendMeshOffsetFactor=0.5\n";
    EXPECT_NEAR(reach(extended(half, cup(), 0.001)), 50.0 + 400.0 * 0.5 * 0.02, 1e-6);
    EXPECT_NEAR(reach(extended(half, cup(), 0.00101)), 50.00101, 1e-6) << "above it, the offset stands";
    EXPECT_NEAR(reach(extended(half, cup(), 10.0)), 60.0, 1e-6);
}

//       6---7
//       | 2 |
//   4---3---5
//   | 1 |
//   1---2
TEST_F(MeshExtension, ARefusedBoundaryOrNoOffsetLineLeavesTheMeshAlone)
{
    EXPECT_EQ(extended(kOn, samples::quads({{1, 2, 3, 4}, {3, 5, 7, 6}})).numElem(), 2);
    EXPECT_EQ(extended(kOn, samples::closedBox()).numElem(), 6);
    EXPECT_TRUE(isLeftAlone(kOn, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(isLeftAlone(kOn, std::numeric_limits<double>::infinity()));
    VOZCatMesh nan = cup(4);
    nan.GetNodeData()[1][0] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(extended(kOn, nan).numElem(), 16);
    host.reports.clear();
    EXPECT_EQ(extended(kOn, VOZCatMesh()).numElem(), 0);
    ASSERT_EQ(host.reports.size(), 1U);
    EXPECT_EQ(host.reports[0].text, "AssertionFailed:padNodesNormals != NULL");
}

TEST_F(MeshExtension, ABudgetThatIsNoNumberLeavesTheMeshAlone)
{
    EXPECT_TRUE(isLeftAlone(kOn + "ExtendMeshIterationFactor=nan\n"));
    EXPECT_TRUE(isLeftAlone(kOn + "ExtendMeshIterationFactor=1e30\n"));
    EXPECT_FALSE(isLeftAlone(kOn + "ExtendMeshIterationFactor=-1\n")) << "the wire's own size stands for it";
}

// The wire in long hand: boundary, bridge, offset line from its nearest point and the other way round, bridge back.
struct Expected
{
    std::vector<int> ids;
    Points points;
    std::vector<std::set<int>> faces; // by their corners, degenerate ones left out
    int numNode;                      // of the part
    Points nodes;                     // beyond those of the part

    Expected(VOZCatMesh const & mesh, double offset, double factor) : numNode(mesh.numNode())
    {
        Chained const chained(mesh);
        for (int const k : walk(chained.loops, chained.loops.outerLoopNum()))
            ids.push_back(chained.edges.startNode(k));
        for (int const n : ids)
            points.push_back({mesh.node(n, 0), mesh.node(n, 1), mesh.node(n, 2)});
        addOffsetLine(mesh, offset);
        std::size_t const given = ids.size();
        nodes.assign(points.begin() + static_cast<std::ptrdiff_t>(given), points.end());
        fill(mesh, factor);
    }

private:
    static double distance(Point const & a, Point const & b) // to the bit: no hypot
    {
        double const d[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        return std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
    }

    Points polyline(VOZCatMesh const & mesh, double offset) const
    {
        double * normals = nullptr;
        mesh.EvalNodesNormal(normals);
        std::unique_ptr<double[]> const owned(normals);
        std::vector<double> rows;
        std::vector<double> rowNormals;
        for (std::size_t i = 0; i < ids.size(); ++i)
            for (std::size_t c = 0; c < 3; ++c)
            {
                rows.push_back(points[i][c]);
                rowNormals.push_back(normals[3 * (ids[i] - 1) + static_cast<int>(c)]);
            }
        double average[3];
        mesh.EvalAverageNormal(average);
        int count = static_cast<int>(ids.size());
        std::unique_ptr<double[]> const line(
            VOZInitEvalPOLNew(count, rows.data(), rowNormals.data(), average, offset, 0.0, 0.0));
        Points result;
        for (int i = 0; i < count; ++i)
            result.push_back({line[static_cast<std::size_t>(3 * i)], line[static_cast<std::size_t>(3 * i + 1)],
                              line[static_cast<std::size_t>(3 * i + 2)]});
        return result;
    }

    void addOffsetLine(VOZCatMesh const & mesh, double offset)
    {
        double length = 0.0;
        for (std::size_t i = 1; i < points.size(); ++i)
            length += distance(points[i - 1], points[i]);
        double const spacing = length / static_cast<double>(points.size());
        Points b;
        for (Point const & p : polyline(mesh, offset))
            if (b.empty() || distance(b.back(), p) > spacing)
                b.push_back(p);
        double least = std::numeric_limits<double>::infinity();
        for (Point const & p : b)
            least = std::min(least, distance(points[0], p));
        auto const nearest =
            std::find_if(b.begin(), b.end(), [&](Point const & p) { return distance(points[0], p) <= least + 0.001; });
        std::rotate(b.begin(), nearest, b.end());

        Points bridge;
        int const s = static_cast<int>(spacing);
        double const d = distance(points[0], b[0]);
        for (int i = 0; i <= s; ++i)
        {
            Point p = points[0];
            for (std::size_t c = 0; c < 3 && s > 0; ++c)
                p[c] = points[0][c] + i * (d / s) * ((b[0][c] - points[0][c]) / d);
            bridge.push_back(p);
        }
        double along = 0.0;
        for (std::size_t c = 0; c < 3; ++c)
            along += (b[1][c] - b[0][c]) * (points[1][c] - points[0][c]);
        if (along > 0.0)
            std::reverse(b.begin(), b.end());
        points.insert(points.end(), bridge.begin(), bridge.end());
        points.insert(points.end(), b.begin(), b.end());
        points.insert(points.end(), bridge.rbegin(), bridge.rend());
    }

    void fill(VOZCatMesh const & mesh, double factor)
    {
        int count = static_cast<int>(points.size());
        int * numbers = static_cast<int *>(std::calloc(points.size(), sizeof(int)));
        float(*coords)[3] = static_cast<float(*)[3]>(std::calloc(points.size(), sizeof(float[3])));
        int next = numNode + 1;
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            numbers[i] = i < ids.size() ? ids[i] : next++;
            for (std::size_t c = 0; c < 3; ++c)
                coords[i][c] = static_cast<float>(points[i][c]);
        }
        int numFace = 0;
        int(*rows)[4] = nullptr;
        ASSERT_EQ(MeshBoundaryWire(&count, &numbers, &coords, &next, &numFace, &rows, static_cast<int>(count * factor)),
                  1);
        for (int i = 0; i < count; ++i)
            nodes.push_back({double(coords[i][0]), double(coords[i][1]), double(coords[i][2])});
        for (int i = 1; i <= numFace; ++i)
            if (twiceArea(mesh, rows[i]) >= 0.001)
                faces.push_back({rows[i][0], rows[i][1], rows[i][2]});
        std::free(numbers);
        std::free(coords);
        std::free(rows);
    }

    double twiceArea(VOZCatMesh const & mesh, int const * corners) const
    {
        double p[3][3];
        for (int k = 0; k < 3; ++k)
            for (int c = 0; c < 3; ++c)
                p[k][c] = corners[k] <= numNode
                              ? mesh.node(corners[k], c)
                              : nodes[static_cast<std::size_t>(corners[k] - numNode - 1)][static_cast<std::size_t>(c)];
        Vec const a(p[1][0] - p[0][0], p[1][1] - p[0][1], p[1][2] - p[0][2]);
        Vec const b(p[2][0] - p[0][0], p[2][1] - p[0][1], p[2][2] - p[0][2]);
        return a.cross(b).length();
    }
};

TEST_F(MeshExtension, IsTheMeshPutTogetherByHand)
{
    for (int const cells : {8, 20, 130}) // spacings of 12.5, 5 and, without a step of the bridge, 0.77 mm
        for (double const factor : {1.0, 2.5})
        {
            if (cells == 130 && factor > 1.0)
                continue;
            VOZCatMesh const part = cup(cells);
            Expected const expected(part, 7.0, factor);
            std::string const line = "ExtendMeshIterationFactor=" + std::to_string(factor) + "\n";
            VOZCatMesh const mesh = extended(kOn + line, part, 7.0);
            ASSERT_EQ(mesh.numNode(), part.numNode() + static_cast<int>(expected.nodes.size())) << cells;
            for (int n = 1; n <= part.numNode(); ++n)
                for (int c = 0; c < 3; ++c)
                    ASSERT_EQ(mesh.node(n, c), part.node(n, c));
            for (std::size_t i = 0; i < expected.nodes.size(); ++i)
                for (int c = 0; c < 3; ++c)
                    ASSERT_EQ(mesh.node(part.numNode() + 1 + static_cast<int>(i), c),
                              expected.nodes[i][static_cast<std::size_t>(c)]);
            for (int e = 1; e <= part.numElem(); ++e)
                ASSERT_EQ(Ints(mesh.elem(e), mesh.elem(e) + 4), Ints(part.elem(e), part.elem(e) + 4));
            std::vector<std::set<int>> faces;
            for (int e = part.numElem() + 1; e <= mesh.numElem(); ++e)
                faces.push_back({mesh.elem(e, 0), mesh.elem(e, 1), mesh.elem(e, 2)});
            EXPECT_EQ(faces, expected.faces) << cells;
        }
}

TEST_F(MeshExtension, TheNewElementsCoverTheRingWithTheirSignedArea)
{
    VOZCatMesh const mesh = extended(kOn, cup(40), 10.0);
    ElemNormal const normals(mesh);
    double area = 0.0;
    for (int e = 40 * 40 + 1; e <= mesh.numElem(); ++e)
        area += 0.5 * normals.normal(e, 2);
    double const ring = 120.0 * 120.0 - 100.0 * 100.0 - (4.0 - 3.1415926535897932) * 100.0;
    EXPECT_NEAR(area, ring, 20.0) << "less what thinning cuts off the corners";
}

TEST_F(MeshExtension, OrientationsAgreeAndOneLoopIsLeftOutside)
{
    VOZCatMesh mesh = extended(kOn, cup(40), 10.0);
    Chained const chained(mesh);
    EXPECT_EQ(chained.error, 0);
    EXPECT_EQ(chained.loops.numLoops(), 1) << "around the offset line, and along both sides of the bridge";
    VOZCatMesh again = mesh;
    ElemNormal normals(again);
    EXPECT_EQ(normals.CheckFlipAllElemNormals(&again), 0);
    for (int e = 1; e <= mesh.numElem(); ++e)
        EXPECT_EQ(Ints(again.elem(e), again.elem(e) + 4), Ints(mesh.elem(e), mesh.elem(e) + 4));
}

TEST_F(MeshExtension, LabelOffsetsOfThePartAreTakenOff)
{
    VOZCatMesh const plain = extended(kOn, cup(8), 7.0);
    VOZCatMesh shifted = cup(8);
    shifted.IdsOffset(1000, 2000);
    shifted = extended(kOn, shifted, 7.0);
    EXPECT_EQ(shifted.GetFirstNodeNumber(), 0);
    ASSERT_EQ(shifted.numElem(), plain.numElem());
    for (int e = 1; e <= plain.numElem(); ++e)
        EXPECT_EQ(Ints(shifted.elem(e), shifted.elem(e) + 4), Ints(plain.elem(e), plain.elem(e) + 4));
}

// Thinning can leave two points of a narrow part's offset line: they are a line still, one is none.
TEST_F(MeshExtension, AnOffsetLineOfTwoPointsIsStillOne)
{
    VOZCatMesh const cell = samples::mesh(Points{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, Quads{{1, 2, 3, 4}});
    meshextension::Wire wire;
    wire.ids = {1, 2, 3, 4};
    wire.points = {0, 0, 0, 10, 0, 0, 10, 10, 0, 0, 10, 0};
    std::vector<double> const line = {-5, -5, 0, 15, 15, 0, 15.5, 15, 0}; // 30 / 4 apart at least: two remain
    VOZCatMesh mesh = cell;
    EXPECT_TRUE(meshextension::Extend(mesh, wire, line, 1.0));
    EXPECT_GE(mesh.numNode(), 4 + 8 + 2 + 8); // the bridge both ways has 7 steps of its own
    EXPECT_EQ(mesh.node(4 + 8 + 1, 0) + mesh.node(4 + 8 + 2, 0), 10.0);
    mesh = cell;
    EXPECT_FALSE(meshextension::Extend(mesh, wire, {-5, -5, 0, -5, -4, 0}, 1.0));
    EXPECT_EQ(mesh.numNode(), 4);
}

TEST_F(MeshExtension, BadCornersHarmNothing)
{
    for (int const bad : {0, -1, 5000, std::numeric_limits<int>::max()})
    {
        VOZCatMesh mesh = cup(4);
        mesh.GetElemData()[1][0] = bad;
        testing::internal::CaptureStdout();
        extended(kOn, mesh);
        testing::internal::GetCapturedStdout();
    }
}

TEST_F(MeshExtension, TheRecordIsTheGolden)
{
    VOZCatMesh const mesh =
        samples::mesh(Points{{0, 0, 0}, {10, -0.5, 1.0 / 3.0}, {12.25, 1234567.891, -1e-12}, {0, 10, 3e20}},
                      Quads{{1, 2, 3, 4}, {1, 3, 4, 1}});
    std::string const path = root.Write("record.dat", "");
    std::FILE * const file = std::fopen(path.c_str(), "wb");
    meshextension::WriteRecord(file, mesh);
    std::fclose(file);
    std::filesystem::path const golden = std::filesystem::path(VOZ_SOURCE_DIR) / "tests/golden/extension/record.dat";
    EXPECT_EQ(deckjobs::firstDifference(deckjobs::readFile(golden), deckjobs::readFile(path)), "");
}
} // namespace
