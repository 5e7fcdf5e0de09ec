// FileRoute.cpp: the steps of a run by the file route.

#include "FileRoute.h"

#include "CATError.h"
#include "CATUnicodeString.h"
#include "FileRouteParts.h"
#include "OutputFile.h"
#include "Quantity.h"
#include "Solver.h"
#include "TextFile.h"
#include "VOZConsole.h"
#include "VOZHost.h"
#include "VOZProcess.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>

namespace voz::workbench
{

namespace
{
constexpr std::size_t kPathBytes = 256;     // of the configuration's path and of the solver's folder, zero included
constexpr std::size_t kCommandBytes = 1024; // of the child's command line, zero included
constexpr char const * kSpringbackMark = ".spo"; // anywhere in a path, it selects another reader
constexpr char const * kDeck = "deck.fpi";
constexpr char const * kOutput = "deck.fpo";
constexpr char const * kConfiguration = "config.cfg";
constexpr char const * kSolveLog = "deck.log"; // the solver program's own: its iterations
constexpr char const * kSolveSummary = "deck.sum";
constexpr char const * kRawLog = "solver.raw";
constexpr char const * kLog = "solver.log";
constexpr char const * kDeckEnd = "0 0 0 1 \n************************\n"; // the last row and separator of every deck

// The host in force, with the route's folder for an install root and without a document: the settings of the job are
// all that counts.
class RouteHost : public VOZHost
{
public:
    explicit RouteHost(std::string i_root) : mRoot(std::move(i_root)), mOuter(VOZHost::Current()) { Install(this); }
    ~RouteHost() override { Install(&mOuter); }
    RouteHost(RouteHost const &) = delete;
    RouteHost & operator=(RouteHost const &) = delete;

    std::optional<std::string> EnvironmentValue(std::string const & i_name) override
    {
        return i_name == "VOZDRAVO3D" ? mRoot : mOuter.EnvironmentValue(i_name);
    }
    std::shared_ptr<VOZHostDocument> CurrentDocument() override { return nullptr; }
    void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) override
    {
        mOuter.BrokenContract(i_text, i_file, i_line);
    }

private:
    std::string mRoot;
    VOZHost & mOuter;
};

std::string In(std::string const & i_folder, char const * i_name)
{
    return (std::filesystem::path(i_folder) / i_name).string();
}

void WriteText(std::string const & i_path, std::string const & i_text)
{
    OutputFile file(i_path);
    file << i_text;
    file.Commit();
}

std::string SolverSettings(Job const & i_job, int i_threads)
{
    JobMaterial const & material = i_job.materials.front();
    return "YoungsModulus=" + Shortest(material.modulus * 1e6) + "\nPoissonsRatio=" + Shortest(material.poisson) +
           "\nToolFriction=" + (i_job.toolFriction ? "1" : "0") + "\nThreads=" + std::to_string(i_threads) + "\n";
}

// Solver::write answers for the opening of the file alone; a full disk shows in what stands there.
void CheckDeck(std::string const & i_path)
{
    std::string text;
    try
    {
        text = ReadTextFile(i_path, std::size_t{1} << 40);
    }
    catch (InputError const & error)
    {
        throw OutputError(i_path, error.Message());
    }
    std::string tail = text.substr(text.size() - std::min<std::size_t>(text.size(), 64));
    std::erase(tail, '\r'); // text mode of some systems
    if (!tail.ends_with(kDeckEnd))
        throw OutputError(i_path, "the deck is cut off after " + std::to_string(text.size()) + " bytes (disk full?)");
}

std::string LastLines(std::string const & i_text, int i_count)
{
    std::size_t begin = i_text.size();
    for (int i = 0; i <= i_count && begin != std::string::npos && begin > 0; ++i)
        begin = i_text.rfind('\n', begin - 1);
    return begin == std::string::npos || begin == 0 ? i_text : i_text.substr(begin + 1);
}

void WriteDeck(Solver & io_solver, Job const & i_job, std::string const & i_deck)
{
    switch (io_solver.write(i_deck.c_str(), false, i_job.toolFriction, 0))
    {
    case 0:
        return CheckDeck(i_deck);
    case 1:
        throw OutputError(i_deck, "the file cannot be opened");
    default:
        throw InputError(i_job.mesh, 0, 0, "the free edges of the part do not form simple closed loops");
    }
}

void StartSolver(Solver & io_solver, FileRouteOptions const & i_options, std::string const & i_deck)
{
    int status = 0;
    {
        VOZStreamsToFile const aside(In(i_options.folder, kRawLog).c_str(), i_options.isSolverSilent);
        std::string const quoted = "\"" + i_options.solver + "\"";
        status = io_solver.run(quoted.c_str(), i_deck.c_str());
    }
    WriteText(In(i_options.folder, kLog), SolverWords(In(i_options.folder, kRawLog)));
    std::error_code ignored;
    std::filesystem::remove(In(i_options.folder, kRawLog), ignored);
    if (status != 0)
        throw SolverError("the solver program " + i_options.solver + " could not be started");
}

std::string TextIfThere(std::string const & i_path)
{
    std::error_code error;
    return std::filesystem::is_regular_file(i_path, error) ? ReadTextFile(i_path, std::size_t{1} << 30) : std::string();
}

// The solver's iterations, without the times, which differ from run to run.
std::string SolverTable(std::string const & i_folder)
{
    std::string const table = TextIfThere(In(i_folder, kSolveLog));
    if (table.empty())
        return TextIfThere(In(i_folder, kLog));
    std::istringstream lines(table);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("time:"))
            kept += line + "\n";
    return kept;
}

// What the solver program says of its own solve: lines of a name and a value.
std::vector<OutcomeCheck> SolverChecks(std::string const & i_folder)
{
    struct Limit
    {
        char const * name;
        char const * text;
        double most;
    };
    // clang-format off
    constexpr std::array<Limit, 3> kLimits = {{{"residual", "equilibrium residual", 1e-8},
                                               {"holding share", "share of forces that do not balance", 0.05},
                                               {"necking points", "points thinner than necking allows", 0.0}}};
    // clang-format on
    std::vector<OutcomeCheck> checks;
    std::istringstream lines(TextIfThere(In(i_folder, kSolveSummary)));
    for (std::string line; std::getline(lines, line);)
        for (Limit const & limit : kLimits)
        {
            if (!line.starts_with(limit.name))
                continue;
            std::optional<double> const value = ParseNumber(line.substr(std::string(limit.name).size()));
            if (value)
                checks.push_back(
                    {limit.text, Shortest(*value), "at most " + Shortest(limit.most), *value <= limit.most, true});
        }
    return checks;
}

void RequireOutput(FileRouteOptions const & i_options)
{
    std::string const path = In(i_options.folder, kOutput);
    if (std::error_code error; std::filesystem::is_regular_file(path, error))
        return;
    std::string words = LastLines(ReadTextFile(In(i_options.folder, kLog), std::size_t{1} << 30), 8);
    while (words.ends_with('\n'))
        words.pop_back();
    throw SolverError("the solver left no result (" + path + "): it did not converge, or it ended early" +
                      (words.empty() ? "" : "; its last words:\n" + words));
}
} // namespace

std::string FindSolverProgram(std::string const & i_given)
{
    std::string path = i_given;
    if (path.empty())
        path = VOZHost::Current().EnvironmentValue("VOZONESTEPSOLVER").value_or("");
    if (path.empty())
    {
        std::array<unsigned short, 4096> buffer{};
        VOZProcess::GetModuleFileNameW(nullptr, buffer.data(), static_cast<unsigned>(buffer.size()) - 1);
        std::filesystem::path const program(CATUnicodeString(buffer.data()).ConvertToChar());
        path = (program.parent_path() / ("OneStepSolver" + program.extension().string())).string();
    }
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        throw InputError(path, 0, 0, "there is no solver program here; --solver or VOZONESTEPSOLVER names another");
    return std::filesystem::absolute(path, error).string();
}

void CheckFileRoute(Job const & i_job)
{
    if (i_job.materials.size() == 1)
    {
        if (JobMaterial const & material = i_job.materials[0]; !material.set.empty())
            throw InputError(i_job.path, material.line, 0,
                             "the file route gives the one material to all elements; leave out its set \"" +
                                 material.set + "\"");
        return;
    }
    std::string names;
    for (JobMaterial const & material : i_job.materials)
        names += (names.empty() ? "\"" : ", \"") + material.name + "\"";
    throw InputError(i_job.path, i_job.materials[1].line, 0,
                     "the file route carries one material, the job has " + std::to_string(i_job.materials.size()) +
                         ": " + names);
}

void CheckRoutePath(std::string const & i_folder, std::string const & i_solver)
{
    auto const refuse = [&i_folder](std::string const & i_reason) {
        throw InputError(i_folder, 0, 0, "the file route cannot work in this folder: " + i_reason + "; choose another");
    };
    if (i_folder.find(kSpringbackMark) != std::string::npos)
        refuse("its path holds \".spo\", which marks springback results");
    if (i_folder.find('"') != std::string::npos || i_solver.find('"') != std::string::npos)
        refuse("a path with a quote cannot stand on a command line");
    if (std::filesystem::path::preferred_separator == '/' &&
        (i_folder.find('\\') != std::string::npos || i_solver.find('\\') != std::string::npos))
        refuse("a path with a backslash is read as one with more folders");
    for (char const c : i_folder)
        if (static_cast<unsigned char>(c) < 0x20)
            refuse("its path holds a control character");
    if (std::size_t const length = In(i_folder, kConfiguration).size(); length >= kPathBytes)
        refuse("its path is " + std::to_string(length - kPathBytes + 1) + " characters too long");
    std::size_t const command =
        std::string("\"\" -pfpi \"\" -sd \"\"").size() + i_solver.size() + In(i_folder, kDeck).size() + i_folder.size();
    if (command >= kCommandBytes)
        refuse("the solver's command line would be " + std::to_string(command - kCommandBytes + 1) +
               " characters too long");
}

Outcome RunFileRoute(Job const & i_job, JobModel const & i_model, FileRouteOptions const & i_options,
                     RunObserver & io_observer)
{
    CheckFileRoute(i_job);
    CheckRoutePath(i_options.folder, i_options.solver);
    VOZCatMesh const & mesh = i_model.mesh.mesh;

    io_observer.Enter("stamping frame");
    Tipping const tipping = FindTipping(i_job, i_model);
    Process process;
    BuildProcess(i_job, i_model, tipping, process);
    for (std::string const & warning : process.warnings)
        io_observer.Warning(warning);

    io_observer.Enter("deck");
    WriteText(In(i_options.folder, kConfiguration), ConfigurationText(i_job.limits));
    WriteText(In(i_options.folder, "solver.cfg"), SolverSettings(i_job, i_options.threads));
    RouteHost const host(i_options.folder);
    std::string folder = i_options.folder;
    Solver solver(mesh, process.material, process.property, tipping.symmetry, process.friction, process.fullHolder,
                  tipping.frame, folder.data());
    std::string const deck = In(i_options.folder, kDeck);
    WriteDeck(solver, i_job, deck);

    io_observer.Enter("solver");
    StartSolver(solver, i_options, deck);
    if (io_observer.IsInterrupted())
        throw Interrupted();
    RequireOutput(i_options);

    io_observer.Enter("results");
    std::string const output = In(i_options.folder, kOutput);
    CheckSolverText(output, mesh);
    Result result(mesh);
    try
    {
        solver.read(output.c_str(), result, false);
    }
    catch (CATError const & error)
    {
        throw SolverError("the solver's result " + output + " cannot be read: " + error.Message());
    }
    FillUnsetSlots(mesh, i_job.materials.front().anisotropy, result);
    Outcome outcome;
    ConvertFileResult(i_job, i_model, tipping, result, outcome);
    outcome.log = SolverTable(i_options.folder);
    outcome.checks = SolverChecks(i_options.folder);
    outcome.warnings = process.warnings;
    return outcome;
}

} // namespace voz::workbench
