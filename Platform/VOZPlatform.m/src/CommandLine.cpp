#include "CommandLine.h"

#include <algorithm>
#include <utility>

namespace voz::platform
{
namespace
{
constexpr std::string_view kBlanks = " \t";

void skipBlanks(std::string_view & io_line)
{
    io_line.remove_prefix(std::min(io_line.find_first_not_of(kBlanks), io_line.size()));
}

// The name knows no escapes: a backslash in it is a separator, even ahead of a quote.
std::string takeProgram(std::string_view & io_line)
{
    bool const isQuoted = io_line.front() == '"';
    if (isQuoted)
        io_line.remove_prefix(1);
    std::size_t const length = std::min(isQuoted ? io_line.find('"') : io_line.find_first_of(kBlanks), io_line.size());
    std::string program(io_line.substr(0, length));
    io_line.remove_prefix(isQuoted ? std::min(length + 1, io_line.size()) : length);
    return program;
}

// Backslashes and the quote behind them, at the front of the line. Backslashes that no quote follows are plain.
void takeSlashesAndQuote(std::string_view & io_line, std::string & io_argument, bool & io_isQuoted)
{
    std::size_t const slashes = std::min(io_line.find_first_not_of('\\'), io_line.size());
    io_line.remove_prefix(slashes);
    bool const isAheadOfQuote = !io_line.empty() && io_line.front() == '"';
    io_argument.append(isAheadOfQuote ? slashes / 2 : slashes, '\\');
    if (!isAheadOfQuote)
        return;
    io_line.remove_prefix(1);
    bool const isDoubled = io_isQuoted && !io_line.empty() && io_line.front() == '"';
    if (slashes % 2 == 1)
        io_argument.push_back('"');
    else if (isDoubled)
    {
        io_argument.push_back('"');
        io_line.remove_prefix(1);
    }
    else
        io_isQuoted = !io_isQuoted;
}

// One argument, up to a blank outside quotes or the end of the line.
std::string takeArgument(std::string_view & io_line)
{
    std::string argument;
    bool isQuoted = false;
    while (!io_line.empty() && (isQuoted || kBlanks.find(io_line.front()) == std::string_view::npos))
    {
        if (io_line.front() == '\\' || io_line.front() == '"')
        {
            takeSlashesAndQuote(io_line, argument, isQuoted);
            continue;
        }
        argument.push_back(io_line.front());
        io_line.remove_prefix(1);
    }
    return argument;
}
} // namespace

std::vector<std::string> SplitArguments(std::string_view i_line)
{
    std::vector<std::string> arguments;
    for (skipBlanks(i_line); !i_line.empty(); skipBlanks(i_line))
        arguments.push_back(takeArgument(i_line));
    return arguments;
}

std::vector<std::string> SplitCommandLine(std::string_view i_line)
{
    skipBlanks(i_line);
    if (i_line.empty())
        return {};
    std::vector<std::string> words = {takeProgram(i_line)};
    for (std::string & argument : SplitArguments(i_line))
        words.push_back(std::move(argument));
    return words;
}
} // namespace voz::platform
