// LevelSearchTest.cpp: the search for levels of restraint, on laws that need no mesh.

#include "autostrain/LevelSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace
{

using testing::HasSubstr;
using voz::autostrain::LevelSearch;
using voz::autostrain::Pair;
using voz::autostrain::Sample;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

using Law = std::function<Pair(Pair)>;

Sample sampleOf(Law const & law, Pair level, bool slopes)
{
    Sample sample;
    sample.level = level;
    sample.value = law(level);
    sample.hasSlope = slopes;
    for (std::size_t j = 0; j < 2 && slopes; ++j)
    {
        Pair high = level, low = level;
        high[j] += 1e-4;
        low[j] -= 1e-4;
        for (std::size_t i = 0; i < 2; ++i)
            sample.slope[i][j] = (law(high)[i] - law(low)[i]) / 2e-4;
    }
    return sample;
}

LevelSearch searched(Law const & law, int count, Pair wanted, Pair first, bool slopes = true, double noneAbove = 1e9)
{
    LevelSearch search(count, wanted, 1.0);
    Pair before = first;
    bool goesOn = search.accept(sampleOf(law, first, slopes));
    while (goesOn)
    {
        Pair const level = search.nextLevel();
        for (int i = 0; i < count; ++i)
        {
            EXPECT_GE(level[at(i)], 0.0);
            EXPECT_LE(level[at(i)], std::max(2.0 * before[at(i)], 1.0) + 1e-12);
        }
        if (level[0] > noneAbove)
        {
            goesOn = search.reject();
            continue;
        }
        before = level;
        goesOn = search.accept(sampleOf(law, level, slopes));
    }
    EXPECT_LE(search.rounds(), 20);
    return search;
}

Pair rising(Pair s)
{
    return {0.02 * std::expm1(s[0] / 50.0), 0.0};
}

TEST(LevelSearch, FindsALevelByNewtonWithinAFactorOfTwoARound)
{
    LevelSearch const search = searched(rising, 1, {rising({80.0, 0.0})[0], 0.0}, {5.0, 0.0});
    EXPECT_TRUE(search.met());
    EXPECT_NEAR(search.best().level[0], 80.0, 0.3);
    EXPECT_EQ(search.rounds(), 4); // 10, 20, 40, 80
}

TEST(LevelSearch, FindsALevelWithoutSlopesByTheBracketAlone)
{
    for (double wanted : {3.0, 80.0, 120.0})
    {
        LevelSearch const search = searched(rising, 1, {rising({wanted, 0.0})[0], 0.0}, {30.0, 0.0}, false);
        EXPECT_TRUE(search.met()) << wanted;
    }
}

TEST(LevelSearch, StopsAtTheFirstLevelWhenThatIsGood)
{
    LevelSearch const search = searched(rising, 1, {rising({5.0, 0.0})[0] + 0.9e-4, 0.0}, {5.0, 0.0});
    EXPECT_TRUE(search.met());
    EXPECT_EQ(search.rounds(), 0);
}

TEST(LevelSearch, EndsAtZeroWhenThatIsStillTooMuch)
{
    Law const law = [](Pair s) { return Pair{0.01 + 0.001 * s[0], 0.0}; };
    LevelSearch const search = searched(law, 1, {0.002, 0.0}, {64.0, 0.0});
    EXPECT_FALSE(search.met());
    EXPECT_EQ(search.best().level[0], 0.0);
    EXPECT_EQ(search.best().value[0], 0.01);
    EXPECT_THAT(search.reason(), HasSubstr("without any restraint"));
}

TEST(LevelSearch, ClosesInOnTheLastLevelThatHasEquilibrium)
{
    LevelSearch const search = searched(rising, 1, {5.0, 0.0}, {10.0, 0.0}, true, 33.0);
    EXPECT_FALSE(search.met());
    EXPECT_NEAR(search.best().level[0], 33.0, 0.5);
}

TEST(LevelSearch, FindsTwoLevels)
{
    Law const law = [](Pair s) {
        return Pair{0.001 * s[0] + 0.0003 * s[1] + 1e-6 * s[0] * s[0], 0.0002 * s[0] + 0.0012 * s[1]};
    };
    LevelSearch const search = searched(law, 2, law({70.0, 20.0}), {10.0, 10.0});
    EXPECT_TRUE(search.met());
    EXPECT_NEAR(search.best().level[0], 70.0, 0.2);
    EXPECT_NEAR(search.best().level[1], 20.0, 0.2);
}

TEST(LevelSearch, LeavesALevelAtZeroAndDoesWhatTheOtherCan)
{
    Law const law = [](Pair s) { return Pair{0.001 * s[0] + 0.0005 * s[1], 0.0005 * s[0] + 0.001 * s[1]}; };
    LevelSearch const search = searched(law, 2, {0.05, 0.01}, {10.0, 10.0}); // would take levels of 60 and -20
    EXPECT_FALSE(search.met());
    EXPECT_EQ(search.best().level[1], 0.0);
    EXPECT_GT(search.best().level[0], 35.0); // the error is 12 to 15 thousandths at either node
    EXPECT_LT(search.best().level[0], 50.0);
    EXPECT_FALSE(search.reason().empty());
}

TEST(LevelSearch, EndsWhereTheSheetWouldTear)
{
    LevelSearch search(1, {2.0, 0.0}, 1.0);
    Sample sample = sampleOf(rising, {100.0, 0.0}, true);
    sample.torn = true;
    EXPECT_FALSE(search.accept(sample));
    EXPECT_THAT(search.reason(), HasSubstr("tear"));
}

// The scale is 1; with two levels both begin there.
TEST(LevelSearch, LeavesALevelThatIsNextToNothingByTheScale)
{
    LevelSearch const one = searched(rising, 1, {rising({80.0, 0.0})[0], 0.0}, {1.0e-9, 0.0});
    EXPECT_TRUE(one.met()) << one.reason();
    EXPECT_NEAR(one.best().level[0], 80.0, 0.3);
    Law const law = [](Pair s) { return Pair{0.001 * s[0] + 0.0003 * s[1], 0.0002 * s[0] + 0.0012 * s[1]}; };
    LevelSearch const two = searched(law, 2, law({30.0, 20.0}), {1.0e-9, 0.3});
    EXPECT_TRUE(two.met()) << two.reason();
    EXPECT_NEAR(two.best().level[0], 30.0, 0.3);
    EXPECT_NEAR(two.best().level[1], 20.0, 0.3);
}

} // namespace
