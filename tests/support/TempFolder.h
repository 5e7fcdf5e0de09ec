// TempFolder.h: a folder of a test's own, gone with it.

#ifndef TEMPFOLDER_H
#define TEMPFOLDER_H

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

class TempFolder
{
public:
    TempFolder()
    {
        std::random_device seed;
        do
            mPath = std::filesystem::temp_directory_path() / ("voz-" + std::to_string(seed()));
        while (!std::filesystem::create_directory(mPath));
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }
    TempFolder(TempFolder const &) = delete;
    TempFolder & operator=(TempFolder const &) = delete;

    std::string Path() const { return mPath.generic_string(); }
    std::string Path(std::string const & i_name) const { return (mPath / i_name).generic_string(); }

    std::string Write(std::string const & i_name, std::string const & i_text) const // the file's path
    {
        std::ofstream(mPath / i_name, std::ios::binary) << i_text;
        return Path(i_name);
    }
    std::string Read(std::string const & i_name) const
    {
        std::ifstream stream(mPath / i_name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

private:
    std::filesystem::path mPath;
};

#endif
