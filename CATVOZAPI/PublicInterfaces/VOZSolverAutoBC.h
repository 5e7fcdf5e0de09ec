// VOZSolverAutoBC.h: the wanted strains of an auto-strain run. Fixed layout: never reorder.
//
// The nodes come as reference, target, the strains as target, reference.

#ifndef VOZSOLVERAUTOBC_H
#define VOZSOLVERAUTOBC_H

#include <cstddef>

struct VOZSolverAutoBC_s
{
    int m_nReferenceNode = -1;       // 0-based; -1: absent
    int m_nTargetNode = -1;          // 0-based; -1: absent
    double m_dTargetStrain = 0.0;    // log strain
    double m_dReferenceStrain = 0.0; // log strain
    double m_dValue = 0.0;           // scales the first guess where it is positive
};

static_assert(sizeof(VOZSolverAutoBC_s) == 32, "drivers make this record");
static_assert(offsetof(VOZSolverAutoBC_s, m_nReferenceNode) == 0, "drivers fill this field");
static_assert(offsetof(VOZSolverAutoBC_s, m_nTargetNode) == 4, "drivers fill this field");
static_assert(offsetof(VOZSolverAutoBC_s, m_dTargetStrain) == 8, "drivers fill this field");
static_assert(offsetof(VOZSolverAutoBC_s, m_dReferenceStrain) == 16, "drivers fill this field");
static_assert(offsetof(VOZSolverAutoBC_s, m_dValue) == 24, "drivers fill this field");

#endif
