// Radial.cpp: parts that look the same after a quarter turn.

#include "Grid.h"

#include <cmath>
#include <stdexcept>

namespace voz::examples
{
namespace
{

constexpr double kHalfPi = 1.5707963267948966;

// Exact: no rounding, so that the sectors of a whole part are copies of one another.
Point3 turned(Point3 const & p, int quarters)
{
    switch (quarters & 3)
    {
    case 1:
        return {-p[1], p[0], p[2]};
    case 2:
        return {-p[0], -p[1], p[2]};
    case 3:
        return {p[1], -p[0], p[2]};
    default:
        return p;
    }
}

int quarterCount(Extent extent)
{
    return extent == Extent::Quarter ? 1 : extent == Extent::Half ? 2 : 4;
}

} // namespace

SurfaceMesh radial(RadialGrid const & grid, Extent extent, Cells cells)
{
    int const perQuarter = grid.raysPerQuarter;
    int const sectors = perQuarter * quarterCount(extent);
    bool const closed = extent == Extent::Whole;
    int const rays = closed ? sectors : sectors + 1;
    int const firstQuarter = extent == Extent::Half ? -1 : 0; // x >= 0 runs from the -y to the +y axis

    SurfaceMesh mesh;
    mesh.nodes.push_back(grid.node(0, 0));
    for (int row = 1; row <= grid.rows; ++row)
        for (int ray = 0; ray < rays; ++ray)
        {
            bool const last = ray == sectors; // the far plane of an open sector
            int const quarter = last ? quarterCount(extent) - 1 : ray / perQuarter;
            mesh.nodes.push_back(turned(grid.node(row, ray - quarter * perQuarter), firstQuarter + quarter));
        }

    auto const index = [&](int row, int ray) { return row == 0 ? 0 : 1 + (row - 1) * rays + ray % rays; };
    for (int row = 0; row < grid.rows; ++row)
        for (int ray = 0; ray < sectors; ++ray)
        {
            int const a = index(row, ray);
            int const b = index(row + 1, ray);
            int const c = index(row + 1, ray + 1);
            int const d = index(row, ray + 1);
            bool const alternate = (row + ray) % 2 == 0; // diagonals all of one way would cost the second order
            if (row == 0)
                mesh.elements.push_back({a, b, c, -1});
            else
                addCell(mesh, {a, b, c, d}, cells, alternate);
        }
    return mesh;
}

SurfaceMesh revolve(Profile const & meridian, int raysPerQuarter, Extent extent, Cells cells)
{
    std::vector<Point2> const & points = meridian.points();
    if (points.front()[0] != 0.0)
        throw std::invalid_argument("a meridian begins on the axis");
    auto const node = [&](int row, int ray) -> Point3
    {
        Point2 const & p = points[static_cast<std::size_t>(row)];
        if (ray == 0)
            return {p[0], 0.0, p[1]};
        if (ray == raysPerQuarter) // on the symmetry plane to the last bit
            return {0.0, p[0], p[1]};
        double const angle = kHalfPi * ray / raysPerQuarter;
        return {p[0] * std::cos(angle), p[0] * std::sin(angle), p[1]};
    };
    return radial({static_cast<int>(points.size()) - 1, raysPerQuarter, node}, extent, cells);
}

Profile meridian(Cup const & cup, int k)
{
    return Profile({0.0, 0.0}, 0.0)
        .line(cup.bottom, 4 * k)
        .arc(cup.punchArc, kHalfPi, 3 * k)
        .line(cup.wall, cup.wallRows * k)
        .arc(cup.dieArc, -kHalfPi, 3 * k)
        .line(cup.flange, 2 * k);
}

Profile domeMeridian(double radius, double halfAngle, int k)
{
    return Profile({0.0, 0.0}, 0.0).arc(radius, -halfAngle, 6 * k);
}

SurfaceMesh cup(Cup const & cup, int k, Extent extent, Cells cells)
{
    return revolve(meridian(cup, k), 6 * k, extent, cells);
}

SurfaceMesh dome(double radius, double halfAngle, int k, Extent extent, Cells cells)
{
    return revolve(domeMeridian(radius, halfAngle, k), 6 * k, extent, cells);
}

} // namespace voz::examples
