#include "CATRawColl.h"

#include "HostFixture.h"

#include <random>

namespace
{
class RawColl : public HostFixture
{
};

CATRawCollint numbers(std::vector<int> const & values)
{
    CATRawCollint all;
    for (int const value : values)
        all.Append(value);
    return all;
}

std::vector<int> listed(CATRawCollint const & all)
{
    std::vector<int> values;
    for (int i = 1; i <= all.Size(); ++i)
        values.push_back(all[i]);
    return values;
}

TEST_F(RawColl, CountsFromOne)
{
    CATRawColldouble values;
    values.Append(1.5);
    values.Append(2.5);
    EXPECT_EQ(values.Size(), 2);
    EXPECT_EQ(values[1], 1.5);
    values[2] = 7.0;
    EXPECT_EQ(values[2], 7.0);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(RawColl, APositionOutsideIsReportedAndReadsZero)
{
    CATRawCollint values = numbers({5});
    EXPECT_EQ(values[0], 0);
    values[2] = 9;
    EXPECT_EQ(std::as_const(values)[2], 0);
    EXPECT_EQ(host.reports.size(), 3U);
    EXPECT_EQ(host.reports[0].text, "AssertionFailed:i_position >= 1 && i_position <= Size()");
    EXPECT_EQ(listed(values), std::vector<int>({5}));
}

TEST_F(RawColl, RemoveTakesOutEveryEqualValueAndKeepsTheOrder)
{
    CATRawCollint values = numbers({4, 1, 3, 1, 2});
    values.Remove(numbers({1, 4, 9, 1}));
    EXPECT_EQ(listed(values), std::vector<int>({3, 2}));
    values.Remove(values);
    EXPECT_EQ(values.Size(), 0);
}

TEST_F(RawColl, AppendsAWholeCollectionItselfIncluded)
{
    CATRawCollint values = numbers({1, 2});
    values.Append(values);
    EXPECT_EQ(listed(values), std::vector<int>({1, 2, 1, 2}));
    EXPECT_EQ(values.Locate(2), 2);
    EXPECT_EQ(values.Locate(3), 0);
    values.RemoveAll();
    EXPECT_EQ(values.Size(), 0);
}

TEST_F(RawColl, RemoveAgreesWithTheObviousLoop)
{
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round)
    {
        std::vector<int> all(random() % 30);
        std::vector<int> unwanted(random() % 10);
        for (int & value : all)
            value = static_cast<int>(random() % 12);
        for (int & value : unwanted)
            value = static_cast<int>(random() % 12);
        std::vector<int> expected;
        for (int const value : all)
            if (std::find(unwanted.begin(), unwanted.end(), value) == unwanted.end())
                expected.push_back(value);
        CATRawCollint values = numbers(all);
        values.Remove(numbers(unwanted));
        EXPECT_EQ(listed(values), expected);
    }
}
} // namespace
