// OutcomeAnalysis.h: what is worked out from a whole outcome, whatever route gave it.

#ifndef OUTCOMEANALYSIS_H
#define OUTCOMEANALYSIS_H

#include "Outcome.h"

namespace voz::workbench
{

// Fills flat and zones from part, frame, symmetry, elements (their areas, too) and nodes.
void AnalyseOutcome(Outcome & io_outcome);

// The connected zones of the codes failure, marginal and strong compression, largest first. Linear in the mesh, but for
// sorting the zones.
std::vector<OutcomeZone> GatherZones(Outcome const & i_outcome);

char const * ZonePlaceName(ZonePlace i_place); // "interior", "at a hole", "at the edge"
char const * ZonePlaceKey(ZonePlace i_place);  // "interior", "hole", "edge"

} // namespace voz::workbench

#endif
