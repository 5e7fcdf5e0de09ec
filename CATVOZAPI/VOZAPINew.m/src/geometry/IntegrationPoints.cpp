// IntegrationPoints.cpp: gradients of the shape functions in the tangent plane.
//
// Triangle with local corners q_k:  dN_k = turned(q_(k+2) - q_(k+1)) / (2 A).
// Quadrilateral, bilinear, at a Gauss point:  g1 = sum N_k,xi x_k,  g2 = sum N_k,eta x_k,  J = |g1 x g2|,
//     Jm = [g1.e1  g1.e2; g2.e1  g2.e2],  dN_k = Jm^-1 (N_k,xi, N_k,eta).
// A warped quadrilateral needs nothing more: each point has a plane of its own.

#include "geometry/IntegrationPoints.h"

#include <algorithm>

namespace voz::geometry
{

namespace
{

constexpr double kGauss = 0.57735026918962576451; // 1/sqrt(3)
constexpr double kLeastJacobianShare = 0.05;      // of the greatest, below which a quadrilateral is split
constexpr double kXi[4] = {-1.0, 1.0, 1.0, -1.0}; // natural coordinates of the corners, and the order of the points
constexpr double kEta[4] = {-1.0, -1.0, 1.0, 1.0};

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// The first side of a cell, which e1 follows; i_other where its two nodes lie in one place.
Vec3 firstSide(SurfaceMesh const & i_mesh, Cell const & i_cell, Vec3 i_other)
{
    Vec3 const side = i_mesh.position[at(i_cell.node[1])] - i_mesh.position[at(i_cell.node[0])];
    return dot(side, side) > 0.0 ? side : i_other;
}

// Frame with normal n (turned by sign) and e1 along i_along.
void layFrame(Vec3 i_normal, Vec3 i_along, double i_sign, IntegrationPoint & io_point)
{
    io_point.n = i_sign * i_normal;
    io_point.e1 = unit(i_along - dot(i_along, i_normal) * i_normal);
    io_point.e2 = cross(io_point.n, io_point.e1);
}

IntegrationPoint trianglePoint(SurfaceMesh const & i_mesh, int i_cell, std::array<int, 3> const & i_corners)
{
    Cell const & cell = i_mesh.cells[at(i_cell)];
    IntegrationPoint point;
    point.cell = i_cell;
    Vec3 x[3];
    for (std::size_t k = 0; k < 3; ++k)
    {
        point.corner[k] = i_corners[k];
        point.node[k] = cell.node[at(i_corners[k])];
        x[k] = i_mesh.position[at(point.node[k])];
    }
    Vec3 const twice = cross(x[1] - x[0], x[2] - x[0]);
    point.area = 0.5 * length(twice);
    layFrame(unit(twice), firstSide(i_mesh, cell, x[1] - x[0]), cell.sign, point);
    Vec2 q[3];
    for (int k = 0; k < 3; ++k)
        q[k] = {dot(x[k] - x[0], point.e1), dot(x[k] - x[0], point.e2)};
    double const doubled = cross(q[1] - q[0], q[2] - q[0]); // negative where the cell is turned
    for (std::size_t k = 0; k < 3; ++k)
        point.gradient[k] = (1.0 / doubled) * turnedLeft(q[(k + 2) % 3] - q[(k + 1) % 3]);
    return point;
}

IntegrationPoint quadPoint(SurfaceMesh const & i_mesh, int i_cell, int i_point)
{
    Cell const & cell = i_mesh.cells[at(i_cell)];
    double const xi = kGauss * kXi[i_point];
    double const eta = kGauss * kEta[i_point];
    IntegrationPoint point;
    point.cell = i_cell;
    point.count = 4;
    point.node = cell.node;
    Vec2 natural[4];
    Vec3 g1, g2;
    for (std::size_t k = 0; k < 4; ++k)
    {
        natural[k] = {0.25 * kXi[k] * (1.0 + eta * kEta[k]), 0.25 * kEta[k] * (1.0 + xi * kXi[k])};
        g1 = g1 + natural[k].x * i_mesh.position[at(point.node[k])];
        g2 = g2 + natural[k].y * i_mesh.position[at(point.node[k])];
    }
    Vec3 const normal = cross(g1, g2);
    point.area = length(normal);
    layFrame(unit(normal), firstSide(i_mesh, cell, g1), cell.sign, point);
    double const a = dot(g1, point.e1), b = dot(g1, point.e2), c = dot(g2, point.e1), d = dot(g2, point.e2);
    double const inverse = 1.0 / (a * d - b * c);
    for (std::size_t k = 0; k < 4; ++k)
        point.gradient[k] = {inverse * (d * natural[k].x - b * natural[k].y),
                             inverse * (a * natural[k].y - c * natural[k].x)};
    return point;
}

bool mustBeSplit(SurfaceMesh const & i_mesh, Cell const & i_cell, std::array<IntegrationPoint, 4> const & i_points)
{
    Vec3 const mean = vectorArea(i_mesh, i_cell);
    double least = i_points[0].area, greatest = least;
    for (IntegrationPoint const & point : i_points)
    {
        if (!(point.area > 0.0) || !(dot(point.n, mean) > 0.0))
            return true;
        least = std::min(least, point.area);
        greatest = std::max(greatest, point.area);
    }
    return least < kLeastJacobianShare * greatest;
}

// Two triangles over the shorter diagonal. A point of the quadrilateral that lies on the diagonal reads the first.
void addSplit(SurfaceMesh const & i_mesh, int i_cell, PointTable & io_table)
{
    Cell const & cell = i_mesh.cells[at(i_cell)];
    auto const x = [&](int corner) { return i_mesh.position[at(cell.node[at(corner)])]; };
    bool const over02 = length(x(2) - x(0)) <= length(x(3) - x(1));
    IntegrationPoint const first =
        trianglePoint(i_mesh, i_cell, over02 ? std::array<int, 3>{0, 1, 2} : std::array<int, 3>{0, 1, 3});
    IntegrationPoint const second =
        trianglePoint(i_mesh, i_cell, over02 ? std::array<int, 3>{0, 2, 3} : std::array<int, 3>{1, 2, 3});
    double const floor = 1.0e-12 * (first.area + second.area);
    int const next = static_cast<int>(io_table.points.size());
    bool const hasFirst = first.area > floor, hasSecond = second.area > floor;
    if (hasFirst)
        io_table.points.push_back(first);
    if (hasSecond)
        io_table.points.push_back(second);
    int const other = hasFirst && hasSecond ? next + 1 : next;
    io_table.reported[at(i_cell)] = {next, next, next, next};
    io_table.reported[at(i_cell)][over02 ? 3 : 2] = other;
    ++io_table.numberOfSplit;
}

} // namespace

PointTable buildIntegrationPoints(SurfaceMesh const & i_mesh)
{
    PointTable table;
    table.points.reserve(i_mesh.cells.size());
    table.reported.resize(i_mesh.cells.size());
    for (int c = 0; c < static_cast<int>(i_mesh.cells.size()); ++c)
    {
        Cell const & cell = i_mesh.cells[at(c)];
        int const next = static_cast<int>(table.points.size());
        if (cell.count == 3)
        {
            table.points.push_back(trianglePoint(i_mesh, c, {0, 1, 2}));
            table.reported[at(c)] = {next, next, next, next};
            continue;
        }
        std::array<IntegrationPoint, 4> const points = {quadPoint(i_mesh, c, 0), quadPoint(i_mesh, c, 1),
                                                        quadPoint(i_mesh, c, 2), quadPoint(i_mesh, c, 3)};
        if (mustBeSplit(i_mesh, cell, points))
        {
            addSplit(i_mesh, c, table);
            continue;
        }
        table.points.insert(table.points.end(), points.begin(), points.end());
        table.reported[at(c)] = {next, next + 1, next + 2, next + 3};
    }
    return table;
}

} // namespace voz::geometry
