// VOZUserUnitBaseTest.cpp: each factor as it is stated, and the one pair of strain conversions that lives here.

#include "VOZUserUnitBase.h"

#include "FormingLimit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>

namespace
{
using Units = VOZUserUnitBase;

struct Row
{
    char const * name;
    double (*convert)(double);
    double factor;
    bool divides;
};

Row const kRows[] = {
    {"InchToMm", Units::InchToMm, 25.4, false},
    {"MmToInch", Units::MmToInch, 25.4, true},
    {"MPaToPsi", Units::MPaToPsi, 145.033, false},
    {"MPaToKsi", Units::MPaToKsi, 0.145033, false},
    {"PsiToMPa", Units::PsiToMPa, 0.006895, false},
    {"PsiToKsi", Units::PsiToKsi, 0.001, false},
    {"KsiToPsi", Units::KsiToPsi, 1000.0, false},
    {"KsiToMPa", Units::KsiToMPa, 6.895, false},
    {"N_to_mm_To_Lbf_to_in", Units::N_to_mm_To_Lbf_to_in, 5.7101, false},
    {"Lbf_to_in_To_N_to_mm", Units::Lbf_to_in_To_N_to_mm, 5.7101, true},
    {"TonneToLbf", Units::TonneToLbf, 2204.6225, false},
    {"LbfToTonne", Units::LbfToTonne, 2204.6225, true},
    {"NewtonToLbf", Units::NewtonToLbf, 4.44822, true},
    {"LbfToNewton", Units::LbfToNewton, 4.44822, false},
    {"Ton_shortToLbf", Units::Ton_shortToLbf, 2000.0, false},
    {"LbfToTon_short", Units::LbfToTon_short, 2000.0, true},
    {"Ton_longToLbf", Units::Ton_longToLbf, 2240.0, false},
    {"LbfToTon_long", Units::LbfToTon_long, 2240.0, true},
    {"LbToKg", Units::LbToKg, 0.4536, false},
    {"KgToLb", Units::KgToLb, 0.4536, true},
};
} // namespace

TEST(VOZUserUnitBase, MultipliesOrDividesByTheStatedFactor)
{
    for (Row const & row : kRows)
        for (double const x : {0.0, 1.0, -3.7, 123456.789})
            EXPECT_EQ(row.convert(x), row.divides ? x / row.factor : x * row.factor) << row.name << " of " << x;
}

TEST(VOZUserUnitBase, PressureFactorsAreNoInversesOfOneAnother)
{
    double const there = Units::MPaToPsi(Units::PsiToMPa(1.0));
    EXPECT_NE(there, 1.0);
    EXPECT_NEAR(there, 1.0, 1e-5);
}

TEST(VOZUserUnitBase, TrueStrainIsALogarithmAboveTheCutAndAConstantFromItOn)
{
    EXPECT_EQ(Units::EngToTrueStrain(0.0), 0.0);
    EXPECT_EQ(Units::EngToTrueStrain(25.0), std::log(1.25));
    EXPECT_NEAR(Units::EngToTrueStrain(-97.9), std::log(0.021), 1e-12);
    EXPECT_LT(Units::EngToTrueStrain(std::nextafter(-98.0, 0.0)), -3.912); // just above: the logarithm
    EXPECT_EQ(Units::EngToTrueStrain(-98.0), -3.91);
    EXPECT_EQ(Units::EngToTrueStrain(-98.5), -3.91);
    EXPECT_EQ(Units::EngToTrueStrain(-1e9), -3.91);
}

TEST(VOZUserUnitBase, EngineeringStrainIsPercent)
{
    EXPECT_EQ(Units::TrueToEngStrain(0.0), 0.0);
    EXPECT_DOUBLE_EQ(Units::TrueToEngStrain(std::log(1.25)), 25.0);
    EXPECT_EQ(Units::TrueToEngStrain(-3.91), (std::exp(-3.91) - 1.0) * 100.0);
}

// Between the two cuts one pair gives a constant and the other the logarithm.
TEST(VOZUserUnitBase, StrainConversionIsNotThatOfTheFormingLimit)
{
    EXPECT_EQ(Units::EngToTrueStrain(-98.5), -3.91);
    EXPECT_NEAR(FormingLimit().engToTrueStrain(-98.5), std::log(0.015), 1e-12);
    EXPECT_EQ(Units::EngToTrueStrain(-99.0), -3.91);
    EXPECT_EQ(FormingLimit().engToTrueStrain(-99.0), -5.0);
}

TEST(VOZUserUnitBase, AssignmentReturnsTheTarget)
{
    Units a;
    Units b;
    EXPECT_EQ(&(a = b), &a);
    static_assert(std::is_empty_v<Units>);
}
