// FileRoute.h: a job by the file route: deck, solver program, its text read back, one Outcome.
//
// The route works in one folder of its own, which holds afterwards: deck.fpi, deck.fpo, config.cfg (the job's limits),
// solver.cfg (what the deck has no field for) and solver.log. The route makes the kernel's environment of that folder
// while it runs.

#ifndef FILEROUTE_H
#define FILEROUTE_H

#include "Route.h"

#include <string>

namespace voz::workbench
{

struct FileRouteOptions : RouteOptions
{
    std::string solver; // path of the solver program
};

// Where the solver program is: i_given if it is not empty; else the environment's VOZONESTEPSOLVER; else
// "OneStepSolver" beside this program. Throws InputError if it is not there.
std::string FindSolverProgram(std::string const & i_given);

// Refuses, before anything is written, what a deck cannot say: several materials or one of some elements alone, a
// binder, strains to be reached, more than one prescribed direction of a node unless both are 0, a pad whose nodes take
// further elements with them; of a springback what is held, left out or laid on points; and a folder whose path the
// library or the command line cannot hold. Throw InputError.
void CheckFileRoute(Job const & i_job);
void CheckFileModel(Job const & i_job, JobModel const & i_model);
void CheckRoutePath(std::string const & i_folder, std::string const & i_solver);

class FileRoute : public Route
{
public:
    explicit FileRoute(std::string const & i_solver); // see FindSolverProgram

    char const * Name() const override { return kFileRoute; }
    void CheckJob(Job const & i_job) const override { CheckFileRoute(i_job); }
    void CheckModel(Job const & i_job, JobModel const & i_model) const override { CheckFileModel(i_job, i_model); }
    void CheckFolder(std::string const & i_folder) const override { CheckRoutePath(i_folder, mSolver); }
    PadRows PadsBy() const override { return PadRows::Nodes; }
    Outcome Run(Job const & i_job, JobModel const & i_model, RouteOptions const & i_options,
                RunObserver & io_observer) const override;

private:
    std::string mSolver;
};

// Throws as Route::Run does.
Outcome RunFileRoute(Job const & i_job, JobModel const & i_model, FileRouteOptions const & i_options,
                     RunObserver & io_observer);

} // namespace voz::workbench

#endif
