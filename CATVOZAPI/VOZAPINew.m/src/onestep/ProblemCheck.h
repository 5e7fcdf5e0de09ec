// ProblemCheck.h: refuses what cannot be posed, in words that name the culprit.

#ifndef PROBLEMCHECK_H
#define PROBLEMCHECK_H

#include "onestep/OneStep.h"

namespace voz::onestep
{

// Empty if every index is in range, every number finite and every material has a curve; else what is wrong and where.
// Constraints on nodes that do not exist are no error: their records may be unused ones, and are skipped.
std::string checkProblem(Problem const & i_problem, Settings const & i_settings);

} // namespace voz::onestep

#endif
