// TubeSection.cpp: the report of a tube: its seam, and the tube to begin with.

#include "FieldPictures.h"
#include "Html.h"
#include "OutputFile.h"
#include "ReportSections.h"

namespace voz::workbench
{

std::string TubeSection(Outcome const & i_outcome)
{
    if (!i_outcome.tube)
        return "";
    TubeOutcome const & tube = *i_outcome.tube;
    HtmlTable table{"The tube to begin with", {}, {}};
    table.rows = {{"Radius of its mid-surface", Fixed(tube.radius, 3) + " mm"},
                  {"Length", Fixed(tube.length, 3) + " mm"},
                  {"Area, circumference times length", Fixed(tube.area, 1) + " mm2"},
                  {"Area of the developed sheet", Fixed(i_outcome.summary.blankArea, 1) + " mm2"},
                  {"Gap between the lips of the seam", Fixed(tube.gap, 4) + " mm"},
                  {"Nodes of the seam", std::to_string(tube.seam.size())}};
    PictureOverlay over;
    over.line = tube.seam;
    if (!tube.seam.empty())
        over.marks = {{tube.seam.front(), "seam"}};
    return "<section id=\"tube\">\n<h2>Tube</h2>\n<p>The closed part was opened along a seam and formed back to a "
           "sheet "
           "whose two lips are half a circumference from the line opposite; that sheet is the blank of this page. "
           "Wrapped round its axis, which is the local x of the frame, it is the tube to begin with.</p>\n" +
           Figure(DrawZones(i_outcome, ZoneKind::Safety, over), "The seam, in red, on the formed part.") +
           Table(table) + "</section>\n";
}

} // namespace voz::workbench
