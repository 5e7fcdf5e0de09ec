// Quantity.h: a number with its unit, as a job writes it: 'thickness = "0.78 mm"' or 'thickness_mm = 0.78'.
//
// Each dimension has one base unit, in which the workbench holds it: mm, MPa, N, N/mm, kg/m^3, percent.

#ifndef QUANTITY_H
#define QUANTITY_H

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace voz::workbench
{

enum class Dimension
{
    Length,
    Stress,
    Force,
    ForcePerLength,
    Density,
    Ratio
};

struct Unit
{
    Dimension dimension;
    std::string_view text;   // as in a text value: "N/mm"
    std::string_view suffix; // as in a key: "N_per_mm"
    double factor;           // to the base unit
};

std::span<Unit const> AllUnits();
Unit const & BaseUnit(Dimension i_dimension);
std::string_view NameOf(Dimension i_dimension);     // "a length"
std::string UnitsOf(Dimension i_dimension);         // "mm, cm, m, um, in"
Unit const * FindUnit(std::string_view i_text);     // by text; null if there is none
Unit const * FindSuffix(std::string_view i_suffix); // by key suffix

struct ParsedQuantity
{
    double value = 0.0; // in the base unit, if error is empty
    std::string error;  // what is wrong with the text
    Unit const * unit = nullptr;
};

// "0.78 mm", "9.4 N/mm", "25 %": a number, at least one blank or none, a unit of the dimension.
ParsedQuantity ParseQuantity(std::string_view i_text, Dimension i_dimension);

// A whole number text, independent of the locale; nothing if there is anything else in it.
std::optional<double> ParseNumber(std::string_view i_text);

// The smallest number of insertions, deletions and replacements that turn one text into the other.
int EditDistance(std::string_view a, std::string_view b);

// The nearest of the names; the first of equals. Empty only if there is none.
std::string_view Nearest(std::string_view i_name, std::span<std::string const> i_names);

} // namespace voz::workbench

#endif
