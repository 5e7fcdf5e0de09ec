// OneStepRefusalsTest.cpp: problems that are refused, each with its culprit.

#include "OneStepMeshes.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>

using namespace onesteptest;
using namespace voz::onestep;

TEST(OneStepRefusals, NameTheCulprit)
{
    struct
    {
        char const * says;
        std::function<void(Problem &)> spoil;
    } const cases[] = {
        {"node 7: a coordinate", [](Problem & p) { p.nodes[7][1] = std::nan(""); }},
        {"node 3: a coordinate", [](Problem & p) { p.nodes[3][2] = std::numeric_limits<double>::infinity(); }},
        {"element 5: node 99999", [](Problem & p) { p.elements[5].nodes[2] = 99999; }},
        {"element 5: node -2", [](Problem & p) { p.elements[5].nodes[3] = -2; }},
        {"element 2: material 1", [](Problem & p) { p.elements[2].material = 1; }},
        {"material 0: thickness", [](Problem & p) { p.materials[0].thickness = 0.0; }},
        {"material 0: r value", [](Problem & p) { p.materials[0].rValue = -1.0; }},
        {"material 0: strength coefficient", [](Problem & p) { p.materials[0].kValue = std::nan(""); }},
        {"material 0: strain 0.1 of point 1",
         [](Problem & p) {
             p.materials[0].table = {{0.1, 1e8}, {0.1, 2e8}};
         }},
        {"needs at least two points",
         [](Problem & p) {
             p.materials[0].table = {{0.1, 1e8}};
         }},
        {"holder edge 0: element 5000", [](Problem & p) { p.holders[0].element = 5000; }},
        {"holder edge 0: positions 1 and 1", [](Problem & p) { p.holders[0].corner1 = p.holders[0].corner2 = 1; }},
        {"holder edge 0 on element", [](Problem & p) { p.holders[0].force = std::nan(""); }},
        {"bead segment 0: element -1",
         [](Problem & p) {
             p.beads.push_back({-1, 1.0, {0, 0, 1, 0}});
         }},
        {"pad pressures: 3 values", [](Problem & p) { p.padShear.assign(3, 0.0); }},
        {"constraint 0 on node 0", [](Problem & p) { p.constraints[0].angle = std::nan(""); }},
        {"no elements", [](Problem & p) { p.elements.clear(); }},
        {"tool friction", [](Problem & p) { p.toolFriction = -0.1; }},
    };
    for (auto const & c : cases)
    {
        Problem problem = smallCup();
        ASSERT_FALSE(problem.holders.empty());
        c.spoil(problem);
        Solution const solution = Solve(problem, {}, {});
        EXPECT_EQ(solution.status, Status::Refused) << c.says;
        EXPECT_NE(solution.message.find(c.says), std::string::npos) << solution.message << " should say " << c.says;
        EXPECT_TRUE(solution.flat.empty());
    }
}

TEST(OneStepRefusals, ReadTheSameUnderEveryLocale)
{
    struct Grouped : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    Problem problem = smallCup();
    problem.holders[0].element = 50000;
    std::locale const before = std::locale::global(std::locale(std::locale::classic(), new Grouped));
    std::string const element = Solve(problem, {}, {}).message;
    problem = smallCup();
    problem.toolFriction = -0.25;
    std::string const friction = Solve(problem, {}, {}).message;
    std::locale::global(before);
    EXPECT_NE(element.find("element 50000"), std::string::npos) << element;
    EXPECT_NE(friction.find("-0.25"), std::string::npos) << friction;
}

TEST(OneStepRefusals, AClosedSurfaceCannotBeLaidFlat)
{
    Problem problem;
    problem.materials.push_back(mildSteel());
    problem.nodes = {{0, 0, 0}, {0.01, 0, 0}, {0, 0.01, 0}, {0, 0, 0.01}};
    for (std::array<int, 4> const nodes :
         {std::array<int, 4>{0, 2, 1, -1}, {0, 1, 3, -1}, {1, 2, 3, -1}, {0, 3, 2, -1}})
        problem.elements.push_back({nodes, 0});
    Solution const solution = Solve(problem, {}, {});
    EXPECT_EQ(solution.status, Status::Refused);
    EXPECT_NE(solution.message.find("closed"), std::string::npos) << solution.message;
}

TEST(OneStepRefusals, ThreeElementsOnASideAreNoSheet)
{
    Problem problem = smallCup();
    problem.nodes.push_back({0.0, 0.0, 0.05});
    auto const n = problem.elements[20].nodes;
    problem.elements.push_back({{n[0], n[1], static_cast<int>(problem.nodes.size()) - 1, -1}, 0});
    Solution const solution = Solve(problem, {}, {});
    EXPECT_EQ(solution.status, Status::Refused);
    EXPECT_NE(solution.message.find("more than two elements"), std::string::npos) << solution.message;
}
