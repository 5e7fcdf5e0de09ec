// VOZBHFConfig.cpp: the blank-holder force.
//
// Along the outer edge of length L the holder restrains the sheet by R per unit length, of which both faces take half
// by friction:
//
//     R = |f| t yield,   F = L R / (2 mu)
//
// with the factor f of the full blank holder, or R from a given total force. The configuration file may overrule the
// result for each option.

#include "VOZBHFConfig.h"

#include "CATFatalError.h"
#include "ElemProperty.h"
#include "LoopFilters.h"
#include "Material.h"
#include "VOZCatConfigPaser.h"
#include "VOZMechanicalProp.h"
#include "VOZTemplatePath.h"

#include <cmath>

namespace
{
constexpr int kNumValues = 5;            // BHFValue1 .. BHFValue5
constexpr int kTotalForceOption = 5;     // the option whose force is the user's
constexpr double kLocked = 4448220000.0; // in place of the table's 0.8: the edge does not move
constexpr double kLeastFriction = 0.001;
constexpr double kLeastValue = 0.001;
} // namespace

// What the configuration file says about the blank-holder force.
class VOZBHFConfig::Settings
{
public:
    explicit Settings(char * i_path)
    {
        VOZCatConfigPaser file(i_path);
        file.ReadAndPaser(); // if it fails all lookups do, and the defaults stand
        char unitsKey[] = "BHFValueUnits";
        char rangeKey[] = "VOZBHRange";
        file.GetInteger(unitsKey, units);
        file.GetInteger(rangeKey, range);
        char valueKey[] = "BHFValue0";
        for (int k = 1; k <= kNumValues; ++k)
        {
            valueKey[sizeof valueKey - 2] = static_cast<char>('0' + k);
            found[k] = file.GetDouble(valueKey, values[k]) >= 0;
        }
    }

    int units = 0; // above 0: the values are forces per length
    int range = 0; // 1: the yield comes from the kernel's records
    bool found[kNumValues + 1] = {};
    double values[kNumValues + 1] = {}; // by option
};

CATImplementClass(VOZBHFConfig, CATBaseUnknown)

VOZBHFConfig::VOZBHFConfig(Friction const * i_friction, FullBlankHolder const * i_holder,
                           ElemProperty const * i_property, ProcessEdgeSequence const * i_sequence)
    : m_pFriction(i_friction), m_pFullBlankHolder(i_holder), m_pElemProperty(i_property), m_pSequence(i_sequence),
      m_dForce(0.0), m_dRestraint(0.0), m_dLength(0.0)
{
}

double VOZBHFConfig::EvalForce(VOZMechanicalProp_s const * i_records, int i_recordCount)
{
    char path[VOZTemplatePath::kPathSize] = "";
    if (VOZTemplatePath::GetConfigPath(path) != 0)
        return m_dForce;
    Settings const settings(path);
    EvalBase(Yield(i_records, i_recordCount, settings.range));
    Override(settings);
    return m_dForce;
}

double VOZBHFConfig::Yield(VOZMechanicalProp_s const * i_records, int i_recordCount, int i_range) const
{
    if (i_range != 1)
        return m_pElemProperty->averageYield();
    if (!i_records || i_recordCount == 0)
        return 0.0;
    double sum = 0.0;
    for (int i = 0; i < i_recordCount; ++i)
        sum += i_records[i].m_dYield;
    return sum / i_recordCount;
}

// The holder's own table, but for one value: whoever gives or chooses 0.8 means that the edge is held fast.
double VOZBHFConfig::Factor() const
{
    double const factor = m_pFullBlankHolder->factor();
    return factor == 0.8 ? kLocked : factor;
}

void VOZBHFConfig::EvalBase(double i_yield)
{
    double const factor = Factor();
    m_dLength = m_pSequence->outerBHLength() / 1000.0;
    m_dRestraint = std::fabs(factor) * m_pElemProperty->averageThickness() * i_yield;
    if (factor < 0.0)
    {
        VOZ_ASSERTION(m_dLength > 0.0, "m_dLength > 0.0");
        m_dRestraint = m_pFriction->coefficient() * 2.0 * m_pFullBlankHolder->totalForce() / m_dLength;
    }
    EvalForceFromRestraint();
}

void VOZBHFConfig::Override(Settings const & i_settings)
{
    int const option = m_pFullBlankHolder->option();
    if (option < 1 || option > kNumValues)
        return;
    bool const perLength = i_settings.units > 0;
    if (!i_settings.found[option])
    {
        if (option == kTotalForceOption && perLength)
        {
            m_dRestraint = m_dForce * 1000.0;
            EvalForceFromRestraint();
        }
        return;
    }
    double value = i_settings.values[option];
    if (value < 0.0)
        return;
    if (value < kLeastValue)
    {
        m_dRestraint = 0.0;
        m_dForce = 0.0;
        return;
    }
    if (option == kTotalForceOption)
        value = m_dForce; // the user's force; the file's value only says that it counts
    m_dRestraint = perLength ? value * 1000.0 : 2.0 * m_pFriction->coefficient() * value / m_dLength;
    EvalForceFromRestraint();
}

void VOZBHFConfig::EvalForceFromRestraint()
{
    double const mu = m_pFriction->coefficient();
    m_dForce = mu > kLeastFriction ? m_dLength * m_dRestraint / (2.0 * mu) : 0.0;
}
