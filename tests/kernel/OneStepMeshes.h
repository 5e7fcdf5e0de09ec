// OneStepMeshes.h: small formed parts for the tests of the one-step solve. Lengths in the builders are millimetres.

#ifndef ONESTEPMESHES_H
#define ONESTEPMESHES_H

#include "onestep/OneStep.h"
#include "surfaces/Surfaces.h"

#include <cmath>
#include <functional>
#include <map>
#include <numbers>
#include <utility>
#include <vector>

namespace onesteptest
{

using voz::examples::Cells;
using voz::examples::Extent;
using voz::onestep::Problem;

inline std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

inline voz::onestep::MaterialLaw mildSteel()
{
    voz::onestep::MaterialLaw law;
    law.thickness = 0.78e-3;
    law.rValue = 1.79;
    law.nValue = 0.2589;
    law.kValue = 565.32e6;
    law.yield = law.kValue * std::pow(0.007117, law.nValue);
    return law;
}

inline Problem problemOf(voz::examples::SurfaceMesh const & i_mesh)
{
    Problem problem;
    problem.materials.push_back(mildSteel());
    for (auto const & p : i_mesh.nodes)
        problem.nodes.push_back({0.001 * p[0], 0.001 * p[1], 0.001 * p[2]});
    for (auto const & nodes : i_mesh.elements)
        problem.elements.push_back({nodes, 0});
    return problem;
}

// Nodes on x = 0 keep X = 0 and nodes on y = 0 keep Y = 0.
inline void holdSymmetryPlanes(Problem & io_problem)
{
    for (int i = 0; i < static_cast<int>(io_problem.nodes.size()); ++i)
    {
        if (std::abs(io_problem.nodes[at(i)][0]) < 1.0e-9)
            io_problem.constraints.push_back({i, 0.0, 0.0});
        if (std::abs(io_problem.nodes[at(i)][1]) < 1.0e-9)
            io_problem.constraints.push_back({i, 0.5 * std::numbers::pi, 0.0});
    }
}

struct FreeSide
{
    int element, corner1, corner2, node1, node2;
};

inline std::vector<FreeSide> freeSides(Problem const & i_problem)
{
    std::map<std::pair<int, int>, std::vector<FreeSide>> sides;
    for (int e = 0; e < static_cast<int>(i_problem.elements.size()); ++e)
    {
        auto const & nodes = i_problem.elements[at(e)].nodes;
        int const corners = nodes[3] == -1 ? 3 : 4;
        for (int corner = 0; corner < corners; ++corner)
        {
            int const next = (corner + 1) % corners, a = nodes[at(corner)], b = nodes[at(next)];
            sides[{std::min(a, b), std::max(a, b)}].push_back({e, corner, next, a, b});
        }
    }
    std::vector<FreeSide> free;
    for (auto const & [key, list] : sides)
        if (list.size() == 1)
            free.push_back(list.front());
    return free;
}

// Restraint in N/mm along all free sides; those in planes of symmetry are the solver's to leave out.
inline void restrainRim(Problem & io_problem, double i_force)
{
    for (FreeSide const & side : freeSides(io_problem))
        io_problem.holders.push_back({side.element, side.corner1, side.corner2, 1000.0 * i_force});
}

// Rows x columns cells over the unit square, mapped by i_place (u along the columns, v along the rows) to millimetres.
// The diagonals of triangles alternate.
inline Problem gridPart(int i_rows, int i_columns, Cells i_cells,
                        std::function<voz::examples::Point3(double u, double v)> const & i_place)
{
    voz::examples::SurfaceMesh mesh;
    for (int r = 0; r <= i_rows; ++r)
        for (int c = 0; c <= i_columns; ++c)
            mesh.nodes.push_back(i_place(static_cast<double>(c) / i_columns, static_cast<double>(r) / i_rows));
    for (int r = 0; r < i_rows; ++r)
        for (int c = 0; c < i_columns; ++c)
        {
            int const a = r * (i_columns + 1) + c, b = a + 1, d = a + i_columns + 1, e = d + 1;
            if (i_cells == Cells::Quads)
                mesh.elements.push_back({a, b, e, d});
            else if ((r + c) % 2 == 0)
                mesh.elements.insert(mesh.elements.end(), {{a, b, e, -1}, {a, e, d, -1}});
            else
                mesh.elements.insert(mesh.elements.end(), {{a, b, d, -1}, {b, e, d, -1}});
        }
    return problemOf(mesh);
}

// A quarter of a cup of the axisymmetric family with its planes of symmetry held.
inline Problem quarterCup(voz::examples::Cup const & i_cup, int k, Cells i_cells, double i_restraint)
{
    Problem problem = problemOf(voz::examples::cup(i_cup, k, Extent::Quarter, i_cells));
    holdSymmetryPlanes(problem);
    if (i_restraint > 0.0)
        restrainRim(problem, i_restraint);
    return problem;
}

inline Problem smallCup(double i_restraint = 20.0)
{
    return quarterCup({}, 1, Cells::Triangles, i_restraint);
}

inline Problem quarterSquareCup(voz::examples::SquareCup const & i_cup, Cells i_cells, double i_restraint)
{
    Problem problem = problemOf(voz::examples::squareCup(i_cup, Extent::Quarter, i_cells));
    holdSymmetryPlanes(problem);
    if (i_restraint > 0.0)
        restrainRim(problem, i_restraint);
    return problem;
}

// Of the flat: the farthest point on the x axis, and on the diagonal of the first quadrant, mm.
inline double reachAlong(Problem const & i_problem, voz::onestep::Solution const & i_solution, double i_angle)
{
    double reach = 0.0;
    for (std::size_t i = 0; i < i_problem.nodes.size(); ++i)
    {
        double const x = i_problem.nodes[i][0], y = i_problem.nodes[i][1];
        if (std::abs(y * std::cos(i_angle) - x * std::sin(i_angle)) < 1.0e-9 && x >= -1.0e-9)
            reach = std::max(reach, 1000.0 * std::hypot(i_solution.flat[i][0], i_solution.flat[i][1]));
    }
    return reach;
}

// Principal values of a mid strain at a point, and the thickness strain.
struct Principal
{
    double major, minor, thickness;
};
inline Principal principal(voz::onestep::Solution const & i_solution, std::size_t i_point)
{
    double const * const e = &i_solution.strains.mid[3 * i_point];
    double const mean = 0.5 * (e[0] + e[1]), radius = std::hypot(0.5 * (e[0] - e[1]), 0.5 * e[2]);
    return {mean + radius, mean - radius, -2.0 * mean};
}

} // namespace onesteptest

#endif
