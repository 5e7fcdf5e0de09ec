// OneStepProblems.h: problems of the one-step solver over the example surfaces, and what is read off their solutions.
// Lengths of the surfaces are mm, of the problems metres. Tests, benchmarks and the tables of the documents share it.

#ifndef ONESTEPPROBLEMS_H
#define ONESTEPPROBLEMS_H

#include "onestep/OneStep.h"
#include "surfaces/Surfaces.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace onesteptest
{

using namespace voz::examples;
using voz::onestep::MaterialLaw;
using voz::onestep::Problem;
using voz::onestep::Settings;
using voz::onestep::Solution;
using voz::onestep::Status;

constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = kPi / 2.0;
constexpr double kBothDirections = 1001.0;

// K (e0 + e)^n given through its yield stress, MPa.
inline MaterialLaw swift(double k, double e0, double n, double r, double thickness)
{
    MaterialLaw law;
    law.thickness = 0.001 * thickness;
    law.kValue = 1.0e6 * k;
    law.nValue = n;
    law.rValue = r;
    law.yield = law.kValue * std::pow(e0, n);
    return law;
}

inline MaterialLaw mildSteel()
{
    return swift(565.32, 0.007117, 0.2589, 1.79, 0.78);
}

inline Problem problemOf(SurfaceMesh const & mesh, MaterialLaw const & law)
{
    Problem problem;
    for (Point3 const & p : mesh.nodes)
        problem.nodes.push_back({0.001 * p[0], 0.001 * p[1], 0.001 * p[2]});
    for (auto const & nodes : mesh.elements)
        problem.elements.push_back({nodes, 0});
    problem.materials.push_back(law);
    return problem;
}

// The sides that belong to one element alone: element, its two corners.
struct FreeSide
{
    int element;
    int corner1, corner2;
    int node1, node2;
};

inline std::vector<FreeSide> freeSides(SurfaceMesh const & mesh)
{
    std::map<std::pair<int, int>, FreeSide> sides;
    for (std::size_t e = 0; e < mesh.elements.size(); ++e)
    {
        auto const & nodes = mesh.elements[e];
        int const corners = nodes[3] < 0 ? 3 : 4;
        for (int i = 0; i < corners; ++i)
        {
            int const j = (i + 1) % corners;
            int const a = nodes[static_cast<std::size_t>(i)];
            int const b = nodes[static_cast<std::size_t>(j)];
            if (sides.erase({b, a}) == 0)
                sides[{a, b}] = {static_cast<int>(e), i, j, a, b};
        }
    }
    std::vector<FreeSide> free;
    for (auto const & [key, side] : sides)
        free.push_back(side);
    return free;
}

using Where = std::function<bool(Point3 const &)>;

inline void hold(Problem & problem, SurfaceMesh const & mesh, Where const & where, double angle)
{
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
        if (where(mesh.nodes[i]))
            problem.constraints.push_back({static_cast<int>(i), angle, 0.0});
}

inline bool onPlaneX(Point3 const & p)
{
    return p[0] == 0.0;
}
inline bool onPlaneY(Point3 const & p)
{
    return p[1] == 0.0;
}

inline void quarterSymmetry(Problem & problem, SurfaceMesh const & mesh)
{
    hold(problem, mesh, onPlaneX, 0.0);
    hold(problem, mesh, onPlaneY, kHalfPi);
}

// Restraint along the free sides both of whose nodes are at `where`; N/mm.
inline void restrain(Problem & problem, SurfaceMesh const & mesh, double force, Where const & where)
{
    for (FreeSide const & side : freeSides(mesh))
        if (where(mesh.nodes[static_cast<std::size_t>(side.node1)]) &&
            where(mesh.nodes[static_cast<std::size_t>(side.node2)]))
            problem.holders.push_back({side.element, side.corner1, side.corner2, 1000.0 * force});
}

// --- Reading a solution; lengths in mm -------------------------------------------------------------------------------

inline Point2 flat(Solution const & solution, int node)
{
    auto const & p = solution.flat[static_cast<std::size_t>(node)];
    return {1000.0 * p[0], 1000.0 * p[1]};
}

inline double flatRadius(Solution const & solution, int node)
{
    Point2 const p = flat(solution, node);
    return std::hypot(p[0], p[1]);
}

struct Strain // log
{
    double major, minor, thickness;
};

inline Strain principal(double e11, double e22, double gamma)
{
    double const mean = 0.5 * (e11 + e22);
    double const radius = 0.5 * std::hypot(e11 - e22, gamma);
    return {mean + radius, mean - radius, -2.0 * mean};
}

inline int points(Problem const & problem, std::size_t element)
{
    return problem.elements[element].nodes[3] < 0 ? 1 : 4;
}

inline Strain strainAt(Solution const & solution, std::size_t element, int point, std::vector<double> const & layer)
{
    std::size_t const at = (element * static_cast<std::size_t>(solution.stride) + static_cast<std::size_t>(point)) * 3;
    return principal(layer[at], layer[at + 1], layer[at + 2]);
}

inline double thicknessStrain(Problem const & problem, Solution const & solution, std::size_t element)
{
    double sum = 0.0;
    int const n = points(problem, element);
    for (int point = 0; point < n; ++point)
        sum += strainAt(solution, element, point, solution.strains.mid).thickness;
    return sum / n;
}

struct Extremes
{
    double leastThickness = 1e9, greatestThickness = -1e9, greatestMajor = -1e9, leastMinor = 1e9;
};

inline Extremes extremes(Problem const & problem, Solution const & solution)
{
    Extremes all;
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
        for (int point = 0; point < points(problem, e); ++point)
        {
            Strain const h = strainAt(solution, e, point, solution.strains.mid);
            all.leastThickness = std::fmin(all.leastThickness, h.thickness);
            all.greatestThickness = std::fmax(all.greatestThickness, h.thickness);
            all.greatestMajor = std::fmax(all.greatestMajor, h.major);
            all.leastMinor = std::fmin(all.leastMinor, h.minor);
        }
    return all;
}

inline double flatArea(Problem const & problem, Solution const & solution)
{
    double area = 0.0;
    for (auto const & element : problem.elements)
    {
        int const corners = element.nodes[3] < 0 ? 3 : 4;
        double twice = 0.0;
        for (int i = 0; i < corners; ++i)
        {
            Point2 const a = flat(solution, element.nodes[static_cast<std::size_t>(i)]);
            Point2 const b = flat(solution, element.nodes[static_cast<std::size_t>((i + 1) % corners)]);
            twice += a[0] * b[1] - a[1] * b[0];
        }
        area += 0.5 * twice;
    }
    return area;
}

} // namespace onesteptest

#endif
