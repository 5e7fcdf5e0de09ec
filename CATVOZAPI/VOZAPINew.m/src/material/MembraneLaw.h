// MembraneLaw.h: forces per length of a sheet with normal anisotropy, from its two principal log strains.
//
//     rho = r/(1+r),  k2 = (1+r)^2/(1+2r),  D_1 = k2 (h1 + rho h2),  D_2 = k2 (h2 + rho h1),
//     ebar^2 = h1 D_1 + h2 D_2,  sigma_a = S(ebar) D_a,  n_a = t_f sigma_a,  t_f = t0 exp(B h3),  h3 = -(h1 + h2)
//
// Normalised to the uniaxial test. B is 1 up to e_a = theta n and falls beyond it; see the source. Metres, pascals,
// N/m.

#ifndef MEMBRANELAW_H
#define MEMBRANELAW_H

#include "material/HardeningCurve.h"

namespace voz::material
{

class MembraneLaw
{
public:
    MembraneLaw(onestep::MaterialLaw const & i_law, LawOptions const & i_options);

    double thickness() const { return m_thickness; } // of the flat sheet
    HardeningCurve const & curve() const { return m_curve; }
    double equivalentStrain(double i_h1, double i_h2) const;
    double moderationStart() const { return m_moderationStart; } // e_a; 0: no moderation

    // Of a layer, in any axes: stresses Pa from log strains, the shear strain being that of the tensor.
    struct Stress
    {
        double s11, s22, s12;
    };
    Stress stress(double i_e11, double i_e22, double i_e12) const;

    // The thickness of the force is t0 exp(B h3): B and dB/d ebar.
    struct Moderation
    {
        double share, slope;
    };
    Moderation moderation(double i_strain) const;
    double rho() const { return m_rho; }
    double k2() const { return m_k2; }

    struct Forces
    {
        double n1, n2;    // N/m
        double strain;    // ebar
        double stiffness; // t_f S k2, N/m: the size of the secant
    };
    Forces forces(double i_h1, double i_h2) const;

    // dn_11 = n11 dh_11 + n12 dh_22,  dn_22 = n21 dh_11 + n22 dh_22,  dn_12 = shear dh_12 (tensor shear)
    struct Tangent
    {
        Forces forces;
        double n11, n12, n21, n22, shear;
    };
    // i_secantShare: of the secant modulus in place of the tangent modulus; 0: the exact derivative.
    Tangent tangent(double i_h1, double i_h2, double i_secantShare = 0.0) const;

private:
    HardeningCurve m_curve;
    double m_thickness, m_rho, m_k2, m_moderationStart;
};

} // namespace voz::material

#endif
