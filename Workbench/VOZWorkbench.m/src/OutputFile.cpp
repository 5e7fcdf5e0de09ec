// OutputFile.cpp: text gathered in memory, written under a temporary name and renamed.

#include "OutputFile.h"

#include "VOZFile.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace voz::workbench
{

std::string Fixed(double i_value, int i_decimals)
{
    std::array<char, 512> buffer; // the largest double has 309 digits before its point
    auto const end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), i_value, std::chars_format::fixed, i_decimals).ptr;
    std::string text(buffer.data(), end);
    if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string::npos)
        text.erase(0, 1);
    return text;
}

std::string Shortest(double i_value)
{
    std::array<char, 64> buffer;
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), i_value).ptr};
}

void OutputFile::Commit()
{
    std::filesystem::path const path(mPath);
    // A device ("/dev/stdout", "/dev/full") has no temporary name beside it.
    bool const isPlace = !std::filesystem::exists(path) || std::filesystem::is_regular_file(path);
    std::string const written = isPlace ? mPath + ".part" : mPath;

    errno = 0;
    std::FILE * const file = VOZOpenFile(written.c_str(), "wb");
    if (file == nullptr)
        throw OutputError(mPath, std::strerror(errno));
    bool const whole = std::fwrite(mText.data(), 1, mText.size(), file) == mText.size();
    int const writeError = errno;
    bool const closed = std::fclose(file) == 0;
    if (!whole || !closed)
    {
        int const reason = whole ? errno : writeError;
        std::error_code ignored;
        if (isPlace)
            std::filesystem::remove(written, ignored);
        throw OutputError(mPath, std::strerror(reason));
    }
    if (!isPlace)
        return;
    std::error_code error;
    std::filesystem::rename(written, path, error);
    if (error)
        throw OutputError(mPath, error.message());
}

} // namespace voz::workbench
