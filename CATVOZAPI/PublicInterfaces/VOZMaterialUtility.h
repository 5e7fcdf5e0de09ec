// VOZMaterialUtility.h: the forming and the safety zone of a strain state.

#ifndef VOZMATERIALUTILITY_H
#define VOZMATERIALUTILITY_H

#include "ExportedByVOZAPINew.h"

class VOZMaterial;

class ExportedByVOZAPINew VOZMaterialUtility
{
public:
    // i_dMajor, i_dMinor: log strains in the plane of the sheet. The codes are those of the file route for the same
    // strains (safety -1 to 4, forming -1 and 1 to 5), and two of the kernel's own: safety 5 and forming 6, which the
    // read-back folds into 2 and 1.
    static void EvalFormingSafetyZones(VOZMaterial const * i_pMaterial, double i_dMajor, double i_dMinor,
                                       int & o_nForming, int & o_nSafety);
};

#endif
