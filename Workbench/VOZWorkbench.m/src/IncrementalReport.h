// IncrementalReport.h: what the incremental route adds to the page.

#ifndef INCREMENTALREPORT_H
#define INCREMENTALREPORT_H

#include "Outcome.h"

#include <string>

namespace voz::workbench
{

// Each a section, or nothing where the outcome has none of it: the deck with its process numbers, output times and the
// punch's curve; the imported step or steps.
std::string DeckSection(Outcome const & i_outcome);
std::string StepsSection(Outcome const & i_outcome);

// Velocity and travel of the punch against time, as an svg element.
std::string DrawPunchCurve(IncrementalFigures const & i_figures);

} // namespace voz::workbench

#endif
