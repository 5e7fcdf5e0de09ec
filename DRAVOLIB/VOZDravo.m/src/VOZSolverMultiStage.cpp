// VOZSolverMultiStage.cpp: the in-process run: which way the kernel solves, and the calls.

#include "VOZSolverMultiStage.h"

#include "MeshRows.h"
#include "RowMath.h"

#include "CATFatalError.h"
#include "ElemProperty.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolver.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverAutoBC.h"
#include "VOZSolverBCData.h"
#include "VOZStatus.h"
#include "VOZUserUnitBase.h"
#include "VOZUtilitySolving.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <new>

CATImplementClass(VOZSolverMultiStage, VOZSolver)

namespace
{
constexpr char kBanner[] = "X E N   S O L V E R   S T A R T E D.\n";

// What is no number stays none: the kernel refuses it.
double TrueStrainOf(double i_dPercent)
{
    return std::isnan(i_dPercent) ? i_dPercent : VOZUserUnitBase::EngToTrueStrain(i_dPercent);
}

// What the process definition says about prescribed strains.
struct AutoStrain
{
    bool isOn = false;
    double targetStrain = 0.0; // percent
    double refStrain = 0.0;
    double value = 0.0;
    std::unique_ptr<double[]> target; // 3, mm; null: not given
    std::unique_ptr<double[]> reference;

    explicit AutoStrain(ElemProperty const & i_property)
    {
        double * padTarget = nullptr;
        double * padReference = nullptr;
        isOn = i_property.getAutoStrain(padTarget, padReference, targetStrain, refStrain, value);
        target.reset(padTarget);
        reference.reset(padReference);
    }
};

// The node nearest to a point. The first of equals counts.
class NearestNode
{
public:
    explicit NearestNode(double const * i_padPoint) : mPoint(i_padPoint) {}

    void Try(double const * i_padNode, int i_nIndex, int & io_nNode)
    {
        if (mPoint == nullptr)
            return;
        double const dDistance = rowmath::distance(i_padNode, mPoint);
        if (dDistance < mBest)
        {
            mBest = dDistance;
            io_nNode = i_nIndex;
        }
    }

private:
    double const * mPoint;
    double mBest = static_cast<double>(std::numeric_limits<float>::max());
};

struct CloseFile
{
    void operator()(std::FILE * i_pFile) const { std::fclose(i_pFile); }
};
} // namespace

VOZSolverMultiStage::VOZSolverMultiStage()
    : m_psIOData(nullptr), m_psBCData(nullptr), m_psFormingResult(nullptr), m_pasBHFs(nullptr), m_pasDrawbeads(nullptr),
      m_pasNodeConstraints2D(nullptr), m_padPressureFrictionValues(nullptr)
{
    m_psIOData = new (std::nothrow) VOZMultiStageSolverIOData_s;
    VOZ_ASSERTION(m_psIOData != nullptr, "m_psIOData");
}

VOZSolverMultiStage::~VOZSolverMultiStage()
{
    DropStage();
    delete m_psIOData;
    m_psIOData = nullptr;
}

long VOZSolverMultiStage::Run(CATIProgressTaskUI * i_task)
{
    if (m_psIOData == nullptr)
        return E_FAIL;
    if (GetFilesFoldersPaths() != 0)
        return E_FAIL;
    if (FillInXenSolverData() != 0)
        return E_FAIL;

    VOZSolverAutoBC_s wanted;
    if (EvalAutoBC(wanted))
        return EvalAutoStrain(i_task, wanted);
    if (BinderMesh() != nullptr)
        return EvalWithBinder(i_task);

    // The one-stage solve alone knows the mode doubled.
    VOZSolverStage_s * const psStage = m_psIOData->m_pasStages;
    if (VOZ_CONTRACT(psStage != nullptr, "psStage"))
    {
        int & nMode = psStage->m_psPartMesh->m_nProcessMode;
        nMode = static_cast<int>(2U * static_cast<unsigned>(nMode)); // any number may have been given as a mode
    }
    VOZUtilitySolving::Evaluate(m_psIOData, ProgressIndicator, i_task, nullptr);
    return 0;
}

// Nodes go reference first, strains target first.
bool VOZSolverMultiStage::EvalAutoBC(VOZSolverAutoBC_s & o_record)
{
    if (m_pElemProperty == nullptr)
        return false;
    AutoStrain const wanted(*m_pElemProperty);
    if (!wanted.isOn)
        return false;
    SetAutoStrain(wanted.target.get(), wanted.reference.get(), o_record.m_nTargetNode, o_record.m_nReferenceNode);
    o_record.m_dTargetStrain = TrueStrainOf(wanted.targetStrain);
    o_record.m_dReferenceStrain = TrueStrainOf(wanted.refStrain);
    o_record.m_dValue = wanted.value;
    return true;
}

// The kernel tells a failure by an error or by results that are not there; what it returns is not asked.
long VOZSolverMultiStage::EvalAutoStrain(CATIProgressTaskUI * i_task, VOZSolverAutoBC_s const & i_record)
{
    std::unique_ptr<VOZSolverAutoBC_s> const psAutoBCData(new (std::nothrow) VOZSolverAutoBC_s(i_record));
    if (!VOZ_ASSERTION(psAutoBCData != nullptr, "psAutoBCData"))
        return E_FAIL;
    VOZUtilitySolving::EvaluateAutoStrain(m_psIOData, psAutoBCData.get(), ProgressIndicator, i_task, nullptr);
    return 0;
}

long VOZSolverMultiStage::EvalWithBinder(CATIProgressTaskUI * i_task)
{
    double dLogValue = 0.0;
    std::basic_string<unsigned short> strLogName;
    std::FILE * pLog = nullptr;
    VOZMultiStageSolver::OpenLogFile(m_szSummaryFile, m_szWorkDir, dLogValue, strLogName, pLog);
    std::unique_ptr<std::FILE, CloseFile> const log(pLog);
    if (log != nullptr)
        std::fputs(kBanner, log.get());
    VOZUtilitySolving::TwoStagesWithBinder(dLogValue, log.get(), strLogName.c_str(), m_szWorkDir, nullptr,
                                           ProgressIndicator, i_task, nullptr, m_psIOData);
    return 0;
}

void VOZSolverMultiStage::SetAutoStrain(double * i_padTarget, double * i_padReference, int & io_nTargetNode,
                                        int & io_nReferenceNode)
{
    if (i_padTarget == nullptr && i_padReference == nullptr)
    {
        io_nTargetNode = -1;
        io_nReferenceNode = -1;
        return;
    }
    if (PartMesh() == nullptr)
        return;
    NearestNode target(i_padTarget);
    NearestNode reference(i_padReference);
    meshrows::Rows const rows(*PartMesh());
    for (int n = 1; n <= rows.numNode; ++n)
    {
        target.Try(rows.nodes[n], n - 1, io_nTargetNode);
        reference.Try(rows.nodes[n], n - 1, io_nReferenceNode);
    }
}
