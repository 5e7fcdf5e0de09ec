// ADTreeTest.cpp. Trees are drawn with their keys: a link, its left branch, its right branch.

#include "ADTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

namespace
{
using Ints = std::vector<int>;
using Corner = std::array<double, 6>;

constexpr Corner kZero{};
constexpr Corner kOne{1, 1, 1, 1, 1, 1};

class Recorder : public ADTreeQuery
{
public:
    Recorder(int i_dimension, Corner const & i_lower, Corner const & i_upper)
        : ADTreeQuery(i_dimension, i_lower.data(), i_upper.data())
    {
    }
    void visit(int i_id) override { ids.push_back(i_id); }

    Ints ids;
};

Ints visits(ADTree & tree, int dimension, Corner const & lower = kZero, Corner const & upper = kOne)
{
    Recorder query(dimension, lower, upper);
    tree.query(query);
    return query.ids;
}

void insertAll(ADTree & io_tree, std::vector<double> const & keys) // of one dimension; ids from 1
{
    for (std::size_t i = 0; i < keys.size(); ++i)
        io_tree.insert(&keys[i], static_cast<int>(i) + 1);
}

//        1: 0.3
//       /      \.
//   2: 0.2    3: 0.7
//     \         /
//  4: 0.4    5: 0.6
TEST(ADTree, VisitsALinkThenItsRightSubtreeThenItsLeft)
{
    ADTree tree(kZero.data(), kOne.data(), 1);
    insertAll(tree, {0.3, 0.2, 0.7, 0.4, 0.6});
    EXPECT_EQ(visits(tree, 1), (Ints{1, 3, 5, 2, 4}));
}

TEST(ADTree, TheFirstLinkIsTheRootWhateverItsKey)
{
    ADTree tree(kZero.data(), kOne.data(), 1);
    insertAll(tree, {0.99, 0.01});
    // the root's region is the whole, whatever its key; the second is a left branch, over [0, 0.5]
    EXPECT_EQ(visits(tree, 1, {0.6}, {0.7}), (Ints{1}));
    EXPECT_EQ(visits(tree, 1, {0.4}, {0.7}), (Ints{1, 2}));
}

TEST(ADTree, AKeyExactlyInTheMiddleGoesRight)
{
    ADTree tree(kZero.data(), kOne.data(), 1);
    insertAll(tree, {0.0, 0.5, 0.25});
    EXPECT_EQ(visits(tree, 1, {0.75}, {1.0}), (Ints{1, 2}));
    EXPECT_EQ(visits(tree, 1, {0.0}, {0.3}), (Ints{1, 3}));
}

TEST(ADTree, EqualKeysGoRightEachTime)
{
    ADTree tree(kZero.data(), kOne.data(), 1);
    insertAll(tree, {1.0, 1.0, 1.0, 1.0});
    EXPECT_EQ(visits(tree, 1, {1.0}, {1.0}), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(visits(tree, 1, {0.6}, {0.7}), (Ints{1, 2})); // the regions [0, 1], [0.5, 1], [0.75, 1], [0.875, 1]
}

// The root splits x, its branches y, theirs x again.
TEST(ADTree, TheCoordinatesTakeTurnsByDepth)
{
    ADTree tree(kZero.data(), kOne.data(), 2);
    double const keys[5][2] = {{0, 0}, {0.9, 0.1}, {0.9, 0.9}, {0.6, 0.9}, {0.1, 0.9}};
    for (int i = 0; i < 5; ++i)
        tree.insert(keys[i], i + 1);
    // 1 whole; 2 right half; 3 its upper half; 4 the left half of that; 5 left half
    EXPECT_EQ(visits(tree, 2), (Ints{1, 2, 3, 4, 5}));
    EXPECT_EQ(visits(tree, 2, {0.8, 0.0}, {1.0, 0.4}), (Ints{1, 2}));
    EXPECT_EQ(visits(tree, 2, {0.8, 0.6}, {1.0, 1.0}), (Ints{1, 2, 3}));
    EXPECT_EQ(visits(tree, 2, {0.6, 0.6}, {0.7, 0.7}), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(visits(tree, 2, {0.0, 0.0}, {0.1, 0.1}), (Ints{1, 5}));
}

TEST(ADTree, AQueryBoxThatOnlyMeetsARegionAtItsBorderVisitsItsLink)
{
    ADTree tree(kZero.data(), kOne.data(), 1);
    insertAll(tree, {0.5, 0.2, 0.8});
    EXPECT_EQ(visits(tree, 1, {0.5}, {0.5}), (Ints{1, 3, 2}));
    EXPECT_EQ(visits(tree, 1, {1.0}, {2.0}), (Ints{1, 3}));
    EXPECT_EQ(visits(tree, 1, {-1.0}, {0.0}), (Ints{1, 2}));
    EXPECT_EQ(visits(tree, 1, {1.0000001}, {2.0}), Ints{});
}

TEST(ADTree, GivesItsRegionBack)
{
    Corner const lower{-1, -2, -3, -4, -5, -6};
    Corner const upper{1, 2, 3, 4, 5, 6};
    for (int dimension : {1, 3, 6})
    {
        ADTree const tree(lower.data(), upper.data(), dimension);
        Corner low;
        Corner high;
        low.fill(99);
        high.fill(99);
        tree.getRegion(low.data(), high.data());
        for (std::size_t i = 0; i < 6; ++i)
        {
            bool const held = static_cast<int>(i) < dimension;
            EXPECT_EQ(low[i], held ? lower[i] : 99) << i;
            EXPECT_EQ(high[i], held ? upper[i] : 99) << i;
        }
    }
}

TEST(ADTree, WithoutALinkNothingIsVisited)
{
    ADTree tree(kZero.data(), kOne.data(), 2);
    EXPECT_EQ(visits(tree, 2), Ints{});
}

TEST(ADTree, ATreeOfNoDimensionTakesNoLink)
{
    for (int dimension : {0, -1, -2147483647})
    {
        ADTree tree(nullptr, nullptr, dimension);
        tree.insert(nullptr, 1);
        EXPECT_EQ(visits(tree, 1), Ints{});
    }
}

TEST(ADTree, DimensionsBeyondSixAreSix)
{
    ADTree tree(kZero.data(), kOne.data(), 99);
    tree.insert(kOne.data(), 1);
    tree.insert(kOne.data(), 2);
    EXPECT_EQ(visits(tree, 99), (Ints{1, 2}));
}

TEST(ADTree, AQueryOfMoreDimensionsThanTheTreeSeesItAtZeroThere)
{
    ADTree tree(kOne.data(), kOne.data(), 1);
    tree.insert(kOne.data(), 1);
    EXPECT_EQ(visits(tree, 2, {1, 0}, {1, 0}), (Ints{1}));
    EXPECT_EQ(visits(tree, 2, {1, 1}, {1, 1}), Ints{});
}

TEST(ADTree, DeepBranchesAreWalkedAndFreedWithoutRecursion)
{
    ADTree tree(kZero.data(), kOne.data(), 1);
    int const count = 8000;
    for (int i = 1; i <= count; ++i)
    {
        double const key = i % 2 != 0 ? 1.0 : 0.0; // two chains from the root
        tree.insert(&key, i);
    }
    EXPECT_EQ(visits(tree, 1).size(), static_cast<std::size_t>(count));
}

TEST(ADTreeLink, HoldsAnIdAndTwoBranches)
{
    ADTreeLink link;
    EXPECT_EQ(link.getId(), 0);
    EXPECT_EQ(link.getLeft(), nullptr);
    EXPECT_EQ(link.getRight(), nullptr);
    ADTreeLink left(7);
    ADTreeLink right(-8);
    link.setId(5);
    link.setLeft(&left);
    link.setRight(&right);
    EXPECT_EQ(link.getId(), 5);
    EXPECT_EQ(link.getLeft()->getId(), 7);
    EXPECT_EQ(link.getRight()->getId(), -8);
}

TEST(ADTreeQuery, BoxesThatTouchOverlapInEveryDimension)
{
    ADTreeQuery const query(2, Corner{0, 0}.data(), Corner{1, 1}.data());
    EXPECT_TRUE(query.overlap(Corner{0.2, 0.2}.data(), Corner{0.3, 0.3}.data()));
    EXPECT_TRUE(query.overlap(Corner{-1, -1}.data(), Corner{2, 2}.data()));
    EXPECT_TRUE(query.overlap(Corner{1, 1}.data(), Corner{2, 2}.data()));
    EXPECT_TRUE(query.overlap(Corner{-1, -1}.data(), Corner{0, 0}.data()));
    EXPECT_FALSE(query.overlap(Corner{1.1, 0}.data(), Corner{2, 1}.data()));
    EXPECT_FALSE(query.overlap(Corner{0, -2}.data(), Corner{1, -1}.data()));
    EXPECT_TRUE(query.overlap(Corner{0, 0, 5}.data(), Corner{1, 1, 6}.data())); // beyond its dimensions
}

TEST(ADTreeQuery, CopiesItsBox)
{
    Corner lower{0};
    Corner upper{1};
    ADTreeQuery const query(1, lower.data(), upper.data());
    lower[0] = upper[0] = 9;
    EXPECT_TRUE(query.overlap(Corner{0.5}.data(), Corner{0.5}.data()));
}

TEST(ADTreeQuery, PrintsWhatItVisitsToStandardError)
{
    ADTree tree(kZero.data(), kOne.data(), 1);
    insertAll(tree, {0.5, 0.7});
    ADTreeQuery query(1, kZero.data(), kOne.data());
    testing::internal::CaptureStderr();
    tree.query(query);
    query.visit(-3);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "1\n2\n-3\n");
}

struct Entry
{
    int id;
    Corner key;
};

// The rule told once more: the first entry is the link, the others are sorted by the middle of its region.
void slowQuery(std::vector<Entry> const & entries, Corner lower, Corner upper, int depth, int dimension,
               Corner const & low, Corner const & high, Ints & o_ids)
{
    if (entries.empty())
        return;
    for (int i = 0; i < dimension; ++i)
    {
        std::size_t const k = static_cast<std::size_t>(i);
        if (std::max(lower[k], low[k]) > std::min(upper[k], high[k]))
            return;
    }
    o_ids.push_back(entries[0].id);
    std::size_t const c = static_cast<std::size_t>(depth % dimension);
    double const mid = (lower[c] + upper[c]) * 0.5;
    std::vector<Entry> left;
    std::vector<Entry> right;
    for (std::size_t i = 1; i < entries.size(); ++i)
        (entries[i].key[c] < mid ? left : right).push_back(entries[i]);
    Corner rightLower = lower;
    Corner leftUpper = upper;
    rightLower[c] = leftUpper[c] = mid;
    slowQuery(right, rightLower, upper, depth + 1, dimension, low, high, o_ids);
    slowQuery(left, lower, leftUpper, depth + 1, dimension, low, high, o_ids);
}

TEST(ADTree, RandomQueriesAgreeWithTheSlowRuleAndMissNothing)
{
    std::mt19937 random(85);
    for (int round = 0; round < 300; ++round)
    {
        int const dimension = 1 + round % 6;
        // coarse numbers, so that keys meet middles, borders and each other
        double const step = round % 2 == 0 ? 0.125 : 1e-3;
        auto const number = [&]
        { return step * std::uniform_int_distribution<int>(0, static_cast<int>(1 / step))(random); };
        Corner const lower{-1, 0, 0, -0.5, 0, 0};
        Corner const upper{1, 1, 2, 1, 1, 1.5};
        ADTree tree(lower.data(), upper.data(), dimension);
        std::vector<Entry> entries(1 + random() % 200);
        for (Entry & entry : entries)
        {
            entry.id = static_cast<int>(random() % 1000) - 500;
            for (double & value : entry.key)
                value = number();
            tree.insert(entry.key.data(), entry.id);
        }
        for (int q = 0; q < 10; ++q)
        {
            Corner low{};
            Corner high{};
            for (std::size_t i = 0; i < 6; ++i)
            {
                low[i] = number();
                high[i] = low[i] + 0.5 * number();
            }
            Ints expected;
            slowQuery(entries, lower, upper, 0, dimension, low, high, expected);
            Ints const found = visits(tree, dimension, low, high);
            ASSERT_EQ(found, expected) << "round " << round;
            for (Entry const & entry : entries)
            {
                bool inside = true;
                for (std::size_t i = 0; i < static_cast<std::size_t>(dimension); ++i)
                    inside = inside && low[i] <= entry.key[i] && entry.key[i] <= high[i];
                bool const isFound = std::find(found.begin(), found.end(), entry.id) != found.end();
                ASSERT_TRUE(isFound || !inside) << "round " << round;
            }
        }
    }
}
} // namespace
