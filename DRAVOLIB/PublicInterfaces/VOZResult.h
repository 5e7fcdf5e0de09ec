// VOZResult.h: the results of one integration point, element or node on their way into a Result. Fixed layout.
//
// Strains are engineering percent, theta is in radians, 0 to pi; thickness and stress are in the unit of the route.

#ifndef VOZRESULT_H
#define VOZRESULT_H

#include <cstddef>

struct VOZResult
{
    float m_fMajorStrain = 0.0f;
    float m_fMinorStrain = 0.0f;
    float m_fTheta = 0.0f;
    float m_fThicknessStrain = 0.0f;
    float m_fThickness = 0.0f;
    float m_fEquivalentStrain = 0.0f;
    float m_fEquivalentStress = 0.0f;
    int m_nSafety = 0;
    int m_nForming = 0;
    int m_nNeighbourElems = 0; // elements in a node's average
};

static_assert(sizeof(VOZResult) == 40, "arrays of this record are zeroed and summed as a whole");
static_assert(offsetof(VOZResult, m_fTheta) == 8, "fixed order");
static_assert(offsetof(VOZResult, m_fEquivalentStress) == 24, "fixed order");
static_assert(offsetof(VOZResult, m_nSafety) == 28, "fixed order");
static_assert(offsetof(VOZResult, m_nNeighbourElems) == 36, "fixed order");

#endif
