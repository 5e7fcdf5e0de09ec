// VOZSolverIncrementalToolingCards.cpp: blank, tools, contacts, the curves that drive them.
//
// A line is literal or a row of fields. Literal lines stand here byte for byte, in the order of the deck.

#include "VOZSolverIncremental.h"

#include "KeywordLines.h"

#include "CATFatalError.h"

#include <cmath>

namespace
{
// clang-format off
constexpr char kSetKeyword[]   = "*SET_PART_LIST";
constexpr char kSetFields[]    = "$      SID       DA1       DA2       DA3       DA4";
constexpr char kSetParts[]     = "$     PID1      PID2      PID3      PID4      PID5      PID6      PID7      PID8";
constexpr char kPartKeyword[]  = "*PART";
constexpr char kPartHeading[]  = "$HEADING";
constexpr char kPartFields[]   = "$      PID     SECID       MID     EOSID      HGID      GRAV    ADPOPT";
constexpr char kShellKeyword[] = "*SECTION_SHELL";
constexpr char kShellFields[]  = "$      SID    ELFORM      SHRF       NIP     PROPT   QR/IRID     ICOMP";
constexpr char kCurveColumns[] = "$                 A1                  O1";

constexpr char const * kBlankHeading[] = {
    kComment,
    kSingleRule,
    "$||                        -  BLANK           DESCRIPTION                     ||",
    kSingleRule,
    kComment,
    kSetKeyword,
    "$SET_PART_NAME: BLANK ",
    kSetFields,
};
constexpr char const * kBlankPart[] = {
    kPartKeyword,
    kPartHeading,
    " PART PID = 5, PART NAME - BLANK",
    kPartFields,
};
constexpr char const * kBlankMaterial[] = {
    "*MAT_TRANSVERSELY_ANISOTROPIC_ELASTIC_PLASTIC",
    "$MATERIAL NAME: MAT_037 (BLANK)",
    "$      MID        RO         E        PR      SIGY      ETAN         R     HLCID",
};
constexpr char const * kBlankSection[] = {
    kShellKeyword,
    "$SECTION_SHELL: blank",
    kShellFields,
};
constexpr char const * kAdaptive[] = {
    "*CONTROL_ADAPTIVE",
    "$  ADPFREQ    ADPTOL    ADPOPT    MAXLVL    TBIRTH    TDEATH     LCADP    IOFLAG",
};
constexpr char kAdaptiveTail[] = "   0.0E+00   1.0E+20         0         1";
constexpr char kAdaptiveCard2[] = "$  ADPSIZE    ADPASS    IREFLG    ADPENE     ADPTH    MEMORY    ORIENT     MAXEL";

constexpr char const * kRigidMaterial[] = {
    "*MAT_RIGID",
    "$MATERIAL NAME: MAT_020",
    "$      MID        RO         E        PR         N    COUPLE         M     ALIAS",
};
constexpr char const * kToolSection[] = {
    kShellKeyword,
    kShellFields,
};
constexpr char kContactTitle[]  = "$      CID     CONTACT INTERFACE TITLE";
constexpr char kContactFields[] = "$     SSID      MSID     SSTYP     MSTYP    SBOXID    MBOXID       SPR       MPR";
constexpr char kContactTail[]   = "         3         3                             1         1"; // 3 for parts
constexpr char const * kMotion[] = {
    "*BOUNDARY_PRESCRIBED_MOTION_RIGID_LOCAL",
    "$   typeID       DOF       VAD      LCID        SF       VID     DEATH     BIRTH",
};
constexpr char const * kLoad[] = {
    "*LOAD_RIGID_BODY",
    "$      PID       DOF      LCID        SF       CID        M1        M2        M3",
};

// The texts of a tool's cards. Odd blanks and words are those of the deck.
struct ToolTexts
{
    char const * banner;
    char const * setName;
    char const * heading;
    char const * constraints;
    char const * contact;
};
constexpr ToolTexts kToolTexts[] = { // in the order of Tool
    {"$||                        -  DIE             DESCRIPTION                     ||",
     "$SET_PART_NAME: DIE", " PART ID, PID = 1, PART NAME: DIE",
     "    111111", "$        3    BLANK/DIE     "},
    {"$||                        -  PUNCH           DESCRIPTION                     ||",
     "$SET_PART_NAME: PUNCH ", " PART PID = 2, PART NAME: PUNCH",
     "    110111", "$        2    BLANK/PUNCH "},
    {"$||                        -  BLANK HOLDER DESCRIPTION                        ||",
     "$SET_PART_NAME: BINDER or BLANK HOLDER ", " PART PID = 3, PART NAME: BLANK HOLDER",
     "    110111", "$        4    BLANK/BINDER"},
};

constexpr char const * kCard4[] = {
    "$     SOFT    SOFSCL    LCIDAB    MAXPAR    PENTOL     DEPTH     BSORT    FRCFRQ",
    "",
    "$   PENMAX    THKOPT    SHLTHK     SNLOG",
    "                             1         1",
};
constexpr char kFrictionFields[] = "$       FS        FD        DC        VC       VDC    PENCHK        BT        DT";
constexpr char kFrictionTool[]   = "                                    20.0"; // VDC in columns 41 to 50
constexpr char kFrictionBead[]   = "                                     0.0";
constexpr char kScaleFields[]    = "$      SFS       SFM       SST       MST      SFST      SFMT       FSF       VSF";

constexpr char const * kPunchCurve[] = {
    kComment,
    kSingleRule,
    kEmptyBanner,
    "$||                          DEFINE PUNCH VELOCITY CURVE                      ||",
    kEmptyBanner,
    kSingleRule,
    kComment,
    kCurveKeyword,
    "$CURVENAME:  PUNCH VELOCITY",
    "$     LCID - Load curve ID to describe velocity versus time (100 - punch motion).",
    kCurveFields,
};
constexpr char const * kPunchColumns[] = {
    kCurveColumns,
    "$            Time, s       Velocity, m/s",
};
constexpr char const * kBinderCurve[] = {
    kComment,
    kSingleRule,
    kEmptyBanner,
    "$||                          DEFINE BLANK HOLDER LOAD CURVE                   ||",
    kEmptyBanner,
    kSingleRule,
    kComment,
    kComment,
    kCurveKeyword,
    "$CURVENAME:  BINDERFORCE04        11",
    "$     LCID - Load curve ID to describe load on binder versus time, (LCID=101 >0).",
    kCurveFields,
};
constexpr char kBinderColumns[] = "$            Time, s            Force, N";
constexpr char const * kStressCurve[] = {
    kComment,
    kSingleRule,
    kEmptyBanner,
    "$||                          DEFINE STRESS - STRAIN CURVE FOR BLANK MATERIAL  ||",
    kEmptyBanner,
    kSingleRule,
    kComment,
    kComment,
    kCurveKeyword,
    "$CURVENAME:  STRESS-STRAIN CURVE",
    "$     LCID - Load curve ID to describe effective yield stress versus plastic strain.",
    kCurveFields,
};
constexpr char const * kStressColumns[] = {
    kCurveColumns,
    "$Plastic Strain,log. Eff.Yield Stress,Pa",
};
// clang-format on
static_assert(BannersFillTheLine(kBlankHeading) && BannersFillTheLine(kPunchCurve) &&
                  BannersFillTheLine(kBinderCurve) && BannersFillTheLine(kStressCurve) &&
                  BannersFillTheLine({kToolTexts[0].banner, kToolTexts[1].banner, kToolTexts[2].banner}),
              "a banner line has 80 characters");

constexpr double kSmallestOffset = 1e-14;  // m; below it there is none
constexpr double kShortestPlateau = 0.001; // of the ramp
constexpr double kCurveStart = 0.02;       // strain at which the generated curve begins
} // namespace

// Blank

void VOZSolverIncremental::WriteBlankDataBlock()
{
    WriteBlankPart();
    WriteBlankMaterial();
    WriteBlankSection();
    WriteAdaptivity();
}

void VOZSolverIncremental::WriteBlankPart()
{
    WriteLines(kBlankHeading);
    IntegerWriteEnd(m_nSetBlank);
    WriteLine(kSetParts);
    IntegerWriteEnd(m_nPartBlank);
    WriteLines(kBlankPart);
    WriteIntegers({m_nPartBlank, m_nSectionBlank, m_nMaterialBlank, 0, 0, 0, 1});
    WriteEnd();
}

void VOZSolverIncremental::WriteBlankMaterial()
{
    WriteLines(kBlankMaterial);
    WriteIntegers({m_nMaterialBlank});
    WriteReals({m_dDensity, m_dYoungsModulus, m_dPoisson, m_dYieldStress, m_dTangentModulus, m_dRValue});
    IntegerWriteEnd(m_nCurveStressStrain);
}

void VOZSolverIncremental::WriteBlankSection()
{
    WriteLines(kBlankSection);
    WriteIntegers({m_nSectionBlank, 2});
    WriteReals({0.833, m_dBlankIntegrationPoints}); // a real number, where the keyword takes an integer
    WriteEnd();
    WriteThickness();
}

void VOZSolverIncremental::WriteAdaptivity()
{
    WriteLines(kAdaptive);
    WriteReals({m_dAdaptFrequency, 5.0});
    WriteIntegers({2, m_nAdaptivityLevel});
    WriteLine(kAdaptiveTail);
    WriteLine(kAdaptiveCard2);
    WriteReals({m_dAdaptSize});
    WriteIntegers({m_nAdaptPass, m_nAdaptRefine});
    WriteReals({m_dAdaptEnergy, m_dAdaptThickness});
    WriteEnd();
    WriteLine("$  IADPN90");
    IntegerWriteEnd(m_nIadpn90);
}

void VOZSolverIncremental::WriteThickness()
{
    WriteLine("$       T1        T2        T3        T4      NLOC");
    WriteReals({m_dThickness, m_dThickness, m_dThickness, m_dThickness});
    WriteEnd();
}

// Tools

char const * VOZSolverIncremental::ContactKeyword() const
{
    return m_bSmoothContact ? "*CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE_SMOOTH"
                            : "*CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE";
}

void VOZSolverIncremental::WritePunchDataBlock()
{
    WriteTool(kToolPunch);
}

void VOZSolverIncremental::WriteDieDataBlock()
{
    WriteTool(kToolDie);
}

void VOZSolverIncremental::WriteBlankHolderDataBlock()
{
    WriteTool(kToolBinder);
}

void VOZSolverIncremental::WriteTool(Tool i_tool)
{
    WriteToolPart(i_tool);
    WriteToolContact(i_tool, ContactKeyword());
    WriteToolDrive(i_tool);
}

void VOZSolverIncremental::WriteToolPart(Tool i_tool)
{
    struct Numbers
    {
        int set, part, section, material;
    };
    Numbers const all[] = {{m_nSetDie, m_nPartDie, m_nSectionDie, m_nMaterialDie},
                           {m_nSetPunch, m_nPartPunch, m_nSectionPunch, m_nMaterialPunch},
                           {m_nSetBinder, m_nPartBinder, m_nSectionBinder, m_nMaterialBinder}};
    Numbers const & tool = all[i_tool];
    ToolTexts const & texts = kToolTexts[i_tool];
    char const * const heading[] = {kComment, kSingleRule, texts.banner,  kSingleRule,
                                    kComment, kSetKeyword, texts.setName, kSetFields};
    char const * const part[] = {kPartKeyword, kPartHeading, texts.heading, kPartFields};

    WriteLines(heading);
    IntegerWriteEnd(tool.set);
    WriteLine(kSetParts);
    IntegerWriteEnd(tool.part);
    WriteLines(part);
    WriteIntegers({tool.part, tool.section, tool.material});
    WriteEnd();
    WriteRigidMaterialProperties(tool.material, tool.section, texts.constraints);
    WriteThickness();
}

void VOZSolverIncremental::WriteToolContact(Tool i_tool, char const * i_strKeyword)
{
    struct Numbers
    {
        int part;
        double friction, offset;
    };
    Numbers const all[] = {{m_nPartDie, m_dFrictionDie, m_dOffsetDie},
                           {m_nPartPunch, m_dFrictionPunch, m_dOffsetPunch},
                           {m_nPartBinder, m_dFrictionBinder, m_dOffsetBinder}};
    Numbers const & tool = all[i_tool];
    char const * const head[] = {i_strKeyword, kContactTitle, kToolTexts[i_tool].contact, kContactFields};

    WriteLines(head);
    WriteIntegers({m_nPartBlank, tool.part});
    WriteLine(kContactTail);
    WriteFriction_Card23(tool.friction, tool.offset, false);
    WriteFriction_Card4_ShootingLogic();
}

// The punch follows its velocity along the stamping direction, the binder is pushed along it, the die stands.
void VOZSolverIncremental::WriteToolDrive(Tool i_tool)
{
    if (i_tool == kToolPunch)
    {
        WriteLines(kMotion);
        WriteIntegers({m_nPartPunch, 3, 0, m_nCurvePunch});
        WriteReals({1.0});
        IntegerWriteEnd(m_nVectorId);
    }
    else if (i_tool == kToolBinder)
    {
        WriteLines(kLoad);
        WriteIntegers({m_nPartBinder, 3, m_nCurveBinder});
        WriteReals({1.0});
        IntegerWriteEnd(m_nVectorId + 1);
    }
}

void VOZSolverIncremental::WriteRigidMaterialProperties(int i_nMid, int i_nSid, char const * i_strConstraints)
{
    WriteLines(kRigidMaterial);
    WriteIntegers({i_nMid});
    WriteReals({m_dToolDensityFactor * m_dDensity, m_dYoungsModulus, m_dPoisson});
    WriteEnd();
    WriteLine("$      CMO      CON1      CON2");
    WriteReals({-1.0});
    WriteIntegers({m_nVectorId + 1});
    WriteLine(i_strConstraints);
    WriteLine("$LCO or A1        A2        A3        V1        V2        V3");
    IntegerWriteEnd(m_nVectorId + 1);
    WriteLines(kToolSection);
    WriteIntegers({i_nSid, 2, 1});
    WriteReals({m_dToolIntegrationPoints});
    WriteEnd();
}

// Contact

void VOZSolverIncremental::WriteFriction_Card23(double i_dFriction, double i_dOffset, bool i_bDrawBead)
{
    WriteLine(kFrictionFields);
    WriteReals({i_dFriction});
    WriteLine(i_bDrawBead ? kFrictionBead : kFrictionTool);
    WriteLine(kScaleFields);
    double const offset = std::fabs(i_dOffset);
    WriteReals({0.0, 0.0, 0.0, offset < kSmallestOffset ? 0.0 : -2.0 * offset});
    WriteEnd();
}

void VOZSolverIncremental::WriteFriction_Card4_ShootingLogic()
{
    WriteLines(kCard4);
}

// Curves

// A trapezoid; a plateau that is next to nothing against the ramp leaves a triangle.
void VOZSolverIncremental::WriteCurveLoadPunch()
{
    WriteLines(kPunchCurve);
    IntegerWriteEnd(m_nCurvePunch);
    WriteLines(kPunchColumns);
    WriteCurveRow(0.0, 0.0);
    WriteCurveRow(m_dPunchRampTime, m_dPunchVelocity);
    if (m_dPunchPlateauTime > kShortestPlateau * m_dPunchRampTime)
        WriteCurveRow(m_dPunchPlateauTime + m_dPunchRampTime, m_dPunchVelocity);
    WriteCurveRow(m_dTerminationTime > 0.0 ? m_dTerminationTime : 2.0 * m_dPunchRampTime + m_dPunchPlateauTime, 0.0);
}

void VOZSolverIncremental::WriteCurveLoadBHolder()
{
    WriteLines(kBinderCurve);
    IntegerWriteEnd(m_nCurveBinder);
    WriteLine(kBinderColumns);
    WriteCurveRow(0.0, 0.0);
    WriteCurveRow(m_dBinderCloseTime, m_dBlankHolderForce);
    WriteCurveRow(m_dTerminationTime, m_dBlankHolderForce);
}

void VOZSolverIncremental::WriteCurveBlankStressStrain()
{
    WriteLines(kStressCurve);
    IntegerWriteEnd(m_nCurveStressStrain);
    WriteLines(kStressColumns);
    if (m_nNumPoints > 0)
        for (int i = 0; m_padPoints && i < m_nNumPoints; ++i)
            WriteCurveRow(m_padPoints[2 * i], m_padPoints[2 * i + 1]);
    else
    {
        int const divisor = VOZ_ASSERTION((m_nSteps - 1) != 0, "(m_nSteps - 1) != 0") ? m_nSteps - 1 : 1;
        double const step = m_dMaxStrain / divisor;
        for (int i = 0; i < m_nSteps; ++i)
            WriteCurveRow(i * step, EvalEquStress(i * step + kCurveStart));
    }
    WriteLine(kComment);
}
