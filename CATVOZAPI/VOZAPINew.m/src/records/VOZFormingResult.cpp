// VOZFormingResult.cpp: what forming leaves in the sheet.

#include "VOZFormingResult.h"

#include <initializer_list>

VOZFormingResult_s::VOZFormingResult_s(VOZMesh_s * i_psMesh)
    : m_psMesh(i_psMesh), m_padStrainComponentsMid(nullptr), m_padStrainComponentsTop(nullptr),
      m_padStrainComponentsBot(nullptr), m_padEquivalentStress(nullptr), m_dPunchForce(0.0), m_apReserved48{}
{
}

VOZFormingResult_s::~VOZFormingResult_s()
{
    Clear();
}

void VOZFormingResult_s::Clear()
{
    for (double ** ppad :
         {&m_padStrainComponentsMid, &m_padStrainComponentsTop, &m_padStrainComponentsBot, &m_padEquivalentStress})
    {
        delete[] * ppad;
        *ppad = nullptr;
    }
    m_dPunchForce = 0.0;
}
