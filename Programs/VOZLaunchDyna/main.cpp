// main.cpp: VOZLaunchDyna, the program that the incremental route starts: runs the solver on the deck of a folder and
// turns its results into "output.voz".

#include "Conversion.h"
#include "LaunchArguments.h"
#include "SolverRun.h"
#include "StatusFile.h"

#include <cstdio>
#include <exception>
#include <numeric>

using namespace voz::launch;

namespace
{
enum ExitCode
{
    kDone = 0,
    kInternal = 1, // a fault of this program
    kUsage = 2,
    kInput = 3,  // folder or deck refused
    kSolve = 4,  // no solver, or it left less than was asked for
    kOutput = 5, // "output.voz" could not be written
};

constexpr char kHelp[] = R"(VOZLaunchDyna FOLDER COUNT

Runs the LS-DYNA solver on "inputls.dyn" in the folder and turns its results into "output.voz", a record per output
point, COUNT of them.

  --convert    ahead of the folder: only turns the results that lie there into "output.voz"
  --help       this text

The solver is the program that the variable VOZDynaSolver names, or DynaSolver of config.cfg, or one with a usual name
in the usual places or on the PATH. Its output is kept in "launch.log"; "launch.status" tells how far it has come. Exit
codes: 0 done, 2 wrong use, 3 folder or deck refused, 4 no solver, or its results are not whole (what is whole is
converted), 5 output.voz not written, 1 a fault of the program.

Example: VOZLaunchDyna "C:\work\part" 10
)";

// Both ways to be heard: the status file, and the error stream where there is one.
ExitCode end(StatusFile & io_status, LaunchState state, ExitCode code, std::string const & text)
{
    std::fprintf(stderr, "VOZLaunchDyna: %s\n", text.c_str());
    io_status.state = state;
    io_status.message = text;
    io_status.Show();
    return code;
}

// "2, 3, 7" of step numbers.
std::string listed(std::vector<int> const & steps)
{
    constexpr std::size_t kShown = 8;
    std::string text;
    for (std::size_t i = 0; i < steps.size() && i < kShown; ++i)
        text += (i == 0 ? "" : ", ") + std::to_string(steps[i]);
    return text + (steps.size() > kShown ? ", ..." : "");
}

std::string outcome(Converted const & converted, std::size_t numPoints)
{
    std::string text = std::to_string(converted.records) + " of " + std::to_string(numPoints) + " records";
    if (!converted.missing.empty())
        text += "; no state for output points " + listed(converted.missing);
    return std::accumulate(converted.notes.begin(), converted.notes.end(), text,
                           [](std::string const & all, std::string const & note) { return all + "; " + note; });
}

// What is whole is converted, whatever has become of the solver.
ExitCode convert(std::filesystem::path const & folder, DeckTimes const & times, std::string const & complaint,
                 StatusFile & io_status)
{
    io_status.state = LaunchState::Converting;
    io_status.Show();
    Converted const converted = ConvertResults(folder, times.points,
                                               [&io_status](int records)
                                               {
                                                   io_status.records = records;
                                                   io_status.Show();
                                               });
    io_status.records = converted.records;
    std::string const text = complaint + outcome(converted, times.points.size());
    if (!complaint.empty() || !converted.missing.empty())
        return end(io_status, LaunchState::Failed, kSolve, text);
    io_status.time = times.end;
    io_status.state = LaunchState::Done;
    io_status.message = text;
    io_status.Show();
    std::printf("%s\n", text.c_str());
    return kDone;
}

std::string complaintOf(SolverEnd const & run, Solver const & solver)
{
    if (!run.hasStarted)
        return "the solver " + solver.program + " could not be started; ";
    if (run.code != 0)
        return "the solver ended with code " + std::to_string(static_cast<int>(run.code)) + " (" + kLog +
               " ends: " + run.lastWords + "); ";
    if (run.saysError)
        return std::string("the solver ended with an error (") + kLog + " ends: " + run.lastWords + "); ";
    return "";
}

ExitCode launch(Arguments const & arguments, bool isToSolve, StatusFile & io_status)
{
    std::filesystem::path const folder(arguments.folder);
    io_status.Remove();
    if (isToSolve)
        RemoveOldResults(folder);
    io_status.Show();
    DeckTimes times;
    try
    {
        times = ReadDeckTimes(folder / kDeck, arguments.count);
    }
    catch (DeckError const & error)
    {
        return end(io_status, LaunchState::Failed, kInput, error.what());
    }
    io_status.end = times.end;
    std::string complaint;
    if (isToSolve)
    {
        auto const solver = FindSolver(ReadSettings(), complaint);
        if (!solver)
            return end(io_status, LaunchState::Failed, kSolve, complaint);
        io_status.state = LaunchState::Running;
        io_status.message = solver->program;
        io_status.Show();
        SolverEnd const run = RunSolver(*solver, folder,
                                        [&io_status](double time)
                                        {
                                            io_status.time = std::max(io_status.time, time);
                                            io_status.Show();
                                        });
        complaint = complaintOf(run, *solver);
        io_status.message.clear();
    }
    io_status.time = std::max(io_status.time, LastStateTime(folder));
    if (times.points.size() != static_cast<std::size_t>(arguments.count))
        std::fprintf(stderr, "VOZLaunchDyna: the deck asks for %zu output points, not for %d\n", times.points.size(),
                     arguments.count);
    return convert(folder, times, complaint, io_status);
}

int run(std::vector<std::string> words)
{
    if (words.size() == 1 && (words[0] == "--help" || words[0] == "-h"))
    {
        std::fputs(kHelp, stdout);
        return kDone;
    }
    bool const isToSolve = words.empty() || words[0] != "--convert";
    if (!isToSolve)
        words.erase(words.begin());
    Arguments arguments;
    std::string const wrong = ParseArguments(words, arguments);
    std::error_code ignored;
    bool const isFolder = !arguments.folder.empty() && std::filesystem::is_directory(arguments.folder, ignored);
    StatusFile status(arguments.folder);
    if (!wrong.empty() || !isFolder)
    {
        std::string const text =
            wrong.empty() ? arguments.folder + " is no folder; expected the one of the deck" : wrong;
        if (isFolder)
            return end(status, LaunchState::Failed, kUsage, text);
        std::fprintf(stderr, "VOZLaunchDyna: %s\n", text.c_str());
        return wrong.empty() ? kInput : kUsage;
    }
    try
    {
        return launch(arguments, isToSolve, status);
    }
    catch (OutputError const & error)
    {
        return end(status, LaunchState::Failed, kOutput, error.what());
    }
    catch (std::exception const & error)
    {
        return end(status, LaunchState::Failed, kInternal, error.what());
    }
}
} // namespace

int main(int argc, char ** argv)
{
    try
    {
        return run({argv + 1, argv + argc});
    }
    catch (std::exception const & error)
    {
        std::fprintf(stderr, "VOZLaunchDyna: %s\n", error.what());
        return kInternal;
    }
}
