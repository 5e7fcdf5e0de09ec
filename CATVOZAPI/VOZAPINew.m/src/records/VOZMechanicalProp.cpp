// VOZMechanicalProp.cpp: a material's mechanical data.

#include "VOZMechanicalProp.h"

namespace
{
constexpr double kSteelYoungsModulus = 210.0e9; // Pa
constexpr double kSteelPoisson = 0.3;
constexpr int kPowerLaw = 0;
constexpr int kTable = 2;
} // namespace

VOZMechanicalProp_s::VOZMechanicalProp_s()
    : m_dNValue(0.0), m_dRValue(0.0), m_dYoungsModulus(0.0), m_dPoisson(0.0), m_dDensity(0.0), m_adReserved40{},
      m_nCurveType(kPowerLaw), m_nReserved68(0), m_dKValue(0.0), m_dYield(0.0), m_nNumPoints(0), m_nReserved92(0),
      m_padPoints(nullptr)
{
}

VOZMechanicalProp_s::~VOZMechanicalProp_s()
{
    delete[] m_padPoints;
}

void VOZMechanicalProp_s::EvalMechanicalDataForSolver(VOZMechanicalProp_s & io_prop)
{
    bool const bTable = io_prop.m_nNumPoints > 0 && io_prop.m_padPoints;
    io_prop.m_nCurveType = bTable ? kTable : kPowerLaw;
    if (bTable && io_prop.m_dYield == 0.0)
        io_prop.m_dYield = io_prop.m_padPoints[1];
    if (io_prop.m_dYoungsModulus == 0.0)
        io_prop.m_dYoungsModulus = kSteelYoungsModulus;
    if (io_prop.m_dPoisson == 0.0)
        io_prop.m_dPoisson = kSteelPoisson;
}
