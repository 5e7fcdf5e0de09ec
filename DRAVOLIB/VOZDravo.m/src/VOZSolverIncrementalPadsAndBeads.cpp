// VOZSolverIncrementalPadsAndBeads.cpp: pressure pads and draw beads.
//
// A line is literal or a row of fields. Literal lines stand here byte for byte, in the order of the deck.
// Pads are read from the whole arrays of the process, entries 0 .. n - 1; beads are its rows 1 .. n.

#include "VOZSolverIncremental.h"

#include "KeywordLines.h"
#include "SolverRows.h"

#include "CATFatalError.h"
#include "ElemProperty.h"
#include "VOZGeoUtil.h"

#include <algorithm>
#include <memory>

using solverrows::kMetresPerMillimetre;

namespace
{
constexpr double kThinningTolerance = 0.01; // of the outline's size

// clang-format off
constexpr char kTenBlanks[] = "          ";

constexpr char const * kPadTitle[] = {
    kComment,
    kDoubleRule,
    kEmptyBanner,
    "$||                    (7)   DEFINE PRESSURE PAD                              ||",
    kEmptyBanner,
    kDoubleRule,
    kComment,
};
constexpr char const * kPadHead[] = {
    kComment,
    kComment,
    kDoubleRule,
};
constexpr char kPadName[]  = "$||                                 PRESSURE PAD";
constexpr char kPadValue[] = "    P = ";
constexpr char kHeadEnd[]  = "  ||";
constexpr char const * kHeadFoot[] = {
    kDoubleRule,
    kComment,
};
constexpr char const * kLoadMask[] = {
    "*LOAD_MASK",
    "$      PID      LCID      VID1       OFF     BOXID     LCIDM      VID2     INOUT",
};
constexpr char kCycles[] = "$   ICYCLE";
constexpr char const * kPadPressure[] = {
    kComment,
    kSingleRule,
    "$||                                 PRESSURE PAD PRESSURE versus PROCESS TIME ||",
    kSingleRule,
    kComment,
    kCurveKeyword,
    kCurveFields,
};
constexpr char kPadColumns[] = "$        TIME IN SEC      PRESSURE IN Pa";
constexpr char const * kPadBoundary[] = {
    kComment,
    kSingleRule,
    "$||                                 PRESSURE PAD boundary (XY)                ||",
    kSingleRule,
    kComment,
    kCurveKeyword,
    "$     LCID      SIDR      SCLA      SCLO      OFFA      OFFO    DATTYP",
};
constexpr char const * kPadBoundaryColumns[] = {
    "$ Define closed curve inside which pressure is applied.",
    "$                  X                   Y",
};
constexpr char const * kBeadTitle[] = {
    kComment,
    kComment,
    kDoubleRule,
    kEmptyBanner,
    "$||                    (8)   DEFINE DRAW BEAD DATA                            ||",
    kEmptyBanner,
    kDoubleRule,
    kComment,
};
constexpr char const * kBeadHead[] = {
    kComment,
    kDoubleRule,
};
constexpr char kBeadName[]  = "$||                                    DRAW BEAD";
constexpr char kBeadValue[] = "    T = ";
constexpr char const * kBeadNodes[] = {
    kComment,
    kSingleRule,
    "$||                                    DRAW BEAD NODE POSITION (xyz)          ||",
    kSingleRule,
    kComment,
    "*NODE",
    "$   NODE               X               Y               Z      TC      RC",
};
constexpr char const * kNodeSet[] = {
    kComment,
    "*SET_NODE_LIST_GENERATE",
    "$      SID",
};
constexpr char kNodeRange[] = "$  B1Begin     B1End";
constexpr char kNodeSetEnd[] = "$ ------------------------------------------------------------------------------";
constexpr char const * kExtraNodes[] = {
    kComment,
    "*CONSTRAINED_EXTRA_NODES_SET",
    "$      PID      NSID",
};
constexpr char const * kBeadContact[] = {
    kComment,
    "*CONTACT_DRAWBEAD",
    "$             NODE SET / BLANK ",
    "$     SSID      MSID     SSTYP     MSTYP    SBOXID    MBOXID       SPR       MPR",
};
constexpr char kBeadForces[] = "$   LCIDRF    LCIDNF     DBDTH     DFSC1    NUMINT";
constexpr char const * kBeadCurve[] = {
    kComment,
    kCurveKeyword,
    "$   LCIDRF      SIDR      SCLA      SCLO      OFFA      OFFO",
};
constexpr char kBeadColumns[] = "$ Draw bead depth, m        Tension, N/m";
constexpr char const * kBeadBox[] = {
    kComment,
    "*DEFINE_BOX_DRAWBEAD",
    "$    BOXID       PID      NSID      IDIR",
};
// clang-format on
static_assert(BannersFillTheLine(kPadTitle) && BannersFillTheLine(kPadPressure) && BannersFillTheLine(kPadBoundary) &&
                  BannersFillTheLine(kBeadTitle) && BannersFillTheLine(kBeadNodes),
              "a banner line has 80 characters");
static_assert(sizeof kPadName + sizeof kPadValue + sizeof kHeadEnd - 3 + 20 == 80 &&
                  sizeof kBeadName == sizeof kPadName && sizeof kBeadValue == sizeof kPadValue,
              "a head's line has 80 characters with its two fields");

int BeadsOf(ElemProperty const * i_pProperty)
{
    return i_pProperty ? i_pProperty->sizeDrawBeads() : 0;
}

// The outline as a plan in the stamping frame: 3 doubles per point, in place.
void Flatten(double const * i_adTip, int i_nCount, double * padPoints)
{
    double const origin[3] = {0.0, 0.0, 0.0};
    double matrix[9];
    VOZGeoUtil::EvalLocalCoordSystemMatrix(i_adTip, matrix);
    if (!VOZ_ASSERTION(padPoints, "padPoints"))
        return;
    for (double * point = padPoints; point != padPoints + 3 * static_cast<std::ptrdiff_t>(i_nCount); point += 3)
    {
        VOZGeoUtil::ConvertCoordGlobalToLocal(origin, matrix, point);
        point[2] = 0.0;
    }
}

// Drops the points on the outline's straight stretches; leaves it as it is where a closed curve would degenerate.
void Thin(int & io_nCount, std::unique_ptr<double[]> & io_points)
{
    double dScale = 0.0;
    double offsets[3] = {0.0, 0.0, 0.0};
    VOZGeoUtil::EvalScaleParametersForPolyline3D(io_nCount, io_points.get(), dScale, offsets);
    if (!VOZ_ASSERTION(dScale != 0.0, "dScale != 0.0"))
        return;
    int nThin = 0;
    double * padThin = nullptr;
    VOZGeoUtil::DeletePointsPolyline3D(io_nCount, io_points.get(), kThinningTolerance / dScale, nThin, padThin);
    std::unique_ptr<double[]> thin(padThin);
    if (VOZ_ASSERTION(thin, "padSmoothPointsXYZ") && nThin > 3)
    {
        io_points.swap(thin);
        io_nCount = nThin;
    }
}
} // namespace

// Pads

void VOZSolverIncremental::WritePressurePadTitleBlock()
{
    WriteLines(kPadTitle);
}

void VOZSolverIncremental::WritePressurePadData()
{
    int const pads = m_pElemProperty ? m_pElemProperty->getNbPressurePads() : 0;
    VOZ_ASSERTION(pads > 0, "m_pElemProperty->getNbPressurePads() > 0");
    WritePressurePadTitleBlock();
    if (pads <= 0)
        return;
    int const * const sizes = m_pElemProperty->pressPadSize();
    double const * const values = m_pElemProperty->pressPadVal();
    double const * const * const outlines = m_pElemProperty->pressPadXYZ();
    int curve = m_nFirstPadCurve;
    for (int pad = 0; pad < pads; ++pad, curve += 3)
    {
        int const nNumPoints = sizes ? sizes[pad] : 0;
        if (!VOZ_ASSERTION(nNumPoints > 2, "nNumPoints > 2"))
            continue;
        WritePressurePadData(curve, values ? values[pad] : 0.0, true);
        WriteXYforPressurePad(nNumPoints, outlines ? outlines[pad] : nullptr);
    }
}

void VOZSolverIncremental::WritePressurePadID(int i_nId, double i_dPressure)
{
    WriteLines(kPadHead);
    WriteHeadLine(kPadName, i_nId, kPadValue, i_dPressure);
    WriteLines(kHeadFoot);
}

void VOZSolverIncremental::WriteHeadLine(char const * i_strName, int i_nId, char const * i_strValue, double i_dValue)
{
    WriteText(i_strName);
    WriteIntegers({i_nId});
    WriteText(i_strValue);
    WriteReals({i_dValue});
    WriteLine(kHeadEnd);
}

void VOZSolverIncremental::WritePressurePadData(int i_nId, double i_dPressure, bool i_bAlongTipping)
{
    WritePressurePadID(i_nId, i_dPressure);
    WriteLines(kLoadMask);
    int const direction = i_bAlongTipping ? m_nVectorId : m_nVectorId + 2;
    WriteIntegers({m_nPartBlank, i_nId, direction, 0, 0, i_nId + 1, m_nVectorId, 0});
    WriteEnd();
    WriteLine(kCycles);
    IntegerWriteEnd(50);
    WriteLines(kPadPressure);
    WriteIntegers({i_nId, 0});
    WriteEnd();
    WriteLine(kPadColumns);
    WriteCurveRow(0.0, 0.0);
    WriteCurveRow(m_dBinderCloseTime, i_dPressure);
    WriteCurveRow(m_dTerminationTime, i_dPressure);
    WriteLines(kPadBoundary);
    WriteIntegers({i_nId + 1, 0});
    WriteReals({1.0, 1.0, 0.0, 0.0});
    IntegerWriteEnd(1);
    WriteLines(kPadBoundaryColumns);
}

void VOZSolverIncremental::WriteXYforPressurePad(int i_nCount, double const * i_padPointsXYZ)
{
    if (!VOZ_ASSERTION(i_padPointsXYZ, "i_padPointsXYZ") || i_nCount <= 0)
        return;
    int count = i_nCount;
    std::unique_ptr<double[]> points = solverrows::NewRows<double>(count, 3);
    if (!VOZ_ASSERTION(points, "padPointsXYZ"))
        return;
    std::copy_n(i_padPointsXYZ, 3 * static_cast<std::ptrdiff_t>(count), points.get());
    Flatten(m_adTippingVector, count, points.get());
    Thin(count, points);
    for (std::ptrdiff_t i = 0; i < count; ++i)
    {
        DoubleWrite(points[3 * i] * kMetresPerMillimetre, 9, 20, 0);
        DoubleWriteEnd(points[3 * i + 1] * kMetresPerMillimetre, 9, 20, 0);
    }
}

// Beads

void VOZSolverIncremental::WriteDrawBeadTitleBlock()
{
    WriteLines(kBeadTitle);
}

void VOZSolverIncremental::WriteDrawBeadData()
{
    WriteDrawBeadTitleBlock();
    int curve = m_nFirstBeadCurve;
    int set = m_nFirstBeadSet;
    int last = m_nBeadNodeCounter;
    for (int position = 1; position <= BeadsOf(m_pElemProperty); ++position, curve += 3, ++set)
    {
        double const force = m_pElemProperty->drawBeads(position).force;
        WriteDrawBeadID(curve, force);
        int const first = last + 1;
        WriteXYZDrawBead(set, first, &last, position);
        WriteDrawBeadNodeSetID(set, first, last);
        WriteDrawBeadData(curve, set, force);
    }
    m_nBeadNodeCounter = last + 1;
}

void VOZSolverIncremental::WriteDrawBeadID(int i_nId, double i_dForce)
{
    WriteLines(kBeadHead);
    WriteHeadLine(kBeadName, i_nId, kBeadValue, i_dForce);
    WriteLines(kHeadFoot);
}

// The line as the bead holds it, in millimetres and global coordinates: not thinned, not turned.
void VOZSolverIncremental::WriteXYZDrawBead(int /*i_nSet*/, int i_nFirst, int * io_nLast, int i_nDrawBeadPos)
{
    bool const exists = VOZ_ASSERTION(1 <= i_nDrawBeadPos && i_nDrawBeadPos <= BeadsOf(m_pElemProperty),
                                      "1<=i_nDrawBeadPos && i_nDrawBeadPos<=m_pElemProperty->sizeDrawBeads()");
    WriteLines(kBeadNodes);
    if (!exists)
        return;
    DrawBead const & bead = m_pElemProperty->drawBeads(i_nDrawBeadPos);
    if (bead.xyzCount <= 0 || bead.xyz == nullptr)
        return;
    for (int i = 0; i < bead.xyzCount; ++i)
    {
        IntegerWrite(i_nFirst + i, 8);
        for (int k = 0; k < 3; ++k)
            DoubleWrite(bead.xyz[3 * static_cast<std::ptrdiff_t>(i) + k] * kMetresPerMillimetre, 8, 16, 0);
        WriteEnd();
    }
    *io_nLast = i_nFirst + bead.xyzCount - 1;
}

void VOZSolverIncremental::WriteDrawBeadNodeSetID(int i_nSid, int i_nFirst, int i_nLast)
{
    WriteLines(kNodeSet);
    IntegerWriteEnd(i_nSid);
    WriteLine(kNodeRange);
    WriteIntegers({i_nFirst, i_nLast});
    WriteEnd();
    WriteLine(kNodeSetEnd);
}

void VOZSolverIncremental::WriteDrawBeadData(int i_nCurve, int i_nSet, double i_dForce)
{
    WriteLines(kExtraNodes);
    WriteIntegers({m_nPartDie, i_nSet}); // the bead's nodes ride on the die
    WriteEnd();
    WriteLines(kBeadContact);
    WriteIntegers({i_nSet, m_nPartBlank, 4, 3});
    WriteText(kTenBlanks);
    WriteIntegers({i_nSet, 1, 1});
    WriteEnd();
    WriteFriction_Card23(m_dFrictionPunch, m_dOffsetDie, true); // the punch's friction, the die's offset
    WriteLine(kBeadForces);
    WriteIntegers({i_nCurve});
    WriteText(kTenBlanks);
    DoubleWriteEnd(m_dBeadDepth, 3, 10, 0);
    WriteLines(kBeadCurve);
    WriteIntegers({i_nCurve, 0});
    WriteEnd();
    WriteLine(kBeadColumns);
    WriteCurveRow(0.0, i_dForce);
    WriteCurveRow(m_dBeadDepth, i_dForce);
    WriteLines(kBeadBox);
    WriteIntegers({i_nSet, m_nPartBlank, i_nSet, 3});
    WriteEnd();
    WriteLine(kComment);
}
