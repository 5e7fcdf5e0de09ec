// IncrementalRoute.cpp: the steps of a run that ends with a deck.

#include "IncrementalRoute.h"

#include "CATError.h"
#include "DeckChecks.h"
#include "DeckFolder.h"
#include "DeckInput.h"
#include "KernelRoute.h"
#include "LaunchStatus.h"
#include "OutputFile.h"

#include <filesystem>

namespace voz::workbench
{

namespace
{
namespace fs = std::filesystem;

constexpr char const * kKernelFolder = "kernel";
constexpr std::size_t kFolderCharacters = 230; // the driver's own buffer holds 259 for the longest path in it

// The part alone, for a job whose blank is given.
Outcome HeadAlone(Job const & i_job, JobModel const & i_model)
{
    Outcome outcome;
    outcome.hasBlank = false;
    FillHead(i_job, i_model, FindTipping(i_job, i_model), outcome);
    Summarise(outcome);
    return outcome;
}

Outcome FormedBlank(Job const & i_job, JobModel const & i_model, RouteOptions const & i_options,
                    RunObserver & io_observer)
{
    RouteOptions kernel = i_options;
    kernel.folder = InFolder(i_options.folder, kKernelFolder);
    std::error_code error;
    fs::create_directory(kernel.folder, error);
    if (!fs::is_directory(kernel.folder, error))
        throw OutputError(kernel.folder, error.message());
    return KernelRoute().Run(i_job, i_model, kernel, io_observer);
}

// Writes the deck; the numbers behind it.
IncrementalFigures WriteDeck(Job const & i_job, DeckInput & io_input, std::string const & i_folder)
{
    std::array<VOZCatMesh const *, 4> meshes = io_input.Meshes();
    DeckHost const host(i_folder);
    DeckSolver solver(i_job);
    JobIncremental const incremental = IncrementalOf(i_job);
    solver.SetBoundaryConditions(meshes.data(), static_cast<int>(meshes.size()), &io_input.process.property,
                                 &io_input.symmetry, &io_input.process.friction, &io_input.process.fullHolder,
                                 &io_input.frame, incremental.processFlag ? 1 : 0, incremental.processMode,
                                 incremental.toolMode);
    long status = 0;
    try
    {
        status = solver.Run(nullptr);
    }
    catch (CATError const & error)
    {
        throw OutputError(InFolder(i_folder, kDeckFile), error.Message());
    }
    if (status != 0)
        throw OutputError(InFolder(i_folder, kDeckFile), "the library could not write the deck");
    RequireWholeDeck(i_folder);
    IncrementalFigures figures = solver.Figures();
    if (incremental.isOpenSolver)
        for (OpenDeckRemark & remark : solver.WriteOpenDeck())
            figures.openDeck.emplace_back(std::move(remark.keyword), std::move(remark.reason));
    return figures;
}
} // namespace

void IncrementalRoute::CheckJob(Job const & i_job) const
{
    CheckDeckJob(i_job);
    CheckTemplate(i_job);
}

void IncrementalRoute::CheckModel(Job const & i_job, JobModel const & i_model) const
{
    KernelRoute().CheckModel(i_job, i_model);
}

void IncrementalRoute::CheckFolder(std::string const & i_folder) const
{
    CheckFolderPath(i_folder, kIncrementalRoute);
    if (i_folder.size() > kFolderCharacters)
        RefuseFolder(i_folder, kIncrementalRoute,
                     "its path is " + std::to_string(i_folder.size() - kFolderCharacters) + " characters too long");
}

Outcome IncrementalRoute::Run(Job const & i_job, JobModel const & i_model, RouteOptions const & i_options,
                              RunObserver & io_observer) const
{
    CheckJob(i_job);
    CheckModel(i_job, i_model);
    CheckFolder(i_options.folder);
    bool const isBlankGiven = !IncrementalOf(i_job).blank.empty();
    Outcome outcome = isBlankGiven ? HeadAlone(i_job, i_model) : FormedBlank(i_job, i_model, i_options, io_observer);
    outcome.route = Name();

    io_observer.Enter("tools");
    DeckInput input;
    BuildDeckInput(i_job, i_model, isBlankGiven ? nullptr : &outcome, input);
    for (auto const * const list : {&input.whole.remarks, &input.tools.remarks})
        for (std::string const & remark : *list)
            io_observer.Remark(remark);
    std::vector<std::string> warnings = input.tools.warnings;
    warnings.insert(warnings.end(), input.process.warnings.begin(), input.process.warnings.end());
    if (i_job.HasSpringback())
        warnings.emplace_back("springback is that of the kernel's run; the deck says nothing of it");
    if (i_job.binder)
        warnings.emplace_back(
            "[binder] is the surface of the kernel's run; the deck's binder is incremental.binder, or "
            "made from the part");
    for (std::string const & warning : warnings)
        io_observer.Warning(warning);
    outcome.warnings.insert(outcome.warnings.end(), warnings.begin(), warnings.end());

    io_observer.Enter("deck");
    PrepareDeckFolder(i_job, i_options.folder);
    GapFigures const gap = GapOf(input.tools.punch, input.tools.die); // mm: the run takes the meshes to metres
    IncrementalFigures figures = WriteDeck(i_job, input, i_options.folder);
    figures.leastGap = gap.least;
    figures.greatestGap = gap.greatest;
    figures.meshes = input.meshes;
    figures.remarks = input.whole.remarks;
    figures.remarks.insert(figures.remarks.end(), input.tools.remarks.begin(), input.tools.remarks.end());
    for (OutcomeCheck & check : CheckDeck(figures, HasHolder(i_job), i_options.folder))
        outcome.checks.push_back(std::move(check));
    outcome.incremental = std::move(figures);
    return outcome;
}

void LaunchSolver(Job const & i_job, std::string const & i_folder)
{
    FindLauncher();
    RemoveLaunchStatus(i_folder); // of an earlier run: it would be taken for this one's
    DeckHost const host(i_folder);
    DeckSolver solver(i_job);
    if (solver.FindFolder() != 0 || solver.RunLSDyna() != 0)
        throw SolverError("the launcher could not be started on the deck in " + i_folder);
}

} // namespace voz::workbench
