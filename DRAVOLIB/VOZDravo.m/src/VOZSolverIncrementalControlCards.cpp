// VOZSolverIncrementalControlCards.cpp: the deck's frame, its fields, its control cards.
//
// A line is literal or a row of fields. Literal lines stand here byte for byte, in the order of the deck.

#include "VOZSolverIncremental.h"

#include "KeywordLines.h"

#include "CATError.h"
#include "ElemProperty.h"
#include "VOZFile.h"
#include "VOZGeoUtil.h"
#include "VOZStatus.h"

namespace
{
constexpr char kDeckName[] = "inputls.dyn";

// clang-format off
constexpr char const * kTitle[] = {
    kPipeRule,
    kEmptyBanner,
    kEmptyBanner,
    kEmptyBanner,
    "$||      LS-DYNA INPUT DATA DECK IS GENERATED WITH VOZ INCREMENTAL MODULE     ||",
    kEmptyBanner,
    kEmptyBanner,
    "$||               The International System of Units (SI) is used.             ||",
    kEmptyBanner,
    "$||    Base units   : meter  (m) length, kilogram (kg) mass, second (s) time. ||",
    "$||    Derived units: Newton  N  force  kg\xB7" "(m/s2).                            ||", // the raised dot
    "$||                   Pascal Pa  pressure, stress N/m2.                       ||",
    "$||                   Joule   J  energy.                                      ||",
    "$||                   Watt    W  power.                                       ||",
    "$||    Supplementary: radian rad for plane angle.                             ||",
    kEmptyBanner,
    kEmptyBanner,
    kPipeRule,
    kComment,
    "*KEYWORD",
    kComment,
    kDoubleRule,
    kEmptyBanner,
    "$||                   (1)    TITLE CARD.                                      ||",
    kEmptyBanner,
    kDoubleRule,
    kComment,
    "*TITLE",
    " VOZ Users Incremental Solution",
    kComment,
};
constexpr char const * kTermination[] = {
    kComment,
    kDoubleRule,
    kEmptyBanner,
    "$||                   (2)    CONTROL CARDS                                    ||",
    kEmptyBanner,
    kDoubleRule,
    "*CONTROL_TERMINATION",
    "$   ENDTIM    ENDCYC     DTMIN    ENDNEG    ENDMAS",
};
constexpr char const * kTimeStep[] = {
    "*CONTROL_TIMESTEP",
    "$   DTINIT    TSSFAC      ISDO    TSLIMT     DT2MS      LCTM     ERODE     MS1ST",
};
constexpr char const * kMassScaling[] = {
    "$   DT2MSF   DT2MCLC     IMSCL",
    "                             1",
};
constexpr char const * kHourglass[] = {
    "*CONTROL_HOURGLASS",
    "$      IHQ        QH",
};
constexpr char const * kFixedControls[] = {
    "*CONTROL_SHELL",
    "$   WRPANG     ESORT     IRNXX    ISTUPD    THEORY       BWC     MITER      PROJ",
    "                   1                   1",
    "*CONTROL_CONTACT",
    "$   SLSFAC    RWPNAL    ISLCHK    SHLTHK    PENOPT    THKCHG     ORIEN    ENMASS",
    "       0.1     0.000         2         1         4         0         1         0",
    "$   USRSTR    USRFAC     NSBCS    INTERM     XPENE     SSTHK      ECDT   TIEDPRJ",
    "                            10",
    "*CONTROL_ENERGY",
    "$     HGEN      RWEN    SLNTEN     RYLEN",
    "         2         1         2",
    "*CONTROL_OUTPUT",
    "$    NPOPT    NEECHO    NREFUP    IACCOP     OPIFS    IPNINT    IKEDIT ",
    "         1",
};
constexpr char const * kAsciiHeading[] = {
    kComment,
    kSingleRule,
    "$||                     -    DATABASE CONTROL CARDS FOR ASCII FILE            ||",
    kSingleRule,
    kComment,
};
constexpr char const * kAsciiDatabases[] = {
    "*DATABASE_MATSUM",
    "*DATABASE_GLSTAT",
    "*DATABASE_RCFORC",
    "*DATABASE_SLEOUT",
    "*DATABASE_RBDOUT",
};
constexpr char const * kBinaryOutput[] = {
    kComment,
    kSingleRule,
    "$||                     -  DATABASE CONTROL CARDS FOR BINARY FILE             ||",
    kSingleRule,
    kComment,
    "*DATABASE_EXTENT_BINARY",
    "$    NEIPH     NEIPS    MAXINT    STRFLG    SIGFLG    EPSFLG    RLTFLG    ENGFLG",
    "                             5         1",
    "$   CMPFLG    IEVERP    BEAMIP     DCOMP      SHGE     STSSZ",
    "                   1                   2",
    "*DATABASE_BINARY_D3PLOT",
    "$  DT/CYCL      LCDT    NOBEAM",
    "                  44",
    "$    IOOPT",
    "         3",
    kComment,
    kSingleRule,
    "$||                     -    OUTPUT TIME POINTS                               ||",
    kSingleRule,
    kComment,
    kCurveKeyword,
    "$CURVENAME:  D3PLOT OUTPUT TIME POINTS",
    kCurveFields,
    "        44",
    "$                 A1                  O1     ",
    "$            Time, s              (not used)",
};
constexpr char const * kBulkViscosity[] = {
    kComment,
    kSingleRule,
    "$||                     -    CONTROL BULK VISCOSITY                           ||",
    kSingleRule,
    kComment,
    "*CONTROL_BULK_VISCOSITY",
    "$      Q1         Q2     Type",
    "      1.5       0.06       -1", // Q1 and TYPE end a column short of their fields
};
constexpr char const * kFrameHeading[] = {
    kComment,
    kDoubleRule,
    "$||                          DEFINE TIPPING COORDINATE SYSTEM AS LOCAL        ||",
    kDoubleRule,
    kComment,
};
constexpr char const * kVector[] = {
    "*DEFINE_VECTOR",
    "$   typeID        XT        YT        ZT        XH        YH        ZH       CID",
};
constexpr char const * kFrame[] = {
    kComment,
    kComment,
    "*DEFINE_COORDINATE_SYSTEM",
    "$      CID        X0        Y0        Z0        XL        YL        ZL",
};
constexpr char const * kOppositeVector[] = {
    kComment,
    kComment,
    "$ Vector directed opposite to tipping vector",
};
constexpr char const * kToolingTitle[] = {
    kComment,
    kDoubleRule,
    kEmptyBanner,
    "$||                    (3)   DEFINE BLANK/TOOLING FOR INCREMENTAL VOZ         ||",
    kEmptyBanner,
    kDoubleRule,
    kComment,
};
constexpr char const * kIncludeHeading[] = {
    kComment,
    kDoubleRule,
    kEmptyBanner,
    "$||                          DEFINE INCLUDE FILE NAMES (WITH MESH)            ||",
    kEmptyBanner,
    kDoubleRule,
    kComment,
};
constexpr char const * kEnd[] = {
    kComment,
    kComment,
    "*END",
    kPipeRule,
    kEmptyBanner,
    kEmptyBanner,
    "$||      END OF LS-DYNA INPUT DATA DECK GENERATED WITH VOZ INCREMENTAL MODULE ||",
    kEmptyBanner,
    kEmptyBanner,
    kPipeRule,
};
// clang-format on
static_assert(BannersFillTheLine(kTitle) && BannersFillTheLine(kTermination) && BannersFillTheLine(kAsciiHeading) &&
                  BannersFillTheLine(kBinaryOutput) && BannersFillTheLine(kBulkViscosity) &&
                  BannersFillTheLine(kFrameHeading) && BannersFillTheLine(kToolingTitle) &&
                  BannersFillTheLine(kIncludeHeading) && BannersFillTheLine(kEnd),
              "a banner line has 80 characters");
} // namespace

// The deck.

long VOZSolverIncremental::Write(double, double, double, double, double, double, double, double, double, double, int,
                                 double, int, int, double, double, double, double, double)
{
    return WriteDeck(m_strWorkingFolder + "/" + kDeckName);
}

long VOZSolverIncremental::WriteDeck(CATUnicodeString const & i_strPath)
{
    m_pStream = VOZOpenFile(i_strPath.ConvertToChar(), "w");
    if (m_pStream == nullptr)
        return E_FAIL;
    auto const close = [this]
    {
        std::FILE * const stream = m_pStream;
        m_pStream = nullptr;
        return std::fclose(stream);
    };
    CATXHContext::Guard([this] { WriteBlocks(); }, close);
    if (close() != 0) // what was left to write found no room
        throw CATError("the keyword deck cannot be written to its end", "VOZSolverIncremental", __LINE__);
    return 0;
}

void VOZSolverIncremental::WriteBlocks()
{
    WriteTitleBlock();
    WriteControlCardsData();
    WriteASCIIOutputControlCards();
    WriteBINARYOutputControlCards();
    WriteCONTROL_BULK_VISCOSITY_Card();
    WriteLocalCoordinateSystemDefinitionBlock();
    WriteToolingTitleBlock();
    WriteBlankDataBlock();
    WriteCurveBlankStressStrain();
    WriteDieDataBlock();
    WritePunchDataBlock();
    WriteCurveLoadPunch();
    if (m_dBlankHolderForce > 0.0)
    {
        WriteBlankHolderDataBlock();
        WriteCurveLoadBHolder();
    }
    if (m_pElemProperty != nullptr && m_pElemProperty->getNbPressurePads() > 0)
        WritePressurePadData();
    if (m_pElemProperty != nullptr && m_pElemProperty->sizeDrawBeads() > 0)
        WriteDrawBeadData();
    WriteIncludedBlankToolingMeshFiles();
}

void VOZSolverIncremental::WriteTitleBlock()
{
    WriteLines(kTitle);
}

// Control and database cards.

void VOZSolverIncremental::WriteControlCardsData()
{
    WriteLines(kTermination);
    WriteReals({m_dTerminationTime});
    WriteEnd();
    WriteLines(kTimeStep);
    WriteReals({0.0, 0.9}); // DTINIT, TSSFAC
    WriteIntegers({0});     // ISDO
    WriteReals({0.0});      // TSLIMT
    if (m_bMassScaling)
        WriteReals({-m_dMassScalingTimeStep}); // negative: mass is added only where the step would be shorter
    WriteEnd();
    if (m_bMassScaling)
        WriteLines(kMassScaling);
    if (m_nHourglassType != 0)
    {
        WriteLines(kHourglass);
        IntegerWriteEnd(m_nHourglassType);
    }
    WriteLines(kFixedControls);
}

void VOZSolverIncremental::WriteASCIIOutputControlCards()
{
    WriteLines(kAsciiHeading);
    if (m_dAsciiOutputInterval > 0.0)
        for (char const * const database : kAsciiDatabases)
        {
            WriteLine(database);
            WriteReals({m_dAsciiOutputInterval});
            WriteEnd();
        }
    WriteLine("*INTERFACE_SPRINGBACK_DYNA3D");
    IntegerWriteEnd(m_nSetBlank);
}

// The curve begins at time 0 whatever the first point, and leaves the last to ENDTIM; its second column counts rows.
void VOZSolverIncremental::WriteBINARYOutputControlCards()
{
    auto const writeRow = [this](double i_dTime, int i_nRow)
    {
        DoubleWrite(i_dTime, 9, 20, 1);
        DoubleWriteEnd(i_nRow, 1, 20, 1);
    };
    WriteLines(kBinaryOutput);
    writeRow(0.0, 1);
    for (int i = 1; m_padOutputPoints && i <= m_nOutputPoints - 2; ++i)
        writeRow(m_padOutputPoints[i], i + 1);
}

void VOZSolverIncremental::WriteCONTROL_BULK_VISCOSITY_Card()
{
    WriteLines(kBulkViscosity);
}

// The stamping frame.

void VOZSolverIncremental::WriteLocalCoordinateSystemDefinitionBlock()
{
    double const * const tip = m_adTippingVector;
    double const origin[3] = {0.0, 0.0, 0.0};
    double matrix[9];
    double onX[3] = {1.0, 0.0, 0.0};
    double onY[3] = {0.0, 1.0, 0.0};
    VOZGeoUtil::EvalLocalCoordSystemMatrix(tip, matrix);
    VOZGeoUtil::ConvertCoordLocalToGlobal(origin, matrix, onX);
    VOZGeoUtil::ConvertCoordLocalToGlobal(origin, matrix, onY);

    WriteLines(kFrameHeading);
    WriteVectorCard(m_nVectorId, tip[0], tip[1], tip[2]);
    WriteLines(kFrame);
    WriteIntegers({m_nVectorId + 1});
    WriteReals({0.0, 0.0, 0.0, onX[0], onX[1], onX[2]});
    WriteEnd();
    WriteLine("$       XP        YP        ZP");
    WriteReals({onY[0], onY[1], onY[2]});
    WriteEnd();
    WriteLines(kOppositeVector);
    WriteVectorCard(m_nVectorId + 2, 0.0 - tip[0], 0.0 - tip[1], 0.0 - tip[2]); // no zero with a sign
    WriteLine(kComment);
}

void VOZSolverIncremental::WriteVectorCard(int i_nId, double i_dX, double i_dY, double i_dZ)
{
    WriteLines(kVector);
    WriteIntegers({i_nId});
    WriteReals({0.0, 0.0, 0.0, i_dX, i_dY, i_dZ});
    IntegerWriteEnd(0);
}

void VOZSolverIncremental::WriteToolingTitleBlock()
{
    WriteLines(kToolingTitle);
}

// The include files and the end.

void VOZSolverIncremental::WriteIncludedBlankToolingMeshFiles()
{
    WriteIncludes(kDeckName);
}

void VOZSolverIncremental::WriteIncludes(char const * i_strDeck)
{
    WriteLines(kIncludeHeading);
    WriteText("$     THIS FILE NAME: ");
    WriteLine(i_strDeck);
    WriteLine(kComment);
    for (char const * const name : {m_achBlankName, m_achDieName, m_achPunchName})
    {
        if (name[0] != '\0')
            WriteInclude(name);
        WriteLine(kComment);
    }
    if (m_achBinderName[0] != '\0' && m_dBlankHolderForce > 0.0)
    {
        WriteInclude(m_achBinderName);
        WriteLine(kComment);
    }
    WriteLines(kEnd);
}

void VOZSolverIncremental::WriteInclude(char const * i_strName)
{
    WriteLine("*INCLUDE");
    WriteLine((m_strWorkingFolder + "/" + i_strName + ".mod").ConvertToChar());
}
