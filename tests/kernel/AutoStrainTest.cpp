// AutoStrainTest.cpp: the restraint that brings strains to given values.

#include "autostrain/AutoStrain.h"
#include "NodeAt.h"
#include "OneStepMeshes.h"
#include "autostrain/NodeStrain.h"
#include "onestep/Partition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace
{

using namespace voz::examples;
using namespace onesteptest;
using testing::HasSubstr;
using voz::autostrain::Reached;
using voz::autostrain::Task;
using voz::onestep::Solution;
using voz::onestep::Status;

struct Tuned
{
    Solution solution;
    Reached reached;
    std::vector<std::string> log;
    std::vector<double> told;
};

Tuned tuned(Problem const & problem, Task const & task)
{
    Tuned run;
    voz::onestep::Progress progress;
    progress.log = [&](std::string const & line) { run.log.push_back(line); };
    progress.report = [&](double percent)
    {
        run.told.push_back(percent);
        return 0;
    };
    run.solution = voz::autostrain::solve(problem, {}, task, progress, run.reached);
    return run;
}

Task target(int node, double strain, double guessFactor = 1.0)
{
    return {{node, strain}, {}, guessFactor};
}

// Mean of the major strain over the elements of a node by their areas, from a solution's layers.
double majorAt(Problem const & problem, Solution const & solution, int node)
{
    double sum = 0.0, area = 0.0;
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
    {
        auto const & nodes = problem.elements[e].nodes;
        if (std::find(nodes.begin(), nodes.end(), node) == nodes.end())
            continue;
        EXPECT_EQ(nodes[3], -1); // triangles
        std::array<double, 3> u{}, v{};
        for (std::size_t k = 0; k < 3; ++k)
        {
            u[k] = problem.nodes[at(nodes[1])][k] - problem.nodes[at(nodes[0])][k];
            v[k] = problem.nodes[at(nodes[2])][k] - problem.nodes[at(nodes[0])][k];
        }
        double const a =
            0.5 * std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]);
        area += a;
        sum += a * principal(solution, e * at(solution.stride)).major;
    }
    return sum / area;
}

// --- The strain of a node --------------------------------------------------------------------------------------------

TEST(NodeStrain, ItsSlopeIsThatOfDifferences)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> shake(-1.0, 1.0);
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Problem const problem = quarterCup({}, 1, cells, 20.0);
        voz::onestep::Partition parts = voz::onestep::partition(problem);
        voz::onestep::Piece const & piece = parts.pieces.front();
        for (int node : {0, 7, 25})
        {
            voz::autostrain::NodeStrain const strain(piece, node);
            std::vector<voz::geometry::Vec2> flat, motion;
            for (auto const & x : piece.mesh.position)
            {
                double const out = 1.0 + 0.02 * std::hypot(x.x, x.y) / 0.05; // apart from the fold of the wall
                flat.push_back({1.1 * x.x * out + 0.3 * x.z + 2e-4 * shake(random), 0.9 * x.y + 2e-4 * shake(random)});
                motion.push_back({1e-3 * shake(random), 1e-3 * shake(random)});
            }
            auto const moved = [&](double factor)
            {
                std::vector<voz::geometry::Vec2> there = flat;
                for (std::size_t i = 0; i < there.size(); ++i)
                    there[i] = there[i] + factor * motion[i];
                return strain.value(there);
            };
            double const slope = strain.slope(flat, motion), step = 1e-4;
            ASSERT_TRUE(std::isfinite(slope));
            EXPECT_NEAR((moved(step) - moved(-step)) / (2.0 * step), slope, 1e-6 * std::max(1.0, std::abs(slope)));
        }
    }
}

// --- On parts --------------------------------------------------------------------------------------------------------

// The axisymmetric reference has this strain at the pole for 100 N/mm.
TEST(AutoStrain, FindsTheRestraintOfTheCupFromTheStrainAtItsPole)
{
    Problem const cup = quarterCup({}, 4, Cells::Triangles, 20.0);
    int const pole = nodeAt(cup, 0.0, 0.0);
    Tuned const run = tuned(cup, target(pole, 0.0167695));
    ASSERT_EQ(run.solution.status, Status::Converged) << run.solution.message;
    EXPECT_TRUE(run.reached.met) << run.reached.reason;
    EXPECT_NEAR(run.reached.targetLevel, 100.0e3, 0.3e3);
    EXPECT_LE(run.reached.rounds, 6);
    EXPECT_LE(run.solution.newtonSteps, 30);
    EXPECT_NEAR(run.reached.targetStrain, 0.0167695, 1e-4);
    EXPECT_NEAR(majorAt(cup, run.solution, pole), run.reached.targetStrain, 1e-9);
    EXPECT_TRUE(std::is_sorted(run.told.begin(), run.told.end()));
    EXPECT_DOUBLE_EQ(run.told.back(), 100.0);
    EXPECT_THAT(run.log.back(), HasSubstr("auto strain: met after"));
    std::printf("             %.4f N/mm after %d rounds, %d Newton steps, strain %.7f\n",
                0.001 * run.reached.targetLevel, run.reached.rounds, run.solution.newtonSteps,
                run.reached.targetStrain);

    // and the answer is that of a plain solve at the level
    Problem plain = cup;
    for (auto & edge : plain.holders)
        edge.force = run.reached.targetLevel;
    Solution const again = voz::onestep::Solve(plain, {}, {});
    for (std::size_t i = 0; i < cup.nodes.size(); ++i)
        for (std::size_t k = 0; k < 2; ++k)
            EXPECT_NEAR(run.solution.flat[i][k], again.flat[i][k], 1e-8);
    EXPECT_NEAR(run.solution.punchForce, again.punchForce, 1e-5 * again.punchForce);
}

TEST(AutoStrain, AFreePartIsPlacedOverItselfAtTheEnd)
{
    Problem whole = problemOf(cup({}, 1, Extent::Whole, Cells::Triangles));
    restrainRim(whole, 20.0);
    Tuned const run = tuned(whole, target(nodeAt(whole, 0.0, 0.0), 0.01));
    EXPECT_TRUE(run.reached.met);
    Problem plain = whole;
    for (auto & edge : plain.holders)
        edge.force = run.reached.targetLevel;
    Solution const again = voz::onestep::Solve(plain, {}, {});
    for (std::size_t i = 0; i < whole.nodes.size(); ++i)
        for (std::size_t k = 0; k < 2; ++k)
            EXPECT_NEAR(run.solution.flat[i][k], again.flat[i][k], 1e-8);
}

// Levels chosen beforehand come back from the strains that they make; the strains are unequal.
TEST(AutoStrain, FindsTwoLevelsFromTwoStrains)
{
    Problem cup = quarterCup({}, 2, Cells::Triangles, 20.0);
    int const one = nodeAt(cup, 20.0, 0.0), other = nodeAt(cup, 0.0, 44.0);
    double const levels[2] = {60.0e3, 25.0e3};
    Problem known = cup;
    for (auto & edge : known.holders)
    {
        auto const & nodes = known.elements[at(edge.element)].nodes;
        auto const & a = known.nodes[at(nodes[at(edge.corner1)])];
        auto const & b = known.nodes[at(nodes[at(edge.corner2)])];
        auto const distance = [&](int node) {
            return std::hypot(0.5 * (a[0] + b[0]) - known.nodes[at(node)][0],
                              0.5 * (a[1] + b[1]) - known.nodes[at(node)][1]);
        };
        double const share = distance(other) / (distance(one) + distance(other));
        edge.force = levels[0] * share + levels[1] * (1.0 - share);
    }
    Solution const answer = voz::onestep::Solve(known, {}, {});
    Task const task{{one, majorAt(known, answer, one)}, {other, majorAt(known, answer, other)}, 1.0};
    ASSERT_GT(std::abs(task.target.strain - task.reference.strain), 0.01);
    Tuned const run = tuned(cup, task);
    EXPECT_TRUE(run.reached.met) << run.reached.reason;
    EXPECT_NEAR(run.reached.targetStrain, task.target.strain, 1e-4);
    EXPECT_NEAR(run.reached.referenceStrain, task.reference.strain, 1e-4);
    EXPECT_NEAR(run.reached.targetLevel, levels[0], 0.1 * levels[0]);
    EXPECT_NEAR(run.reached.referenceLevel, levels[1], 0.25 * levels[1]);
    std::printf("             %.2f and %.2f N/mm after %d rounds\n", 0.001 * run.reached.targetLevel,
                0.001 * run.reached.referenceLevel, run.reached.rounds);
}

TEST(AutoStrain, WithOneNodeItDoesNotMatterWhichOfTheTwo)
{
    Problem const cup = quarterCup({}, 1, Cells::Quads, 20.0);
    int const pole = nodeAt(cup, 0.0, 0.0);
    Tuned const asTarget = tuned(cup, {{pole, 0.01}, {}, 1.0}), asReference = tuned(cup, {{}, {pole, 0.01}, 1.0});
    EXPECT_TRUE(asTarget.reached.met);
    EXPECT_EQ(asTarget.reached.targetLevel, asReference.reached.referenceLevel);
    EXPECT_EQ(asReference.reached.targetLevel, 0.0);
    EXPECT_EQ(asTarget.solution.flat, asReference.solution.flat);
}

TEST(AutoStrain, WithNeitherNodeItIsAPlainSolve)
{
    Problem const cup = quarterCup({}, 1, Cells::Quads, 20.0);
    Tuned const run = tuned(cup, {});
    Solution const plain = voz::onestep::Solve(cup, {}, {});
    EXPECT_EQ(run.solution.flat, plain.flat);
    EXPECT_EQ(run.solution.strains.mid, plain.strains.mid);
    EXPECT_EQ(run.reached.rounds, 0);
}

TEST(AutoStrain, AStrainBelowThatWithoutRestraintLeavesNoRestraintAndSaysSo)
{
    Problem const cup = quarterCup({}, 2, Cells::Triangles, 20.0);
    int const pole = nodeAt(cup, 0.0, 0.0);
    Tuned const run = tuned(cup, target(pole, 0.0001));
    ASSERT_EQ(run.solution.status, Status::Converged);
    EXPECT_FALSE(run.reached.met);
    EXPECT_EQ(run.reached.targetLevel, 0.0);
    EXPECT_NEAR(run.reached.targetStrain, 0.00052, 1e-4);
    ASSERT_FALSE(run.solution.warnings.empty());
    EXPECT_THAT(run.solution.warnings.back(), HasSubstr("not met, the strain is above the wanted one"));
    EXPECT_EQ(run.log.back(), run.solution.warnings.back());
    Problem bare = cup;
    bare.holders.clear();
    Solution const plain = voz::onestep::Solve(bare, {}, {});
    for (std::size_t i = 0; i < cup.nodes.size(); ++i)
        EXPECT_NEAR(run.solution.flat[i][0], plain.flat[i][0], 1e-8);
}

TEST(AutoStrain, AStrainThatNoSheetBearsLeavesTheNearestAndSaysSo)
{
    Problem const cup = quarterCup({}, 1, Cells::Triangles, 20.0);
    Tuned const run = tuned(cup, target(nodeAt(cup, 0.0, 0.0), 2.0));
    ASSERT_TRUE(run.solution.status == Status::Converged || run.solution.status == Status::Accepted);
    EXPECT_FALSE(run.reached.met);
    EXPECT_GT(run.reached.targetStrain, 0.05);
    EXPECT_FALSE(run.reached.reason.empty());
    EXPECT_FALSE(run.solution.flat.empty());
    std::printf("             %s\n", run.log.back().c_str());
}

// Without holders all free sides but those in planes of symmetry; the first level is 0.05 of the yield force.
TEST(AutoStrain, WithoutHoldersTheWholeRimIsRestrainedFromATwentiethOfTheYieldForce)
{
    Problem bare = quarterCup({}, 1, Cells::Triangles, 0.0);
    int const pole = nodeAt(bare, 0.0, 0.0);
    Tuned const run = tuned(bare, target(pole, 0.0167));
    Problem given = bare;
    restrainRim(given, 0.0); // zero forces tell the edges, no level
    Tuned const same = tuned(given, target(pole, 0.0167));
    EXPECT_TRUE(run.reached.met);
    EXPECT_NEAR(run.reached.targetLevel, same.reached.targetLevel, 1.0e-3);
    auto const first = std::find_if(run.log.begin(), run.log.end(),
                                    [](std::string const & line) { return line.starts_with("auto strain, round 0"); });
    ASSERT_NE(first, run.log.end());
    double const guess = 0.05 * 166.4890e6 * 0.78e-3; // the curve's stress at 0.002
    EXPECT_NEAR(std::stod(first->substr(first->find("level") + 6)), guess, 1e-3 * guess);
}

TEST(AutoStrain, TheGivenForcesAreTheFirstLevelTimesTheFactor)
{
    Problem cup = quarterCup({}, 1, Cells::Triangles, 30.0);
    cup.holders.push_back(cup.holders.front()); // twice the same edge counts once
    int const pole = nodeAt(cup, 0.0, 0.0);
    for (double const factor : {1.0, 1.5})
    {
        Tuned const run = tuned(cup, target(pole, 0.0167, factor));
        EXPECT_TRUE(run.reached.met);
        EXPECT_NEAR(run.reached.targetLevel, 100.0e3, 5.0e3);
        auto const first =
            std::find_if(run.log.begin(), run.log.end(),
                         [](std::string const & line) { return line.starts_with("auto strain, round 0"); });
        ASSERT_NE(first, run.log.end());
        EXPECT_NEAR(std::stod(first->substr(first->find("level") + 6)), factor * 30.0e3, 1.0);
    }
    for (auto & edge : cup.holders)
        edge.force = 1.0e15; // a lock is no level
    EXPECT_TRUE(tuned(cup, target(pole, 0.0167)).reached.met);
    Tuned const wild = tuned(cup, target(pole, 0.0167, 1.0e6)); // held below what the sheet carries
    EXPECT_TRUE(wild.reached.met) << wild.solution.message;
}

TEST(AutoStrain, ASecondSheetTakesTheSameLevel)
{
    Problem two = quarterCup({}, 1, Cells::Triangles, 20.0);
    Problem const one = two;
    int const shift = static_cast<int>(one.nodes.size()), elements = static_cast<int>(one.elements.size());
    for (auto p : one.nodes)
        two.nodes.push_back({p[0] + 0.2, p[1], p[2]});
    for (auto element : one.elements)
    {
        for (int k = 0; k < 3; ++k)
            element.nodes[at(k)] += shift;
        two.elements.push_back(element);
    }
    for (auto edge : one.holders)
    {
        edge.element += elements;
        two.holders.push_back(edge);
    }
    for (auto constraint : one.constraints)
    {
        constraint.node += shift;
        two.constraints.push_back(constraint);
    }
    int const pole = nodeAt(two, 200.0, 0.0); // of the second sheet
    Tuned const run = tuned(two, target(pole, 0.0167));
    EXPECT_TRUE(run.reached.met);
    for (int i = 0; i < shift; ++i)
        EXPECT_NEAR(run.solution.flat[at(i)][0] + 0.2, run.solution.flat[at(i + shift)][0], 1e-8);
    Tuned const across = tuned(two, {{pole, 0.01}, {nodeAt(two, 0.0, 0.0), 0.01}, 1.0});
    EXPECT_EQ(across.solution.status, Status::Refused);
    EXPECT_THAT(across.solution.message, HasSubstr("do not hang together"));
}

TEST(AutoStrain, ANodeOfNoElementAndASheetWithoutAFreeEdgeAreRefused)
{
    Problem cup = quarterCup({}, 1, Cells::Triangles, 20.0);
    cup.nodes.push_back({0.0, 0.0, 0.1});
    Tuned const loose = tuned(cup, target(static_cast<int>(cup.nodes.size()) - 1, 0.01));
    EXPECT_EQ(loose.solution.status, Status::Refused);
    EXPECT_THAT(loose.solution.message, HasSubstr("belongs to no element with an area"));

    Problem shut = gridPart(3, 3, Cells::Quads, // all its sides lie in planes of symmetry
                            [](double u, double v) {
                                return Point3{30.0 * u, 30.0 * v, 0.0};
                            });
    for (int i = 0; i < static_cast<int>(shut.nodes.size()); ++i)
        for (std::size_t axis = 0; axis < 2; ++axis)
        {
            double const x = shut.nodes[at(i)][axis];
            if (x < 1e-9 || x > 0.030 - 1e-9)
                shut.constraints.push_back({i, axis == 0 ? 0.0 : 1.5707963267948966, 0.0});
        }
    Tuned const edgeless = tuned(shut, target(5, 0.01));
    EXPECT_EQ(edgeless.solution.status, Status::Refused);
    EXPECT_THAT(edgeless.solution.message, HasSubstr("the sheet of node 5, at which a strain is wanted, has no edge"));
}

// A given force that is next to nothing is as good as none: the search leaves it at once.
TEST(AutoStrain, ASearchThatBeginsNextToZeroGetsAway)
{
    Problem const cup = quarterCup({}, 1, Cells::Triangles, 1.0e-9);
    Tuned const run = tuned(cup, target(nodeAt(cup, 0.0, 0.0), 0.0167));
    EXPECT_TRUE(run.reached.met) << run.log.back();
    EXPECT_NEAR(run.reached.targetLevel, 100.0e3, 5.0e3);
}

} // namespace
