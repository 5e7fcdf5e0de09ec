// Kinematics.cpp: see the header for the equations.

#include "onestep/Kinematics.h"

#include <cmath>

namespace voz::onestep
{

PointStrain evaluateStrain(geometry::Mat2 const & i_gradient)
{
    geometry::Mat2 const & g = i_gradient;
    double const c11 = g.m11 * g.m11 + g.m21 * g.m21;
    double const c22 = g.m12 * g.m12 + g.m22 * g.m22;
    double const c12 = g.m11 * g.m12 + g.m21 * g.m22;
    double const half = 0.5 * (c11 - c22);
    PointStrain strain{};
    strain.j = det(g);
    strain.mean = 0.5 * (c11 + c22);
    strain.radius = std::sqrt(half * half + c12 * c12);
    strain.cPlus = strain.mean + strain.radius;
    strain.cMinus = strain.j * strain.j / strain.cPlus;
    geometry::Vec2 const phi = geometry::halfAngle(half, c12, strain.radius);
    strain.cosine = phi.x;
    strain.sine = phi.y;
    strain.h1 = -0.5 * std::log(strain.cPlus);
    strain.h2 = -0.5 * std::log(strain.cMinus);
    return strain;
}

double mixedLogSlope(PointStrain const & i_strain)
{
    double const x = i_strain.radius / i_strain.mean;
    if (x < 1.0e-4)
        return (1.0 + x * x / 3.0) / i_strain.mean;
    if (x < 0.5)
        return std::atanh(x) / (x * i_strain.mean);
    return (i_strain.h2 - i_strain.h1) / i_strain.radius; // far apart: the plain quotient loses nothing
}

} // namespace voz::onestep
