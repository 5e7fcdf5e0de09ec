// StartTest.cpp: the flat that Newton's method begins with has no folds, whatever the part.

#include "onestep/Start.h"

#include "OneStepMeshes.h"
#include "onestep/Kinematics.h"
#include "onestep/Partition.h"
#include "onestep/RigidMotion.h"
#include "onestep/Tutte.h"

#include <gtest/gtest.h>

using namespace onesteptest;
using namespace voz::onestep;
using voz::geometry::Vec2;

namespace
{

double leastDeterminant(Piece const & i_piece, std::vector<Vec2> const & i_flat)
{
    double least = 1e300;
    for (auto const & point : i_piece.points.points)
        least = std::min(least, det(inverseGradient(point, i_flat)));
    return least;
}

// A tube of radius 10 about the y axis, cut open along its highest line; columns go round it.
Problem openTube(Cells i_cells)
{
    return gridPart(6, 24, i_cells,
                    [](double u, double v) -> voz::examples::Point3
                    {
                        double const a = std::numbers::pi * (2.0 * u - 1.0);
                        return {10.0 * std::sin(a), 40.0 * v, -10.0 * std::cos(a)};
                    });
}

std::vector<std::pair<char const *, Problem>> parts()
{
    std::vector<std::pair<char const *, Problem>> list;
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        list.emplace_back("square cup", quarterSquareCup(voz::examples::squareCup40(), cells, 0.0));
        list.emplace_back("whole cup", problemOf(voz::examples::cup({}, 2, Extent::Whole, cells)));
        list.emplace_back("hemisphere",
                          problemOf(voz::examples::dome(50.0, 0.5 * std::numbers::pi, 2, Extent::Whole, cells)));
        list.emplace_back("bracket with a hole", problemOf(voz::examples::bracket({}, cells)));
        list.emplace_back("tube", openTube(cells));
    }
    return list;
}

} // namespace

TEST(Start, HasNoFoldsOnEveryPart)
{
    for (auto & [name, problem] : parts())
    {
        Partition partition_ = partition(problem);
        ASSERT_EQ(partition_.refusal, "") << name;
        Progress const silent;
        Monitor monitor(silent);
        Piece & piece = partition_.pieces.at(0);
        Start const start = findStart(monitor, piece);
        ASSERT_FALSE(start.flat.empty()) << name << ": " << start.reason;
        EXPECT_GT(leastDeterminant(piece, start.flat), 0.05) << name;
        EXPECT_LT(start.steps, 45) << name;
        for (std::size_t i = 0; i < start.flat.size(); ++i)
            for (int h = 0; h < piece.holds[i].count; ++h)
                EXPECT_NEAR(dot(start.flat[i], piece.holds[i].direction[at(h)]), piece.holds[i].target[at(h)], 1e-14)
                    << name;
    }
}

TEST(Start, TutteLaysEveryPartWithoutFolds)
{
    for (auto & [name, problem] : parts())
    {
        Partition partition_ = partition(problem);
        std::vector<Vec2> const flat = embedByTutte(partition_.pieces.at(0), false);
        ASSERT_FALSE(flat.empty()) << name;
        EXPECT_GT(leastDeterminant(partition_.pieces[0], flat), 0.0) << name;
    }
}

// The boundary's sense makes the embedding agree with the winding, so that nothing comes out mirrored.
TEST(Start, TheOuterLoopLiesOnACircleOfTheAreaOfThePart)
{
    Partition parts_ = partition(gridPart(4, 4, Cells::Quads,
                                          [](double u, double v) {
                                              return voz::examples::Point3{50 * u, 50 * v, 0};
                                          }));
    std::vector<Vec2> const flat = embedByTutte(parts_.pieces.at(0), false);
    for (int const node : parts_.pieces[0].loops.at(0))
        EXPECT_NEAR(length(flat[at(node)]), 0.05 / std::sqrt(std::numbers::pi), 1e-12);
}

// The lips of the tube go to +pi r and -pi r; the part is symmetric, so only the constraints tell which lip goes where.
TEST(Start, ConstraintsTellWhichWayATubeWasOpened)
{
    for (double const turn : {1.0, -1.0})
    {
        Problem problem = openTube(Cells::Quads);
        double const half = 24.0 * 10.0 * std::sin(std::numbers::pi / 24.0); // half the polygon's length
        for (int row = 0; row <= 6; ++row)
        {
            problem.constraints.push_back({25 * row, 0.0, -turn * 0.001 * half});
            problem.constraints.push_back({25 * row + 24, 0.0, turn * 0.001 * half});
        }
        Solution const solution = Solve(problem, {}, {});
        ASSERT_EQ(solution.status, Status::Converged) << solution.message;
        EXPECT_NEAR(solution.flat[24][0], turn * 0.001 * half, 1e-12);
        for (double const e : solution.strains.mid)
            EXPECT_NEAR(e, 0.0, 1e-10);
    }
}

TEST(StartRigidMotion, SymmetryPlanesLeaveWhatTheyLeave)
{
    std::vector<Vec2> const flat = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    std::vector<Hold> holds(4);
    EXPECT_EQ(freeRigidMotions(holds, flat).size(), 3u);
    addHold({1.0, 0.0}, 0.0, holds[0]);
    EXPECT_EQ(freeRigidMotions(holds, flat).size(), 2u);
    addHold({1.0, 0.0}, 0.0, holds[3]);
    EXPECT_EQ(freeRigidMotions(holds, flat).size(), 1u); // along the plane
    addHold({0.0, 1.0}, 0.0, holds[0]);
    EXPECT_EQ(freeRigidMotions(holds, flat).size(), 0u);
}

TEST(StartRigidMotion, PinsStopAllMotions)
{
    std::vector<Vec2> const flat = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    std::vector<int> pins = rigidPins(std::vector<Hold>(4), flat);
    ASSERT_EQ(pins.size(), 3u);
    std::sort(pins.begin(), pins.end());
    EXPECT_EQ(std::adjacent_find(pins.begin(), pins.end()), pins.end());
}
