// VOZMultiStageSolver.h: the log of a run.

#ifndef VOZMULTISTAGESOLVER_H
#define VOZMULTISTAGESOLVER_H

#include "ExportedByVOZAPINew.h"

#include <cstdio>
#include <string>

class ExportedByVOZAPINew VOZMultiStageSolver
{
public:
    // Opens the log of a run: in the folder, under the summary's name with the extension ".log" (twice, where the
    // summary has that name itself). o_dLogValue is the version of the log's format. Where it cannot be opened, or
    // without a summary name, the log is null and its name empty. The caller closes the log.
    static void OpenLogFile(unsigned short const * i_strSummaryName, unsigned short const * i_strFolder,
                            double & o_dLogValue, std::basic_string<unsigned short> & o_strLogName,
                            std::FILE *& o_pLog);
};

#endif
