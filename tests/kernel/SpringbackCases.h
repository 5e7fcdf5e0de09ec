// SpringbackCases.h: formed strips and sheets with their flat blanks, and what to read off a sprung shape. Millimetres
// in the builders, metres in the problems.

#ifndef SPRINGBACKCASES_H
#define SPRINGBACKCASES_H

#include "material/MembraneLaw.h"
#include "springback/Springback.h"
#include "surfaces/Surfaces.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace springtest
{

using namespace voz::examples;
using voz::onestep::MaterialLaw;
using voz::springback::Problem;
using voz::springback::Solution;
using voz::springback::Status;

constexpr double kPi = 3.141592653589793;

inline MaterialLaw mildSteel()
{
    MaterialLaw law;
    law.thickness = 0.78e-3;
    law.rValue = 1.79;
    law.nValue = 0.2589;
    law.kValue = 565.32e6;
    law.yield = law.kValue * std::pow(0.007117, law.nValue);
    return law;
}

inline Problem problemOf(SurfaceMesh const & formed, SurfaceMesh const & flat)
{
    Problem problem;
    for (Point3 const & x : formed.nodes)
        problem.formed.push_back({0.001 * x[0], 0.001 * x[1], 0.001 * x[2]});
    for (Point3 const & x : flat.nodes)
        problem.flat.push_back({0.001 * x[0], 0.001 * x[1], 0.001 * x[2]});
    for (auto const & nodes : formed.elements)
        problem.elements.push_back({nodes, 0});
    problem.materials.push_back(mildSteel());
    return problem;
}

// The profile drawn along y, and unrolled facet by facet. The profile starts on x = 0 with the heading 0.
inline Problem strip(Profile const & profile, double width, int strips, Cells cells)
{
    SurfaceMesh const formed = extrude(profile, width, strips, cells);
    SurfaceMesh flat = formed;
    std::vector<Point2> const & points = profile.points();
    std::vector<double> along(points.size(), 0.0);
    for (std::size_t i = 1; i < points.size(); ++i)
        along[i] = along[i - 1] + std::hypot(points[i][0] - points[i - 1][0], points[i][1] - points[i - 1][1]);
    for (Point3 & x : flat.nodes)
        for (std::size_t i = 0; i < points.size(); ++i)
            if (std::hypot(x[0] - points[i][0], x[2] - points[i][1]) < 1.0e-9)
            {
                x = {along[i], x[1], 0.0};
                break;
            }
    return problemOf(formed, flat);
}

using Where = std::function<bool(std::array<double, 3> const &)>; // of the formed position, m

inline std::vector<int> nodesAt(Problem const & problem, Where const & where)
{
    std::vector<int> nodes;
    for (std::size_t i = 0; i < problem.formed.size(); ++i)
        if (where(problem.formed[i]))
            nodes.push_back(static_cast<int>(i));
    return nodes;
}

// Both sides of a strip on planes of symmetry, its first generator held.
inline void holdPlaneStrain(Problem & problem, double width)
{
    for (int const node : nodesAt(problem, [&](auto const & x)
                                  { return std::abs(x[1]) < 1e-9 || std::abs(x[1] - 0.001 * width) < 1e-9; }))
        problem.symmetry.push_back({node, {0.0, 1.0}});
    problem.clamped = nodesAt(problem, [](auto const & x) { return std::abs(x[0]) < 1e-9 && std::abs(x[2]) < 1e-9; });
}

// Heading of the profile's facets in the x-z plane along y = 0, radians from x; the shape's nodes on y = 0 by x of the
// flat.
inline std::vector<double> headings(Problem const & problem, std::vector<std::array<double, 3>> const & shape)
{
    std::vector<int> line = nodesAt(problem, [](auto const & x) { return std::abs(x[1]) < 1e-9; });
    std::sort(line.begin(), line.end(),
              [&](int a, int b)
              { return problem.flat[static_cast<std::size_t>(a)][0] < problem.flat[static_cast<std::size_t>(b)][0]; });
    std::vector<double> result;
    for (std::size_t i = 1; i < line.size(); ++i)
    {
        auto const & a = shape[static_cast<std::size_t>(line[i - 1])];
        auto const & b = shape[static_cast<std::size_t>(line[i])];
        result.push_back(std::atan2(b[2] - a[2], b[0] - a[0]));
    }
    return result;
}

// Moment per length of a strip bent to a mid radius in plane strain, h = ln(1 + z/R), by Simpson's rule in each half.
inline double moment(MaterialLaw const & law, double radius, bool linear = false)
{
    voz::material::HardeningCurve const curve(law, {});
    double const k = (1.0 + law.rValue) / std::sqrt(1.0 + 2.0 * law.rValue);
    int const n = 20000;
    double const step = 0.5 * law.thickness / n;
    double sum = 0.0;
    for (int i = -n; i <= n; ++i)
    {
        double const z = i * step;
        double const h = linear ? z / radius : std::log1p(z / radius);
        double const weight = std::abs(i) == n ? 1.0 : (i % 2 == 0 ? 2.0 : 4.0);
        sum += weight * k * curve.stress(k * std::abs(h)) * std::copysign(1.0, h) * z;
    }
    return sum * step / 3.0;
}

// R over the radius after springback.
inline double springRatio(MaterialLaw const & law, double radius)
{
    double const t = law.thickness;
    return 1.0 -
           12.0 * (1.0 - law.poisson * law.poisson) * moment(law, radius) * radius / (law.youngsModulus * t * t * t);
}

// A sector of a cylinder in plane strain, convex upwards, its first generator clamped at the origin.
inline Problem sector(double radius, double turn, int rows, int strips, Cells cells)
{
    double const width = 2.0 * radius * turn / rows * strips;
    Problem problem = strip(Profile({0.0, 0.0}, 0.0).arc(radius, -turn, rows), width, strips, cells);
    holdPlaneStrain(problem, width);
    return problem;
}

// Turn of the free end of a sector against the clamped one.
inline double endRotation(Problem const & problem, Solution const & solution)
{
    auto const before = headings(problem, problem.formed), after = headings(problem, solution.shape);
    double const facets = static_cast<double>(before.size());
    double const between =
        (after.back() - after.front()) - (before.back() - before.front()); // middles of the end facets
    return between * facets / (facets - 1.0);
}

struct Tip
{
    double move, error; // m
};

// The tip of a sector against that of the closed form: length kept, radius of the sprung strip.
inline Tip tipOf(Problem const & problem, Solution const & solution, double radius, double turn)
{
    double const formed = 0.001 * radius, sprung = formed / springRatio(problem.materials[0], formed);
    double const angle = formed * turn / sprung;
    double const x1 = sprung * std::sin(angle), z1 = sprung * (std::cos(angle) - 1.0);
    double const x0 = formed * std::sin(turn), z0 = formed * (std::cos(turn) - 1.0);
    auto const tip = std::max_element(problem.flat.begin(), problem.flat.end()) - problem.flat.begin();
    auto const & x = solution.shape[static_cast<std::size_t>(tip)];
    return {std::hypot(x1 - x0, z1 - z0), std::hypot(x[0] - x1, x[2] - z1)};
}

constexpr double kVeeRadius = 10.0;

// Two flat legs of 30 mm in even rows and an arc of 90 degrees between them, in plane strain. shake: inner nodes are
// moved by up to this share of a row, on the legs both ways, on the arc along its generators.
inline Problem vee(int arcRows, int legRows, Cells cells, double shake = 0.0)
{
    constexpr double kLeg = 30.0, kWidth = 6.0;
    constexpr int kStrips = 3;
    Problem problem =
        strip(Profile({0.0, 0.0}, 0.0).line(kLeg, legRows).arc(kVeeRadius, -0.5 * kPi, arcRows).line(kLeg, legRows),
              kWidth, kStrips, cells);
    holdPlaneStrain(problem, kWidth);
    double const leg = 0.001 * kLeg, row = leg / legRows, cell = 0.001 * kWidth / kStrips;
    double const length = std::max_element(problem.flat.begin(), problem.flat.end())->front();
    constexpr double kOnLine = 1.0e-9;
    for (std::size_t i = 0; i < problem.flat.size(); ++i)
    {
        auto & flat = problem.flat[i];
        auto & formed = problem.formed[i];
        bool const first = flat[0]<leg - kOnLine, second = flat[0]> length - leg + kOnLine;
        bool const ends = flat[0] < kOnLine || flat[0] > length - kOnLine;
        bool const sides = flat[1] < kOnLine || flat[1] > 0.001 * kWidth - kOnLine;
        if (ends || sides)
            continue;
        double const along = first || second ? shake * row * std::sin(5.0 * static_cast<double>(i)) : 0.0;
        double const across = shake * cell * std::cos(7.0 * static_cast<double>(i));
        flat[0] += along;
        flat[1] += across;
        formed[1] += across;
        formed[second ? 2 : 0] += second ? -along : along;
    }
    return problem;
}

inline double veeOpening() // closed form, radians
{
    return 0.5 * kPi * (1.0 - springRatio(mildSteel(), 0.001 * kVeeRadius));
}

// By how much the end facets open, radians.
inline double opening(Problem const & problem, Solution const & solution)
{
    auto const before = headings(problem, problem.formed), after = headings(problem, solution.shape);
    return after.back() - before.back() - after.front() + before.front();
}

// A sheet of 60 x 40 mm that was stretched by log strains along x and y; its inner nodes off their places.
inline Problem stretched(double e1, double e2, Cells cells)
{
    SurfaceMesh formed = extrude(Profile({0.0, 0.0}, 0.0).line(60.0, 6), 40.0, 4, cells);
    for (std::size_t i = 0; i < formed.nodes.size(); ++i)
    {
        Point3 & x = formed.nodes[i];
        if (x[0] > 1.0 && x[0] < 59.0 && x[1] > 1.0 && x[1] < 39.0)
        {
            x[0] += 2.0 * std::sin(5.0 * static_cast<double>(i));
            x[1] += 2.0 * std::cos(7.0 * static_cast<double>(i));
        }
    }
    SurfaceMesh flat = formed;
    for (Point3 & x : flat.nodes)
        x = {x[0] * std::exp(-e1), x[1] * std::exp(-e2), 0.0};
    return problemOf(formed, flat);
}

// Largest error of a distance between two nodes of a stretched sheet, over the contraction of 60 mm.
inline double contractionError(Problem const & problem, Solution const & solution, double e1, double e2)
{
    MaterialLaw const law = mildSteel();
    auto const stress = voz::material::MembraneLaw(law, {}).stress(e1, e2, 0.0);
    double const along = -(stress.s11 - law.poisson * stress.s22) / law.youngsModulus;
    double const across = -(stress.s22 - law.poisson * stress.s11) / law.youngsModulus;
    double worst = 0.0;
    for (std::size_t i = 0; i < problem.formed.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
        {
            double const x = problem.formed[i][0] - problem.formed[j][0];
            double const y = problem.formed[i][1] - problem.formed[j][1];
            double const after =
                std::hypot(solution.shape[i][0] - solution.shape[j][0], solution.shape[i][1] - solution.shape[j][1]);
            worst = std::max(worst, std::abs(after - std::hypot((1.0 + along) * x, (1.0 + across) * y)));
        }
    return worst / ((std::abs(along) + std::abs(across)) * 0.06);
}

inline double deflection(Solution const & solution) // of a sheet that lies in a plane z, m
{
    double worst = 0.0;
    for (auto const & x : solution.shape)
        worst = std::max(worst, std::abs(x[2] - solution.shape[0][2]));
    return worst;
}

// A bent strip of which only flat elements stay.
inline Problem unstressed()
{
    Problem problem = strip(Profile({0.0, 0.0}, 0.0).line(20.0, 5).arc(10.0, -0.6, 12), 2.0, 2, Cells::Quads);
    for (auto const & element : problem.elements)
        problem.trimmed.push_back(problem.formed[static_cast<std::size_t>(element.nodes[0])][0] > 0.010 ? 1 : 0);
    return problem;
}

} // namespace springtest

#endif
