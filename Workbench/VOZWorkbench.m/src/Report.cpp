// Report.cpp: the page over one run: what was formed, how it went, what the blank is, and how to do it again.

#include "Report.h"

#include "BlankDrawing.h"
#include "Colour.h"
#include "FieldPictures.h"
#include "FormingChart.h"
#include "Html.h"
#include "IncrementalReport.h"
#include "OutputFile.h"
#include "ReportSections.h"
#include "Viewer.h"

#include <algorithm>
#include <numeric>

namespace voz::workbench
{
namespace
{

constexpr double kOutlineTolerance = 0.05; // mm, as the drawings' own
constexpr std::size_t kWorstListed = 10;

constexpr char const * kStyle = R"(<style>
:root { color-scheme: light; }
body { font: 16px/1.5 sans-serif; max-width: 62rem; margin: 2rem auto; padding: 0 1rem; color: #111; background: #fff; }
h1 { margin-bottom: 0.2rem; }
.verdict { font-size: 1.2rem; padding: 0.6rem 1rem; border-left: 0.5rem solid; background: #f5f5f5; }
figure { margin: 1rem 0; break-inside: avoid; }
figure svg { width: 100%; height: auto; max-height: 42rem; border: 1px solid #ddd; background: #fff; }
figure svg text { fill: #000; }
figcaption { color: #444; }
table { border-collapse: collapse; margin: 1rem 0; font-variant-numeric: tabular-nums; break-inside: avoid; }
caption { text-align: left; font-weight: bold; padding: 0.3rem 0; }
th, td { border-bottom: 1px solid #ccc; padding: 0.25rem 0.8rem; text-align: left; vertical-align: top; }
td { text-align: right; overflow-wrap: anywhere; }
canvas { width: 100%; height: 32rem; border: 1px solid #ddd; touch-action: none; }
nav a { margin-right: 1rem; }
pre { background: #f5f5f5; padding: 0.8rem; overflow-x: auto; }
.failed { color: #a00; font-weight: bold; }
@media print { body { font-size: 11px; margin: 0; } nav, canvas, #part h3, #part p { display: none; } @page { size: A4; margin: 15mm; } }
</style>
)";

std::string percent(double share)
{
    return Fixed(100.0 * share, 2) + " %";
}

double share(Outcome const & outcome, int safetyCode)
{
    return outcome.summary.safetyShare[static_cast<std::size_t>(safetyCode + 1)];
}

// ---- head -----------------------------------------------------------------------------------------------------------

std::string verdict(Outcome const & outcome)
{
    int code = 2;
    std::string words = "Safe: every element lies below the safety curve.";
    if (share(outcome, 4) > 0.0 && share(outcome, 0) == 0.0 && share(outcome, 1) == 0.0)
    {
        code = 4;
        words = "Safe against splitting; " + percent(share(outcome, 4)) + " of the elements tend to wrinkle.";
    }
    else if (share(outcome, 0) > 0.0)
    {
        code = 0;
        words = "Fails: " + percent(share(outcome, 0)) + " of the elements lie beyond a failure limit.";
    }
    else if (share(outcome, 1) > 0.0)
    {
        code = 1;
        words = "Marginal: " + percent(share(outcome, 1)) + " of the elements lie within the safety margin.";
    }
    return "<p class=\"verdict\" style=\"border-color:" + Hex(SafetyColour(code)) + "\"><strong>" + Escaped(words) +
           "</strong></p>\n";
}

std::string head(Outcome const & outcome)
{
    std::string html = "<header>\n<h1>" + Escaped(outcome.title) + "</h1>\n<p>" + Escaped(outcome.materialName) +
                       ", t = " + Fixed(outcome.firstThickness, 3) + " mm; route: " + Escaped(outcome.route) +
                       "</p>\n" + (outcome.HasResults() ? verdict(outcome) : "") + "</header>\n";
    bool const hasResults = outcome.HasResults();
    html += "<nav aria-label=\"Sections\">";
    struct Section
    {
        char const * id;
        char const * name;
        bool isThere;
    };
    for (auto const & [id, name, isThere] :
         std::initializer_list<Section>{{"deck", "Deck", outcome.incremental.has_value()},
                                        {"steps", "Steps", outcome.imported.has_value()},
                                        {"summary", "Summary", hasResults},
                                        {"part", "Part", hasResults},
                                        {"layers", "Layers", !outcome.top.empty()},
                                        {"fld", "Forming limit", hasResults},
                                        {"zones", "Zones", hasResults},
                                        {"tube", "Tube", outcome.tube.has_value()},
                                        {"blank", "Blank", hasResults && outcome.hasBlank},
                                        {"forces", "Forces", hasResults && !outcome.imported && !outcome.tube},
                                        {"springback", "Springback", outcome.springback.has_value()},
                                        {"tipping", "Tipping", true},
                                        {"checks", "Checks", true},
                                        {"provenance", "Provenance", true}})
        if (isThere)
            html += std::string("<a href=\"#") + id + "\">" + name + "</a>\n";
    return html + "</nav>\n";
}

std::string summary(Outcome const & outcome)
{
    OutcomeSummary const & s = outcome.summary;
    HtmlTable table{"What an engineer asks first", {}, {}};
    auto const add = [&](std::string name, std::string value) {
        table.rows.push_back({std::move(name), std::move(value)});
    };
    if (outcome.hasBlank)
    {
        add("Blank, along x and y", Fixed(s.blankWidth, 2) + " x " + Fixed(s.blankHeight, 2) + " mm");
        add("Blank area", Fixed(s.blankArea, 1) + " mm2");
        add("Blank mass", Fixed(s.blankMass, 4) + " kg");
    }
    if (s.symmetryFactor > 1)
        add("The whole part is " + std::to_string(s.symmetryFactor) + " such models",
            Fixed(s.symmetryFactor * s.blankArea, 1) + " mm2, " + Fixed(s.symmetryFactor * s.blankMass, 4) + " kg");
    add("Least thickness", Fixed(s.leastThickness, 4) + " mm, element " + std::to_string(s.leastThicknessElement + 1));
    add("Greatest thickness",
        Fixed(s.greatestThickness, 4) + " mm, element " + std::to_string(s.greatestThicknessElement + 1));
    for (int code = -1; code <= 4; ++code)
        if (code >= 0 || share(outcome, code) > 0.0)
            add(std::string("Elements: ") + SafetyName(code), percent(share(outcome, code)));
    if (!outcome.imported && !outcome.tube) // records hold no forces; no punch forms a tube
        add("Punch force", Fixed(s.punchForce / 1000.0, 2) + " kN");
    if (outcome.springback)
        add("Largest deviation after springback", Fixed(outcome.springback->Figures().largest, 3) + " mm");
    if (!outcome.undercut.empty())
        add("Undercut elements",
            std::to_string(s.undercutElements) + " (up to " + Fixed(s.undercutAngle, 2) + " degrees)");
    return "<section id=\"summary\">\n<h2>Summary</h2>\n" + Table(table) + "</section>\n";
}

// ---- pictures -------------------------------------------------------------------------------------------------------

std::string part(Outcome const & outcome)
{
    using E = ElementOutcome;
    std::string html = "<section id=\"part\">\n<h2>Part</h2>\n";
    html += Figure(DrawField(outcome, {"thinning", "%", [](E const & e) { return e.thinning; }, 1}),
                   "Thinning of the sheet on the formed part; negative where it got thicker.");
    html += Figure(DrawField(outcome, {"thickness", "mm", [](E const & e) { return e.thickness; }, 3}),
                   "Thickness on the formed part.");
    html += Figure(DrawZones(outcome, ZoneKind::Safety), "Safety zones: the margin of each element to failure.");
    html += Figure(DrawZones(outcome, ZoneKind::Forming), "Forming zones: the state of strain of each element.");
    html += Figure(DrawField(outcome, {"major strain", "%", [](E const & e) { return e.major; }, 1}),
                   "Major strain, engineering percent.");
    return html + "<h3>In three dimensions</h3>\n" + Viewer(outcome) + "</section>\n";
}

std::string formingLimit(Outcome const & outcome)
{
    std::vector<std::size_t> order(outcome.elements.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    auto const margin = [&](std::size_t e)
    { return outcome.LimitOf(e).limitCurveMajor(outcome.elements[e].minor) - outcome.elements[e].major; };
    std::size_t const listed = std::min(kWorstListed, order.size());
    std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(listed), order.end(),
                      [&](std::size_t a, std::size_t b)
                      {
                          double const ma = margin(a);
                          double const mb = margin(b);
                          return ma != mb ? ma < mb : a < b;
                      });
    HtmlTable table{"The elements nearest to the limit curve",
                    {"Element", "Major strain, %", "Minor strain, %", "Limit, %", "Margin, %", "Zone"},
                    {}};
    for (std::size_t i = 0; i < listed; ++i)
    {
        ElementOutcome const & e = outcome.elements[order[i]];
        table.rows.push_back({std::to_string(order[i] + 1), Fixed(e.major, 2), Fixed(e.minor, 2),
                              Fixed(outcome.LimitOf(order[i]).limitCurveMajor(e.minor), 2), Fixed(margin(order[i]), 2),
                              SafetyName(e.safety)});
    }
    return "<section id=\"fld\">\n<h2>Forming limit diagram</h2>\n" +
           Figure(FormingChart(outcome), "Every element's strain pair, the forming limit curve, and the curve less the "
                                         "safety margin.") +
           "<p>" + Escaped(outcome.limitSource) + ". FLD0 is " + Fixed(outcome.limit.fldZero(), 2) +
           " %, the safety margin " + Fixed(outcome.limit.safetyMargin(), 1) + " % major strain.</p>\n" + Table(table) +
           "</section>\n";
}

std::string blank(Outcome const & outcome)
{
    std::string html = "<section id=\"blank\">\n<h2>Blank</h2>\n";
    if (outcome.blank.empty())
        return html + "<p>The blank has no closed outline; see the warnings.</p>\n</section>\n";
    BlankDrawing const drawing = DrawBlank(outcome, kOutlineTolerance);
    html += Figure("<svg viewBox=\"" + drawing.viewBox + "\" role=\"img\" aria-label=\"Outline of the flat blank\">\n" +
                       drawing.content + "</svg>\n",
                   "The flat blank, with the rolling direction along x. Lines and arcs stay within " +
                       Fixed(drawing.deviation, 3) + " mm of the computed outline.");
    OutcomeSummary const & s = outcome.summary;
    HtmlTable table{"Figures of the blank", {}, {}};
    table.rows = {{"Area, holes taken off", Fixed(s.blankArea, 1) + " mm2"},
                  {"Perimeter", Fixed(s.blankPerimeter, 1) + " mm"},
                  {"Bounding rectangle", Fixed(s.blankWidth, 2) + " x " + Fixed(s.blankHeight, 2) + " mm"},
                  {"Smallest rectangle", Fixed(s.smallestRectangle[0], 2) + " x " + Fixed(s.smallestRectangle[1], 2) +
                                             " mm, turned by " + Fixed(s.smallestRectangle[2], 1) + " degrees"},
                  {"Mass", Fixed(s.blankMass, 4) + " kg"},
                  {"Holes", std::to_string(outcome.blank.size() - 1)}};
    return html + Table(table) + "</section>\n";
}

// ---- figures --------------------------------------------------------------------------------------------------------

std::string forces(Outcome const & outcome)
{
    if (outcome.tube)
        return "";
    OutcomeSummary const & s = outcome.summary;
    HtmlTable table{"Forces at the end of the stroke", {}, {}};
    table.rows.push_back({"Punch force of the model", Fixed(s.punchForce / 1000.0, 2) + " kN"});
    if (s.symmetryFactor > 1)
        table.rows.push_back(
            {"Punch force of the whole part", Fixed(s.symmetryFactor * s.punchForce / 1000.0, 2) + " kN"});
    return "<section id=\"forces\">\n<h2>Forces</h2>\n" + Table(table) + "</section>\n";
}

std::string tipping(Outcome const & outcome)
{
    HtmlTable table{"The stamping frame, in global coordinates", {"Axis", "x", "y", "z"}, {}};
    constexpr char const * names[] = {"local x", "local y", "stamping direction"};
    for (int i = 0; i < 3; ++i)
        table.rows.push_back({names[i], Fixed(outcome.frame.axis(i, 0), 6), Fixed(outcome.frame.axis(i, 1), 6),
                              Fixed(outcome.frame.axis(i, 2), 6)});
    table.rows.push_back({"origin, mm", Fixed(outcome.frame.origin(0), 3), Fixed(outcome.frame.origin(1), 3),
                          Fixed(outcome.frame.origin(2), 3)});
    OutcomeSummary const & s = outcome.summary;
    std::string html = "<section id=\"tipping\">\n<h2>Tipping</h2>\n" + Table(table) + "<p>Draw depth " +
                       Fixed(s.drawDepth, 2) + " mm.";
    if (!outcome.undercut.empty())
        html += " " + std::to_string(s.undercutElements) + " elements are undercut, the worst by " +
                Fixed(s.undercutAngle, 2) + " degrees.";
    html += "</p>\n";
    if (s.undercutElements > 0 && outcome.undercut.size() == outcome.elements.size())
        html += Figure(DrawZones(outcome, ZoneKind::Undercut), "Elements that face away from the stamping direction.");
    return html + "</section>\n";
}

std::string checks(Outcome const & outcome)
{
    HtmlTable table{"Checks of this run", {"Check", "Value", "Limit", "Answer"}, {}};
    for (OutcomeCheck const & check : outcome.checks)
        table.rows.push_back(
            {check.name, check.value, check.limit, check.passed ? "passed" : (check.isWarning ? "warning" : "FAILED")});
    std::string html = "<section id=\"checks\">\n<h2>Checks</h2>\n" + Table(table);
    if (!outcome.warnings.empty())
    {
        html += "<h3>Warnings</h3>\n<ul>\n";
        for (std::string const & warning : outcome.warnings)
            html += "<li>" + Escaped(warning) + "</li>\n";
        html += "</ul>\n";
    }
    return html + "</section>\n";
}

std::string provenance(Outcome const & outcome)
{
    HtmlTable inputs{"Inputs", {"File", "SHA-256"}, {}};
    for (OutcomeInput const & input : outcome.inputs)
        inputs.rows.push_back({input.path, input.sha256});
    HtmlTable parameters{"Parameters", {"Key", "Value", "Unit", "Origin"}, {}};
    for (OutcomeParameter const & p : outcome.parameters)
        parameters.rows.push_back({p.key, p.value, p.unit, p.isDefault ? "default" : "job"});
    HtmlTable stages{"Time", {"Stage", "Seconds"}, {}};
    for (OutcomeStage const & stage : outcome.stages)
        stages.rows.push_back({stage.name, Fixed(stage.seconds, 2)});

    std::string html =
        "<section id=\"provenance\">\n<h2>Provenance</h2>\n<p>Material figures: " + Escaped(outcome.materialSource) +
        "</p>\n" + Table(inputs) + Table(parameters);
    if (!outcome.stages.empty())
        html += Table(stages);
    html += "<p>Version " + Escaped(outcome.version) + ". To repeat the run:</p>\n<pre><code>" +
            Escaped(outcome.command) + "</code></pre>\n";
    if (!outcome.log.empty())
        html +=
            "<details>\n<summary>Log of the solver</summary>\n<pre>" + Escaped(outcome.log) + "</pre>\n</details>\n";
    return html + "</section>\n";
}

// What became of the sheet.
std::string results(Outcome const & outcome)
{
    return summary(outcome) + part(outcome) + LayersSection(outcome) + formingLimit(outcome) + ZoneSection(outcome) +
           TubeSection(outcome) + (outcome.hasBlank ? blank(outcome) : "") + (outcome.imported ? "" : forces(outcome)) +
           SpringbackSection(outcome);
}

} // namespace

void WriteReport(Outcome const & i_outcome, std::string const & i_path)
{
    OutputFile page(i_path);
    bool const hasResults = i_outcome.HasResults();
    page << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<meta name=\"viewport\" "
            "content=\"width=device-width, initial-scale=1\">\n<title>"
         << Escaped(i_outcome.title) << "</title>\n"
         << kStyle << "</head>\n<body>\n"
         << head(i_outcome) << "<main>\n"
         << DeckSection(i_outcome) << StepsSection(i_outcome) << (hasResults ? results(i_outcome) : "")
         << tipping(i_outcome) << checks(i_outcome) << provenance(i_outcome) << "</main>\n</body>\n</html>\n";
    page.Commit();
}

} // namespace voz::workbench
