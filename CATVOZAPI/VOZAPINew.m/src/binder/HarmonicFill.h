// HarmonicFill.h: values for the nodes that have none, as smooth as those around them allow.
//
// Discrete Laplace equation over a flat mesh with the cotangent weights (U. Pinkall, K. Polthier, Exp. Math. 2 (1993)
// 15), each at least 1e-3, so that an obtuse triangle never makes a value overshoot.

#ifndef HARMONICFILL_H
#define HARMONICFILL_H

#include "geometry/SurfaceMesh.h"

#include <vector>

namespace voz::binder
{

// i_flat: position per node of the cells. io_value, io_known: per node. Fills the nodes that are not known and hang
// together with known ones, and marks them known; the others stay. False: the system could not be solved.
bool fillHarmonically(std::vector<geometry::Cell> const & i_cells, std::vector<geometry::Vec2> const & i_flat,
                      std::vector<double> & io_value, std::vector<bool> & io_known);

} // namespace voz::binder

#endif
