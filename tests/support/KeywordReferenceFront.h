// KeywordReferenceFront.h: the second hand's fields and pages, and the deck up to the stamping frame.

#ifndef KEYWORDREFERENCEFRONT_H
#define KEYWORDREFERENCEFRONT_H

#include "KeywordJob.h"

#include "VOZGeoUtil.h"

#include <cstdio>
#include <string>
#include <vector>

namespace keywordreference
{
using keywordjob::Bead;
using keywordjob::Numbers;
using keywordjob::Pad;
using keywordjob::ToolIds;
using Texts = std::vector<std::string>;

inline std::string R(double value, int precision = 3, int width = 10, bool full = true)
{
    if (width < 7)
        width = 7;
    if (width < precision + 7)
        precision = width - 7;
    if (full && value > 0.0)
        precision += 1;
    if (value >= 1e+100 || value <= -1e-100)
        precision -= 1;
    char text[512];
    std::snprintf(text, sizeof text, "%*.*E", width, precision, value);
    return text;
}
inline std::string I(int value, int width = 10)
{
    char text[512];
    std::snprintf(text, sizeof text, "%*i", width, value);
    return text;
}
inline std::string row(double x, double y)
{
    return R(x, 9, 20) + R(y, 9, 20) + "\n";
}

// The page behind its first line end, each "@" replaced by the next field.
inline std::string page(std::string const & text, Texts const & fields = {})
{
    std::string filled;
    std::size_t next = 0;
    for (char const c : text.substr(1))
        filled += c == '@' ? fields.at(next++) : std::string(1, c);
    return next == fields.size() ? filled : "TOO MANY FIELDS";
}

inline std::string title()
{
    std::string text = page(R"(
$|||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||
$||                                                                           ||
$||                                                                           ||
$||                                                                           ||
$||      LS-DYNA INPUT DATA DECK IS GENERATED WITH VOZ INCREMENTAL MODULE     ||
$||                                                                           ||
$||                                                                           ||
$||               The International System of Units (SI) is used.             ||
$||                                                                           ||
$||    Base units   : meter  (m) length, kilogram (kg) mass, second (s) time. ||
$||    Derived units: Newton  N  force  kg@(m/s2).                            ||
$||                   Pascal Pa  pressure, stress N/m2.                       ||
$||                   Joule   J  energy.                                      ||
$||                   Watt    W  power.                                       ||
$||    Supplementary: radian rad for plane angle.                             ||
$||                                                                           ||
$||                                                                           ||
$|||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||
$
*KEYWORD
$
$||=============================================================================
$||                                                                           ||
$||                   (1)    TITLE CARD.                                      ||
$||                                                                           ||
$||=============================================================================
$
*TITLE
 VOZ Users Incremental Solution
$
)",
                            {std::string(1, static_cast<char>(0xB7))});
    return text;
}

inline std::string control(Numbers const & n)
{
    std::string text = page(R"(
$
$||=============================================================================
$||                                                                           ||
$||                   (2)    CONTROL CARDS                                    ||
$||                                                                           ||
$||=============================================================================
*CONTROL_TERMINATION
$   ENDTIM    ENDCYC     DTMIN    ENDNEG    ENDMAS
@
*CONTROL_TIMESTEP
$   DTINIT    TSSFAC      ISDO    TSLIMT     DT2MS      LCTM     ERODE     MS1ST
@@@@@
)",
                            {R(n.endTime), R(0.0), R(0.9), I(0), R(0.0), n.massScaling ? R(-n.massStep) : ""});
    if (n.massScaling)
        text += "$   DT2MSF   DT2MCLC     IMSCL\n                             1\n";
    if (n.hourglass != 0)
        text += "*CONTROL_HOURGLASS\n$      IHQ        QH\n" + I(n.hourglass) + "\n";
    return text + page(R"(
*CONTROL_SHELL
$   WRPANG     ESORT     IRNXX    ISTUPD    THEORY       BWC     MITER      PROJ
                   1                   1
*CONTROL_CONTACT
$   SLSFAC    RWPNAL    ISLCHK    SHLTHK    PENOPT    THKCHG     ORIEN    ENMASS
       0.1     0.000         2         1         4         0         1         0
$   USRSTR    USRFAC     NSBCS    INTERM     XPENE     SSTHK      ECDT   TIEDPRJ
                            10
*CONTROL_ENERGY
$     HGEN      RWEN    SLNTEN     RYLEN
         2         1         2
*CONTROL_OUTPUT
$    NPOPT    NEECHO    NREFUP    IACCOP     OPIFS    IPNINT    IKEDIT )"
                       R"(
         1
)");
}

inline std::string output(Numbers const & n)
{
    std::string text = page(R"(
$
$||-----------------------------------------------------------------------------
$||                     -    DATABASE CONTROL CARDS FOR ASCII FILE            ||
$||-----------------------------------------------------------------------------
$
)");
    for (char const * name : {"MATSUM", "GLSTAT", "RCFORC", "SLEOUT", "RBDOUT"})
        if (n.asciiInterval > 0.0)
            text += std::string("*DATABASE_") + name + "\n" + R(n.asciiInterval) + "\n";
    text += page(R"(
*INTERFACE_SPRINGBACK_DYNA3D
@
$
$||-----------------------------------------------------------------------------
$||                     -  DATABASE CONTROL CARDS FOR BINARY FILE             ||
$||-----------------------------------------------------------------------------
$
*DATABASE_EXTENT_BINARY
$    NEIPH     NEIPS    MAXINT    STRFLG    SIGFLG    EPSFLG    RLTFLG    ENGFLG
                             5         1
$   CMPFLG    IEVERP    BEAMIP     DCOMP      SHGE     STSSZ
                   1                   2
*DATABASE_BINARY_D3PLOT
$  DT/CYCL      LCDT    NOBEAM
                  44
$    IOOPT
         3
$
$||-----------------------------------------------------------------------------
$||                     -    OUTPUT TIME POINTS                               ||
$||-----------------------------------------------------------------------------
$
*DEFINE_CURVE
$CURVENAME:  D3PLOT OUTPUT TIME POINTS
$     LCID      SIDR      SCLA      SCLO      OFFA      OFFO
        44
$                 A1                  O1@
$            Time, s              (not used)
)",
                 {I(n.blank.set), "     "});
    text += R(0.0, 9, 20) + R(1.0, 1, 20) + "\n";
    for (std::size_t i = 1; i + 2 <= n.outputTimes.size() && i <= n.outputTimes.size() - 2; ++i)
        text += R(n.outputTimes[i], 9, 20) + R(static_cast<double>(i + 1), 1, 20) + "\n";
    return text + page(R"(
$
$||-----------------------------------------------------------------------------
$||                     -    CONTROL BULK VISCOSITY                           ||
$||-----------------------------------------------------------------------------
$
*CONTROL_BULK_VISCOSITY
$      Q1         Q2     Type
      1.5       0.06       -1
)");
}

inline std::string frame(Numbers const & n)
{
    double const origin[3] = {0, 0, 0};
    double matrix[9];
    double x[3] = {1, 0, 0};
    double y[3] = {0, 1, 0};
    VOZGeoUtil::EvalLocalCoordSystemMatrix(n.tip, matrix);
    VOZGeoUtil::ConvertCoordLocalToGlobal(origin, matrix, x);
    VOZGeoUtil::ConvertCoordLocalToGlobal(origin, matrix, y);
    return page(R"(
$
$||=============================================================================
$||                          DEFINE TIPPING COORDINATE SYSTEM AS LOCAL        ||
$||=============================================================================
$
*DEFINE_VECTOR
$   typeID        XT        YT        ZT        XH        YH        ZH       CID
@ 0.000E+00 0.000E+00 0.000E+00@@@         0
$
$
*DEFINE_COORDINATE_SYSTEM
$      CID        X0        Y0        Z0        XL        YL        ZL
@ 0.000E+00 0.000E+00 0.000E+00@@@
$       XP        YP        ZP
@@@
$
$
$ Vector directed opposite to tipping vector
*DEFINE_VECTOR
$   typeID        XT        YT        ZT        XH        YH        ZH       CID
@ 0.000E+00 0.000E+00 0.000E+00@@@         0
$
$
$||=============================================================================
$||                                                                           ||
$||                    (3)   DEFINE BLANK/TOOLING FOR INCREMENTAL VOZ         ||
$||                                                                           ||
$||=============================================================================
$
)",
                {I(n.vectorId), R(n.tip[0]), R(n.tip[1]), R(n.tip[2]), I(n.vectorId + 1), R(x[0]), R(x[1]), R(x[2]),
                 R(y[0]), R(y[1]), R(y[2]), I(n.vectorId + 2), R(0 - n.tip[0]), R(0 - n.tip[1]), R(0 - n.tip[2])});
}
} // namespace keywordreference

#endif
