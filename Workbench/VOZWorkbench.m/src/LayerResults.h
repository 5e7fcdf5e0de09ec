// LayerResults.h: the three stores that the library's drivers fill, and their one conversion into an outcome.

#ifndef LAYERRESULTS_H
#define LAYERRESULTS_H

#include "Outcome.h"

#include "Result.h"

#include <array>

namespace voz::workbench
{

struct LayerResults
{
    explicit LayerResults(VOZCatMesh const & i_mesh) : top(i_mesh), mid(i_mesh), bottom(i_mesh) {}

    Result top;
    Result mid;
    Result bottom;
    std::array<Result *, 3> all = {&top, &mid, &bottom}; // in the drivers' order
};

// m, %, Pa to mm, %, MPa: the elements of all layers, and thickness, strains and zones of the nodes; places and
// displacements are left at 0. The outcome has part, limit and first thickness; its elements and nodes are empty.
void ConvertLayers(LayerResults const & i_layers, Outcome & io_outcome);

} // namespace voz::workbench

#endif
