// FormedExports.cpp: the formed blank for what comes after it, through the library's own writers: an LS-DYNA deck with
// its main deck, bulk data, the table of displacements.
//
// The library's stores are filled anew in the unit of each file. What the library writes goes to "<path>.part" and is
// renamed when it is whole.

#include "CardText.h"
#include "Exports.h"
#include "FormedParts.h"
#include "Job.h"
#include "OutputFile.h"

#include "Plots.h"
#include "Result.h"
#include "VOZDYNAWriter.h"
#include "VOZFile.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace voz::workbench
{
namespace
{
namespace fs = std::filesystem;

constexpr double kMetrePerMillimetre = 0.001;
constexpr double kPascalPerMegapascal = 1e6;
constexpr int kCurvePoints = 41; // of a power law
constexpr double kLastCurveStrain = 1.0;

void rename(std::string const & from, std::string const & to)
{
    std::error_code error;
    fs::rename(from, to, error);
    if (error)
        throw OutputError(to, error.message());
}

[[noreturn]] void refuse(std::string const & part, std::string const & path, int reason)
{
    std::error_code ignored;
    fs::remove(part, ignored);
    throw OutputError(path, reason != 0 ? std::strerror(reason) : "it is not whole");
}

// Calls write with an open stream.
template <class Write>
void throughStream(std::string const & path, Write write)
{
    std::string const part = path + ".part";
    errno = 0;
    std::FILE * const stream = VOZOpenFile(part.c_str(), "wb");
    if (stream == nullptr)
        throw OutputError(path, std::strerror(errno));
    write(stream);
    bool const isWhole = std::fflush(stream) == 0 && std::ferror(stream) == 0;
    int const reason = errno;
    if (std::fclose(stream) != 0 || !isWhole)
        refuse(part, path, isWhole ? errno : reason);
    rename(part, path);
}

// Whether the deck is there up to its last line.
bool endsWhole(std::string const & path)
{
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    std::streamoff const size = stream ? static_cast<std::streamoff>(stream.tellg()) : 0;
    std::streamoff const tail = 6; // "*END" with an end of line of one or two characters
    if (size < tail)
        return false;
    stream.seekg(size - tail);
    std::string const text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    return text.find("*END") != std::string::npos;
}

void fillStore(std::vector<ElementOutcome> const & elements, Result & o_store)
{
    for (std::size_t i = 0; i < elements.size(); ++i)
    {
        int const e = static_cast<int>(i) + 1;
        ElementOutcome const & element = elements[i];
        o_store.strain(e, 0, static_cast<float>(element.major));
        o_store.strain(e, 1, static_cast<float>(element.minor));
        o_store.theta(e, static_cast<float>(element.angle));
        o_store.equivalentStrain(e, static_cast<float>(std::log1p(element.equivalentStrain / 100.0)));
    }
}

void writeResultDeck(Outcome const & outcome, std::string const & path)
{
    VOZCatMesh mesh = outcome.part;
    for (int n = 1; n <= mesh.numNode(); ++n)
        for (double & coordinate : mesh.GetNodeData()[n])
            coordinate *= kMetrePerMillimetre;
    bool const hasLayers = !outcome.top.empty() && !outcome.bottom.empty();
    Result top(mesh);
    Result mid(mesh);
    Result bottom(mesh);
    fillStore(hasLayers ? outcome.top : outcome.elements, top);
    fillStore(outcome.elements, mid);
    fillStore(hasLayers ? outcome.bottom : outcome.elements, bottom);
    for (std::size_t i = 0; i < outcome.nodes.size(); ++i)
        top.NodeThickness(static_cast<int>(i) + 1,
                          static_cast<float>(outcome.nodes[i].thickness * kMetrePerMillimetre));
    Result * stores[3] = {&top, &mid, &bottom};
    std::string part = path + ".part";
    errno = 0;
    DYNAWriter(&mesh, stores, 3, part.data(), nullptr, kFormedPart).Write();
    int const reason = errno;
    if (!endsWhole(part))
        refuse(part, path, reason);
    rename(part, path);
}

// Yield stress over plastic strain: the points of the material, or its power law, denser where it bends.
void writeCurve(OutputFile & file, JobMaterial const & material)
{
    auto const point = [&file](double strain, double stress)
    { file << KeywordField(strain, 20) << KeywordField(stress * kPascalPerMegapascal, 20) << '\n'; };
    file << "*DEFINE_CURVE\n" << KeywordField(kFormedPart, 10) << '\n';
    for (std::array<double, 2> const & row : material.curve)
        point(row[0], row[1]);
    if (!material.curve.empty())
        return;
    double const first = std::pow(material.yield / material.strength, 1.0 / material.exponent);
    for (int i = 0; i < kCurvePoints; ++i)
    {
        double const share = static_cast<double>(i) / (kCurvePoints - 1);
        double const strain = kLastCurveStrain * share * share;
        point(strain, material.strength * std::pow(first + strain, material.exponent));
    }
}

// Plastic strain is given at the surfaces, where only the points of the Lobatto rule lie.
constexpr char const * kShellControl = "*CONTROL_SHELL\n"
                                       "$ ESORT 1: triangles by an element of their own.\n"
                                       "$ INTGRD 1: points in the middle and at both surfaces.\n"
                                       "$   WRPANG     ESORT\n"
                                       "                   1\n"
                                       "$  ROTASCL    INTGRD\n"
                                       "                   1\n";

void writeMainDeck(Outcome const & outcome, JobMaterial const & material, bool areSeveral, std::string const & path)
{
    OutputFile file(path);
    auto const card = [&file](auto const &... values) { ((file << KeywordField(values, 10)), ..., (file << '\n')); };
    file << "$ The formed blank with its thickness, strains and plastic strain.\n"
            "$ Units: m, kg, s, N, Pa.\n"
            "$ Loads, supports, contacts and the end of the run are to be added.\n";
    if (areSeveral)
        file << "$ The blank is of several materials; all elements have the first one here.\n";
    file << "*KEYWORD\n*TITLE\nFORMED BLANK\n" << kShellControl << "*INCLUDE\nformed.k\n*PART\nFORMED BLANK\n";
    card(kFormedPart, kFormedPart, kFormedPart);
    file << "*SECTION_SHELL\n$    SECID    ELFORM      SHRF       NIP\n";
    card(kFormedPart, 2, 0.833333, 3);
    double const thickness = outcome.firstThickness * kMetrePerMillimetre;
    card(thickness, thickness, thickness, thickness);
    file << "*MAT_PIECEWISE_LINEAR_PLASTICITY\n$      MID        RO         E        PR      SIGY\n";
    card(kFormedPart, material.density, material.modulus * kPascalPerMegapascal, material.poisson,
         material.yield * kPascalPerMegapascal);
    file << "$        C         P      LCSS\n";
    card(0.0, 0.0, kFormedPart);
    file << "$ no points here: the curve holds\n";
    card(0.0);
    card(0.0);
    writeCurve(file, material);
    file << "*END\n";
    file.Commit();
}
} // namespace

void CheckFormedMesh(Outcome const & i_outcome, std::string const & i_path)
{
    VOZCatMesh const & mesh = i_outcome.part;
    std::vector<char> isUsed(static_cast<std::size_t>(mesh.numNode()) + 1);
    for (int e = 1; e <= mesh.numElem(); ++e)
        for (int k = 0; k < 4; ++k)
            isUsed[static_cast<std::size_t>(mesh.elem(e, k))] = 1;
    for (std::size_t n = 1; n < isUsed.size(); ++n)
        if (isUsed[n] == 0)
            throw OutputError(i_path, "node " + std::to_string(n) + " of the part belongs to no element");
}

void WriteFormedDyna(Outcome const & i_outcome, std::vector<JobMaterial> const & i_materials,
                     std::string const & i_folder)
{
    writeResultDeck(i_outcome, i_folder + "/formed.k");
    writeMainDeck(i_outcome, i_materials.front(), i_materials.size() > 1, i_folder + "/formed_main.k");
}

void WriteFormedNastran(Outcome const & i_outcome, std::vector<JobMaterial> const & i_materials,
                        std::string const & i_folder)
{
    std::string const path = i_folder + "/formed.nas";
    CheckFormedMesh(i_outcome, path);
    VOZCatMesh mesh = i_outcome.part;
    Result store(mesh);
    for (std::size_t i = 0; i < i_outcome.elements.size(); ++i)
        store.thickness(static_cast<int>(i) + 1, static_cast<float>(i_outcome.elements[i].thickness));
    throughStream(path, [&](std::FILE * stream) { WriteNastranFile(stream, mesh, store); });
    WriteFormedBulkData(i_outcome, i_materials, i_folder + "/formed.bdf");
}

void WriteDisplacementTable(Outcome const & i_outcome, std::string const & i_path)
{
    VOZCatMesh mesh = i_outcome.part;
    Result store(mesh);
    for (std::size_t i = 0; i < i_outcome.nodes.size(); ++i)
        for (int c = 0; c < 3; ++c)
            store.disp(static_cast<int>(i) + 1, c,
                       static_cast<float>(i_outcome.nodes[i].displacement[static_cast<std::size_t>(c)]));
    throughStream(i_path, [&](std::FILE * stream) { WriteDisplacements(stream, mesh, store, "mm"); });
}

} // namespace voz::workbench
