// VOZMaterialUtility.h: the forming and the safety zone of a strain state.

#ifndef VOZMATERIALUTILITY_H
#define VOZMATERIALUTILITY_H

#include "ExportedByVOZAPINew.h"

class VOZMaterial;

class ExportedByVOZAPINew VOZMaterialUtility
{
public:
    // i_dMajor, i_dMinor: log strains in the plane of the sheet.
    //
    // Forming: -1 impossible (the major strain below the minor), 0 biaxial stretching, 1 plane strain, 2 to uniaxial
    // tension, 3 to pure shear, 4 to uniaxial compression, 5 beyond. Safety: -1 undefined, 0 failure, 1 marginal, 2
    // safe, 3 compression, 4 strong compression (wrinkling). The ranges are those of the file route for the same
    // strains; a point that rounding puts just below a curve counts as on it.
    //
    // Two codes more, which the read-back folds, for a sheet that is as good as unstrained (neither strain above 1e-4
    // in size): forming 6 in place of 1, since no strain has no state; safety 5 in place of 2, safe for want of strain.
    //
    // Without a material, or where a strain is no number, both codes are -1.
    static void EvalFormingSafetyZones(VOZMaterial const * i_pMaterial, double i_dMajor, double i_dMinor,
                                       int & o_nForming, int & o_nSafety);
};

#endif
