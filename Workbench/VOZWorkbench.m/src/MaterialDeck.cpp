// MaterialDeck.cpp: the reader's 24 numbers, their places in the deck, and what they may be.

#include "MaterialDeck.h"

#include "FPIReader.h"
#include "Html.h"
#include "OutputFile.h"
#include "VOZFile.h"

#include <array>
#include <cmath>
#include <filesystem>
#include <memory>

namespace voz::workbench
{

namespace
{
struct Closed
{
    void operator()(std::FILE * i_file) const { std::fclose(i_file); }
};

constexpr int kRead = 0;
constexpr int kCutOff = 10; // of FPIReader
constexpr double kMillimetresPerInch = 25.4;

// A figure of the record, counted from 0 through its three lines of eight, and the range that the database takes.
struct Figure
{
    std::size_t place;
    char const * name;
    char const * unit;
    double factor; // to the workbench's unit
    double least;
    double most;
};
// clang-format off
constexpr std::array<Figure, 5> kFigures = {{
    {4,  "yield",     " MPa", 1.0,                 0.1,  10000.0},
    {5,  "n",         "",     1.0,                 0.0,  1.0},
    {6,  "r",         "",     1.0,                 0.05, 20.0},
    {7,  "K",         " MPa", 1.0,                 1.0,  10000.0},
    {13, "thickness", " mm",  kMillimetresPerInch, 0.01, 100.0},
}};
// clang-format on

// The reader's floats carry seven digits; what the deck said is their shortest text.
double AsWritten(float i_value)
{
    double const value = static_cast<double>(i_value);
    if (!std::isfinite(value) || value == 0.0)
        return value;
    double const scale = std::pow(10.0, 6.0 - std::floor(std::log10(std::abs(value))));
    return std::round(value * scale) / scale;
}

std::string PlaceOf(Figure const & i_figure)
{
    return "field " + std::to_string(i_figure.place % 8 + 1) + " of line " + std::to_string(i_figure.place / 8 + 1) +
           " of the first record of block V";
}

[[noreturn]] void Refuse(std::string const & i_path, std::string const & i_message)
{
    throw InputError(i_path, 0, 0, i_message);
}

std::array<double, kFigures.size()> FiguresOf(FPIReader const & i_reader, std::string const & i_path)
{
    std::array<float, 24> properties{};
    i_reader.getMatProperty(1, properties.data());
    std::array<double, kFigures.size()> figures{};
    std::string missing;
    for (std::size_t i = 0; i < kFigures.size(); ++i)
    {
        Figure const & figure = kFigures[i];
        double const value = AsWritten(properties[figure.place]);
        figures[i] = value * figure.factor;
        if (figure.least > 0.0 && value == 0.0)
            missing += (missing.empty() ? "" : ", ") + std::string(figure.name) + " (" + PlaceOf(figure) + ")";
    }
    if (!missing.empty())
        Refuse(i_path, "its material record is broken or missing: no " + missing);
    for (std::size_t i = 0; i < kFigures.size(); ++i)
    {
        Figure const & figure = kFigures[i];
        if (!(figures[i] >= figure.least && figures[i] <= figure.most))
            Refuse(i_path, std::string(figure.name) + " is " + Shortest(figures[i]) + figure.unit + " (" +
                               PlaceOf(figure) + "); expected " + Shortest(figure.least) + " to " +
                               Shortest(figure.most) + figure.unit);
    }
    return figures;
}

std::string TextOf(FPIReader const & i_reader, void (FPIReader::*i_get)(int, CATUnicodeString &) const)
{
    CATUnicodeString text;
    (i_reader.*i_get)(1, text);
    return text.ConvertToChar();
}

void RequireDeck(int i_error, std::string const & i_path)
{
    if (i_error == kCutOff)
        Refuse(i_path, "the file ends inside the control lines (block II): a deck goes on with a line of asterisks and "
                       "block V, the material properties");
    if (i_error != kRead)
        Refuse(i_path,
               "it is no deck: expected a header, a line of asterisks, and a line that begins with \"BLOCK II\"");
}
} // namespace

MaterialDeck ReadMaterialDeck(std::string const & i_path)
{
    std::unique_ptr<std::FILE, Closed> const file(VOZOpenFile(i_path.c_str(), "rb"));
    if (!file)
        Refuse(i_path, "there is no deck of this name that can be read");
    int error = kRead;
    FPIReader const reader(file.get(), error, false);
    RequireDeck(error, i_path);
    auto const [yield, exponent, anisotropy, strength, thickness] = FiguresOf(reader, i_path);
    MaterialDeck deck;
    deck.thickness = thickness;
    deck.entry.group = "from a deck";
    JobMaterial & material = deck.entry.material;
    material.yield = yield;
    material.exponent = exponent;
    material.anisotropy = anisotropy;
    material.strength = strength;
    material.name = TextOf(reader, &FPIReader::getMatName);
    std::string const description = TextOf(reader, &FPIReader::getMatDec);
    std::string const fileName = std::filesystem::path(i_path).filename().string();
    if (material.name.empty())
    {
        material.name = std::filesystem::path(i_path).stem().string();
        deck.remarks.push_back(
            "the deck does not name its material (block XXVI has no texts in quotes); it goes by the "
            "name of the file");
    }
    material.source = "deck " + fileName + (description.empty() ? "" : ": " + description);
    deck.remarks.emplace_back("a deck has no elastic constants and no density: those of steel stand here");
    deck.remarks.emplace_back("the points of a hardening curve are not taken from a deck: K, n and yield stand for it");
    return deck;
}

std::string DatabaseText(MaterialDeck const & i_deck)
{
    JobMaterial const & m = i_deck.entry.material;
    auto const line = [](char const * i_name, std::string const & i_unit, double i_value)
    {
        return std::string("    <") + i_name + (i_unit.empty() ? "" : " unit=\"" + i_unit + "\"") + ">" +
               Shortest(i_value) + "</" + i_name + ">\n";
    };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<materials>\n  <material name=\"" + Escaped(m.name) +
           "\" group=\"" + Escaped(i_deck.entry.group) + "\">\n" + line("thickness", "mm", i_deck.thickness) +
           line("K", "MPa", m.strength) + line("n", "", m.exponent) + line("r", "", m.anisotropy) +
           line("yield", "MPa", m.yield) + line("young", "GPa", m.modulus / 1000.0) + line("poisson", "", m.poisson) +
           line("density", "kg/m3", m.density) + "    <source of=\"K, n, r, yield, thickness\">" + Escaped(m.source) +
           "</source>\n    <source of=\"young, poisson, density\">assumed: usual values of steel, no deck holds "
           "them</source>\n  </material>\n</materials>\n";
}

} // namespace voz::workbench
