// SteppedLaw.h: the membrane law for a step of the stroke that finds the sheet strained and stressed by earlier ones.
//
//     h* = h0 + dh,   e*^2 = h* : D h*,   N = t_f S(e*) D h*,   t_f = t1 exp(B dh_3)
//
// dh is the log strain of this step. h0 is the strain that stands for the stress at its beginning: elastic for a
// reversal, on the hardening curve for a step that goes on as the last one did, which therefore leaves no trace of
// having been cut in two. The curve is the flat sheet's, entered where the earlier steps left it: S of strain e* beyond
// `strain`. With h0 = 0, strain = 0 and t1 = t0 this is MembraneLaw. Metres, pascals, N/m.

#ifndef STEPPEDLAW_H
#define STEPPEDLAW_H

#include "material/MembraneLaw.h"

namespace voz::material
{

struct PlaneTensor // symmetric; m12 is the tensor's own, not an engineering shear
{
    double m11 = 0.0, m22 = 0.0, m12 = 0.0;
};

struct StepHistory
{
    double strain = 0.0;    // of the curve, less what h0 stands for
    double thickness = 0.0; // t1
    PlaneTensor start;      // h0, in the frame in which the step is measured
};

// Of a sheet that comes flat and unstrained.
StepHistory noHistory(MembraneLaw const & i_law);

struct SteppedForces
{
    PlaneTensor force; // N/m
    double stiffness;  // t_f S k2
};
SteppedForces steppedForces(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step);

struct SteppedTangent
{
    // dN for a variation of the step's strain.
    PlaneTensor along(PlaneTensor const & i_dh) const;

    double direct, rho;     // t_f S k2
    PlaneTensor normal;     // D h*
    double stress, plastic; // factors of D h*: of -(B tr dh), and of D h* : dh
};
SteppedTangent steppedTangent(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step);

// The strain that the curve has been climbed to after the step.
double hardenedStrain(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step);

// The history that the step leaves to the next one, `start` in the frame of the step.
StepHistory afterStep(MembraneLaw const & i_law, StepHistory const & i_history, PlaneTensor const & i_step);

} // namespace voz::material

#endif
