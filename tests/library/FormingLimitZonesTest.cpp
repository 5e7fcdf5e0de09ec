// FormingLimitZonesTest.cpp: the zones of a pair of strains: each branch, each bound, and random pairs against a second
// reading of the rules.

#include "FormingLimitCases.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <ostream>
#include <random>

namespace
{
struct Zones
{
    int forming;
    int safety;
};

bool operator==(Zones const & a, Zones const & b)
{
    return a.forming == b.forming && a.safety == b.safety;
}

std::ostream & operator<<(std::ostream & stream, Zones const & zones)
{
    return stream << "forming " << zones.forming << ", safety " << zones.safety;
}

struct Limits
{
    double thinning = 0.0;
    double thinningMargin = 0.0;
    double shear = 0.0;
    double shearMargin = 0.0;
    double wrinkle = 0.0;
};

Zones zonesOf(FormingLimit const & limit, double major, double minor, Limits const & limits = {})
{
    Zones zones{-99, -99};
    limit.zones(major, minor, zones.forming, zones.safety, limits.thinning, limits.thinningMargin, limits.shear,
                limits.shearMargin, limits.wrinkle);
    return zones;
}

double percent(double trueStrain)
{
    return (std::exp(trueStrain) - 1.0) * 100.0;
}
} // namespace

TEST(FormingLimitZones, NoStrainIsPlaneStrainAndSafe)
{
    EXPECT_EQ(zonesOf(limitWith(30.0), 0.0, 0.0), (Zones{1, 2}));
}

TEST(FormingLimitZones, ImpossiblePairsAreUndefined)
{
    EXPECT_EQ(zonesOf(limitWith(30.0), -1.0, 1.0), (Zones{-1, -1}));
    EXPECT_EQ(zonesOf(limitWith(30.0), 10.0, 20.0), (Zones{-1, -1}));
    EXPECT_EQ(zonesOf(limitWith(30.0), 1000.0, 2000.0), (Zones{-1, -1})); // above the curve all the same
}

TEST(FormingLimitZones, ShrinkingBothWaysIsStrongCompression)
{
    EXPECT_EQ(zonesOf(limitWith(30.0), -1.0, -2.0), (Zones{5, 4}));
    EXPECT_EQ(zonesOf(limitWith(30.0), -1.0, 0.0), (Zones{5, 4}));
    EXPECT_EQ(zonesOf(limitWith(-50.0), -1.0, 0.0), (Zones{5, 0})); // the curves are asked first
}

// With r = 1 the three lines are at E2 = -E1/2, -E1 and -2 E1, in true strain.
TEST(FormingLimitZones, FormingFollowsTheThreeLines)
{
    FormingLimit const limit = limitWith(500.0);
    double const e1 = 0.2;
    struct
    {
        double e2;
        int forming;
    } const rows[] = {{0.2, 0},     {0.1, 0},     {0.0101, 0},  {0.0099, 1},  {0.0, 1},     {-0.0099, 1}, {-0.0101, 2},
                      {-0.0999, 2}, {-0.1001, 3}, {-0.1999, 3}, {-0.2001, 4}, {-0.3999, 4}, {-0.4001, 5}, {-3.0, 5}};
    for (auto const & row : rows)
        EXPECT_EQ(zonesOf(limit, percent(e1), percent(row.e2)).forming, row.forming) << row.e2;
}

TEST(FormingLimitZones, WithoutABandOnlyMinorZeroIsPlaneStrain)
{
    FormingLimit const none(1.0, 0.2, 1.0, 10.0, 0.0, 500.0, 0);
    EXPECT_EQ(zonesOf(none, 20.0, 0.0).forming, 1);
    EXPECT_EQ(zonesOf(none, 20.0, 20.0).forming, 0); // equal strains are possible
    EXPECT_EQ(zonesOf(none, 20.0, 1e-9).forming, 0);
    EXPECT_EQ(zonesOf(none, 20.0, -1e-9).forming, 2);
}

namespace
{
// Below the cut the minor true strain is -5 exactly; with a major one whose true strain is a round number too, a pair
// stands on a bound.
double majorOfTrue(double strain)
{
    double major = percent(strain) - 1e-9;
    while (std::log(major / 100.0 + 1.0) < strain)
        major = std::nextafter(major, 1e9);
    EXPECT_EQ(std::log(major / 100.0 + 1.0), strain);
    return major;
}
} // namespace

TEST(FormingLimitZones, TheBandsOwnBoundIsPlaneStrain)
{
    double const major = majorOfTrue(5.0);
    FormingLimit const band(1.0, 0.2, 1.0, 10.0, 100.0, 1e9, 0);
    EXPECT_EQ(zonesOf(band, major, -99.0).forming, 1);
    EXPECT_EQ(zonesOf(band, major - 1e-9, -99.0).forming, 4);
}

// With r = 1 and E2 = -5 the lines are at E1 = 10, 5 and 2.5.
TEST(FormingLimitZones, EachLineBelongsToTheZoneBeyond)
{
    FormingLimit const limit = limitWith(1e9);
    struct
    {
        double e1;
        int inside, beyond;
    } const rows[] = {{10.0, 2, 3}, {5.0, 3, 4}, {2.5, 4, 5}};
    for (auto const & row : rows)
    {
        double const major = majorOfTrue(row.e1);
        double const step = 1e-9 * major;
        EXPECT_EQ(zonesOf(limit, major, -99.0).forming, row.beyond) << row.e1;
        EXPECT_EQ(zonesOf(limit, major + step, -99.0).forming, row.inside) << row.e1;
        EXPECT_EQ(zonesOf(limit, major - step, -99.0).forming, row.beyond) << row.e1;
    }
}

TEST(FormingLimitZones, AThinningLimitThatIsJustReachedIsNotPassed)
{
    double const major = majorOfTrue(5.0); // E3 is -5
    FormingLimit const limit = limitWith(1e9);
    double const above = std::nextafter(-5.0, 0.0);
    struct
    {
        double limit, margin;
        int safety;
    } const rows[] = {{-5.0, -5.0, 2}, {above, -9.0, 0}, {-5.0, above, 1}};
    for (auto const & row : rows)
    {
        Limits limits;
        limits.thinning = row.limit;
        limits.thinningMargin = row.margin;
        EXPECT_EQ(zonesOf(limit, major, 0.0, limits), (Zones{1, row.safety})) << row.limit << ' ' << row.margin;
    }
}

// Equal strains, and a limit too small to add anything to 1: both sides of the test are the same number.
TEST(FormingLimitZones, AShearLimitThatIsJustReachedIsNotPassed)
{
    FormingLimit const limit = limitWith(1e9);
    struct
    {
        double limit, margin;
        int safety;
    } const rows[] = {{1e-17, 0.0, 2}, {-1e-9, 0.0, 0}, {1e-17, -1e-9, 1}};
    for (auto const & row : rows)
    {
        Limits limits;
        limits.shear = row.limit;
        limits.shearMargin = row.margin;
        EXPECT_EQ(zonesOf(limit, 20.0, 20.0, limits), (Zones{0, row.safety})) << row.limit << ' ' << row.margin;
    }
}

TEST(FormingLimitZones, OnTheLimitCurveIsFailureAndOnTheSafetyCurveMarginal)
{
    FormingLimit const limit = limitWith(30.0);
    for (double const minor : {0.0, 3.0, -3.0})
    {
        double const top = limit.limitCurveMajor(minor);
        double const low = limit.safetyCurveMajor(minor);
        EXPECT_EQ(zonesOf(limit, top, minor).safety, 0) << minor;
        EXPECT_EQ(zonesOf(limit, std::nextafter(top, 0.0), minor).safety, 1) << minor;
        EXPECT_EQ(zonesOf(limit, low, minor).safety, 1) << minor;
        EXPECT_EQ(zonesOf(limit, std::nextafter(low, 0.0), minor).safety, 2) << minor;
    }
}

TEST(FormingLimitZones, CompressionZonesHaveCodesOfTheirOwn)
{
    FormingLimit const limit = limitWith(100.0);
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.15)), (Zones{4, 3}));
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.25)), (Zones{5, 4}));
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.08)), (Zones{3, 2}));
}

TEST(FormingLimitZones, ThinningBeyondTheLimitFailsAndBeyondTheMarginIsMarginal)
{
    FormingLimit const limit = limitWith(500.0);
    Limits limits;
    limits.thinning = -0.3;
    limits.thinningMargin = -0.2;
    EXPECT_EQ(zonesOf(limit, percent(0.25), percent(0.1), limits), (Zones{0, 0})); // E3 -0.35
    EXPECT_EQ(zonesOf(limit, percent(0.2), percent(0.05), limits), (Zones{0, 1})); // E3 -0.25
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(0.05), limits), (Zones{0, 2}));
}

TEST(FormingLimitZones, AThinningLimitOfZeroSwitchesItsMarginOffToo)
{
    Limits limits;
    limits.thinningMargin = -0.01;
    EXPECT_EQ(zonesOf(limitWith(500.0), percent(0.25), percent(0.1), limits), (Zones{0, 2}));
}

TEST(FormingLimitZones, ShearBeyondTheLimitFailsAndBeyondTheMarginIsMarginal)
{
    FormingLimit const limit = limitWith(500.0);
    Limits limits;
    limits.shear = percent(0.2) / 100.0; // E1 - E2 above 0.4
    limits.shearMargin = percent(0.1) / 100.0;
    EXPECT_EQ(zonesOf(limit, percent(0.3), percent(-0.12), limits), (Zones{2, 0}));
    EXPECT_EQ(zonesOf(limit, percent(0.2), percent(-0.09), limits), (Zones{2, 1}));
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.04), limits), (Zones{2, 2}));
    limits.shear = 0.0;
    EXPECT_EQ(zonesOf(limit, percent(0.3), percent(-0.12), limits), (Zones{2, 2}));
}

TEST(FormingLimitZones, CompressionIsJudgedOnShearAlone)
{
    FormingLimit const limit = limitWith(500.0);
    Limits limits;
    limits.thinning = 5.0; // above every E3: each point that is asked would fail
    limits.thinningMargin = 5.0;
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.15), limits), (Zones{4, 3}));
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.25), limits), (Zones{5, 4}));
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.08), limits), (Zones{3, 0}));
    limits.shear = percent(0.1) / 100.0; // E1 - E2 above 0.2
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.15), limits), (Zones{4, 0}));
    EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.25), limits), (Zones{5, 0}));
}

TEST(FormingLimitZones, TheMarginalBandAsksThinningBeforeShear)
{
    FormingLimit const limit = limitWith(percent(0.3) + 5.0); // major 0.3 lies in the band at minor 0
    Limits limits;
    limits.thinning = -0.5;
    limits.thinningMargin = -0.2;                                        // marginal by thinning
    limits.shear = 0.01;                                                 // failed by shear
    EXPECT_EQ(zonesOf(limit, percent(0.3), 0.0, limits), (Zones{1, 1})); // thinning answered first
    limits.thinningMargin = -0.4;
    EXPECT_EQ(zonesOf(limit, percent(0.3), 0.0, limits), (Zones{1, 0}));
    EXPECT_EQ(zonesOf(limit, percent(0.3), 0.0), (Zones{1, 1}));
}

TEST(FormingLimitZones, TheWrinkleLimitPlaysNoPart)
{
    FormingLimit const limit = limitWith(30.0);
    for (double const wrinkle : {-1.0, 0.0, 0.05, 1e9})
    {
        Limits limits;
        limits.wrinkle = wrinkle;
        EXPECT_EQ(zonesOf(limit, percent(0.1), percent(-0.25), limits), (Zones{5, 4}));
    }
}

TEST(FormingLimitZones, StrainsBelowTheCutCountAsMinusFive)
{
    Limits limits;
    limits.shear = std::exp(2.6) - 1.0; // E1 - E2 above 5.2
    limits.shearMargin = limits.shear;
    FormingLimit const limit = limitWith(1e9);
    EXPECT_EQ(zonesOf(limit, percent(0.1), -99.0, limits), (Zones{5, 4}));
    EXPECT_EQ(zonesOf(limit, percent(0.1), -500.0, limits), (Zones{5, 4}));
    EXPECT_EQ(zonesOf(limit, percent(0.3), -500.0, limits), (Zones{5, 0}));
}

namespace
{
// A second reading of the rules, written as the list of cases that the codes name.
Zones referenceZones(double r, double tol, double fld0, double margin, int type, double major, double minor,
                     Limits const & limits)
{
    double const e1 = major > -99.0 ? std::log(major / 100.0 + 1.0) : -5.0;
    double const e2 = minor > -99.0 ? std::log(minor / 100.0 + 1.0) : -5.0;
    int forming = 5;
    if (e1 >= 0.0 && e1 * tol / 100.0 >= std::fabs(e2))
        forming = 1;
    else if (e1 < 0.0 ? e2 > 0.0 : (e2 >= 0.0 && e1 < e2))
        forming = -1;
    else if (e1 >= 0.0 && e2 >= 0.0)
        forming = 0;
    else if (e1 >= 0.0 && e2 > -r * e1 / (r + 1.0))
        forming = 2;
    else if (e1 >= 0.0 && e2 > -e1)
        forming = 3;
    else if (e1 >= 0.0 && e2 > -(r + 1.0) * e1 / r)
        forming = 4;
    if (forming < 0)
        return {-1, -1};

    double const linear = (minor > 0.0 ? 0.784854 : -0.627354) * (type == 1 ? 0.5 : 1.0);
    double const square = minor > 0.0 ? -0.008565 : 0.042236;
    double const shape = (square * minor + linear) * minor;
    if (major >= shape + fld0)
        return {forming, 0};
    bool const band = major >= shape + (fld0 - margin);
    bool const compressed = !band && forming >= 4;
    double const thickness = -(e1 + e2);
    if (limits.thinning != 0.0 && !compressed)
    {
        if (limits.thinning > thickness)
            return {forming, 0};
        if (limits.thinningMargin > thickness)
            return {forming, 1};
    }
    if (limits.shear != 0.0)
    {
        if (e1 > 2.0 * std::log(limits.shear + 1.0) + e2)
            return {forming, 0};
        if (e1 > 2.0 * std::log(limits.shearMargin + 1.0) + e2)
            return {forming, 1};
    }
    return {forming, band ? 1 : compressed ? forming - 1 : 2};
}
} // namespace

TEST(FormingLimitZones, AgreeWithASecondReadingOnRandomPairs)
{
    std::mt19937 random(20240611);
    auto const within = [&random](double low, double high)
    { return std::uniform_real_distribution<double>(low, high)(random); };
    int seen[7][6] = {};
    for (int i = 0; i < 20000; ++i)
    {
        double const r = within(0.4, 2.5);
        double const tol = within(0.0, 15.0);
        double const fld0 = within(5.0, 60.0);
        double const margin = within(0.0, 15.0);
        int const type = i % 3 == 0;
        Limits limits;
        if (i % 2)
            limits = {within(-0.5, -0.2), within(-0.2, 0.0), 0.0, 0.0, 0.0};
        if (i % 5 > 1)
        {
            limits.shear = within(0.1, 0.5);
            limits.shearMargin = within(0.0, 0.1);
        }
        double const major = i % 50 ? within(-20.0, 80.0) : within(-120.0, 0.0);
        double const minor = within(-60.0, 60.0) * (i % 4 ? 1.0 : 0.1);
        FormingLimit const limit(r, 0.2, 1.0, margin, tol, fld0, type);
        Zones const expected = referenceZones(r, tol, fld0, margin, type, major, minor, limits);
        ASSERT_EQ(zonesOf(limit, major, minor, limits), expected) << major << ' ' << minor << " in case " << i;
        ++seen[expected.forming + 1][expected.safety + 1];
    }
    for (int forming = 0; forming <= 5; ++forming)
        EXPECT_GT(seen[forming + 1][1] + seen[forming + 1][2] + seen[forming + 1][3], 0) << forming;
    EXPECT_GT(seen[5][4], 0); // compression
    EXPECT_GT(seen[6][5], 0); // strong compression
}
