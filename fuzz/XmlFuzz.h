// XmlFuzz.h: what the fuzzers of XML databases share.

#ifndef XMLFUZZ_H
#define XMLFUZZ_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

// One file per process, overwritten by each input and removed at the end.
class InputFile
{
public:
    explicit InputFile(std::string const & i_name)
    {
        std::random_device seed;
        mPath = (std::filesystem::temp_directory_path() / (i_name + std::to_string(seed()))).string();
    }
    ~InputFile()
    {
        std::error_code ignored;
        std::filesystem::remove(mPath, ignored);
    }
    InputFile(InputFile const &) = delete;
    InputFile & operator=(InputFile const &) = delete;

    std::string const & Write(std::uint8_t const * i_data, std::size_t i_size)
    {
        std::ofstream(mPath, std::ios::binary | std::ios::trunc)
            .write(reinterpret_cast<char const *>(i_data), static_cast<std::streamsize>(i_size));
        return mPath;
    }

private:
    std::string mPath;
};

inline void Require(bool i_holds, char const * i_claim)
{
    if (i_holds)
        return;
    std::fprintf(stderr, "broken: %s\n", i_claim);
    std::abort();
}

#endif
