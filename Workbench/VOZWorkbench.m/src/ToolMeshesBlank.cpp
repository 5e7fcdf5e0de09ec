// ToolMeshesBlank.cpp: the flat blank of a run, whole.

#include "ToolMeshesParts.h"

#include <algorithm>

namespace voz::workbench
{

namespace
{
// Nodes on a plane of symmetry are the whole's own images: they have no second one.
std::vector<char> AreOnPlane(WholePart const & i_part, unsigned i_bit)
{
    std::vector<char> hasImage(i_part.nodeOf.size(), 0); // per node of the model
    for (std::size_t n = 0; n < i_part.nodeOf.size(); ++n)
        if ((i_part.mirrored[n] & i_bit) != 0)
            hasImage[static_cast<std::size_t>(i_part.nodeOf[n])] = 1;
    bool const isPlane = std::ranges::find(hasImage, 1) != hasImage.end();
    std::vector<char> isOn(i_part.nodeOf.size(), 0);
    for (std::size_t n = 0; isPlane && n < isOn.size(); ++n)
        isOn[n] = hasImage[static_cast<std::size_t>(i_part.nodeOf[n])] == 0 ? 1 : 0;
    return isOn;
}
} // namespace

Surface FlatBlank(WholeJob const & i_whole, Outcome const & i_flat, bool i_isTurned, ToolPlan const & i_plan)
{
    WholePart const & part = i_whole.part;
    std::size_t const modelNodes =
        part.nodeOf.empty() ? 0 : static_cast<std::size_t>(*std::ranges::max_element(part.nodeOf)) + 1;
    if (i_flat.nodes.size() != modelNodes)
        RefuseTools(i_plan, "the flat mesh has " + std::to_string(i_flat.nodes.size()) + " nodes, the part " +
                                std::to_string(modelNodes) + "; run the job anew");
    std::array<std::vector<char>, 2> const isOnPlane = {AreOnPlane(part, 1U), AreOnPlane(part, 2U)};
    Surface blank = SurfaceOf(part.mesh, VOZCatAxis());
    for (std::size_t n = 0; n < blank.nodes.size(); ++n)
    {
        Point3 place = i_flat.nodes[static_cast<std::size_t>(part.nodeOf[n])].flat;
        for (unsigned axis = 0; axis < 2; ++axis)
            if (isOnPlane[axis][n] != 0)
                place[axis] = 0.0; // welded there
            else if ((part.mirrored[n] >> axis & 1U) != 0)
                place[axis] = -place[axis];
        blank.nodes[n] = {place[0], i_isTurned ? -place[1] : place[1], 0.0};
    }
    double up = 0.0;
    for (std::array<int, 4> const & row : blank.elements)
        up += blank.AreaVector(row)[2];
    if (up < 0.0)
        Reverse(blank);
    return blank;
}

} // namespace voz::workbench
