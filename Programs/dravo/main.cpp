// main.cpp: the command line, and what its exit code says.

#include "Console.h"
#include "ExitCode.h"
#include "FileRoute.h"
#include "OutputFile.h"
#include "ProgramHost.h"
#include "Verbs.h"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>

namespace
{
using namespace voz::workbench;

int Parse(CLI::App & io_app, int i_argc, char ** i_argv, Action & io_action)
{
    bool isVersion = false;
    bool isJson = false;
    io_app.add_flag("--version", isVersion, "Show the version; with --json what it is built of");
    io_app.add_flag("--json", isJson, "With --version: as JSON");
    io_app.require_subcommand(0, 1);
    io_app.footer("Exit codes: 0 done, 1 done but a check failed, 2 wrong use, 3 input refused, 4 no result of the\n"
                  "solver, 5 output not written, 130 interrupted.\n\nExample: dravo run examples/square_cup/job.toml");
    AddRun(io_app, io_action);
    AddCheck(io_app, io_action);
    AddExplain(io_app, io_action);
    AddImport(io_app, io_action);
    AddInspect(io_app, io_action);
    AddConvert(io_app, io_action);
    AddMaterials(io_app, io_action);
    AddInit(io_app, io_action);
    AddCompletion(io_app, io_action);
    try
    {
        io_app.parse(i_argc, i_argv);
    }
    catch (CLI::ParseError const & error)
    {
        return io_app.exit(error) == 0 ? ExitDone : ExitWrongUse; // help is an "error" of code 0
    }
    if (isVersion)
        io_action = [isJson] { return ShowVersion(isJson); };
    if (!io_action)
    {
        Console::Error("a verb is missing; dravo --help lists them");
        return ExitWrongUse;
    }
    return io_action();
}

// Every failure in words and as a code.
int Guarded(int i_argc, char ** i_argv)
{
    CLI::App app("Simulation of sheet-metal forming: from the drawn part to its flat blank, strains and zones.",
                 "dravo");
    Action action;
    try
    {
        return Parse(app, i_argc, i_argv, action);
    }
    catch (Interrupted const &)
    {
        Console::Error("interrupted; what was written so far stays");
        return ExitInterrupted;
    }
    catch (InputError const & error)
    {
        Console::Error(error.what());
        return ExitInputRefused;
    }
    catch (SolverError const & error)
    {
        Console::Error(error.what());
        return ExitNoResult;
    }
    catch (OutputError const & error)
    {
        Console::Error(error.what());
        return ExitNotWritten;
    }
    catch (std::filesystem::filesystem_error const & error)
    {
        Console::Error(error.what());
        return ExitNotWritten;
    }
    catch (std::bad_alloc const &)
    {
        Console::Error("there is not enough memory for this");
        return ExitNoResult;
    }
    catch (std::exception const & error)
    {
        Console::Error(std::string("unexpected: ") + error.what());
        return ExitNoResult;
    }
}
} // namespace

void PrintJson(nlohmann::json const & i_json)
{
    Console::Print(i_json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

void ProtectFile(std::string const & i_path, bool i_isForced)
{
    std::error_code error;
    if (!i_isForced && std::filesystem::is_regular_file(i_path, error))
        throw OutputError(i_path, "it is there already; --force replaces it");
}

int main(int argc, char ** argv)
{
    ProgramHost const host;
    Console::WatchForInterrupt();
    int const code = Guarded(argc, argv);
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
    {
        Console::Error(std::string("standard output could not be written: ") + std::strerror(errno));
        return code == ExitDone || code == ExitCheckFailed ? ExitNotWritten : code;
    }
    return code;
}
