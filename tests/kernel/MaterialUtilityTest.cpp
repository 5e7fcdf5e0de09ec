// MaterialUtilityTest.cpp: what the kernel's zones have beyond those of the library, which are compared in
// tests/library/KernelZonesTest.

#include "VOZMaterial.h"
#include "VOZMaterialUtility.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

namespace
{

struct Destroyed
{
    void operator()(VOZMaterial * material) const { material->Destroy(); }
};

std::unique_ptr<VOZMaterial, Destroyed> material()
{
    std::unique_ptr<VOZMaterial, Destroyed> made(VOZMaterial::Create());
    made->m_dFldZero = 30.0;
    made->m_dSafetyMargin = 10.0;
    made->m_dPlaneStrainTol = 5.0;
    return made;
}

struct Codes
{
    int forming = -99, safety = -99;
};

Codes codesOf(VOZMaterial const * given, double major, double minor)
{
    Codes codes;
    VOZMaterialUtility::EvalFormingSafetyZones(given, major, minor, codes.forming, codes.safety);
    return codes;
}

TEST(MaterialUtility, ASheetWithoutStrainHasNoStateAndIsSafeForWantOfIt)
{
    auto const steel = material();
    for (double major : {0.0, 1.0e-12, 1.0e-4})
    {
        Codes const codes = codesOf(steel.get(), major, 0.0);
        EXPECT_EQ(codes.forming, 6);
        EXPECT_EQ(codes.safety, 5);
    }
    Codes const stretched = codesOf(steel.get(), 1.01e-4, 0.0);
    EXPECT_EQ(stretched.forming, 1);
    EXPECT_EQ(stretched.safety, 2);
}

TEST(MaterialUtility, OnlyPlaneStrainAndSafeGiveWayToTheTwoCodesMore)
{
    auto const steel = material();
    Codes codes = codesOf(steel.get(), 1.0e-5, 0.9e-5); // stretched both ways, though hardly
    EXPECT_EQ(codes.forming, 0);
    EXPECT_EQ(codes.safety, 5);
    codes = codesOf(steel.get(), 1.0e-5, -2.0e-5); // r = 1.4: compression
    EXPECT_EQ(codes.forming, 5);
    EXPECT_EQ(codes.safety, 4);
    steel->m_dSafetyMargin = 30.0; // the marginal band reaches down to no strain
    codes = codesOf(steel.get(), 0.0, 0.0);
    EXPECT_EQ(codes.forming, 6);
    EXPECT_EQ(codes.safety, 1);
}

TEST(MaterialUtility, NoMaterialAndNoNumberHaveNoZone)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    auto const steel = material();
    for (Codes const codes :
         {codesOf(nullptr, 0.1, 0.0), codesOf(steel.get(), nan, 0.0), codesOf(steel.get(), 0.1, nan)})
    {
        EXPECT_EQ(codes.forming, -1);
        EXPECT_EQ(codes.safety, -1);
    }
    double const infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(codesOf(steel.get(), infinity, 0.0).safety, 0);
    EXPECT_EQ(codesOf(steel.get(), -infinity, -infinity).forming, 5);
}

// FLD0 from thickness in metres and exponent: (356.7 t[in] + 23.36) n / 0.2116, t at most 0.118.
TEST(MaterialUtility, FldZeroIsComputedOnlyWhereItIsZeroAndTheTypeStandard)
{
    auto const steel = material();
    steel->m_dFldZero = 0.0;
    steel->m_dSafetyMargin = 0.0;
    for (double thickness : {0.0005, 0.001, 0.005})
    {
        steel->m_dThickness = thickness;
        double const inches = std::fmin(thickness / 0.0254, 0.118);
        double const limit = (356.7 * inches + 23.36) * steel->m_dNValue / 0.2116;
        EXPECT_EQ(codesOf(steel.get(), std::log1p(0.01 * limit * (1.0 + 1e-9)), 0.0).safety, 0);
        EXPECT_EQ(codesOf(steel.get(), std::log1p(0.01 * limit * (1.0 - 1e-9)), 0.0).safety, 2);
    }
    steel->m_nFldType = 1; // stays 0: all strain is failure
    EXPECT_EQ(codesOf(steel.get(), 1.0e-6, 0.0).safety, 0);
}

} // namespace
