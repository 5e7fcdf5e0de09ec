// MeshReportText.cpp: a report of the check, for people and for programs.

#include "MeshCheck.h"
#include "OutputFile.h"

#include <nlohmann/json.hpp>

namespace voz::workbench
{
namespace
{
constexpr int kSchema = 1;

// In the order of FindingKind.
// clang-format off
constexpr FindingKindName kNames[] = {
    {"repeated_node",     "element with a repeated corner",             "",    true},
    {"zero_area",         "element without area",                       "mm2", true},
    {"duplicate",         "element that repeats another",               "",    true},
    {"non_manifold_edge", "edge with more than two elements",           "",    true},
    {"flipped",           "element that runs against its piece",        "",    true},
    {"not_orientable",    "neighbours that cannot run alike",           "",    true},
    {"open_boundary",     "node where the boundary is no simple loop",  "",    true},
    {"close_pair",        "node nearer to another than the tolerance",  "mm",  true},
    {"lone_node",         "node without elements",                      "",    true},
    {"sliver",            "element with a small corner angle",          "deg", false},
    {"aspect",            "element with unequal sides",                 "",    false},
    {"warp",              "warped quadrilateral",                       "deg", false},
    {"concave",           "quadrilateral with a notch or a crossing",   "deg", true},
    {"separate_piece",    "further piece",                              "",    false},
};
// clang-format on
static_assert(std::size(kNames) == kFindingKinds, "a name for each kind");

// Four decimals at the most.
std::string number(double value)
{
    std::string text = Fixed(value, 4);
    text.resize(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

std::string place(std::array<double, 3> const & at)
{
    return "(" + number(at[0]) + ", " + number(at[1]) + ", " + number(at[2]) + ") mm";
}

std::string described(Finding const & finding)
{
    std::string text;
    if (finding.element != 0)
        text += "element " + std::to_string(finding.element);
    if (finding.otherElement != 0)
        text += " with element " + std::to_string(finding.otherElement);
    if (finding.node != 0)
        text += (text.empty() ? "" : ", ") + std::string(finding.otherNode != 0 ? "nodes " : "node ") +
                std::to_string(finding.node);
    if (finding.otherNode != 0)
        text += " and " + std::to_string(finding.otherNode);
    switch (finding.kind)
    {
    case FindingKind::ZeroArea:
        text += ": " + Shortest(finding.value) + " mm2";
        break;
    case FindingKind::NonManifoldEdge:
    case FindingKind::SeparatePiece:
        text += ": " + Fixed(finding.value, 0) + " elements";
        break;
    case FindingKind::OpenBoundary:
        text += ": " + Fixed(finding.value, 0) + " boundary edges";
        break;
    case FindingKind::ClosePair:
        text += ": " + Shortest(finding.value) + " mm apart";
        break;
    case FindingKind::Sliver:
    case FindingKind::Warp:
    case FindingKind::Concave:
        text += ": " + Fixed(finding.value, 1) + " deg";
        break;
    case FindingKind::Aspect:
        text += ": 1 : " + Fixed(finding.value, 1);
        break;
    default:
        break;
    }
    return text + " at " + place(finding.place);
}

std::string counted(long count, char const * noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void appendFindings(std::string & text, MeshReport const & report, bool areErrors)
{
    for (int k = 0; k < kFindingKinds; ++k)
    {
        auto const kind = static_cast<FindingKind>(k);
        long const count = report.Count(kind);
        if (count == 0 || NameOf(kind).isError != areErrors)
            continue;
        text += std::string(areErrors ? "error: " : "note: ") + NameOf(kind).text + ": " + std::to_string(count) + "\n";
        long listed = 0;
        for (Finding const & finding : report.findings)
            if (finding.kind == kind)
            {
                text += "  " + described(finding) + "\n";
                ++listed;
            }
        if (listed < count)
            text += "  and " + std::to_string(count - listed) + " more\n";
    }
}

void appendContents(std::string & text, MeshModel const & model)
{
    for (ElementSet const & set : model.sets)
    {
        text += "set " + std::to_string(set.id) + (set.name.empty() ? "" : " \"" + set.name + "\"") + ": " +
                counted(static_cast<long>(set.elements.size()), "element");
        text += set.thickness > 0.0 ? ", thickness " + Shortest(set.thickness) + " mm\n" : "\n";
    }
    for (SkippedItem const & item : model.skipped)
        text += "skipped: " + std::to_string(item.count) + " " + item.name + "\n";
    for (std::string const & remark : model.remarks)
        text += "remark: " + remark + "\n";
}

nlohmann::json asJson(Finding const & finding)
{
    FindingKindName const & name = NameOf(finding.kind);
    nlohmann::json json{{"kind", name.key}, {"place_mm", finding.place}};
    if (finding.element != 0)
        json["element"] = finding.element;
    if (finding.otherElement != 0)
        json["other_element"] = finding.otherElement;
    if (finding.node != 0)
        json["node"] = finding.node;
    if (finding.otherNode != 0)
        json["other_node"] = finding.otherNode;
    switch (finding.kind)
    {
    case FindingKind::RepeatedNode:
    case FindingKind::Duplicate:
    case FindingKind::Flipped:
    case FindingKind::NotOrientable:
    case FindingKind::LoneNode:
        break;
    default:
        json[*name.unit != '\0' ? std::string("value_") + name.unit : "value"] = finding.value;
    }
    return json;
}
} // namespace

FindingKindName const & NameOf(FindingKind i_kind)
{
    return kNames[static_cast<std::size_t>(i_kind)];
}

std::string ReportAsText(MeshModel const & i_model, MeshReport const & i_report)
{
    MeshReport const & r = i_report;
    std::string text = std::string(NameOf(i_model.format)) + ": " + counted(r.nodes, "node") + ", " +
                       counted(r.elements, "element") + " (" + counted(r.triangles, "triangle") + ", " +
                       counted(r.quadrilaterals, "quadrilateral") + ")\n";
    if (!i_model.fileUnit.empty())
        text += "length unit of the file: " + i_model.fileUnit + "\n";
    text += "bounding box: " + place(r.boxLow) + " to " + place(r.boxHigh) + "\n";
    text += "area: " + number(r.area) + " mm2; edges: shortest " + number(r.shortestEdge) + " mm, mean " +
            number(r.meanEdge) + " mm, longest " + number(r.longestEdge) + " mm\n";
    text += "edges: " + std::to_string(r.freeEdges) + " free, " + std::to_string(r.innerEdges) + " inner\n";
    text += "boundary: " + counted(static_cast<long>(r.loops.size()), "loop") + "\n";
    std::size_t listed = 0;
    for (BoundaryLoop const & loop : r.loops)
    {
        if (++listed > r.limits.listed)
            break;
        text += "  " + counted(loop.edges, "edge") + ", " + number(loop.length) + " mm, from node " +
                std::to_string(loop.firstNode) + " at " + place(loop.place) + (loop.isClosed ? "\n" : ", not simple\n");
    }
    text += "pieces: " + std::to_string(r.pieces.size()) + "\n";
    appendContents(text, i_model);
    appendFindings(text, r, true);
    appendFindings(text, r, false);
    if (!r.HasErrors())
        text += "no errors\n";
    return text;
}

nlohmann::json ReportAsJson(MeshModel const & i_model, MeshReport const & i_report)
{
    using nlohmann::json;
    MeshReport const & r = i_report;
    json out{{"schema", kSchema},          {"format", NameOf(i_model.format)},
             {"nodes", r.nodes},           {"elements", r.elements},
             {"triangles", r.triangles},   {"quadrilaterals", r.quadrilaterals},
             {"box_low_mm", r.boxLow},     {"box_high_mm", r.boxHigh},
             {"area_mm2", r.area},         {"shortest_edge_mm", r.shortestEdge},
             {"mean_edge_mm", r.meanEdge}, {"longest_edge_mm", r.longestEdge},
             {"free_edges", r.freeEdges},  {"inner_edges", r.innerEdges},
             {"has_errors", r.HasErrors()}};
    out["file_unit"] = i_model.fileUnit.empty() ? json(nullptr) : json(i_model.fileUnit);
    out["limits"] = {{"pair_tolerance_mm", r.pairTolerance},
                     {"sliver_angle_deg", r.limits.sliverAngle},
                     {"aspect", r.limits.aspectLimit},
                     {"warp_deg", r.limits.warpLimit},
                     {"listed", r.limits.listed}};
    out["loops"] = json::array();
    for (BoundaryLoop const & loop : r.loops)
        out["loops"].push_back({{"edges", loop.edges},
                                {"length_mm", loop.length},
                                {"first_node", loop.firstNode},
                                {"place_mm", loop.place},
                                {"is_closed", loop.isClosed}});
    out["pieces"] = json::array();
    for (MeshPiece const & piece : r.pieces)
        out["pieces"].push_back(
            {{"elements", piece.elements}, {"area_mm2", piece.area}, {"first_element", piece.firstElement}});
    out["sets"] = json::array();
    for (ElementSet const & set : i_model.sets)
        out["sets"].push_back({{"id", set.id},
                               {"name", set.name},
                               {"elements", set.elements.size()},
                               {"thickness_mm", set.thickness > 0.0 ? json(set.thickness) : json(nullptr)}});
    out["skipped"] = json::object();
    for (SkippedItem const & item : i_model.skipped)
        out["skipped"][item.name] = item.count;
    out["remarks"] = i_model.remarks;
    for (int k = 0; k < kFindingKinds; ++k)
        out["counts"][kNames[k].key] = r.counts[static_cast<std::size_t>(k)];
    out["findings"] = json::array();
    for (Finding const & finding : r.findings)
        out["findings"].push_back(asJson(finding));
    return out;
}

} // namespace voz::workbench
