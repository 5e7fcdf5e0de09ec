// FlatCheckText.cpp: what is wrong with a flat pattern, in words and as JSON.

#include "FlatCheck.h"
#include "OutputFile.h"

#include <nlohmann/json.hpp>

namespace voz::workbench
{

namespace
{
constexpr double kFlat = 0.001; // mm

int IdOf(std::vector<int> const & i_ids, int i_position)
{
    return i_ids[static_cast<std::size_t>(i_position) - 1];
}

std::string EdgeText(FlatEdge const & i_edge, MeshModel const & i_model)
{
    return std::to_string(IdOf(i_model.nodeIds, i_edge.start)) + "-" +
           std::to_string(IdOf(i_model.nodeIds, i_edge.end));
}

nlohmann::json EdgeJson(FlatEdge const & i_edge, MeshModel const & i_model)
{
    return {IdOf(i_model.nodeIds, i_edge.start), IdOf(i_model.nodeIds, i_edge.end)};
}

char const * KindOf(FlatCrossing const & i_crossing)
{
    return i_crossing.isOverlap ? "overlap" : "fold";
}
} // namespace

std::string FlatFaultsAsText(FlatFaults const & i_faults, MeshModel const & i_model, std::size_t i_listed)
{
    std::string text = "Flat pattern\n";
    if (i_faults.depth > kFlat)
        text += "  it is not flat: " + Fixed(i_faults.depth, 3) + " mm deep along z; only x and y are looked at\n";
    text += "  edges that cross another: " + std::to_string(i_faults.crossings.size()) + "\n";
    std::size_t listed = 0;
    for (FlatCrossing const & crossing : i_faults.crossings)
    {
        if (++listed > i_listed)
            break;
        text += std::string("    ") + KindOf(crossing) + ": edge " + EdgeText(crossing.edge, i_model) + " crosses " +
                EdgeText(crossing.partner, i_model) + " at " + Fixed(crossing.place[0], 3) + " " +
                Fixed(crossing.place[1], 3) + " mm\n";
    }
    text += "  elements that are turned over: " + std::to_string(i_faults.turned.size()) + "\n";
    for (std::size_t i = 0; i < i_faults.turned.size() && i < i_listed; ++i)
        text += "    element " + std::to_string(IdOf(i_model.elementIds, i_faults.turned[i])) + "\n";
    return text;
}

nlohmann::json FlatFaultsAsJson(FlatFaults const & i_faults, MeshModel const & i_model)
{
    nlohmann::json json = {{"depth_mm", i_faults.depth},
                           {"has_faults", i_faults.AreThere()},
                           {"crossings", nlohmann::json::array()},
                           {"turned_elements", nlohmann::json::array()}};
    for (FlatCrossing const & crossing : i_faults.crossings)
        json["crossings"].push_back({{"kind", KindOf(crossing)},
                                     {"edge", EdgeJson(crossing.edge, i_model)},
                                     {"edge_is_free", crossing.edge.isFree},
                                     {"partner", EdgeJson(crossing.partner, i_model)},
                                     {"partner_is_free", crossing.partner.isFree},
                                     {"place_mm", crossing.place}});
    for (int const e : i_faults.turned)
        json["turned_elements"].push_back(IdOf(i_model.elementIds, e));
    return json;
}

} // namespace voz::workbench
