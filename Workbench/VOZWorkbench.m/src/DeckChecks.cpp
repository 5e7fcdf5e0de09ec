// DeckChecks.cpp: the checks of a deck.

#include "DeckChecks.h"

#include "DeckFolder.h"
#include "InputError.h"
#include "OutputFile.h"
#include "VOZAPIMesh.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

namespace voz::workbench
{

namespace
{
constexpr std::size_t kLongestLine = 80;    // columns
constexpr double kStrokeTolerance = 1e-3;   // relative: the punch's way by its curve against the stroke
constexpr double kSearchCell = 5.0;         // mm
constexpr double kMostTimeSteps = 300000.0; // of a run in hours; usual are 20 000 to 100 000

std::unique_ptr<VOZAPIMesh> KernelMesh(VOZCatMesh const & i_mesh)
{
    std::unique_ptr<VOZAPIMesh> mesh(VOZAPIMesh::Create());
    mesh->SetNumNodes(i_mesh.numNode());
    mesh->SetNumElements(i_mesh.numElem());
    if (!mesh->AllocateData())
        return mesh;
    for (int n = 1; n <= i_mesh.numNode(); ++n)
    {
        double place[3];
        std::copy_n(i_mesh.GetNodeData()[n], 3, place);
        mesh->SetNodeCoord(n - 1, place);
    }
    for (int e = 1; e <= i_mesh.numElem(); ++e)
        for (int k = 0; k < 4; ++k)
        {
            bool const isEnd = k == 3 && i_mesh.isTriangle(e) != 0;
            mesh->GetElements()[e - 1][k] = isEnd ? -1 : i_mesh.GetElemData()[e][k] - i_mesh.GetFirstNodeNumber() - 1;
        }
    return mesh;
}

// The way of the punch: the integral of its velocity over time, mm.
double WayOf(std::vector<std::array<double, 2>> const & i_curve)
{
    double metres = 0.0;
    for (std::size_t i = 1; i < i_curve.size(); ++i)
        metres += 0.5 * (i_curve[i][1] + i_curve[i - 1][1]) * (i_curve[i][0] - i_curve[i - 1][0]);
    return 1000.0 * metres;
}

bool IsRising(std::vector<IncrementalOutput> const & i_outputs)
{
    return !i_outputs.empty() &&
           std::ranges::adjacent_find(i_outputs, std::greater_equal<>{}, &IncrementalOutput::time) == i_outputs.end();
}

struct DeckText
{
    std::size_t longest = 0;        // of the lines but the comments, columns
    std::size_t longestInclude = 0; // of the names of include files
    bool isWhole = false;           // begins with *KEYWORD and ends with *END
    std::vector<std::string> includes;
};

DeckText ReadDeck(std::string const & i_path)
{
    DeckText text;
    std::istringstream lines(TextIfThere(i_path));
    bool hasBegun = false;
    bool isName = false;
    for (std::string line; std::getline(lines, line);)
    {
        std::size_t & longest = isName ? text.longestInclude : text.longest;
        longest = std::max(longest, line.starts_with('$') ? 0 : line.size());
        if (isName)
            text.includes.push_back(line);
        isName = line == "*INCLUDE";
        hasBegun = hasBegun || line == "*KEYWORD";
        text.isWhole = text.isWhole || (hasBegun && line == "*END");
    }
    return text;
}

// A mesh file is large: its end alone is read.
bool EndsAsADeck(std::string const & i_path)
{
    constexpr std::streamoff kTail = 16;
    std::ifstream file(i_path, std::ios::binary);
    file.seekg(0, std::ios::end);
    std::streamoff const size = file.tellg();
    if (!file || size <= 0)
        return false;
    file.seekg(-std::min(size, kTail), std::ios::end);
    std::string tail(std::istreambuf_iterator<char>(file), {});
    tail.erase(tail.find_last_not_of(" \r\n") + 1);
    return tail.ends_with("\n*END");
}

std::vector<std::string> FilesOf(std::string const & i_folder)
{
    std::vector<std::string> files;
    for (char const * const name :
         {kDeckFile, kOpenDeckFile, kOpenRemarksFile, "VOZBlank.mod", "VOZDie.mod", "VOZPunch.mod", "VOZBinder.mod"})
        if (std::error_code error; std::filesystem::is_regular_file(InFolder(i_folder, name), error))
            files.emplace_back(name);
    return files;
}
} // namespace

GapFigures GapOf(VOZCatMesh const & i_punch, VOZCatMesh const & i_die)
{
    constexpr double kUp[3] = {0.0, 0.0, 1.0};
    tagVOZFILEINFO info;
    info.m_nVersion = tagVOZFILEINFO::kVersion;
    GapFigures gap;
    if (VOZAPIEvalDistanceBetweenMeshes_Average(*KernelMesh(i_punch), *KernelMesh(i_die), kUp, kSearchCell, info,
                                                gap.least, gap.greatest) != 0)
        throw InputError("punch", 0, 0, "punch and die nowhere lie above each other along the stamping direction");
    if (!(gap.least > 0.0))
        throw InputError("punch", 0, 0,
                         "the punch must lie below the die along the stamping direction; the gap is " +
                             Fixed(gap.least, 3) + " to " + Fixed(gap.greatest, 3) + " mm");
    if (!(gap.least < gap.greatest)) // the driver takes such a gap for a measurement that failed
        throw InputError("punch", 0, 0,
                         "punch and die are " + Fixed(gap.least, 3) +
                             " mm apart everywhere: flat tools form nothing, and the route takes no such gap");
    return gap;
}

void RequireWholeDeck(std::string const & i_folder)
{
    std::string const path = InFolder(i_folder, kDeckFile);
    DeckText const deck = ReadDeck(path);
    if (!deck.isWhole)
        throw OutputError(path, "the deck does not reach from *KEYWORD to *END; is the disk full?");
    for (std::string const & mesh : deck.includes)
        if (!EndsAsADeck(mesh))
            throw OutputError(mesh, "the mesh is missing or does not end with *END; is the disk full?");
}

std::vector<OutcomeCheck> CheckDeck(IncrementalFigures & io_figures, bool i_wantsBinder, std::string const & i_folder)
{
    IncrementalFigures const & f = io_figures;
    io_figures.files = FilesOf(i_folder);
    DeckText const deck = ReadDeck(InFolder(i_folder, kDeckFile));
    double const way = WayOf(f.punchCurve);
    double const steps = f.massScalingTimeStep > 0.0 ? f.endTime / f.massScalingTimeStep : 0.0;
    std::vector<OutcomeCheck> checks = {
        {"stroke of the punch", Fixed(f.stroke, 3) + " mm", "above 0 mm", f.stroke > 0.0, false},
        {"least gap between punch and die", Fixed(f.leastGap, 3) + " mm", "above 0 mm", f.leastGap > 0.0, false},
        {"way of the punch by its velocity curve", Fixed(way, 3) + " mm",
         "the stroke, " + Fixed(f.stroke, 3) + " mm; a short one needs settings with a lower velocity",
         std::abs(way - f.stroke) <= kStrokeTolerance * f.stroke, false},
        {"output times rise", std::to_string(f.outputs.size()) + " times", "each after the one before",
         IsRising(f.outputs), false},
        {"the binder closes before the end", Fixed(1000.0 * f.binderCloseTime, 4) + " ms",
         "below " + Fixed(1000.0 * f.endTime, 4) + " ms", f.binderCloseTime < f.endTime, true},
        {"time steps of the run", Fixed(steps, 0),
         "at most " + Fixed(kMostTimeSteps, 0) + "; the blank's least element, " + Fixed(f.leastElement, 3) +
             " mm, bounds the time step: a mesh of even elements as incremental.blank helps",
         steps <= kMostTimeSteps, true},
        {"deck whole", deck.isWhole ? "yes" : "no", "from *KEYWORD to *END", deck.isWhole, false},
        {"longest line of the deck", std::to_string(deck.longest) + " columns", "at most 80",
         deck.longest <= kLongestLine, false},
        {"longest path in an include line", std::to_string(deck.longestInclude) + " columns",
         "at most 80, which every solver reads; a folder with a shorter path helps (--out)",
         deck.longestInclude <= kLongestLine, true}};
    if (i_wantsBinder)
        checks.push_back({"binder force", Fixed(f.binderForce, 1) + " N", "above 0 N", f.binderForce > 0.0, false});
    return checks;
}

} // namespace voz::workbench
