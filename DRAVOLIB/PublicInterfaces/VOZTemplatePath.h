// VOZTemplatePath.h: the installation and the open documents: install root, configuration file, material database.
//
// Static operations only. Texts are written to buffers of the caller, whose size is not checked: callers give 1,024
// bytes. int operations return 0 or -1, long operations 0 or E_FAIL.

#ifndef VOZTEMPLATEPATH_H
#define VOZTEMPLATEPATH_H

#include "CATBaseUnknown.h"
#include "CATUnicodeString.h"
#include "ExportedByVOZDravo.h"

class CATDocument;
class CATIContainer;
class CATICkeParm_var;
class CATIParmPublisher;
class CATIParmPublisher_var;
class CATISamAnalysisManager_var;
class CATISamAnalysisModel_var;
class CATISpecObject;

class ExportedByVOZDravo VOZTemplatePath : public CATBaseUnknown
{
    CATDeclareClass;

public:
    static int GetPath(char * o_path);       // install root: "VOZDRAVO3D", else "KELM7DRAVO3D"
    static int GetConfigPath(char * o_path); // the file that all settings are read from
    static int GetMatPath(char * o_path);    // folder of the material database
    static int GetIncrementalTemplatePath(CATUnicodeString & o_path);

    static long GetAnalysisManager(CATISamAnalysisManager_var & o_manager, CATDocument * i_document);
    static long GetAnalysisModel(CATISamAnalysisModel_var & o_model, CATDocument * i_document);
    static long GetMeshPartSpecObject(CATISpecObject *& o_object, CATDocument * i_document, int i_index);
    static long GetLinkPartDocument(CATDocument *& o_document, CATDocument * i_document);
    static CATICkeParm_var GetParameter(CATIParmPublisher_var i_publisher, char * i_name, int i_match);
    static long CreateInstanceContainer(CATIContainer ** o_container);
    static long CreatePartParmPublisher(CATIParmPublisher ** o_publisher);
};

#endif
