// MaterialDatabase.h: reads the XML material database.
//
// Every refusal is an XmlDatabaseError.

#ifndef MATERIALDATABASE_H
#define MATERIALDATABASE_H

#include "VOZAPIMaterialList.h"
#include "XmlDatabase.h"

#include <memory>
#include <string>

struct MaterialDestroyer
{
    void operator()(VOZMaterial * i_pMaterial) const;
};
using MaterialPointer = std::unique_ptr<VOZMaterial, MaterialDestroyer>;

// Collects the entries of one database, file by file, in order.
class VOZMaterialDatabase
{
public:
    VOZMaterialDatabase() = default;
    ~VOZMaterialDatabase();
    VOZMaterialDatabase(VOZMaterialDatabase const &) = delete;
    VOZMaterialDatabase & operator=(VOZMaterialDatabase const &) = delete;

    void Read(std::string const & i_path); // a file, or a folder of "*.xml"
    VOZAPIMaterialList * Release();        // the list goes to the caller

    static void Delete(VOZAPIMaterialList * i_pList);

private:
    void Append(MaterialPointer i_pMaterial, char const * i_strGroup, char const * i_strSource);

    friend class MaterialFile;

    VOZAPIMaterialList * m_pFirst = nullptr;
    VOZAPIMaterialList * m_pLast = nullptr;
    PlacesOfNames m_placeOfName;
};

#endif
