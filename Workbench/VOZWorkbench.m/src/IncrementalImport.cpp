// IncrementalImport.cpp: records of the launcher's file into outcomes.

#include "IncrementalImport.h"

#include "DeckFolder.h"
#include "JobModel.h"
#include "LaunchStatus.h"
#include "LayerResults.h"
#include "OutcomeAnalysis.h"
#include "OutputFile.h"
#include "OutputRecords.h"
#include "RunChecks.h"
#include "RunParts.h"
#include "Sha256.h"
#include "ToolMeshes.h"
#include "Version.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

namespace voz::workbench
{

namespace
{
namespace fs = std::filesystem;

constexpr char const * kSummary = "summary.json";
constexpr char const * kUnread = "could not be read; is it beyond the output points of the job's settings?";

// --- Which run -------------------------------------------------------------------------------------------------------

bool HasDeck(fs::path const & i_folder)
{
    std::error_code error;
    return fs::is_regular_file(i_folder / kDeckFile, error);
}

// "cup-012" of "cup" is 12; 0 for a name of another job.
int NumberOf(std::string const & i_name, std::string const & i_job)
{
    if (!i_name.starts_with(i_job + "-") || i_name.size() == i_job.size() + 1)
        return 0;
    std::string const digits = i_name.substr(i_job.size() + 1);
    bool const isNumber =
        digits.size() <= 6 && std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; });
    return isNumber ? std::stoi(digits) : 0;
}

fs::path NewestRun(Job const & i_job, std::string const & i_out)
{
    std::error_code error;
    fs::path const parent = fs::absolute(OutFolder(i_job, i_out), error).lexically_normal();
    fs::path newest;
    int highest = 0;
    for (fs::directory_entry const & entry : fs::directory_iterator(parent, error))
        if (int const number = NumberOf(entry.path().filename().string(), i_job.name);
            number > highest && HasDeck(entry.path() / kSolverFolder))
        {
            highest = number;
            newest = entry.path();
        }
    if (newest.empty())
        throw InputError(i_job.path, 0, 0,
                         "there is no run of this job with a deck in " + parent.string() +
                             "; \"dravo run --route incremental\" makes one, --run FOLDER names one elsewhere");
    return newest;
}

struct RunFolders
{
    fs::path run;  // where the import's folder is made
    fs::path deck; // with the records
};

RunFolders FoldersOf(Job const & i_job, ImportOptions const & i_options)
{
    if (i_options.run.empty())
    {
        fs::path const run = NewestRun(i_job, i_options.out);
        return {run, run / kSolverFolder};
    }
    std::error_code error;
    fs::path run = fs::absolute(i_options.run, error).lexically_normal();
    if (!run.has_filename())
        run = run.parent_path();
    if (HasDeck(run / kSolverFolder))
        return {run, run / kSolverFolder};
    if (HasDeck(run))
        return {run.filename() == kSolverFolder ? run.parent_path() : run, run};
    throw InputError(i_options.run, 0, 0,
                     fs::is_directory(run, error)
                         ? "there is no deck \"inputls.dyn\" in this folder or in its \"solver\""
                         : "there is no such folder");
}

// --- What there is ---------------------------------------------------------------------------------------------------

// Why there are no records: from the launcher's status.
[[noreturn]] void RefuseWithout(fs::path const & i_deck)
{
    LaunchStatus const status = ReadLaunchStatus(i_deck.string());
    std::string const records = (i_deck / kRecordsFile).string();
    switch (status.state)
    {
    case LaunchState::Failed:
        throw SolverError("there are no results to import: the explicit solver failed: " + status.message);
    case LaunchState::Starting:
    case LaunchState::Running:
    case LaunchState::Converting:
        throw InputError(records, 0, 0,
                         std::string("is not there yet: the run is ") + NameOf(status.state) + " (" +
                             Shortest(status.time) + " of " + Shortest(status.end) + " s, " +
                             std::to_string(status.records) +
                             " states written); import again when launch.status says state=done");
    default:
        throw InputError(records, 0, 0,
                         "is not there: the deck was not solved yet; \"dravo run --route incremental --launch\" "
                         "solves it, or VOZLaunchDyna started on the folder");
    }
}

std::string StepsText(OutputRecords const & i_records)
{
    if (i_records.whole.empty())
        return "no whole step";
    std::string list;
    for (OutputRecord const & record : i_records.whole)
        list += (list.empty() ? "" : ", ") + std::to_string(record.step);
    return std::string(i_records.whole.size() == 1 ? "the step " : "the steps ") + list;
}

OutputRecords RecordsOf(fs::path const & i_deck, std::vector<std::string> & io_warnings)
{
    fs::path const path = i_deck / kRecordsFile;
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        RefuseWithout(i_deck);
    OutputRecords const records = ScanRecords(path.string());
    if (records.whole.empty())
        throw InputError(path.string(), 0, 0,
                         "holds no whole step" + (records.fault.empty() ? ": it is empty" : "; " + records.fault));
    if (!records.fault.empty())
        io_warnings.push_back(path.string() + " is damaged behind step " + std::to_string(records.whole.back().step) +
                              ": " + records.fault);
    if (fs::last_write_time(path, error) < fs::last_write_time(i_deck / kDeckFile, error))
        io_warnings.push_back(path.string() + " is older than the deck: it may belong to another one");
    LaunchStatus const status = ReadLaunchStatus(i_deck.string());
    if (status.state == LaunchState::Running)
        io_warnings.push_back("a run is going on in " + i_deck.string() + "; its results replace these");
    if (status.state == LaunchState::Failed)
        io_warnings.push_back("the explicit solver failed: " + status.message);
    return records;
}

std::vector<int> WantedSteps(ImportOptions const & i_options, OutputRecords const & i_records, fs::path const & i_deck)
{
    std::vector<int> steps;
    for (OutputRecord const & record : i_records.whole)
        if (i_options.areAllSteps || record.step == i_options.step)
            steps.push_back(record.step);
    if (!i_options.areAllSteps && i_options.step < 0)
        steps.push_back(i_records.whole.back().step);
    if (steps.empty())
        throw InputError((i_deck / kRecordsFile).string(), 0, 0,
                         "holds no step " + std::to_string(i_options.step) + "; it holds " + StepsText(i_records) +
                             (i_records.fault.empty() ? "" : "; " + i_records.fault));
    return steps;
}

// What the lock says of its inputs; one that cannot be read (a run that was moved, say) is told.
std::optional<std::vector<OutcomeInput>> LockedInputs(std::string const & i_path,
                                                      std::vector<std::string> & io_warnings)
{
    try
    {
        return ReadJob(i_path).lockedInputs;
    }
    catch (InputError const & error)
    {
        io_warnings.push_back(std::string("whether the run is of this job is not known: ") + error.what());
        return std::nullopt;
    }
}

// The job that the run was made with is named in its lock.
void CompareWithRun(Job const & i_job, fs::path const & i_run, std::vector<std::string> & io_warnings)
{
    std::string const path = (i_run / kLockedJob).string();
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        return;
    std::optional<std::vector<OutcomeInput>> const inputs = LockedInputs(path, io_warnings);
    if (!inputs)
        return;
    bool isNamed = fs::equivalent(path, i_job.path, error); // the lock itself is a job, too
    for (OutcomeInput const & locked : *inputs)
    {
        bool const isSame = locked.sha256 == i_job.sha256;
        bool const isHere = fs::equivalent(locked.path, i_job.path, error);
        if (isHere && !isSame)
            io_warnings.push_back(i_job.path + " is not what it was when the run was made");
        isNamed = isNamed || isSame || isHere;
    }
    if (!isNamed)
        io_warnings.push_back("the run in " + i_run.string() + " was made with another job than " + i_job.path +
                              ": see its " + kLockedJob);
}

// --- Times -----------------------------------------------------------------------------------------------------------

// The output states of the run, out of its summary; empty where there is none.
std::vector<IncrementalOutput> OutputsOf(fs::path const & i_run)
{
    std::vector<IncrementalOutput> outputs;
    std::ifstream file(i_run / kSummary);
    nlohmann::json const summary = nlohmann::json::parse(file, nullptr, false);
    if (!summary.is_object() || !summary.contains("incremental") || !summary["incremental"].contains("outputs"))
        return outputs;
    auto const number = [](nlohmann::json const & i_row, char const * i_key)
    { return i_row.contains(i_key) && i_row[i_key].is_number() ? i_row[i_key].get<double>() : 0.0; };
    for (nlohmann::json const & output : summary["incremental"]["outputs"])
        outputs.push_back({number(output, "position_percent"), number(output, "time_s")});
    return outputs;
}

// A file that ends at a record's end, and yet before the run's.
void CompareWithOutputs(OutputRecords const & i_records, std::vector<IncrementalOutput> const & i_outputs,
                        std::vector<std::string> & io_warnings)
{
    if (i_records.whole.size() < i_outputs.size())
        io_warnings.push_back("the results hold " + StepsText(i_records) + "; the deck asks for " +
                              std::to_string(i_outputs.size()) + " states");
}

// --- One step --------------------------------------------------------------------------------------------------------

[[noreturn]] void RefuseStep(std::string const & i_folder, int i_step, std::string const & i_message)
{
    throw InputError(InFolder(i_folder, kRecordsFile), 0, 0, "step " + std::to_string(i_step) + ": " + i_message);
}

// Corners that are nodes, and every node a corner: else the record is no surface.
void CheckMeshOf(VOZCatMesh const & i_mesh, std::string const & i_folder, int i_step)
{
    std::vector<char> isUsed(static_cast<std::size_t>(i_mesh.numNode()) + 1, 0);
    for (int e = 1; e <= i_mesh.numElem(); ++e)
        for (int k = 0; k < 4; ++k)
        {
            int const node = i_mesh.GetElemData()[e][k];
            if (node < 1 || node > i_mesh.numNode())
                RefuseStep(i_folder, i_step,
                           "element " + std::to_string(e) + " names node " + std::to_string(node) + "; there are " +
                               std::to_string(i_mesh.numNode()));
            isUsed[static_cast<std::size_t>(node)] = 1;
        }
    for (int n = 1; n <= i_mesh.numNode(); ++n)
        if (isUsed[static_cast<std::size_t>(n)] == 0)
            RefuseStep(i_folder, i_step, "node " + std::to_string(n) + " belongs to no element");
}

// The mesh of a step alone, mm, in the stamping frame.
VOZCatMesh MeshOf(Job const & i_job, std::string const & i_folder, int i_step)
{
    DeckSolver solver(i_job);
    solver.SetCurrentStepIndex(i_step);
    if (solver.GetResults(nullptr) != 0 || solver.GetResultMesh() == nullptr)
        RefuseStep(i_folder, i_step, kUnread);
    CheckMeshOf(*solver.GetResultMesh(), i_folder, i_step);
    return *solver.GetResultMesh();
}

// From the stamping frame into the part's coordinates.
void Place(VOZCatMesh & io_mesh, VOZCatAxis const & i_frame)
{
    for (int n = 1; n <= io_mesh.numNode(); ++n)
    {
        double(&row)[3] = io_mesh.GetNodeData()[n];
        double place[3];
        for (int c = 0; c < 3; ++c)
            place[c] = i_frame.origin(c) + i_frame.axis(0, c) * row[0] + i_frame.axis(1, c) * row[1] +
                       i_frame.axis(2, c) * row[2];
        std::copy_n(place, 3, row);
    }
}

// Title, material, limit and the frame that the tools were made in.
Outcome HeadOf(Job const & i_job, JobModel const & i_model)
{
    Tipping const tipping = FindTipping(i_job, i_model);
    WholeJob const whole = MakeWholeJob(i_job, i_model, tipping);
    Outcome head;
    head.route = kIncrementalRoute;
    head.hasBlank = false;
    FillHead(i_job, i_model, tipping, head);
    bool isTurned = false;
    head.frame = ToolFrame(whole, isTurned);
    head.symmetry = Symmetry();
    head.undercut.clear();
    head.summary.undercutAngle = 0.0;
    return head;
}

// Refuses one that is there already, unless it is forced.
fs::path ImportFolder(RunFolders const & i_folders, ImportOptions const & i_options, int i_last)
{
    fs::path const folder =
        i_folders.run / (i_options.areAllSteps ? std::string("steps") : "step-" + std::to_string(i_last));
    std::error_code error;
    if (fs::exists(folder, error) && !i_options.isForced)
        throw OutputError(folder.string(), "it is there already; --force replaces it");
    return folder;
}

void Finish(Job const & i_job, ImportOptions const & i_options, std::vector<std::string> i_warnings,
            RunRecord & io_record)
{
    Outcome & outcome = io_record.outcome;
    outcome.warnings.insert(outcome.warnings.end(), i_warnings.begin(), i_warnings.end());
    outcome.parameters = i_job.parameters;
    outcome.command = i_options.command;
    outcome.version = kVersion;
    outcome.checks = CheckOutcome(i_job, outcome);
    std::error_code error;
    fs::create_directories(io_record.folder, error);
    if (!fs::is_directory(io_record.folder, error))
        throw OutputError(io_record.folder, error.message());
    for (int n = 1; n <= outcome.part.numNode(); ++n)
        io_record.nodeIds.push_back(n);
    for (int e = 1; e <= outcome.part.numElem(); ++e)
        io_record.elementIds.push_back(e);
    WriteOutputs(i_job, io_record);
    std::string const summary = (fs::path(io_record.folder) / kSummary).string();
    WriteJson(summary, SummaryJson(io_record));
    io_record.files.push_back({"summary", summary});
}
} // namespace

Outcome ImportStep(Job const & i_job, Outcome const & i_head, std::string const & i_folder, int i_step)
{
    DeckHost const host(i_folder);
    Outcome outcome = i_head;
    outcome.part = MeshOf(i_job, i_folder, i_step);
    VOZCatMesh & mesh = outcome.part;

    ElemProperty property;
    Material unused;
    property.sizeProperty(1);
    property.sizePropertyIndex(mesh.numElem());
    for (int e = 1; e <= mesh.numElem(); ++e)
        property.propertyId(e, 1);
    FillMaterials(i_job, i_job.materials.front(), unused, *property.material(1));
    property.formingLimit(1) = LimitOf(i_job, i_job.materials.front());

    LayerResults layers(mesh);
    VOZCatMesh const * meshes[1] = {&mesh};
    Symmetry const symmetry;
    Friction friction;
    FullBlankHolder const holder;
    VOZCatAxis const frame;
    DeckSolver solver(i_job);
    solver.SetBoundaryConditions(meshes, 1, &property, &symmetry, &friction, &holder, &frame, 0, 0, 0);
    solver.SetCurrentStepIndex(i_step);
    if (solver.GetResults(layers.all.data()) != 0)
        RefuseStep(i_folder, i_step, kUnread);
    ConvertLayers(layers, outcome);
    Place(mesh, outcome.frame);
    outcome.imported.emplace();
    outcome.imported->step = i_step;
    Summarise(outcome);
    outcome.zones = GatherZones(outcome);
    return outcome;
}

RunRecord ImportSteps(Job const & i_job, ImportOptions const & i_options, RunObserver & io_observer)
{
    std::vector<std::string> warnings;
    RunFolders const folders = FoldersOf(i_job, i_options);
    OutputRecords const records = RecordsOf(folders.deck, warnings);
    std::vector<int> const steps = WantedSteps(i_options, records, folders.deck);
    CompareWithRun(i_job, folders.run, warnings);
    std::vector<IncrementalOutput> const outputs = OutputsOf(folders.run);
    CompareWithOutputs(records, outputs, warnings);
    for (OutputRecord const & record : records.whole)
        if (long long const wanted = 12LL * record.elements;
            record.components != wanted && std::ranges::find(steps, record.step) != steps.end())
            warnings.push_back("step " + std::to_string(record.step) + " holds " + std::to_string(record.components) +
                               " components of strain, expected 12 for each element, " + std::to_string(wanted) +
                               "; what is missing counts as 0");
    for (std::string const & warning : warnings)
        io_observer.Warning(warning);

    io_observer.Enter("mesh");
    Outcome const head = HeadOf(i_job, ReadModel(i_job));
    RunRecord record;
    record.folder = ImportFolder(folders, i_options, steps.back()).string();
    io_observer.Enter("import");
    std::vector<Outcome> imported;
    for (int const step : steps)
    {
        if (io_observer.IsInterrupted())
            throw Interrupted();
        imported.push_back(ImportStep(i_job, head, folders.deck.string(), step));
        ImportedStep & about = *imported.back().imported;
        about.steps = static_cast<int>(records.whole.size());
        if (step >= 0 && static_cast<std::size_t>(step) < outputs.size())
            about.output = outputs[static_cast<std::size_t>(step)];
        io_observer.Progress(static_cast<int>(100 * imported.size() / steps.size()));
    }
    record.outcome = imported.back();
    if (i_options.areAllSteps)
        record.outcome.steps = std::move(imported);
    record.outcome.inputs.push_back({i_job.path, i_job.sha256});
    io_observer.Enter("output");
    Finish(i_job, i_options, std::move(warnings), record);
    return record;
}

} // namespace voz::workbench
