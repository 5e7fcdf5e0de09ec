// SquareCupCases.h: quarters of the square cup of NUMISHEET'93.

#ifndef SQUARECUPCASES_H
#define SQUARECUPCASES_H

#include "OneStepProblems.h"

namespace onesteptest
{

inline constexpr double kRestraint = 9.4; // N/mm

struct Quarter
{
    SurfaceMesh mesh;
    Problem problem;
};

inline Quarter quarter(SquareCup const & shape, double force, double friction, MaterialLaw const & law = mildSteel(),
                       Cells cells = Cells::Triangles)
{
    Quarter model{squareCup(shape, Extent::Quarter, cells), {}};
    model.problem = problemOf(model.mesh, law);
    quarterSymmetry(model.problem, model.mesh);
    if (force > 0.0)
        for (FreeSide const & side : freeSides(model.mesh))
        {
            Point3 const & a = model.mesh.nodes[static_cast<std::size_t>(side.node1)];
            Point3 const & b = model.mesh.nodes[static_cast<std::size_t>(side.node2)];
            bool const onPlane = (a[0] == 0.0 && b[0] == 0.0) || (a[1] == 0.0 && b[1] == 0.0);
            if (!onPlane)
                model.problem.holders.push_back({side.element, side.corner1, side.corner2, 1000.0 * force});
        }
    model.problem.toolFriction = friction;
    return model;
}

// Mesh index m: rows bottom 4 m, arcs 3 m, wall 5 m, flange 6 m; 14 m cells round the quarter.
inline SquareCup meshed(int m)
{
    SquareCup shape = squareCup40();
    shape.rowsBottom = 4 * m;
    shape.rowsArc = 3 * m;
    shape.rowsWall = 5 * m;
    shape.rowsFlange = 6 * m;
    shape.cellsSide = 4 * m;
    shape.cellsCorner = 6 * m;
    return shape;
}

inline std::vector<double> nodalThicknessStrain(Problem const & problem, SurfaceMesh const & mesh,
                                                Solution const & solution)
{
    std::vector<double> sum(problem.nodes.size(), 0.0);
    std::vector<double> weight(problem.nodes.size(), 0.0);
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
    {
        SurfaceMesh one{mesh.nodes, {mesh.elements[e]}};
        double const a = area(one);
        for (int node : mesh.elements[e])
            if (node >= 0)
            {
                sum[static_cast<std::size_t>(node)] += a * thicknessStrain(problem, solution, e);
                weight[static_cast<std::size_t>(node)] += a;
            }
    }
    for (std::size_t i = 0; i < sum.size(); ++i)
        sum[i] /= weight[i];
    return sum;
}

} // namespace onesteptest

#endif
