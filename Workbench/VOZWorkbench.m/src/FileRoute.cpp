// FileRoute.cpp: the steps of a run by the file route.

#include "FileRoute.h"

#include "CATError.h"
#include "CATUnicodeString.h"
#include "FileRouteParts.h"
#include "OutputFile.h"
#include "Quantity.h"
#include "RouteParts.h"
#include "Solver.h"
#include "SpringbackModel.h"
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
constexpr std::size_t kCommandBytes = 1024;      // of the child's command line, zero included
constexpr char const * kSpringbackMark = ".spo"; // anywhere in a path, it selects another reader
constexpr char const * kDeck = "deck.fpi";
constexpr char const * kOutput = "deck.fpo";
constexpr char const * kSpringbackOutput = "deck.spo";
constexpr char const * kSpringbackLog = "springback.log";
constexpr char const * kSolveLog = "deck.log"; // the solver program's own: its iterations
constexpr char const * kSolveSummary = "deck.sum";
constexpr char const * kRawLog = "solver.raw";
constexpr char const * kLog = "solver.log";
constexpr char const * kDeckEnd = "0 0 0 1 \n************************\n"; // the last row and separator of every deck

std::string SolverSettings(Job const & i_job)
{
    JobMaterial const & material = i_job.materials.front();
    return "YoungsModulus=" + Shortest(material.modulus * 1e6) + "\nPoissonsRatio=" + Shortest(material.poisson) +
           "\nToolFriction=" + (i_job.toolFriction ? "1" : "0") + "\nSteps=" + std::to_string(i_job.steps) + "\n";
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

// Runs a call that starts the solver program for a result, with what it says put into a log; what the call returns.
template <class Call>
int Aside(FileRouteOptions const & i_options, char const * i_result, char const * i_log, Call i_call)
{
    int answer = 0;
    std::error_code ignored;
    std::filesystem::remove(InFolder(i_options.folder, i_result), ignored); // an older one is no result of this call
    std::string const raw = InFolder(i_options.folder, kRawLog);
    {
        VOZStreamsToFile const aside(raw.c_str(), i_options.isSolverSilent);
        answer = i_call(("\"" + i_options.solver + "\"").c_str());
    }
    WriteText(InFolder(i_options.folder, i_log), SolverWords(raw));
    std::filesystem::remove(raw, ignored);
    return answer;
}

// The exit code of the solver program.
unsigned StartSolver(Solver & io_solver, FileRouteOptions const & i_options, std::string const & i_deck)
{
    if (Aside(i_options, kOutput, kLog,
              [&](char const * i_program) { return io_solver.run(i_program, i_deck.c_str()); }) != 0)
        throw SolverError("the solver program " + i_options.solver + " could not be started");
    return VOZProcess::LastExitCode();
}

// The solver's iterations.
std::string SolverTable(std::string const & i_folder)
{
    std::string const table = TextIfThere(InFolder(i_folder, kSolveLog));
    return table.empty() ? TextIfThere(InFolder(i_folder, kLog)) : WithoutTimes(table);
}

std::string LastWords(std::string const & i_folder, char const * i_log)
{
    std::string const words = LastLines(TextIfThere(InFolder(i_folder, i_log)), 8);
    return words.empty() ? words : "; its last words:\n" + words;
}

// A result is there, and whoever left it ended well.
void RequireOutput(std::string const & i_folder, char const * i_name, char const * i_log, unsigned i_exitCode)
{
    std::string const path = InFolder(i_folder, i_name);
    if (std::error_code error; !std::filesystem::is_regular_file(path, error))
        throw SolverError("the solver left no result (" + path + "): it did not converge, or it ended early" +
                          LastWords(i_folder, i_log));
    if (i_exitCode != 0)
        throw SolverError("the solver left a result (" + path + "), but ended with exit code " +
                          std::to_string(i_exitCode) + ", so that it cannot be trusted" + LastWords(i_folder, i_log));
}

// In inches and in the stamping frame the solver's text, in millimetres what the library reads of it; global here.
std::vector<Point3> ReadSprung(Solver & io_solver, std::string const & i_path, Outcome const & i_formed)
{
    CheckSpringbackText(i_path, i_formed.part);
    Result result(i_formed.part);
    io_solver.read(i_path.c_str(), result, false);
    std::vector<Point3> shifts;
    for (int n = 1; n <= i_formed.part.numNode(); ++n)
    {
        Vec const place = i_formed.frame.toGlobal(result.dispOnBinder(n));
        double const * const p = i_formed.part.GetNodeData()[n];
        shifts.push_back({place[0] - p[0], place[1] - p[1], place[2] - p[2]});
    }
    return shifts;
}

// The program solves the forming of the deck again, then unloads it.
SpringbackOutcome Unload(Solver & io_solver, Job const & i_job, JobModel const & i_model,
                         FileRouteOptions const & i_options, Outcome const & i_formed)
{
    std::string const deck = InFolder(i_options.folder, kDeck);
    int const exitCode = Aside(i_options, kSpringbackOutput, kSpringbackLog,
                               [&](char const * i_program) { return io_solver.run_spb(i_program, deck.c_str()); });
    RequireOutput(i_options.folder, kSpringbackOutput, kSpringbackLog, static_cast<unsigned>(exitCode));
    std::vector<Point3> const shifts = ReadSprung(io_solver, InFolder(i_options.folder, kSpringbackOutput), i_formed);
    WholePart const whole = MakeWhole(i_formed.part, i_formed.frame, i_formed.symmetry);
    SpringbackOutcome springback;
    springback.part = whole.mesh;
    springback.modelNodes = i_formed.part.numNode();
    for (std::size_t n = 0; n < whole.nodeOf.size(); ++n)
        springback.before.push_back(
            ImageOf(shifts[static_cast<std::size_t>(whole.nodeOf[n])], whole.mirrored[n], i_formed.frame));
    springback.trimmed.assign(whole.elementOf.size(), 0);
    FinishSpringback(i_job, i_model, i_formed.frame, springback);
    return springback;
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

void CheckRoutePath(std::string const & i_folder, std::string const & i_solver)
{
    CheckFolderPath(i_folder, kFileRoute);
    auto const refuse = [&i_folder](std::string const & i_reason) { RefuseFolder(i_folder, kFileRoute, i_reason); };
    if (i_folder.find(kSpringbackMark) != std::string::npos)
        refuse("its path holds \".spo\", which marks springback results");
    if (i_folder.find('"') != std::string::npos || i_solver.find('"') != std::string::npos)
        refuse("a path with a quote cannot stand on a command line");
    if (std::filesystem::path::preferred_separator == '/' && i_solver.find('\\') != std::string::npos)
        refuse("the path of the solver program holds a backslash, which is read as one with more folders");
    std::size_t const command = std::string("\"\"\"\" -pfpi \"\" -sd \"\"").size() + i_solver.size() +
                                InFolder(i_folder, kDeck).size() + i_folder.size();
    if (command >= kCommandBytes)
        refuse("the solver's command line would be " + std::to_string(command - kCommandBytes + 1) +
               " characters too long");
}

FileRoute::FileRoute(std::string const & i_solver) : mSolver(FindSolverProgram(i_solver)) {}

Outcome FileRoute::Run(Job const & i_job, JobModel const & i_model, RouteOptions const & i_options,
                       RunObserver & io_observer) const
{
    return RunFileRoute(i_job, i_model, FileRouteOptions{i_options, mSolver}, io_observer);
}

Outcome RunFileRoute(Job const & i_job, JobModel const & i_model, FileRouteOptions const & i_options,
                     RunObserver & io_observer)
{
    CheckFileRoute(i_job);
    CheckFileModel(i_job, i_model);
    CheckRoutePath(i_options.folder, i_options.solver);
    VOZCatMesh const & mesh = i_model.mesh.mesh;

    io_observer.Enter("stamping frame");
    Tipping const tipping = FindTipping(i_job, i_model);
    Process process;
    BuildProcess(i_job, i_model, tipping, PadRows::Nodes, process);
    for (std::string const & warning : process.warnings)
        io_observer.Warning(warning);

    io_observer.Enter("deck");
    WriteText(InFolder(i_options.folder, kConfiguration), ConfigurationText(i_job.limits));
    WriteText(InFolder(i_options.folder, "solver.cfg"), SolverSettings(i_job));
    RouteHost const host(i_options.folder, i_options.folder, i_job.steps);
    std::string folder = i_options.folder;
    Solver solver(mesh, process.material, process.property, tipping.symmetry, process.friction, process.fullHolder,
                  tipping.frame, folder.data());
    std::string const deck = InFolder(i_options.folder, kDeck);
    WriteDeck(solver, i_job, deck);

    io_observer.Enter("solver program");
    unsigned const exitCode = StartSolver(solver, i_options, deck);
    if (io_observer.IsInterrupted())
        throw Interrupted();
    RequireOutput(i_options.folder, kOutput, kLog, exitCode);

    io_observer.Enter("results");
    std::string const output = InFolder(i_options.folder, kOutput);
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
    outcome.checks = SolverChecks(TextIfThere(InFolder(i_options.folder, kSolveSummary)));
    outcome.warnings = process.warnings;
    if (i_job.HasSpringback())
    {
        io_observer.Enter("springback");
        outcome.springback = Unload(solver, i_job, i_model, i_options, outcome);
    }
    return outcome;
}

} // namespace voz::workbench
