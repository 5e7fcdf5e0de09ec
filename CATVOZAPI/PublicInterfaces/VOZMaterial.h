// VOZMaterial.h: a sheet material as the kernel takes it, in SI units.
//
// The fields are public, in this order. A strength law is either the power law (m_dKValue, m_dNValue, m_dYield) or, if
// m_nNumPoints is above 0, the table of m_padPoints. The zone limits are those of the configuration file, so that the
// kernel's zone codes equal the file route's for the same strains; a limit of 0 is switched off.
//
// Made by Create, given back by Destroy (see VOZObject.h). Copies are deep.

#ifndef VOZMATERIAL_H
#define VOZMATERIAL_H

#include "CATUnicodeString.h"
#include "VOZObject.h"

struct VOZMechanicalProp_s;

class ExportedByVOZAPINew VOZMaterial : public VOZObject
{
public:
    static VOZMaterial * Create(); // a mild steel of 1 mm without a name; the caller destroys it

    VOZMaterial(VOZMaterial const & i_other);
    VOZMaterial & operator=(VOZMaterial const & i_other);
    ~VOZMaterial() override;

    // Fills a record with what the solver asks of a material, except the table: whoever owns the record gives it its
    // own copy of the points and then completes it (VOZMechanicalProp_s::EvalMechanicalDataForSolver).
    void EvalMechanicalDataForSolver(VOZMechanicalProp_s & o_prop) const;

    CATUnicodeString m_strName;
    double m_dThickness;      // m
    double m_dNValue;         // hardening exponent
    double m_dRValue;         // normal anisotropy
    double m_dKValue;         // strength coefficient, Pa
    double m_dYield;          // Pa
    int m_nNumPoints;         // points of the table; 0: power law
    double * m_padPoints;     // 2 per point: log plastic strain, stress Pa; made by new[], owned
    double m_dDensity;        // kg/m^3
    double m_dYoungsModulus;  // Pa
    double m_dPoisson;        // elastic
    double m_dFldZero;        // forming limit at plane strain, engineering percent; 0 with type 0: from t and n
    int m_nFldType;           // 0: standard curve; 1: its linear term halved
    double m_dSafetyMargin;   // percent of major strain below the limit curve
    double m_dPlaneStrainTol; // half-width of the plane-strain band, percent of the major strain
    double m_dThinningLimit;  // true thickness strain, negative
    double m_dThinningMargin; // true thickness strain, negative
    double m_dShearLimit;     // engineering measure; see the configuration file
    double m_dShearMargin;    // likewise
    double m_dWrinkleLimit;   // kept; no zone depends on it

private:
    VOZMaterial();
};

#endif
