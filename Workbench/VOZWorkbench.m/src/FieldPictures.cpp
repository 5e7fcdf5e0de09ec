// FieldPictures.cpp: a picture of the part with text over it: the picture is a PNG, the text stays text.

#include "FieldPictures.h"

#include "Colour.h"
#include "Html.h"
#include "OutputFile.h"
#include "PictureParts.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace voz::workbench
{
namespace
{

constexpr PictureSize kSize = kPictureSize;
constexpr Colour kHidden{200, 200, 200};
} // namespace

std::string PictureFrame(MeshPicture const & picture, std::string const & label, std::string const & over)
{
    return "<svg viewBox=\"0 0 " + std::to_string(kSize.width) + " " + std::to_string(kSize.height + kLegendHeight) +
           "\" role=\"img\" aria-label=\"" + Escaped(label) +
           "\" font-family=\"sans-serif\" font-size=\"14\">\n<image width=\"" + std::to_string(kSize.width) +
           "\" height=\"" + std::to_string(kSize.height) + "\" href=\"data:image/png;base64," +
           Base64(PngBytes(picture.Pixels(), kSize)) + "\"/>\n" + over + "</svg>\n";
}

std::string PictureText(double x, double y, char const * anchor, std::string const & content)
{
    return "<text x=\"" + Fixed(x, 1) + "\" y=\"" + Fixed(y, 1) + "\" text-anchor=\"" + anchor + "\">" +
           Escaped(content) + "</text>\n";
}

namespace
{
std::string colourBar(double low, double high, ValuePicture const & field)
{
    constexpr int kSteps = 60;
    constexpr double kBarLeft = 60.0;
    constexpr double kBarWidth = 620.0;
    double const top = kSize.height + 12.0;
    std::string svg = "<g stroke=\"none\">\n";
    for (int i = 0; i < kSteps; ++i)
        svg += "<rect x=\"" + Fixed(kBarLeft + kBarWidth * i / kSteps, 2) + "\" y=\"" + Fixed(top, 0) + "\" width=\"" +
               Fixed(kBarWidth / kSteps + 0.5, 2) + "\" height=\"14\" fill=\"" + Hex(ScaleColour((i + 0.5) / kSteps)) +
               "\"/>\n";
    svg += "</g>\n";
    for (int i = 0; i <= 4; ++i)
        svg += PictureText(kBarLeft + kBarWidth * i / 4.0, top + 32.0, "middle",
                           Fixed(low + (high - low) * i / 4.0, field.decimals));
    return svg + PictureText(kBarLeft + kBarWidth + 40.0, top + 12.0, "start", field.name + ", " + field.unit);
}

Point3 centre(VOZCatMesh const & mesh, std::vector<Point3> const & nodes, std::size_t element)
{
    int const * const row = mesh.GetElemData()[element + 1];
    int const corners = row[0] == row[3] ? 3 : 4;
    Point3 sum{};
    for (int k = 0; k < corners; ++k)
        for (std::size_t c = 0; c < 3; ++c)
            sum[c] += nodes[static_cast<std::size_t>(row[k] - mesh.GetFirstNodeNumber() - 1)][c] / corners;
    return sum;
}

std::string marker(Point2 const & at, std::string const & content)
{
    double const side = at[0] > 0.7 * kSize.width ? -1.0 : 1.0;
    return "<circle cx=\"" + Fixed(at[0], 1) + "\" cy=\"" + Fixed(at[1], 1) +
           "\" r=\"6\" fill=\"none\" stroke=\"#000\" stroke-width=\"2\"/>\n<g stroke=\"#fff\" stroke-width=\"3\" "
           "paint-order=\"stroke\">\n" +
           PictureText(at[0] + 10.0 * side, at[1] - 8.0, side > 0.0 ? "start" : "end", content) + "</g>\n";
}

std::string overlay(PictureOverlay const & over, MeshPicture const & picture, std::vector<Point3> const & nodes)
{
    auto const place = [&](int node) { return picture.Place(nodes[static_cast<std::size_t>(node)]); };
    std::string svg;
    if (!over.line.empty())
    {
        std::string points;
        for (int const node : over.line)
            points += (points.empty() ? "" : " ") + Fixed(place(node)[0], 1) + "," + Fixed(place(node)[1], 1);
        svg += "<polyline points=\"" + points + "\" fill=\"none\" stroke=\"#c00\" stroke-width=\"4\"/>\n";
    }
    for (PictureOverlay::Mark const & mark : over.marks)
        svg += marker(place(mark.node), mark.text);
    return svg;
}

} // namespace

std::vector<Point3> NodesInFrame(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame)
{
    std::vector<Point3> nodes;
    nodes.reserve(static_cast<std::size_t>(i_mesh.numNode()));
    for (int n = 1; n <= i_mesh.numNode(); ++n)
    {
        double const * const row = i_mesh.GetNodeData()[n];
        Point3 local{};
        for (int i = 0; i < 3; ++i)
            for (int c = 0; c < 3; ++c)
                local[static_cast<std::size_t>(i)] += i_frame.axis(i, c) * (row[c] - i_frame.origin(c));
        nodes.push_back(local);
    }
    return nodes;
}

std::vector<Point3> NodesInFrame(Outcome const & i_outcome)
{
    return NodesInFrame(i_outcome.part, i_outcome.frame);
}

std::string DrawValues(ValuePicture const & i_picture)
{
    std::vector<double> const & values = i_picture.values;
    auto const isShown = [&](std::size_t e) { return i_picture.hidden.empty() || i_picture.hidden[e] == 0; };
    std::optional<std::size_t> least;
    std::optional<std::size_t> greatest;
    for (std::size_t e = 0; e < values.size(); ++e)
    {
        if (!isShown(e))
            continue;
        if (!least || values[e] < values[*least])
            least = e;
        if (!greatest || values[e] >= values[*greatest])
            greatest = e;
    }
    double const low = least ? values[*least] : 0.0;
    double const span = greatest ? values[*greatest] - low : 0.0;
    // What the scale's own figures do not tell apart is rounding, and gets one colour.
    bool const isEven = span < std::pow(10.0, -i_picture.decimals);

    std::vector<Colour> colours;
    colours.reserve(values.size());
    for (std::size_t e = 0; e < values.size(); ++e)
        colours.push_back(isShown(e) ? ScaleColour(isEven ? 0.5 : (values[e] - low) / span) : kHidden);
    MeshPicture picture(i_picture.mesh, i_picture.nodes, kSize);
    picture.Draw(colours);

    std::string over = colourBar(low, low + span, i_picture);
    for (std::optional<std::size_t> const & extreme : {least, greatest})
        if (extreme)
            over += marker(picture.Place(centre(i_picture.mesh, i_picture.nodes, *extreme)),
                           Fixed(values[*extreme], i_picture.decimals) + " " + i_picture.unit + ", element " +
                               std::to_string(*extreme + 1));
    return PictureFrame(picture, i_picture.label, over);
}

std::string DrawField(Outcome const & i_outcome, FieldPicture const & i_field)
{
    std::vector<Point3> const nodes = NodesInFrame(i_outcome);
    ValuePicture picture{i_outcome.part,
                         nodes,
                         i_field.name,
                         i_field.unit,
                         i_field.name + " on the formed part, " + i_field.unit,
                         {},
                         {},
                         i_field.decimals};
    std::vector<ElementOutcome> const & elements = i_field.layer == nullptr ? i_outcome.elements : *i_field.layer;
    for (ElementOutcome const & element : elements)
        picture.values.push_back(i_field.value(element));
    return DrawValues(picture);
}

std::string DrawZones(Outcome const & i_outcome, ZoneKind i_kind, PictureOverlay const & i_over)
{
    struct Kind
    {
        char const * label;
        int codes;
        Colour (*colour)(int);
        char const * (*name)(int);
    };
    // An undercut element is drawn as a failure, one that stands well as safe.
    static Kind const kinds[] = {
        {"safety zones on the formed part", 5, SafetyColour, SafetyName},
        {"forming zones on the formed part", 6, FormingColour, FormingName},
        {"undercuts seen along the stamping direction", 2, [](int code) { return SafetyColour(code == 1 ? 0 : 2); },
         [](int code) { return code == 1 ? "undercut" : "no undercut"; }},
    };
    Kind const & kind = kinds[static_cast<std::size_t>(i_kind)];
    std::vector<Colour> colours;
    colours.reserve(i_outcome.elements.size());
    for (std::size_t e = 0; e < i_outcome.elements.size(); ++e)
        colours.push_back(kind.colour(i_kind == ZoneKind::Safety    ? i_outcome.elements[e].safety
                                      : i_kind == ZoneKind::Forming ? i_outcome.elements[e].forming
                                                                    : i_outcome.undercut.at(e)));
    std::vector<Point3> const nodes = NodesInFrame(i_outcome);
    MeshPicture picture(i_outcome.part, nodes, kSize);
    picture.Draw(colours);
    std::string over = overlay(i_over, picture, nodes);
    for (int code = 0; code < kind.codes; ++code)
    {
        double const x = 20.0 + 295.0 * (code % 3);
        double const y = kSize.height + 18.0 + 24.0 * (code / 3);
        over += "<rect x=\"" + Fixed(x, 0) + "\" y=\"" + Fixed(y - 12.0, 0) + "\" width=\"22\" height=\"14\" fill=\"" +
                Hex(kind.colour(code)) + "\" stroke=\"#333\"/>\n" + PictureText(x + 30.0, y, "start", kind.name(code));
    }
    return PictureFrame(picture, kind.label, over);
}

} // namespace voz::workbench
