// StandInMotion.h: the blank's motion in the stand-in solver, in closed form, for the solver and for its tests.

#ifndef STANDINMOTION_H
#define STANDINMOTION_H

#include <array>
#include <cmath>

namespace standin
{
constexpr double kMajor = 0.20, kMinor = -0.05; // logarithmic strains at the end, mean over the thickness
constexpr double kAngle = 0.6;                  // radians from x to the major one
constexpr double kBending = 0.03;               // of the major one, more on the outer surface
constexpr double kYield = 2.0e8;                // Pa

// The tensor of those two eigenvalues: xx, yy, xy.
inline std::array<double, 3> InPlane(double i_major, double i_minor)
{
    double const c = std::cos(kAngle), s = std::sin(kAngle);
    return {i_major * c * c + i_minor * s * s, i_major * s * s + i_minor * c * c, (i_major - i_minor) * c * s};
}

// At that share of the way: side 1 is the outer surface, -1 the inner one. xx, yy, zz, xy, yz, zx.
inline std::array<double, 6> Strain(double i_share, double i_side)
{
    double const major = i_share * (kMajor + i_side * kBending), minor = i_share * kMinor;
    auto const plane = InPlane(major, minor);
    return {plane[0], plane[1], -(major + minor), plane[2], 0.0, 0.0};
}

// The exponential of the mean strain, and the way upward.
inline std::array<double, 3> Moved(std::array<double, 3> const & i_point, double i_share, double i_way)
{
    auto const f = InPlane(std::exp(i_share * kMajor), std::exp(i_share * kMinor));
    return {f[0] * i_point[0] + f[2] * i_point[1], f[2] * i_point[0] + f[1] * i_point[1], i_point[2] + i_way};
}
} // namespace standin

#endif
