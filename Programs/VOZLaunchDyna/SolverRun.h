// SolverRun.h: the solver on the deck of a folder, followed until it ends.

#ifndef SOLVERRUN_H
#define SOLVERRUN_H

#include "SolverSearch.h"

#include <filesystem>
#include <functional>

namespace voz::launch
{
constexpr char kDeck[] = "inputls.dyn";
constexpr char kLog[] = "launch.log";

struct SolverEnd
{
    bool hasStarted = false;
    unsigned int code = 0;
    bool saysError = false; // the log ends with an error termination, whatever the code is
    std::string lastWords;  // of the log, one line
};

// Runs the solver with "i=inputls.dyn" in the folder and waits. i_progress is called now and then with the simulated
// time, seconds: what the log says, or the last whole state of the results.
SolverEnd RunSolver(Solver const & i_solver, std::filesystem::path const & i_folder,
                    std::function<void(double)> const & i_progress);

// The last " t <seconds> dt" that a part of a log says; negative if it says none.
double TimeInLog(std::string const & i_text);

// Removes the result family of an earlier run, which a shorter one would leave behind its own, and "output.voz".
void RemoveOldResults(std::filesystem::path const & i_folder);
} // namespace voz::launch

#endif
