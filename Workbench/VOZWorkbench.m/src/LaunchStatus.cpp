// LaunchStatus.cpp: the launcher's status, and the wait for its end.

#include "LaunchStatus.h"

#include "CATUnicodeString.h"
#include "OutputFile.h"
#include "Quantity.h"
#include "RouteParts.h"
#include "VOZProcess.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <thread>

namespace voz::workbench
{

namespace
{
constexpr char const * kStatusFile = "launch.status";

struct StateName
{
    LaunchState state;
    char const * name;
};

constexpr std::array<StateName, 6> kStates = {{{LaunchState::Absent, "not started"},
                                               {LaunchState::Starting, "starting"},
                                               {LaunchState::Running, "running"},
                                               {LaunchState::Converting, "converting"},
                                               {LaunchState::Done, "done"},
                                               {LaunchState::Failed, "failed"}}};

double Seconds(std::string_view i_text)
{
    std::optional<double> const value = ParseNumber(std::string(i_text));
    return value && std::isfinite(*value) && *value >= 0.0 ? *value : 0.0;
}

void Take(std::string_view i_key, std::string_view i_value, LaunchStatus & io_status)
{
    if (i_key == "state")
        for (StateName const & state : kStates)
            io_status.state = state.name == i_value ? state.state : io_status.state;
    if (i_key == "time")
        io_status.time = Seconds(i_value);
    if (i_key == "end")
        io_status.end = Seconds(i_value);
    if (i_key == "records")
        std::from_chars(i_value.data(), i_value.data() + i_value.size(), io_status.records);
    if (i_key == "message")
        io_status.message = i_value;
}

// The launcher renews its status at least every second while the solver runs. Only changes of the file's time count:
// its clock may be another machine's.
class Pulse
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Pulse(std::string const & i_folder) : mPath(std::filesystem::path(i_folder) / kStatusFile) {}

    bool IsSilentFor(std::chrono::seconds i_time)
    {
        std::error_code ignored;
        std::filesystem::file_time_type const written = std::filesystem::last_write_time(mPath, ignored);
        if (written != mWritten)
            mSince = Clock::now();
        mWritten = written;
        return Clock::now() - mSince > i_time;
    }

private:
    std::filesystem::path mPath;
    std::filesystem::file_time_type mWritten{};
    Clock::time_point mSince = Clock::now();
};

// Tells what is new.
void Tell(LaunchStatus const & i_status, LaunchState i_before, RunObserver & io_observer)
{
    if (i_status.state != i_before)
        switch (i_status.state)
        {
        case LaunchState::Starting:
            io_observer.Stage("launcher");
            break;
        case LaunchState::Running:
            io_observer.Stage("explicit solver");
            break;
        case LaunchState::Converting:
            io_observer.Stage("conversion of the results");
            break;
        default:
            break;
        }
    if (i_status.state == LaunchState::Running)
        io_observer.Progress(i_status.Percent());
}
} // namespace

int LaunchStatus::Percent() const
{
    return end > 0.0 ? static_cast<int>(std::clamp(100.0 * time / end, 0.0, 100.0)) : 0;
}

char const * NameOf(LaunchState i_state)
{
    return std::ranges::find(kStates, i_state, &StateName::state)->name;
}

LaunchStatus ParseLaunchStatus(std::string_view i_text)
{
    LaunchStatus status;
    std::istringstream lines{std::string(i_text)};
    for (std::string line; std::getline(lines, line);)
    {
        if (line.ends_with('\r'))
            line.pop_back();
        if (std::size_t const equals = line.find('='); equals != std::string::npos)
            Take(std::string_view(line).substr(0, equals), std::string_view(line).substr(equals + 1), status);
    }
    return status;
}

LaunchStatus ReadLaunchStatus(std::string const & i_folder)
{
    std::ifstream file(std::filesystem::path(i_folder) / kStatusFile, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return ParseLaunchStatus(text.str());
}

void RemoveLaunchStatus(std::string const & i_folder)
{
    std::error_code error;
    std::filesystem::path const path = std::filesystem::path(i_folder) / kStatusFile;
    std::filesystem::remove(path, error);
    if (error)
        throw OutputError(path.string(), error.message());
}

LaunchStatus FollowLaunch(std::string const & i_folder, RunObserver & io_observer, LaunchPatience const & i_patience)
{
    using Clock = std::chrono::steady_clock;
    Clock::time_point const begin = Clock::now();
    LaunchState before = LaunchState::Absent;
    Pulse pulse(i_folder);
    while (true)
    {
        LaunchStatus const status = ReadLaunchStatus(i_folder);
        Tell(status, before, io_observer);
        before = status.state == LaunchState::Absent ? before : status.state;
        if (status.state == LaunchState::Done)
            return status;
        if (status.state == LaunchState::Failed)
            throw SolverError("the explicit solver failed: " +
                              (status.message.empty() ? "see launch.log in " + i_folder : status.message));
        if (before == LaunchState::Absent && Clock::now() - begin > std::chrono::seconds(i_patience.startSeconds))
            throw SolverError("the launcher gave no sign within " + std::to_string(i_patience.startSeconds) +
                              " s: there is no launch.status in " + i_folder);
        if (pulse.IsSilentFor(std::chrono::seconds(i_patience.silentSeconds)) && before == LaunchState::Running)
            throw SolverError("the launcher has been silent for " + std::to_string(i_patience.silentSeconds) +
                              " s and is taken for ended; what the solver said stands in launch.log in " + i_folder);
        if (io_observer.IsInterrupted())
            throw Interrupted();
        std::this_thread::sleep_for(std::chrono::milliseconds(i_patience.pollMilliseconds));
    }
}

std::string FindLauncher()
{
    constexpr std::string_view kLibrary = "VOZDravo.dll";
    constexpr unsigned int kLongest = 4096;
    void * const module = VOZProcess::GetModuleHandleW(CATUnicodeString("VOZDravo.dll").ConvertToUTF16().c_str());
    std::array<unsigned short, kLongest> path{};
    if (module == nullptr || VOZProcess::GetModuleFileNameW(module, path.data(), kLongest - 1) == 0)
        throw InputError("--launch", 0, 0, "the library's own folder cannot be found, beside which the launcher lies");
    std::string text = CATUnicodeString(path.data()).ConvertToChar();
    if (std::size_t const at = text.rfind(kLibrary); at != std::string::npos)
        text.replace(at, kLibrary.size(), "VOZLaunchDyna");
    for (char const * const suffix : {".exe", ""})
        if (std::error_code error; std::filesystem::is_regular_file(text + suffix, error))
            return text + suffix;
    throw InputError("--launch", 0, 0, "there is no launcher \"" + text + "\"; it belongs beside the library");
}

} // namespace voz::workbench
