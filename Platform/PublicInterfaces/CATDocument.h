// CATDocument.h: the open documents: the current editor, a document, lists of documents, and a document's root
// container.
//
// Built over the document records of VOZHost.h. A document is owned by its record, never by a caller: pointers to it
// are lent, and stay valid while the record lives.

#ifndef CATDOCUMENT_H
#define CATDOCUMENT_H

#include "CATBaseUnknown.h"
#include "CATUnicodeString.h"

#include <vector>

class CATIContainer;

// Gives CATInit, and of an analysis CATISamAccess.
class ExportedByVOZPlatform CATDocument : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual CATUnicodeString StorageName() const = 0; // its file name
};

class ExportedByVOZPlatform CATFrmEditor
{
public:
    static CATFrmEditor * GetCurrentEditor(); // null if the host has no current document
    CATDocument * GetDocument() const { return mDocument; }

private:
    CATDocument * mDocument = nullptr;
};

// Documents in order, counted from 1. The documents are lent.
class ExportedByVOZPlatform CATListPtrCATDocument
{
public:
    int Size() const { return static_cast<int>(mDocuments.size()); }
    CATDocument * operator[](int i_position) const; // null outside 1 .. Size()
    void Append(CATDocument * i_document) { mDocuments.push_back(i_document); }

private:
    std::vector<CATDocument *> mDocuments;
};

// A document's face that gives its root container.
class ExportedByVOZPlatform CATInit : public CATBaseUnknown
{
    CATDeclareClass;

public:
    // The root container if it has that interface, with one reference for the caller; else null.
    virtual CATBaseUnknown * GetRootContainer(char const * i_interface) = 0;
};

// An object's face that tells the document it lies in.
class ExportedByVOZPlatform CATILinkableObject : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual CATDocument * GetDocument() = 0; // lent
};

CATDeclareInterfaceVar(CATInit);
CATDeclareInterfaceVar(CATILinkableObject);

#endif
