// LaunchArguments.h: what the library hands to the launcher: "FOLDER" "COUNT, the second without its closing quote.

#ifndef LAUNCHARGUMENTS_H
#define LAUNCHARGUMENTS_H

#include <string>
#include <vector>

namespace voz::launch
{
constexpr int kMaxCount = 10000; // of output points

struct Arguments
{
    std::string folder;
    int count = 0; // of output points
};

// The words behind the program's name. A folder that ends with a backslash swallows the quote behind it, so that both
// arguments come as one: they are taken apart again. Empty, or what is wrong.
std::string ParseArguments(std::vector<std::string> i_words, Arguments & o_arguments);
} // namespace voz::launch

#endif
