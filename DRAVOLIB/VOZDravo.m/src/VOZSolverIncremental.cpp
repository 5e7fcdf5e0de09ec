// VOZSolverIncremental.cpp: the life of the object, the order of a run, where its settings and its material come from,
// its folder and the launcher.

#include "VOZSolverIncremental.h"

#include "SolverRows.h"

#include "CATEnvironment.h"
#include "CATFatalError.h"
#include "ElemProperty.h"
#include "VOZAPIMaterialList.h"
#include "VOZIncrementalSettings.h"
#include "VOZMaterial.h"
#include "VOZProcess.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"
#include "VOZTemplatePath.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <string>

CATImplementClass(VOZSolverIncremental, VOZSolver)

namespace
{
constexpr int kExpectedSettings = 10; // places that the list of settings begins with
constexpr int kIntegrationPoints = 4; // per element of a record
constexpr int kFirstStep = 9;

// The generated hardening curve: more and finer than the object is made with.
constexpr double kCurveStrain = 0.8;
constexpr int kCurveRows = 21;

constexpr char kLibraryFile[] = "VOZDravo.dll";
constexpr char kLauncherFile[] = "VOZLaunchDyna.exe";
constexpr int kModulePathSize = 260; // 16-bit units
} // namespace

VOZSolverIncremental::VOZSolverIncremental()
    : m_pStream(nullptr), m_dTerminationTime(0.0), m_dPunchVelocity(5.0), m_dPunchStroke(0.0),
      m_dPunchAcceleration(5000.0), m_dBinderCloseTime(0.0), m_dPunchRampTime(0.0), m_dPunchPlateauTime(0.0),
      m_dMassScalingTimeStep(0.0), m_dAsciiOutputInterval(0.0), m_dBinaryOutputInterval(0.0), m_dAdaptFrequency(0.0),
      m_nAdaptivityLevel(4), m_dFrictionPunch(0.125), m_dFrictionDie(0.125), m_dFrictionBinder(0.125), m_nPartDie(1),
      m_nPartPunch(2), m_nPartBinder(3), m_nPartBlank(5), m_nSectionDie(1), m_nSectionPunch(2), m_nSectionBinder(3),
      m_nSectionBlank(5), m_nMaterialDie(1), m_nMaterialPunch(2), m_nMaterialBinder(3), m_nMaterialBlank(5),
      m_nSetDie(1), m_nSetPunch(2), m_nSetBinder(3), m_nSetBlank(5), m_nVectorId(555), m_adTippingVector{0.0, 0.0, 1.0},
      m_nCurvePunch(100), m_nCurveBinder(101), m_nCurveStressStrain(99), m_nFirstPadCurve(800), m_nFirstBeadCurve(900),
      m_nFirstBeadSet(11), m_nBeadNodeCounter(10000000), m_dDensity(7800.0), m_dYoungsModulus(2.0e11), m_dPoisson(0.3),
      m_dYieldStress(1.8e8), m_dTangentModulus(5.4e8), m_dRValue(1.555), m_dThickness(0.0), m_dNValue(0.2),
      m_dKValue(6.0e8), m_dOffsetDie(0.0), m_dOffsetPunch(0.0), m_dOffsetBinder(0.0), m_dBeadDepth(0.0), m_nSteps(251),
      m_dMaxStrain(0.5), m_nCurveType(0), m_nNumPoints(0), m_padPoints(nullptr), m_dMaxBlankElementSize(0.0),
      m_dMinBlankElementSize(0.0),
      m_dStrokeAsDZmax(0.0), m_achPunchName{}, m_achDieName{}, m_achBinderName{}, m_achBlankName{},
      m_pPunchMesh(nullptr), m_pDieMesh(nullptr), m_pBinderMesh(nullptr), m_pBlankMesh(nullptr), m_dAdaptSize(0.0),
      m_dAdaptEnergy(0.0), m_dAdaptThickness(0.0), m_nAdaptPass(1), m_nAdaptRefine(0), m_nIadpn90(-1),
      m_nHourglassType(0), m_dBlankIntegrationPoints(3.0), m_dToolIntegrationPoints(3.0), m_dToolDensityFactor(1.0),
      m_bMassScaling(1), m_padOutputPoints(nullptr), m_nOutputPoints(10), m_bSmoothContact(0),
      m_dBinderAccelFactor(0.9), m_dBinderGapFactor(0.1), m_pSettings(new (std::nothrow) VOZIncrementalSettings)
{
    VOZ_ASSERTION(m_pSettings != nullptr, "m_pSettings != NULL");
    m_strPartName = CATUnicodeString();
    m_strTemplateName = CATUnicodeString();
    m_nNbIntegrationPoints = kIntegrationPoints;
    m_nCurrentStepIndex = kFirstStep;
}

VOZSolverIncremental::~VOZSolverIncremental()
{
    delete m_pSettings;
    delete[] m_padOutputPoints;
    delete[] m_padPoints;
    delete m_pSolverIOData;
}

long VOZSolverIncremental::Run(CATIProgressTaskUI *)
{
    if (GetWorkingFolder() < 0 || SetMesh() < 0 || GetTemplateSettings() < 0)
        return E_FAIL;
    unsigned char const bMat = GetMatProperties();
    VOZ_CONTRACT(bMat == 1, "bMat == TRUE"); // without it the material is the one that the object was made with
    EvalToolOffsets();
    PunchStrokeAsDZmax();
    m_dPunchStroke = m_dStrokeAsDZmax;
    EvalKinematics();
    EvalAdaptivity();
    // For the force of the binder alone: there is no record to fill, which is a failure that does not matter here.
    VOZSolver::SetBoundaryConditions();
    EvalCardValues();

    delete[] m_padOutputPoints;
    EvalOutputTimeIntervals(m_dPunchStroke, m_dPunchVelocity, m_dPunchAcceleration, m_nOutputPoints,
                            m_pSettings->m_padOutputPositions, m_padOutputPoints);
    VOZ_ASSERTION(m_padOutputPoints != nullptr, "m_padOutputPoints");
    WriteMeshData();
    long const status =
        Write(m_dTerminationTime, m_dPunchVelocity, m_dPunchStroke, m_dPunchAcceleration, m_dBinderCloseTime,
              m_dPunchRampTime, m_dPunchPlateauTime, m_dMassScalingTimeStep, m_dAsciiOutputInterval, m_dAdaptFrequency,
              m_nAdaptivityLevel, m_dBlankHolderForce, m_nNumPoints, m_nSteps, m_dFrictionPunch, m_dFrictionDie,
              m_dFrictionBinder, m_dThickness, m_dBeadDepth);
    return status < 0 ? E_FAIL : 0;
}

long VOZSolverIncremental::GetTemplateSettings()
{
    VOZTPtrArray<VOZIncrementalSettings, int> apSettings(kExpectedSettings);
    CATUnicodeString strPath;
    if (VOZTemplatePath::GetIncrementalTemplatePath(strPath) < 0)
        return E_FAIL;
    // A database that cannot be read is one without the name: the record's defaults stand.
    ReadIncrementSettingsFromXMLDatabase(strPath.ConvertToUTF16().c_str(), nullptr, apSettings);
    VOZString const strName(m_strTemplateName);
    for (int i = 0; i < apSettings.GetSize(); ++i)
        if (apSettings[i] != nullptr && apSettings[i]->m_strName.SortCompare(strName) == 0)
        {
            if (m_pSettings != nullptr)
                *m_pSettings = *apSettings[i];
            break;
        }
    apSettings.DeleteAll();
    if (m_pSettings == nullptr)
        return E_FAIL;

    m_dBinderGapFactor = m_pSettings->m_dBinderGapFactor;
    m_dPunchVelocity =
        m_bProcessFlag == 1 ? m_pSettings->m_dPunchVelocityFlagSet : m_pSettings->m_dPunchVelocityFlagClear;
    m_dPunchAcceleration = m_pSettings->m_dPunchAcceleration;
    m_bSmoothContact = m_pSettings->m_bSmoothContact ? 1 : 0;
    m_dBinderAccelFactor = m_pSettings->m_dBinderAccelFactor;
    m_nIadpn90 = m_pSettings->m_nIadpn90;
    m_nOutputPoints = m_pSettings->m_nOutputPoints;
    m_dMaxStrain = kCurveStrain;
    m_nSteps = kCurveRows;
    return 0;
}

// What the job says of the sheet, then what the database says of the material of that name.
unsigned char VOZSolverIncremental::GetMatProperties()
{
    VOZMaterial const * const pJobMaterial =
        m_pElemProperty != nullptr ? solverrows::MaterialOf(*m_pElemProperty, 1) : nullptr;
    if (pJobMaterial == nullptr)
        return 0;
    m_dThickness = pJobMaterial->m_dThickness;
    m_dNValue = pJobMaterial->m_dNValue;
    m_dKValue = pJobMaterial->m_dKValue;
    m_dRValue = pJobMaterial->m_dRValue;
    KeepTable(*pJobMaterial);

    char achPath[VOZTemplatePath::kPathSize] = "";
    if (VOZTemplatePath::GetMatPath(achPath) != 0)
        return 0;
    VOZAPIMaterialList * const pList =
        VOZAPIMaterialList::VOZAPICreateMaterialList(CATUnicodeString(achPath).ConvertToUTF16().c_str());
    unsigned char bFound = 0;
    for (VOZAPIMaterialList const * p = pList; p != nullptr && bFound == 0; p = p->GetNext())
    {
        VOZMaterial const * const pMat = p->GetMaterial();
        if (!VOZ_ASSERTION(pMat != nullptr, "pMat") || pMat->m_strName != pJobMaterial->m_strName)
            continue;
        m_dDensity = pMat->m_dDensity;
        m_dYoungsModulus = pMat->m_dYoungsModulus;
        m_dTangentModulus = pMat->m_dYoungsModulus; // the deck's tangent field is to bear Young's modulus
        m_dPoisson = pMat->m_dPoisson;
        m_dYieldStress = pMat->m_dYield;
        m_dKValue = pMat->m_dKValue;
        m_dNValue = pMat->m_dNValue;
        m_dRValue = pMat->m_dRValue;
        bFound = 1;
    }
    VOZAPIMaterialList::VOZAPIDeleteMaterialList(pList);
    return bFound;
}

void VOZSolverIncremental::KeepTable(VOZMaterial const & i_material)
{
    m_nNumPoints = i_material.m_nNumPoints;
    if (m_nNumPoints <= 0)
        return;
    m_nCurveType = solverrows::kTable;
    solverrows::Keep(m_padPoints, solverrows::NewRows<double>(m_nNumPoints, 2));
    if (VOZ_ASSERTION(m_padPoints != nullptr, "m_padPoints") && i_material.m_padPoints != nullptr)
        std::copy_n(i_material.m_padPoints, 2 * static_cast<std::size_t>(m_nNumPoints), m_padPoints);
}

long VOZSolverIncremental::GetWorkingFolder()
{
    if (VOZSolver::GetFilesFoldersPaths() < 0 || m_szWorkDir[0] == 0)
        return E_FAIL;
    m_strWorkingFolder = CATUnicodeString(m_szWorkDir);
    if (m_strPartName.IsNull())
        return 0;
    m_strWorkingFolder.Append(m_strPartName);
    CATDirectory * pFolder = nullptr;
    if (CATOpenDirectory(m_strWorkingFolder.ConvertToChar(), &pFolder) == 0)
        CATCloseDirectory(pFolder);
    else
        CATCreateDirectory(m_strWorkingFolder.ConvertToChar()); // where it fails no file can be made in it
    return 0;
}

long VOZSolverIncremental::RunLSDyna()
{
    void * const hModule = VOZProcess::GetModuleHandleW(CATUnicodeString(kLibraryFile).ConvertToUTF16().c_str());
    if (hModule == nullptr)
        return E_FAIL;
    unsigned short szModule[kModulePathSize] = {};
    unsigned int const nLength = VOZProcess::GetModuleFileNameW(hModule, szModule, kModulePathSize);
    if (nLength == 0 || nLength >= kModulePathSize)
        return E_FAIL; // cut short it would be another program
    CATUnicodeString strLauncher(szModule);
    strLauncher.ReplaceSubString(kLibraryFile, kLauncherFile);
    CATUnicodeString const strProgram = CATUnicodeString("\"") + strLauncher + "\"";

    CATUnicodeString strOutputPoints;
    strOutputPoints.BuildFromNum(m_nOutputPoints);
    // The quote that opens the second argument is never closed: so the launcher gets it.
    CATUnicodeString const strParameters = CATUnicodeString("\"") + m_strWorkingFolder + "\"" + " \"" + strOutputPoints;
    VOZProcess::ShellExecuteW(strProgram.ConvertToUTF16().c_str(), strParameters.ConvertToUTF16().c_str(),
                              m_strWorkingFolder.ConvertToUTF16().c_str(), VOZProcess::ShowMinimized);
    return 0;
}
