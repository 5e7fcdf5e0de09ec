// CurvatureBendEndsTest.cpp: curvature where a bend meets a flat.

#include "SpringbackCases.h"

#include "geometry/Curvature.h"
#include "geometry/Orientation.h"
#include "onestep/Partition.h"

#include <gtest/gtest.h>

using namespace springtest;
using voz::geometry::BendEnds;
using voz::geometry::PrincipalCurvature;
using voz::geometry::SymmetryNode;

namespace
{

struct Found
{
    std::array<double, 3> place; // middle of the cell, mm
    PrincipalCurvature curvature;
};

// Curvature in every cell, free sides being rims but those between two nodes of a plane of symmetry.
std::vector<Found> curvaturesOf(std::vector<std::array<double, 3>> const & nodes,
                                std::vector<voz::onestep::Element> const & elements,
                                std::vector<SymmetryNode> const & symmetry, BendEnds ends)
{
    std::vector<int> dropped;
    auto whole = voz::onestep::buildWhole(nodes, elements, dropped);
    auto const sides = voz::geometry::buildSideTable(whole.mesh);
    auto const points = voz::geometry::buildIntegrationPoints(whole.mesh);
    std::vector<char> held(nodes.size(), 0);
    for (SymmetryNode const & node : symmetry)
        held[static_cast<std::size_t>(node.node)] = 1;
    std::vector<voz::geometry::Side> rim;
    for (auto const & side : sides.free)
        if (held[static_cast<std::size_t>(side.a)] == 0 || held[static_cast<std::size_t>(side.b)] == 0)
            rim.push_back(side);
    auto const tensors = pointCurvatures(whole.mesh, points, symmetry, rim, ends);
    std::vector<Found> found;
    for (std::size_t q = 0; q < tensors.size(); ++q)
    {
        auto const & point = points.points[q];
        Found one{{}, principalCurvature(tensors[q])};
        for (int k = 0; k < point.count; ++k)
            for (std::size_t axis = 0; axis < 3; ++axis)
                one.place[axis] += 1000.0 *
                                   nodes[static_cast<std::size_t>(point.node[static_cast<std::size_t>(k)])][axis] /
                                   point.count;
        found.push_back(one);
    }
    return found;
}

std::vector<Found> curvaturesOf(Problem const & problem, BendEnds ends)
{
    return curvaturesOf(problem.formed, problem.elements, problem.symmetry, ends);
}

// Two flats that meet at an angle below that of a fold.
Problem crease()
{
    SurfaceMesh mesh = extrude(Profile({0.0, 0.0}, 0.0).line(60.0, 12), 20.0, 4, Cells::Quads);
    for (Point3 & x : mesh.nodes)
        x[2] = -0.4 * std::max(0.0, x[0] - 30.0);
    return problemOf(mesh, mesh);
}

} // namespace

TEST(CurvatureBendEnds, AFlatBesideABendIsFlatAndTheBendHasItsRadiusToTheEnd)
{
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
        for (double const shake : {0.0, 0.2})
        {
            Problem const problem = vee(12, 15, cells, shake);
            double meanInFlat = 0.0;
            for (Found const & found : curvaturesOf(problem, BendEnds::Mean))
                if (found.place[0] < 30.0)
                    meanInFlat = std::max(meanInFlat, std::abs(found.curvature.k1));
            EXPECT_GT(meanInFlat, 10.0); // 1/m: of the 100 of the arc
            for (Found const & found : curvaturesOf(problem, BendEnds::Sharp))
            {
                bool const flat = found.place[0] < 30.0 || found.place[2] < -kVeeRadius;
                EXPECT_NEAR(std::abs(found.curvature.k1), flat ? 0.0 : 100.0, 1.0) << found.place[0];
                EXPECT_NEAR(found.curvature.k2, 0.0, 1.0);
            }
        }
}

// The wall of a round cup is bent round the axis; along the meridian it is straight, and the arcs end there.
TEST(CurvatureBendEnds, AWallThatIsBentOneWayIsStraightTheOther)
{
    Cup const shape;
    SurfaceMesh const mesh = cup(shape, 4, Extent::Whole, Cells::Quads);
    Problem const problem = problemOf(mesh, mesh);
    auto const mean = curvaturesOf(problem, BendEnds::Mean), sharp = curvaturesOf(problem, BendEnds::Sharp);
    double const radius = shape.bottom + shape.punchArc;
    double worstMean = 0.0, worstSharp = 0.0;
    int walls = 0;
    for (std::size_t q = 0; q < mean.size(); ++q)
    {
        auto const & x = mean[q].place;
        if (x[2] < shape.punchArc || x[2] > shape.punchArc + shape.wall)
            continue;
        ++walls;
        EXPECT_NEAR(std::hypot(x[0], x[1]), radius, 0.1);
        auto const along = [&](Found const & found)
        { return std::abs(found.curvature.k1 + found.curvature.k2) - 1000.0 / radius; };
        worstMean = std::max(worstMean, std::abs(along(mean[q])));
        worstSharp = std::max(worstSharp, std::abs(along(sharp[q])));
    }
    EXPECT_GT(walls, 100);
    EXPECT_GT(worstMean, 10.0);
    EXPECT_LT(worstSharp, 1.0);
}

// Where nothing is uneven both rules give the same bits: on a cylinder, and at a crease between two flats.
TEST(CurvatureBendEnds, EvenTurningAndCreasesKeepTheMean)
{
    for (Problem const & problem :
         {sector(20.0, 0.6, 12, 4, Cells::Triangles), sector(20.0, 0.6, 12, 4, Cells::Quads), crease()})

    {
        auto const mean = curvaturesOf(problem, BendEnds::Mean), sharp = curvaturesOf(problem, BendEnds::Sharp);
        ASSERT_EQ(mean.size(), sharp.size());
        for (std::size_t q = 0; q < mean.size(); ++q)
            EXPECT_NEAR(sharp[q].curvature.k1, mean[q].curvature.k1, 1e-9 * (1.0 + std::abs(mean[q].curvature.k1)));
    }
}
