#include "CATEnvironment.h"

#include "SystemCalls.h"

#include <filesystem>
#include <memory>

class CATDirectory
{
public:
    std::filesystem::directory_iterator entries;
};

namespace
{
std::optional<std::filesystem::path> folderPath(char const * i_path)
{
    std::optional<std::string> const path = voz::platform::SystemPath(i_path);
    if (!path)
        return std::nullopt;
    return std::filesystem::path(std::u8string(path->begin(), path->end()));
}
} // namespace

int CATOpenDirectory(char const * i_path, CATDirectory ** o_directory)
{
    *o_directory = nullptr;
    std::optional<std::filesystem::path> const path = folderPath(i_path);
    if (!path)
        return -1;
    std::error_code error;
    std::filesystem::directory_iterator entries(*path, error);
    if (error)
        return -1;
    *o_directory = new CATDirectory{std::move(entries)};
    return 0;
}

int CATCloseDirectory(CATDirectory * i_directory)
{
    if (i_directory == nullptr)
        return -1;
    delete i_directory;
    return 0;
}

int CATCreateDirectory(char const * i_path)
{
    std::optional<std::filesystem::path> const path = folderPath(i_path);
    std::error_code error;
    return path && std::filesystem::create_directory(*path, error) ? 0 : -1;
}
