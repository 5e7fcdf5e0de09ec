// CommandLine.h: a command line taken apart by the quoting rules of Windows. See VOZProcess.h.

#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include <string>
#include <string_view>
#include <vector>

namespace voz::platform
{
// The program's name and the arguments behind it; empty for a line of blanks.
std::vector<std::string> SplitCommandLine(std::string_view i_line);

// The arguments of a text that has no program's name ahead of them.
std::vector<std::string> SplitArguments(std::string_view i_line);
} // namespace voz::platform

#endif
