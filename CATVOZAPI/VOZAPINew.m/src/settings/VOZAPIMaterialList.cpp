// VOZAPIMaterialList.cpp: the material database as a linked list.

#include "VOZAPIMaterialList.h"

#include "MaterialDatabase.h"

VOZAPIMaterialList * VOZAPIMaterialList::VOZAPICreateMaterialList(unsigned short const * i_strPath)
{
    CATUnicodeString strError;
    return VOZAPICreateMaterialList(i_strPath, strError);
}

VOZAPIMaterialList * VOZAPIMaterialList::VOZAPICreateMaterialList(unsigned short const * i_strPath,
                                                                  CATUnicodeString & o_strError)
{
    o_strError = CATUnicodeString();
    if (!i_strPath || i_strPath[0] == 0)
    {
        o_strError = "no path was given; expected the file or folder of the material database";
        return nullptr;
    }
    try
    {
        VOZMaterialDatabase database;
        database.Read(CATUnicodeString(i_strPath).ConvertToChar());
        return database.Release();
    }
    catch (XmlDatabaseError const & error)
    {
        o_strError = error.what();
        return nullptr;
    }
}

void VOZAPIMaterialList::VOZAPIDeleteMaterialList(VOZAPIMaterialList * i_pList)
{
    VOZMaterialDatabase::Delete(i_pList);
}
