// Route.h: a way to solve a job, whichever it is: what it cannot carry it refuses by name, and what it gives is one
// Outcome.
//
// A route works in one folder of its own, whose files are the run's record: config.cfg (the job's limits) on every
// route.

#ifndef ROUTE_H
#define ROUTE_H

#include "Job.h"
#include "JobModel.h"
#include "Outcome.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

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
    virtual void Progress(int /*i_percent*/) {}            // of the stage, never backwards
    virtual bool IsInterrupted() { return false; }

    void Enter(std::string const & i_stage) // throws Interrupted
    {
        if (IsInterrupted())
            throw Interrupted();
        Stage(i_stage);
    }
};

struct RouteOptions
{
    std::string folder;         // absolute, exists; the route's own
    bool isSolverSilent = true; // what a solver program says on standard error goes to its log, too
};

class Route
{
public:
    virtual ~Route() = default;

    virtual char const * Name() const = 0;

    // What the route cannot carry is refused by name: of the job alone, of the job on its mesh, and a folder whose path
    // is more than the library can hold. Throw InputError.
    virtual void CheckJob(Job const & i_job) const = 0;
    virtual void CheckModel(Job const & i_job, JobModel const & i_model) const = 0;
    virtual void CheckFolder(std::string const & i_folder) const = 0;

    // How the route knows a pad.
    virtual PadRows PadsBy() const = 0;

    // Throws InputError, OutputError, SolverError, Interrupted. Leaves the checks of the result, parameters, inputs and
    // command to the caller.
    virtual Outcome Run(Job const & i_job, JobModel const & i_model, RouteOptions const & i_options,
                        RunObserver & io_observer) const = 0;
};

constexpr char const * kKernelRoute = "kernel";           // in this process; the default
constexpr char const * kFileRoute = "file";               // deck, solver program, its text
constexpr char const * kIncrementalRoute = "incremental"; // a deck for an explicit solver

// The routes by name, the default first.
std::vector<std::string> RouteNames();

// i_solver: path of the solver program, where the route starts one (see FindSolverProgram). Throws InputError for a
// route that cannot run here, and for an unknown name.
std::unique_ptr<Route> MakeRoute(std::string const & i_name, std::string const & i_solver);

} // namespace voz::workbench

#endif
