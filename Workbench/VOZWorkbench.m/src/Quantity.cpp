// Quantity.cpp: the units of the job file, and the nearest of several names.

#include "Quantity.h"

#include "VOZUserUnitBase.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>
#include <vector>

namespace voz::workbench
{

namespace
{
struct DimensionName
{
    Dimension dimension;
    std::string_view name;
};

constexpr std::array<DimensionName, 6> kNames = {{{Dimension::Length, "a length"},
                                                  {Dimension::Stress, "a stress"},
                                                  {Dimension::Force, "a force"},
                                                  {Dimension::ForcePerLength, "a force per length"},
                                                  {Dimension::Density, "a density"},
                                                  {Dimension::Ratio, "a share"}}};

std::vector<Unit> MakeUnits()
{
    // The base unit of each dimension comes first.
    // clang-format off
    return {
        {Dimension::Length, "mm", "mm", 1.0},
        {Dimension::Length, "cm", "cm", 10.0},
        {Dimension::Length, "m", "m", 1000.0},
        {Dimension::Length, "um", "um", 0.001},
        {Dimension::Length, "in", "in", VOZUserUnitBase::InchToMm(1.0)},
        {Dimension::Stress, "MPa", "MPa", 1.0},
        {Dimension::Stress, "Pa", "Pa", 1e-6},
        {Dimension::Stress, "kPa", "kPa", 1e-3},
        {Dimension::Stress, "GPa", "GPa", 1e3},
        {Dimension::Stress, "N/mm2", "N_per_mm2", 1.0},
        {Dimension::Stress, "bar", "bar", 0.1},
        {Dimension::Stress, "psi", "psi", VOZUserUnitBase::PsiToMPa(1.0)},
        {Dimension::Stress, "ksi", "ksi", VOZUserUnitBase::KsiToMPa(1.0)},
        {Dimension::Force, "N", "N", 1.0},
        {Dimension::Force, "kN", "kN", 1e3},
        {Dimension::Force, "MN", "MN", 1e6},
        {Dimension::Force, "lbf", "lbf", VOZUserUnitBase::LbfToNewton(1.0)},
        {Dimension::ForcePerLength, "N/mm", "N_per_mm", 1.0},
        {Dimension::ForcePerLength, "N/m", "N_per_m", 1e-3},
        {Dimension::ForcePerLength, "kN/m", "kN_per_m", 1.0},
        {Dimension::ForcePerLength, "lbf/in", "lbf_per_in", VOZUserUnitBase::Lbf_to_in_To_N_to_mm(1.0)},
        {Dimension::Density, "kg/m3", "kg_per_m3", 1.0},
        {Dimension::Density, "g/cm3", "g_per_cm3", 1000.0},
        {Dimension::Density, "kg/dm3", "kg_per_dm3", 1000.0},
        {Dimension::Ratio, "%", "percent", 1.0},
        {Dimension::Ratio, "1", "fraction", 100.0},
    };
    // clang-format on
}

std::string_view Trimmed(std::string_view i_text)
{
    auto const first = i_text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return i_text.substr(first, i_text.find_last_not_of(" \t") - first + 1);
}
} // namespace

std::span<Unit const> AllUnits()
{
    static std::vector<Unit> const units = MakeUnits();
    return units;
}

Unit const & BaseUnit(Dimension i_dimension)
{
    return *std::ranges::find(AllUnits(), i_dimension, &Unit::dimension);
}

std::string_view NameOf(Dimension i_dimension)
{
    return std::ranges::find(kNames, i_dimension, &DimensionName::dimension)->name;
}

std::string UnitsOf(Dimension i_dimension)
{
    std::string list;
    for (Unit const & unit : AllUnits())
        if (unit.dimension == i_dimension)
            list += (list.empty() ? "" : ", ") + std::string(unit.text);
    return list;
}

Unit const * FindUnit(std::string_view i_text)
{
    auto const found = std::ranges::find(AllUnits(), i_text, &Unit::text);
    return found == AllUnits().end() ? nullptr : &*found;
}

Unit const * FindSuffix(std::string_view i_suffix)
{
    auto const found = std::ranges::find(AllUnits(), i_suffix, &Unit::suffix);
    return found == AllUnits().end() ? nullptr : &*found;
}

std::optional<double> ParseNumber(std::string_view i_text)
{
    i_text = Trimmed(i_text);
    if (i_text.starts_with('+'))
        i_text.remove_prefix(1);
    double value = 0.0;
    auto const [end, error] = std::from_chars(i_text.data(), i_text.data() + i_text.size(), value);
    if (error != std::errc() || end != i_text.data() + i_text.size())
        return std::nullopt;
    return value;
}

ParsedQuantity ParseQuantity(std::string_view i_text, Dimension i_dimension)
{
    std::string const units = UnitsOf(i_dimension);
    std::string_view const text = Trimmed(i_text);
    std::string_view number = text;
    if (number.starts_with('+'))
        number.remove_prefix(1);
    double value = 0.0;
    auto const [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error != std::errc())
        return {0.0, "\"" + std::string(i_text) + "\" does not begin with a number", nullptr};
    std::string_view const unitText = Trimmed(number.substr(static_cast<std::size_t>(end - number.data())));
    if (unitText.empty())
        return {0.0, "\"" + std::string(i_text) + "\" has no unit (" + units + ")", nullptr};
    Unit const * const unit = FindUnit(unitText);
    if (unit == nullptr)
        return {0.0, "unknown unit \"" + std::string(unitText) + "\" (" + units + ")", nullptr};
    if (unit->dimension != i_dimension)
        return {0.0,
                "\"" + std::string(unitText) + "\" is a unit of " + std::string(NameOf(unit->dimension).substr(2)) +
                    ", not of " + std::string(NameOf(i_dimension).substr(2)) + " (" + units + ")",
                nullptr};
    return {value * unit->factor, "", unit};
}

int EditDistance(std::string_view a, std::string_view b)
{
    std::vector<int> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 1; i <= a.size(); ++i)
    {
        int diagonal = row[0];
        row[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j)
        {
            int const replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

std::string_view Nearest(std::string_view i_name, std::span<std::string const> i_names)
{
    std::string_view nearest;
    int least = 0;
    for (std::string const & name : i_names)
        if (int const distance = EditDistance(i_name, name); nearest.empty() || distance < least)
        {
            nearest = name;
            least = distance;
        }
    return nearest;
}

} // namespace voz::workbench
