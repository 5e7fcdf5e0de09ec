// RunChecks.h: what a result must satisfy to be believed, and what an engineer should look at.

#ifndef RUNCHECKS_H
#define RUNCHECKS_H

#include "Outcome.h"

#include <vector>

namespace voz::workbench
{

std::vector<OutcomeCheck> CheckOutcome(Outcome const & i_outcome);

} // namespace voz::workbench

#endif
