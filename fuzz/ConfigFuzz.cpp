// ConfigFuzz.cpp: the configuration reader on any bytes.
//
// Every key that the program looks up, and the key of the file's own first entry, is read as text, integer and double.

#include "VOZCatConfigPaser.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace
{
// One file per process, overwritten by each input and removed at the end.
class InputFile
{
public:
    InputFile()
    {
        std::random_device seed;
        mPath = (std::filesystem::temp_directory_path() / ("voz-config-fuzz-" + std::to_string(seed()))).string();
    }
    ~InputFile()
    {
        std::error_code ignored;
        std::filesystem::remove(mPath, ignored);
    }
    InputFile(InputFile const &) = delete;
    InputFile & operator=(InputFile const &) = delete;

    char * Write(std::string const & i_bytes)
    {
        std::ofstream(mPath, std::ios::binary | std::ios::trunc) << i_bytes;
        return mPath.data();
    }

private:
    std::string mPath;
};

void Require(bool i_holds, char const * i_claim)
{
    if (i_holds)
        return;
    std::fprintf(stderr, "ConfigFuzz: %s\n", i_claim);
    std::abort();
}

void LookUp(VOZCatConfigPaser & io_reader, std::string key)
{
    char text[256];
    std::memset(text, 0x7F, sizeof text);
    int whole = 0;
    double real = 0.0;
    int const index = io_reader.GetString(key.data(), text);
    Require(io_reader.GetInteger(key.data(), whole) == index, "the integer is another entry");
    Require(io_reader.GetDouble(key.data(), real) == index, "the double is another entry");
    Require(index < 0 || std::memchr(text, 0, sizeof text) != nullptr, "a value without its end");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size)
{
    static InputFile file;
    std::string const bytes(reinterpret_cast<char const *>(data), size);
    VOZCatConfigPaser reader(file.Write(bytes));
    Require(reader.ReadAndPaser() == 0, "a file that is there was not read");
    for (char const * const key : {"", "SolverRam", "ThinningLimit", "ShearMargin", "BHFValueUnits", "BHFValue5", "a"})
        LookUp(reader, key);
    LookUp(reader, bytes.substr(0, bytes.find_first_of(std::string_view("=\n\0", 3))));
    return 0;
}
