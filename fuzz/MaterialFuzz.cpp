// MaterialFuzz.cpp: the reader of the material database on any bytes.
//
// Each input is a database of one file. It gives a list whose materials hold finite numbers, or a message with the
// file's name.

#include "CATUnicodeString.h"
#include "VOZAPIMaterialList.h"
#include "VOZMaterial.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace
{
// One file per process, overwritten by each input and removed at the end.
class InputFile
{
public:
    InputFile()
    {
        std::random_device seed;
        mPath = (std::filesystem::temp_directory_path() / ("voz-material-fuzz-" + std::to_string(seed()))).string();
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

void Require(bool i_holds, char const * i_claim)
{
    if (i_holds)
        return;
    std::fprintf(stderr, "broken: %s\n", i_claim);
    std::abort();
}

void Check(VOZMaterial const & i_material)
{
    for (double value : {i_material.m_dThickness, i_material.m_dNValue, i_material.m_dRValue, i_material.m_dKValue,
                         i_material.m_dYield, i_material.m_dDensity, i_material.m_dYoungsModulus, i_material.m_dPoisson,
                         i_material.m_dFldZero})
        Require(std::isfinite(value), "every number is finite");
    Require(!i_material.m_strName.IsNull(), "every material has a name");
    for (int i = 1; i < i_material.m_nNumPoints; ++i)
        Require(i_material.m_padPoints[2 * i] > i_material.m_padPoints[2 * i - 2], "the strains of a curve rise");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size)
{
    static InputFile file;
    CATUnicodeString const path(file.Write(data, size).c_str());
    CATUnicodeString error;
    VOZAPIMaterialList * const list =
        VOZAPIMaterialList::VOZAPICreateMaterialList(path.ConvertToUTF16().c_str(), error);
    if (list)
        Require(error.IsNull(), "a list comes without a message");
    else if (!error.IsNull())
        Require(error.SearchSubString(path) == 0, "a message begins with the file");
    for (VOZAPIMaterialList * entry = list; entry; entry = entry->GetNext())
        Check(*entry->GetMaterial());
    VOZAPIMaterialList::VOZAPIDeleteMaterialList(list);
    return 0;
}
