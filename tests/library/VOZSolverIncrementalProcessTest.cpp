// VOZSolverIncrementalProcessTest.cpp: mass scaling, output times and the blank's stress, against second readings of
// what they are to be.

#include "VOZSolverIncremental.h"

#include "FailingNew.h"
#include "IncrementalFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class ProcessNumbers : public HostFixture
{
protected:
    std::vector<std::string> reported() const
    {
        std::vector<std::string> texts;
        for (VOZMemoryHost::Report const & report : host.reports)
            texts.push_back(report.text);
        return texts;
    }

    std::vector<double> times(double i_stroke, double i_velocity, double i_acceleration,
                              std::vector<double> const & i_positions)
    {
        double * points = nullptr;
        VOZSolverIncremental::EvalOutputTimeIntervals(i_stroke, i_velocity, i_acceleration,
                                                      static_cast<int>(i_positions.size()), i_positions.data(), points);
        std::unique_ptr<double[]> const owned(points);
        return owned ? std::vector<double>(points, points + i_positions.size()) : std::vector<double>();
    }
};

double massScaling(int level, double smallest, double largest, double factor, double speed, double least)
{
    return VOZSolverIncremental::EvalMassScalingParameter(level, smallest, largest, factor, speed, least);
}

// The way that the punch has made after a time, by summing its velocity in small steps.
double travelled(double i_time, double i_stroke, double i_velocity, double i_acceleration)
{
    double const ramp = i_velocity / i_acceleration;
    double const end = i_stroke / i_velocity + ramp;
    auto const velocity = [=](double t)
    {
        if (t < ramp)
            return i_acceleration * t;
        return t < end - ramp ? i_velocity : i_acceleration * (end - t);
    };
    constexpr int kSteps = 20000;
    double way = 0.0;
    for (int i = 0; i < kSteps; ++i)
        way += velocity((i + 0.5) * i_time / kSteps) * i_time / kSteps;
    return way;
}
} // namespace

TEST_F(ProcessNumbers, MassScalingTakesTheSmallestElementThatRefinementMakes)
{
    // Three levels halve twice: 8 mm -> 2 mm, 4 mm -> 1 mm, which is below the 1.5 mm that thickness asks for.
    EXPECT_DOUBLE_EQ(massScaling(3, 0.004, 0.008, 0.9, 5100.0, 0.0015), 0.001 * 0.9 / 5100.0);
    // A single level: nothing is halved.
    EXPECT_DOUBLE_EQ(massScaling(1, 0.004, 0.008, 0.9, 5100.0, 0.1), 0.004 * 0.9 / 5100.0);
}

TEST_F(ProcessNumbers, MassScalingStopsHalvingBelowTheSizeThatThicknessAllows)
{
    // 8 -> 4 -> 2 (below 3) and 5 -> 2.5: halving goes on from 3 upwards, and the smaller result counts.
    EXPECT_DOUBLE_EQ(massScaling(9, 0.005, 0.008, 1.0, 1.0, 0.003), 0.002);
    // Exactly at the size it is halved once more.
    EXPECT_DOUBLE_EQ(massScaling(9, 0.003, 0.003, 1.0, 1.0, 0.003), 0.0015);
}

TEST_F(ProcessNumbers, MassScalingIsCappedByTheSizeThatThicknessAllows)
{
    EXPECT_DOUBLE_EQ(massScaling(1, 0.004, 0.008, 1.0, 1.0, 0.003), 0.003);
    EXPECT_DOUBLE_EQ(massScaling(1, 0.002, 0.008, 1.0, 1.0, 0.003), 0.002);
}

TEST_F(ProcessNumbers, MassScalingAgreesWithAListOfAllElementSizes)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> size(0.0002, 0.02);
    for (int round = 0; round < 2000; ++round)
    {
        int const level = 1 + static_cast<int>(random() % 7);
        double const first = size(random);
        double const second = size(random);
        double const least = size(random);
        double smallest = least;
        for (double const start : {first, second})
        {
            std::vector<double> sizes = {start}; // of an element and of its children, level by level
            while (static_cast<int>(sizes.size()) < level && !(sizes.back() < least))
                sizes.push_back(sizes.back() * 0.5);
            smallest = std::min(smallest, sizes.back());
        }
        EXPECT_DOUBLE_EQ(massScaling(level, std::min(first, second), std::max(first, second), 0.8, 5100.0, least),
                         smallest * 0.8 / 5100.0);
    }
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(ProcessNumbers, MassScalingReportsWhatIsNotAboveZero)
{
    std::string const sizes = "i_nAdaptivityLevel > 0 && i_dMinBlankElementSize > 0.0 && i_dMaxBlankElementSize > 0.0";
    std::string const others =
        "i_dFactorForDT2MS > 0.0 && i_dSpeedOfSound > 0.0 && i_dMinElementSizeBasedOnThickness > 0.0";
    struct Case
    {
        int level;
        double values[5];
        std::string text;
    };
    Case const cases[] = {{0, {1, 1, 1, 1, 1}, sizes},   {1, {0, 1, 1, 1, 1}, sizes},   {1, {1, -1, 1, 1, 1}, sizes},
                          {1, {1, 1, 0, 1, 1}, others},  {1, {1, 1, 1, -1, 1}, others}, {1, {1, 1, 1, 1, 0}, others},
                          {1, {1, 1, 1, 1, NAN}, others}};
    for (Case const & c : cases)
    {
        host.reports.clear();
        massScaling(c.level, c.values[0], c.values[1], c.values[2], c.values[3], c.values[4]);
        EXPECT_THAT(reported(), testing::ElementsAre(c.text));
    }
}

// Sizes that halving never brings below the least one do not halve for ever.
TEST_F(ProcessNumbers, MassScalingEndsWhateverItIsGiven)
{
    int const level = std::numeric_limits<int>::max();
    EXPECT_EQ(massScaling(level, 1.0, 1.0, 1.0, 1.0, -1.0), -1.0);
    EXPECT_EQ(massScaling(level, kInfinity, kInfinity, 1.0, 1.0, 1.0), 1.0);
}

TEST_F(ProcessNumbers, OutputTimesAreThoseOfTheThreePhasesOfThePunch)
{
    // v = 2, a = 4: the ramps take 0.5 s and 0.5 m each; 3 m take 2 s.
    std::vector<double> const t = times(3.0, 2.0, 4.0, {0.0, 100.0 / 24.0, 50.0, 100.0 - 100.0 / 24.0, 100.0});
    ASSERT_EQ(t.size(), 5U);
    EXPECT_DOUBLE_EQ(t[0], 0.0);
    EXPECT_NEAR(t[1], 0.25, 1e-15); // 0.125 m, a quarter of the ramp
    EXPECT_DOUBLE_EQ(t[2], 1.0);
    EXPECT_NEAR(t[3], 1.75, 1e-15);
    EXPECT_DOUBLE_EQ(t[4], 2.0);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(ProcessNumbers, OutputTimesChangeTheirPhaseJustBehindTheRamp)
{
    // The ramp is 0.5 m of 4 m: 12.5 percent, and all these values are exact. At its end both phases agree.
    std::vector<double> const t = times(4.0, 2.0, 4.0, {12.5, 87.5, 12.5});
    ASSERT_EQ(t.size(), 3U);
    EXPECT_EQ(t[0], std::sqrt(2.0 * 0.5 / 4.0));
    EXPECT_EQ(t[1], 0.25 + 3.5 / 2.0); // still at constant speed
}

TEST_F(ProcessNumbers, OutputTimesAreTheInverseOfTheVelocityCurve)
{
    std::mt19937 random(3);
    auto const between = [&](double low, double high)
    { return std::uniform_real_distribution<double>(low, high)(random); };
    for (int round = 0; round < 60; ++round)
    {
        double const velocity = between(0.5, 10.0);
        double const acceleration = between(500.0, 20000.0);
        double const ramp = 0.5 * velocity * velocity / acceleration;
        double const stroke = ramp * between(2.0, 60.0); // ramps that do not meet
        std::vector<double> positions = {0.0, 100.0};
        for (int i = 0; i < 6; ++i)
            positions.push_back(between(0.0, 100.0));
        std::vector<double> const t = times(stroke, velocity, acceleration, positions);
        ASSERT_EQ(t.size(), positions.size());
        for (std::size_t i = 0; i < t.size(); ++i)
            EXPECT_NEAR(travelled(t[i], stroke, velocity, acceleration), stroke * positions[i] / 100.0, 1e-6 * stroke);
    }
}

// v = 2, a = 4: either ramp would take 0.5 m of the 0.6 m. Up to the end of the first it counts alone, then braking.
TEST_F(ProcessNumbers, OutputTimesOfAStrokeShorterThanItsRampsBeginWithTheFirst)
{
    std::vector<double> const t = times(0.6, 2.0, 4.0, {0.0, 20.0, 80.0, 90.0, 100.0});
    ASSERT_EQ(t.size(), 5U);
    EXPECT_EQ(t[0], 0.0);
    EXPECT_NEAR(t[1], std::sqrt(2.0 * 0.12 / 4.0), 1e-15);
    EXPECT_NEAR(t[2], std::sqrt(2.0 * 0.48 / 4.0), 1e-15);
    EXPECT_NEAR(t[3], 0.3 + 0.5 - std::sqrt(2.0 * 0.06 / 4.0), 1e-12);
    EXPECT_NEAR(t[4], 0.8, 1e-7); // the root of a rounding
    EXPECT_THAT(reported(), testing::IsEmpty());
}

// stroke * 100 / 100 may come out above the stroke by a rounding, and so may a list's last position.
TEST_F(ProcessNumbers, OutputTimesEndWithThePunch)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> unit(0.001, 0.2);
    for (int round = 0; round < 500; ++round)
    {
        double const stroke = unit(random);
        std::vector<double> const t = times(stroke, 5.0, 50000.0, {0.0, 100.0, 100.0000001});
        ASSERT_EQ(t.size(), 3U);
        EXPECT_NEAR(t[1], stroke / 5.0 + 5.0 / 50000.0, 1e-9); // the root of a rounding
        EXPECT_EQ(t[2], stroke / 5.0 + 5.0 / 50000.0);
    }
}

TEST_F(ProcessNumbers, OutputTimesReportNumbersThatAreNotAboveZero)
{
    std::string const text = "AssertionFailed:i_dPunchStroke > 0.0 && i_dPunchVelocity > 0.0 && "
                             "i_dPunchAcceleration > 0.0";
    double const positions[] = {0.0, 50.0, 100.0};
    for (int bad = 0; bad < 3; ++bad)
        for (double value : {0.0, -1.0})
        {
            host.reports.clear();
            double values[3] = {1.0, 1.0, 1.0};
            values[bad] = value;
            times(values[0], values[1], values[2], {std::begin(positions), std::end(positions)});
            EXPECT_THAT(reported(), testing::ElementsAre(text));
        }
}

TEST_F(ProcessNumbers, OutputTimesReportTooFewPoints)
{
    std::string const text = "AssertionFailed:i_nNumPoints > 2 && i_padPunchPositions";
    double const positions[3] = {0.0, 100.0, 100.0};
    for (int count : {2, 1, 0, -1, std::numeric_limits<int>::min()})
    {
        host.reports.clear();
        double dummy = 0.0;
        double * points = &dummy;
        VOZSolverIncremental::EvalOutputTimeIntervals(1.0, 1.0, 10.0, count, positions, points);
        EXPECT_THAT(reported(), testing::ElementsAre(text)) << count;
        EXPECT_NE(points, &dummy) << "the output is set whatever happens";
        EXPECT_EQ(points == nullptr, count < 1);
        delete[] points;
    }
    host.reports.clear();
    double dummy = 0.0;
    double * points = &dummy;
    VOZSolverIncremental::EvalOutputTimeIntervals(1.0, 1.0, 10.0, 5, nullptr, points);
    EXPECT_THAT(reported(), testing::ElementsAre(text));
    EXPECT_EQ(points, nullptr);
}

TEST_F(ProcessNumbers, OutputTimesReportThatThereIsNoMemory)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP();
    FailingNew const failing(1);
    EXPECT_THAT(times(1.0, 1.0, 10.0, {0.0, 50.0, 100.0}), testing::IsEmpty());
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:padPoints"));
}

namespace
{
class BlankStress : public ProcessNumbers
{
protected:
    void table(std::vector<double> const & i_pairs)
    {
        delete[] driver.m_padPoints;
        driver.m_padPoints = new double[i_pairs.size()];
        std::copy(i_pairs.begin(), i_pairs.end(), driver.m_padPoints);
        driver.m_nNumPoints = static_cast<int>(i_pairs.size() / 2);
        driver.m_nCurveType = 2;
    }

    IncrementalProbe driver;
};
} // namespace

TEST_F(BlankStress, OfThePowerLawHasThreeBranches)
{
    driver.m_dKValue = 500.0e6;
    driver.m_dNValue = 0.25;
    EXPECT_EQ(driver.EvalEquStress(0.0), 0.0);
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(0.01), 500.0e6 * std::pow(0.02, -0.75) * 0.01);
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(0.3), 500.0e6 * std::pow(0.3, 0.25));
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(1.4), 500.0e6 * std::pow(1.4, 0.25) * (0.7 * (0.25 / 0.7) + 1.0));
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(BlankStress, TakesThePowerLawAtBothOfItsEnds)
{
    EXPECT_EQ(driver.EvalEquStress(0.02), 6.0e8 * std::pow(0.02, 0.2));
    EXPECT_EQ(driver.EvalEquStress(0.7), 6.0e8 * std::pow(0.7, 0.2));
    double const below = std::nextafter(0.02, 0.0);
    EXPECT_EQ(driver.EvalEquStress(below), 6.0e8 * std::pow(0.02, 0.2 - 1.0) * below);
}

TEST_F(BlankStress, ReportsANegativeStrainAndIsZeroThere)
{
    EXPECT_EQ(driver.EvalEquStress(-1e-12), 0.0);
    EXPECT_THAT(reported(), testing::ElementsAre("i_dEquStrain >= 0.0"));
    table({0.0, 100.0, 1.0, 200.0});
    EXPECT_EQ(driver.EvalEquStress(-1.0), 0.0);
}

TEST_F(BlankStress, ReportsALawThatIsNone)
{
    driver.m_dKValue = 0.0;
    EXPECT_EQ(driver.EvalEquStress(0.1), 0.0);
    EXPECT_THAT(reported(), testing::ElementsAre("m_dKValue > 0.0 && m_dNValue > 0.0"));
    driver.m_dKValue = 1.0;
    driver.m_dNValue = -0.1;
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(0.1), std::pow(0.1, -0.1));
    EXPECT_EQ(host.reports.size(), 2U);
}

TEST_F(BlankStress, OfATableIsLinearBetweenItsPointsAndHeldAtItsEnds)
{
    table({0.1, 100.0, 0.3, 200.0, 0.5, 240.0});
    EXPECT_EQ(driver.EvalEquStress(0.0), 100.0);
    EXPECT_EQ(driver.EvalEquStress(0.1), 100.0);
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(0.2), 150.0);
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(0.3), 200.0);
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(0.45), 230.0);
    EXPECT_EQ(driver.EvalEquStress(0.5), 240.0);
    EXPECT_EQ(driver.EvalEquStress(9.0), 240.0);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(BlankStress, OfATableOfOnePointIsThatPoints)
{
    table({0.1, 100.0});
    EXPECT_EQ(driver.EvalEquStress(0.0), 100.0);
    EXPECT_EQ(driver.EvalEquStress(0.2), 100.0);
}

TEST_F(BlankStress, OfATableTakesTheUpperPointOfAStepTooShortToDivideBy)
{
    table({0.0, 0.0, 0.1, 100.0, 0.100005, 200.0, 0.2, 300.0});
    EXPECT_EQ(driver.EvalEquStress(0.100001), 200.0);
    table({0.0, 0.0, 0.1, 100.0, 0.10002, 200.0, 0.2, 300.0}); // a step of 2e-5 is long enough
    EXPECT_NEAR(driver.EvalEquStress(0.10001), 150.0, 1e-6);
}

TEST_F(BlankStress, OfATableTakesTheFirstStepThatTheStrainLiesOn)
{
    table({0.0, 10.0, 0.5, 20.0, 0.3, 30.0, 1.0, 40.0}); // strains that fall in between
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(0.4), 18.0);
    EXPECT_DOUBLE_EQ(driver.EvalEquStress(0.6), 30.0 + 10.0 * (0.6 - 0.3) / 0.7);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(BlankStress, OfATableReportsAStepThatDoesNotRise)
{
    table({0.0, 10.0, std::numeric_limits<double>::quiet_NaN(), 20.0, 0.3, 30.0, 0.5, 40.0});
    driver.EvalEquStress(0.2);
    EXPECT_THAT(reported(), testing::ElementsAre("dStepX >= 0.0"));
}

TEST_F(BlankStress, OfATableThatHasNoPlaceForAStrainIsItsLastStress)
{
    double const nothing = std::numeric_limits<double>::quiet_NaN();
    table({0.0, 10.0, nothing, 20.0, nothing, 30.0});
    EXPECT_EQ(driver.EvalEquStress(0.4), 30.0);
    EXPECT_THAT(reported(), testing::ElementsAre("false"));
}

TEST_F(BlankStress, WithoutATableReportsThatAndIsZero)
{
    driver.m_nCurveType = 2;
    driver.m_nNumPoints = 4;
    EXPECT_EQ(driver.EvalEquStress(0.1), 0.0);
    table({0.1, 100.0});
    driver.m_nNumPoints = 0;
    EXPECT_EQ(driver.EvalEquStress(0.1), 0.0);
    EXPECT_THAT(reported(), testing::Each("i_nNumPoints > 0 && i_padPointsXY"));
    EXPECT_EQ(host.reports.size(), 2U);
}

TEST_F(BlankStress, OfRandomTablesAgreesWithASearchThroughAllSteps)
{
    std::mt19937 random(17);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int round = 0; round < 400; ++round)
    {
        std::vector<double> pairs;
        double strain = unit(random) * 0.05;
        double stress = 100.0;
        for (std::size_t i = 0, count = 1 + random() % 8; i < count; ++i)
        {
            pairs.insert(pairs.end(), {strain, stress});
            strain += 0.001 + 0.2 * unit(random);
            stress += 50.0 * unit(random);
        }
        table(pairs);
        double const x = 1.2 * unit(random);
        double expected = x <= pairs[0] ? pairs[1] : pairs.back();
        for (std::size_t k = 2; k < pairs.size(); k += 2)
            if (x > pairs[k - 2] && x <= pairs[k])
            {
                double const share = (x - pairs[k - 2]) / (pairs[k] - pairs[k - 2]);
                expected = (1.0 - share) * pairs[k - 1] + share * pairs[k + 1];
            }
        EXPECT_NEAR(driver.EvalEquStress(x), expected, 1e-9 * expected);
    }
    EXPECT_THAT(reported(), testing::IsEmpty());
}
