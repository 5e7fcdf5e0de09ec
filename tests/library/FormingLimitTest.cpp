// FormingLimitTest.cpp: FLD0 by its three entries, and the curves.

#include "FormingLimitCases.h"

#include "Material.h"
#include "RecordBytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>

namespace
{
double const kCapped = 356.7 * 0.118 + 23.36; // the bracket of FLD0 at the cap of the thickness
} // namespace

static_assert(std::has_virtual_destructor_v<FormingLimit> && sizeof(FormingLimit) == 64);
static_assert(!std::is_polymorphic_v<FldZero> && sizeof(FldZero) == 16);

TEST(FormingLimit, FieldsStandInTheirOrderBehindTheOneVirtualOperation)
{
    FormingLimit const limit(1.5, 0.22, 0.001, 10.0, 2.0, 33.0, 1);
    EXPECT_EQ(valueAt<double>(&limit, 8), limit.thickness());
    EXPECT_EQ(valueAt<double>(&limit, 16), limit.rBar());
    EXPECT_EQ(valueAt<double>(&limit, 24), limit.exponent());
    EXPECT_EQ(valueAt<double>(&limit, 32), limit.safetyMargin());
    EXPECT_EQ(valueAt<double>(&limit, 40), limit.planeStrainTol());
    EXPECT_EQ(valueAt<double>(&limit, 48), limit.fldZero());
    EXPECT_EQ(valueAt<int>(&limit, 56), limit.type());
}

TEST(FormingLimit, DefaultIsAllZero)
{
    FormingLimit const limit;
    EXPECT_EQ(limit.thickness(), 0.0);
    EXPECT_EQ(limit.rBar(), 0.0);
    EXPECT_EQ(limit.exponent(), 0.0);
    EXPECT_EQ(limit.safetyMargin(), 0.0);
    EXPECT_EQ(limit.planeStrainTol(), 0.0);
    EXPECT_EQ(limit.fldZero(), 0.0);
    EXPECT_EQ(limit.type(), 0);
}

TEST(FormingLimit, TakesItsSevenValuesInOrder)
{
    FormingLimit const limit(1.5, 0.22, 0.001, 10.0, 2.0, 33.0, 1);
    EXPECT_EQ(limit.rBar(), 1.5);
    EXPECT_EQ(limit.exponent(), 0.22);
    EXPECT_EQ(limit.thickness(), 0.001);
    EXPECT_EQ(limit.safetyMargin(), 10.0);
    EXPECT_EQ(limit.planeStrainTol(), 2.0);
    EXPECT_EQ(limit.fldZero(), 33.0);
    EXPECT_EQ(limit.type(), 1);
}

TEST(FormingLimit, ComputesFldZeroOnlyFromZeroAndTypeZero)
{
    double const expected = (356.7 * (0.001 * 39.37007874015748) + 23.36) * 0.22 / 0.2116;
    EXPECT_EQ(FormingLimit(1.5, 0.22, 0.001, 10.0, 2.0, 0.0, 0).fldZero(), expected);
    EXPECT_EQ(FormingLimit(1.5, 0.22, 0.001, 10.0, 2.0, 0.0, 1).fldZero(), 0.0);
    EXPECT_EQ(FormingLimit(1.5, 0.22, 0.001, 10.0, 2.0, 12.0, 0).fldZero(), 12.0);
    EXPECT_EQ(FormingLimit(1.5, 0.22, 0.001, 10.0, 2.0, -1.0, 0).fldZero(), -1.0);
}

TEST(FormingLimit, ReadsItsThicknessAsMetresSoThatMillimetresLandOnTheCap)
{
    FormingLimit const millimetre(1.5, 0.2116, 1.0, 10.0, 2.0, 0.0, 0);
    EXPECT_DOUBLE_EQ(millimetre.fldZero(), kCapped);
    FormingLimit const belowCap(1.5, 0.2116, 0.002, 10.0, 2.0, 0.0, 0);
    EXPECT_DOUBLE_EQ(belowCap.fldZero(), 356.7 * 0.002 * 39.37007874015748 + 23.36);
}

TEST(FormingLimit, TakesThicknessAnisotropyAndExponentFromAMaterial)
{
    Material const material(0.8, 1.9, 0.23, 540.0, 160.0);
    FormingLimit const limit(material, 9.0, 3.0, 0.0, 0);
    EXPECT_EQ(limit.thickness(), 0.8);
    EXPECT_EQ(limit.rBar(), 1.9);
    EXPECT_EQ(limit.exponent(), 0.23);
    EXPECT_EQ(limit.safetyMargin(), 9.0);
    EXPECT_EQ(limit.planeStrainTol(), 3.0);
    EXPECT_DOUBLE_EQ(limit.fldZero(), kCapped * 0.23 / 0.2116);
    EXPECT_EQ(FormingLimit(material, 9.0, 3.0, 0.0, 1).fldZero(), 0.0);
    EXPECT_EQ(FormingLimit(material, 9.0, 3.0, 41.0, 0).fldZero(), 41.0);
}

TEST(FormingLimit, TheMaterialsExponentCountsFromFourPointsOn)
{
    FormingLimit limit(1.0, 0.1, 1.0, 10.0, 5.0, 50.0, 0);
    limit.computeZero(Material(1.0, 1.0, 0.3, 500.0, 200.0, 3, 0));
    EXPECT_DOUBLE_EQ(limit.fldZero(), kCapped * 0.1 / 0.2116);
    limit.computeZero(Material(1.0, 1.0, 0.3, 500.0, 200.0, 4, 0));
    EXPECT_DOUBLE_EQ(limit.fldZero(), kCapped * 0.3 / 0.2116);
    limit.computeZero();
    EXPECT_DOUBLE_EQ(limit.fldZero(), kCapped * 0.1 / 0.2116);
}

// The thickness is the limit's own, whatever the material's.
TEST(FormingLimit, ComputeZeroOfAMaterialKeepsItsOwnThickness)
{
    FormingLimit limit(1.0, 0.2116, 0.001, 10.0, 5.0, 50.0, 0);
    limit.computeZero(Material(3.0, 1.0, 0.3, 500.0, 200.0));
    EXPECT_DOUBLE_EQ(limit.fldZero(), 356.7 * 0.001 * 39.37007874015748 + 23.36);
}

TEST(FormingLimit, CopiesTakeAllFields)
{
    FormingLimit const source(1.5, 0.22, 0.001, 10.0, 2.0, 33.0, 1);
    FormingLimit const copy(source);
    FormingLimit assigned;
    assigned = source;
    for (FormingLimit const * limit : std::initializer_list<FormingLimit const *>{&copy, &assigned})
    {
        EXPECT_EQ(limit->rBar(), 1.5);
        EXPECT_EQ(limit->exponent(), 0.22);
        EXPECT_EQ(limit->thickness(), 0.001);
        EXPECT_EQ(limit->safetyMargin(), 10.0);
        EXPECT_EQ(limit->planeStrainTol(), 2.0);
        EXPECT_EQ(limit->fldZero(), 33.0);
        EXPECT_EQ(limit->type(), 1);
    }
}

TEST(FormingLimit, StrainConversionsCutAtNinetyNinePercent)
{
    FormingLimit const limit;
    EXPECT_EQ(limit.engToTrueStrain(0.0), 0.0);
    EXPECT_EQ(limit.engToTrueStrain(40.0), std::log(1.4));
    EXPECT_NEAR(limit.engToTrueStrain(-98.9), std::log(0.011), 1e-12);
    EXPECT_EQ(limit.engToTrueStrain(-99.0), -5.0);
    EXPECT_EQ(limit.engToTrueStrain(-150.0), -5.0);
    EXPECT_DOUBLE_EQ(limit.trueToEngStrain(std::log(1.4)), 40.0);
}

TEST(FormingLimit, UniaxialMinorStrainsFollowTheAnisotropy)
{
    FormingLimit const limit(2.0, 0.2, 1.0, 10.0, 5.0, 30.0, 0);
    EXPECT_DOUBLE_EQ(limit.uniaxialTensionMinor(30.0), -20.0);
    EXPECT_DOUBLE_EQ(limit.uniaxialCompressionMinor(30.0), -45.0);
}

TEST(FormingLimit, FactorsChangeAtMinorZeroAndTypeHalvesTheFirst)
{
    double a = 0.0;
    double b = 0.0;
    limitWith(30.0).factors(1e-9, a, b);
    EXPECT_EQ(a, 0.784854);
    EXPECT_EQ(b, -0.008565);
    limitWith(30.0).factors(0.0, a, b);
    EXPECT_EQ(a, -0.627354);
    EXPECT_EQ(b, 0.042236);
    limitWith(30.0, 1).factors(1.0, a, b);
    EXPECT_EQ(a, 0.784854 / 2.0);
    EXPECT_EQ(b, -0.008565);
    limitWith(30.0, 1).factors(-1.0, a, b);
    EXPECT_EQ(a, -0.627354 / 2.0);
    EXPECT_EQ(b, 0.042236);
    limitWith(30.0, 2).factors(1.0, a, b); // only type 1 halves
    EXPECT_EQ(a, 0.784854);
}

TEST(FormingLimit, CurvesAreParabolasAMarginApart)
{
    FormingLimit const limit = limitWith(30.0);
    EXPECT_EQ(limit.limitCurveMajor(0.0), 30.0);
    EXPECT_EQ(limit.safetyCurveMajor(0.0), 20.0);
    EXPECT_DOUBLE_EQ(limit.limitCurveMajor(4.0), (-0.008565 * 4.0 + 0.784854) * 4.0 + 30.0);
    EXPECT_DOUBLE_EQ(limit.limitCurveMajor(-4.0), (0.042236 * -4.0 - 0.627354) * -4.0 + 30.0);
    EXPECT_DOUBLE_EQ(limit.safetyCurveMajor(-4.0), (0.042236 * -4.0 - 0.627354) * -4.0 + 20.0);
}

TEST(FldZero, StartsAtOneAndStandard)
{
    FldZero const zero;
    EXPECT_EQ(zero.zero(), 1.0);
    EXPECT_EQ(zero.type(), 0);
}

TEST(FldZero, ConstructionTakesTheValueAsGiven)
{
    FldZero const zero(150.0);
    EXPECT_EQ(zero.zero(), 150.0);
    EXPECT_EQ(zero.type(), 0);
    FldZero const copy(zero);
    EXPECT_EQ(copy.zero(), 150.0);
}

TEST(FldZero, RefusesWhatLiesOutsideAHundredPercent)
{
    FldZero zero;
    for (double const kept : {0.0, 37.5, 100.0})
    {
        zero.zero(kept);
        EXPECT_EQ(zero.zero(), kept);
    }
    for (double const refused : {150.0, 100.0000001, -1e-9, std::nan("")})
    {
        zero.zero(50.0);
        zero.zero(refused);
        EXPECT_EQ(zero.zero(), 1.0) << refused;
    }
}

TEST(FldZero, KnowsTwoTypes)
{
    FldZero zero;
    zero.type(1);
    EXPECT_EQ(zero.type(), 1);
    zero.type(2);
    EXPECT_EQ(zero.type(), 0);
    zero.type(1);
    zero.type(-1);
    EXPECT_EQ(zero.type(), 0);
    zero.type(1);
    zero.type(0);
    EXPECT_EQ(zero.type(), 0);
}

TEST(FldZero, HonoursMillimetresUpToTheCap)
{
    EXPECT_DOUBLE_EQ(FldZero::CalculateFLD0(1.0, 0.2116), 356.7 / 25.4 + 23.36);
    EXPECT_EQ(FldZero::CalculateFLD0(1.0, 0.19), (356.7 * (1.0 / 25.4) + 23.36) * 0.19 / 0.2116);
    EXPECT_DOUBLE_EQ(FldZero::CalculateFLD0(2.9972, 0.2116), kCapped); // 0.118 inches
    EXPECT_DOUBLE_EQ(FldZero::CalculateFLD0(50.0, 0.2116), kCapped);
}
