// ElementShape.h: sides, angles and area of one element. mm, mm^2, degrees.

#ifndef ELEMENTSHAPE_H
#define ELEMENTSHAPE_H

#include "Mesh.h"

#include <array>

namespace voz::workbench
{

struct ElementShape
{
    int corners = 0; // 3 or 4
    double area = 0.0;
    double longest = 0.0; // side
    double shortest = 0.0;
    double smallestAngle = 0.0; // between sides at a corner
    double largestAngle = 0.0;  // above 180 where a quadrilateral is notched
    double warp = 0.0;          // between the halves of a quadrilateral, the worse of its two cuts
    bool hasNoArea = false;     // next to nothing beside the square of its longest side
    bool isConcave = false;     // a quadrilateral with a corner that turns the other way
    std::array<double, 3> middle{};
};

// i_row: positions, the corners all different.
ElementShape ShapeOf(VOZCatMesh const & i_mesh, int const (&i_row)[4]);

} // namespace voz::workbench

#endif
