#if !defined(_WIN32)

#include "SystemCalls.h"

#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>

namespace voz::platform
{
std::optional<std::string> ReadEnvironment(std::string const & i_name)
{
    char const * const value = std::getenv(i_name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
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
} // namespace voz::platform

#endif
