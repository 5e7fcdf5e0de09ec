// VOZFormingResult.h: what forming leaves in the sheet. Fixed layout: never reorder.
//
// Per integration point three log strains (e11, e22 and the engineering shear, in the element's own axes, the first
// axis along its first edge) for three layers, and three stresses. The points of element e stand at
// (stride x e + point) x 3; the stride is 4 if the part or the binder holds a quadrilateral, else 1. Four places per
// element are always allocated. All arrays are null until a solve has succeeded.

#ifndef VOZFORMINGRESULT_H
#define VOZFORMINGRESULT_H

#include "ExportedByVOZAPINew.h"

#include <cstddef>

struct VOZMesh_s;

struct ExportedByVOZAPINew VOZFormingResult_s
{
    explicit VOZFormingResult_s(VOZMesh_s * i_psMesh); // the mesh is lent and must outlive the record
    ~VOZFormingResult_s();
    VOZFormingResult_s(VOZFormingResult_s const &) = delete;
    VOZFormingResult_s & operator=(VOZFormingResult_s const &) = delete;

    void Clear(); // frees the arrays; the punch force becomes 0

    VOZMesh_s * m_psMesh;              // not owned
    double * m_padStrainComponentsMid; // made by new[], owned, like the next three
    double * m_padStrainComponentsTop; // the side of the element's normal
    double * m_padStrainComponentsBot;
    double * m_padEquivalentStress; // Pa: mid, top, bottom
    double m_dPunchForce;           // N
    void * m_apReserved48[3];
};

static_assert(sizeof(VOZFormingResult_s) == 72, "drivers make this record");
static_assert(offsetof(VOZFormingResult_s, m_padStrainComponentsMid) == 8, "drivers read this field");
static_assert(offsetof(VOZFormingResult_s, m_padStrainComponentsTop) == 16, "drivers read this field");
static_assert(offsetof(VOZFormingResult_s, m_padStrainComponentsBot) == 24, "drivers read this field");
static_assert(offsetof(VOZFormingResult_s, m_padEquivalentStress) == 32, "drivers read this field");
static_assert(offsetof(VOZFormingResult_s, m_dPunchForce) == 40, "drivers read this field");

#endif
