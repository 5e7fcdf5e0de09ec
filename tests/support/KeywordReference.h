// KeywordReference.h: the keyword deck a second time, by another hand: pages of text whose marks "@" are filled in turn
// with printf's fields. It shares nothing with the library but the frame's and the outlines' arithmetic (VOZGeoUtil).

#ifndef KEYWORDREFERENCE_H
#define KEYWORDREFERENCE_H

#include "KeywordReferenceTools.h"

#include <cmath>
#include <string>
#include <vector>

namespace keywordreference
{
// The rows of a pad's outline.
inline std::string outline(Numbers const & n, Pad const & pad)
{
    double const origin[3] = {0, 0, 0};
    double matrix[9];
    VOZGeoUtil::EvalLocalCoordSystemMatrix(n.tip, matrix);
    std::vector<double> plan = pad.points;
    for (std::size_t i = 0; i < plan.size(); i += 3)
    {
        VOZGeoUtil::ConvertCoordGlobalToLocal(origin, matrix, &plan[i]);
        plan[i + 2] = 0.0;
    }
    double scale = 0.0;
    double offsets[3];
    VOZGeoUtil::EvalScaleParametersForPolyline3D(static_cast<int>(plan.size() / 3), plan.data(), scale, offsets);
    int count = 0;
    double * thinned = nullptr;
    VOZGeoUtil::DeletePointsPolyline3D(static_cast<int>(plan.size() / 3), plan.data(), 0.01 / scale, count, thinned);
    if (count > 3)
        plan.assign(thinned, thinned + 3 * count);
    delete[] thinned;
    std::string text;
    for (std::size_t i = 0; i < plan.size(); i += 3)
        text += R(plan[i] * 0.001, 9, 20, false) + R(plan[i + 1] * 0.001, 9, 20, false) + "\n";
    return text;
}

inline std::string pads(Numbers const & n)
{
    std::string text = page(R"(
$
$||=============================================================================
$||                                                                           ||
$||                    (7)   DEFINE PRESSURE PAD                              ||
$||                                                                           ||
$||=============================================================================
$
)");
    int id = n.firstPadCurve;
    for (Pad const & pad : n.pads)
    {
        text += page(R"(
$
$
$||=============================================================================
$||                                 PRESSURE PAD@    P = @  ||
$||=============================================================================
$
*LOAD_MASK
$      PID      LCID      VID1       OFF     BOXID     LCIDM      VID2     INOUT
@@@         0         0@@         0
$   ICYCLE
        50
$
$||-----------------------------------------------------------------------------
$||                                 PRESSURE PAD PRESSURE versus PROCESS TIME ||
$||-----------------------------------------------------------------------------
$
*DEFINE_CURVE
$     LCID      SIDR      SCLA      SCLO      OFFA      OFFO
@         0
$        TIME IN SEC      PRESSURE IN Pa
@@@$
$||-----------------------------------------------------------------------------
$||                                 PRESSURE PAD boundary (XY)                ||
$||-----------------------------------------------------------------------------
$
*DEFINE_CURVE
$     LCID      SIDR      SCLA      SCLO      OFFA      OFFO    DATTYP
@         01.0000E+001.0000E+00 0.000E+00 0.000E+00         1
$ Define closed curve inside which pressure is applied.
$                  X                   Y
@)",
                     {I(id), R(pad.pressure), I(n.blank.part), I(id), I(n.vectorId), I(id + 1), I(n.vectorId), I(id),
                      row(0.0, 0.0), row(n.closeTime, pad.pressure), row(n.endTime, pad.pressure), I(id + 1),
                      outline(n, pad)});
        id += 3;
    }
    return text;
}

inline std::string beads(Numbers const & n)
{
    std::string text = page(R"(
$
$
$||=============================================================================
$||                                                                           ||
$||                    (8)   DEFINE DRAW BEAD DATA                            ||
$||                                                                           ||
$||=============================================================================
$
)");
    int id = n.firstBeadCurve;
    int set = n.firstBeadSet;
    int label = n.beadNodes;
    std::string const mst = std::fabs(n.offsetDie) < 1e-14 ? R(0.0) : R(-2.0 * std::fabs(n.offsetDie));
    for (Bead const & bead : n.beads)
    {
        int const first = label + 1;
        std::string nodes;
        for (std::size_t i = 0; i < bead.points.size(); i += 3)
        {
            nodes += I(++label, 8);
            for (std::size_t k = 0; k < 3; ++k)
                nodes += R(bead.points[i + k] * 0.001, 8, 16, false);
            nodes += "\n";
        }
        text += page(R"(
$
$||=============================================================================
$||                                    DRAW BEAD@    T = @  ||
$||=============================================================================
$
$
$||-----------------------------------------------------------------------------
$||                                    DRAW BEAD NODE POSITION (xyz)          ||
$||-----------------------------------------------------------------------------
$
*NODE
$   NODE               X               Y               Z      TC      RC
@$
*SET_NODE_LIST_GENERATE
$      SID
@
$  B1Begin     B1End
@@
$ ------------------------------------------------------------------------------
$
*CONSTRAINED_EXTRA_NODES_SET
$      PID      NSID
@@
$
*CONTACT_DRAWBEAD
$             NODE SET / BLANK )"
                     R"(
$     SSID      MSID     SSTYP     MSTYP    SBOXID    MBOXID       SPR       MPR
@@         4         3          @         1         1
$       FS        FD        DC        VC       VDC    PENCHK        BT        DT
@                                     0.0
$      SFS       SFM       SST       MST      SFST      SFMT       FSF       VSF
 0.000E+00 0.000E+00 0.000E+00@
$   LCIDRF    LCIDNF     DBDTH     DFSC1    NUMINT
@          @
$
*DEFINE_CURVE
$   LCIDRF      SIDR      SCLA      SCLO      OFFA      OFFO
@         0
$ Draw bead depth, m        Tension, N/m
@@$
*DEFINE_BOX_DRAWBEAD
$    BOXID       PID      NSID      IDIR
@@@         3
$
)",
                     {I(id),
                      R(bead.force),
                      nodes,
                      I(set),
                      I(first),
                      I(label),
                      I(n.die.part),
                      I(set),
                      I(set),
                      I(n.blank.part),
                      I(set),
                      R(n.frictionPunch),
                      mst,
                      I(id),
                      R(n.beadDepth, 3, 10, false),
                      I(id),
                      row(0.0, bead.force),
                      row(n.beadDepth, bead.force),
                      I(set),
                      I(n.blank.part),
                      I(set)});
        id += 3;
        set += 1;
    }
    return text;
}

inline std::string includes(Numbers const & n)
{
    std::string files;
    for (std::string const & name : {n.blankName, n.dieName, n.punchName})
        files += name.empty() ? "$\n" : "*INCLUDE\n" + n.folder + "/" + name + ".mod\n$\n";
    if (!n.binderName.empty() && n.binderForce > 0.0)
        files += "*INCLUDE\n" + n.folder + "/" + n.binderName + ".mod\n$\n";
    return page(R"(
$
$||=============================================================================
$||                                                                           ||
$||                          DEFINE INCLUDE FILE NAMES (WITH MESH)            ||
$||                                                                           ||
$||=============================================================================
$
$     THIS FILE NAME: inputls.dyn
$
@$
$
*END
$|||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||
$||                                                                           ||
$||                                                                           ||
$||      END OF LS-DYNA INPUT DATA DECK GENERATED WITH VOZ INCREMENTAL MODULE ||
$||                                                                           ||
$||                                                                           ||
$|||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||
)",
                {files});
}

inline std::string deck(Numbers const & n)
{
    return title() + control(n) + output(n) + frame(n) + blank(n) + hardening(n) + die(n) + punch(n) +
           (n.binderForce > 0.0 ? binder(n) : "") + (n.pads.empty() ? "" : pads(n)) +
           (n.beads.empty() ? "" : beads(n)) + includes(n);
}
} // namespace keywordreference

#endif
