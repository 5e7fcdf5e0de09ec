// ReportSections.h: sections of the report that stand in sources of their own. Each is empty where its matter is none
// of the outcome's.

#ifndef REPORTSECTIONS_H
#define REPORTSECTIONS_H

#include "Outcome.h"

#include <string>

namespace voz::workbench
{

std::string LayersSection(Outcome const & i_outcome);
std::string ZoneSection(Outcome const & i_outcome); // says so where there is none
std::string TubeSection(Outcome const & i_outcome);
std::string SpringbackSection(Outcome const & i_outcome);

} // namespace voz::workbench

#endif
