// VerbMesh.cpp: inspect and convert: the verbs of a mesh.

#include "Console.h"
#include "ExitCode.h"
#include "JobModel.h"
#include "MeshCheck.h"
#include "OutputFile.h"
#include "Verbs.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <memory>
#include <optional>

namespace
{
using namespace voz::workbench;

struct MeshArguments
{
    std::string in;
    std::string out;    // convert
    std::string repair; // inspect
    std::string symmetry = "none";
    std::vector<double> dieLine;
    std::optional<double> tolerance; // mm
    double unitLength = 0.0;         // mm
    std::size_t listed = 10;         // findings of a kind
    bool isTip = false;
    bool isJson = false;
    bool isForced = false;

    MeshModel Read() const
    {
        ReadOptions options;
        options.unitLength = unitLength;
        return ReadMesh(in, options);
    }
};

void PrintRemarks(MeshModel const & i_model)
{
    Console console(Talk::Usual);
    for (std::string const & remark : i_model.remarks)
        console.Note(remark);
    for (SkippedItem const & item : i_model.skipped)
        console.Note("skipped: " + std::to_string(item.count) + " x " + item.name);
}

// Wrong use is told while the command line is read.
void CheckNumbers(MeshArguments & io_arguments)
{
    std::vector<double> & line = io_arguments.dieLine;
    if (!line.empty())
    {
        double const length = std::hypot(line[0], line[1], line[2]);
        if (!std::isfinite(length) || !(length > 0.0))
            throw CLI::ValidationError("--die-line", "expected three finite numbers, not all 0");
        for (double & component : line)
            component /= length;
    }
    if (io_arguments.tolerance && !(std::isfinite(*io_arguments.tolerance) && *io_arguments.tolerance >= 0.0))
        throw CLI::ValidationError("--tolerance", "expected a finite number of millimetres, 0 or more");
}

Tipping TippingOf(MeshArguments const & i_arguments, MeshModel const & i_model)
{
    std::vector<JobPlane> planes;
    if (i_arguments.symmetry == "yz" || i_arguments.symmetry == "both")
        planes.push_back({{1.0, 0.0, 0.0}, {}});
    if (i_arguments.symmetry == "xz" || i_arguments.symmetry == "both")
        planes.push_back({{0.0, 1.0, 0.0}, {}});
    std::optional<Point3> dieLine;
    if (!i_arguments.dieLine.empty())
        dieLine = {i_arguments.dieLine[0], i_arguments.dieLine[1], i_arguments.dieLine[2]};
    Tipping tipping = FindTipping(i_model.mesh, planes, dieLine);
    RequireFrame(tipping, i_arguments.in, "--die-line");
    return tipping;
}

std::string Row(VOZCatAxis const & i_frame, int i_row)
{
    return Fixed(i_frame.axis(i_row, 0), 6) + " " + Fixed(i_frame.axis(i_row, 1), 6) + " " +
           Fixed(i_frame.axis(i_row, 2), 6);
}

std::string TextOf(Tipping const & i_tipping)
{
    VOZCatAxis const & frame = i_tipping.frame;
    return "Stamping frame\n  local x    " + Row(frame, 0) + "\n  local y    " + Row(frame, 1) + "\n  direction  " +
           Row(frame, 2) + "\n  origin     " + Fixed(frame.origin(0), 4) + " " + Fixed(frame.origin(1), 4) + " " +
           Fixed(frame.origin(2), 4) + " mm\nUndercuts: " + std::to_string(i_tipping.undercutElements) +
           " elements, up to " + Fixed(i_tipping.undercutAngle, 2) + " deg\n";
}

nlohmann::json JsonOf(Tipping const & i_tipping, MeshModel const & i_model)
{
    nlohmann::json json;
    for (int row = 0; row < 3; ++row)
        json["axes"].push_back(
            {i_tipping.frame.axis(row, 0), i_tipping.frame.axis(row, 1), i_tipping.frame.axis(row, 2)});
    json["origin_mm"] = {i_tipping.frame.origin(0), i_tipping.frame.origin(1), i_tipping.frame.origin(2)};
    json["undercut_angle_deg"] = i_tipping.undercutAngle;
    json["undercut_elements"] = nlohmann::json::array();
    for (std::size_t e = 0; e < i_tipping.undercut.size(); ++e)
        if (i_tipping.undercut[e] != 0)
            json["undercut_elements"].push_back(i_model.elementIds[e]);
    return json;
}

int Inspect(MeshArguments const & i_arguments)
{
    MeshModel model = i_arguments.Read();
    PrintRemarks(model);
    std::vector<RepairStep> steps;
    if (!i_arguments.repair.empty())
    {
        ProtectFile(i_arguments.repair, i_arguments.isForced);
        RepairOptions options;
        options.pairTolerance = i_arguments.tolerance.value_or(-1.0);
        steps = RepairMesh(model, options);
        WriteMesh(model, i_arguments.repair);
    }
    CheckOptions options;
    options.pairTolerance = i_arguments.tolerance.value_or(-1.0);
    options.listed = i_arguments.listed;
    MeshReport const report = CheckMesh(model, options);
    std::optional<Tipping> tipping;
    if (i_arguments.isTip)
        tipping = TippingOf(i_arguments, model);
    if (i_arguments.isJson)
    {
        nlohmann::json json = ReportAsJson(model, report);
        json["repairs"] = nlohmann::json::array();
        for (RepairStep const & step : steps)
            json["repairs"].push_back({{"text", step.text}, {"ids", step.ids}, {"done", step.isDone}});
        if (tipping)
            json["stamping_frame"] = JsonOf(*tipping, model);
        PrintJson(json);
    }
    else
    {
        for (RepairStep const & step : steps)
            Console::Print((step.isDone ? "Mended: " : "Left alone: ") + step.text + "\n");
        Console::Print(ReportAsText(model, report));
        if (tipping)
            Console::Print(TextOf(*tipping));
    }
    return report.HasErrors() ? ExitCheckFailed : ExitDone;
}

int Convert(MeshArguments const & i_arguments)
{
    MeshModel const model = i_arguments.Read();
    PrintRemarks(model);
    ProtectFile(i_arguments.out, i_arguments.isForced);
    WriteMesh(model, i_arguments.out);
    Console::Print(i_arguments.out + ": " + std::to_string(model.mesh.numNode()) + " nodes, " +
                   std::to_string(model.mesh.numElem()) + " elements\n");
    return ExitDone;
}

// Empty for a file whose extension tells a format that can be written.
std::string CheckExtension(std::string const & i_path)
{
    if (FormatOfPath(i_path) != MeshFormat::Unknown && !i_path.ends_with(".gz")) // nothing is written zipped
        return {};
    std::string known;
    for (MeshFormatName const & format : MeshFormats())
        known += (known.empty() ? "" : " ") + std::string(format.extensions);
    return "\"" + i_path + "\" has no extension of a mesh format; expected one of " + known;
}

void AddMesh(CLI::App & io_verb, MeshArguments & io_arguments)
{
    io_verb
        .add_option("MESH", io_arguments.in, "Nastran bulk data, LS-DYNA keyword, OBJ or STL; - reads standard input")
        ->required();
    io_verb.add_option("--length-unit", io_arguments.unitLength, "Of the file: mm, cm, m, um, in")
        ->transform(CLI::CheckedTransformer(
            std::map<std::string, double>{{"mm", 1.0}, {"cm", 10.0}, {"m", 1000.0}, {"um", 0.001}, {"in", 25.4}}));
    io_verb.add_flag("--force", io_arguments.isForced, "Replace a file that is there");
}
} // namespace

void AddInspect(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<MeshArguments>();
    CLI::App * const verb = io_app.add_subcommand("inspect", "Count a mesh and name what is wrong with it");
    AddMesh(*verb, *arguments);
    verb->add_flag("--tip", arguments->isTip, "Show the stamping frame and the undercuts, too");
    verb->add_option("--repair", arguments->repair, "Mend what is safe and write the mesh to this file");
    verb->add_option("--symmetry", arguments->symmetry, "Of the model, for --tip: none, xz, yz, both")
        ->check(CLI::IsMember({"none", "xz", "yz", "both"}));
    verb->add_option("--die-line", arguments->dieLine, "Stamping direction x y z, for --tip")->expected(3);
    verb->add_option("--tolerance", arguments->tolerance, "Nodes nearer than this are one, in mm");
    verb->add_option("--list", arguments->listed, "How many findings of a kind are named (all are counted)")
        ->capture_default_str();
    verb->add_flag("--json", arguments->isJson, "One JSON document");
    verb->footer("Exit code 1: the mesh has faults that a solver would stumble over.\n"
                 "Example: dravo inspect part.bdf --tip --repair part_mended.bdf");
    verb->callback(
        [&io_action, arguments]
        {
            CheckNumbers(*arguments);
            io_action = [arguments] { return Inspect(*arguments); };
        });
}

void AddConvert(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<MeshArguments>();
    CLI::App * const verb = io_app.add_subcommand("convert", "Write a mesh in another format, in millimetres");
    AddMesh(*verb, *arguments);
    verb->add_option("OUT", arguments->out, "File to write; its extension tells the format")
        ->required()
        ->check(CheckExtension);
    verb->footer("Example: dravo convert part.k part.bdf");
    verb->callback([&io_action, arguments] { io_action = [arguments] { return Convert(*arguments); }; });
}
