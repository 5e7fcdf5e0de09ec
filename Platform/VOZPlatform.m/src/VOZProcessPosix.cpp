#if !defined(_WIN32)

#include "VOZProcess.h"

#include "CommandLine.h"
#include "SystemCalls.h"
#include "TextCodes.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <link.h>
#include <memory>
#include <mutex>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{
using voz::platform::SplitArguments;
using voz::platform::SplitCommandLine;
using voz::platform::Utf8FromUtf16;

constexpr unsigned int kWaitEnded = 0;
constexpr unsigned int kWaitTimeout = 0x102;
constexpr unsigned int kWaitFailed = 0xFFFFFFFF;
constexpr int kShellStarted = 42; // any value above 32
constexpr int kShellNotFound = 2;

// What stands behind a handle. A handle to the child's thread is there to be closed and has no process.
struct Handle
{
    pid_t process = 0;
    bool hasEnded = false;
    int status = 0; // as waitpid gives it
};

int exitCode(int status)
{
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// Children that nobody waits for are collected when the next one is started, so that none stays a zombie for long.
class Abandoned
{
public:
    void Add(pid_t i_process)
    {
        std::lock_guard<std::mutex> const lock(mGuard);
        mProcesses.push_back(i_process);
    }
    void Collect()
    {
        std::lock_guard<std::mutex> const lock(mGuard);
        auto const hasEnded = [](pid_t process) { return waitpid(process, nullptr, WNOHANG) != 0; };
        mProcesses.erase(std::remove_if(mProcesses.begin(), mProcesses.end(), hasEnded), mProcesses.end());
    }

private:
    std::mutex mGuard;
    std::vector<pid_t> mProcesses;
};

Abandoned & abandoned()
{
    static Abandoned & children = *new Abandoned;
    return children;
}

// The file actions and their end.
class FileActions
{
public:
    FileActions() { posix_spawn_file_actions_init(&mActions); }
    ~FileActions() { posix_spawn_file_actions_destroy(&mActions); }
    FileActions(FileActions const &) = delete;
    FileActions & operator=(FileActions const &) = delete;

    // The child starts in that folder, with its output and errors in a file.
    int WriteTo(std::string const & i_file, std::string const & i_folder)
    {
        int error = posix_spawn_file_actions_addopen(&mActions, 0, "/dev/null", O_RDONLY, 0);
        if (error == 0)
            error = posix_spawn_file_actions_addopen(&mActions, 1, i_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        if (error == 0)
            error = posix_spawn_file_actions_adddup2(&mActions, 1, 2);
        return error == 0 ? EnterFolder(i_folder) : error;
    }

    // The child starts in that folder, without the streams of this process.
    int DetachInto(std::string const & i_folder)
    {
        int error = EnterFolder(i_folder);
        for (int stream = 0; stream <= 2 && error == 0; ++stream)
            error =
                posix_spawn_file_actions_addopen(&mActions, stream, "/dev/null", stream == 0 ? O_RDONLY : O_WRONLY, 0);
        return error;
    }
    posix_spawn_file_actions_t const * Get() const { return &mActions; }

private:
    int EnterFolder(std::string const & i_folder)
    {
        return i_folder.empty() ? 0 : posix_spawn_file_actions_addchdir_np(&mActions, i_folder.c_str());
    }

    posix_spawn_file_actions_t mActions = {};
};

// A session of its own: what interrupts this process at its terminal does not reach the child.
class OwnSession
{
public:
    OwnSession()
    {
        posix_spawnattr_init(&mAttributes);
        posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETSID);
    }
    ~OwnSession() { posix_spawnattr_destroy(&mAttributes); }
    OwnSession(OwnSession const &) = delete;
    OwnSession & operator=(OwnSession const &) = delete;
    posix_spawnattr_t const * Get() const { return &mAttributes; }

private:
    posix_spawnattr_t mAttributes = {};
};

bool dropSuffix(std::string & io_text, std::string_view suffix)
{
    if (io_text.size() <= suffix.size() || io_text.compare(io_text.size() - suffix.size(), suffix.size(), suffix) != 0)
        return false;
    io_text.resize(io_text.size() - suffix.size());
    return true;
}

// Starts words[0] with the words as its arguments; the process, or 0.
pid_t start(std::vector<std::string> words, FileActions const & actions, posix_spawnattr_t const * attributes = nullptr)
{
    abandoned().Collect();
    std::optional<std::string> program = voz::platform::SystemPath(words.empty() ? "" : words[0].c_str());
    if (!program)
        return 0;
    if (program->find('/') != std::string::npos) // a relative one is meant from here, wherever the child starts
        program = std::filesystem::absolute(*program).string();

    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string & word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    pid_t process = 0;
    int error = posix_spawnp(&process, program->c_str(), actions.Get(), attributes, arguments.data(), environ);
    if (error == ENOENT && dropSuffix(*program, ".exe"))
        error = posix_spawnp(&process, program->c_str(), actions.Get(), attributes, arguments.data(), environ);
    return error == 0 ? process : 0;
}

// True once the child has ended; with isPatient it waits for that.
bool collect(Handle & child, bool isPatient)
{
    while (!child.hasEnded)
    {
        pid_t const got = waitpid(child.process, &child.status, isPatient ? 0 : WNOHANG);
        if (got == 0)
            return false;
        // ECHILD: the process ignores the ends of its children, and this one's code is lost.
        child.hasEnded = got == child.process || errno != EINTR;
    }
    return true;
}

thread_local unsigned int g_lastExitCode = 0;

unsigned int ended(Handle const & child)
{
    g_lastExitCode = static_cast<unsigned int>(exitCode(child.status));
    return kWaitEnded;
}

// The name that a module's file bears on Windows: "libVOZDravo.so.0" is "VOZDravo.dll".
std::string moduleName(std::string const & file)
{
    std::string name = std::filesystem::path(file).filename().string();
    std::size_t const suffix = name.find(".so");
    if (name.compare(0, 3, "lib") != 0 || suffix == std::string::npos)
        return name;
    return name.substr(3, suffix - 3) + ".dll";
}

struct ModuleSearch
{
    std::string name;
    void * found = nullptr;
};

int visitModule(dl_phdr_info * info, std::size_t, void * io_search)
{
    auto & search = *static_cast<ModuleSearch *>(io_search);
    if (info->dlpi_name == nullptr || moduleName(info->dlpi_name) != search.name)
        return 0;
    for (int i = 0; i < info->dlpi_phnum && search.found == nullptr; ++i)
        if (info->dlpi_phdr[i].p_type == PT_LOAD) // the first segment's address tells the module, as on Windows
            search.found = // NOLINTNEXTLINE(performance-no-int-to-ptr): the loader tells addresses as numbers
                reinterpret_cast<void *>(info->dlpi_addr + info->dlpi_phdr[i].p_vaddr);
    return 1;
}

std::string modulePath(void * module)
{
    std::error_code error;
    if (module == nullptr)
        return std::filesystem::read_symlink("/proc/self/exe", error).string();
    Dl_info info = {};
    if (dladdr(module, &info) == 0 || info.dli_fname == nullptr)
        return {};
    std::filesystem::path const file = std::filesystem::absolute(info.dli_fname, error);
    return (file.parent_path() / moduleName(file.string())).string();
}
} // namespace

bool VOZProcess::CreateProcessW(unsigned short * io_commandLine, unsigned int, Information & o_information)
{
    o_information = {};
    pid_t const process = start(SplitCommandLine(Utf8FromUtf16(io_commandLine)), FileActions());
    if (process == 0)
        return false;
    o_information = {new Handle{process}, new Handle};
    return true;
}

bool VOZProcess::CreateProcessInFolder(unsigned short * io_commandLine, unsigned short const * i_folder,
                                       unsigned short const * i_outputFile, Information & o_information)
{
    o_information = {};
    auto const path = [](unsigned short const * text)
    { return voz::platform::SystemPath(Utf8FromUtf16(text).c_str()).value_or(std::string()); };
    FileActions actions;
    if (actions.WriteTo(path(i_outputFile), path(i_folder)) != 0)
        return false;
    pid_t const process = start(SplitCommandLine(Utf8FromUtf16(io_commandLine)), actions);
    if (process == 0)
        return false;
    o_information = {new Handle{process}, new Handle};
    return true;
}

unsigned int VOZProcess::WaitForSingleObject(void * i_process, unsigned int i_milliseconds)
{
    auto * const child = static_cast<Handle *>(i_process);
    if (child == nullptr || child->process == 0)
        return kWaitFailed;
    if (i_milliseconds == Infinite)
        return collect(*child, true) ? ended(*child) : kWaitFailed;
    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(i_milliseconds);
    while (!collect(*child, false))
    {
        if (std::chrono::steady_clock::now() >= end)
            return kWaitTimeout;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return ended(*child);
}

unsigned int VOZProcess::LastExitCode()
{
    return g_lastExitCode;
}

bool VOZProcess::GetExitCodeProcess(void * i_process, unsigned int & o_code)
{
    auto * const child = static_cast<Handle *>(i_process);
    if (child == nullptr || child->process == 0 || !collect(*child, false))
        return false;
    o_code = static_cast<unsigned int>(exitCode(child->status));
    return true;
}

bool VOZProcess::CloseHandle(void * i_handle)
{
    std::unique_ptr<Handle> const handle(static_cast<Handle *>(i_handle));
    if (handle == nullptr)
        return false;
    if (handle->process != 0 && !collect(*handle, false))
        abandoned().Add(handle->process);
    return true;
}

int VOZProcess::System(char const * i_utf8)
{
    std::string_view command(i_utf8);
    if (command.size() >= 2 && command.front() == '"' && command.back() == '"')
        command = command.substr(1, command.size() - 2);
    Handle child{start(SplitCommandLine(command), FileActions())};
    if (child.process == 0)
        return 127;
    collect(child, true);
    return exitCode(child.status);
}

int VOZProcess::ShellExecuteW(unsigned short const * i_program, unsigned short const * i_parameters,
                              unsigned short const * i_folder, int)
{
    std::string program = Utf8FromUtf16(i_program);
    program.erase(std::remove(program.begin(), program.end(), '"'), program.end());
    std::vector<std::string> words = {program};
    for (std::string & argument : SplitArguments(Utf8FromUtf16(i_parameters)))
        words.push_back(std::move(argument));

    FileActions actions;
    std::string const folder = Utf8FromUtf16(i_folder);
    pid_t process = 0;
    if (actions.DetachInto(voz::platform::SystemPath(folder.c_str()).value_or(folder)) == 0)
        process = start(std::move(words), actions, OwnSession().Get());
    if (process == 0)
        return kShellNotFound;
    abandoned().Add(process);
    return kShellStarted;
}

void * VOZProcess::GetModuleHandleW(unsigned short const * i_name)
{
    ModuleSearch search{Utf8FromUtf16(i_name)};
    dl_iterate_phdr(visitModule, &search);
    return search.found;
}

unsigned int VOZProcess::GetModuleFileNameW(void * i_module, unsigned short * o_path, unsigned int i_size)
{
    voz::platform::Utf16 const path = voz::platform::Utf16FromUtf8(modulePath(i_module));
    if (path.empty() || i_size == 0)
        return 0;
    std::size_t const length = std::min<std::size_t>(path.size(), i_size - 1);
    std::copy_n(path.begin(), length, o_path);
    o_path[length] = 0;
    return length < path.size() ? i_size : static_cast<unsigned int>(length);
}

#endif
