// FPIReaderFuzz.cpp: any bytes as a deck that a material is read from.
//
//     FPIReaderFuzz -dict=fuzz/dictionaries/DeckFuzz.dict fuzz/seeds/FPIReaderFuzz fuzz/seeds/DeckFuzz

#include "FPIReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace
{
void Require(bool i_holds, char const * i_claim)
{
    if (i_holds)
        return;
    std::fprintf(stderr, "broken: %s\n", i_claim);
    std::abort();
}

void Check(FPIReader const & i_reader, int i_error)
{
    int const count = i_reader.getNumMaterials();
    Require(i_error == 0 || i_error == 1 || i_error == 10, "the error is one of three");
    Require(count == (i_error == 0 ? 1 : 0), "a deck has one material");
    int control[66];
    i_reader.getFPIControl(control);
    Require(i_error == 1 || control[2] == 2, "place 2 is forced");
    float properties[24] = {};
    i_reader.getMatProperty(count, properties);
    Require(properties[0] == 0.0F || properties[0] == 1.0F, "the record number is 1 once a line is read");
    CATUnicodeString name;
    i_reader.getMatName(1, name);
    Require(name.GetLengthInChar() <= 255, "a name has at most 255 characters");
    i_reader.getMatDec(24, name);
    Require(name.IsNull(), "one name is read");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * i_data, std::size_t i_size)
{
    std::FILE * const file = std::tmpfile();
    if (!file)
        return 0;
    std::fwrite(i_data, 1, i_size, file);
    std::rewind(file);
    int error = -1;
    FPIReader const reader(file, error, false);
    std::fclose(file);
    Check(reader, error);
    FPIReader const copy(reader);
    Check(copy, error);
    return 0;
}
