// MaterialDatabase.cpp: the kernel's material list, in the workbench's units.

#include "MaterialDatabase.h"

#include "CATUnicodeString.h"
#include "Quantity.h"
#include "VOZAPIMaterialList.h"
#include "VOZMaterial.h"
#include "VOZTemplatePath.h"

#include <array>
#include <filesystem>
#include <memory>

namespace voz::workbench
{

namespace
{
struct ListDeleter
{
    void operator()(VOZAPIMaterialList * i_list) const { VOZAPIMaterialList::VOZAPIDeleteMaterialList(i_list); }
};

constexpr double kPascalPerMegapascal = 1e6;

DatabaseMaterial Converted(VOZAPIMaterialList const & i_entry)
{
    VOZMaterial const & kernel = *i_entry.GetMaterial();
    DatabaseMaterial entry;
    entry.group = i_entry.GetGroup().ConvertToChar();
    JobMaterial & material = entry.material;
    material.name = kernel.m_strName.ConvertToChar();
    material.source = i_entry.GetSource().ConvertToChar();
    material.yield = kernel.m_dYield / kPascalPerMegapascal;
    material.strength = kernel.m_dKValue / kPascalPerMegapascal;
    material.exponent = kernel.m_dNValue;
    material.anisotropy = kernel.m_dRValue;
    material.modulus = kernel.m_dYoungsModulus / kPascalPerMegapascal;
    material.poisson = kernel.m_dPoisson;
    material.density = kernel.m_dDensity;
    for (int i = 0; i < kernel.m_nNumPoints; ++i)
        material.curve.push_back({kernel.m_padPoints[2 * i], kernel.m_padPoints[2 * i + 1] / kPascalPerMegapascal});
    return entry;
}
} // namespace

std::string DefaultDatabase()
{
    std::array<char, VOZTemplatePath::kPathSize> path{};
    return VOZTemplatePath::GetMatPath(path.data()) == 0 ? std::string(path.data()) : std::string();
}

std::vector<DatabaseMaterial> ReadDatabase(std::string const & i_path)
{
    if (std::error_code error; !std::filesystem::exists(i_path, error))
        throw InputError(i_path, 0, 0, "there is no material database of this name");
    CATUnicodeString message;
    std::unique_ptr<VOZAPIMaterialList, ListDeleter> const list(VOZAPIMaterialList::VOZAPICreateMaterialList(
        CATUnicodeString(i_path.c_str()).ConvertToUTF16().c_str(), message));
    if (list == nullptr && !message.IsNull())
        throw InputError(i_path, 0, 0, message.ConvertToChar());
    std::vector<DatabaseMaterial> materials;
    for (VOZAPIMaterialList const * entry = list.get(); entry != nullptr; entry = entry->GetNext())
        materials.push_back(Converted(*entry));
    return materials;
}

DatabaseMaterial const & FindMaterial(std::vector<DatabaseMaterial> const & i_database, std::string const & i_name,
                                      std::string const & i_path)
{
    std::vector<std::string> names;
    for (DatabaseMaterial const & entry : i_database)
    {
        if (entry.material.name == i_name)
            return entry;
        names.push_back(entry.material.name);
    }
    throw InputError(i_path, 0, 0,
                     "has no material \"" + i_name + "\"" +
                         (names.empty() ? std::string(": it is empty")
                                        : "; the nearest is \"" + std::string(Nearest(i_name, names)) + "\""));
}

} // namespace voz::workbench
