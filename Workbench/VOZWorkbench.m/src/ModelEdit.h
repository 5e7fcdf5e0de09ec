// ModelEdit.h: changes of a MeshModel that keep mesh, ids and sets in step. Positions are 1-based; marks have a row 0
// that is not used.

#ifndef MODELEDIT_H
#define MODELEDIT_H

#include "MeshFile.h"

#include <vector>

namespace voz::workbench
{

// A millionth, a hundred-thousandth, ... of the bounding box's diagonal (mm).
double FractionOfDiagonal(VOZCatMesh const & i_mesh, double i_fraction);

// For each node the first node within i_tolerance of it that itself stays, or the node: the same for all n in a chain
// only where they lie near that first one. Row 0 unused.
std::vector<int> NearestEarlier(VOZCatMesh const & i_mesh, double i_tolerance);

// Rows name i_target[n] in place of n; no node goes.
void RedirectRows(VOZCatMesh & io_mesh, std::vector<int> const & i_target);

// A row without the corners that repeat their neighbour: a quadrilateral may become a triangle. Returns the
// corners that are left, 0 where some corner is still met twice or fewer than three are.
int ReduceRow(int (&io_row)[4]);

void KeepElements(MeshModel & io_model, std::vector<char> const & i_isKept);
void KeepNodes(MeshModel & io_model, std::vector<char> const & i_isKept); // the others must be unused

} // namespace voz::workbench

#endif
