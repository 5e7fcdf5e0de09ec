// SolverSearch.h: where the solver of the keyword deck is.

#ifndef SOLVERSEARCH_H
#define SOLVERSEARCH_H

#include <optional>
#include <string>
#include <vector>

namespace voz::launch
{
struct Solver
{
    std::string program;   // its path
    std::string arguments; // what the setting says behind the program; empty where it was found by its name
};

struct SolverSearch
{
    // What the environment and the configuration say, empty where they say nothing: the program's path, in quotes if
    // arguments follow behind a blank in it.
    std::string variable;             // VOZDynaSolver
    std::string configuration;        // DynaSolver
    std::string configFile;           // for messages
    std::vector<std::string> folders; // the usual places, then those of the PATH
};

// The settings of this process.
SolverSearch ReadSettings();

// The variable first, then the configuration, then the usual names in the folders, folder by folder. A setting that
// names no file ends the search. Nothing, with what to do in o_message, if there is no solver.
std::optional<Solver> FindSolver(SolverSearch const & i_search, std::string & o_message);
} // namespace voz::launch

#endif
