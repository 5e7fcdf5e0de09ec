// KernelSpringback.h: the part after the tools let go, by the library's driver.

#ifndef KERNELSPRINGBACK_H
#define KERNELSPRINGBACK_H

#include "Route.h"

namespace voz::workbench
{

// i_formed: the outcome of the forming. The kernel's files go to "springback" in i_folder, whose configuration counts.
// Throws InputError, OutputError, SolverError, Interrupted.
SpringbackOutcome KernelSpringback(Job const & i_job, JobModel const & i_model, Outcome const & i_formed,
                                   std::string const & i_folder, RunObserver & io_observer);

} // namespace voz::workbench

#endif
