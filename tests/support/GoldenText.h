// GoldenText.h: files compared with what a test wants them to be.

#ifndef GOLDENTEXT_H
#define GOLDENTEXT_H

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace goldentext
{
namespace fs = std::filesystem;

// The bytes; where text mode writes CR LF, without the CRs: goldens have none.
inline std::string readFile(fs::path const & path)
{
    std::ifstream stream(path, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
#if defined(_WIN32)
    std::erase(text, '\r');
#endif
    return text;
}

inline void writeFile(fs::path const & path, std::string const & text)
{
    std::ofstream(path, std::ios::binary) << text;
}

inline std::vector<std::string> linesOf(std::string const & text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// The first line in which two texts differ, with visible blanks; empty if they are equal.
inline std::string firstDifference(std::string const & wanted, std::string const & got)
{
    if (wanted == got)
        return {};
    std::vector<std::string> const left = linesOf(wanted);
    std::vector<std::string> const right = linesOf(got);
    std::size_t i = 0;
    while (i < left.size() && i < right.size() && left[i] == right[i])
        ++i;
    auto const shown = [i](std::vector<std::string> const & lines)
    { return i < lines.size() ? "[" + lines[i] + "]" : std::string("(no line, or another end)"); };
    return "line " + std::to_string(i + 1) + "\n  wanted " + shown(left) + "\n  got    " + shown(right);
}
} // namespace goldentext

#endif
