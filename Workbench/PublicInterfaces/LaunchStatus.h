// LaunchStatus.h: how far a run of the explicit solver is, as the launcher tells it in "launch.status" of the deck's
// folder.
//
// The file holds lines "key=value": state, time and end (seconds of the simulation), records (output states written so
// far), message. It is replaced as a whole, so that a reader never sees half of one.

#ifndef LAUNCHSTATUS_H
#define LAUNCHSTATUS_H

#include "Route.h"

#include <string>
#include <string_view>

namespace voz::workbench
{

enum class LaunchState
{
    Absent, // no status: nothing was started, or not yet
    Starting,
    Running,
    Converting,
    Done,
    Failed
};

struct LaunchStatus
{
    LaunchState state = LaunchState::Absent;
    double time = 0.0; // s
    double end = 0.0;  // s; 0: not known yet
    int records = 0;
    std::string message;

    int Percent() const; // of the simulated time, 0 .. 100
};

// Lines that are none, and keys that nobody knows, are passed over; a status without a state that is known is Absent.
LaunchStatus ParseLaunchStatus(std::string_view i_text);
LaunchStatus ReadLaunchStatus(std::string const & i_folder); // Absent where there is no file that can be read
void RemoveLaunchStatus(std::string const & i_folder);       // throws OutputError where it is there and stays
char const * NameOf(LaunchState i_state);

struct LaunchPatience
{
    int pollMilliseconds = 100;
    int startSeconds = 20;  // without any status: the launcher did not start
    int silentSeconds = 60; // with a status that nobody renews: the launcher is gone
};

// Waits until the run is done, and tells the observer of stages and progress. Throws SolverError where the run failed,
// with the launcher's own words, or gave no sign of life; Interrupted where the user asks: the solver then goes on.
LaunchStatus FollowLaunch(std::string const & i_folder, RunObserver & io_observer,
                          LaunchPatience const & i_patience = {});

// The launcher's program, beside the library. Throws InputError where it is not there.
std::string FindLauncher();

} // namespace voz::workbench

#endif
