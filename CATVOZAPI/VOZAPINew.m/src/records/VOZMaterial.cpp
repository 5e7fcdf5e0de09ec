// VOZMaterial.cpp: a sheet material.

#include "VOZMaterial.h"

#include "VOZMechanicalProp.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>

namespace
{
double * CopyOfPoints(int i_nNumPoints, double const * i_padPoints)
{
    if (i_nNumPoints <= 0 || !i_padPoints)
        return nullptr;
    std::size_t const nValues = 2 * static_cast<std::size_t>(i_nNumPoints);
    double * const padCopy = new double[nValues];
    std::copy(i_padPoints, i_padPoints + nValues, padCopy);
    return padCopy;
}
} // namespace

// The numbers of the process model's own default material, in SI.
VOZMaterial::VOZMaterial()
    : m_dThickness(0.001), m_dNValue(0.21), m_dRValue(1.4), m_dKValue(586.054e6), m_dYield(227.527e6), m_nNumPoints(0),
      m_padPoints(nullptr), m_dDensity(7800.0), m_dYoungsModulus(210.0e9), m_dPoisson(0.3), m_dFldZero(0.0),
      m_nFldType(0), m_dSafetyMargin(0.0), m_dPlaneStrainTol(0.0), m_dThinningLimit(0.0), m_dThinningMargin(0.0),
      m_dShearLimit(0.0), m_dShearMargin(0.0), m_dWrinkleLimit(0.0)
{
}

VOZMaterial * VOZMaterial::Create()
{
    return new VOZMaterial;
}

VOZMaterial::VOZMaterial(VOZMaterial const & i_other)
    : VOZObject(i_other), m_strName(i_other.m_strName), m_dThickness(i_other.m_dThickness),
      m_dNValue(i_other.m_dNValue), m_dRValue(i_other.m_dRValue), m_dKValue(i_other.m_dKValue),
      m_dYield(i_other.m_dYield), m_nNumPoints(i_other.m_nNumPoints),
      m_padPoints(CopyOfPoints(i_other.m_nNumPoints, i_other.m_padPoints)), m_dDensity(i_other.m_dDensity),
      m_dYoungsModulus(i_other.m_dYoungsModulus), m_dPoisson(i_other.m_dPoisson), m_dFldZero(i_other.m_dFldZero),
      m_nFldType(i_other.m_nFldType), m_dSafetyMargin(i_other.m_dSafetyMargin),
      m_dPlaneStrainTol(i_other.m_dPlaneStrainTol), m_dThinningLimit(i_other.m_dThinningLimit),
      m_dThinningMargin(i_other.m_dThinningMargin), m_dShearLimit(i_other.m_dShearLimit),
      m_dShearMargin(i_other.m_dShearMargin), m_dWrinkleLimit(i_other.m_dWrinkleLimit)
{
}

VOZMaterial & VOZMaterial::operator=(VOZMaterial const & i_other)
{
    VOZMaterial copy(i_other);
    std::swap(m_padPoints, copy.m_padPoints); // the old table goes with the copy
    m_nNumPoints = copy.m_nNumPoints;
    m_strName = copy.m_strName;
    for (double VOZMaterial::*pField :
         {&VOZMaterial::m_dThickness, &VOZMaterial::m_dNValue, &VOZMaterial::m_dRValue, &VOZMaterial::m_dKValue,
          &VOZMaterial::m_dYield, &VOZMaterial::m_dDensity, &VOZMaterial::m_dYoungsModulus, &VOZMaterial::m_dPoisson,
          &VOZMaterial::m_dFldZero, &VOZMaterial::m_dSafetyMargin, &VOZMaterial::m_dPlaneStrainTol,
          &VOZMaterial::m_dThinningLimit, &VOZMaterial::m_dThinningMargin, &VOZMaterial::m_dShearLimit,
          &VOZMaterial::m_dShearMargin, &VOZMaterial::m_dWrinkleLimit})
        this->*pField = copy.*pField;
    m_nFldType = copy.m_nFldType;
    return *this;
}

VOZMaterial::~VOZMaterial()
{
    delete[] m_padPoints;
}

void VOZMaterial::EvalMechanicalDataForSolver(VOZMechanicalProp_s & o_prop) const
{
    o_prop.m_dNValue = m_dNValue;
    o_prop.m_dRValue = m_dRValue;
    o_prop.m_dKValue = m_dKValue;
    o_prop.m_dYield = m_dYield;
    o_prop.m_dDensity = m_dDensity;
    o_prop.m_dYoungsModulus = m_dYoungsModulus;
    o_prop.m_dPoisson = m_dPoisson;
}
