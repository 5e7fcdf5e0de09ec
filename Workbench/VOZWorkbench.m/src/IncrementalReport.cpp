// IncrementalReport.cpp: the deck and the imported steps in the page.

#include "IncrementalReport.h"

#include "Colour.h"
#include "FieldPictures.h"
#include "Html.h"
#include "IncrementalSummary.h"
#include "OutputFile.h"
#include "PictureParts.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{

namespace
{
constexpr double kWidth = 900.0;
constexpr double kHeight = 420.0;
constexpr double kLeft = 70.0;
constexpr double kRight = 70.0;
constexpr double kTop = 20.0;
constexpr double kBottom = 60.0;
constexpr int kCurveSteps = 100;
constexpr std::size_t kMostPictures = 6; // of steps: the page stays small enough for a mail

// Velocity over time on the left axis, travel on the right one, output states as marks on the travel.
class PunchChart
{
public:
    explicit PunchChart(IncrementalFigures const & i_figures)
        : mFigures(i_figures), mEnd(std::max(i_figures.punchCurve.empty() ? 0.0 : i_figures.punchCurve.back()[0], 1e-9))
    {
        for (auto const & [time, velocity] : i_figures.punchCurve)
            mVelocity = std::max(mVelocity, velocity);
        mTravel = std::max(TravelAt(mEnd), 1e-9);
    }

    std::string Svg() const
    {
        return "<svg viewBox=\"0 0 " + Fixed(kWidth, 0) + " " + Fixed(kHeight, 0) +
               "\" role=\"img\" aria-label=\"Velocity and travel of the punch against time\" "
               "font-family=\"sans-serif\" font-size=\"13\">\n" +
               Axes() + Velocity() + Travel() + Outputs() + Legend() + "</svg>\n";
    }

private:
    double VelocityAt(double i_time) const
    {
        auto const & curve = mFigures.punchCurve;
        for (std::size_t i = 1; i < curve.size(); ++i)
            if (i_time <= curve[i][0] && curve[i][0] > curve[i - 1][0])
                return curve[i - 1][1] +
                       (curve[i][1] - curve[i - 1][1]) * (i_time - curve[i - 1][0]) / (curve[i][0] - curve[i - 1][0]);
        return 0.0;
    }
    double TravelAt(double i_time) const // mm
    {
        auto const & curve = mFigures.punchCurve;
        double metres = 0.0;
        for (std::size_t i = 1; i < curve.size() && curve[i - 1][0] < i_time; ++i)
        {
            double const end = std::min(i_time, curve[i][0]);
            metres += 0.5 * (curve[i - 1][1] + VelocityAt(end)) * (end - curve[i - 1][0]);
        }
        return 1000.0 * metres;
    }

    double X(double i_time) const { return kLeft + (kWidth - kLeft - kRight) * i_time / mEnd; }
    static double Y(double i_share) { return kHeight - kBottom - (kHeight - kTop - kBottom) * i_share; }
    static std::string At(double i_x, double i_y) { return Fixed(i_x, 1) + " " + Fixed(i_y, 1); }

    std::string Velocity() const
    {
        std::string path;
        for (auto const & [time, velocity] : mFigures.punchCurve)
            path += (path.empty() ? "M " : " L ") + At(X(time), Y(velocity / std::max(mVelocity, 1e-9)));
        return "<path d=\"" + path + "\" fill=\"none\" stroke=\"#000\" stroke-width=\"2\"/>\n";
    }
    std::string Travel() const
    {
        std::string path;
        for (int i = 0; i <= kCurveSteps; ++i)
        {
            double const time = mEnd * i / kCurveSteps;
            path += (path.empty() ? "M " : " L ") + At(X(time), Y(TravelAt(time) / mTravel));
        }
        return "<path d=\"" + path + "\" fill=\"none\" stroke=\"#06c\" stroke-width=\"2\" stroke-dasharray=\"7 4\"/>\n";
    }
    std::string Outputs() const
    {
        std::string svg;
        for (IncrementalOutput const & output : mFigures.outputs)
            svg += "<circle cx=\"" + Fixed(X(output.time), 1) + "\" cy=\"" +
                   Fixed(Y(TravelAt(output.time) / mTravel), 1) +
                   "\" r=\"4\" fill=\"#fff\" stroke=\"#06c\" stroke-width=\"2\"/>\n";
        return svg;
    }

    std::string Axes() const
    {
        std::string svg = "<path fill=\"none\" stroke=\"#000\" d=\"M " + At(kLeft, kTop) + " L " + At(kLeft, Y(0.0)) +
                          " L " + At(kWidth - kRight, Y(0.0)) + " L " + At(kWidth - kRight, kTop) +
                          "\"/>\n<g fill=\"#000\">\n";
        for (int i = 0; i <= 4; ++i)
        {
            double const share = i / 4.0;
            svg += PictureText(X(mEnd * share), Y(0.0) + 18.0, "middle", Fixed(1000.0 * mEnd * share, 2)) +
                   PictureText(kLeft - 8.0, Y(share) + 4.0, "end", Fixed(mVelocity * share, 2)) +
                   PictureText(kWidth - kRight + 8.0, Y(share) + 4.0, "start", Fixed(mTravel * share, 1));
        }
        double const middle = 0.5 * (kTop + Y(0.0));
        auto const turned = [&](double i_x, char const * i_text)
        {
            return "<text transform=\"rotate(-90 " + Fixed(i_x, 0) + " " + Fixed(middle, 0) + ")\" x=\"" +
                   Fixed(i_x, 0) + "\" y=\"" + Fixed(middle, 0) + "\" text-anchor=\"middle\">" + i_text + "</text>\n";
        };
        return svg + PictureText(0.5 * kWidth, kHeight - 18.0, "middle", "time, ms") +
               turned(20.0, "velocity of the punch, m/s") + turned(kWidth - 8.0, "travel of the punch, mm") + "</g>\n";
    }
    static std::string Legend()
    {
        constexpr double kX = 0.5 * kWidth - 150.0;
        double const y = Y(0.08);
        return "<path d=\"M " + At(kX, y - 4.0) + " h24\" stroke=\"#000\" stroke-width=\"2\"/>\n" +
               PictureText(kX + 30.0, y, "start", "velocity") + "<path d=\"M " + At(kX + 110.0, y - 4.0) +
               " h24\" stroke=\"#06c\" stroke-width=\"2\" stroke-dasharray=\"7 4\"/>\n" +
               PictureText(kX + 140.0, y, "start", "travel, with the output states");
    }

    IncrementalFigures const & mFigures;
    double mEnd;
    double mVelocity = 0.0;
    double mTravel = 0.0;
};

std::string List(std::vector<std::string> const & i_texts)
{
    std::string html;
    for (std::string const & text : i_texts)
        html += "<li>" + Escaped(text) + "</li>\n";
    return html.empty() ? html : "<ul>\n" + html + "</ul>\n";
}

double Greatest(Outcome const & i_outcome, double ElementOutcome::*i_value)
{
    double greatest = 0.0;
    for (ElementOutcome const & element : i_outcome.elements)
        greatest = std::max(greatest, element.*i_value);
    return greatest;
}

std::vector<std::string> StepRow(Outcome const & i_step)
{
    ImportedStep const & imported = *i_step.imported;
    bool const isTimed = imported.output.time > 0.0 || imported.step == 0;
    return {std::to_string(imported.step),
            isTimed ? Fixed(1000.0 * imported.output.time, 4) : "not known",
            isTimed ? Fixed(imported.output.position, 1) : "not known",
            std::to_string(i_step.elements.size()),
            Fixed(i_step.summary.leastThickness, 4),
            Fixed(Greatest(i_step, &ElementOutcome::thinning), 2),
            Fixed(Greatest(i_step, &ElementOutcome::major), 2),
            Fixed(100.0 * i_step.summary.safetyShare[1], 2),
            Fixed(i_step.summary.drawDepth, 2)};
}

// At most kMostPictures of the steps, evenly spread, the last among them.
std::vector<Outcome const *> Pictured(std::vector<Outcome> const & i_steps)
{
    std::vector<Outcome const *> chosen;
    std::size_t const count = std::min(kMostPictures, i_steps.size());
    for (std::size_t i = 0; i < count; ++i)
        chosen.push_back(&i_steps[count == 1 ? 0 : i * (i_steps.size() - 1) / (count - 1)]);
    return chosen;
}
} // namespace

std::string DrawPunchCurve(IncrementalFigures const & i_figures)
{
    return PunchChart(i_figures).Svg();
}

std::string DeckSection(Outcome const & i_outcome)
{
    if (!i_outcome.incremental)
        return "";
    IncrementalFigures const & figures = *i_outcome.incremental;
    HtmlTable meshes{"Meshes of the deck, in the stamping frame", {"Mesh", "Origin", "Nodes", "Elements"}, {}};
    for (IncrementalMesh const & mesh : figures.meshes)
        meshes.rows.push_back({mesh.role, mesh.origin, std::to_string(mesh.nodes), std::to_string(mesh.elements)});
    HtmlTable outputs{"Output states", {"Step", "Punch, % of the stroke", "Time, ms"}, {}};
    for (std::size_t i = 0; i < figures.outputs.size(); ++i)
        outputs.rows.push_back(
            {std::to_string(i), Fixed(figures.outputs[i].position, 2), Fixed(1000.0 * figures.outputs[i].time, 4)});
    std::string files;
    for (std::string const & file : figures.files)
        files += (files.empty() ? "" : ", ") + file;
    std::string html = "<section id=\"deck\">\n<h2>Deck for an explicit solver</h2>\n<p>Files: " + Escaped(files) +
                       ". All values of the deck are in metres, kilograms, seconds, newtons and pascals.</p>\n" +
                       Table({"Process numbers", {}, ProcessNumbers(figures)}) + Table(meshes) + List(figures.remarks) +
                       Table(outputs);
    if (!figures.openDeck.empty())
    {
        HtmlTable open{"What differs in the deck for open solvers", {"Keyword", "Why"}, {}};
        for (auto const & [keyword, reason] : figures.openDeck)
            open.rows.push_back({keyword, reason});
        html += Table(open);
    }
    return html +
           Figure(DrawPunchCurve(figures), "Velocity and travel of the punch; the circles are the output states.") +
           "</section>\n";
}

std::string StepsSection(Outcome const & i_outcome)
{
    if (!i_outcome.imported)
        return "";
    HtmlTable table{"Imported steps",
                    {"Step", "Time, ms", "Punch, % of the stroke", "Elements", "Least thickness, mm",
                     "Greatest thinning, %", "Greatest major strain, %", "Failure, %", "Depth, mm"},
                    {}};
    for (Outcome const & step : i_outcome.steps)
        table.rows.push_back(StepRow(step));
    if (i_outcome.steps.empty())
        table.rows.push_back(StepRow(i_outcome));
    std::string html =
        "<section id=\"steps\">\n<h2>Steps of the explicit solver</h2>\n<p>The results hold the steps 0 to " +
        std::to_string(i_outcome.imported->steps - 1) + "; the rest of this page shows step " +
        std::to_string(i_outcome.imported->step) +
        ". A step has a mesh of its own, which refinement made, and no flat blank: that is in the report of the run "
        "that wrote the deck.</p>\n" +
        Table(table);
    for (Outcome const * const step : Pictured(i_outcome.steps))
        html += Figure(DrawField(*step, {"thinning", "%", [](ElementOutcome const & e) { return e.thinning; }, 1}),
                       "Thinning of the sheet in step " + std::to_string(step->imported->step) + ".");
    return html + "</section>\n";
}

} // namespace voz::workbench
