// FileRouteParts.h: the parts of the file route that stand in sources of their own.

#ifndef FILEROUTEPARTS_H
#define FILEROUTEPARTS_H

#include "FileRoute.h"

#include "Result.h"

#include <string>

namespace voz::workbench
{

// Refuses a solver's text that is cut off or holds what is no number, before the library reads it: it takes an early
// end of a section quietly. Throws SolverError, with the line.
void CheckSolverText(std::string const & i_path, VOZCatMesh const & i_mesh);

// The same of the springback form: a place per node.
void CheckSpringbackText(std::string const & i_path, VOZCatMesh const & i_mesh);

// Fills the slots that the reader leaves unset: the equivalent strain of quadrilaterals, equivalentStrain of all
// elements, the thickness of the nodes.
void FillUnsetSlots(VOZCatMesh const & i_mesh, double i_anisotropy, Result & io_result);

// The one conversion of this route: Result in mm, %, Pa, N and its odd angles, Outcome in mm, %, MPa, N.
void ConvertFileResult(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Result & i_result,
                       Outcome & o_outcome);

// The library's equivalent strain of a pair of strains, engineering percent all three: normalised to
// sqrt(2 (2 + r) / (3 (1 + r))) of the work-conjugate one.
double EquivalentStrainPercent(double i_major, double i_minor, double i_anisotropy);

// What the solver said, without the lines that differ from run to run.
std::string SolverWords(std::string const & i_logPath);

} // namespace voz::workbench

#endif
