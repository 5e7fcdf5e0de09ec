// PointMath.h: arithmetic on points and vectors of three doubles.

#ifndef POINTMATH_H
#define POINTMATH_H

#include "Outcome.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{

inline double Dot(Point3 const & a, Point3 const & b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline Point3 Cross(Point3 const & a, Point3 const & b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double Length(Point3 const & a)
{
    return std::hypot(a[0], a[1], a[2]);
}

// a + factor b
inline Point3 Sum(Point3 const & a, Point3 const & b, double factor = 1.0)
{
    return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

inline Point3 Difference(Point3 const & a, Point3 const & b)
{
    return Sum(a, b, -1.0);
}

inline Point3 Scaled(Point3 const & a, double factor)
{
    return {factor * a[0], factor * a[1], factor * a[2]};
}

// Zero stays zero.
inline Point3 Unit(Point3 const & a)
{
    double const length = Length(a);
    return length > 0.0 ? Scaled(a, 1.0 / length) : a;
}

inline Point3 NodeOf(VOZCatMesh const & i_mesh, int i_position)
{
    double const * const p = i_mesh.GetNodeData()[i_position];
    return {p[0], p[1], p[2]};
}

inline Point3 AxisOf(VOZCatAxis const & i_frame, int i_axis)
{
    return {i_frame.axis(i_axis, 0), i_frame.axis(i_axis, 1), i_frame.axis(i_axis, 2)};
}

// Of all nodes.
struct PointBox
{
    Point3 low{INFINITY, INFINITY, INFINITY};
    Point3 high{-INFINITY, -INFINITY, -INFINITY};

    void Add(Point3 const & i_point)
    {
        for (std::size_t c = 0; c < 3; ++c)
        {
            low[c] = std::min(low[c], i_point[c]);
            high[c] = std::max(high[c], i_point[c]);
        }
    }
    double Diagonal() const { return Length(Difference(high, low)); }
};

inline PointBox BoxOf(VOZCatMesh const & i_mesh)
{
    PointBox box;
    for (int n = 1; n <= i_mesh.numNode(); ++n)
        box.Add(NodeOf(i_mesh, n));
    return box;
}

} // namespace voz::workbench

#endif
