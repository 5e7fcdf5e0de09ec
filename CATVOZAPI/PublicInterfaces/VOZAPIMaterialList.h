// VOZAPIMaterialList.h: the material database as a linked list.
//
// A database is one XML file or a folder, of which every "*.xml" is read in the order of the names. The format stands
// in docs/materials.md. The list is in the order of the files and of the materials in them.
//
// One malformed entry refuses the whole database: a list that lacks the material one asked for is worse than
// an error. Two materials of one name are refused as well.

#ifndef VOZAPIMATERIALLIST_H
#define VOZAPIMATERIALLIST_H

#include "CATUnicodeString.h"
#include "ExportedByVOZAPINew.h"

class VOZMaterial;

class ExportedByVOZAPINew VOZAPIMaterialList
{
public:
    // Null where nothing can be read; o_strError then says why: "file:line: what was found, what was expected". A good
    // database without a material gives null as well, with an empty text. The caller deletes the list.
    static VOZAPIMaterialList * VOZAPICreateMaterialList(unsigned short const * i_strPath);
    static VOZAPIMaterialList * VOZAPICreateMaterialList(unsigned short const * i_strPath,
                                                         CATUnicodeString & o_strError);
    static void
    VOZAPIDeleteMaterialList(VOZAPIMaterialList * i_pList); // the whole list with its materials; null is allowed

    VOZMaterial * GetMaterial() const { return m_pMaterial; }          // lent; never null
    VOZAPIMaterialList * GetNext() const { return m_pNext; }           // null at the end
    CATUnicodeString const & GetGroup() const { return m_strGroup; }   // "mild steel", "aluminium", ...
    CATUnicodeString const & GetSource() const { return m_strSource; } // where the figures come from

private:
    friend class VOZMaterialDatabase;
    VOZAPIMaterialList() = default;
    ~VOZAPIMaterialList() = default;

    VOZMaterial * m_pMaterial = nullptr;
    VOZAPIMaterialList * m_pNext = nullptr;
    CATUnicodeString m_strGroup;
    CATUnicodeString m_strSource;
};

#endif
