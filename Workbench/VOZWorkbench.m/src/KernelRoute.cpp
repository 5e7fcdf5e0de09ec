// KernelRoute.cpp: the steps of a run by the in-process route, and the one conversion of what it gives.

#include "KernelRoute.h"

#include "CATError.h"
#include "KernelRun.h"
#include "KernelSpringback.h"
#include "LayerResults.h"
#include "OutputFile.h"
#include "QuadrilateralAngles.h"
#include "RouteParts.h"
#include "TubeModel.h"
#include "VOZSolverMultiStage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

namespace voz::workbench
{

namespace
{
constexpr double kMillimetrePerMetre = 1000.0;
constexpr std::size_t kFolderCharacters = 250; // of the kernel's folder, "springback" included

// --- m, %, Pa to mm, %, MPa ----------------------------------------------------------------------------------------

void ConvertPlaces(Result const & i_top, Outcome & io_outcome)
{
    for (int n = 1; n <= io_outcome.part.numNode(); ++n)
    {
        NodeOutcome & node = io_outcome.nodes[static_cast<std::size_t>(n) - 1];
        for (int c = 0; c < 3; ++c)
        {
            auto const i = static_cast<std::size_t>(c);
            node.displacement[i] = kMillimetrePerMetre * static_cast<double>(i_top.disp1(n, c));
            node.onBinder[i] = kMillimetrePerMetre * static_cast<double>(i_top.dispOnBinder1(n, c));
        }
        node.flat = FlatPlace(io_outcome.part.GetNodeData()[n], node.displacement, io_outcome.frame);
    }
}

void Convert(LayerResults const & i_layers, Outcome & io_outcome)
{
    io_outcome.summary.punchForce = i_layers.top.PunchForce();
    ConvertLayers(i_layers, io_outcome);
    ConvertPlaces(i_layers.top, io_outcome);
    FillQuadrilateralAngles(io_outcome);
    Summarise(io_outcome);
}

// --- The strains that were asked for -------------------------------------------------------------------------------

// Log strain of a node, the mean over its elements by their areas.
double LogStrainAt(Outcome const & i_outcome, int i_node)
{
    double sum = 0.0;
    double area = 0.0;
    for (std::size_t e = 0; e < i_outcome.elements.size(); ++e)
        for (int k = 0; k < (i_outcome.part.isTriangle(static_cast<int>(e) + 1) != 0 ? 3 : 4); ++k)
            if (i_outcome.part.ElementValue(static_cast<int>(e) + 1, k) == i_node)
            {
                sum += i_outcome.elements[e].area * std::log1p(i_outcome.elements[e].major / 100.0);
                area += i_outcome.elements[e].area;
            }
    return area > 0.0 ? sum / area : 0.0;
}

void CheckWantedStrains(Job const & i_job, Outcome & io_outcome)
{
    if (!i_job.autoStrain)
        return;
    constexpr double kReached = 0.001; // log strain
    JobAutoStrain const & wanted = *i_job.autoStrain;
    struct Place
    {
        char const * name;
        std::optional<Point3> const & point;
        double strain;
    };
    for (Place const & place : {Place{"target", wanted.target, wanted.targetStrain},
                                Place{"reference", wanted.reference, wanted.referenceStrain}})
    {
        if (!place.point)
            continue;
        double const reached = LogStrainAt(io_outcome, NearestNode(io_outcome.part, *place.point));
        bool const isReached = std::abs(reached - std::log1p(place.strain / 100.0)) <= kReached;
        io_outcome.checks.push_back({std::string("major strain at the ") + place.name + " point",
                                     Fixed(100.0 * std::expm1(reached), 3) + " %",
                                     Fixed(place.strain, 3) + " % as asked for", isReached, true});
    }
}

void Form(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Process const & i_process,
          RouteOptions const & i_options, RunObserver & io_observer, LayerResults & o_layers)
{
    VOZCatMesh const * meshes[2] = {&i_model.mesh.mesh, i_model.binder ? &i_model.binder->mesh : nullptr};
    VOZSolverMultiStage solver;
    solver.SetBoundaryConditions(meshes, i_model.binder ? 2 : 1, &i_process.property, &i_tipping.symmetry,
                                 &i_process.friction, &i_process.fullHolder, &i_tipping.frame,
                                 i_job.toolFriction ? 1 : 0, 0, 0);
    RouteTask task(io_observer);
    RouteHost const host(i_options.folder, i_options.folder, i_job.steps);
    std::string const what = "the kernel could not form the part";
    Driven(what, i_options.folder, [&] { return solver.Run(&task); });
    Driven(what, i_options.folder, [&] { return solver.GetResults(o_layers.all.data()); });
}
} // namespace

void Driven(std::string const & i_what, std::string const & i_folder, std::function<long()> const & i_step)
{
    std::string reason;
    try
    {
        if (i_step() == 0)
            return;
        reason = LastLines(TextIfThere(InFolder(i_folder, kKernelLog)), 4);
    }
    catch (CATError const & error)
    {
        reason = std::string(error.Message()) + "\n(nodes and elements are counted from 0 here, in the order of the "
                                                "mesh file)";
    }
    throw SolverError(i_what + (reason.empty() ? "" : ": " + reason));
}

void KernelRoute::CheckModel(Job const & i_job, JobModel const & i_model) const
{
    MaterialOfElements(i_job, i_model); // none without a material
}

void KernelRoute::CheckFolder(std::string const & i_folder) const
{
    CheckFolderPath(i_folder, kKernelRoute);
    if (i_folder.size() > kFolderCharacters)
        RefuseFolder(i_folder, kKernelRoute,
                     "its path is " + std::to_string(i_folder.size() - kFolderCharacters) + " characters too long");
}

Outcome KernelRoute::Run(Job const & i_job, JobModel const & i_model, RouteOptions const & i_options,
                         RunObserver & io_observer) const
{
    CheckModel(i_job, i_model);
    CheckFolder(i_options.folder);
    io_observer.Enter("stamping frame");
    std::optional<OpenedTube> tube;
    if (i_job.tube)
        tube.emplace(OpenTube(i_job, i_model));
    JobModel const & model = tube ? tube->model : i_model;
    Tipping const tipping = tube ? tube->tipping : FindTipping(i_job, i_model);
    Process process;
    BuildProcess(i_job, model, tipping, PadsBy(), process);
    if (tube)
    {
        TakeLips(*tube, process.property);
        process.warnings.insert(process.warnings.end(), tube->warnings.begin(), tube->warnings.end());
    }
    for (std::string const & warning : process.warnings)
        io_observer.Warning(warning);
    WriteText(InFolder(i_options.folder, kConfiguration), ConfigurationText(i_job.limits));

    io_observer.Enter("solver");
    LayerResults layers(model.mesh.mesh);
    Form(i_job, model, tipping, process, i_options, io_observer, layers);

    io_observer.Enter("results");
    Outcome outcome;
    outcome.route = Name();
    FillHead(i_job, model, tipping, outcome);
    outcome.hasBinder = model.binder.has_value();
    Convert(layers, outcome);
    outcome.log = WithoutTimes(TextIfThere(InFolder(i_options.folder, kKernelLog)));
    outcome.checks = SolverChecks(TextIfThere(InFolder(i_options.folder, kKernelSummary)));
    CheckWantedStrains(i_job, outcome);
    if (tube)
        WrapTube(*tube, layers.top, outcome);
    outcome.warnings = process.warnings;
    if (i_job.HasSpringback())
    {
        io_observer.Enter("springback");
        outcome.springback = KernelSpringback(i_job, i_model, outcome, i_options.folder, io_observer);
    }
    return outcome;
}

} // namespace voz::workbench
