// MaterialFuzz.cpp: the reader of the material database on any bytes.
//
// Each input is a database of one file. It gives a list whose materials hold finite numbers, or a message with the
// file's name.

#include "CATUnicodeString.h"
#include "VOZAPIMaterialList.h"
#include "VOZMaterial.h"
#include "XmlFuzz.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace
{
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
    static InputFile file("voz-material-fuzz-");
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
