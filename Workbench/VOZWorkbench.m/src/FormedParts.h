// FormedParts.h: what the exports of the formed blank share.

#ifndef FORMEDPARTS_H
#define FORMEDPARTS_H

#include "Outcome.h"

#include <string>
#include <vector>

namespace voz::workbench
{

struct JobMaterial;

constexpr int kFormedPart = 1; // also of its section, material and curve

// Throws OutputError for a node without an element, whose thickness nothing tells.
void CheckFormedMesh(Outcome const & i_outcome, std::string const & i_path);

// The bulk data that a solver runs.
void WriteFormedBulkData(Outcome const & i_outcome, std::vector<JobMaterial> const & i_materials,
                         std::string const & i_path);

} // namespace voz::workbench

#endif
