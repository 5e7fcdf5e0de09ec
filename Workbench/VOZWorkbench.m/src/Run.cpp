// Run.cpp: the folder of a run, its stages and what it leaves.

#include "Run.h"

#include "Exports.h"
#include "OutcomeAnalysis.h"
#include "OutputFile.h"
#include "Report.h"
#include "RunChecks.h"
#include "RunParts.h"
#include "Sha256.h"
#include "TextFile.h"
#include "Version.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>

namespace voz::workbench
{

namespace
{
namespace fs = std::filesystem;

using Clock = std::chrono::steady_clock;

constexpr int kLastNumber = 999999;

std::string Numbered(std::string const & i_name, int i_number)
{
    std::string digits = std::to_string(i_number);
    digits.insert(0, digits.size() < 3 ? 3 - digits.size() : 0, '0');
    return i_name + "-" + digits;
}

// A folder of our own, whoever else makes some beside it at the same moment.
fs::path MakeFolder(fs::path const & i_parent, std::string const & i_name, Route const & i_route)
{
    std::error_code error;
    fs::path const parent = fs::absolute(i_parent, error).lexically_normal();
    i_route.CheckFolder((parent / Numbered(i_name, 1) / kSolverFolder).string());
    fs::create_directories(parent, error);
    if (!fs::is_directory(parent))
        throw OutputError(parent.string(), error ? error.message() : "it is no folder");
    for (int number = 1; number <= kLastNumber; ++number)
    {
        fs::path const folder = parent / Numbered(i_name, number);
        if (fs::create_directory(folder, error))
        {
            fs::create_directory(folder / kSolverFolder, error);
            if (!fs::is_directory(folder / kSolverFolder))
                throw OutputError((folder / kSolverFolder).string(), error.message());
            return folder;
        }
        if (error && !fs::exists(folder))
            throw OutputError(folder.string(), error.message());
    }
    throw OutputError(parent.string(), "all numbered folders are taken");
}

// Passes on what it hears, and takes the times.
class StageClock : public RunObserver
{
public:
    StageClock(RunObserver & io_outer, std::vector<OutcomeStage> & io_stages) : mOuter(io_outer), mStages(io_stages) {}

    void Stage(std::string const & i_name) override
    {
        Finish();
        mStages.push_back({i_name, 0.0});
        mBegin = Clock::now();
        mOuter.Stage(i_name);
    }
    void Warning(std::string const & i_text) override { mOuter.Warning(i_text); }
    void Remark(std::string const & i_text) override { mOuter.Remark(i_text); }
    void Progress(int i_percent) override { mOuter.Progress(i_percent); }
    bool IsInterrupted() override { return mOuter.IsInterrupted(); }

    void Finish()
    {
        if (!mStages.empty() && mStages.back().seconds == 0.0)
            mStages.back().seconds = std::chrono::duration<double>(Clock::now() - mBegin).count();
    }

private:
    RunObserver & mOuter;
    std::vector<OutcomeStage> & mStages;
    Clock::time_point mBegin;
};

std::vector<OutcomeInput> HashInputs(Job const & i_job)
{
    std::vector<OutcomeInput> inputs = {{i_job.path, i_job.sha256}};
    auto const add = [&inputs](std::string const & i_path) {
        inputs.push_back({i_path, Sha256(ReadTextFile(i_path, std::size_t{1} << 40))});
    };
    if (i_job.mesh != "-")
        add(i_job.mesh);
    if (i_job.binder)
        add(i_job.binder->mesh);
    if (i_job.incremental)
        for (std::string const * const path : {&i_job.incremental->blank, &i_job.incremental->die,
                                               &i_job.incremental->punch, &i_job.incremental->binder})
            if (!path->empty())
                add(*path);
    return inputs;
}

// A locked job says what its inputs were.
void CompareWithLock(Job const & i_job, std::vector<OutcomeInput> const & i_inputs, RunObserver & io_observer,
                     std::vector<std::string> & io_warnings)
{
    for (OutcomeInput const & locked : i_job.lockedInputs)
        for (OutcomeInput const & input : i_inputs)
        {
            std::error_code error;
            if (!fs::equivalent(locked.path, input.path, error) || locked.sha256 == input.sha256)
                continue;
            io_warnings.push_back(input.path + " is not what it was when the job was locked");
            io_observer.Warning(io_warnings.back());
        }
}

} // namespace

void WriteOutputs(Job const & i_job, RunRecord & io_record)
{
    fs::path const folder(io_record.folder);
    Outcome & outcome = io_record.outcome;
    auto const path = [&](char const * i_what, char const * i_name)
    {
        std::string const text = (folder / i_name).string();
        io_record.files.push_back({i_what, text});
        return text;
    };
    BlankExportOptions options;
    options.tolerance = i_job.outputs.outlineTolerance;
    options.version = i_job.outputs.isDxfR12 ? DxfVersion::R12 : DxfVersion::R2000;
    if (i_job.outputs.report)
        WriteReport(outcome, path("report", "report.html"));
    if (i_job.outputs.dxf && outcome.hasBlank)
        WriteBlankDxf(outcome, options, path("blank, DXF", "blank.dxf"));
    if (i_job.outputs.svg && outcome.hasBlank)
        WriteBlankSvg(outcome, options, path("blank, SVG", "blank.svg"));
    if (i_job.outputs.vtu && outcome.HasResults())
    {
        WriteVtu(outcome, folder.string());
        path("results, VTU", "results.pvd");
    }
    if (i_job.outputs.tables && outcome.HasResults())
    {
        WriteTables(outcome, folder.string());
        path("tables, CSV", "elements.csv");
    }
    if (i_job.outputs.dyna && outcome.HasResults())
    {
        WriteFormedDyna(outcome, i_job.materials, folder.string());
        path("formed blank, LS-DYNA", "formed_main.k");
    }
    if (i_job.outputs.nastran && outcome.HasResults())
    {
        WriteFormedNastran(outcome, i_job.materials, folder.string());
        path("formed blank, NASTRAN", "formed.bdf");
    }
    if (i_job.outputs.displacements && outcome.HasResults() && outcome.hasBlank)
        WriteDisplacementTable(outcome, path("displacements", "displacements.txt"));
}

void WriteJson(std::string const & i_path, nlohmann::json const & i_json)
{
    OutputFile file(i_path);
    file << i_json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
    file.Commit();
}

std::string OutFolder(Job const & i_job, std::string const & i_out)
{
    return !i_out.empty() ? i_out : !i_job.outputs.folder.empty() ? i_job.outputs.folder : "out";
}

namespace
{
// A folder without a result says why; if not even that can be written, the first error is the one to tell.
void LeaveNote(std::string const & i_folder, char const * i_status, std::string const & i_reason)
{
    try
    {
        WriteJson((fs::path(i_folder) / "summary.json").string(),
                  {{"schema", 1}, {"status", i_status}, {"reason", i_reason}});
    }
    catch (OutputError const &)
    {
    }
}

void RunInFolder(Job const & i_job, RunOptions const & i_options, Route const & i_route, JobModel const & i_model,
                 RunObserver & io_observer, RunRecord & io_record)
{
    std::vector<OutcomeInput> const inputs = HashInputs(i_job);
    std::vector<std::string> warnings = i_job.warnings;
    warnings.insert(warnings.end(), i_model.warnings.begin(), i_model.warnings.end());
    CompareWithLock(i_job, inputs, io_observer, warnings);

    std::string const lock = (fs::path(io_record.folder) / "job.lock.toml").string();
    OutputFile lockFile(lock);
    Job locked = i_job;
    if (i_options.route == kIncrementalRoute && !locked.incremental)
        locked.incremental.emplace();
    lockFile << LockedJob(locked, inputs, io_record.folder);
    lockFile.Commit();

    std::vector<OutcomeStage> stages;
    StageClock clock(io_observer, stages);
    RouteOptions route;
    route.folder = (fs::path(io_record.folder) / kSolverFolder).string();
    route.isSolverSilent = i_options.isSolverSilent;
    Outcome & outcome = io_record.outcome;
    outcome = i_route.Run(i_job, i_model, route, clock);
    warnings.insert(warnings.end(), outcome.warnings.begin(), outcome.warnings.end());
    outcome.warnings = std::move(warnings);
    if (outcome.HasResults())
        AnalyseOutcome(outcome);
    outcome.parameters = i_job.parameters;
    outcome.inputs = inputs;
    outcome.command = i_options.command;
    outcome.version = kVersion;
    for (OutcomeCheck & check : CheckOutcome(i_job, outcome))
        outcome.checks.push_back(std::move(check));

    clock.Enter("output");
    clock.Finish();
    if (i_options.areTimesKept)
        outcome.stages = stages;
    WriteOutputs(i_job, io_record);
    std::string const summary = (fs::path(io_record.folder) / "summary.json").string();
    WriteJson(summary, SummaryJson(io_record));
    io_record.files.push_back({"summary", summary});
    io_record.files.push_back({"locked job", lock});
}
} // namespace

void CheckRunFolder(Job const & i_job, std::string const & i_out, Route const & i_route)
{
    std::error_code error;
    fs::path const parent = fs::absolute(OutFolder(i_job, i_out), error).lexically_normal();
    i_route.CheckFolder((parent / Numbered(i_job.name, 1) / kSolverFolder).string());
    fs::path standing = parent;
    while (!fs::exists(standing, error) && standing.has_relative_path())
        standing = standing.parent_path();
    if (!fs::is_directory(standing, error))
        throw OutputError(parent.string(), standing.string() + " is no folder");
    fs::path const probe = standing / (".dravo-check-" + std::to_string(Clock::now().time_since_epoch().count()));
    if (!fs::create_directory(probe, error))
        throw OutputError(parent.string(), "nothing can be made in " + standing.string() + ": " + error.message());
    fs::remove(probe, error);
}

RunRecord RunJob(Job const & i_job, RunOptions const & i_options, RunObserver & io_observer)
{
    std::unique_ptr<Route> const route = MakeRoute(i_options.route, i_options.solver);
    route->CheckJob(i_job);
    for (std::string const & warning : i_job.warnings)
        io_observer.Warning(warning);

    io_observer.Enter("mesh");
    JobModel const model = ReadModel(i_job);
    for (std::string const & remark : model.remarks)
        io_observer.Remark(remark);
    for (std::string const & warning : model.warnings)
        io_observer.Warning(warning);
    route->CheckModel(i_job, model);

    RunRecord record;
    record.folder = MakeFolder(OutFolder(i_job, i_options.out), i_job.name, *route).string();
    record.elementIds = model.mesh.elementIds;
    record.nodeIds = model.mesh.nodeIds;
    try
    {
        RunInFolder(i_job, i_options, *route, model, io_observer, record);
    }
    catch (Interrupted const &)
    {
        LeaveNote(record.folder, "interrupted", "partial: the run was interrupted");
        throw;
    }
    catch (std::exception const & error)
    {
        LeaveNote(record.folder, "failed", error.what());
        throw;
    }
    return record;
}

bool HasFailedCheck(Outcome const & i_outcome)
{
    return std::ranges::any_of(i_outcome.checks, [](OutcomeCheck const & c) { return !c.passed && !c.isWarning; });
}

bool HasFailedWarning(Outcome const & i_outcome)
{
    return !i_outcome.warnings.empty() ||
           std::ranges::any_of(i_outcome.checks, [](auto const & c) { return !c.passed; });
}

} // namespace voz::workbench
