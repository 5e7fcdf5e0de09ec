// VerbInspect.cpp: inspect: what a mesh is, what is wrong with it, how it would be stamped, whether it lies flat.

#include "Console.h"
#include "ExitCode.h"
#include "FlatCheck.h"
#include "MeshArguments.h"
#include "MeshCheck.h"
#include "TippingText.h"
#include "Verbs.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <memory>
#include <optional>

namespace
{
using namespace voz::workbench;

struct InspectArguments
{
    MeshArguments mesh;
    std::string repair;
    std::string symmetry = "none";
    double planeX = 0.0; // mm
    double planeY = 0.0;
    std::vector<double> dieLine;
    std::optional<double> tolerance; // mm
    std::size_t listed = 10;         // findings of a kind
    bool isTip = false;
    bool isFlat = false;
    bool isJson = false;
};

// Wrong use is told while the command line is read.
void CheckNumbers(InspectArguments & io_arguments)
{
    std::vector<double> & line = io_arguments.dieLine;
    if (!line.empty())
    {
        double const length = std::hypot(line[0], line[1], line[2]);
        if (!std::isfinite(length) || !(length > 0.0))
            throw CLI::ValidationError("--die-line", "expected three finite numbers, not all 0");
        for (double & component : line)
            component /= length;
        if (std::string const fault =
                DieLineFault(NamedPlanes(io_arguments.symmetry, 0.0, 0.0), {line[0], line[1], line[2]});
            !fault.empty())
            throw CLI::ValidationError("--die-line", fault);
    }
    if (!std::isfinite(io_arguments.planeX) || !std::isfinite(io_arguments.planeY))
        throw CLI::ValidationError("--plane-x, --plane-y", "expected finite numbers of millimetres");
    if (io_arguments.tolerance && !(std::isfinite(*io_arguments.tolerance) && *io_arguments.tolerance >= 0.0))
        throw CLI::ValidationError("--tolerance", "expected a finite number of millimetres, 0 or more");
}

Tipping TippingOf(InspectArguments const & i_arguments, MeshModel const & i_model, MeshReport const & i_report)
{
    std::vector<JobPlane> const planes = NamedPlanes(i_arguments.symmetry, i_arguments.planeX, i_arguments.planeY);
    RequirePlanes(i_model.mesh, i_report.meanEdge, planes, i_arguments.mesh.in);
    std::optional<Point3> dieLine;
    if (!i_arguments.dieLine.empty())
        dieLine = {i_arguments.dieLine[0], i_arguments.dieLine[1], i_arguments.dieLine[2]};
    Tipping tipping = FindTipping(i_model.mesh, planes, dieLine);
    RequireFrame(tipping, i_arguments.mesh.in, "--die-line");
    return tipping;
}

struct Inspected
{
    std::vector<RepairStep> repairs;
    MeshReport report;
    std::optional<Tipping> tipping;
    std::optional<FlatFaults> flat;
};

void ShowJson(Inspected const & i_found, MeshModel const & i_model)
{
    nlohmann::json json = ReportAsJson(i_model, i_found.report);
    json["repairs"] = nlohmann::json::array();
    for (RepairStep const & step : i_found.repairs)
        json["repairs"].push_back({{"text", step.text}, {"ids", step.ids}, {"done", step.isDone}});
    if (i_found.tipping)
        json["stamping_frame"] = TippingAsJson(*i_found.tipping, i_model);
    if (i_found.flat)
        json["flat"] = FlatFaultsAsJson(*i_found.flat, i_model);
    PrintJson(json);
}

void ShowText(Inspected const & i_found, MeshModel const & i_model, std::size_t i_listed)
{
    for (RepairStep const & step : i_found.repairs)
        Console::Print((step.isDone ? "Mended: " : "Left alone: ") + step.text + "\n");
    Console::Print(ReportAsText(i_model, i_found.report));
    if (i_found.tipping)
        Console::Print(TippingAsText(*i_found.tipping));
    if (i_found.flat)
        Console::Print(FlatFaultsAsText(*i_found.flat, i_model, i_listed));
}

int Inspect(InspectArguments const & i_arguments)
{
    MeshModel model = i_arguments.mesh.Read();
    Inspected found;
    if (!i_arguments.repair.empty())
    {
        ProtectFile(i_arguments.repair, i_arguments.mesh.isForced);
        RepairOptions options;
        options.pairTolerance = i_arguments.tolerance.value_or(-1.0);
        found.repairs = RepairMesh(model, options);
        WriteMesh(model, i_arguments.repair);
    }
    CheckOptions options;
    options.pairTolerance = i_arguments.tolerance.value_or(-1.0);
    options.listed = i_arguments.listed;
    found.report = CheckMesh(model, options);
    if (i_arguments.isTip)
        found.tipping = TippingOf(i_arguments, model, found.report);
    if (i_arguments.isFlat)
        found.flat = CheckFlat(model.mesh);
    if (i_arguments.isJson)
        ShowJson(found, model);
    else
        ShowText(found, model, i_arguments.listed);
    bool const isCrossed = found.flat && found.flat->AreThere();
    return found.report.HasErrors() || isCrossed ? ExitCheckFailed : ExitDone;
}
} // namespace

void AddInspect(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<InspectArguments>();
    CLI::App * const verb = io_app.add_subcommand("inspect", "Count a mesh and name what is wrong with it");
    arguments->mesh.AddTo(*verb);
    CLI::Option * const tip =
        verb->add_flag("--tip", arguments->isTip, "Show the stamping frame and the undercuts, too");
    verb->add_flag("--flat", arguments->isFlat, "Show where a flat pattern crosses or folds over itself, too");
    verb->add_option("--repair", arguments->repair, "Mend what is safe and write the mesh to this file");
    CLI::Option * const symmetry =
        verb->add_option("--symmetry", arguments->symmetry, "Of the model, for --tip: none, xz, yz, both")
            ->check(CLI::IsMember({"none", "xz", "yz", "both"}))
            ->needs(tip);
    verb->add_option("--plane-x", arguments->planeX, "Where the yz plane of symmetry stands, in mm (default 0)")
        ->needs(symmetry);
    verb->add_option("--plane-y", arguments->planeY, "Where the xz plane of symmetry stands, in mm (default 0)")
        ->needs(symmetry);
    verb->add_option("--die-line", arguments->dieLine, "Stamping direction x,y,z, for --tip")
        ->delimiter(',')
        ->expected(3)
        ->needs(tip);
    verb->add_option("--tolerance", arguments->tolerance, "Nodes nearer than this are one, in mm");
    verb->add_option("--list", arguments->listed, "How many findings of a kind are named (all are counted)")
        ->capture_default_str();
    verb->add_flag("--json", arguments->isJson, "One JSON document");
    verb->footer(
        "Exit code 1: the mesh has faults that a solver would stumble over; with --flat, it lies over itself.\n"
        "Example: dravo inspect part.bdf --tip --repair part_mended.bdf");
    verb->callback(
        [&io_action, arguments]
        {
            CheckNumbers(*arguments);
            io_action = [arguments] { return Inspect(*arguments); };
        });
}
