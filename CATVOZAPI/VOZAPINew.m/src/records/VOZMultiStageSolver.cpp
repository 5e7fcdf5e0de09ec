// VOZMultiStageSolver.cpp: the log of a run.

#include "VOZMultiStageSolver.h"

#include "RunFiles.h"
#include "VOZFile.h"

#include <algorithm>

namespace
{
constexpr double kLogVersion = 1.0;
}

void VOZMultiStageSolver::OpenLogFile(unsigned short const * i_strSummaryName, unsigned short const * i_strFolder,
                                      double & o_dLogValue, std::basic_string<unsigned short> & o_strLogName,
                                      std::FILE *& o_pLog)
{
    o_dLogValue = kLogVersion;
    o_strLogName.clear();
    o_pLog = nullptr;
    if (!i_strSummaryName || i_strSummaryName[0] == 0)
        return;

    std::basic_string<unsigned short> name(i_strSummaryName);
    std::size_t const dot = name.rfind(static_cast<unsigned short>('.'));
    if (dot != std::basic_string<unsigned short>::npos && dot > 0)
        name.resize(dot);
    do // a summary of that very name must not lie over the log
        for (char letter : {'.', 'l', 'o', 'g'})
            name.push_back(static_cast<unsigned short>(letter));
    while (name == i_strSummaryName);

    o_pLog = VOZOpenFile(PathInFolder(i_strFolder, name.c_str()).c_str(), "wb");
    if (o_pLog)
        o_strLogName = name;
}
