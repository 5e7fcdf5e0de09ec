// SmallVector.h: plane and space vectors and the 2x2 matrix of the element routines.
//
// Plain aggregates without invariants; nothing here fails. Row-major matrices.

#ifndef SMALLVECTOR_H
#define SMALLVECTOR_H

#include <cmath>

namespace voz::geometry
{

struct Vec2
{
    double x = 0.0, y = 0.0;
};

inline Vec2 operator+(Vec2 a, Vec2 b)
{
    return {a.x + b.x, a.y + b.y};
}
inline Vec2 operator-(Vec2 a, Vec2 b)
{
    return {a.x - b.x, a.y - b.y};
}
inline Vec2 operator*(double s, Vec2 a)
{
    return {s * a.x, s * a.y};
}
inline double dot(Vec2 a, Vec2 b)
{
    return a.x * b.x + a.y * b.y;
}
inline double cross(Vec2 a, Vec2 b)
{
    return a.x * b.y - a.y * b.x;
}
inline double length(Vec2 a)
{
    return std::sqrt(dot(a, a));
}
inline Vec2 turnedLeft(Vec2 a)
{
    return {-a.y, a.x};
}

struct Vec3
{
    double x = 0.0, y = 0.0, z = 0.0;
};

inline Vec3 operator+(Vec3 a, Vec3 b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(Vec3 a, Vec3 b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator-(Vec3 a)
{
    return {-a.x, -a.y, -a.z};
}
inline Vec3 operator*(double s, Vec3 a)
{
    return {s * a.x, s * a.y, s * a.z};
}
inline double dot(Vec3 a, Vec3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(Vec3 a, Vec3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(Vec3 a)
{
    return std::sqrt(dot(a, a));
}
inline Vec2 horizontal(Vec3 a)
{
    return {a.x, a.y};
}
inline Vec3 lifted(Vec2 a)
{
    return {a.x, a.y, 0.0};
}

// The unit vector along a; a null vector stays null.
inline Vec3 unit(Vec3 a)
{
    double const size = length(a);
    return size > 0.0 ? (1.0 / size) * a : a;
}
inline Vec2 unit(Vec2 a)
{
    double const size = length(a);
    return size > 0.0 ? (1.0 / size) * a : a;
}

// Cosine and sine of half the angle of (x, y), whose length is i_length; (1, 0) for the null vector.
inline Vec2 halfAngle(double x, double y, double i_length)
{
    if (!(i_length > 0.0))
        return {1.0, 0.0};
    if (x >= 0.0)
    {
        double const cosine = std::sqrt(0.5 * (1.0 + x / i_length));
        return {cosine, 0.5 * y / (i_length * cosine)};
    }
    double const sine = std::copysign(std::sqrt(0.5 * (1.0 - x / i_length)), y);
    return {0.5 * y / (i_length * sine), sine};
}

struct Mat2
{
    double m11 = 0.0, m12 = 0.0, m21 = 0.0, m22 = 0.0;
};

inline double det(Mat2 const & a)
{
    return a.m11 * a.m22 - a.m12 * a.m21;
}
inline Vec2 operator*(Mat2 const & a, Vec2 v)
{
    return {a.m11 * v.x + a.m12 * v.y, a.m21 * v.x + a.m22 * v.y};
}
inline Mat2 operator*(Mat2 const & a, Mat2 const & b)
{
    return {a.m11 * b.m11 + a.m12 * b.m21, a.m11 * b.m12 + a.m12 * b.m22, a.m21 * b.m11 + a.m22 * b.m21,
            a.m21 * b.m12 + a.m22 * b.m22};
}

} // namespace voz::geometry

#endif
