#if !defined(_WIN32)

#include "SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace voz::platform
{
std::optional<std::string> ReadEnvironment(std::string const & i_name)
{
    char const * const value = std::getenv(i_name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::string> SystemPath(char const * i_path)
{
    std::string path(i_path != nullptr ? i_path : "");
    auto const isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    if (path.empty() || (path.size() >= 2 && isLetter(path[0]) && path[1] == ':'))
        return std::nullopt;
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::FILE * OpenStream(std::string const & i_path, char const * i_mode)
{
    std::FILE * const stream = std::fopen(i_path.c_str(), i_mode);
    if (stream == nullptr)
        return nullptr;
    // A folder opens for reading and then gives errors at every read.
    struct stat status = {};
    if (fstat(fileno(stream), &status) == 0 && S_ISDIR(status.st_mode))
    {
        std::fclose(stream);
        errno = EISDIR;
        return nullptr;
    }
    return stream;
}

bool RemoveFile(std::string const & i_path)
{
    return unlink(i_path.c_str()) == 0;
}
} // namespace voz::platform

#endif
