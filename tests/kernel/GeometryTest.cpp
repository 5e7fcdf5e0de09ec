// GeometryTest.cpp: cells, sides, loops, winding, integration points, normals and curvature of small surfaces.

#include "OneStepMeshes.h"
#include "geometry/Curvature.h"
#include "geometry/Orientation.h"

#include <gtest/gtest.h>

#include <random>

using namespace voz::geometry;
using onesteptest::at;

namespace
{

SurfaceMesh meshOf(std::vector<Vec3> i_nodes, std::vector<std::array<int, 4>> const & i_cells)
{
    SurfaceMesh mesh;
    mesh.position = std::move(i_nodes);
    for (auto const & nodes : i_cells)
        mesh.cells.push_back({nodes, nodes[3] == -1 ? 3 : 4, 1.0});
    return mesh;
}

SurfaceMesh meshOf(voz::onestep::Problem const & i_problem)
{
    SurfaceMesh mesh;
    for (auto const & p : i_problem.nodes)
        mesh.position.push_back({p[0], p[1], p[2]});
    for (auto const & element : i_problem.elements)
        mesh.cells.push_back({element.nodes, element.nodes[3] == -1 ? 3 : 4, 1.0});
    return mesh;
}

std::vector<Side> rimOf(SurfaceMesh const & i_mesh)
{
    return buildSideTable(i_mesh).free;
}

std::vector<Vec3> const kSquare = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};

} // namespace

//   3---2
//   | / |
//   0---1
TEST(GeometrySides, TwoTrianglesShareTheirDiagonal)
{
    SideTable const sides = buildSideTable(meshOf(kSquare, {{0, 1, 2, -1}, {0, 2, 3, -1}}));
    EXPECT_EQ(sides.numberOfEdges, 5);
    EXPECT_EQ(sides.free.size(), 4u);
    EXPECT_EQ(sides.across[0][2], 1);
    EXPECT_EQ(sides.across[1][0], 0);
    EXPECT_FALSE(sides.acrossIsAligned[0][2]);
    EXPECT_EQ(sides.crowded, -1);
}

TEST(GeometrySides, ASideOfThreeCellsIsCrowded)
{
    SurfaceMesh const mesh =
        meshOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}}, {{0, 1, 2, -1}, {0, 1, 3, -1}, {0, 1, 4, -1}});
    EXPECT_EQ(buildSideTable(mesh).crowded, 2);
}

//   6---7---8
//   |   |   |     without the middle cell of a 3 x 3 grid there are two loops
TEST(GeometryLoops, ARingHasTwoLoopsWithTheSurfaceOnTheirLeft)
{
    auto problem = onesteptest::gridPart(3, 3, onesteptest::Cells::Quads,
                                         [](double u, double v) {
                                             return voz::examples::Point3{u, v, 0.0};
                                         });
    problem.elements.erase(problem.elements.begin() + 4);
    SurfaceMesh const mesh = meshOf(problem);
    auto const loops = traceLoops(mesh, buildSideTable(mesh));
    ASSERT_EQ(loops.size(), 2u);
    auto const area = [&](std::vector<int> const & loop)
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < loop.size(); ++i)
            sum += 0.5 * cross(horizontal(mesh.position[at(loop[i])]),
                               horizontal(mesh.position[at(loop[(i + 1) % loop.size()])]));
        return sum * 1e6;
    };
    double const first = area(loops[0]), second = area(loops[1]);
    EXPECT_NEAR(std::max(first, second), 1.0, 1e-9);
    EXPECT_NEAR(std::min(first, second), -1.0 / 9.0, 1e-9); // the hole is walked clockwise
}

//   two holes that touch at the node in the middle
TEST(GeometryLoops, ANodeWhereTwoHolesTouchIsPassedOnceByEach)
{
    auto problem = onesteptest::gridPart(4, 4, onesteptest::Cells::Quads,
                                         [](double u, double v) {
                                             return voz::examples::Point3{u, v, 0.0};
                                         });
    problem.elements.erase(problem.elements.begin() + 10);
    problem.elements.erase(problem.elements.begin() + 5);
    SurfaceMesh const mesh = meshOf(problem);
    auto const loops = traceLoops(mesh, buildSideTable(mesh));
    ASSERT_EQ(loops.size(), 3u);
    for (auto loop : loops)
    {
        std::sort(loop.begin(), loop.end());
        EXPECT_EQ(std::adjacent_find(loop.begin(), loop.end()), loop.end());
    }
}

TEST(GeometryOrientation, MixedWindingsAgreeAndFaceUp)
{
    SurfaceMesh mesh = meshOf(kSquare, {{0, 2, 1, -1}, {0, 2, 3, -1}});
    Pieces const pieces = orient(buildSideTable(mesh), mesh);
    EXPECT_EQ(pieces.count, 1);
    EXPECT_EQ(pieces.twisted, -1);
    EXPECT_EQ(mesh.cells[0].sign, -1.0);
    EXPECT_EQ(mesh.cells[1].sign, 1.0);
    EXPECT_GT(vectorArea(mesh, mesh.cells[0]).z, 0.0);
}

TEST(GeometryOrientation, PiecesAreJoinedBySidesNotByNodes)
{
    SurfaceMesh mesh =
        meshOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}}, {{0, 1, 2, -1}, {0, 3, 4, -1}});
    EXPECT_EQ(orient(buildSideTable(mesh), mesh).count, 2);
}

TEST(GeometryOrientation, ATwistedBandIsFound)
{
    std::vector<Vec3> nodes;
    int const n = 12;
    for (int i = 0; i < n; ++i)
    {
        double const a = 2.0 * std::numbers::pi * i / n, half = 0.5 * a;
        for (double const w : {-0.3, 0.3})
            nodes.push_back({(1.0 + w * std::cos(half)) * std::cos(a), (1.0 + w * std::cos(half)) * std::sin(a),
                             w * std::sin(half)});
    }
    std::vector<std::array<int, 4>> cells;
    for (int i = 0; i + 1 < n; ++i)
        cells.push_back({2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1});
    cells.push_back({2 * n - 2, 1, 0, 2 * n - 1}); // closed with a half turn
    SurfaceMesh mesh = meshOf(std::move(nodes), cells);
    EXPECT_GE(orient(buildSideTable(mesh), mesh).twisted, 0);
}

TEST(GeometryIntegrationPoints, ATriangleHasTheGradientsOfTheHandFormula)
{
    SurfaceMesh const mesh = meshOf({{1, 1, 1}, {3, 1, 1}, {1.5, 1, 4}}, {{0, 1, 2, -1}}); // a = 2, b = 0.5, d = 3
    PointTable const table = buildIntegrationPoints(mesh);
    ASSERT_EQ(table.points.size(), 1u);
    IntegrationPoint const & p = table.points[0];
    EXPECT_DOUBLE_EQ(p.area, 3.0);
    double const a = 2.0, b = 0.5, d = 3.0;
    double const expected[3][2] = {{-d / (a * d), (b - a) / (a * d)}, {d / (a * d), -b / (a * d)}, {0.0, a / (a * d)}};
    for (std::size_t k = 0; k < 3; ++k)
    {
        EXPECT_NEAR(p.gradient[k].x, expected[k][0], 1e-15);
        EXPECT_NEAR(p.gradient[k].y, expected[k][1], 1e-15);
    }
}

TEST(GeometryIntegrationPoints, LinearFieldsHaveTheirGradientAtEveryPointOfAWarpedCell)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> shake(-0.2, 0.2);
    for (int trial = 0; trial < 50; ++trial)
    {
        std::vector<Vec3> nodes = kSquare;
        for (Vec3 & p : nodes)
            p = p + Vec3{shake(random), shake(random), shake(random)};
        for (double const sign : {1.0, -1.0})
        {
            SurfaceMesh mesh = meshOf(nodes, {{0, 1, 2, 3}});
            mesh.cells[0].sign = sign;
            PointTable const table = buildIntegrationPoints(mesh);
            ASSERT_EQ(table.points.size(), 4u);
            for (IntegrationPoint const & p : table.points)
            {
                EXPECT_NEAR(dot(cross(p.e1, p.e2), p.n), 1.0, 1e-14);
                Vec3 const slope{0.3, -1.2, 0.7}; // f = slope . x; its surface gradient has the components slope . e
                Vec2 g;
                for (std::size_t k = 0; k < 4; ++k)
                    g = g + dot(slope, nodes[at(p.node[k])]) * p.gradient[k];
                EXPECT_NEAR(g.x, dot(slope, p.e1), 1e-13);
                EXPECT_NEAR(g.y, dot(slope, p.e2), 1e-13);
            }
        }
    }
}

TEST(GeometryIntegrationPoints, WeightsAddUpToTheAreaAndStandInTheStatedOrder)
{
    SurfaceMesh const mesh = meshOf({{0, 0, 0}, {4, 0, 0}, {3, 2, 0}, {0, 1, 0}}, {{0, 1, 2, 3}});
    PointTable const table = buildIntegrationPoints(mesh);
    double sum = 0.0;
    for (IntegrationPoint const & p : table.points)
        sum += p.area;
    EXPECT_NEAR(sum, 5.5, 1e-14);
    // the Jacobian is greater near the side of node 1
    EXPECT_GT(table.points[1].area, table.points[0].area);
    EXPECT_GT(table.points[1].area, table.points[3].area);
}

TEST(GeometryIntegrationPoints, ACollapsedQuadrilateralIsSplitOverItsShorterDiagonal)
{
    // node 2 lies in the corner of 1-2-3 pulled almost onto the diagonal 1-3
    SurfaceMesh const mesh = meshOf({{0, 0, 0}, {1, 0, 0}, {0.3, 0.3, 0}, {0, 1, 0}}, {{0, 1, 2, 3}});
    PointTable const table = buildIntegrationPoints(mesh);
    EXPECT_EQ(table.numberOfSplit, 1);
    ASSERT_EQ(table.points.size(), 2u); // diagonal 0-2
    EXPECT_NEAR(table.points[0].area + table.points[1].area, 0.3, 1e-14);
    EXPECT_EQ(table.reported[0], (std::array<int, 4>{0, 0, 0, 1}));
}

TEST(GeometryIntegrationPoints, AQuadrilateralWhoseFirstSideHasNoLengthIsStillExact)
{
    SurfaceMesh mesh;
    mesh.position = {{0, 0, 0}, {0, 0, 0}, {2, 1, 0}, {-1, 1, 0}};
    Cell cell;
    cell.node = {0, 1, 2, 3};
    cell.count = 4;
    mesh.cells = {cell};
    PointTable const table = buildIntegrationPoints(mesh);
    ASSERT_EQ(table.points.size(), 4u);
    for (IntegrationPoint const & point : table.points)
    {
        Vec2 slope; // of x along e1 and e2
        for (std::size_t k = 0; k < 4; ++k)
            slope = slope + mesh.position[static_cast<std::size_t>(point.node[k])].x * point.gradient[k];
        EXPECT_NEAR(slope.x, point.e1.x, 1e-12);
        EXPECT_NEAR(slope.y, point.e2.x, 1e-12);
        EXPECT_NEAR(dot(point.e1, point.e1), 1.0, 1e-12);
    }
}

TEST(GeometryNodeNormals, BisectABentStripHoweverItIsCut)
{
    // two planes at right angles, one of them cut finely
    SurfaceMesh const mesh =
        meshOf({{0, 0, 0}, {0, 1, 0}, {0, 2, 0}, {1, 0, 0}, {1, 2, 0}, {0, 0, 1}, {0, 2, 1}, {1, 1, 0}},
               {{0, 3, 7, -1}, {0, 7, 1, -1}, {1, 7, 4, -1}, {1, 4, 2, -1}, {0, 1, 5, -1}, {1, 2, 6, 5}});
    std::vector<Vec3> const normals = nodeNormals(mesh, {});
    EXPECT_NEAR(normals[1].x, std::sqrt(0.5), 1e-14);
    EXPECT_NEAR(normals[1].y, 0.0, 1e-14);
    EXPECT_NEAR(normals[1].z, std::sqrt(0.5), 1e-14);
}

TEST(GeometryNodeNormals, StayInThePlaneOfSymmetry)
{
    SurfaceMesh const mesh = meshOf({{0, 0, 0}, {1, 0, -0.3}, {1, 1, -0.3}, {0, 1, 0}}, {{0, 1, 2, 3}});
    std::vector<Vec3> const normals = nodeNormals(mesh, {{0, {1.0, 0.0}}, {3, {-1.0, 0.0}}});
    EXPECT_NEAR(normals[0].x, 0.0, 1e-15);
    EXPECT_NEAR(normals[0].z, 1.0, 1e-15);
    EXPECT_GT(normals[1].x, 0.2);
}

TEST(GeometryCurvature, OfACylinderIsTheInverseRadiusAcrossAndNoneAlong)
{
    for (auto const cells : {onesteptest::Cells::Quads, onesteptest::Cells::Triangles})
    {
        SurfaceMesh const mesh =
            meshOf(onesteptest::problemOf(voz::examples::cylinder(20.0, 0.6, 24, 30.0, 12, cells)));
        PointTable const points = buildIntegrationPoints(mesh);
        std::vector<Curvature> const curvatures = pointCurvatures(mesh, points, {}, rimOf(mesh));
        std::vector<int> rimNodes(mesh.position.size(), 0);
        for (Side const & side : rimOf(mesh))
            rimNodes[at(side.a)] = rimNodes[at(side.b)] = 1;
        for (std::size_t q = 0; q < curvatures.size(); ++q)
        {
            IntegrationPoint const & point = points.points[q];
            int onRim = 0;
            for (int k = 0; k < point.count; ++k)
                onRim += rimNodes[at(point.node[at(k)])];
            if (onRim == 3 && point.count == 3)
                continue; // a triangle that fills a corner has no normal from inside
            PrincipalCurvature const principal = principalCurvature(curvatures[q]);
            EXPECT_NEAR(principal.k1, 50.0, 0.05); // 1/m, convex towards +z
            EXPECT_NEAR(principal.k2, 0.0, 0.05);
        }
    }
}

TEST(GeometryCurvature, ASharpFoldIsNoRadius)
{
    // a flat strip with a flange bent by 90 degrees
    auto const problem =
        onesteptest::gridPart(4, 8, onesteptest::Cells::Quads,
                              [](double u, double v) -> voz::examples::Point3 {
                                  return {10.0 * std::min(u, 0.5), 5.0 * v, 10.0 * std::max(0.0, u - 0.5)};
                              });
    SurfaceMesh const mesh = meshOf(problem);
    for (Curvature const & k : pointCurvatures(mesh, buildIntegrationPoints(mesh), {}, rimOf(mesh)))
        EXPECT_NEAR(principalCurvature(k).k1, 0.0, 1e-9);
}

TEST(GeometryCurvature, PrincipalValuesAreOrderedByAmount)
{
    PrincipalCurvature const p = principalCurvature({-3.0, 1.0, 0.0});
    EXPECT_DOUBLE_EQ(p.k1, -3.0);
    EXPECT_DOUBLE_EQ(p.k2, 1.0);
    EXPECT_NEAR(std::abs(p.cosine), 1.0, 1e-15);
}
