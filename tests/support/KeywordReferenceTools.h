// KeywordReferenceTools.h: the second hand's blank and tools.

#ifndef KEYWORDREFERENCETOOLS_H
#define KEYWORDREFERENCETOOLS_H

#include "KeywordReferenceFront.h"

#include <cmath>
#include <string>

namespace keywordreference
{
inline std::string blank(Numbers const & n)
{
    return page(R"(
$
$||-----------------------------------------------------------------------------
$||                        -  BLANK           DESCRIPTION                     ||
$||-----------------------------------------------------------------------------
$
*SET_PART_LIST
$SET_PART_NAME: BLANK )"
                R"(
$      SID       DA1       DA2       DA3       DA4
@
$     PID1      PID2      PID3      PID4      PID5      PID6      PID7      PID8
@
*PART
$HEADING
 PART PID = 5, PART NAME - BLANK
$      PID     SECID       MID     EOSID      HGID      GRAV    ADPOPT
@@@         0         0         0         1
*MAT_TRANSVERSELY_ANISOTROPIC_ELASTIC_PLASTIC
$MATERIAL NAME: MAT_037 (BLANK)
$      MID        RO         E        PR      SIGY      ETAN         R     HLCID
@@@@@@@@
*SECTION_SHELL
$SECTION_SHELL: blank
$      SID    ELFORM      SHRF       NIP     PROPT   QR/IRID     ICOMP
@         28.3300E-01@
$       T1        T2        T3        T4      NLOC
@@@@
*CONTROL_ADAPTIVE
$  ADPFREQ    ADPTOL    ADPOPT    MAXLVL    TBIRTH    TDEATH     LCADP    IOFLAG
@5.0000E+00         2@   0.0E+00   1.0E+20         0         1
$  ADPSIZE    ADPASS    IREFLG    ADPENE     ADPTH    MEMORY    ORIENT     MAXEL
@@@@@
$  IADPN90
@
)",
                {I(n.blank.set),      I(n.blank.part), I(n.blank.part),  I(n.blank.section), I(n.blank.material),
                 I(n.blank.material), R(n.density),    R(n.young),       R(n.poisson),       R(n.yield),
                 R(n.tangent),        R(n.rValue),     I(n.stressCurve), I(n.blank.section), R(n.blankPoints),
                 R(n.thickness),      R(n.thickness),  R(n.thickness),   R(n.thickness),     R(n.adaptFrequency),
                 I(n.adaptLevel),     R(n.adaptSize),  I(n.adaptPass),   I(n.adaptRefine),   R(n.adaptEnergy),
                 R(n.adaptThickness), I(n.iadpn90)});
}

// The hardening law where the material has no table.
inline double stressAt(Numbers const & n, double strain)
{
    if (strain < 0.02)
        return n.kValue * std::pow(0.02, n.nValue - 1.0) * strain;
    double const stress = n.kValue * std::pow(strain, n.nValue);
    return strain > 0.7 ? stress * ((strain - 0.7) * (n.nValue / 0.7) + 1.0) : stress;
}

inline std::string hardening(Numbers const & n)
{
    std::string text = page(R"(
$
$||-----------------------------------------------------------------------------
$||                                                                           ||
$||                          DEFINE STRESS - STRAIN CURVE FOR BLANK MATERIAL  ||
$||                                                                           ||
$||-----------------------------------------------------------------------------
$
$
*DEFINE_CURVE
$CURVENAME:  STRESS-STRAIN CURVE
$     LCID - Load curve ID to describe effective yield stress versus plastic strain.
$     LCID      SIDR      SCLA      SCLO      OFFA      OFFO
@
$                 A1                  O1
$Plastic Strain,log. Eff.Yield Stress,Pa
)",
                            {I(n.stressCurve)});
    for (auto const & [strain, stress] : n.table)
        text += row(strain, stress);
    double const d = n.maxStrain / (n.steps - 1);
    for (int i = 0; n.table.empty() && i <= n.steps - 1; ++i)
        text += row(i * d, stressAt(n, i * d + 0.02));
    return text + "$\n";
}

struct ToolPage
{
    std::string banner, setName, heading, constraints, contact;
    ToolIds ids;
    double friction, offset;
};

inline std::string tool(Numbers const & n, ToolPage const & t)
{
    std::string const mst = std::fabs(t.offset) < 1e-14 ? R(0.0) : R(-2.0 * std::fabs(t.offset));
    return page(R"(
$
$||-----------------------------------------------------------------------------
@
$||-----------------------------------------------------------------------------
$
*SET_PART_LIST
@
$      SID       DA1       DA2       DA3       DA4
@
$     PID1      PID2      PID3      PID4      PID5      PID6      PID7      PID8
@
*PART
$HEADING
@
$      PID     SECID       MID     EOSID      HGID      GRAV    ADPOPT
@@@
*MAT_RIGID
$MATERIAL NAME: MAT_020
$      MID        RO         E        PR         N    COUPLE         M     ALIAS
@@@@
$      CMO      CON1      CON2
 -1.00E+00@@
$LCO or A1        A2        A3        V1        V2        V3
@
*SECTION_SHELL
$      SID    ELFORM      SHRF       NIP     PROPT   QR/IRID     ICOMP
@         2         1@
$       T1        T2        T3        T4      NLOC
@@@@
*CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE@
$      CID     CONTACT INTERFACE TITLE
@
$     SSID      MSID     SSTYP     MSTYP    SBOXID    MBOXID       SPR       MPR
@@         3         3                             1         1
$       FS        FD        DC        VC       VDC    PENCHK        BT        DT
@                                    20.0
$      SFS       SFM       SST       MST      SFST      SFMT       FSF       VSF
 0.000E+00 0.000E+00 0.000E+00@
$     SOFT    SOFSCL    LCIDAB    MAXPAR    PENTOL     DEPTH     BSORT    FRCFRQ

$   PENMAX    THKOPT    SHLTHK     SNLOG
                             1         1
)",
                {t.banner,
                 t.setName,
                 I(t.ids.set),
                 I(t.ids.part),
                 t.heading,
                 I(t.ids.part),
                 I(t.ids.section),
                 I(t.ids.material),
                 I(t.ids.material),
                 R(n.toolDensity * n.density),
                 R(n.young),
                 R(n.poisson),
                 I(n.vectorId + 1),
                 t.constraints,
                 I(n.vectorId + 1),
                 I(t.ids.section),
                 R(n.toolPoints),
                 R(n.thickness),
                 R(n.thickness),
                 R(n.thickness),
                 R(n.thickness),
                 n.smooth ? "_SMOOTH" : "",
                 t.contact,
                 I(n.blank.part),
                 I(t.ids.part),
                 R(t.friction),
                 mst});
}

inline std::string die(Numbers const & n)
{
    return tool(n, {"$||                        -  DIE             DESCRIPTION                     ||",
                    "$SET_PART_NAME: DIE", " PART ID, PID = 1, PART NAME: DIE", "    111111",
                    "$        3    BLANK/DIE     ", n.die, n.frictionDie, n.offsetDie});
}

inline std::string punch(Numbers const & n)
{
    std::string text = tool(n, {"$||                        -  PUNCH           DESCRIPTION                     ||",
                                "$SET_PART_NAME: PUNCH ", " PART PID = 2, PART NAME: PUNCH", "    110111",
                                "$        2    BLANK/PUNCH ", n.punch, n.frictionPunch, n.offsetPunch});
    text += page(R"(
*BOUNDARY_PRESCRIBED_MOTION_RIGID_LOCAL
$   typeID       DOF       VAD      LCID        SF       VID     DEATH     BIRTH
@         3         0@1.0000E+00@
$
$||-----------------------------------------------------------------------------
$||                                                                           ||
$||                          DEFINE PUNCH VELOCITY CURVE                      ||
$||                                                                           ||
$||-----------------------------------------------------------------------------
$
*DEFINE_CURVE
$CURVENAME:  PUNCH VELOCITY
$     LCID - Load curve ID to describe velocity versus time (100 - punch motion).
$     LCID      SIDR      SCLA      SCLO      OFFA      OFFO
@
$                 A1                  O1
$            Time, s       Velocity, m/s
)",
                 {I(n.punch.part), I(n.punchCurve), I(n.vectorId), I(n.punchCurve)});
    text += row(0.0, 0.0) + row(n.rampTime, n.velocity);
    if (n.plateauTime > 0.001 * n.rampTime)
        text += row(n.plateauTime + n.rampTime, n.velocity);
    return text + row(n.endTime > 0.0 ? n.endTime : 2 * n.rampTime + n.plateauTime, 0.0);
}

inline std::string binder(Numbers const & n)
{
    return tool(n, {"$||                        -  BLANK HOLDER DESCRIPTION                        ||",
                    "$SET_PART_NAME: BINDER or BLANK HOLDER ", " PART PID = 3, PART NAME: BLANK HOLDER", "    110111",
                    "$        4    BLANK/BINDER", n.binder, n.frictionBinder, n.offsetBinder}) +
           page(R"(
*LOAD_RIGID_BODY
$      PID       DOF      LCID        SF       CID        M1        M2        M3
@         3@1.0000E+00@
$
$||-----------------------------------------------------------------------------
$||                                                                           ||
$||                          DEFINE BLANK HOLDER LOAD CURVE                   ||
$||                                                                           ||
$||-----------------------------------------------------------------------------
$
$
*DEFINE_CURVE
$CURVENAME:  BINDERFORCE04        11
$     LCID - Load curve ID to describe load on binder versus time, (LCID=101 >0).
$     LCID      SIDR      SCLA      SCLO      OFFA      OFFO
@
$            Time, s            Force, N
@@@)",
                {I(n.binder.part), I(n.binderCurve), I(n.vectorId + 1), I(n.binderCurve), row(0.0, 0.0),
                 row(n.closeTime, n.binderForce), row(n.endTime, n.binderForce)});
}
} // namespace keywordreference

#endif
