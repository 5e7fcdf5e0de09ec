// TubeRandomTest.cpp: tubes of many sizes and shapes, against the tube itself and against the rules told once more.

#include "Tube.h"

#include "BoundaryFixture.h"
#include "TubeFixture.h"
#include "TubeReference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace tubes;

namespace
{
double distance(VOZCatMesh const & mesh, int a, int b)
{
    double sum = 0.0;
    for (int c = 0; c < 3; ++c)
        sum += (mesh.NodeValue(a, c) - mesh.NodeValue(b, c)) * (mesh.NodeValue(a, c) - mesh.NodeValue(b, c));
    return std::sqrt(sum);
}

double area(VOZCatMesh & io_mesh)
{
    double sum = 0.0;
    for (int e = 1; e <= io_mesh.numElem(); ++e)
    {
        Vec const first = io_mesh.node(io_mesh.elem(e, 0));
        sum += first.area(io_mesh.node(io_mesh.elem(e, 1)), io_mesh.node(io_mesh.elem(e, 2)));
        if (io_mesh.isTriangle(e) == 0)
            sum += first.area(io_mesh.node(io_mesh.elem(e, 2)), io_mesh.node(io_mesh.elem(e, 3)));
    }
    return sum;
}

// Of many sizes and turned so that the cut runs along nodes or between them: the sheet is the tube, cut.
TEST_F(TubeTest, OpenedTubesKeepTheirAreaAndTheirEdges)
{
    std::mt19937 random(102);
    for (int round = 0; round < 120; ++round)
    {
        Pipe pipe;
        pipe.around = 8 + static_cast<int>(random() % 40);
        pipe.along = 3 + static_cast<int>(random() % 30);
        pipe.radius = 5.0 + static_cast<double>(random() % 100);
        pipe.length = pipe.radius * 2.0 * kPi / pipe.around * pipe.along; // square cells
        pipe.cells = static_cast<Cells>(round % 3);
        double const cell = 2.0 * kPi / pipe.around;
        bool const onNodes = round % 2 == 0;
        double const between = onNodes ? 0.0 : std::uniform_real_distribution<double>(-0.45, 0.45)(random);
        pipe.angle = cell * (static_cast<double>(random() % 100) + between);
        VOZCatMesh tube = pipe.mesh();
        Opened opened(tube);
        ASSERT_TRUE(opened.isOpen) << "round " << round;
        int const length = opened.property.dispBCs(2).size;
        ASSERT_EQ(length, pipe.along + 1) << "round " << round;
        ASSERT_EQ(opened.mesh.numNode(), tube.numNode() + length);

        // one boundary, round the whole sheet: both ends and both lips
        Chained const chained(opened.mesh);
        EXPECT_EQ(chained.error, 0);
        EXPECT_EQ(chained.loops.numLoops(), 1) << "round " << round;
        EXPECT_EQ(chained.edges.numEdge(), 2 * pipe.around + 2 * (length - 1));

        // where the cut runs along nodes nothing has moved but by rounding; else by the way to the plane
        double const moved = onNodes ? 1e-9 * pipe.radius : pipe.radius * std::sin(0.45 * cell) + 1e-9;
        Ints const path = nodesOf(opened.property.dispBCs(2));
        for (int e = 1; e <= tube.numElem(); ++e)
        {
            bool const isTriangle = tube.isTriangle(e) != 0;
            auto const turned = [isTriangle](int k) { return isTriangle ? Ints{0, 2, 1, 3}[at(k)] : (4 - k) % 4; };
            for (int k = 0; k < 4; ++k)
            {
                int const before = tube.elem(e, k);
                int const after = opened.mesh.elem(e, turned(k));
                int const original = after > tube.numNode() ? path[at(after - tube.numNode() - 1)] : after;
                ASSERT_EQ(original, before) << "round " << round;
                double gap = 0.0;
                for (int c = 0; c < 3; ++c)
                    gap = std::max(gap, std::fabs(opened.mesh.NodeValue(after, c) - tube.NodeValue(before, c)));
                ASSERT_LE(gap, moved) << "round " << round;
                ASSERT_NEAR(distance(opened.mesh, after, opened.mesh.elem(e, turned((k + 1) % 4))),
                            distance(tube, before, tube.elem(e, (k + 1) % 4)), 2.0 * moved);
            }
        }
        double const wanted = area(tube);
        EXPECT_NEAR(area(opened.mesh), wanted, onNodes ? 1e-9 * wanted : 0.02 * wanted) << "round " << round;
        EXPECT_NEAR(opened.tube->Radius(), pipe.radius, 1e-9 * pipe.radius);

        // elements with doubles are below the plane, those with the path above it
        for (int e = 1; e <= opened.mesh.numElem(); ++e)
            for (int k = 0; k < 4; ++k)
            {
                int const n = opened.mesh.elem(e, k);
                bool const isDouble = n > tube.numNode();
                bool const isPath = std::find(path.begin(), path.end(), n) != path.end();
                for (int other = 0; (isDouble || isPath) && other < 4; ++other)
                {
                    double const y = opened.mesh.NodeValue(opened.mesh.elem(e, other), 1);
                    ASSERT_TRUE(isDouble ? y <= 1e-9 : y >= -1e-9) << "round " << round << " element " << e;
                }
            }
    }
}

// Crooked tubes with windows and unused nodes, numbered at random: cut, cut short, refused, or walked in vain.
VOZCatMesh crookedTube(std::mt19937 & random)
{
    Pipe pipe;
    pipe.around = 5 + static_cast<int>(random() % 12);
    pipe.along = 1 + static_cast<int>(random() % 12);
    pipe.cells = static_cast<Cells>(random() % 3);
    pipe.angle = static_cast<double>(random() % 100);
    VOZCatMesh const straight = pipe.mesh();
    Points points = pointsOf(straight);
    double const shake = 0.5 * static_cast<double>(random() % 8);
    std::uniform_real_distribution<double> number(-shake, shake);
    for (Point & point : points)
        for (double & value : point)
            value += number(random);
    Quads rows;
    unsigned const windows = random() % 3 == 0 ? 20 : 100000;
    for (std::array<int, 4> const & row : rowsOf(straight))
        if (random() % windows != 0)
            rows.push_back(row);
    Ints place = oneTo(static_cast<int>(points.size()));
    std::shuffle(place.begin(), place.end(), random);
    std::shuffle(rows.begin(), rows.end(), random);
    Points moved(points.size());
    for (std::size_t n = 0; n < points.size(); ++n)
        moved[at(place[n] - 1)] = points[n];
    for (std::array<int, 4> & row : rows)
        for (int & n : row)
            n = place[at(n - 1)];
    return samples::mesh(moved, rows);
}

TEST_F(TubeTest, RandomTubesAgreeWithTheRulesToTheLastBit)
{
    std::mt19937 random(1022);
    int opened = 0;
    int refused = 0;
    int stoodStill = 0;
    int unheld = 0;
    for (int round = 0; round < 1500; ++round)
    {
        VOZCatMesh mesh = crookedTube(random);
        double const radius = random() % 3 == 0 ? 3.0 : 0.0;
        double const factor = 0.1 * static_cast<double>(1 + random() % 20);
        SlowTube slow(mesh, radius);
        bool const wanted = slow.eval(factor);
        Opened got(mesh, factor, radius);
        ASSERT_EQ(got.isOpen, wanted) << "round " << round;
        ASSERT_EQ(got.tube->Radius(), slow.radius) << "round " << round;
        ASSERT_EQ(pointsOf(got.mesh), pointsOf(slow.mesh)) << "round " << round;
        ASSERT_EQ(rowsOf(got.mesh), rowsOf(slow.mesh)) << "round " << round;
        (wanted ? opened : refused) += 1;
        stoodStill += !wanted && slow.rounds > 20 ? 1 : 0;
        if (!wanted)
            continue;
        Ints doubles;
        for (std::size_t i = 0; i < slow.path.size(); ++i)
            doubles.push_back(mesh.numNode() + static_cast<int>(i) + 1);
        bool const isHeld = slow.last != 0; // where no element keeps the path's first node there are no tables
        ASSERT_EQ(nodesOf(got.property.dispBCs(2)), isHeld ? slow.path : Ints{}) << "round " << round;
        ASSERT_EQ(nodesOf(got.property.dispBCs(1)), isHeld ? doubles : Ints{}) << "round " << round;
        unheld += isHeld ? 0 : 1;
        if (!isHeld)
            continue;
        int sum = 0;
        for (int k = 0; k < (slow.mesh.isTriangle(slow.last) != 0 ? 3 : 4); ++k)
        {
            double const y = slow.mesh.node(slow.mesh.elem(slow.last, k), 1);
            sum += y > 0.001 ? 1 : y < -0.001 ? -1 : 0;
        }
        EXPECT_EQ(got.property.dispBCs(2).values[1], sum >= 0 ? slow.half : -slow.half) << "round " << round;
        EXPECT_EQ(got.property.dispBCs(1).values[1], sum >= 0 ? -slow.half : slow.half) << "round " << round;
    }
    EXPECT_GT(opened, 200);
    EXPECT_GT(refused, 200);
    EXPECT_GT(stoodStill, 50);
    EXPECT_GT(unheld, 0);
    EXPECT_TRUE(host.reports.empty());
}
} // namespace
