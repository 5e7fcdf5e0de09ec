// SolverChild.cpp: starting the solver program and waiting for it.
//
// The program's name goes into the command line as it is given, without quotes: who has blanks in it quotes it. No
// exit code is asked for: whether the solver succeeded shows in its output file.

#include "Solver.h"

#include "CATUnicodeString.h"
#include "VOZCatConfigPaser.h"
#include "VOZProcess.h"
#include "VOZStatus.h"
#include "VOZTemplatePath.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

namespace
{
constexpr std::size_t kCommandBytes = 1024; // with the closing zero
constexpr std::size_t kLeastPath = 3;       // a configuration path under three characters is none
constexpr char const * kCannotStart = "Cannot create Process!";

// Writes program, option, "input" -sd "folder". False if it does not fit.
bool makeCommand(char (&o_command)[kCommandBytes], char const * format, char const * program, char const * input,
                 char const * folder)
{
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    int const length = std::snprintf(o_command, sizeof o_command, format, program, input, folder);
#pragma GCC diagnostic pop
    return length >= 0 && static_cast<std::size_t>(length) < sizeof o_command;
}

int refuse()
{
    std::puts(kCannotStart);
    return 1;
}
} // namespace

int Solver::run(char const * i_program, char const * i_inputFile)
{
    char path[VOZTemplatePath::kPathSize] = {};
    if (VOZTemplatePath::GetConfigPath(path) != 0 || std::strlen(path) < kLeastPath)
        return E_FAIL;
    VOZCatConfigPaser config(path);
    config.ReadAndPaser();
    char key[] = "SolverRam";
    int solverRam = 0; // read as the configuration's users expect, and handed to nobody
    config.GetInteger(key, solverRam);

    std::printf("Program Name: %s\n", i_program);
    char command[kCommandBytes];
    if (!makeCommand(command, "%s -pfpi \"%s\" -sd \"%s\"", i_program, i_inputFile, mSolverDir))
        return refuse();
    return PrepAndLaunchRedirectedChild(command);
}

// The command interpreter takes off one outer pair of quotes.
int Solver::run_spb(char const * i_program, char const * i_inputFile)
{
    char command[kCommandBytes];
    if (!makeCommand(command, "\"%s -pspi \"%s\" -sd \"%s\"\"", i_program, i_inputFile, mSolverDir))
        return refuse();
    std::fflush(stdout);
    return VOZProcess::System(command);
}

int Solver::PrepAndLaunchRedirectedChild(char * i_commandLine)
{
    std::printf("%p\n", static_cast<void *>(i_commandLine));
    unsigned short wide[kCommandBytes] = {};
    std::basic_string<unsigned short> const converted = CATUnicodeString(i_commandLine).ConvertToUTF16();
    bool const fits = converted.size() < kCommandBytes;
    if (fits)
        std::copy(converted.begin(), converted.end(), wide);
    std::printf("%p\n", static_cast<void *>(wide));
    std::fflush(stdout); // ahead of what the child prints

    VOZProcess::Information child;
    if (!fits || !VOZProcess::CreateProcessW(wide, VOZProcess::CreateNoWindow, child))
        return refuse();
    VOZProcess::WaitForSingleObject(child.hProcess, VOZProcess::Infinite);
    VOZProcess::CloseHandle(child.hProcess);
    VOZProcess::CloseHandle(child.hThread);
    return 0;
}
