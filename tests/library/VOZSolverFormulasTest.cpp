// VOZSolverFormulasTest.cpp: principal strains, angles, measure and thickness, against a search for the most stretched
// fibre.

#include "VOZSolver.h"

#include "BaseResultsFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using strainsearch::kPi;
using strainsearch::Principal;
using strainsearch::principalBySearch;
using strainsearch::randomStrains;
using strainsearch::Strains;

TEST(ResultFormulas, AnglesAreBroughtIntoZeroToPiWithBothEnds)
{
    ResultsProbe driver;
    EXPECT_EQ(driver.ConvertAngleToO_PiInterval(kPi), kPi);
    EXPECT_EQ(driver.ConvertAngleToO_PiInterval(0.0), 0.0);
    EXPECT_EQ(driver.ConvertAngleToO_PiInterval(-kPi), 0.0);
    EXPECT_DOUBLE_EQ(driver.ConvertAngleToO_PiInterval(-0.5), kPi - 0.5);
    EXPECT_DOUBLE_EQ(driver.ConvertAngleToO_PiInterval(3.0 * kPi + 0.25), 0.25);
    for (double const turns : {1e300, -1e300, 1e18, -1e18}) // where taking off one more changes nothing
    {
        EXPECT_GE(driver.ConvertAngleToO_PiInterval(turns), 0.0);
        EXPECT_LE(driver.ConvertAngleToO_PiInterval(turns), kPi);
    }
    double const above = std::nextafter(kPi, 4.0);
    EXPECT_EQ(driver.ConvertAngleToO_PiInterval(above), above - kPi);
    EXPECT_TRUE(std::isnan(driver.ConvertAngleToO_PiInterval(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_TRUE(std::isinf(driver.ConvertAngleToO_PiInterval(std::numeric_limits<double>::infinity())));
}

TEST(ResultFormulas, PrincipalStrainsAndAngleAreThoseOfTheMostStretchedFibre)
{
    ResultsProbe driver;
    for (Strains const & strains : randomStrains(300, 11))
    {
        float major = 0.0F;
        float minor = 0.0F;
        driver.EvalPrincipalStrains(strains.e11, strains.e22, strains.s, major, minor);
        double const angle = driver.EvalPrincipalAngle(strains.e11, strains.e22, 0.5 * strains.s);
        Principal const expected = principalBySearch(strains);
        EXPECT_NEAR(major, expected.major, 1e-6);
        EXPECT_NEAR(minor, expected.minor, 1e-6);
        EXPECT_NEAR(std::sin(angle - expected.angle), 0.0, 1e-5);
        EXPECT_GE(angle, 0.0);
        EXPECT_LE(angle, kPi);
    }
}

// The measure belongs to the state, not to the axes it is written in: it equals that of the principal strains.
TEST(ResultFormulas, TheEquivalentStrainIsThatOfThePrincipalStrains)
{
    ResultsProbe driver;
    for (Strains const & strains : randomStrains(300, 12))
        for (double const r : {0.5, 1.0, 2.3})
        {
            Principal const p = principalBySearch(strains);
            double const sum = (p.major * p.major + p.minor * p.minor) * (r + 1.0) + 2.0 * r * p.major * p.minor;
            double const expected = std::sqrt((r + 2.0) / (3.0 * (r + 0.5)) * sum);
            EXPECT_NEAR(driver.EvalEquivalentStrain(r, strains.e11, strains.e22, strains.s), expected, 1e-9);
        }
}

// With r = 1 and constant volume a bar's measure is its elongation.
TEST(ResultFormulas, UniaxialTensionOfAnIsotropicSheetIsItsOwnMeasure)
{
    ResultsProbe driver;
    EXPECT_NEAR(driver.EvalEquivalentStrain(1.0, 0.2, -0.1, 0.0), 0.2, 1e-15);
    EXPECT_EQ(driver.EvalEquivalentStrain(1.0, 0.0, 0.0, 0.0), 0.0);
    EXPECT_EQ(driver.EvalThickness(0.8, 0.0), 0.8);
    EXPECT_DOUBLE_EQ(driver.EvalThickness(0.8, std::log(0.5)), 0.4);
}

class ResultContracts : public HostFixture
{
};

TEST_F(ResultContracts, RValueAndThicknessMustBePositiveAndTheWorkGoesOn)
{
    ResultsProbe driver;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    for (double const bad : {0.0, -1.0, nan})
    {
        host.reports.clear();
        driver.EvalEquivalentStrain(bad, 0.1, 0.1, 0.0);
        ASSERT_EQ(host.reports.size(), 1U);
        EXPECT_EQ(host.reports[0].text, "i_dRValue > 0.0");
        host.reports.clear();
        double const thickness = driver.EvalThickness(bad, 0.0);
        EXPECT_TRUE(thickness == bad || std::isnan(bad));
        ASSERT_EQ(host.reports.size(), 1U);
        EXPECT_EQ(host.reports[0].text, "i_dInitialThickness > 0.0");
    }
}
