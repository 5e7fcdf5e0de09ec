// SteppedLaw.cpp: radial return in closed form.
//
// With the law's own elasticity, sigma = E D h, the radial return of isotropic hardening is exact: trial strain h0 +
// dh, stress along it, size from the curve. Plasticity with the history in the stress, not in the strain: Y. Q. Guo, Y.
// M. Li, F. Bogard, K. Debray, J. Mater. Process. Technol. 151 (2004) 88 (direct scalar return along the trial stress).

#include "material/SteppedLaw.h"

#include <algorithm>
#include <cmath>

namespace voz::material
{

namespace
{

constexpr double kNoStrain = 1.0e-12;
// h0 in units of the yield strain. At 1 the rounded corner of the curve would let a continued step creep; at 5 the
// stress at its beginning is that of the end of the last step to four parts in ten thousand, and a reversal takes five
// times the elastic strain: 1 % where steps are tens of percent.
constexpr double kStartStrains = 5.0;

PlaneTensor operator+(PlaneTensor const & a, PlaneTensor const & b)
{
    return {a.m11 + b.m11, a.m22 + b.m22, a.m12 + b.m12};
}
PlaneTensor operator*(double s, PlaneTensor const & a)
{
    return {s * a.m11, s * a.m22, s * a.m12};
}
double product(PlaneTensor const & a, PlaneTensor const & b)
{
    return a.m11 * b.m11 + a.m22 * b.m22 + 2.0 * a.m12 * b.m12;
}
double trace(PlaneTensor const & a)
{
    return a.m11 + a.m22;
}

struct State
{
    PlaneTensor normal; // D h*
    double strain;      // e*
    HardeningCurve::Moduli moduli;
    MembraneLaw::Moderation moderation;
    double thickness; // t_f
};

PlaneTensor conjugate(MembraneLaw const & i_law, PlaneTensor const & h)
{
    double const rho = i_law.rho();
    return i_law.k2() * PlaneTensor{h.m11 + rho * h.m22, h.m22 + rho * h.m11, (1.0 - rho) * h.m12};
}

State stateOf(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step)
{
    State state{};
    PlaneTensor const total = i_history.start + i_step;
    state.normal = conjugate(i_law, total);
    state.strain = std::sqrt(std::max(0.0, product(total, state.normal)));
    state.moduli = i_law.curve().moduli(state.strain, i_history.strain);
    state.moderation = i_law.moderation(i_history.strain + state.strain);
    state.thickness = i_history.thickness * std::exp(-state.moderation.share * trace(i_step));
    return state;
}

} // namespace

StepHistory noHistory(MembraneLaw const & i_law)
{
    return {0.0, i_law.thickness(), {}};
}

SteppedForces steppedForces(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step)
{
    State const state = stateOf(i_law, i_history, i_step);
    double const scale = state.thickness * state.moduli.secant;
    return {scale * state.normal, scale * i_law.k2()};
}

SteppedTangent steppedTangent(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step)
{
    State const state = stateOf(i_law, i_history, i_step);
    SteppedTangent tangent{};
    tangent.direct = state.thickness * state.moduli.secant * i_law.k2();
    tangent.rho = i_law.rho();
    tangent.normal = state.normal;
    tangent.stress = state.thickness * state.moduli.secant * state.moderation.share;
    if (state.strain >= kNoStrain)
        tangent.plastic = state.thickness *
                          ((state.moduli.tangent - state.moduli.secant) / state.strain -
                           state.moduli.secant * state.moderation.slope * trace(i_step)) /
                          state.strain;
    return tangent;
}

PlaneTensor SteppedTangent::along(PlaneTensor const & i_dh) const
{
    double const onNormal = plastic * product(normal, i_dh) - stress * trace(i_dh);
    return direct * PlaneTensor{i_dh.m11 + rho * i_dh.m22, i_dh.m22 + rho * i_dh.m11, (1.0 - rho) * i_dh.m12} +
           onNormal * normal;
}

double hardenedStrain(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step)
{
    PlaneTensor const total = i_history.start + i_step;
    PlaneTensor const begin = i_history.start;
    double const now = std::sqrt(std::max(0.0, product(total, conjugate(i_law, total))));
    double const before = std::sqrt(std::max(0.0, product(begin, conjugate(i_law, begin))));
    return i_history.strain + std::max(now, before); // unloading takes no hardening back
}

StepHistory afterStep(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step)
{
    State const state = stateOf(i_law, i_history, i_step);
    double const reached = hardenedStrain(i_law, i_history, i_step);
    double const yield = i_law.curve().plastic(reached).stress / i_law.curve().youngsModulus();
    double const start = std::min(state.strain, kStartStrains * yield);
    double const scale = state.strain > kNoStrain ? start / state.strain : 0.0;
    return {reached - start, i_history.thickness * std::exp(-trace(i_step)), scale * (i_history.start + i_step)};
}

} // namespace voz::material
