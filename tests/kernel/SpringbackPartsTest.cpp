// SpringbackPartsTest.cpp: formed parts from the one-step solve, let go.

#include "SpringbackFixture.h"

#include "onestep/OneStep.h"

#include <algorithm>
#include <numeric>
#include <random>

using namespace springtest;

namespace
{

bool onPlane(double x)
{
    return std::abs(x) < 1e-9;
}

// The part solved in one step; what the planes x = 0 and y = 0 cut lies on planes of symmetry where asked for.
Problem formed(SurfaceMesh const & mesh, Extent extent)
{
    voz::onestep::Problem one;
    for (Point3 const & x : mesh.nodes)
    {
        int const node = static_cast<int>(one.nodes.size());
        one.nodes.push_back({0.001 * x[0], 0.001 * x[1], 0.001 * x[2]});
        if (extent != Extent::Whole && onPlane(x[0]))
            one.constraints.push_back({node, 0.0, 0.0});
        if (extent == Extent::Quarter && onPlane(x[1]))
            one.constraints.push_back({node, 0.5 * kPi, 0.0});
    }
    for (auto const & nodes : mesh.elements)
        one.elements.push_back({nodes, 0});
    one.materials.push_back(mildSteel());
    auto const solution = voz::onestep::Solve(one, {}, {});
    EXPECT_EQ(solution.status, voz::onestep::Status::Converged) << solution.message;

    Problem problem;
    problem.formed = one.nodes;
    problem.elements = one.elements;
    problem.materials = one.materials;
    for (auto const & x : solution.flat)
        problem.flat.push_back({x[0], x[1], 0.0});
    for (voz::onestep::NodeConstraint const & c : one.constraints)
        problem.symmetry.push_back({c.node, {std::cos(c.angle), std::sin(c.angle)}});
    return problem;
}

double distance(std::array<double, 3> const & a, std::array<double, 3> const & b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

SquareCup coarseCup()
{
    SquareCup shape = squareCup40();
    shape.rowsBottom = 2;
    shape.rowsArc = 2;
    shape.rowsWall = 3;
    shape.rowsFlange = 3;
    shape.cellsSide = 2;
    shape.cellsCorner = 4;
    return shape;
}

// Distances do not know where a part was pinned.
double greatestDifferenceOfDistances(std::vector<std::array<double, 3>> const & a,
                                     std::vector<std::array<double, 3>> const & b)
{
    double greatest = 0.0;
    std::size_t const step = std::max<std::size_t>(1, a.size() / 40);
    for (std::size_t i = 0; i < a.size(); i += step)
        for (std::size_t j = 0; j < a.size(); ++j)
            greatest = std::max(greatest, std::abs(distance(a[i], a[j]) - distance(b[i], b[j])));
    return greatest;
}

Problem const & quarterCup()
{
    static Problem const problem = formed(squareCup(coarseCup(), Extent::Quarter, Cells::Triangles), Extent::Quarter);
    return problem;
}

Problem const & wholeCup()
{
    static Problem const problem = formed(squareCup(coarseCup(), Extent::Whole, Cells::Triangles), Extent::Whole);
    return problem;
}

} // namespace

TEST(SpringbackParts, AQuarterOnItsPlanesOfSymmetryIsAQuarterOfTheWhole)
{
    for (Cells const cells : {Cells::Quads})
    {
        Problem const quarter = formed(squareCup(coarseCup(), Extent::Quarter, cells), Extent::Quarter);
        Problem const whole = formed(squareCup(coarseCup(), Extent::Whole, cells), Extent::Whole);
        Solution const part = solve(quarter), all = solve(whole);
        EXPECT_EQ(part.loadSteps, 4);
        EXPECT_LT(all.pinReaction, 1e-9);
        std::vector<std::array<double, 3>> same;
        for (auto const & x : quarter.formed)
        {
            auto const twin = std::ranges::find_if(whole.formed, [&](auto const & y) { return distance(x, y) < 1e-9; });
            ASSERT_NE(twin, whole.formed.end());
            same.push_back(all.shape[static_cast<std::size_t>(twin - whole.formed.begin())]);
        }
        EXPECT_GT(part.greatestMove, 1e-4);
        EXPECT_LT(greatestDifferenceOfDistances(part.shape, same), 1e-3 * part.greatestMove);
        for (std::size_t i = 0; i < quarter.formed.size(); ++i)
            for (std::size_t k = 0; k < 2; ++k)
                if (onPlane(quarter.formed[i][k]))
                {
                    EXPECT_NEAR(part.shape[i][k], 0.0, 1e-15);
                }
    }
}

TEST(SpringbackParts, ASymmetricPartStaysSymmetric)
{
    Problem const & problem = wholeCup();
    Solution const solution = solve(problem);
    for (std::size_t axis = 0; axis < 2; ++axis)
    {
        std::vector<std::array<double, 3>> mirrored;
        for (auto x : problem.formed)
        {
            x[axis] = -x[axis];
            auto const twin =
                std::ranges::find_if(problem.formed, [&](auto const & y) { return distance(x, y) < 1e-9; });
            ASSERT_NE(twin, problem.formed.end());
            mirrored.push_back(solution.shape[static_cast<std::size_t>(twin - problem.formed.begin())]);
        }
        EXPECT_LT(greatestDifferenceOfDistances(solution.shape, mirrored), 1e-6 * solution.greatestMove);
    }
}

TEST(SpringbackParts, TheSecondRunRepeatsTheFirstToTheLastBit)
{
    EXPECT_EQ(solve(quarterCup()).shape, solve(quarterCup()).shape);
}

TEST(SlowSpringbackParts, TurnShiftAndNumberingChangeNothing)
{
    Problem const & problem = wholeCup();
    Solution const first = solve(problem);
    Problem moved = problem;
    double const c = std::cos(0.3), s = std::sin(0.3);
    for (auto * const mesh : {&moved.formed, &moved.flat})
        for (auto & x : *mesh)
            x = {c * x[0] - s * x[1] + 100.0, s * x[0] + c * x[1] - 50.0, x[2]};
    EXPECT_LT(greatestDifferenceOfDistances(solve(moved).shape, first.shape), 1e-6 * first.greatestMove);

    std::vector<int> order(problem.formed.size());
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), std::mt19937(5));
    Problem renumbered = problem;
    for (std::size_t i = 0; i < order.size(); ++i)
    {
        renumbered.formed[static_cast<std::size_t>(order[i])] = problem.formed[i];
        renumbered.flat[static_cast<std::size_t>(order[i])] = problem.flat[i];
    }
    for (auto & element : renumbered.elements)
    {
        for (int & node : element.nodes)
            node = node < 0 ? node : order[static_cast<std::size_t>(node)];
        std::rotate(element.nodes.begin(), element.nodes.begin() + 1, element.nodes.begin() + 3);
    }
    std::shuffle(renumbered.elements.begin(), renumbered.elements.end(), std::mt19937(6));
    Solution const second = solve(renumbered);
    std::vector<std::array<double, 3>> back;
    for (int const node : order)
        back.push_back(second.shape[static_cast<std::size_t>(node)]);
    EXPECT_LT(greatestDifferenceOfDistances(back, first.shape), 1e-6 * first.greatestMove);
}

TEST(SpringbackParts, AReversedWindingGivesTheSameShape)
{
    Problem reversed = quarterCup();
    for (auto & element : reversed.elements)
        std::swap(element.nodes[1], element.nodes[2]);
    Solution const first = solve(quarterCup()), second = solve(reversed);
    EXPECT_LT(greatestDifferenceOfDistances(second.shape, first.shape), 1e-6 * first.greatestMove);
}

TEST(SpringbackParts, TrimmedElementsCarryNothingAndTheirNodesFollow)
{
    Problem problem = quarterCup();
    double const rim = 0.040;
    auto const isOutside = [&](voz::onestep::Element const & element)
    {
        return std::all_of(element.nodes.begin(), element.nodes.begin() + 3,
                           [&](int node)
                           {
                               return std::max(problem.formed[static_cast<std::size_t>(node)][0],
                                               problem.formed[static_cast<std::size_t>(node)][1]) > rim;
                           });
    };
    std::vector<char> kept(problem.formed.size(), 0);
    for (auto const & element : problem.elements)
    {
        problem.trimmed.push_back(isOutside(element) ? 1 : 0);
        if (problem.trimmed.back() == 0)
            for (std::size_t k = 0; k < 3; ++k)
                kept[static_cast<std::size_t>(element.nodes[k])] = 1;
    }
    ASSERT_GT(std::ranges::count(problem.trimmed, 1), 10);
    Solution const trimmed = solve(problem), untrimmed = solve(quarterCup());
    double difference = 0.0;
    for (std::size_t i = 0; i < kept.size(); ++i)
    {
        if (kept[i] != 0)
        {
            difference = std::max(difference, distance(trimmed.shape[i], untrimmed.shape[i]));
            continue;
        }
        std::size_t nearest = kept.size();
        for (std::size_t j = 0; j < kept.size(); ++j)
            if (kept[j] != 0 && (nearest == kept.size() || distance(problem.formed[j], problem.formed[i]) <
                                                               distance(problem.formed[nearest], problem.formed[i])))
                nearest = j;
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_NEAR(trimmed.shape[i][k] - problem.formed[i][k],
                        trimmed.shape[nearest][k] - problem.formed[nearest][k], 1e-15);
    }
    EXPECT_GT(difference, 0.05 * untrimmed.greatestMove); // the flange held the wall
}

TEST(SpringbackParts, FixedNodesStayAndOthersOutsideTheMeshAreSkipped)
{
    Problem problem = wholeCup();
    problem.fixed = {-1, 1 << 30, static_cast<int>(problem.formed.size())};
    Solution const free = solve(problem);
    EXPECT_EQ(free.shape, solve(wholeCup()).shape);
    for (int const node : {3, 80, 160, 250})
        problem.fixed.push_back(node);
    Solution const held = solve(problem);
    for (int const node : {3, 80, 160, 250})
        EXPECT_EQ(held.shape[static_cast<std::size_t>(node)], problem.formed[static_cast<std::size_t>(node)]);
}

TEST(SpringbackParts, PiecesSpringBackEachByItself)
{
    Problem const & one = quarterCup();
    Problem two = one;
    auto const count = static_cast<int>(one.formed.size());
    for (int i = 0; i < count; ++i)
    {
        auto const n = static_cast<std::size_t>(i);
        two.formed.push_back({one.formed[n][0] + 0.2, one.formed[n][1], one.formed[n][2]});
        two.flat.push_back({one.flat[n][0] + 0.2, one.flat[n][1], one.flat[n][2]});
    }
    for (auto element : one.elements)
    {
        for (std::size_t k = 0; k < 3; ++k)
            element.nodes[k] += count;
        two.elements.push_back(element);
    }
    for (auto held : one.symmetry)
        two.symmetry.push_back({held.node + count, held.direction});
    Solution const single = solve(one), both = solve(two);
    EXPECT_EQ(both.pieces, 2);
    for (std::size_t i = 0; i < one.formed.size(); ++i)
        for (std::size_t k = 0; k < 3; ++k)
        {
            EXPECT_NEAR(both.shape[i][k], single.shape[i][k], 1e-8 * single.greatestMove + 1e-15);
            EXPECT_NEAR(both.shape[i + one.formed.size()][k] - (k == 0 ? 0.2 : 0.0), single.shape[i][k],
                        1e-7 * single.greatestMove);
        }
}

TEST(SpringbackParts, ProgressNeverRunsBackwardsAndEachReportCanStopTheRun)
{
    Problem const & problem = quarterCup();
    std::vector<double> reports;
    voz::onestep::Progress progress;
    progress.report = [&](double percent)
    {
        reports.push_back(percent);
        return 0;
    };
    EXPECT_EQ(voz::springback::Solve(problem, {}, progress).status, Status::Converged);
    EXPECT_TRUE(std::ranges::is_sorted(reports));
    EXPECT_GE(reports.front(), 0.0);
    EXPECT_EQ(reports.back(), 100.0);
    for (std::size_t stop = 0; stop < reports.size(); ++stop)
    {
        std::size_t asked = 0;
        progress.report = [&](double) { return asked++ == stop ? 7 : 0; };
        Solution const solution = voz::springback::Solve(problem, {}, progress);
        EXPECT_EQ(solution.status, Status::Stopped) << stop;
        EXPECT_EQ(asked, stop + 1);
        EXPECT_TRUE(solution.shape.empty());
    }
}
