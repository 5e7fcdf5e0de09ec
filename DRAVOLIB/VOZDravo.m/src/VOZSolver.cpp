// VOZSolver.cpp: the life of a solver object, its folders and boundary objects, and the run of the base class.

#include "VOZSolver.h"

#include "SolverConditions.h"

#include "CATEnvironment.h"
#include "CATIProgressTaskUI.h"
#include "FreeEdgeLoops.h"
#include "VOZCatConfigPaser.h"
#include "VOZFile.h"
#include "VOZStatus.h"
#include "VOZTemplatePath.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

CATImplementClass(VOZSolver, CATBaseUnknown)

namespace
{
constexpr int kValueSize = 256; // what a value of the configuration file needs at most
constexpr std::size_t kShortestFolder = 3;
constexpr char kSummaryName[] = "sum.txt"; // relative to the working folder

// False, with nothing written, for a text that the buffer cannot hold with its closing zero.
template <std::size_t N>
bool widen(char const * text, unsigned short (&o_wide)[N])
{
    std::basic_string<unsigned short> const wide = CATUnicodeString(text).ConvertToUTF16();
    if (wide.size() >= N)
        return false;
    std::fill(std::begin(o_wide), std::end(o_wide), static_cast<unsigned short>(0));
    std::copy(wide.begin(), wide.end(), o_wide);
    return true;
}

bool canMakeFilesIn(char const * folder)
{
    std::string const trial = std::string(folder) + "\\test.txt";
    std::FILE * const file = VOZOpenFile(trial.c_str(), "w");
    if (file == nullptr)
        return false;
    std::fclose(file);
    VOZRemoveFile(trial.c_str());
    return true;
}

// The folder that the configuration file names, if files can be made in it.
bool findConfiguredFolder(char * config, char (&o_folder)[kValueSize])
{
    VOZCatConfigPaser file(config);
    char key[] = "TmpDirectory";
    return file.ReadAndPaser() == 0 && file.GetString(key, o_folder) >= 0 && canMakeFilesIn(o_folder);
}

// In the order given.
template <class... Owned>
void destroy(Owned *&... io_objects)
{
    ((delete io_objects, io_objects = nullptr), ...);
}
} // namespace

VOZSolver::VOZSolver()
    : m_ppMesh(nullptr), m_pElemProperty(nullptr), m_pSymmetry(nullptr), m_pFriction(nullptr),
      m_pFullBlankHolder(nullptr), m_pAxis(nullptr), m_adDisp(nullptr), m_nMesh(0), m_nProcessMode(0),
      m_nToolOffsetMode(0), m_bProcessFlag(0), m_pFreeLoops(nullptr), m_pSymmetryFilter(nullptr),
      m_pProcessEdges(nullptr), m_pSizeFilter(nullptr), m_pFreeEdge(nullptr), m_szSummaryFile{}, m_szWorkDir{},
      m_pSolverIOData(nullptr), m_nNbIntegrationPoints(1), m_nCurrentStepIndex(1), m_pResultMesh(nullptr),
      m_dBlankHolderForce(0.0), m_nLoopError(0)
{
}

VOZSolver::~VOZSolver()
{
    destroy(m_pFreeLoops, m_pSymmetryFilter, m_pProcessEdges, m_pSizeFilter, m_pFreeEdge, m_pResultMesh);
}

void VOZSolver::SetBoundaryConditions(VOZCatMesh const ** i_ppMesh, int i_nMesh, ElemProperty const * i_pElemProperty,
                                      Symmetry const * i_pSymmetry, Friction const * i_pFriction,
                                      FullBlankHolder const * i_pFullBlankHolder, VOZCatAxis const * i_pAxis,
                                      unsigned char i_bFlag, int i_nMode, int i_nToolMode)
{
    m_ppMesh = i_ppMesh;
    m_nMesh = i_nMesh;
    m_pElemProperty = i_pElemProperty;
    m_pSymmetry = i_pSymmetry;
    m_pFriction = i_pFriction;
    m_pFullBlankHolder = i_pFullBlankHolder;
    m_pAxis = i_pAxis;
    m_bProcessFlag = i_bFlag;
    m_nProcessMode = i_nMode;
    m_nToolOffsetMode = i_nToolMode;
}

long VOZSolver::RunLSDyna()
{
    return 0;
}

void VOZSolver::SetCurrentStepIndex(int i_nStep)
{
    m_nCurrentStepIndex = i_nStep;
}

void VOZSolver::SetNbIntegrationPoints(int i_nNum)
{
    m_nNbIntegrationPoints = i_nNum;
}

VOZCatMesh * VOZSolver::GetResultMesh()
{
    return m_pResultMesh;
}

// An entry is read only where the count vouches for it.
VOZCatMesh const * VOZSolver::PartMesh() const
{
    return m_ppMesh != nullptr && m_nMesh >= 1 ? m_ppMesh[0] : nullptr;
}

VOZCatMesh const * VOZSolver::BinderMesh() const
{
    return m_ppMesh != nullptr && m_nMesh == 2 ? m_ppMesh[1] : nullptr;
}

// What an earlier boundary left goes first: where this one is refused, nothing is to be read from the old one.
long VOZSolver::EvalBoundaries()
{
    destroy(m_pFreeLoops, m_pSymmetryFilter, m_pProcessEdges, m_pSizeFilter, m_pFreeEdge);
    VOZCatMesh const * const pMesh = PartMesh();
    if (pMesh == nullptr || m_pSymmetry == nullptr || m_pAxis == nullptr || m_pFullBlankHolder == nullptr)
        return E_FAIL;
    m_pFreeEdge = new FreeEdgeSet(*pMesh);
    m_nLoopError = 0;
    m_pFreeLoops = new FreeEdgeLoops(*m_pFreeEdge, *pMesh, &m_nLoopError);
    if (m_nLoopError != 0)
        return E_FAIL;
    m_pSymmetryFilter = new LoopSymmetryFilter(*pMesh, *m_pFreeEdge, *m_pFreeLoops, *m_pSymmetry, *m_pAxis);
    m_pSizeFilter = new LoopSizeFilter(*m_pFreeLoops, conditions::kLargeLoop);
    m_pProcessEdges = new ProcessEdgeSequence(*pMesh, *m_pFreeEdge, *m_pFreeLoops, *m_pSymmetry, *m_pSymmetryFilter,
                                              *m_pFullBlankHolder, *m_pSizeFilter);
    return 0;
}

int VOZSolver::ProgressIndicator(double i_dPercent, void * i_pTask, void *)
{
    bool const isPercentage = i_dPercent >= 0.0 && i_dPercent <= 100.0;
    double const percent = isPercentage ? i_dPercent : 100.0;
    if (i_pTask != nullptr)
        static_cast<CATIProgressTaskUI *>(i_pTask)->SetProgress(static_cast<short>(percent));
    return 0;
}

long VOZSolver::GetFilesFoldersPaths()
{
    char config[VOZTemplatePath::kPathSize] = "";
    if (VOZTemplatePath::GetConfigPath(config) != 0)
        return E_FAIL;
    char configured[kValueSize] = "";
    char const * const folder = findConfiguredFolder(config, configured) ? configured : CATGetEnv("CATTemp");
    if (folder == nullptr || std::strlen(folder) < kShortestFolder)
        return E_FAIL;
    if (!widen(folder, m_szWorkDir)) // cut short it would be another folder
        return E_FAIL;
    widen(kSummaryName, m_szSummaryFile);
    return 0;
}

// The kernel is not called from here: the live run is that of the derived classes.
long VOZSolver::Run(CATIProgressTaskUI *)
{
    if (m_pSolverIOData == nullptr)
        return E_FAIL;
    if (GetFilesFoldersPaths() != 0)
        return E_FAIL;
    if (BinderMesh() != nullptr && EvalBinder() != 0)
        return E_FAIL;
    if (PartMesh() == nullptr)
        return E_FAIL;
    return FillInXenSolverData(PartMesh(), 0) != 0 ? E_FAIL : 0;
}
