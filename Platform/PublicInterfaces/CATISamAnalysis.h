// CATISamAnalysis.h: the interfaces of an analysis document: access, container, manager, model, search, sets and mesh
// parts.
//
// An analysis document gives CATISamAccess; its container gives CATISamAnalysisContainer; the model gives
// CATISamAnalysisScan; a mesh set's member gives CATIMSHMeshPart; a support gives CATISpecObject and
// CATILinkableObject. Counted pointers that an operation returns hold a reference of their own.

#ifndef CATISAMANALYSIS_H
#define CATISAMANALYSIS_H

#include "CATBaseUnknown.h"

#include <vector>

class CATListPtrCATDocument;

// An object of a document's tree: a feature, a part.
class ExportedByVOZPlatform CATISpecObject : public CATBaseUnknown
{
    CATDeclareClass;
};

class ExportedByVOZPlatform CATISamAnalysisModel : public CATBaseUnknown
{
    CATDeclareClass;
};

class ExportedByVOZPlatform CATISamAnalysisManager : public CATBaseUnknown
{
    CATDeclareClass;

public:
    // The model with one reference for the caller, and 0; or null and E_NOINTERFACE.
    virtual long GetAnalysisModel(CATISamAnalysisModel ** o_model) = 0;

    // Appends the linked documents in order: 0, or E_NOINTERFACE if the manager has no link object.
    virtual long GetLinkedDocuments(CATListPtrCATDocument & io_documents) = 0;
};

CATDeclareInterfaceVar(CATISpecObject);
CATDeclareInterfaceVar(CATISamAnalysisModel);
CATDeclareInterfaceVar(CATISamAnalysisManager);

class ExportedByVOZPlatform CATISamAnalysisContainer : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual CATISamAnalysisManager_var GetAnalysisManager() = 0; // null if there is none
};

class ExportedByVOZPlatform CATISamAccess : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual CATBaseUnknown_var GetAnalysisContainer() = 0; // null if there is none
};

class ExportedByVOZPlatform CATISamAnalysisScan : public CATBaseUnknown
{
    CATDeclareClass;

public:
    // The model's objects of that type, in order. The one type known is "MSHMeshSet", which stands under the scan
    // argument 3.
    virtual std::vector<CATBaseUnknown_var> Scan(char const * i_type, int i_argument) = 0;
};

class ExportedByVOZPlatform CATISamAnalysisSet : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual std::vector<CATISpecObject_var> GetMembers() = 0;
};

class ExportedByVOZPlatform CATIMSHMeshPart : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual CATBaseUnknown_var GetSupport() = 0; // the geometry that is meshed; null if there is none
};

CATDeclareInterfaceVar(CATISamAnalysisContainer);
CATDeclareInterfaceVar(CATISamAccess);
CATDeclareInterfaceVar(CATISamAnalysisScan);
CATDeclareInterfaceVar(CATISamAnalysisSet);
CATDeclareInterfaceVar(CATIMSHMeshPart);

#endif
