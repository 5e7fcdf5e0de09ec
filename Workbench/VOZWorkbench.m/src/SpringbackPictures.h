// SpringbackPictures.h: the deviation of the sprung shape: colours on the formed part, and a section.

#ifndef SPRINGBACKPICTURES_H
#define SPRINGBACKPICTURES_H

#include "Outcome.h"

#include <string>

namespace voz::workbench
{

// Both need an outcome with springback, and give an svg element.
std::string DrawDeviation(Outcome const & i_outcome);

// The part where the plane of the section cuts it, and the same material points of the sprung shape, their deviations
// exaggerated as the outcome says.
std::string DrawSection(Outcome const & i_outcome);

std::string ExaggerationText(double i_exaggeration); // "drawn 20 times as large"

} // namespace voz::workbench

#endif
