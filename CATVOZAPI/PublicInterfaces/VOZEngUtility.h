// VOZEngUtility.h: engineering formulas.

#ifndef VOZENGUTILITY_H
#define VOZENGUTILITY_H

#include "ExportedByVOZAPINew.h"

class ExportedByVOZAPINew VOZEngUtility
{
public:
    VOZEngUtility() = delete;

    // The equivalent strain at the thickness coordinate i_dT (-1 bottom, 0 mid-plane, 1 top), on the parabola through
    // the values of the three surfaces.
    static double EvalEquivalentStrainThroughThickness(double i_dT, double i_dMid, double i_dTop, double i_dBottom);
};

#endif
