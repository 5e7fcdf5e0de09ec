// ZoneSection.cpp: the connected zones of the report: each with its number on the picture.

#include "Colour.h"
#include "FieldPictures.h"
#include "Html.h"
#include "OutcomeAnalysis.h"
#include "OutputFile.h"
#include "ReportSections.h"

namespace voz::workbench
{

namespace
{
constexpr std::size_t kListed = 50;
constexpr std::size_t kMarked = 20; // more numbers than that hide the picture
} // namespace

std::string ZoneSection(Outcome const & i_outcome)
{
    std::string html = "<section id=\"zones\">\n<h2>Connected zones</h2>\n";
    std::vector<OutcomeZone> const & zones = i_outcome.zones;
    if (zones.empty())
        return html + "<p>No node fails, is marginal or is strongly compressed.</p>\n</section>\n";
    HtmlTable table{"Zones of failure, marginal and strongly compressed nodes, largest first",
                    {"Number", "Safety", "Place", "Area, mm2", "Nodes", "At node", "At x, y, z, mm", "Mean normal"},
                    {}};
    PictureOverlay over;
    for (std::size_t i = 0; i < zones.size() && i < kListed; ++i)
    {
        OutcomeZone const & zone = zones[i];
        double const * const p = i_outcome.part.GetNodeData()[zone.centre + 1];
        table.rows.push_back(
            {std::to_string(i + 1), SafetyName(zone.safety), ZonePlaceName(zone.place), Fixed(zone.area, 2),
             std::to_string(zone.nodes.size()), std::to_string(zone.centre + 1),
             Fixed(p[0], 2) + ", " + Fixed(p[1], 2) + ", " + Fixed(p[2], 2),
             Fixed(zone.normal[0], 3) + ", " + Fixed(zone.normal[1], 3) + ", " + Fixed(zone.normal[2], 3)});
        if (i < kMarked)
            over.marks.push_back({zone.centre, std::to_string(i + 1)});
    }
    html += Figure(DrawZones(i_outcome, ZoneKind::Safety, over),
                   "Safety zones of the elements, with the numbers of the connected zones of their nodes.");
    html += Table(table);
    if (zones.size() > kListed)
        html += "<p>" + std::to_string(zones.size() - kListed) + " smaller zones are left out here.</p>\n";
    return html + "</section>\n";
}

} // namespace voz::workbench
