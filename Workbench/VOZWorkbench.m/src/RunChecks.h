// RunChecks.h: what a result must satisfy to be believed, and what an engineer should look at.

#ifndef RUNCHECKS_H
#define RUNCHECKS_H

#include "Job.h"
#include "Outcome.h"

#include <optional>
#include <vector>

namespace voz::workbench
{

std::vector<OutcomeCheck> CheckOutcome(Job const & i_job, Outcome const & i_outcome);

// A part that is its own mirror image, under a process that is, must have such a blank. Nothing where the part has no
// such plane across local x or y, or the process prefers a side.
std::optional<OutcomeCheck> SymmetryCheck(Job const & i_job, Outcome const & i_outcome);

} // namespace voz::workbench

#endif
