// RowMath.h: arithmetic on rows of three doubles, in the order of operations that every class here shares.
//
// The value classes and the walks over raw rows are both built on these, so that they agree bit for bit. No output may
// be one of the inputs, unless said so.

#ifndef ROWMATH_H
#define ROWMATH_H

#include "Plane.h"
#include "VOZCatAxis.h"

#include <cmath>

namespace rowmath
{
inline double dot(double const * a, double const * b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline double length(double const * a)
{
    return std::sqrt(dot(a, a));
}

inline void subtract(double const * a, double const * b, double * o_difference)
{
    for (int i = 0; i < 3; ++i)
        o_difference[i] = a[i] - b[i];
}

inline double distance(double const * a, double const * b)
{
    double difference[3];
    subtract(a, b, difference);
    return length(difference);
}

inline void cross(double const * a, double const * b, double * o_product)
{
    o_product[0] = a[1] * b[2] - a[2] * b[1];
    o_product[1] = a[2] * b[0] - a[0] * b[2];
    o_product[2] = a[0] * b[1] - a[1] * b[0];
}

inline void add(double * io_sum, double const * a)
{
    for (int i = 0; i < 3; ++i)
        io_sum[i] += a[i];
}

inline void divide(double * io_row, double divisor)
{
    for (int i = 0; i < 3; ++i)
        io_row[i] /= divisor;
}

inline void copy(double const * a, double * o_row)
{
    for (int i = 0; i < 3; ++i)
        o_row[i] = a[i];
}

// Against a plane's four coefficients: normal, offset.
inline double height(double const * plane, double const * p)
{
    return dot(plane, p) + plane[3];
}

inline void project(double const * plane, double const * p, double * o_foot)
{
    double const along = dot(plane, p);
    for (int i = 0; i < 3; ++i)
        o_foot[i] = p[i] - plane[i] * along - plane[i] * plane[3];
}

// A plane's coefficients, taken out once before a walk.
struct PlaneRow
{
    double coefficient[4];

    explicit PlaneRow(Plane const & i_plane)
    {
        Vec const normal = i_plane.normal();
        for (int i = 0; i < 3; ++i)
            coefficient[i] = normal[i];
        coefficient[3] = i_plane.offset();
    }
};

// A frame's numbers, taken out once before a walk.
struct Frame
{
    double axis[3][3];
    double origin[3];

    explicit Frame(VOZCatAxis const & i_axis)
    {
        for (int i = 0; i < 3; ++i)
        {
            for (int j = 0; j < 3; ++j)
                axis[i][j] = i_axis.axis(i, j);
            origin[i] = i_axis.origin(i);
        }
    }

    void fromGlobal(double const * p, double * o_local) const
    {
        double d[3];
        subtract(p, origin, d);
        for (int i = 0; i < 3; ++i)
            o_local[i] = dot(axis[i], d);
    }

    void toGlobal(double const * q, double * o_global) const
    {
        for (int i = 0; i < 3; ++i)
            o_global[i] = q[0] * axis[0][i] + q[1] * axis[1][i] + q[2] * axis[2][i] + origin[i];
    }
};
} // namespace rowmath

#endif
