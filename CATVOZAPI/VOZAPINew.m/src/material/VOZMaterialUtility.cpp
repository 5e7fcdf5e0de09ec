// VOZMaterialUtility.cpp: the forming limit diagram over log strains.
//
// With t the thickness in inches, at most 0.118, and n the hardening exponent the limit curve is
//
//     (b minor + a) minor + FLD0,   FLD0 = (356.7 t + 23.36) n / 0.2116
//
// in engineering percent. The strains arrive as logarithms of what was percent before: a point that this way puts a
// rounding error below a curve still counts as on it.

#include "VOZMaterialUtility.h"

#include "VOZMaterial.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kInchesPerMetre = 39.37007874015748;
constexpr double kThicknessCap = 0.118; // inches
constexpr double kRounding = 1.0e-12;   // of 100 % plus the strains
constexpr double kUnstrained = 1.0e-4;  // log strain: a tenth of what makes sheet yield

constexpr int kNoZone = -1;
enum Forming
{
    kBiaxialStretching = 0,
    kPlaneStrain = 1,
    kToUniaxialTension = 2,
    kToPureShear = 3,
    kToUniaxialCompression = 4,
    kBeyondUniaxialCompression = 5,
    kNoState = 6
};
enum Safety
{
    kFailure = 0,
    kMarginal = 1,
    kSafe = 2,
    kCompression = 3,
    kStrongCompression = 4,
    kIdle = 5
};

struct StrainPair // log
{
    double major, minor;

    bool IsUnstrained() const { return major <= kUnstrained && std::fabs(minor) <= kUnstrained; }
};

double FldZeroOf(VOZMaterial const & i_material)
{
    if (i_material.m_dFldZero != 0.0 || i_material.m_nFldType != 0)
        return i_material.m_dFldZero;
    double const thickness = std::min(i_material.m_dThickness * kInchesPerMetre, kThicknessCap);
    return (356.7 * thickness + 23.36) * i_material.m_dNValue / 0.2116;
}

int FormingZone(VOZMaterial const & i_material, StrainPair i_strain)
{
    double const major = i_strain.major;
    double const minor = i_strain.minor;
    double const r = i_material.m_dRValue;
    if (major < 0.0)
        return minor > 0.0 ? kNoZone : kBeyondUniaxialCompression;
    if (major * i_material.m_dPlaneStrainTol / 100.0 >= std::fabs(minor))
        return kPlaneStrain;
    if (minor >= 0.0)
        return major < minor ? kNoZone : kBiaxialStretching;
    if (minor > -r * major / (r + 1.0))
        return kToUniaxialTension;
    if (minor > -major)
        return kToPureShear;
    if (minor > -(r + 1.0) * major / r)
        return kToUniaxialCompression;
    return kBeyondUniaxialCompression;
}

// How far the major strain lies above the limit curve, engineering percent.
double AboveLimit(VOZMaterial const & i_material, StrainPair i_strain)
{
    double const major = 100.0 * std::expm1(i_strain.major);
    double const minor = 100.0 * std::expm1(i_strain.minor);
    bool const bStretching = minor > 0.0;
    double a = bStretching ? 0.784854 : -0.627354;
    double const b = bStretching ? -0.008565 : 0.042236;
    if (i_material.m_nFldType == 1)
        a /= 2.0; // never b
    return major - ((b * minor + a) * minor + FldZeroOf(i_material)) +
           kRounding * (100.0 + std::fabs(major) + std::fabs(minor));
}

// The two tests that can overrule a zone; kNoZone: no answer. A limit of 0 switches its test off, margin and all.
int ThinningAnswer(VOZMaterial const & i_material, StrainPair i_strain)
{
    double const thinning = -(i_strain.major + i_strain.minor);
    if (i_material.m_dThinningLimit == 0.0)
        return kNoZone;
    if (i_material.m_dThinningLimit > thinning)
        return kFailure;
    return i_material.m_dThinningMargin > thinning ? kMarginal : kNoZone;
}

int ShearAnswer(VOZMaterial const & i_material, StrainPair i_strain)
{
    auto const exceeds = [=](double limit) { return i_strain.major > 2.0 * std::log(limit + 1.0) + i_strain.minor; };
    if (i_material.m_dShearLimit == 0.0)
        return kNoZone;
    if (exceeds(i_material.m_dShearLimit))
        return kFailure;
    return exceeds(i_material.m_dShearMargin) ? kMarginal : kNoZone;
}

int SafetyZone(VOZMaterial const & i_material, StrainPair i_strain, int i_nForming)
{
    if (i_nForming == kNoZone)
        return kNoZone;
    double const above = AboveLimit(i_material, i_strain);
    if (above >= 0.0)
        return kFailure;
    bool const bMarginal = above + i_material.m_dSafetyMargin >= 0.0;
    bool const bCompressed =
        !bMarginal && (i_nForming == kBeyondUniaxialCompression || i_nForming == kToUniaxialCompression);
    int answer = bCompressed ? kNoZone : ThinningAnswer(i_material, i_strain); // compression is not judged on thinning
    if (answer == kNoZone)
        answer = ShearAnswer(i_material, i_strain);
    if (answer != kNoZone)
        return answer;
    if (bMarginal)
        return kMarginal;
    if (bCompressed)
        return i_nForming == kToUniaxialCompression ? kCompression : kStrongCompression;
    return i_strain.IsUnstrained() ? kIdle : kSafe;
}

} // namespace

void VOZMaterialUtility::EvalFormingSafetyZones(VOZMaterial const * i_pMaterial, double i_dMajor, double i_dMinor,
                                                int & o_nForming, int & o_nSafety)
{
    o_nForming = o_nSafety = kNoZone;
    if (!i_pMaterial || std::isnan(i_dMajor) || std::isnan(i_dMinor))
        return;
    StrainPair const strain{i_dMajor, i_dMinor};
    o_nForming = FormingZone(*i_pMaterial, strain);
    o_nSafety = SafetyZone(*i_pMaterial, strain, o_nForming);
    if (o_nForming == kPlaneStrain && strain.IsUnstrained())
        o_nForming = kNoState;
}
