// VOZIncrementalSettings.cpp: the record of an incremental simulation's settings.

#include "VOZIncrementalSettings.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace
{
// Closer together towards the end of the stroke, where the shape closes.
constexpr std::array<double, 10> kOutputPositions = {0.0, 10.0, 25.0, 40.0, 55.0, 70.0, 80.0, 90.0, 95.0, 100.0};

double * CopyOfPositions(int i_nNum, double const * i_padPositions)
{
    if (i_nNum <= 0 || !i_padPositions)
        return nullptr;
    double * const padCopy = new double[static_cast<std::size_t>(i_nNum)];
    std::copy(i_padPositions, i_padPositions + i_nNum, padCopy);
    return padCopy;
}
} // namespace

// For 1 mm of mild steel and a stroke of 40 mm these give 9 ms, 20 passes of refinement and, on elements refined to
// 1 mm, a time step of 1.8e-7 s, 51 000 steps: docs/incremental-settings.md has the reasons field by field.
VOZIncrementalSettings::VOZIncrementalSettings()
    : m_nIntegrationPoints(5), m_nSpareSetting(2), m_dPunchAcceleration(5000.0), m_dPunchVelocityFlagSet(2.5),
      m_dPunchVelocityFlagClear(5.0), m_nAdaptivityLevel(4), m_nAdaptivePasses(20), m_dStrokeThreshold(0.04),
      m_dAdaptSizeFactor(2.0), m_nIadpn90(-1), m_dAdaptEnergyFactor(2.0), m_dAdaptThicknessFactor(0.8),
      m_dDT2MSFactor(0.9), m_dBinderGapFactor(0.1), m_dBinderAccelFactor(0.9), m_bSmoothContact(false),
      m_nHourglassType(4), m_nOutputPoints(0), m_padOutputPositions(nullptr), m_nId(0), m_pParent(nullptr)
{
    SetOutputPositions(static_cast<int>(kOutputPositions.size()), kOutputPositions.data());
}

VOZIncrementalSettings::VOZIncrementalSettings(VOZIncrementalSettings const & i_other)
    : m_nOutputPoints(0), m_padOutputPositions(nullptr), m_nId(0), m_pParent(nullptr)
{
    *this = i_other;
}

VOZIncrementalSettings & VOZIncrementalSettings::operator=(VOZIncrementalSettings const & i_other)
{
    SetOutputPositions(i_other.m_nOutputPoints, i_other.m_padOutputPositions);
    m_strName = i_other.m_strName;
    m_nIntegrationPoints = i_other.m_nIntegrationPoints;
    m_nSpareSetting = i_other.m_nSpareSetting;
    m_dPunchAcceleration = i_other.m_dPunchAcceleration;
    m_dPunchVelocityFlagSet = i_other.m_dPunchVelocityFlagSet;
    m_dPunchVelocityFlagClear = i_other.m_dPunchVelocityFlagClear;
    m_nAdaptivityLevel = i_other.m_nAdaptivityLevel;
    m_nAdaptivePasses = i_other.m_nAdaptivePasses;
    m_dStrokeThreshold = i_other.m_dStrokeThreshold;
    m_dAdaptSizeFactor = i_other.m_dAdaptSizeFactor;
    m_nIadpn90 = i_other.m_nIadpn90;
    m_dAdaptEnergyFactor = i_other.m_dAdaptEnergyFactor;
    m_dAdaptThicknessFactor = i_other.m_dAdaptThicknessFactor;
    m_dDT2MSFactor = i_other.m_dDT2MSFactor;
    m_dBinderGapFactor = i_other.m_dBinderGapFactor;
    m_dBinderAccelFactor = i_other.m_dBinderAccelFactor;
    m_bSmoothContact = i_other.m_bSmoothContact;
    m_nHourglassType = i_other.m_nHourglassType;
    return *this;
}

VOZIncrementalSettings::~VOZIncrementalSettings()
{
    delete[] m_padOutputPositions;
}

VOZIncrementalSettings * VOZIncrementalSettings::Clone() const
{
    return new VOZIncrementalSettings(*this);
}

int VOZIncrementalSettings::GetID() const
{
    return m_nId;
}

void VOZIncrementalSettings::SetID(int i_nId)
{
    m_nId = i_nId;
}

int VOZIncrementalSettings::GetType() const
{
    return kType;
}

void VOZIncrementalSettings::SetParent(VOZIncrementalSettings * i_pParent)
{
    m_pParent = i_pParent;
}

VOZIncrementalSettings * VOZIncrementalSettings::GetParent() const
{
    return m_pParent;
}

void VOZIncrementalSettings::SetOutputPositions(int i_nNum, double const * i_padPositions)
{
    double * const padCopy = CopyOfPositions(i_nNum, i_padPositions); // the source may be this record's own table
    delete[] m_padOutputPositions;
    m_padOutputPositions = padCopy;
    m_nOutputPoints = padCopy ? i_nNum : 0;
}
