// StatusFile.h: "launch.status", through which whoever started the launcher sees how far it has come.
//
// Lines key=value: state (starting, running, converting, done, failed), time and end (seconds of the simulation; end is
// the deck's ENDTIM), records (written so far), message (one line; on failure what failed and what to do). Written as
// "launch.status.new" and renamed, so that a reader never meets half of it.

#ifndef STATUSFILE_H
#define STATUSFILE_H

#include <filesystem>
#include <string>

namespace voz::launch
{
enum class LaunchState
{
    Starting,
    Running,
    Converting,
    Done,
    Failed
};

class StatusFile
{
public:
    explicit StatusFile(std::filesystem::path const & i_folder) : m_folder(i_folder) {}

    void Remove() const; // what an earlier run left

    LaunchState state = LaunchState::Starting;
    double time = 0.0;
    double end = 0.0;
    int records = 0;
    std::string message; // line ends become blanks

    // Writes what has changed; nothing otherwise. False if that cannot be done: the run goes on without being seen.
    bool Show();

private:
    std::filesystem::path m_folder;
    std::string m_shown;
};
} // namespace voz::launch

#endif
