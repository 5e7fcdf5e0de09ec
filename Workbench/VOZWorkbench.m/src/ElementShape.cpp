// ElementShape.cpp: everything from the vectors of the sides.

#include "ElementShape.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{
namespace
{
using Vector = std::array<double, 3>;

constexpr double kNoArea = 1e-12; // twice the area over the square of the longest side
constexpr double kDegrees = 57.295779513082320876798154814105;

Vector between(VOZCatMesh const & mesh, int from, int to)
{
    return {mesh.NodeValue(to, 0) - mesh.NodeValue(from, 0), mesh.NodeValue(to, 1) - mesh.NodeValue(from, 1),
            mesh.NodeValue(to, 2) - mesh.NodeValue(from, 2)};
}

Vector cross(Vector const & a, Vector const & b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(Vector const & a, Vector const & b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
double length(Vector const & a)
{
    return std::hypot(a[0], a[1], a[2]);
}
double angle(Vector const & a, Vector const & b)
{
    return std::atan2(length(cross(a, b)), dot(a, b)) * kDegrees;
}
} // namespace

ElementShape ShapeOf(VOZCatMesh const & i_mesh, int const (&i_row)[4])
{
    ElementShape shape;
    bool const isTriangle = i_row[0] == i_row[3];
    shape.corners = isTriangle ? 3 : 4;
    auto const count = static_cast<std::size_t>(shape.corners);
    std::array<Vector, 4> side{}; // from each corner to the next
    for (std::size_t k = 0; k < count; ++k)
    {
        side[k] = between(i_mesh, i_row[k], i_row[(k + 1) % count]);
        double const own = length(side[k]);
        shape.longest = std::max(shape.longest, own);
        shape.shortest = k == 0 ? own : std::min(shape.shortest, own);
        for (std::size_t c = 0; c < 3; ++c)
            shape.middle[c] += i_mesh.NodeValue(i_row[k], static_cast<int>(c)) / shape.corners;
    }
    Vector const normal = isTriangle ? cross(side[0], side[1])
                                     : cross(between(i_mesh, i_row[0], i_row[2]), between(i_mesh, i_row[1], i_row[3]));
    shape.area = 0.5 * length(normal);
    shape.hasNoArea = !(2.0 * shape.area > kNoArea * shape.longest * shape.longest);
    shape.smallestAngle = 360.0;
    std::array<Vector, 4> turn{}; // at each corner
    for (std::size_t k = 0; k < count; ++k)
    {
        Vector const & in = side[(k + count - 1) % count];
        turn[k] = cross(in, side[k]);
        bool const isNotch = !isTriangle && dot(turn[k], normal) <= 0.0;
        double const own = angle({-in[0], -in[1], -in[2]}, side[k]);
        shape.isConcave = shape.isConcave || isNotch;
        shape.smallestAngle = std::min(shape.smallestAngle, own);
        shape.largestAngle = std::max(shape.largestAngle, isNotch ? 360.0 - own : own);
    }
    if (!isTriangle) // the halves' normals are the turns at opposite corners
        shape.warp = std::max(angle(turn[1], turn[3]), angle(turn[0], turn[2]));
    return shape;
}

} // namespace voz::workbench
