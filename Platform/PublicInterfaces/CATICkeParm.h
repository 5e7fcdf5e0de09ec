// CATICkeParm.h: a part's containers and its published parameters.
//
// A part document's root container gives CATIContainer, CATIPrtContainer and CATICkeParmFactory; the part gives
// CATIParmPublisher.

#ifndef CATICKEPARM_H
#define CATICKEPARM_H

#include "CATBaseUnknown.h"
#include "CATISamAnalysis.h"
#include "CATUnicodeString.h"

#include <vector>

class ExportedByVOZPlatform CATIContainer : public CATBaseUnknown
{
    CATDeclareClass;
};

class ExportedByVOZPlatform CATIPrtContainer : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual CATISpecObject_var GetPart() = 0; // null if there is none
};

// Makes parameters; the library only asks whether a container has it.
class ExportedByVOZPlatform CATICkeParmFactory : public CATBaseUnknown
{
    CATDeclareClass;
};

class ExportedByVOZPlatform CATICkeParm : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual CATUnicodeString ShortName() const = 0;
    virtual CATUnicodeString FullName() const = 0;
    virtual CATUnicodeString ValueAsText() const = 0;
};

CATDeclareInterfaceVar(CATIContainer);
CATDeclareInterfaceVar(CATIPrtContainer);
CATDeclareInterfaceVar(CATICkeParmFactory);
CATDeclareInterfaceVar(CATICkeParm);

class ExportedByVOZPlatform CATIParmPublisher : public CATBaseUnknown
{
    CATDeclareClass;

public:
    // The published objects of that type, in order. The one type known is "CATICkeParm".
    virtual std::vector<CATBaseUnknown_var> GetPublished(char const * i_type) = 0;
};

CATDeclareInterfaceVar(CATIParmPublisher);

#endif
