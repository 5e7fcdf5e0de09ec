// IncrementalImport.h: steps of an explicit solver's results as outcomes, with report and exports like those of a run.

#ifndef INCREMENTALIMPORT_H
#define INCREMENTALIMPORT_H

#include "Run.h"

#include <string>

namespace voz::workbench
{

struct ImportOptions
{
    std::string run;          // folder of the run, or of its deck; empty: the job's newest run that left a deck
    std::string out;          // where the job's runs are sought; empty: as the job says, else "out"
    int step = -1;            // below 0: the last
    bool areAllSteps = false; // each in the report, the last as the outcome
    bool isForced = false;    // an import that is there already is replaced
    std::string command;      // to repeat the import
};

// Writes the folder "step-<N>" (or "steps") of the run. Throws InputError where there is nothing to import, with what
// there is and what to do; OutputError, SolverError, Interrupted.
RunRecord ImportSteps(Job const & i_job, ImportOptions const & i_options, RunObserver & io_observer);

// One step of the records in a deck's folder, behind i_head (title, material, limit, frame). Throws InputError for a
// record that contradicts itself.
Outcome ImportStep(Job const & i_job, Outcome const & i_head, std::string const & i_folder, int i_step);

} // namespace voz::workbench

#endif
