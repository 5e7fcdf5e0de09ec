#include "VOZFile.h"

#include "SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <string>

namespace
{
#if defined(_WIN32)
constexpr bool kHasDriveLetters = true;
#else
constexpr bool kHasDriveLetters = false;
#endif

bool namesDrive(std::string const & path)
{
    auto const isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    return path.size() >= 2 && isLetter(path[0]) && path[1] == ':';
}
} // namespace

std::FILE * VOZOpenFile(char const * i_path, char const * i_mode)
{
    std::string path(i_path != nullptr ? i_path : "");
    if (!kHasDriveLetters && namesDrive(path))
    {
        errno = ENOENT;
        return nullptr;
    }
    std::replace(path.begin(), path.end(), '\\', '/');
    return voz::platform::OpenStream(path, i_mode);
}
