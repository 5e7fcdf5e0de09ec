// FileRoute.h: a job by the file route: deck, solver program, its text read back, one Outcome.
//
// The route works in one folder of its own, which holds afterwards: deck.fpi, deck.fpo, config.cfg (the job's limits),
// solver.cfg (what the deck has no field for) and solver.log. The route makes the kernel's environment of that folder
// while it runs.

#ifndef FILEROUTE_H
#define FILEROUTE_H

#include "Job.h"
#include "JobModel.h"
#include "Outcome.h"

#include <stdexcept>
#include <string>

namespace voz::workbench
{

// The solver gave no result: it did not converge, it crashed, or what it left is cut off.
class SolverError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The user asked to stop. What was written so far stays.
class Interrupted : public std::runtime_error
{
public:
    Interrupted() : std::runtime_error("interrupted") {}
};

// Told what goes on, and asked whether to go on. The default hears nothing and never stops.
class RunObserver
{
public:
    virtual ~RunObserver() = default;
    virtual void Stage(std::string const & /*i_name*/) {} // a stage begins
    virtual void Warning(std::string const & /*i_text*/) {}
    virtual void Remark(std::string const & /*i_text*/) {} // said on request only
    virtual bool IsInterrupted() { return false; }

    void Enter(std::string const & i_stage) // throws Interrupted
    {
        if (IsInterrupted())
            throw Interrupted();
        Stage(i_stage);
    }
};

struct FileRouteOptions
{
    std::string folder;         // absolute, exists; the route's own
    std::string solver;         // path of the solver program
    int threads = 0;            // 0: as many as the process may use
    bool isSolverSilent = true; // what the solver says on standard error goes to its log, too
};

// Where the solver program is: i_given if it is not empty; else the environment's VOZONESTEPSOLVER; else
// "OneStepSolver" beside this program. Throws InputError if it is not there.
std::string FindSolverProgram(std::string const & i_given);

// Refuses, before anything is written, what the route cannot carry: several materials, and a folder whose path the
// library or the command line cannot hold. Throws InputError.
void CheckFileRoute(Job const & i_job);
void CheckRoutePath(std::string const & i_folder, std::string const & i_solver);

// Throws InputError, OutputError, SolverError, Interrupted. Leaves the checks of the result, parameters, inputs and
// command to the caller.
Outcome RunFileRoute(Job const & i_job, JobModel const & i_model, FileRouteOptions const & i_options,
                     RunObserver & io_observer);

} // namespace voz::workbench

#endif
