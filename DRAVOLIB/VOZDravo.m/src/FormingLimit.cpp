// FormingLimit.cpp: the forming limit diagram and the two classifications against it.
//
// With t the thickness in inches, at most 0.118, and n the hardening exponent, the intercept at plane strain is
//
//     FLD0 = (356.7 t + 23.36) n / 0.2116
//
// and the limit curve (b minor + a) minor + FLD0, with one pair a, b on either side of it. The three entries to FLD0
// get t and n in different ways, which stay apart.

#include "FormingLimit.h"

#include "Material.h"
#include "VOZUserUnitBase.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double kInchesPerMetre = 39.37007874015748;
constexpr double kThicknessCap = 0.118; // inches
constexpr int kPointsThatOverrule = 4;  // a table this long makes the material's own exponent count

constexpr double kCutPercent = -99.0;
constexpr double kTrueStrainAtCut = -5.0;

constexpr int kNoZone = -1;
enum Forming
{
    kBiaxialStretching = 0,
    kPlaneStrain = 1,
    kToUniaxialTension = 2,
    kToPureShear = 3,
    kToUniaxialCompression = 4,
    kBeyondUniaxialCompression = 5
};
enum Safety
{
    kFailure = 0,
    kMarginal = 1,
    kSafe = 2,
    kCompression = 3,
    kStrongCompression = 4
};

double FldZeroOf(double thicknessInches, double n)
{
    return (356.7 * std::min(thicknessInches, kThicknessCap) + 23.36) * n / 0.2116;
}

int FormingZone(FormingLimit const & limit, double e1, double e2)
{
    if (e1 < 0.0)
        return e2 > 0.0 ? kNoZone : kBeyondUniaxialCompression;
    if (e1 * limit.planeStrainTol() / 100.0 >= std::fabs(e2))
        return kPlaneStrain;
    if (e2 >= 0.0)
        return e1 < e2 ? kNoZone : kBiaxialStretching;
    if (e2 > limit.uniaxialTensionMinor(e1))
        return kToUniaxialTension;
    if (e2 > -e1)
        return kToPureShear;
    if (e2 > limit.uniaxialCompressionMinor(e1))
        return kToUniaxialCompression;
    return kBeyondUniaxialCompression;
}

// The two tests that can overrule a zone; kNoZone: no answer. A limit of 0 switches its test off, margin and all.
struct StrainTests
{
    double e1, e2; // true
    double thinningLimit, thinningMargin, shearLimit, shearMargin;

    int Thinning() const
    {
        double const e3 = -(e1 + e2);
        if (thinningLimit == 0.0)
            return kNoZone;
        if (thinningLimit > e3)
            return kFailure;
        return thinningMargin > e3 ? kMarginal : kNoZone;
    }

    int Shear() const
    {
        if (shearLimit == 0.0)
            return kNoZone;
        if (e1 > 2.0 * std::log(shearLimit + 1.0) + e2)
            return kFailure;
        return e1 > 2.0 * std::log(shearMargin + 1.0) + e2 ? kMarginal : kNoZone;
    }

    int ThinningThenShear() const
    {
        int const answer = Thinning();
        return answer != kNoZone ? answer : Shear();
    }
};

int FirstAnswer(int answer, int otherwise)
{
    return answer != kNoZone ? answer : otherwise;
}
} // namespace

FormingLimit::FormingLimit()
    : mThickness(0.0), mRBar(0.0), mExponent(0.0), mSafetyMargin(0.0), mPlaneStrainTol(0.0), mFldZero(0.0), mType(0)
{
}

FormingLimit::FormingLimit(double i_rBar, double i_exponent, double i_thickness, double i_safetyMargin,
                           double i_planeStrainTol, double i_fldZero, int i_type)
    : mThickness(i_thickness), mRBar(i_rBar), mExponent(i_exponent), mSafetyMargin(i_safetyMargin),
      mPlaneStrainTol(i_planeStrainTol), mFldZero(i_fldZero), mType(i_type)
{
    if (mFldZero == 0.0 && mType == 0)
        computeZero();
}

FormingLimit::FormingLimit(Material const & i_material, double i_safetyMargin, double i_planeStrainTol,
                           double i_fldZero, int i_type)
    : mThickness(i_material.thickness()), mRBar(i_material.rBar()), mExponent(i_material.nvalue()),
      mSafetyMargin(i_safetyMargin), mPlaneStrainTol(i_planeStrainTol), mFldZero(i_fldZero), mType(i_type)
{
    if (mFldZero == 0.0 && mType == 0)
        computeZero(i_material);
}

FormingLimit::~FormingLimit() = default;

void FormingLimit::computeZero()
{
    mFldZero = FldZeroOf(mThickness * kInchesPerMetre, mExponent);
}

void FormingLimit::computeZero(Material const & i_material)
{
    double const n = i_material.numSSPoints() < kPointsThatOverrule ? mExponent : i_material.nvalue();
    mFldZero = FldZeroOf(mThickness * kInchesPerMetre, n);
}

double FormingLimit::engToTrueStrain(double i_percent) const
{
    return i_percent > kCutPercent ? std::log(i_percent / 100.0 + 1.0) : kTrueStrainAtCut;
}

double FormingLimit::trueToEngStrain(double i_true) const
{
    return (std::exp(i_true) - 1.0) * 100.0;
}

double FormingLimit::uniaxialTensionMinor(double i_major) const
{
    return -mRBar * i_major / (mRBar + 1.0);
}

double FormingLimit::uniaxialCompressionMinor(double i_major) const
{
    return -(mRBar + 1.0) * i_major / mRBar;
}

void FormingLimit::factors(double i_minor, double & o_a, double & o_b) const
{
    bool const stretching = i_minor > 0.0;
    o_a = stretching ? 0.784854 : -0.627354;
    o_b = stretching ? -0.008565 : 0.042236;
    if (mType == 1)
        o_a /= 2.0; // never o_b
}

double FormingLimit::limitCurveMajor(double i_minor) const
{
    double a;
    double b;
    factors(i_minor, a, b);
    return (b * i_minor + a) * i_minor + mFldZero;
}

double FormingLimit::safetyCurveMajor(double i_minor) const
{
    double a;
    double b;
    factors(i_minor, a, b);
    return (b * i_minor + a) * i_minor + (mFldZero - mSafetyMargin);
}

// A point above the limit curve is a failure whatever its thinning; in the compression zones thinning is not judged.
void FormingLimit::zones(double i_major, double i_minor, int & o_forming, int & o_safety, double i_thinningLimit,
                         double i_thinningMargin, double i_shearLimit, double i_shearMargin, double) const
{
    StrainTests const tests{engToTrueStrain(i_major),
                            engToTrueStrain(i_minor),
                            i_thinningLimit,
                            i_thinningMargin,
                            i_shearLimit,
                            i_shearMargin};
    o_forming = FormingZone(*this, tests.e1, tests.e2);
    if (o_forming == kNoZone)
        o_safety = kNoZone;
    else if (i_major >= limitCurveMajor(i_minor))
        o_safety = kFailure;
    else if (i_major >= safetyCurveMajor(i_minor))
        o_safety = FirstAnswer(tests.ThinningThenShear(), kMarginal);
    else if (o_forming == kBeyondUniaxialCompression)
        o_safety = FirstAnswer(tests.Shear(), kStrongCompression);
    else if (o_forming == kToUniaxialCompression)
        o_safety = FirstAnswer(tests.Shear(), kCompression);
    else
        o_safety = FirstAnswer(tests.ThinningThenShear(), kSafe);
}

void FldZero::zero(double i_value)
{
    mZero = i_value >= 0.0 && i_value <= 100.0 ? i_value : 1.0;
}

void FldZero::type(int i_value)
{
    mType = i_value == 0 || i_value == 1 ? i_value : 0;
}

double FldZero::CalculateFLD0(double i_thicknessMm, double i_n)
{
    return FldZeroOf(VOZUserUnitBase::MmToInch(i_thicknessMm), i_n);
}
