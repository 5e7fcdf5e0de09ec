// RunParts.h: what a run and an import of its results share.

#ifndef RUNPARTS_H
#define RUNPARTS_H

#include "Run.h"

namespace voz::workbench
{

constexpr char const * kSolverFolder = "solver"; // in the folder of a run: the route's own
constexpr char const * kLockedJob = "job.lock.toml";

// Report, drawings, results and tables, as the job asks, in the record's folder; adds them to its files.
void WriteOutputs(Job const & i_job, RunRecord & io_record);
void WriteJson(std::string const & i_path, nlohmann::json const & i_json); // throws OutputError

// Where the numbered folders of a job are made.
std::string OutFolder(Job const & i_job, std::string const & i_out);

} // namespace voz::workbench

#endif
