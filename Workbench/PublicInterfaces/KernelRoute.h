// KernelRoute.h: a job by the in-process route: the library marshals it into the kernel's records, the kernel solves it
// here, and the three layers of the sheet come back as one Outcome.
//
// The route's folder holds afterwards: config.cfg (the job's limits), the kernel's summary "sum.txt" and log "sum.log",
// and with springback the same two in "springback". The route makes the library's environment of that folder while it
// runs.

#ifndef KERNELROUTE_H
#define KERNELROUTE_H

#include "Route.h"

namespace voz::workbench
{

class KernelRoute : public Route
{
public:
    char const * Name() const override { return kKernelRoute; }
    void CheckJob(Job const &) const override {} // whatever a job can say
    void CheckModel(Job const & i_job, JobModel const & i_model) const override;
    void CheckFolder(std::string const & i_folder) const override;
    PadRows PadsBy() const override { return PadRows::Elements; }
    Outcome Run(Job const & i_job, JobModel const & i_model, RouteOptions const & i_options,
                RunObserver & io_observer) const override;
};

} // namespace voz::workbench

#endif
