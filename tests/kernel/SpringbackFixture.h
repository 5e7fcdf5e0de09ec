// SpringbackFixture.h: formed strips with their flat blanks, and what to read off a sprung shape. Millimetres in the
// builders, metres in the problems.

#ifndef SPRINGBACKFIXTURE_H
#define SPRINGBACKFIXTURE_H

#include "material/MembraneLaw.h"
#include "springback/Springback.h"
#include "surfaces/Surfaces.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
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

inline Solution solve(Problem const & problem, voz::springback::Settings const & settings = {})
{
    Solution solution = voz::springback::Solve(problem, settings, {});
    EXPECT_EQ(solution.status, Status::Converged) << solution.message;
    EXPECT_LT(solution.imbalance, 1.0e-10);
    EXPECT_LE(solution.residual, settings.tolerance);
    return solution;
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

template <class... Values>
void tell(char const * format, Values... values)
{
    std::printf("             ");
    std::printf(format, values...);
    std::printf("\n");
}

} // namespace springtest

#endif
