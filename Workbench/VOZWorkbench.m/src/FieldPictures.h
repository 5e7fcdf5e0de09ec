// FieldPictures.h: the formed part coloured by a field or by zones, with its colour bar and marked extremes, as an svg
// element.

#ifndef FIELDPICTURES_H
#define FIELDPICTURES_H

#include "Outcome.h"

#include <functional>
#include <string>

namespace voz::workbench
{

struct FieldPicture
{
    std::string name; // "thinning"
    std::string unit; // "%"
    std::function<double(ElementOutcome const &)> value;
    int decimals = 1;
    std::vector<ElementOutcome> const * layer = nullptr; // of the outcome; null: the mid-surface
};

std::string DrawField(Outcome const & i_outcome, FieldPicture const & i_field);

enum class ZoneKind
{
    Safety,
    Forming,
    Undercut
};

// What is drawn over the picture: numbered places, and a line through nodes (0-based).
struct PictureOverlay
{
    struct Mark
    {
        int node;
        std::string text;
    };
    std::vector<Mark> marks;
    std::vector<int> line;
};

std::string DrawZones(Outcome const & i_outcome, ZoneKind i_kind, PictureOverlay const & i_over = {});

// Nodes in the stamping frame, 0-based.
std::vector<Point3> NodesInFrame(Outcome const & i_outcome);
std::vector<Point3> NodesInFrame(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame);

} // namespace voz::workbench

#endif
