// Run.h: a whole run: job in, numbered folder out.
//
// The folder holds job.lock.toml, summary.json, what the job asks for (report.html, blank.dxf, blank.svg, part.vtu,
// ...) and solver/ with the files of the route. It is always new: "<job>-001", "<job>-002", ... A run that fails or is
// interrupted leaves its folder with a summary that says so.

#ifndef RUN_H
#define RUN_H

#include "Job.h"
#include "Outcome.h"
#include "Route.h"

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace voz::workbench
{

struct RunOptions
{
    std::string out; // where the numbered folder is made; empty: as the job says, else "out"
    std::string route = kKernelRoute;
    std::string solver;         // path of the solver program of the file route; empty: see FindSolverProgram
    bool isSolverSilent = true; // see RouteOptions
    bool areTimesKept = false;  // in report and summary; without them the same input gives the same bytes
    std::string command;        // to repeat the run
};

struct RunFile
{
    std::string what; // "report"
    std::string path;
};

struct RunRecord
{
    Outcome outcome;
    std::string folder; // absolute
    std::vector<RunFile> files;
    std::vector<int> elementIds; // of the mesh file, per element
    std::vector<int> nodeIds;
};

// Whether a run could make its folder: nothing of it is made. i_out: as in RunOptions. Throws InputError for a folder
// that the route cannot work in, OutputError for one that cannot be made.
void CheckRunFolder(Job const & i_job, std::string const & i_out, Route const & i_route);

// Throws InputError, OutputError, SolverError, Interrupted.
RunRecord RunJob(Job const & i_job, RunOptions const & i_options, RunObserver & io_observer);

// What an engineer asks first, a line each, with units.
std::string SummaryText(RunRecord const & i_record);

// The same facts for scripts: "schema", units in the names of the keys.
nlohmann::json SummaryJson(RunRecord const & i_record);

bool HasFailedCheck(Outcome const & i_outcome);   // one that is no warning
bool HasFailedWarning(Outcome const & i_outcome); // or anything that was warned of

} // namespace voz::workbench

#endif
