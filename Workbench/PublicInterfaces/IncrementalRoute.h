// IncrementalRoute.h: a job as a deck for an explicit solver: the library writes it, the launcher has it solved, and
// the steps of the result come back into outcomes of the same form as those of the other routes.
//
// The route's folder holds afterwards the deck "inputls.dyn", a ".mod" file for each mesh, and what the library reads
// there again when steps are imported: config.cfg, materials.xml, Increment. Where the job gives no blank a run of the
// in-process route, in the folder "kernel" within, makes it, and the outcome is that run's.
// docs/incremental-route.md tells the whole way.

#ifndef INCREMENTALROUTE_H
#define INCREMENTALROUTE_H

#include "Route.h"

namespace voz::workbench
{

class IncrementalRoute : public Route
{
public:
    char const * Name() const override { return kIncrementalRoute; }
    void CheckJob(Job const & i_job) const override;
    void CheckModel(Job const & i_job, JobModel const & i_model) const override;
    void CheckFolder(std::string const & i_folder) const override;
    PadRows PadsBy() const override { return PadRows::Elements; }
    Outcome Run(Job const & i_job, JobModel const & i_model, RouteOptions const & i_options,
                RunObserver & io_observer) const override;
};

// Starts the launcher on the deck in i_folder and does not wait (FollowLaunch of LaunchStatus.h does). Throws
// InputError where there is no launcher, SolverError where it cannot be started.
void LaunchSolver(Job const & i_job, std::string const & i_folder);

} // namespace voz::workbench

#endif
