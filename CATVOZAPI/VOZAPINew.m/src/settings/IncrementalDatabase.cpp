// IncrementalDatabase.cpp: the XML database of incremental settings; its format stands in
// docs/incremental-settings.md.

#include "CATUnicodeString.h"
#include "TextOf.h"
#include "VOZIncrementalSettings.h"
#include "VOZStatus.h"
#include "XmlDatabase.h"

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace
{

constexpr char const * kWhat = "a database of incremental settings";
constexpr char const * kBlanks = " \t\r\n";
constexpr std::size_t kLeastPositions = 3; // the start, the end and something between
constexpr std::size_t kMostPositions = 1000;

using Settings = VOZIncrementalSettings;
using Place = std::variant<double Settings::*, int Settings::*>;

// One number of the settings: element, units, bounds in SI, and the place that it fills; a whole number where that is
// an int.
struct SettingsNumber
{
    char const * element;
    Units units;
    double least;
    double greatest;
    Place place;
};

constexpr Units kVelocity = {{{"m/s", 1.0}, {"mm/s", 1e-3}}};

// clang-format off
constexpr std::array<SettingsNumber, 16> kNumbers = {{
    {"integrationPoints",      {},                              1.0,    10.0,   &Settings::m_nIntegrationPoints},
    {"spareSetting",           {},                              -1e6,   1e6,    &Settings::m_nSpareSetting},
    {"punchAcceleration",      {{{"m/s2", 1.0}}},               1.0,    1e6,    &Settings::m_dPunchAcceleration},
    {"punchVelocityFlagSet",   kVelocity,                       1e-3,   100.0,  &Settings::m_dPunchVelocityFlagSet},
    {"punchVelocityFlagClear", kVelocity,                       1e-3,   100.0,  &Settings::m_dPunchVelocityFlagClear},
    {"adaptivityLevel",        {},                              1.0,    10.0,   &Settings::m_nAdaptivityLevel},
    {"adaptivePasses",         {},                              1.0,    10000., &Settings::m_nAdaptivePasses},
    {"strokeThreshold",        {{{"mm", 1e-3}, {"m", 1.0}}},    0.0,    10.0,   &Settings::m_dStrokeThreshold},
    {"adaptSizeFactor",        {},                              0.01,   100.0,  &Settings::m_dAdaptSizeFactor},
    {"iadpn90",                {},                              -1.0,   100.0,  &Settings::m_nIadpn90},
    {"adaptEnergyFactor",      {},                              -100.0, 100.0,  &Settings::m_dAdaptEnergyFactor},
    {"adaptThicknessFactor",   {},                              0.0,    1.0,    &Settings::m_dAdaptThicknessFactor},
    {"dt2msFactor",            {},                              0.01,   100.0,  &Settings::m_dDT2MSFactor},
    {"binderGapFactor",        {},                              1e-3,   100.0,  &Settings::m_dBinderGapFactor},
    {"binderAccelFactor",      {},                              1e-3,   100.0,  &Settings::m_dBinderAccelFactor},
    {"hourglassType",          {},                              0.0,    10.0,   &Settings::m_nHourglassType},
}};
// clang-format on

constexpr char const * kSmoothContact = "smoothContact";
constexpr char const * kOutputPositions = "outputPositions";

std::vector<std::string> ElementNames()
{
    std::vector<std::string> names;
    for (SettingsNumber const & number : kNumbers)
        names.emplace_back(number.element);
    names.insert(names.end(), {kSmoothContact, kOutputPositions});
    return names;
}

// Letters to put in, take out or change until the one word is the other (Levenshtein's distance).
std::size_t Changes(std::string_view i_one, std::string_view i_other)
{
    std::vector<std::size_t> row(i_other.size() + 1); // changes from what was read of the one to each head of the other
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (char const letter : i_one)
    {
        std::size_t diagonal = row[0]++;
        for (std::size_t i = 1; i < row.size(); ++i)
        {
            std::size_t const changed = diagonal + (letter == i_other[i - 1] ? 0 : 1);
            diagonal = row[i];
            row[i] = std::min({changed, row[i] + 1, row[i - 1] + 1});
        }
    }
    return row.back();
}

std::string NearestName(std::string_view i_name)
{
    std::vector<std::string> const names = ElementNames();
    std::string_view const head = i_name.substr(0, 64); // what is longer is like none
    return *std::min_element(names.begin(), names.end(),
                             [head](std::string const & a, std::string const & b)
                             { return Changes(head, a) < Changes(head, b); });
}

using SettingsList = std::vector<std::unique_ptr<Settings>>;

// One file of the database.
class IncrementalFile : private XmlDatabaseFile
{
public:
    explicit IncrementalFile(std::string const & i_file) : XmlDatabaseFile(i_file, kWhat) {}

    void Read(PlacesOfNames & io_placeOfName, SettingsList & io_settings)
    {
        for (pugi::xml_node const & node : Root("incrementalSettings").children())
        {
            if (node.type() != pugi::node_element || std::string_view(node.name()) != "settings")
                Refuse(node, TextOf("<incrementalSettings> holds ", Shown(node)), "<settings name=\"...\">");
            CheckAttributes(node, {"name"});
            io_settings.push_back(std::make_unique<Settings>());
            std::string const name = NewName(node, "an entry", io_placeOfName);
            io_settings.back()->m_strName = VOZString(name.c_str());
            ReadElements(node, *io_settings.back());
        }
    }

private:
    void ReadElements(pugi::xml_node const & i_entry, Settings & io_settings) const
    {
        std::vector<std::string> seen;
        for (pugi::xml_node const & node : i_entry.children())
        {
            if (node.type() != pugi::node_element)
                Refuse(node, TextOf("<settings> holds ", Shown(node)), "elements alone");
            if (std::find(seen.begin(), seen.end(), node.name()) != seen.end())
                Refuse(node, TextOf(Tag(node), " stands twice"), "it once");
            seen.emplace_back(node.name());
            ReadElement(node, io_settings);
        }
    }

    void ReadElement(pugi::xml_node const & i_node, Settings & io_settings) const
    {
        std::string_view const element = i_node.name();
        auto const found = std::find_if(kNumbers.begin(), kNumbers.end(),
                                        [element](SettingsNumber const & number) { return element == number.element; });
        if (found != kNumbers.end())
            ReadNumber(i_node, *found, io_settings);
        else if (element == kSmoothContact)
            io_settings.m_bSmoothContact = YesOrNo(i_node);
        else if (element == kOutputPositions)
            ReadPositions(i_node, io_settings);
        else
            Refuse(i_node, TextOf("<settings> holds ", Tag(i_node)), TextOf("<", NearestName(element), ">, perhaps"));
    }

    void ReadNumber(pugi::xml_node const & i_node, SettingsNumber const & i_number, Settings & io_settings) const
    {
        double const value = Quantity(i_node, i_number.units, i_number.least, i_number.greatest);
        if (auto const * const pReal = std::get_if<double Settings::*>(&i_number.place))
            io_settings.** pReal = value;
        else if (auto const * const pWhole = std::get_if<int Settings::*>(&i_number.place))
        {
            int const whole = static_cast<int>(value);
            if (static_cast<double>(whole) < value || static_cast<double>(whole) > value)
                Refuse(i_node, TextOf(Tag(i_node), " is ", value), "a whole number");
            io_settings.** pWhole = whole;
        }
    }

    bool YesOrNo(pugi::xml_node const & i_node) const
    {
        CheckAttributes(i_node, {});
        std::string const text = Text(i_node);
        if (text != "yes" && text != "no")
            Refuse(i_node, TextOf(Tag(i_node), " is \"", text.substr(0, 40), "\""), "\"yes\" or \"no\"");
        return text == "yes";
    }

    // <outputPositions unit="%">0 25 50 100</outputPositions>: rising, from 0 to 100.
    void ReadPositions(pugi::xml_node const & i_node, Settings & io_settings) const
    {
        constexpr Units kPercent = {{{"%", 1.0}}};
        Factor(i_node, kPercent); // the positions are held in percent as well
        std::vector<double> positions;
        std::string const text = Text(i_node);
        for (std::size_t start = 0; start < text.size() && positions.size() <= kMostPositions;)
        {
            std::size_t const end = std::min(text.find_first_of(kBlanks, start), text.size());
            double const position = Number(i_node, std::string_view(text).substr(start, end - start), "a position");
            if (!positions.empty() && !(position > positions.back()))
                Refuse(i_node, TextOf("after ", positions.back(), " comes ", position), "positions that rise");
            positions.push_back(position);
            start = std::min(text.find_first_not_of(kBlanks, end), text.size());
        }
        if (positions.size() < kLeastPositions || positions.size() > kMostPositions)
            Refuse(i_node, TextOf("there are ", positions.size() > kMostPositions ? "more" : "fewer", " positions"),
                   TextOf(kLeastPositions, " to ", kMostPositions));
        if (positions.front() < 0.0 || positions.front() > 0.0 || positions.back() < 100.0 || positions.back() > 100.0)
            Refuse(i_node, TextOf("the positions run from ", positions.front(), " to ", positions.back()),
                   "0 to 100, from the start of the stroke to its end");
        io_settings.SetOutputPositions(static_cast<int>(positions.size()), positions.data());
    }
};

SettingsList Database(unsigned short const * i_strPath)
{
    if (!i_strPath || i_strPath[0] == 0)
        throw XmlDatabaseError(TextOf("no path was given; expected the file or folder of ", kWhat));
    PlacesOfNames placeOfName;
    SettingsList settings;
    for (std::string const & file : XmlDatabaseFiles(CATUnicodeString(i_strPath).ConvertToChar(), kWhat))
        IncrementalFile(file).Read(placeOfName, settings);
    return settings;
}

} // namespace

long ReadIncrementSettingsFromXMLDatabase(unsigned short const * i_strPath, CATUnicodeString * o_pstrError,
                                          VOZTPtrArray<VOZIncrementalSettings, int> & io_apSettings)
{
    if (o_pstrError)
        *o_pstrError = CATUnicodeString();
    try
    {
        for (std::unique_ptr<Settings> & pSettings : Database(i_strPath))
        {
            io_apSettings.Add(pSettings.get());
            static_cast<void>(pSettings.release()); // the list has it
        }
        return 0;
    }
    catch (XmlDatabaseError const & error)
    {
        if (o_pstrError)
            *o_pstrError = error.what();
        return E_FAIL;
    }
}
