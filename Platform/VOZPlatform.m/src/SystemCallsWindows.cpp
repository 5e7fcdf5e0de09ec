#if defined(_WIN32)

#include "SystemCalls.h"

#include "TextCodes.h"

#include <windows.h>

namespace voz::platform
{
std::optional<std::string> ReadEnvironment(std::string const & i_name)
{
    std::wstring const name = WideFromUtf8(i_name);
    std::wstring value(256, L'\0');
    for (;;)
    {
        SetLastError(ERROR_SUCCESS);
        DWORD const room = static_cast<DWORD>(value.size());
        DWORD const length = GetEnvironmentVariableW(name.c_str(), value.data(), room);
        if (length == 0 && GetLastError() != ERROR_SUCCESS)
            return std::nullopt;
        if (length < room)
            return Utf8FromWide(value.substr(0, length).c_str());
        value.resize(length); // the room needed, closing zero included
    }
}

std::optional<std::string> SystemPath(char const * i_path)
{
    return i_path != nullptr && *i_path != '\0' ? std::optional<std::string>(i_path) : std::nullopt;
}

std::FILE * OpenStream(std::string const & i_path, char const * i_mode)
{
    return _wfopen(WideFromUtf8(i_path).c_str(), WideFromUtf8(i_mode).c_str());
}

bool RemoveFile(std::string const & i_path)
{
    return _wremove(WideFromUtf8(i_path).c_str()) == 0;
}
} // namespace voz::platform

#endif
