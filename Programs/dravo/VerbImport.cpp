// VerbImport.cpp: results of an explicit solver into a report like that of the other routes.

#include "Console.h"
#include "ExitCode.h"
#include "IncrementalImport.h"
#include "Verbs.h"

#include <nlohmann/json.hpp>

#include <limits>
#include <memory>

namespace
{
using namespace voz::workbench;

struct ImportArguments
{
    std::string job;
    ImportOptions options;
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;
    bool isStrict = false;
};

int Import(ImportArguments const & i_arguments)
{
    Console console(i_arguments.isQuiet ? Talk::Quiet : i_arguments.isVerbose ? Talk::Verbose : Talk::Usual);
    Job const job = ReadJob(i_arguments.job);
    ImportOptions options = i_arguments.options;
    options.command = "dravo import " + i_arguments.job;
    if (options.areAllSteps)
        options.command += " --all";
    else if (options.step >= 0)
        options.command += " --step " + std::to_string(options.step);
    RunRecord const record = ImportSteps(job, options, console);
    console.EndBar();
    if (i_arguments.isJson)
    {
        nlohmann::json json = SummaryJson(record);
        json["folder"] = record.folder;
        PrintJson(json);
    }
    else
        Console::Print(SummaryText(record));
    bool const isFailed = HasFailedCheck(record.outcome) || (i_arguments.isStrict && HasFailedWarning(record.outcome));
    return isFailed ? ExitCheckFailed : ExitDone;
}
} // namespace

void AddImport(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<ImportArguments>();
    ImportOptions & options = arguments->options;
    CLI::App * const verb =
        io_app.add_subcommand("import", "Read the results of an explicit solver: strains, zones, report");
    verb->add_option("JOB", arguments->job, "Job file (TOML) of the run")->required();
    CLI::Option * const step =
        verb->add_option("--step", options.step, "Which state, counted from 0; without it the last")
            ->check(CLI::Range(0, std::numeric_limits<int>::max()));
    verb->add_flag("--all", options.areAllSteps, "Every state, each in the report")->excludes(step);
    verb->add_option("--run", options.run, "Folder of the run; without it the job's newest with a deck");
    verb->add_option("--out", options.out, "Folder in which the job's runs stand, as for run");
    verb->add_flag("--force", options.isForced, "Replace an import that is there already");
    verb->add_flag("--json", arguments->isJson, "One JSON document in place of the table");
    CLI::Option * const quiet =
        verb->add_flag("--quiet,-q", arguments->isQuiet, "Only results, on standard output, and errors");
    verb->add_flag("--verbose,-v", arguments->isVerbose, "Say more")->excludes(quiet);
    verb->add_flag("--strict", arguments->isStrict, "Exit code 1 for a warning, too");
    verb->footer("Example: dravo import examples/cylindrical_cup_incremental/job.toml --step 10");
    verb->callback([&io_action, arguments] { io_action = [arguments] { return Import(*arguments); }; });
}
