// SettingsNumbers.h: the fields of incremental settings as one row of numbers, in the record's order.

#ifndef SETTINGSNUMBERS_H
#define SETTINGSNUMBERS_H

#include "VOZIncrementalSettings.h"

#include <variant>
#include <vector>

namespace settingsnumbers
{

using Settings = VOZIncrementalSettings;
using Field = std::variant<double Settings::*, int Settings::*, bool Settings::*>;

inline std::vector<Field> const & fields() // all but the name and the output points
{
    static std::vector<Field> const all = {&Settings::m_nIntegrationPoints,
                                           &Settings::m_nSpareSetting,
                                           &Settings::m_dPunchAcceleration,
                                           &Settings::m_dPunchVelocityFlagSet,
                                           &Settings::m_dPunchVelocityFlagClear,
                                           &Settings::m_nAdaptivityLevel,
                                           &Settings::m_nAdaptivePasses,
                                           &Settings::m_dStrokeThreshold,
                                           &Settings::m_dAdaptSizeFactor,
                                           &Settings::m_nIadpn90,
                                           &Settings::m_dAdaptEnergyFactor,
                                           &Settings::m_dAdaptThicknessFactor,
                                           &Settings::m_dDT2MSFactor,
                                           &Settings::m_dBinderGapFactor,
                                           &Settings::m_dBinderAccelFactor,
                                           &Settings::m_bSmoothContact,
                                           &Settings::m_nHourglassType};
    return all;
}

// The fields, the number of output points, their positions.
inline std::vector<double> numbersOf(Settings const & settings)
{
    std::vector<double> numbers;
    for (Field const & field : fields())
        numbers.push_back(std::visit([&](auto member) { return static_cast<double>(settings.*member); }, field));
    numbers.push_back(settings.m_nOutputPoints);
    numbers.insert(numbers.end(), settings.m_padOutputPositions,
                   settings.m_padOutputPositions + settings.m_nOutputPoints);
    return numbers;
}

} // namespace settingsnumbers

#endif
