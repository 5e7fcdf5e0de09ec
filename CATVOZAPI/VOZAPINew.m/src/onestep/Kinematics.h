// Kinematics.h: log strains of a point from the flat positions of its nodes, and their variation.
//
//     G = sum X_k dN_k^T = dX/dx,   j = det G = t/t0,   C = G^T G
//     m = (C11 + C22)/2,  d = hypot((C11 - C22)/2, C12),   c+ = m + d,  c- = j^2/c+
//     h_1 = -ln(c+)/2 along phi (minor),  h_2 = -ln(c-)/2 along phi + pi/2 (major),  h_3 = ln j
//
// Index 1 is the direction of c+. Primes denote components in the eigenbasis R = [cos -sin; sin cos] of phi. Nothing
// here subtracts nearly equal numbers: the smaller eigenvalue comes from the determinant, the mixed slope of the
// logarithm from atanh. Y. Q. Guo, J. L. Batoz, J. M. Detraux, P. Duroux, Int. J. Numer. Meth. Eng. 30 (1990) 1385.

#ifndef KINEMATICS_H
#define KINEMATICS_H

#include "geometry/IntegrationPoints.h"

#include <span>

namespace voz::onestep
{

// dX/dx of a point.
inline geometry::Mat2 inverseGradient(geometry::IntegrationPoint const & i_point,
                                      std::span<geometry::Vec2 const> i_flat)
{
    geometry::Mat2 g;
    for (std::size_t k = 0; k < static_cast<std::size_t>(i_point.count); ++k)
    {
        geometry::Vec2 const x = i_flat[static_cast<std::size_t>(i_point.node[k])];
        g.m11 += x.x * i_point.gradient[k].x;
        g.m12 += x.x * i_point.gradient[k].y;
        g.m21 += x.y * i_point.gradient[k].x;
        g.m22 += x.y * i_point.gradient[k].y;
    }
    return g;
}

struct PointStrain
{
    double j; // thickness over first thickness
    double cPlus, cMinus;
    double mean, radius; // of Mohr's circle of C
    double cosine, sine; // of phi
    double h1, h2;       // minor along phi, major across
};

// Needs j > 0.
PointStrain evaluateStrain(geometry::Mat2 const & i_gradient);

// (ln c+ - ln c-)/(c+ - c-), finite also where both are equal.
double mixedLogSlope(PointStrain const & i_strain);

// dh_11, dh_22, dh_12 in the eigenbasis for an unknown of the point.
struct StrainVariation
{
    double h11, h22, h12;
};

// Everything of a point's variation that does not depend on the unknown.
class StrainDerivative
{
public:
    StrainDerivative(geometry::Mat2 const & i_gradient, PointStrain const & i_strain)
        : m_turned(i_gradient * geometry::Mat2{i_strain.cosine, -i_strain.sine, i_strain.sine, i_strain.cosine}),
          m_minor(-1.0 / i_strain.cPlus), m_major(-1.0 / i_strain.cMinus), m_mixed(-0.5 * mixedLogSlope(i_strain))
    {
    }

    // For a node that moves along i_direction in the flat; i_turnedShape: its gradient in the eigenbasis.
    StrainVariation along(geometry::Vec2 i_turnedShape, geometry::Vec2 i_direction) const
    {
        double const g1 = i_direction.x * m_turned.m11 + i_direction.y * m_turned.m21;
        double const g2 = i_direction.x * m_turned.m12 + i_direction.y * m_turned.m22;
        return {m_minor * i_turnedShape.x * g1, m_major * i_turnedShape.y * g2,
                m_mixed * (i_turnedShape.x * g2 + i_turnedShape.y * g1)};
    }

private:
    geometry::Mat2 m_turned; // G R
    double m_minor, m_major, m_mixed;
};

// A vector of the point's frame in the eigenbasis, and back.
inline geometry::Vec2 toEigenbasis(PointStrain const & i_strain, geometry::Vec2 a)
{
    return {i_strain.cosine * a.x + i_strain.sine * a.y, i_strain.cosine * a.y - i_strain.sine * a.x};
}
inline geometry::Vec2 fromEigenbasis(PointStrain const & i_strain, geometry::Vec2 a)
{
    return {i_strain.cosine * a.x - i_strain.sine * a.y, i_strain.sine * a.x + i_strain.cosine * a.y};
}

} // namespace voz::onestep

#endif
