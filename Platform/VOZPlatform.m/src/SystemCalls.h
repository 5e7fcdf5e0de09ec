// SystemCalls.h: the services of the operating system, the one place where the two kinds of system differ.
//
// SystemCallsPosix.cpp and SystemCallsWindows.cpp implement it, as VOZProcessPosix.cpp and VOZProcessWindows.cpp do
// VOZProcess.h; each is empty on the other's system. Texts are UTF-8.

#ifndef SYSTEMCALLS_H
#define SYSTEMCALLS_H

#include <cstdio>
#include <optional>
#include <string>

namespace voz::platform
{
// The variable of this process; nothing if it is not set.
std::optional<std::string> ReadEnvironment(std::string const & i_name);

// The path with the separators of this system; nothing for a null or empty path, or for a drive letter where there are
// none.
std::optional<std::string> SystemPath(char const * i_path);

// As VOZOpenFile, whose path is already checked and turned to the system's separators.
std::FILE * OpenStream(std::string const & i_path, char const * i_mode);

// Removes a file, not a folder; the path is one of SystemPath.
bool RemoveFile(std::string const & i_path);
} // namespace voz::platform

#endif
