// IntermediateShapes.h: the same stroke in two or three steps, with strain increments summed along them.
//
// What one step cannot know is the order of events: that the corner of a wall was drawn over a flange which shared its
// ring compression with the sides. Between the flat and the formed part lie one or two shapes of the same stroke:
//
//     shape of share t:  the formed surface with its height times t, continued beyond its rim
//
// On each the material's nodes slide until equilibrium, with the history that they bring along, holds there; then the
// flat follows from equilibrium on the formed part with the history of all shapes, and so on in turn until the flat
// rests. The scaling is affine: what can be unrolled stays so, and a wall grows between radii of the same width.
// After the pseudo-inverse approach: Y. Q. Guo, Y. M. Li, F. Bogard, K. Debray, J. Mater. Process. Technol. 151 (2004)
// 88; and multi-step inverse methods with nodes slid on the shapes: S. H. Kim, S. H. Kim, H. Huh, J. Mater. Process.
// Technol. 113 (2001) 779; J. Manuf. Sci. Eng. 132 (2010) 041013. What it gives and where it fails:
// docs/intermediate-shapes.md.

#ifndef INTERMEDIATESHAPES_H
#define INTERMEDIATESHAPES_H

#include "onestep/PieceSolver.h"

namespace voz::multistep
{

// io_solver: solved in one step; afterwards in i_settings.steps, where that succeeds. Where it does not, the answer of
// one step stays, with a warning. A part without strain beyond the elastic has no history and stays as it is. The
// progress reported lies within io_monitor's present range.
onestep::Status formInSteps(onestep::Problem const & i_problem, onestep::Settings const & i_settings,
                            onestep::Monitor & io_monitor, onestep::PieceSolver & io_solver);

} // namespace voz::multistep

#endif
