// VOZEngUtility.cpp: engineering formulas.

#include "VOZEngUtility.h"

// Lagrange's form, which gives the three values themselves at the three surfaces, without a rounding error.
double VOZEngUtility::EvalEquivalentStrainThroughThickness(double i_dT, double i_dMid, double i_dTop, double i_dBottom)
{
    return i_dMid * (1.0 - i_dT) * (1.0 + i_dT) + 0.5 * i_dT * ((1.0 + i_dT) * i_dTop - (1.0 - i_dT) * i_dBottom);
}
