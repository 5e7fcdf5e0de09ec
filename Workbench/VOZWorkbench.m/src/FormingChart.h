// FormingChart.h: the forming limit diagram: every element's strain pair against the limit and the safety curve.

#ifndef FORMINGCHART_H
#define FORMINGCHART_H

#include "Outcome.h"

#include <string>

namespace voz::workbench
{

// An svg element. Up to 20,000 elements each point stands at its own place; beyond, points are drawn once per half
// pixel.
std::string FormingChart(Outcome const & i_outcome);

} // namespace voz::workbench

#endif
