// RunSummary.cpp: the figures of a run, for people and for scripts.

#include "IncrementalSummary.h"
#include "OutcomeAnalysis.h"
#include "OutputFile.h"
#include "Run.h"
#include "Version.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

namespace voz::workbench
{

namespace
{
struct ZoneName
{
    int code;
    char const * key;
    char const * text;
};

constexpr std::array<ZoneName, 6> kZones = {{{0, "failed", "failed"},
                                             {1, "marginal", "marginal"},
                                             {2, "safe", "safe"},
                                             {3, "compression", "compressed"},
                                             {4, "wrinkling", "wrinkling"},
                                             {-1, "undefined", "undefined"}}};

double Share(OutcomeSummary const & i_summary, int i_code)
{
    return i_summary.safetyShare[static_cast<std::size_t>(i_code + 1)];
}

double ByArea(OutcomeSummary const & i_summary, int i_code)
{
    return i_summary.safetyAreaShare[static_cast<std::size_t>(i_code + 1)];
}

// Figures of a mesh are good for about eight digits; the rest is the noise of single precision.
double Rounded(double i_value)
{
    if (i_value == 0.0 || !std::isfinite(i_value))
        return 0.0;
    double const scale = std::pow(10.0, 7 - std::floor(std::log10(std::abs(i_value))));
    return std::round(i_value * scale) / scale;
}

double WholeWidth(Outcome const & i_outcome)
{
    return i_outcome.summary.blankWidth * (i_outcome.symmetry.yzSymmetry() ? 2.0 : 1.0);
}

double WholeHeight(Outcome const & i_outcome)
{
    return i_outcome.summary.blankHeight * (i_outcome.symmetry.xzSymmetry() ? 2.0 : 1.0);
}

void Row(std::string & io_text, std::string i_name, std::string const & i_value)
{
    constexpr std::size_t kColumn = 22;
    i_name.append(i_name.size() < kColumn ? kColumn - i_name.size() : 1, ' ');
    io_text += i_name + i_value + "\n";
}

nlohmann::json JsonOf(OutcomeSummary const & i_summary, Outcome const & i_outcome)
{
    double const factor = i_summary.symmetryFactor;
    return {{"width_mm", Rounded(WholeWidth(i_outcome))},
            {"height_mm", Rounded(WholeHeight(i_outcome))},
            {"area_mm2", Rounded(factor * i_summary.blankArea)},
            {"mass_kg", Rounded(factor * i_summary.blankMass)},
            {"model_width_mm", Rounded(i_summary.blankWidth)},
            {"model_height_mm", Rounded(i_summary.blankHeight)},
            {"model_area_mm2", Rounded(i_summary.blankArea)},
            {"model_perimeter_mm", Rounded(i_summary.blankPerimeter)},
            {"model_smallest_rectangle_mm",
             {Rounded(i_summary.smallestRectangle[0]), Rounded(i_summary.smallestRectangle[1])}},
            {"model_smallest_rectangle_angle_deg", Rounded(i_summary.smallestRectangle[2])}};
}

nlohmann::json StrainsOf(std::vector<ElementOutcome> const & i_elements)
{
    double greatestMajor = 0.0;
    double leastMinor = 0.0;
    for (ElementOutcome const & element : i_elements)
    {
        greatestMajor = std::max(greatestMajor, element.major);
        leastMinor = std::min(leastMinor, element.minor);
    }
    return {{"greatest_major_percent", Rounded(greatestMajor)}, {"least_minor_percent", Rounded(leastMinor)}};
}

// Nodes of the model by their ids; an image of one has none.
nlohmann::json NodeName(int i_node, RunRecord const & i_record)
{
    auto const n = static_cast<std::size_t>(i_node);
    return n < i_record.nodeIds.size() ? nlohmann::json(i_record.nodeIds[n]) : nlohmann::json(nullptr);
}

nlohmann::json ZonesOf(RunRecord const & i_record)
{
    nlohmann::json zones = nlohmann::json::array();
    for (OutcomeZone const & zone : i_record.outcome.zones)
    {
        auto const named = std::ranges::find(kZones, zone.safety, &ZoneName::code);
        double const * const p = i_record.outcome.part.GetNodeData()[zone.centre + 1];
        zones.push_back({{"number", zones.size() + 1},
                         {"safety", named->key},
                         {"place", ZonePlaceKey(zone.place)},
                         {"model_area_mm2", Rounded(zone.area)},
                         {"nodes", zone.nodes.size()},
                         {"at_node", NodeName(zone.centre, i_record)},
                         {"at_mm", {Rounded(p[0]), Rounded(p[1]), Rounded(p[2])}},
                         {"normal", {Rounded(zone.normal[0]), Rounded(zone.normal[1]), Rounded(zone.normal[2])}}});
    }
    return zones;
}

nlohmann::json CrossingsOf(RunRecord const & i_record)
{
    nlohmann::json crossings = nlohmann::json::array();
    for (FlatCrossing const & crossing : i_record.outcome.flat.crossings)
        crossings.push_back(
            {{"kind", crossing.isOverlap ? "overlap" : "fold"},
             {"edge", {NodeName(crossing.edge.start - 1, i_record), NodeName(crossing.edge.end - 1, i_record)}},
             {"partner",
              {NodeName(crossing.partner.start - 1, i_record), NodeName(crossing.partner.end - 1, i_record)}},
             {"place_mm", {Rounded(crossing.place[0]), Rounded(crossing.place[1])}}});
    return crossings;
}

nlohmann::json SpringbackOf(RunRecord const & i_record)
{
    SpringbackOutcome const & springback = *i_record.outcome.springback;
    auto const figures = [&](DeviationFigures const & i_figures)
    {
        double const * const p = springback.part.GetNodeData()[i_figures.largestNode + 1];
        return nlohmann::json{{"largest_mm", Rounded(i_figures.largest)},
                              {"largest_node", NodeName(i_figures.largestNode, i_record)},
                              {"largest_at_mm", {Rounded(p[0]), Rounded(p[1]), Rounded(p[2])}},
                              {"mean_mm", Rounded(i_figures.mean)}};
    };
    nlohmann::json json = {{"before_alignment", figures(springback.figuresBefore)},
                           {"points", nlohmann::json::array()}};
    if (!springback.after.empty())
        json["aligned"] = figures(springback.figuresAfter);
    for (int const node : springback.aligned)
        json["aligned_nodes"].push_back(NodeName(node, i_record));
    for (SpringbackPoint const & point : springback.points)
    {
        double const * const p = springback.part.GetNodeData()[point.node + 1];
        json["points"].push_back({{"node", NodeName(point.node, i_record)},
                                  {"at_mm", {Rounded(p[0]), Rounded(p[1]), Rounded(p[2])}},
                                  {"before_alignment_mm", Rounded(point.before)}});
        if (point.after)
            json["points"].back()["aligned_mm"] = Rounded(*point.after);
    }
    return json;
}

nlohmann::json ListsOf(Outcome const & i_outcome)
{
    nlohmann::json lists;
    lists["checks"] = nlohmann::json::array();
    for (OutcomeCheck const & check : i_outcome.checks)
        lists["checks"].push_back({{"name", check.name},
                                   {"value", check.value},
                                   {"limit", check.limit},
                                   {"passed", check.passed},
                                   {"is_warning", check.isWarning}});
    lists["warnings"] = i_outcome.warnings;
    lists["inputs"] = nlohmann::json::array();
    for (OutcomeInput const & input : i_outcome.inputs)
        lists["inputs"].push_back({{"path", input.path}, {"sha256", input.sha256}});
    lists["stages"] = nlohmann::json::array();
    for (OutcomeStage const & stage : i_outcome.stages)
        lists["stages"].push_back({{"name", stage.name}, {"seconds", stage.seconds}});
    return lists;
}

std::string SpringbackText(SpringbackOutcome const & i_springback)
{
    auto const figures = [](DeviationFigures const & i_figures)
    { return "at most " + Fixed(i_figures.largest, 3) + " mm, mean " + Fixed(i_figures.mean, 3) + " mm"; };
    return figures(i_springback.figuresBefore) +
           (i_springback.after.empty() ? "" : "; aligned " + figures(i_springback.figuresAfter));
}

void BlankText(Outcome const & i_outcome, std::string & io_text)
{
    double const factor = i_outcome.summary.symmetryFactor;
    Row(io_text, "Blank size", Fixed(WholeWidth(i_outcome), 2) + " x " + Fixed(WholeHeight(i_outcome), 2) + " mm");
    Row(io_text, "Blank area", Fixed(factor * i_outcome.summary.blankArea, 1) + " mm2");
    Row(io_text, "Blank mass", Fixed(factor * i_outcome.summary.blankMass, 4) + " kg");
}

std::string Verdict(OutcomeSummary const & i_summary)
{
    if (Share(i_summary, 0) > 0.0)
        return "fails";
    return Share(i_summary, 1) > 0.0 ? "marginal" : "safe";
}

// What became of the sheet.
void SheetText(RunRecord const & i_record, std::string & io_text)
{
    Outcome const & outcome = i_record.outcome;
    OutcomeSummary const & summary = outcome.summary;
    auto const elementId = [&](int i_element)
    { return std::to_string(i_record.elementIds[static_cast<std::size_t>(i_element)]); };
    if (outcome.hasBlank)
        BlankText(outcome, io_text);
    Row(io_text, "Thickness",
        Fixed(summary.leastThickness, 4) + " mm (element " + elementId(summary.leastThicknessElement) + ") to " +
            Fixed(summary.greatestThickness, 4) + " mm (element " + elementId(summary.greatestThicknessElement) + ")");
    std::string zones;
    for (ZoneName const & zone : kZones)
        if (zone.code != -1 || Share(summary, -1) > 0.0)
            zones += (zones.empty() ? "" : ", ") + Fixed(100.0 * Share(summary, zone.code), 1) + " % " + zone.text;
    Row(io_text, "Elements", zones);
    Row(io_text, "Forming", Verdict(summary));
    if (outcome.tube)
        Row(io_text, "Tube",
            "radius " + Fixed(outcome.tube->radius, 2) + " mm, length " + Fixed(outcome.tube->length, 2) + " mm");
    else if (!outcome.imported) // whose records hold no forces
        Row(io_text, "Punch force", Fixed(summary.symmetryFactor * summary.punchForce / 1000.0, 2) + " kN");
    if (outcome.springback)
        Row(io_text, "Springback", SpringbackText(*outcome.springback));
    if (!outcome.undercut.empty())
        Row(io_text, "Undercuts",
            summary.undercutElements == 0 ? "none"
                                          : std::to_string(summary.undercutElements) + " elements, up to " +
                                                Fixed(summary.undercutAngle, 1) + " deg");
}

void BlankJson(RunRecord const & i_record, nlohmann::json & io_json)
{
    Outcome const & outcome = i_record.outcome;
    io_json = JsonOf(outcome.summary, outcome);
    io_json["model_crossings"] = CrossingsOf(i_record);
    io_json["model_turned_elements"] = nlohmann::json::array();
    for (int const e : outcome.flat.turned)
        io_json["model_turned_elements"].push_back(i_record.elementIds[static_cast<std::size_t>(e) - 1]);
}

void SheetJson(RunRecord const & i_record, nlohmann::json & io_json)
{
    Outcome const & outcome = i_record.outcome;
    OutcomeSummary const & summary = outcome.summary;
    io_json["nodes"] = outcome.nodes.size();
    io_json["elements"] = outcome.elements.size();
    io_json["verdict"] = Verdict(summary);
    io_json["draw_depth_mm"] = Rounded(summary.drawDepth);
    if (!outcome.imported)
    {
        io_json["punch_force_N"] = Rounded(summary.symmetryFactor * summary.punchForce);
        io_json["model_punch_force_N"] = Rounded(summary.punchForce);
    }
    if (outcome.hasBlank)
        BlankJson(i_record, io_json["blank"]);
    io_json["zones"] = ZonesOf(i_record);
    io_json["sheet"] = {
        {"least_mm", Rounded(summary.leastThickness)},
        {"least_element", i_record.elementIds[static_cast<std::size_t>(summary.leastThicknessElement)]},
        {"greatest_mm", Rounded(summary.greatestThickness)},
        {"greatest_element", i_record.elementIds[static_cast<std::size_t>(summary.greatestThicknessElement)]}};
    io_json["strains"] = StrainsOf(outcome.elements);
    if (!outcome.top.empty())
    {
        io_json["strains"]["top"] = StrainsOf(outcome.top);
        io_json["strains"]["bottom"] = StrainsOf(outcome.bottom);
    }
    if (outcome.tube)
    {
        io_json["punch_force_N"] = io_json["model_punch_force_N"] = nullptr; // no punch forms it
        io_json["tube"] = {{"radius_mm", Rounded(outcome.tube->radius)},
                           {"length_mm", Rounded(outcome.tube->length)},
                           {"area_mm2", Rounded(outcome.tube->area)},
                           {"seam_gap_mm", Rounded(outcome.tube->gap)},
                           {"seam_nodes", outcome.tube->seam.size()}};
    }
    if (outcome.springback)
        io_json["springback"] = SpringbackOf(i_record);
    for (ZoneName const & zone : kZones)
    {
        io_json["share_of_elements"][zone.key] = Rounded(Share(summary, zone.code));
        io_json["share_of_area"][zone.key] = Rounded(ByArea(summary, zone.code));
    }
    if (!outcome.undercut.empty())
        io_json["undercut"] = {{"elements", summary.undercutElements}, {"angle_deg", Rounded(summary.undercutAngle)}};
}
} // namespace

std::string SummaryText(RunRecord const & i_record)
{
    Outcome const & outcome = i_record.outcome;
    OutcomeSummary const & summary = outcome.summary;
    std::string text = outcome.title + "\n";
    if (summary.symmetryFactor > 1 && outcome.HasResults())
        Row(text, "Model", "1/" + std::to_string(summary.symmetryFactor) + " of the part; figures of the whole part");
    Row(text, "Material", outcome.materialName + ", " + Shortest(outcome.firstThickness) + " mm");
    for (auto const & [name, value] : IncrementalRows(outcome))
        Row(text, name, value);
    if (outcome.HasResults())
        SheetText(i_record, text);
    for (OutcomeCheck const & check : outcome.checks)
        if (!check.passed)
            Row(text, check.isWarning ? "Look at" : "Check failed",
                check.name + ": " + check.value + " (" + check.limit + ")");
    Row(text, "Folder", i_record.folder);
    for (RunFile const & file : i_record.files)
        Row(text, "  " + file.what, file.path);
    return text;
}

nlohmann::json SummaryJson(RunRecord const & i_record)
{
    Outcome const & outcome = i_record.outcome;
    nlohmann::json json = {
        {"schema", 1},
        {"status", "done"},
        {"title", outcome.title},
        {"route", outcome.route},
        {"version", outcome.version},
        {"material", outcome.materialName},
        {"thickness_mm", outcome.firstThickness},
        {"fld0_percent", Rounded(outcome.limit.fldZero())},
        {"symmetry_factor", outcome.summary.symmetryFactor},
    };
    if (outcome.HasResults())
        SheetJson(i_record, json);
    json.update(IncrementalJson(outcome));
    json.update(ListsOf(outcome));
    json["files"] = nlohmann::json::object();
    for (RunFile const & file : i_record.files)
        json["files"][file.what] = std::filesystem::path(file.path).filename().string();
    return json;
}

} // namespace voz::workbench
