// SpringbackInputTest.cpp: stretched sheets, meshes that nobody formed, and bad input.

#include "SpringbackFixture.h"

#include <limits>

using namespace springtest;

namespace
{

void expectRefused(Problem const & problem, std::string const & text)
{
    Solution const solution = voz::springback::Solve(problem, {}, {});
    EXPECT_EQ(solution.status, Status::Refused) << text;
    EXPECT_NE(solution.message.find(text), std::string::npos) << solution.message;
    EXPECT_TRUE(solution.shape.empty());
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(SpringbackSheet, AStretchedSheetContractsByItsStressAndWidensByPoissonsRatio)
{
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
        for (auto const & [e1, e2] : {std::array{0.1, -0.05}, std::array{0.05, 0.03}})
        {
            Problem const problem = stretched(e1, e2, cells);
            Solution const solution = solve(problem);
            EXPECT_LT(contractionError(problem, solution, e1, e2), 1e-7);
            EXPECT_LT(deflection(solution), 1e-15);
        }
}

TEST(SpringbackSheet, MeshesOfEqualLengthsAreNoForming)
{
    Problem problem = stretched(0.1, -0.05, Cells::Triangles);
    for (auto & x : problem.formed)
        x[2] = 0.01 * std::sin(40.0 * x[0]);
    Problem wrongUnit = problem; // displacements a thousand times too small
    for (std::size_t i = 0; i < problem.flat.size(); ++i)
        for (std::size_t k = 0; k < 3; ++k)
            wrongUnit.flat[i][k] = problem.formed[i][k] + 0.001 * (problem.flat[i][k] - problem.formed[i][k]);
    Solution const solution = voz::springback::Solve(wrongUnit, {}, {});
    EXPECT_EQ(solution.status, Status::NoForming);
    EXPECT_EQ(solution.shape, wrongUnit.formed);
    EXPECT_NE(solution.message.find("nothing was formed"), std::string::npos);

    // a bend keeps lengths and is a forming all the same
    Problem const bend = strip(Profile({0.0, 0.0}, 0.0).arc(10.0, -0.6, 12), 2.0, 2, Cells::Triangles);
    EXPECT_EQ(voz::springback::Solve(bend, {}, {}).status, Status::Converged);
}

TEST(SpringbackSheet, WithoutStressesNothingMoves)
{
    Solution const solution = voz::springback::Solve(unstressed(), {}, {});
    EXPECT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_LT(solution.greatestMove, 1e-12);
}

TEST(SpringbackInput, SaysWhatIsWrongAndWhere)
{
    Problem const good = stretched(0.1, -0.05, Cells::Quads);
    expectRefused({}, "no elements");
    Problem bad = good;
    bad.formed[7][2] = kNaN;
    expectRefused(bad, "node 7");
    bad = good;
    bad.flat[8][0] = kNaN;
    expectRefused(bad, "node 8 of the flat mesh");
    bad = good;
    bad.flat.pop_back();
    expectRefused(bad, "the flat mesh has");
    bad = good;
    bad.elements[3].nodes[1] = 4711;
    expectRefused(bad, "element 3");
    bad = good;
    bad.materials[0].thickness = kNaN;
    expectRefused(bad, "thickness");
    bad = good;
    bad.materials[0].poisson = 0.5;
    expectRefused(bad, "Poisson's ratio");
    bad = good;
    bad.trimmed.assign(2, 0);
    expectRefused(bad, "marks of trimming");
    bad = good;
    bad.trimmed.assign(bad.elements.size(), 1);
    expectRefused(bad, "trimmed away");
    bad = good;
    bad.symmetry.push_back({-3, {1.0, 0.0}});
    expectRefused(bad, "plane of symmetry");
    bad = good;
    bad.flat[12] = {bad.flat[12][0] + 0.02, bad.flat[12][1], 0.0};
    expectRefused(bad, "folded over");
    bad = good;
    bad.flat.assign(bad.flat.size(), {0.0, 0.0, 0.0});
    expectRefused(bad, "folded over");
    bad = good;
    bad.formed.assign(bad.formed.size(), {0.0, 0.0, 0.0});
    expectRefused(bad, "no element of the part has an area");
    bad = good;
    bad.elements.push_back(bad.elements[0]);
    bad.elements.push_back(bad.elements[0]);
    expectRefused(bad, "no single sheet");
    bad = good;
    for (std::size_t i = 0; i < bad.flat.size(); ++i)
    {
        bad.formed[i][2] = 0.02 * std::sin(60.0 * bad.formed[i][0]);
        bad.flat[i][2] = 0.5 * bad.formed[i][2];
    }
    expectRefused(bad, "neither mesh is flat");
}

TEST(SpringbackInput, ElementsWithoutAreaAndNodesWithoutElementsAreCarriedAlong)
{
    Problem problem = stretched(0.1, -0.05, Cells::Triangles);
    Solution const plain = solve(problem);
    auto const count = problem.formed.size();
    problem.formed.push_back({0.07, 0.02, 0.0}); // beside the sheet, in no element
    problem.flat.push_back({0.07, 0.02, 0.0});
    problem.elements.push_back({{0, 1, 1, -1}, 0});
    problem.elements.push_back({{0, 1, static_cast<int>(count), -1}, 0}); // a sliver is none: give it no area
    problem.elements.back().nodes[2] = 0;
    Solution const solution = solve(problem);
    ASSERT_EQ(solution.warnings.size(), 1U);
    EXPECT_NE(solution.warnings[0].find("2 elements without area"), std::string::npos);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_NEAR(solution.shape[i][k], plain.shape[i][k], 1e-12);
    EXPECT_TRUE(std::isfinite(solution.shape[count][0]));
}

// Whatever a mesh looks like, the answer is a status and finite numbers.
TEST(SpringbackInput, RandomDamageEndsInAStatus)
{
    unsigned state = 12345;
    auto const dice = [&](unsigned sides) { return (state = state * 1664525U + 1013904223U) / 65536U % sides; };
    Problem const good = strip(Profile({0.0, 0.0}, 0.0).line(10.0, 3).arc(10.0, -0.6, 6), 4.0, 2, Cells::Quads);
    for (int repeat = 0; repeat < 25; ++repeat)
    {
        Problem bad = good;
        for (unsigned k = dice(3) + 1; k-- > 0;)
        {
            auto const node = dice(static_cast<unsigned>(bad.formed.size()));
            auto const element = dice(static_cast<unsigned>(bad.elements.size()));
            switch (dice(5))
            {
            case 0:
                bad.formed[node][dice(3)] *= 1.0 + dice(5);
                break;
            case 1:
                bad.flat[node] = bad.flat[dice(static_cast<unsigned>(bad.flat.size()))];
                break;
            case 2:
                bad.elements[element].nodes[dice(3)] = static_cast<int>(node);
                break;
            case 3:
                bad.elements.erase(bad.elements.begin() + element);
                break;
            default:
                bad.fixed.push_back(static_cast<int>(node));
            }
        }
        Solution const solution = voz::springback::Solve(bad, {}, {});
        EXPECT_TRUE(solution.status == Status::Converged || !solution.message.empty() || !solution.warnings.empty());
        for (auto const & x : solution.shape)
            EXPECT_TRUE(std::isfinite(x[0] + x[1] + x[2]));
    }
}
