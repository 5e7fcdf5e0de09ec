#include "LaunchArguments.h"

#include <algorithm>
#include <charconv>

namespace voz::launch
{
namespace
{
constexpr char kExpected[] = "; expected FOLDER COUNT, the count of output points from 1 to 10000";

std::string trimmed(std::string text)
{
    std::erase(text, '"');
    std::size_t const first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}
} // namespace

std::string ParseArguments(std::vector<std::string> i_words, Arguments & o_arguments)
{
    if (i_words.size() == 1)
        if (std::size_t const quote = i_words[0].find('"'); quote != std::string::npos)
            i_words = {i_words[0].substr(0, quote), i_words[0].substr(quote + 1)};
    if (i_words.size() != 2)
        return std::to_string(i_words.size()) + " arguments" + kExpected;
    o_arguments.folder = trimmed(i_words[0]);
    if (o_arguments.folder.empty())
        return std::string("no folder") + kExpected;
    std::string const count = trimmed(i_words[1]);
    auto const parsed = std::from_chars(count.data(), count.data() + count.size(), o_arguments.count);
    if (parsed.ec != std::errc() || parsed.ptr != count.data() + count.size() || o_arguments.count < 1 ||
        o_arguments.count > kMaxCount)
        return "\"" + count + "\" is no count of output points" + kExpected;
    return "";
}
} // namespace voz::launch
