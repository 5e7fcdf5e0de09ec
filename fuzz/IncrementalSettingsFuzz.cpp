// IncrementalSettingsFuzz.cpp: the reader of the incremental settings on any bytes.
//
// Each input is a database of one file. It gives settings that a run can be made of, or a message with the file's name.

#include "CATUnicodeString.h"
#include "VOZIncrementalSettings.h"
#include "XmlFuzz.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace
{
void Check(VOZIncrementalSettings const & i_settings)
{
    for (double value : {i_settings.m_dPunchAcceleration, i_settings.m_dPunchVelocityFlagSet,
                         i_settings.m_dPunchVelocityFlagClear, i_settings.m_dAdaptSizeFactor, i_settings.m_dDT2MSFactor,
                         i_settings.m_dBinderGapFactor, i_settings.m_dBinderAccelFactor})
        Require(std::isfinite(value) && value > 0.0, "what the run divides by is a number above 0");
    for (double value :
         {i_settings.m_dStrokeThreshold, i_settings.m_dAdaptEnergyFactor, i_settings.m_dAdaptThicknessFactor})
        Require(std::isfinite(value), "every number is finite");
    Require(!i_settings.m_strName.IsEmpty(), "every entry has a name");
    int const last = i_settings.m_nOutputPoints - 1;
    double const * const padPositions = i_settings.m_padOutputPositions;
    Require(last >= 2 && padPositions[0] == 0.0 && padPositions[last] == 100.0, "the positions cover the stroke");
    for (int i = 1; i <= last; ++i)
        Require(padPositions[i] > padPositions[i - 1], "the positions rise");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size)
{
    static InputFile file("voz-incremental-fuzz-");
    CATUnicodeString const path(file.Write(data, size).c_str());
    CATUnicodeString error;
    VOZTPtrArray<VOZIncrementalSettings, int> entries(10);
    long const result = ReadIncrementSettingsFromXMLDatabase(path.ConvertToUTF16().c_str(), &error, entries);
    Require(error.IsNull() == (result == 0), "a failure, and nothing else, comes with a message");
    Require(result == 0 || entries.GetSize() == 0, "a failure gives no entries");
    if (!error.IsNull())
        Require(error.SearchSubString(path) == 0, "a message begins with the file");
    for (int i = 0; i < entries.GetSize(); ++i)
        Check(*entries[i]);
    entries.DeleteAll();
    return 0;
}
