// VOZMechanicalProp.h: a material's mechanical data, as the solver reads it. Fixed layout: never reorder.
//
// SI units. The curve is the power law K (e0 + e)^n, whose e0 follows from the yield stress, or a table of points. The
// fields between bytes 16 and 64 belong to the kernel.

#ifndef VOZMECHANICALPROP_H
#define VOZMECHANICALPROP_H

#include "ExportedByVOZAPINew.h"

#include <cstddef>

struct ExportedByVOZAPINew VOZMechanicalProp_s
{
    VOZMechanicalProp_s(); // all fields 0
    ~VOZMechanicalProp_s();
    VOZMechanicalProp_s(VOZMechanicalProp_s const &) = delete;
    VOZMechanicalProp_s & operator=(VOZMechanicalProp_s const &) = delete;

    // Completes a record: with points the curve type becomes 2, and a yield stress that was left at 0 becomes the
    // stress of the first point; without points the curve type becomes 0. A modulus left at 0 becomes that of
    // steel (210 GPa, 0.3). Nothing else changes; completing twice is completing once.
    static void EvalMechanicalDataForSolver(VOZMechanicalProp_s & io_prop);

    double m_dNValue;
    double m_dRValue;
    double m_dYoungsModulus; // Pa
    double m_dPoisson;
    double m_dDensity; // kg/m^3
    double m_adReserved40[3];
    int m_nCurveType; // 2: the table counts; else the power law
    int m_nReserved68;
    double m_dKValue; // Pa
    double m_dYield;  // Pa
    int m_nNumPoints;
    int m_nReserved92;
    double * m_padPoints; // 2 per point: log plastic strain, stress Pa; made by new[], owned by the record
};

static_assert(sizeof(VOZMechanicalProp_s) == 104, "drivers make this record");
static_assert(offsetof(VOZMechanicalProp_s, m_dNValue) == 0, "drivers fill this field");
static_assert(offsetof(VOZMechanicalProp_s, m_dRValue) == 8, "drivers fill this field");
static_assert(offsetof(VOZMechanicalProp_s, m_nCurveType) == 64, "drivers fill this field");
static_assert(offsetof(VOZMechanicalProp_s, m_dKValue) == 72, "drivers fill this field");
static_assert(offsetof(VOZMechanicalProp_s, m_dYield) == 80, "the blank-holder force reads this field");
static_assert(offsetof(VOZMechanicalProp_s, m_nNumPoints) == 88, "drivers fill this field");
static_assert(offsetof(VOZMechanicalProp_s, m_padPoints) == 96, "drivers fill this field");

#endif
