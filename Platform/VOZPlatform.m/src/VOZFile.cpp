#include "VOZFile.h"

#include "SystemCalls.h"

#include <cerrno>

std::FILE * VOZOpenFile(char const * i_path, char const * i_mode)
{
    std::optional<std::string> const path = voz::platform::SystemPath(i_path);
    if (path)
        return voz::platform::OpenStream(*path, i_mode);
    errno = ENOENT;
    return nullptr;
}

int VOZRemoveFile(char const * i_path)
{
    std::optional<std::string> const path = voz::platform::SystemPath(i_path);
    if (path)
        return voz::platform::RemoveFile(*path) ? 0 : -1;
    errno = ENOENT;
    return -1;
}
