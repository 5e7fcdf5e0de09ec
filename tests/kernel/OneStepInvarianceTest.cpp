// OneStepInvarianceTest.cpp: what must not matter to a solve: where the part lies, which way it is turned, its mirror
// image, the numbers of its nodes and elements, the units of length and of force.
//
// Each law is tried on every sample: with planes of symmetry, free, with friction, beads, pads and oblique constraints.

#include "OneStepFixture.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace
{

using namespace onesteptest;

struct Sample
{
    char const * name;
    Problem problem;
    double width; // m, of the part
};

bool everywhere(Point3 const &)
{
    return true;
}

Sample quarterOfSquareCup()
{
    SquareCup shape = squareCup40();
    for (int * count :
         {&shape.rowsBottom, &shape.rowsArc, &shape.rowsWall, &shape.rowsFlange, &shape.cellsSide, &shape.cellsCorner})
        *count = (*count + 1) / 2;
    SurfaceMesh const mesh = squareCup(shape, Extent::Quarter, Cells::Triangles);
    Problem problem = problemOf(mesh, mildSteel());
    quarterSymmetry(problem, mesh);
    restrain(problem, mesh, 9.4, everywhere);
    problem.toolFriction = 0.144;
    return {"quarter of a square cup", problem, 0.15};
}

Sample wholeCup()
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Whole, Cells::Quads);
    Problem problem = problemOf(mesh, mildSteel());
    restrain(problem, mesh, 20.0, everywhere);
    return {"whole cup", problem, 0.12};
}

// Restraint, beads and pads on one side alone, so that nothing is symmetric.
Sample hatWithActions()
{
    SurfaceMesh const mesh = wholeHat({}, 60.0, 4, 8, Cells::Quads);
    Problem problem = problemOf(mesh, mildSteel());
    double const end = mesh.nodes.back()[0];
    restrain(problem, mesh, 60.0, [end](Point3 const & p) { return std::fabs(p[0]) == end; });
    int const elements = static_cast<int>(problem.elements.size());
    problem.padShear.assign(problem.elements.size(), 0.0);
    for (int e = 0; e < elements; ++e)
        if (e < 8)
            problem.beads.push_back({e, 3.0e4, {0.0, -1.0, 0.0, 1.0}});
        else if (e >= elements - 16)
            problem.padShear[static_cast<std::size_t>(e)] = 1.0e6;
    int const middle = static_cast<int>(problem.nodes.size()) / 2;
    problem.constraints.push_back({middle, 0.4, 0.0}); // two oblique directions of one node and one of another
    problem.constraints.push_back({middle, 1.9, 0.0});
    problem.constraints.push_back({5, 1.1, 0.0});
    return {"hat with a bead, a pad and oblique constraints", problem, 0.11};
}

std::vector<Sample> samples()
{
    return {quarterOfSquareCup(), wholeCup(), hatWithActions()};
}

Solution tightly(Problem const & problem)
{
    Settings settings;
    settings.tolerance = 1.0e-11; // so that what is compared is the answer and not where the iteration stopped
    Solution const solution = voz::onestep::Solve(problem, settings, {});
    EXPECT_EQ(solution.status, Status::Converged) << solution.message;
    return solution;
}

using Map = std::function<std::array<double, 2>(std::array<double, 2> const &)>;

// Largest distance, over the part's width, of the second flat from the first one moved by `map`; node i of the first is
// node `place[i]` of the second.
double distance(Solution const & first, Solution const & second, Map const & map, std::vector<int> const & place,
                double width)
{
    double worst = 0.0;
    for (std::size_t i = 0; i < first.flat.size(); ++i)
    {
        std::array<double, 2> const p = map(first.flat[i]), q = second.flat[static_cast<std::size_t>(place[i])];
        worst = std::max(worst, std::hypot(p[0] - q[0], p[1] - q[1]));
    }
    return worst / width;
}

std::vector<int> identity(std::size_t count)
{
    std::vector<int> place(count);
    std::iota(place.begin(), place.end(), 0);
    return place;
}

// Largest change of a principal mid strain; element e of the first is element `where[e]` of the second.
double strainChange(Problem const & problem, Solution const & first, Solution const & second,
                    std::vector<int> const & where)
{
    double worst = 0.0;
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
        for (int point = 0; point < points(problem, e); ++point)
        {
            Strain const a = strainAt(first, e, point, first.strains.mid);
            Strain const b = strainAt(second, static_cast<std::size_t>(where[e]), point, second.strains.mid);
            worst = std::max({worst, std::fabs(a.major - b.major), std::fabs(a.minor - b.minor)});
        }
    return worst;
}

TEST(OneStepInvariance, ATurnAboutTheStampingAxisTurnsTheBlank)
{
    for (Sample const & sample : samples())
        for (double const angle : {0.3, 1.9, -2.6})
        {
            double const c = std::cos(angle), s = std::sin(angle);
            Problem turned = sample.problem;
            for (auto & p : turned.nodes)
                p = {c * p[0] - s * p[1], s * p[0] + c * p[1], p[2]};
            for (auto & constraint : turned.constraints)
                constraint.angle += angle;
            Solution const before = tightly(sample.problem), after = tightly(turned);
            auto const map = [c, s](std::array<double, 2> const & x) {
                return std::array<double, 2>{c * x[0] - s * x[1], s * x[0] + c * x[1]};
            };
            EXPECT_LT(distance(before, after, map, identity(before.flat.size()), sample.width), 1e-8) << sample.name;
            EXPECT_LT(strainChange(sample.problem, before, after, identity(sample.problem.elements.size())), 1e-8)
                << sample.name;
            EXPECT_NEAR(after.punchForce / before.punchForce, 1.0, 1e-8) << sample.name;
        }
}

TEST(OneStepInvariance, AShiftInSpaceShiftsTheBlank)
{
    for (Sample const & sample : samples())
    {
        Problem shifted = sample.problem;
        for (auto & p : shifted.nodes)
            p = {p[0] + 0.7, p[1] - 1.3, p[2] + 2.1};
        Solution const before = tightly(sample.problem), after = tightly(shifted);
        auto const map = [](std::array<double, 2> const & x) { return std::array<double, 2>{x[0] + 0.7, x[1] - 1.3}; };
        EXPECT_LT(distance(before, after, map, identity(before.flat.size()), sample.width), 1e-8) << sample.name;
        EXPECT_LT(strainChange(sample.problem, before, after, identity(sample.problem.elements.size())), 1e-8)
            << sample.name;
    }
}

// The elements keep their corners, so their windings turn over: top becomes bottom.
TEST(OneStepInvariance, TheMirrorImageHasTheMirroredBlank)
{
    for (Sample const & sample : samples())
    {
        Problem mirrored = sample.problem;
        for (auto & p : mirrored.nodes)
            p[0] = -p[0];
        for (auto & constraint : mirrored.constraints)
            constraint.angle = kPi - constraint.angle;
        Solution const before = tightly(sample.problem), after = tightly(mirrored);
        auto const map = [](std::array<double, 2> const & x) { return std::array<double, 2>{-x[0], x[1]}; };
        EXPECT_LT(distance(before, after, map, identity(before.flat.size()), sample.width), 1e-8) << sample.name;
        EXPECT_LT(strainChange(sample.problem, before, after, identity(sample.problem.elements.size())), 1e-8)
            << sample.name;
        for (std::size_t e = 0; e < sample.problem.elements.size(); ++e)
            EXPECT_NEAR(strainAt(before, e, 0, before.strains.top).major,
                        strainAt(after, e, 0, after.strains.bottom).major, 1e-7)
                << sample.name << ", element " << e;
    }
}

TEST(OneStepInvariance, NumbersOfNodesAndElementsDoNotMatter)
{
    std::mt19937 random(11);
    for (Sample const & sample : samples())
    {
        std::vector<int> place = identity(sample.problem.nodes.size());
        std::vector<int> where = identity(sample.problem.elements.size());
        std::shuffle(place.begin(), place.end(), random);
        std::shuffle(where.begin(), where.end(), random);
        Problem other = sample.problem;
        for (std::size_t i = 0; i < place.size(); ++i)
            other.nodes[static_cast<std::size_t>(place[i])] = sample.problem.nodes[i];
        for (std::size_t e = 0; e < where.size(); ++e)
        {
            auto & element = other.elements[static_cast<std::size_t>(where[e])];
            element = sample.problem.elements[e];
            for (int & node : element.nodes)
                node = node < 0 ? node : place[static_cast<std::size_t>(node)];
            if (!sample.problem.padShear.empty())
                other.padShear[static_cast<std::size_t>(where[e])] = sample.problem.padShear[e];
        }
        for (auto & holder : other.holders)
            holder.element = where[static_cast<std::size_t>(holder.element)];
        for (auto & bead : other.beads)
            bead.element = where[static_cast<std::size_t>(bead.element)];
        for (auto & constraint : other.constraints)
            constraint.node = place[static_cast<std::size_t>(constraint.node)];
        std::reverse(other.holders.begin(), other.holders.end());
        Solution const before = tightly(sample.problem), after = tightly(other);
        auto const map = [](std::array<double, 2> const & x) { return x; };
        EXPECT_LT(distance(before, after, map, place, sample.width), 1e-8) << sample.name;
        EXPECT_LT(strainChange(sample.problem, before, after, where), 1e-8) << sample.name;
    }
}

// The first corner of an element is where its frame begins, and no more.
TEST(OneStepInvariance, TheFirstCornerOfAnElementDoesNotMatter)
{
    Sample const sample = quarterOfSquareCup();
    Problem other = sample.problem;
    other.holders.clear();
    for (auto & element : other.elements)
        std::rotate(element.nodes.begin(), element.nodes.begin() + 1, element.nodes.begin() + 3);
    for (auto holder : sample.problem.holders)
    {
        holder.corner1 = (holder.corner1 + 2) % 3;
        holder.corner2 = (holder.corner2 + 2) % 3;
        other.holders.push_back(holder);
    }
    Solution const before = tightly(sample.problem), after = tightly(other);
    auto const map = [](std::array<double, 2> const & x) { return x; };
    EXPECT_LT(distance(before, after, map, identity(before.flat.size()), sample.width), 1e-8);
}

// Millimetres, newtons, megapascals; and the same part ten times as large under the same stresses.
TEST(OneStepInvariance, UnitsOfLengthAndForceDoNotMatter)
{
    struct Units
    {
        double length, stress;
    };
    for (Sample const & sample : samples())
        for (Units const & unit : {Units{1000.0, 1e-6}, Units{10.0, 1.0}})
        {
            Problem scaled = sample.problem;
            for (auto & p : scaled.nodes)
                for (double & x : p)
                    x *= unit.length;
            for (auto & holder : scaled.holders)
                holder.force *= unit.length * unit.stress;
            for (auto & bead : scaled.beads)
                bead.force *= unit.length * unit.stress;
            for (double & shear : scaled.padShear)
                shear *= unit.stress;
            MaterialLaw & law = scaled.materials.front();
            law.thickness *= unit.length;
            for (double * stress : {&law.kValue, &law.yield, &law.youngsModulus})
                *stress *= unit.stress;
            Solution const before = tightly(sample.problem), after = tightly(scaled);
            EXPECT_LT(strainChange(sample.problem, before, after, identity(sample.problem.elements.size())), 1e-8)
                << sample.name << ", length by " << unit.length;
        }
}

} // namespace
