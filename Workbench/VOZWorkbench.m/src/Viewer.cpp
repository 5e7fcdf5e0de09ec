// Viewer.cpp: the data of the interactive view: positions in single precision, values of each field in 256 steps, as
// base64.

#include "Viewer.h"

#include "Colour.h"
#include "FieldPictures.h"
#include "MeshPicture.h"
#include "OutputFile.h"
#include "ViewerScript.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>

namespace voz::workbench
{
namespace
{

using Json = nlohmann::ordered_json;

template <class T>
std::string packed(std::vector<T> const & values)
{
    return Base64({reinterpret_cast<char const *>(values.data()), values.size() * sizeof(T)});
}

Json quantity(Outcome const & outcome, FieldPicture const & field)
{
    std::vector<ElementOutcome> const & elements = field.layer == nullptr ? outcome.elements : *field.layer;
    double low = INFINITY;
    double high = -INFINITY;
    for (ElementOutcome const & element : elements)
    {
        low = std::min(low, field.value(element));
        high = std::max(high, field.value(element));
    }
    std::vector<std::uint8_t> values;
    values.reserve(elements.size());
    for (ElementOutcome const & element : elements)
    {
        double const share = high > low ? (field.value(element) - low) / (high - low) : 0.5;
        values.push_back(static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(share, 0.0, 1.0))));
    }
    Json colours = Json::array();
    for (int i = 0; i <= 8; ++i)
        colours.push_back(Hex(ScaleColour(i / 8.0)));
    return {{"name", field.name + ", " + field.unit},
            {"ends", {Fixed(low, field.decimals) + " " + field.unit, Fixed(high, field.decimals) + " " + field.unit}},
            {"colours", colours},
            {"values", packed(values)}};
}

Json zones(Outcome const & outcome, char const * name, int codes, int ElementOutcome::*code, Colour (*colour)(int))
{
    Json colours = Json::array();
    for (int c = -1; c < codes; ++c)
        colours.push_back(Hex(colour(c)));
    std::vector<std::uint8_t> values;
    for (ElementOutcome const & element : outcome.elements)
        values.push_back(static_cast<std::uint8_t>(std::clamp(element.*code, -1, codes - 1) + 1));
    return {{"name", name}, {"ends", nullptr}, {"colours", colours}, {"values", packed(values)}};
}

struct Triangles
{
    std::vector<std::uint32_t> corners;  // 0-based nodes, 3 a triangle
    std::vector<std::uint32_t> elements; // 0-based, 1 a triangle
    std::vector<std::uint8_t> inner;     // bit k: the side opposite to corner k is a diagonal
};

Triangles triangulated(VOZCatMesh const & mesh)
{
    Triangles out;
    auto const add = [&](int const * row, int a, int b, int c, int e, unsigned inner)
    {
        for (int const k : {a, b, c})
            out.corners.push_back(static_cast<std::uint32_t>(row[k] - mesh.GetFirstNodeNumber() - 1));
        out.elements.push_back(static_cast<std::uint32_t>(e - 1));
        out.inner.push_back(static_cast<std::uint8_t>(inner));
    };
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        int const * const row = mesh.GetElemData()[e];
        bool const triangle = row[0] == row[3];
        add(row, 0, 1, 2, e, triangle ? 0U : 2U);
        if (!triangle)
            add(row, 0, 2, 3, e, 4U);
    }
    return out;
}

// The shifts of the model's nodes, in the frame; nothing without springback.
Json sprung(Outcome const & outcome)
{
    if (!outcome.springback)
        return nullptr;
    std::vector<float> shifts;
    for (std::size_t n = 0; n < outcome.nodes.size(); ++n)
    {
        Point3 const & shift = outcome.springback->Shown()[n];
        for (int i = 0; i < 3; ++i)
            shifts.push_back(static_cast<float>(outcome.frame.axis(i, 0) * shift[0] +
                                                outcome.frame.axis(i, 1) * shift[1] +
                                                outcome.frame.axis(i, 2) * shift[2]));
    }
    return {{"shifts", packed(shifts)}, {"most", std::max(1.0, 2.0 * outcome.springback->exaggeration)}};
}

Json viewData(Outcome const & outcome)
{
    std::vector<float> part;
    std::vector<float> flat;
    std::vector<Point3> const nodes = NodesInFrame(outcome);
    for (std::size_t n = 0; n < nodes.size(); ++n)
        for (std::size_t c = 0; c < 3; ++c)
        {
            part.push_back(static_cast<float>(nodes[n][c]));
            flat.push_back(static_cast<float>(outcome.hasBlank ? outcome.nodes[n].flat[c] : nodes[n][c]));
        }
    Triangles const triangles = triangulated(outcome.part);
    using E = ElementOutcome;
    Json fields = Json::array();
    fields.push_back(quantity(outcome, {"thinning", "%", [](E const & e) { return e.thinning; }, 1}));
    fields.push_back(quantity(outcome, {"thickness", "mm", [](E const & e) { return e.thickness; }, 3}));
    fields.push_back(quantity(outcome, {"major strain", "%", [](E const & e) { return e.major; }, 1}));
    fields.push_back(quantity(outcome, {"minor strain", "%", [](E const & e) { return e.minor; }, 1}));
    fields.push_back(quantity(outcome, {"equivalent stress", "MPa", [](E const & e) { return e.stress; }, 0}));
    fields.push_back(zones(outcome, "safety zones", 5, &E::safety, SafetyColour));
    fields.push_back(zones(outcome, "forming zones", 6, &E::forming, FormingColour));
    if (!outcome.top.empty())
    {
        auto const major = [](E const & e) { return e.major; };
        fields.push_back(quantity(outcome, {"major strain, top", "%", major, 1, &outcome.top}));
        fields.push_back(quantity(outcome, {"major strain, bottom", "%", major, 1, &outcome.bottom}));
    }
    return {{"part", packed(part)},
            {"flat", packed(flat)},
            {"triangles", packed(triangles.corners)},
            {"elements", packed(triangles.elements)},
            {"inner", packed(triangles.inner)},
            {"fields", fields},
            {"sprung", sprung(outcome)}};
}

} // namespace

std::string Viewer(Outcome const & i_outcome)
{
    return "<p id=\"view-none\" hidden>This browser shows no WebGL 2; the pictures above hold the same fields.</p>\n"
           "<p><label>Field <select id=\"view-field\"></select></label> <span id=\"view-range\"></span></p>\n"
           "<canvas id=\"view-canvas\" tabindex=\"0\" role=\"img\" aria-label=\"The part in three dimensions: arrow "
           "keys "
           "turn, plus and minus zoom\"></canvas>\n"
           "<p><label" +
           std::string(i_outcome.hasBlank ? "" : " hidden") +
           ">Blank <input id=\"view-stage\" type=\"range\" min=\"0\" max=\"100\" value=\"100\"> part</label> " +
           std::string(i_outcome.springback
                           ? "<label>Springback <input id=\"view-sprung\" type=\"range\" min=\"0\" max=\"100\" "
                             "value=\"0\"></label> <output id=\"view-times\" for=\"view-sprung\"></output> "
                           : "") +
           "<label><input id=\"view-sides\" type=\"checkbox\" checked> element sides</label></p>\n"
           "<script id=\"view-data\" type=\"application/json\">" +
           viewData(i_outcome).dump() + "</script>\n" + kViewerScript;
}

} // namespace voz::workbench
