// VOZTemplatePath.h: the installation and the open documents: install root, configuration file, material database.
//
// Static operations only. Texts are written to buffers of the caller, which hold kPathSize bytes; a longer text is
// refused. int operations return 0 or -1, long operations 0 or E_FAIL, or where that is said the code of the interface
// that failed.

#ifndef VOZTEMPLATEPATH_H
#define VOZTEMPLATEPATH_H

#include "CATBaseUnknown.h"
#include "CATICkeParm.h"
#include "CATISamAnalysis.h"
#include "CATUnicodeString.h"
#include "ExportedByVOZDravo.h"

class CATDocument;

class ExportedByVOZDravo VOZTemplatePath : public CATBaseUnknown
{
    CATDeclareClass;

public:
    static constexpr int kPathSize = 1024; // bytes of a caller's buffer

    // The install root, "VOZDRAVO3D" or, where that is not set, "KELM7DRAVO3D". -1 without one (nothing is written) and
    // for one shorter than 3 characters (which is written).
    static int GetPath(char * o_path);

    // The file that all settings are read from, chosen anew at each call: "config.cfg" under the root, or the file of
    // the template that the current part names, if "config.cfg" says where templates lie. -1 without a root, or where
    // the template's file has too long a path.
    static int GetConfigPath(char * o_path);

    // Folder of the material database: "VOZMaterialDB"; else the configuration's "MaterialDBPath"; else "dat" under the
    // root. -1 without a root.
    static int GetMatPath(char * o_path);

    // "Increment" under "VOZDRAVO3D"; the second variable does not count. -1 without it.
    static int GetIncrementalTemplatePath(CATUnicodeString & o_path);

    // A null document stands for the current editor's. On failure the output stays as it was.
    static long GetAnalysisManager(CATISamAnalysisManager_var & o_manager, CATDocument * i_document);
    static long GetAnalysisModel(CATISamAnalysisModel_var & o_model, CATDocument * i_document);

    // What mesh part i_index, from 1, lies on, with one reference for the caller.
    static long GetMeshPartSpecObject(CATISpecObject *& o_object, CATDocument * i_document, int i_index);

    // The part document behind a document, lent: the current one itself, the first linked one, or that of the first
    // mesh part's support.
    static long GetLinkPartDocument(CATDocument *& o_document, CATDocument * i_document);

    // The first published parameter whose short name equals i_name (i_match 0), or whose full name holds it (any other
    // i_match). Null if there is none, or no publisher.
    static CATICkeParm_var GetParameter(CATIParmPublisher_var i_publisher, char * i_name, int i_match);

    // The current part's container, and its publisher of parameters, with one reference for the caller. What is missing
    // on the way is told on standard output. The first returns the code of CATInit or CATIPrtContainer where that
    // fails.
    static long CreateInstanceContainer(CATIContainer ** o_container);
    static long CreatePartParmPublisher(CATIParmPublisher ** o_publisher);
};

#endif
