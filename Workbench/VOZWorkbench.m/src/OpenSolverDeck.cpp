// OpenSolverDeck.cpp: the card groups that an open explicit solver needs otherwise.
//
// While the forming deck is written every group is the library's own.

#include "OpenSolverDeck.h"

#include "CATError.h"
#include "ElemProperty.h"
#include "OutputFile.h"
#include "VOZFile.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace voz::workbench
{

namespace
{
// clang-format off
constexpr char kContact[] = "*CONTACT_AUTOMATIC_ONE_WAY_SURFACE_TO_SURFACE";
constexpr char const * kControlHeading[] = {
    "$",
    "$ Variant for open explicit solvers. SI units: m, kg, s.",
    "$",
    "*CONTROL_UNITS",
    "$   LENGTH      TIME      MASS",
    "         m       sec        kg",
    "*CONTROL_TERMINATION",
    "$   ENDTIM",
};
constexpr char const * kTimeStep[] = {
    "*CONTROL_TIMESTEP",
    "$   DTINIT    TSSFAC      ISDO    TSLIMT     DT2MS",
};
constexpr char const * kOutput[] = {
    "$",
    "*DATABASE_EXTENT_BINARY",
    "$    NEIPH     NEIPS    MAXINT    STRFLG    SIGFLG    EPSFLG    RLTFLG    ENGFLG",
    "                             5         1",
    "*DATABASE_BINARY_D3PLOT",
    "$       DT",
};
constexpr char const * kMaterial[] = {
    "*MAT_PIECEWISE_LINEAR_PLASTICITY",
    "$      MID        RO         E        PR      SIGY      ETAN      FAIL      TDEL",
};
constexpr char kCurveFields[] = "$        C         P      LCSS      LCSR        VP";
constexpr char kNoRate[]      = "                    "; // C, P
constexpr char const * kNoPoints[] = {
    "$     EPS1",
    "",
    "$      ES1",
    "",
};
constexpr char const * kRigid[] = {
    "*MAT_RIGID",
    "$      MID        RO         E        PR",
};
constexpr char kConstraints[] = "$      CMO      CON1      CON2";
constexpr char kLocalFrame[]  = "$LCO or A1";
constexpr char const * kSection[] = {
    "*SECTION_SHELL",
    "$      SID    ELFORM      SHRF       NIP",
};
constexpr char const * kMotion[] = {
    "*BOUNDARY_PRESCRIBED_MOTION_RIGID",
    "$   typeID       DOF       VAD      LCID        SF       VID",
};
constexpr char kFriction[] = "$       FS";
constexpr char kScales[]   = "$      SFS       SFM       SST       MST";
// clang-format on

constexpr int kAlongVector = 4;    // DOF: along the vector of that number
constexpr double kThinTool = 0.01; // of the sheet's thickness: a tool that is next to a surface
} // namespace

std::vector<OpenDeckRemark> OpenDeckSolver::WriteOpenDeck()
{
    std::string const folder = m_strWorkingFolder.ConvertToChar();
    std::string const path = folder + "/" + kOpenDeckFile;
    std::string failure;
    struct Opening
    {
        explicit Opening(bool & io_flag) : flag(io_flag) { flag = true; }
        ~Opening() { flag = false; }
        Opening(Opening const &) = delete;
        Opening & operator=(Opening const &) = delete;
        bool & flag;
    };
    try
    {
        Opening const opening(mIsOpen);
        errno = 0;
        if (WriteDeck(path.c_str()) < 0)
            failure = errno != 0 ? std::strerror(errno) : "it cannot be opened";
    }
    catch (CATError const & error)
    {
        failure = error.Message();
        VOZRemoveFile(path.c_str()); // half a deck
    }
    if (!failure.empty())
        throw OutputError(path, failure);
    std::vector<OpenDeckRemark> const remarks = Remarks();
    OutputFile list(folder + "/" + kOpenRemarksFile);
    for (OpenDeckRemark const & remark : remarks)
        list << remark.keyword << ": " << remark.reason << '\n';
    list.Commit();
    return remarks;
}

std::vector<OpenDeckRemark> OpenDeckSolver::Remarks() const
{
    std::vector<OpenDeckRemark> remarks = {
        {ContactKeyword(),
         "written as *CONTACT_AUTOMATIC_ONE_WAY_SURFACE_TO_SURFACE: friction and the tools' contact thickness stay; "
         "viscous damping (VDC) and the optional cards are left out"},
        {"*MAT_TRANSVERSELY_ANISOTROPIC_ELASTIC_PLASTIC", "written as *MAT_PIECEWISE_LINEAR_PLASTICITY with the same "
                                                          "curve: the sheet is isotropic, its r-value is not used"},
        {"*BOUNDARY_PRESCRIBED_MOTION_RIGID_LOCAL",
         "written as *BOUNDARY_PRESCRIBED_MOTION_RIGID along the vector of the stamping direction"},
        {"*DATABASE_BINARY_D3PLOT", "equal intervals in place of the curve of output times"},
        {"*DATABASE_EXTENT_BINARY", "its second card is left out"},
        {"*CONTROL_UNITS", "added: metre, second, kilogram, which the forming deck says in a comment"},
        {"*CONTROL_ADAPTIVE", "left out: the blank is not refined; give it a mesh that is fine enough from the start"},
        {"*CONTROL_CONTACT", "left out: the solver's defaults hold"},
        {"*CONTROL_ENERGY", "left out: the solver's own energy balance is written"},
        {"*CONTROL_SHELL", "left out: the solver's default shell formulation and thickness update hold"},
        {"*CONTROL_OUTPUT", "left out: it shortens printed output alone"},
        {"*CONTROL_BULK_VISCOSITY", "left out: the solver's defaults hold"},
        {"*INTERFACE_SPRINGBACK_DYNA3D", "left out: no file for a springback run is written"},
        {"*SECTION_SHELL", "the number of integration points is written as an integer"},
    };
    if (m_bMassScaling)
        remarks.push_back({"*CONTROL_TIMESTEP", "selective mass scaling (IMSCL) is left out; DT2MS stays"});
    if (m_nHourglassType != 0)
        remarks.push_back({"*CONTROL_HOURGLASS", "left out: the shell formulation's own control holds"});
    if (m_pElemProperty && m_pElemProperty->getNbPressurePads() > 0)
        remarks.push_back({"*LOAD_MASK", "left out: the pressure pads do not act"});
    if (m_pElemProperty && m_pElemProperty->sizeDrawBeads() > 0)
        for (char const * const keyword :
             {"*CONTACT_DRAWBEAD", "*DEFINE_BOX_DRAWBEAD", "*SET_NODE_LIST_GENERATE", "*CONSTRAINED_EXTRA_NODES_SET"})
            remarks.push_back({keyword, "left out: the draw beads do not act"});
    return remarks;
}

// Control and output

void OpenDeckSolver::WriteControlCardsData()
{
    if (!mIsOpen)
        return VOZSolverIncremental::WriteControlCardsData();
    WriteLines(kControlHeading);
    WriteReals({m_dTerminationTime});
    WriteEnd();
    WriteLines(kTimeStep);
    WriteReals({0.0, 0.9});
    WriteIntegers({0});
    WriteReals({0.0});
    if (m_bMassScaling)
        WriteReals({-m_dMassScalingTimeStep});
    WriteEnd();
}

void OpenDeckSolver::WriteASCIIOutputControlCards()
{
    if (!mIsOpen)
        VOZSolverIncremental::WriteASCIIOutputControlCards();
}

void OpenDeckSolver::WriteBINARYOutputControlCards()
{
    if (!mIsOpen)
        return VOZSolverIncremental::WriteBINARYOutputControlCards();
    WriteLines(kOutput);
    WriteReals({m_dTerminationTime / std::max(m_nOutputPoints - 1, 1)});
    WriteEnd();
}

void OpenDeckSolver::WriteCONTROL_BULK_VISCOSITY_Card()
{
    if (!mIsOpen)
        VOZSolverIncremental::WriteCONTROL_BULK_VISCOSITY_Card();
}

// Blank

void OpenDeckSolver::WriteBlankDataBlock()
{
    if (!mIsOpen)
        return VOZSolverIncremental::WriteBlankDataBlock();
    WriteBlankPart();
    WriteLines(kMaterial);
    WriteIntegers({m_nMaterialBlank});
    WriteReals({m_dDensity, m_dYoungsModulus, m_dPoisson, m_dYieldStress});
    WriteEnd();
    WriteLine(kCurveFields);
    WriteText(kNoRate);
    IntegerWriteEnd(m_nCurveStressStrain);
    WriteLines(kNoPoints);
    WriteShellSection(m_nSectionBlank, 0.833, m_dBlankIntegrationPoints);
    WriteThickness();
}

void OpenDeckSolver::WriteShellSection(int i_nId, double i_dShearFactor, double i_dPoints)
{
    WriteLines(kSection);
    WriteIntegers({i_nId, 2});
    WriteReals({i_dShearFactor});
    IntegerWriteEnd(static_cast<int>(std::lround(i_dPoints)));
}

// Tools

void OpenDeckSolver::WritePunchDataBlock()
{
    if (!mIsOpen)
        return VOZSolverIncremental::WritePunchDataBlock();
    WriteOpenTool(kToolPunch);
    WriteLines(kMotion);
    WriteIntegers({m_nPartPunch, kAlongVector, 0, m_nCurvePunch});
    WriteReals({1.0});
    IntegerWriteEnd(m_nVectorId);
}

void OpenDeckSolver::WriteDieDataBlock()
{
    if (!mIsOpen)
        return VOZSolverIncremental::WriteDieDataBlock();
    WriteOpenTool(kToolDie);
}

void OpenDeckSolver::WriteBlankHolderDataBlock()
{
    if (!mIsOpen)
        return VOZSolverIncremental::WriteBlankHolderDataBlock();
    WriteOpenTool(kToolBinder);
    WriteToolDrive(kToolBinder);
}

void OpenDeckSolver::WriteOpenTool(Tool i_tool)
{
    WriteToolPart(i_tool);
    WriteToolContact(i_tool, kContact);
}

void OpenDeckSolver::WriteRigidMaterialProperties(int i_nMid, int i_nSid, char const * i_strConstraints)
{
    if (!mIsOpen)
        return VOZSolverIncremental::WriteRigidMaterialProperties(i_nMid, i_nSid, i_strConstraints);
    WriteLines(kRigid);
    WriteIntegers({i_nMid});
    WriteReals({m_dToolDensityFactor * m_dDensity, m_dYoungsModulus, m_dPoisson});
    WriteEnd();
    WriteLine(kConstraints);
    WriteReals({-1.0});
    WriteIntegers({m_nVectorId + 1});
    WriteLine(i_strConstraints);
    WriteLine(kLocalFrame);
    IntegerWriteEnd(m_nVectorId + 1);
    WriteShellSection(i_nSid, 1.0, m_dToolIntegrationPoints);
}

// Forming contact takes a rigid tool for a surface; automatic contact adds half the tool's thickness. The main side's
// thickness MST therefore says how far the tool's face is off its mesh: twice the offset, or next to nothing.
void OpenDeckSolver::WriteFriction_Card23(double i_dFriction, double i_dOffset, bool i_bDrawBead)
{
    if (!mIsOpen)
        return VOZSolverIncremental::WriteFriction_Card23(i_dFriction, i_dOffset, i_bDrawBead);
    WriteLine(kFriction);
    WriteReals({i_dFriction});
    WriteEnd();
    WriteLine(kScales);
    WriteReals({0.0, 0.0, 0.0, std::max(2.0 * std::fabs(i_dOffset), kThinTool * m_dThickness)});
    WriteEnd();
}

void OpenDeckSolver::WriteFriction_Card4_ShootingLogic()
{
    if (!mIsOpen)
        VOZSolverIncremental::WriteFriction_Card4_ShootingLogic();
}

// The include files

void OpenDeckSolver::WriteIncludedBlankToolingMeshFiles()
{
    if (!mIsOpen)
        return VOZSolverIncremental::WriteIncludedBlankToolingMeshFiles();
    WriteIncludes(kOpenDeckFile);
}

// What does not act

void OpenDeckSolver::WritePressurePadData()
{
    if (!mIsOpen)
        VOZSolverIncremental::WritePressurePadData();
}

void OpenDeckSolver::WriteDrawBeadData()
{
    if (!mIsOpen)
        VOZSolverIncremental::WriteDrawBeadData();
}

} // namespace voz::workbench
