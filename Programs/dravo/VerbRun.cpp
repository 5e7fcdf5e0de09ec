// VerbRun.cpp: run, check and explain: the verbs of a job.

#include "Console.h"
#include "ExitCode.h"
#include "IncrementalRoute.h"
#include "JobModel.h"
#include "LaunchStatus.h"
#include "OutputFile.h"
#include "Run.h"
#include "SpringbackModel.h"
#include "Verbs.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <optional>

namespace
{
using namespace voz::workbench;

struct RunArguments
{
    std::string job;
    std::string route = kKernelRoute;
    std::string out;
    std::string solver;
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;
    bool isStrict = false;
    bool areTimesKept = false;
    bool isLaunched = false;

    Talk TalkOf() const { return isQuiet ? Talk::Quiet : isVerbose ? Talk::Verbose : Talk::Usual; }
};

// Wrong use is told while the command line is read.
void CheckSolverOption(RunArguments const & i_arguments)
{
    if (!i_arguments.solver.empty() && i_arguments.route != kFileRoute)
        throw CLI::ValidationError("--solver",
                                   "the " + i_arguments.route + " route starts no solver program; --route file does");
}

void CheckLaunchOption(RunArguments const & i_arguments)
{
    if (i_arguments.isLaunched && i_arguments.route != kIncrementalRoute)
        throw CLI::ValidationError("--launch", "the " + i_arguments.route +
                                                   " route leaves nothing to launch; --route incremental does");
}

// Has the deck of a run solved. An interrupt ends the watching alone.
LaunchStatus Launch(Job const & i_job, RunRecord const & i_record, Console & io_console)
{
    std::string const folder = i_record.folder + "/solver";
    LaunchSolver(i_job, folder);
    try
    {
        LaunchStatus const status = FollowLaunch(folder, io_console);
        io_console.EndBar();
        return status;
    }
    catch (Interrupted const &)
    {
        io_console.Note("the solver goes on in " + folder + "; \"dravo import\" reads its results when it is done");
        throw;
    }
}

int Run(RunArguments const & i_arguments)
{
    Console console(i_arguments.TalkOf());
    Job const job = ReadJob(i_arguments.job);
    if (i_arguments.isLaunched)
        FindLauncher();
    RunOptions options;
    options.out = i_arguments.out;
    options.route = i_arguments.route;
    options.solver = i_arguments.solver;
    options.isSolverSilent = !console.HasBar();
    options.areTimesKept = i_arguments.areTimesKept;
    options.command = "dravo run " + i_arguments.job;
    if (i_arguments.route != kKernelRoute)
        options.command += " --route " + i_arguments.route;
    RunRecord const record = RunJob(job, options, console);
    console.EndBar();
    if (i_arguments.isVerbose)
        for (OutcomeParameter const & parameter : record.outcome.parameters)
            console.Remark(parameter.key + " = " + parameter.value +
                           (parameter.unit.empty() ? "" : " " + parameter.unit) +
                           (parameter.isDefault ? " (default)" : ""));
    std::optional<LaunchStatus> launched;
    if (i_arguments.isLaunched)
        launched = Launch(job, record, console);
    if (i_arguments.isJson)
    {
        nlohmann::json json = SummaryJson(record);
        json["folder"] = record.folder;
        if (launched)
            json["launch"] = {{"state", NameOf(launched->state)}, {"records", launched->records}};
        PrintJson(json);
    }
    else
    {
        Console::Print(SummaryText(record));
        if (launched)
            Console::Print("Solved                " + std::to_string(launched->records) +
                           " states; read them with: dravo import " + i_arguments.job + " --run " + record.folder +
                           "\n");
    }
    bool const isFailed = HasFailedCheck(record.outcome) || (i_arguments.isStrict && HasFailedWarning(record.outcome));
    return isFailed ? ExitCheckFailed : ExitDone;
}

nlohmann::json JsonOf(Tipping const & i_tipping)
{
    nlohmann::json json;
    for (int row = 0; row < 3; ++row)
        json["axes"].push_back(
            {i_tipping.frame.axis(row, 0), i_tipping.frame.axis(row, 1), i_tipping.frame.axis(row, 2)});
    json["origin_mm"] = {i_tipping.frame.origin(0), i_tipping.frame.origin(1), i_tipping.frame.origin(2)};
    json["undercut_elements"] = i_tipping.undercutElements;
    json["undercut_angle_deg"] = i_tipping.undercutAngle;
    return json;
}

// Reads and lays out everything that a run would, and solves nothing.
int Check(RunArguments const & i_arguments)
{
    Console console(i_arguments.TalkOf());
    Job const job = ReadJob(i_arguments.job);
    std::unique_ptr<Route> const route = MakeRoute(i_arguments.route, i_arguments.solver);
    route->CheckJob(job);
    JobModel const model = ReadModel(job);
    route->CheckModel(job, model);
    CheckRunFolder(job, i_arguments.out, *route);
    Tipping const tipping = FindTipping(job, model);
    Process process;
    BuildProcess(job, model, tipping, route->PadsBy(), process);
    if (job.HasSpringback())
        SelectForSpringback(job, model, MakeWhole(model.mesh.mesh, tipping.frame, tipping.symmetry));
    std::vector<std::string> warnings = job.warnings;
    warnings.insert(warnings.end(), model.warnings.begin(), model.warnings.end());
    warnings.insert(warnings.end(), process.warnings.begin(), process.warnings.end());
    for (std::string const & warning : warnings)
        console.Warning(warning);
    for (std::string const & remark : model.remarks)
        console.Note(remark);
    if (i_arguments.isJson)
        PrintJson({{"schema", 1},
                   {"job", i_arguments.job},
                   {"title", job.title},
                   {"route", route->Name()},
                   {"nodes", model.report.nodes},
                   {"elements", model.report.elements},
                   {"stamping_frame", JsonOf(tipping)},
                   {"warnings", warnings},
                   {"remarks", model.remarks}});
    else
        Console::Print(i_arguments.job + ": can be run by the " + route->Name() + " route: " +
                       std::to_string(model.report.nodes) + " nodes, " + std::to_string(model.report.elements) +
                       " elements, " + std::to_string(tipping.undercutElements) + " undercut, " +
                       std::to_string(warnings.size()) + (warnings.size() == 1 ? " warning\n" : " warnings\n"));
    return i_arguments.isStrict && !warnings.empty() ? ExitCheckFailed : ExitDone;
}

int Explain(RunArguments const & i_arguments)
{
    Job const job = ReadJob(i_arguments.job);
    if (i_arguments.isJson)
    {
        nlohmann::json json = {{"schema", 1}, {"job", i_arguments.job}, {"values", nlohmann::json::array()}};
        for (OutcomeParameter const & parameter : job.parameters)
        {
            json["values"].push_back({{"key", parameter.key},
                                      {"value", parameter.value},
                                      {"unit", parameter.unit},
                                      {"is_default", parameter.isDefault}});
            if (!parameter.effect.empty())
                json["values"].back()["effect"] = parameter.effect;
        }
        PrintJson(json);
        return ExitDone;
    }
    std::size_t width = 0;
    for (OutcomeParameter const & parameter : job.parameters)
        width = std::max(width, parameter.key.size());
    for (OutcomeParameter const & parameter : job.parameters)
        Console::Print(parameter.key + std::string(width + 2 - parameter.key.size(), ' ') + parameter.value +
                       (parameter.unit.empty() ? "" : " " + parameter.unit) +
                       (parameter.isDefault ? "  (default)" : "") +
                       (parameter.effect.empty() ? "\n" : "  # " + parameter.effect + "\n"));
    return ExitDone;
}

void AddJob(CLI::App & io_verb, RunArguments & io_arguments)
{
    io_verb.add_option("JOB", io_arguments.job, "Job file (TOML); - reads standard input")->required();
    io_verb.add_flag("--json", io_arguments.isJson, "One JSON document in place of the table");
}

void AddRoute(CLI::App & io_verb, RunArguments & io_arguments)
{
    io_verb
        .add_option(
            "--route", io_arguments.route,
            "How it is solved: kernel (in this process), file (a deck, a solver program) or incremental (a deck "
            "for an explicit solver)")
        ->check(CLI::IsMember(RouteNames()))
        ->capture_default_str();
    io_verb.add_option("--out", io_arguments.out, "Folder in which the numbered folder of a run is made");
    io_verb.add_option("--solver", io_arguments.solver,
                       "Solver program of the file route in place of the one beside dravo");
}

void AddTalk(CLI::App & io_verb, RunArguments & io_arguments)
{
    auto * const quiet =
        io_verb.add_flag("--quiet,-q", io_arguments.isQuiet, "Only results, on standard output, and errors");
    io_verb.add_flag("--verbose,-v", io_arguments.isVerbose, "Say more")->excludes(quiet);
    io_verb.add_flag("--strict", io_arguments.isStrict, "Exit code 1 for a warning, too");
}
} // namespace

void AddRun(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<RunArguments>();
    CLI::App * const verb = io_app.add_subcommand("run", "Form a part: blank, strains, zones, report");
    AddJob(*verb, *arguments);
    AddTalk(*verb, *arguments);
    AddRoute(*verb, *arguments);
    verb->add_flag("--launch", arguments->isLaunched,
                   "With --route incremental: have the deck solved, and show how far it is");
    verb->add_flag("--times", arguments->areTimesKept, "Keep the time of each stage in report and summary");
    verb->footer("Example: dravo run examples/square_cup/job.toml --out results --json");
    verb->callback(
        [&io_action, arguments]
        {
            CheckSolverOption(*arguments);
            CheckLaunchOption(*arguments);
            io_action = [arguments] { return Run(*arguments); };
        });
}

void AddCheck(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<RunArguments>();
    CLI::App * const verb = io_app.add_subcommand("check", "Read and validate everything, solve nothing");
    AddJob(*verb, *arguments);
    AddTalk(*verb, *arguments);
    AddRoute(*verb, *arguments);
    verb->footer("Example: dravo check --strict examples/bracket/job.toml");
    verb->callback(
        [&io_action, arguments]
        {
            CheckSolverOption(*arguments);
            io_action = [arguments] { return Check(*arguments); };
        });
}

void AddExplain(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<RunArguments>();
    CLI::App * const verb =
        io_app.add_subcommand("explain", "Show every value of a job with its unit, and which are defaults");
    AddJob(*verb, *arguments);
    verb->footer("Example: dravo explain examples/square_cup/job.toml");
    verb->callback([&io_action, arguments] { io_action = [arguments] { return Explain(*arguments); }; });
}
