// ProgramHost.cpp: the host of the command.

#include "ProgramHost.h"

#include "CATUnicodeString.h"
#include "ExitCode.h"
#include "VOZProcess.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace
{
// "share/vozdravo" of an installed package, "InstallRoot" of a source tree with its build within.
std::optional<std::string> RootBesideProgram()
{
    std::array<unsigned short, 4096> buffer{};
    VOZProcess::GetModuleFileNameW(nullptr, buffer.data(), static_cast<unsigned>(buffer.size()) - 1);
    std::filesystem::path folder(CATUnicodeString(buffer.data()).ConvertToChar());
    for (int level = 0; level < 5 && folder.has_parent_path(); ++level)
    {
        folder = folder.parent_path();
        for (char const * const name : {"share/vozdravo", "InstallRoot"})
            if (std::error_code error; std::filesystem::exists(folder / name / "config.cfg", error))
                return (folder / name).string();
    }
    return std::nullopt;
}
} // namespace

ProgramHost::ProgramHost() : mDefault(VOZHost::Current()), mRoot(RootBesideProgram())
{
    Install(this);
}

ProgramHost::~ProgramHost()
{
    Install(nullptr);
}

std::optional<std::string> ProgramHost::EnvironmentValue(std::string const & i_name)
{
    std::optional<std::string> value = mDefault.EnvironmentValue(i_name);
    bool const isRoot = i_name == "VOZDRAVO3D";
    return isRoot && !value && !mDefault.EnvironmentValue("KELM7DRAVO3D") ? mRoot : value;
}

void ProgramHost::BrokenContract(std::string const & i_text, std::string const & i_file, int i_line)
{
    std::fprintf(stderr, "dravo: error: the program stopped itself, because it found a contradiction: %s (%s:%d)\n",
                 i_text.c_str(), i_file.c_str(), i_line);
    std::fflush(stderr);
    std::_Exit(ExitNoResult);
}
