// HardeningCurveTest.cpp. The numbers are those of the mild steel of the square-cup benchmark (K 565.32 MPa, e0
// 0.007117, n 0.2589).

#include "material/HardeningCurve.h"
#include "OneStepMeshes.h"

#include <gtest/gtest.h>

#include <random>

using namespace voz::material;
using onesteptest::mildSteel;
using voz::onestep::MaterialLaw;

namespace
{

MaterialLaw tableLaw(std::vector<std::array<double, 2>> i_points)
{
    MaterialLaw law = mildSteel();
    law.table = std::move(i_points);
    return law;
}

} // namespace

TEST(HardeningCurve, GivesTheHandValuesOfMildSteel)
{
    HardeningCurve const curve(mildSteel(), {});
    double const rows[][3] = {
        {0.0001, 20.9983, 209917.7164}, {0.0005, 100.6191, 170232.9414}, {0.001, 150.5637, 43318.8766},
        {0.002, 166.4890, 6666.5534},   {0.01, 197.2061, 2984.1057},     {0.05, 269.4144, 1221.2039},
        {0.1, 317.0478, 766.2993},      {0.2, 376.0647, 470.0877},       {0.4, 447.9718, 284.8810},
        {0.6, 503.7638, 324.6554},      {0.8, 582.2207, 463.9391},       {1.0, 691.2367, 631.7302}};
    for (auto const & row : rows)
    {
        EXPECT_NEAR(curve.stress(row[0]) * 1e-6, row[1], 6e-5) << "at " << row[0];
        EXPECT_NEAR(curve.moduli(row[0]).tangent * 1e-6, row[2], 6e-5) << "at " << row[0];
    }
    EXPECT_NEAR(curve.floorStart(), 0.478057, 1e-6);
    EXPECT_DOUBLE_EQ(curve.neckingStrain(), 0.2589);
}

TEST(HardeningCurve, WithoutFloorIsThePlainPowerLaw)
{
    LawOptions plain;
    plain.kappa = 0.0;
    HardeningCurve const curve(mildSteel(), plain);
    EXPECT_LT(curve.floorStart(), 0.0);
    EXPECT_NEAR(curve.plastic(1.5).stress, 565.32e6 * std::pow(1.5 + 0.007117, 0.2589), 1.0);
}

TEST(HardeningCurve, TheFloorIsContinuousAndRisesAsItsClosedForm)
{
    HardeningCurve const curve(mildSteel(), {});
    double const start = curve.floorStart();
    EXPECT_NEAR(curve.plastic(start - 1e-9).stress, curve.plastic(start + 1e-9).stress, 10.0);
    double const ratio = std::pow(std::cosh(1.3) / std::cosh(start), 1.2);
    EXPECT_NEAR(curve.plastic(1.3).stress / curve.plastic(start).stress, ratio, 1e-9);
}

TEST(HardeningCurve, TangentIsTheDerivativeOfTheStress)
{
    MaterialLaw const table = tableLaw({{0.0, 150e6}, {0.02, 180e6}, {0.1, 250e6}, {0.3, 300e6}});
    for (MaterialLaw const & law : {mildSteel(), table})
    {
        HardeningCurve const curve(law, {});
        std::mt19937 random(7);
        std::uniform_real_distribution<double> exponent(-4.0, 0.2);
        for (int i = 0; i < 200; ++i)
        {
            double const e = std::pow(10.0, exponent(random)), step = 1e-6 * e;
            double const slope = (curve.stress(e + step) - curve.stress(e - step)) / (2.0 * step);
            EXPECT_NEAR(curve.moduli(e).tangent / slope, 1.0, 2e-5) << "at " << e;
        }
    }
}

TEST(HardeningCurve, ATableIsMetAtItsPointsAndNeverOvershootsBetween)
{
    std::vector<std::array<double, 2>> const points = {
        {0.0, 100e6}, {0.01, 200e6}, {0.02, 201e6}, {0.2, 300e6}, {0.21, 400e6}};
    LawOptions plain;
    plain.kappa = 0.0;
    HardeningCurve const curve(tableLaw(points), plain);
    for (auto const & point : points)
        EXPECT_NEAR(curve.plastic(point[0]).stress, point[1], 1e-3);
    double before = 0.0;
    for (int i = 0; i <= 2100; ++i)
    {
        double const stress = curve.plastic(1e-4 * i).stress;
        EXPECT_GE(stress, before - 1e-3) << "at " << 1e-4 * i;
        before = stress;
    }
}

TEST(HardeningCurve, ATableGoesOnWithTheExponentOfItsLastSegment)
{
    LawOptions plain;
    plain.kappa = 0.0;
    HardeningCurve const curve(tableLaw({{0.1, 100e6}, {0.2, 150e6}, {0.4, 180e6}}), plain);
    double const n = std::log(180.0 / 150.0) / std::log(2.0);
    EXPECT_NEAR(curve.plastic(0.8).stress, 180e6 * std::pow(2.0, n), 1.0);
    HardeningCurve const level(tableLaw({{0.1, 100e6}, {0.4, 100e6}}), plain);
    EXPECT_NEAR(level.plastic(0.8).stress, 100e6 * std::pow(2.0, 0.01), 1.0);
}

TEST(HardeningCurve, ATableThatFollowsThePowerLawGivesItsNeckingStrain)
{
    std::vector<std::array<double, 2>> points;
    for (int i = 1; i <= 60; ++i)
        points.push_back({0.01 * i, 500e6 * std::pow(0.01 * i, 0.22)});
    EXPECT_NEAR(HardeningCurve(tableLaw(points), {}).neckingStrain(), 0.22, 2e-3);
    EXPECT_DOUBLE_EQ(HardeningCurve(tableLaw({{0.0, 100e6}, {1.0, 101e6}}), {}).neckingStrain(), 0.02);
    EXPECT_DOUBLE_EQ(HardeningCurve(tableLaw({{0.001, 1e6}, {1.0, 1000e6}}), {}).neckingStrain(), 0.5);
}

TEST(HardeningCurve, StartsElasticWithoutAYieldStress)
{
    MaterialLaw law = mildSteel();
    law.yield = 0.0; // K e^n: no stress at the origin
    HardeningCurve const curve(law, {});
    for (double const e : {0.0, 1e-12, 5e-10})
    {
        EXPECT_DOUBLE_EQ(curve.moduli(e).secant, law.youngsModulus);
        EXPECT_DOUBLE_EQ(curve.moduli(e).tangent, law.youngsModulus);
    }
    EXPECT_NEAR(HardeningCurve(mildSteel(), {}).moduli(0.0).secant, law.youngsModulus, 1.0);
}

TEST(HardeningCurve, WorkIsTheAreaUnderTheCurve)
{
    HardeningCurve const curve(mildSteel(), {});
    for (double const end : {0.0005, 0.01, 0.3, 1.0})
    {
        int const n = 200000;
        double sum = 0.0; // midpoints in u, e = end u^3
        for (int i = 0; i < n; ++i)
        {
            double const u = (i + 0.5) / n;
            sum += curve.stress(end * u * u * u) * 3.0 * end * u * u / n;
        }
        EXPECT_NEAR(curve.work(end) / sum, 1.0, 1e-5) << "to " << end;
    }
    EXPECT_EQ(curve.work(0.0), 0.0);
}

TEST(HardeningCurve, AStraightLineTakesThePlaceOfTheCurveByItsShare)
{
    LawOptions line;
    line.lineShare = 1.0;
    line.kappa = 0.0;
    EXPECT_NEAR(HardeningCurve(mildSteel(), line).plastic(0.3).stress, 0.3 * 565.32e6, 1.0);
}

// The thickness moderation must not change with what the fallbacks do to the curve.
TEST(HardeningCurve, AStraightLineLeavesTheNeckingStrainOfATable)
{
    MaterialLaw const table = tableLaw({{0.01, 150e6}, {0.02, 180e6}, {0.1, 250e6}, {0.3, 330e6}, {0.6, 380e6}});
    double const wanted = HardeningCurve(table, {}).neckingStrain();
    EXPECT_GT(wanted, 0.1);
    for (double const share : {0.5, 1.0})
    {
        LawOptions line;
        line.lineShare = share;
        EXPECT_DOUBLE_EQ(HardeningCurve(table, line).neckingStrain(), wanted);
    }
}
