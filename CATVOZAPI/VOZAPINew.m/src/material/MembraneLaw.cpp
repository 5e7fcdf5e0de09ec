// MembraneLaw.cpp: deformation theory of plasticity for a membrane.
//
// R. Hill, Proc. R. Soc. A 193 (1948) 281 (anisotropy). The membrane of the exact theory loses ellipticity at large
// strain (S. Stoeren, J. R. Rice, J. Mech. Phys. Solids 23 (1975) 421; J. W. Hutchinson, K. W. Neale, in Mechanics of
// Sheet Metal Forming, 1978, 127); the thinning that enters the force is therefore moderated beyond ebar = e_a,
// together with the floor of the curve:
//
//     B = (e_a/ebar) (1 + ln(ebar/e_a)),   B' = -(e_a/ebar^2) ln(ebar/e_a)
//
// Tangent, with Q = (Et - S)/ebar^2 and T_a = -B + h3 B' D_a/ebar:
//     M_ab = S k2 (1 or rho) + Q D_a D_b + sigma_a T_b,   M_s = S k2 (1 - rho)

#include "material/MembraneLaw.h"

#include <algorithm>
#include <cmath>

namespace voz::material
{

namespace
{
constexpr double kNoStrain = 1.0e-12;            // ebar below which the tangent is the elastic one
constexpr double kLeastModerationStart = 1.0e-3; // keeps B defined for a material without hardening
} // namespace

MembraneLaw::MembraneLaw(onestep::MaterialLaw const & i_law, LawOptions const & i_options)
    : m_curve(i_law, i_options), m_thickness(i_law.thickness), m_rho(i_law.rValue / (1.0 + i_law.rValue)),
      m_k2((1.0 + i_law.rValue) * (1.0 + i_law.rValue) / (1.0 + 2.0 * i_law.rValue)),
      m_moderationStart(
          i_options.theta > 0.0 ? std::max(kLeastModerationStart, i_options.theta * m_curve.neckingStrain()) : 0.0)
{
}

double MembraneLaw::equivalentStrain(double i_h1, double i_h2) const
{
    double const squared = m_k2 * (i_h1 * i_h1 + i_h2 * i_h2 + 2.0 * m_rho * i_h1 * i_h2);
    return std::sqrt(std::max(0.0, squared));
}

MembraneLaw::Stress MembraneLaw::stress(double i_e11, double i_e22, double i_e12) const
{
    double const radius = std::hypot(0.5 * (i_e11 - i_e22), i_e12);
    double const mean = 0.5 * (i_e11 + i_e22);
    double const scale = m_curve.moduli(equivalentStrain(mean + radius, mean - radius)).secant * m_k2;
    return {scale * (i_e11 + m_rho * i_e22), scale * (i_e22 + m_rho * i_e11), scale * (1.0 - m_rho) * i_e12};
}

MembraneLaw::Moderation MembraneLaw::moderation(double i_strain) const
{
    if (m_moderationStart == 0.0 || i_strain <= m_moderationStart)
        return {1.0, 0.0};
    double const share = m_moderationStart / i_strain;
    double const logarithm = std::log(i_strain / m_moderationStart);
    return {share * (1.0 + logarithm), -share / i_strain * logarithm};
}

MembraneLaw::Forces MembraneLaw::forces(double i_h1, double i_h2) const
{
    double const strain = equivalentStrain(i_h1, i_h2);
    double const thickness = m_thickness * std::exp(-moderation(strain).share * (i_h1 + i_h2));
    double const scale = thickness * m_curve.moduli(strain).secant * m_k2;
    return {scale * (i_h1 + m_rho * i_h2), scale * (i_h2 + m_rho * i_h1), strain, scale};
}

MembraneLaw::Tangent MembraneLaw::tangent(double i_h1, double i_h2, double i_secantShare) const
{
    double const strain = equivalentStrain(i_h1, i_h2);
    HardeningCurve::Moduli const moduli = m_curve.moduli(strain);
    Moderation const moderated = moderation(strain);
    double const h3 = -(i_h1 + i_h2);
    double const thickness = m_thickness * std::exp(moderated.share * h3);
    double const d1 = m_k2 * (i_h1 + m_rho * i_h2);
    double const d2 = m_k2 * (i_h2 + m_rho * i_h1);
    bool const strained = strain >= kNoStrain;
    double const bend = (1.0 - i_secantShare) * (moduli.tangent - moduli.secant);
    double const q = strained ? bend / (strain * strain) : 0.0;
    double const turn = strained ? h3 * moderated.slope / strain : 0.0;
    double const t1 = -moderated.share + turn * d1;
    double const t2 = -moderated.share + turn * d2;
    double const s1 = moduli.secant * d1;
    double const s2 = moduli.secant * d2;
    double const direct = moduli.secant * m_k2;
    Tangent result{};
    result.forces = {thickness * s1, thickness * s2, strain, thickness * direct};
    result.n11 = thickness * (direct + q * d1 * d1 + s1 * t1);
    result.n12 = thickness * (direct * m_rho + q * d1 * d2 + s1 * t2);
    result.n21 = thickness * (direct * m_rho + q * d1 * d2 + s2 * t1);
    result.n22 = thickness * (direct + q * d2 * d2 + s2 * t2);
    result.shear = thickness * direct * (1.0 - m_rho);
    return result;
}

} // namespace voz::material
