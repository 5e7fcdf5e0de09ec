// VecTest.cpp: which operation yields which of the three storage modes, and the arithmetic.

#include "Vec.h"

#include "VecInspection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{
using Values = std::array<double, 3>;

struct OpenVec : Vec
{
    using Vec::copy;
    using Vec::increment;
    using Vec::unique;
    using Vec::Vec;
};

TEST(Vec, DefaultIsACountedZero)
{
    Vec const v;
    EXPECT_EQ(values(v), (Values{0, 0, 0}));
    EXPECT_EQ(countOf(v), 1);
}

TEST(Vec, FromAMutableRowIsAViewOfIt)
{
    double row[3] = {1, 2, 3};
    Vec v(row);
    EXPECT_EQ(members(v).values, row);
    EXPECT_EQ(members(v).count, nullptr);
    v[1] = 7;
    EXPECT_EQ(row[1], 7);
    row[2] = 9;
    EXPECT_EQ(std::as_const(v)[2], 9);
}

TEST(Vec, FromAConstRowIsACountedCopy)
{
    double const row[3] = {1, 2, 3};
    Vec v(row);
    EXPECT_NE(members(v).values, row);
    EXPECT_EQ(countOf(v), 1);
    v[0] = 5;
    EXPECT_EQ(row[0], 1);
}

TEST(Vec, FromThreeDoublesOrFloatsIsABlockWithoutACount)
{
    Vec const doubles(1.0, 2.0, 3.0);
    EXPECT_EQ(values(doubles), (Values{1, 2, 3}));
    EXPECT_EQ(members(doubles).count, nullptr);
    float row[3] = {0.1F, -2.0F, 3.5F};
    Vec const floats(row);
    EXPECT_EQ(values(floats), (Values{static_cast<double>(0.1F), -2.0, 3.5}));
    EXPECT_EQ(members(floats).count, nullptr);
    row[0] = 9.0F;
    EXPECT_EQ(floats[0], static_cast<double>(0.1F));
}

TEST(Vec, TheUnownedBlockOutlivesItsVector)
{
    double * block = nullptr;
    {
        Vec const v(4.0, 5.0, 6.0);
        block = members(v).values;
    }
    EXPECT_EQ(block[2], 6.0);
    delete[] block;
}

TEST(Vec, CopyOfACountedVectorSharesItsBlock)
{
    Vec const a = vec(1, 2, 3);
    {
        Vec const b(a);
        EXPECT_EQ(members(b).values, members(a).values);
        EXPECT_EQ(countOf(a), 2);
    }
    EXPECT_EQ(countOf(a), 1);
}

TEST(Vec, CopyOfAViewOrOfAnUnownedBlockIsCountedAndIndependent)
{
    double row[3] = {1, 2, 3};
    Vec view(row);
    Vec copy(view);
    EXPECT_EQ(countOf(copy), 1);
    copy[0] = 8;
    EXPECT_EQ(row[0], 1);
    EXPECT_EQ(std::as_const(view)[0], 1);
    Vec const unowned(1.0, 2.0, 3.0);
    Vec const ofUnowned(unowned);
    EXPECT_EQ(countOf(ofUnowned), 1);
    EXPECT_NE(members(ofUnowned).values, members(unowned).values);
}

TEST(Vec, WritingToOneOfTwoThatShareGivesItABlockOfItsOwn)
{
    Vec a = vec(1, 2, 3);
    Vec const b(a);
    a[0] = 9;
    EXPECT_EQ(values(a), (Values{9, 2, 3}));
    EXPECT_EQ(values(b), (Values{1, 2, 3}));
    EXPECT_EQ(countOf(a), 1);
    EXPECT_EQ(countOf(b), 1);
}

TEST(Vec, WritingToTheOnlyHolderKeepsItsBlock)
{
    Vec a = vec(1, 2, 3);
    double * const block = members(a).values;
    a[0] = 9;
    a += vec(1, 1, 1);
    EXPECT_EQ(members(a).values, block);
}

TEST(Vec, AssignmentToAViewWritesThroughAndStaysAView)
{
    double row[3] = {1, 2, 3};
    Vec view(row);
    view = vec(4, 5, 6);
    EXPECT_EQ(row[0] + row[1] + row[2], 15);
    EXPECT_EQ(members(view).values, row);
    EXPECT_EQ(members(view).count, nullptr);
    double other[3] = {7, 8, 9};
    view = Vec(other);
    EXPECT_EQ(row[0], 7);
    EXPECT_EQ(members(view).values, row);
}

TEST(Vec, AssignmentToAnUnownedBlockWritesIntoIt)
{
    Vec unowned(1.0, 2.0, 3.0);
    double * const block = members(unowned).values;
    unowned = vec(4, 5, 6);
    EXPECT_EQ(members(unowned).values, block);
    EXPECT_EQ(values(unowned), (Values{4, 5, 6}));
}

TEST(Vec, AViewAssignedToASoleHolderIsCopiedIntoItsBlock)
{
    double row[3] = {4, 5, 6};
    Vec a = vec(1, 2, 3);
    double * const block = members(a).values;
    a = Vec(row);
    EXPECT_EQ(members(a).values, block);
    EXPECT_EQ(countOf(a), 1);
    row[0] = 0;
    EXPECT_EQ(values(a), (Values{4, 5, 6}));
}

TEST(Vec, AViewAssignedToAHolderThatSharesDetachesIt)
{
    double row[3] = {4, 5, 6};
    Vec a = vec(1, 2, 3);
    Vec const b(a);
    Vec view(row);
    a = view;
    EXPECT_NE(members(a).values, row);
    EXPECT_NE(members(a).values, members(b).values);
    EXPECT_EQ(countOf(a), 1);
    EXPECT_EQ(countOf(b), 1);
    EXPECT_EQ(values(b), (Values{1, 2, 3}));
    row[0] = 0;
    EXPECT_EQ(values(a), (Values{4, 5, 6}));
}

TEST(Vec, ACountedVectorAssignedToACountedOneIsShared)
{
    Vec a = vec(1, 2, 3);
    Vec const b = vec(4, 5, 6);
    a = b;
    EXPECT_EQ(members(a).values, members(b).values);
    EXPECT_EQ(countOf(b), 2);
}

TEST(Vec, AssignmentOfAMutableRowReseatsAndOfAConstRowCopies)
{
    double row[3] = {4, 5, 6};
    Vec a = vec(1, 2, 3);
    Vec const sharer(a);
    a = row;
    EXPECT_EQ(members(a).values, row);
    EXPECT_EQ(members(a).count, nullptr);
    EXPECT_EQ(countOf(sharer), 1);
    a = static_cast<double const *>(row);
    EXPECT_NE(members(a).values, row);
    EXPECT_EQ(countOf(a), 1);
    a = static_cast<double const *>(members(a).values); // its own block
    EXPECT_EQ(values(a), (Values{4, 5, 6}));
}

TEST(Vec, ZeroClearsAViewInPlaceAndDetachesACountedVector)
{
    double row[3] = {4, 5, 6};
    Vec view(row);
    view.zero();
    EXPECT_EQ(row[0] + row[1] + row[2], 0);
    EXPECT_EQ(members(view).values, row);
    Vec a = vec(1, 2, 3);
    Vec const b(a);
    a.zero();
    EXPECT_EQ(values(a), (Values{0, 0, 0}));
    EXPECT_EQ(values(b), (Values{1, 2, 3}));
    EXPECT_EQ(countOf(a), 1);
    EXPECT_EQ(countOf(b), 1);
}

TEST(Vec, CompoundOperatorsChangeAViewedRowAndDetachAShare)
{
    double row[3] = {1, 2, 4};
    Vec view(row);
    ((view += vec(1, 1, 1)) *= 4.0) /= 2.0;
    view -= vec(0, 1, 0);
    EXPECT_EQ(values(view), (Values{4, 5, 10}));
    EXPECT_EQ(row[2], 10);
    Vec a = vec(1, 2, 3);
    Vec const b(a);
    EXPECT_EQ(&(a *= 2.0), &a);
    EXPECT_EQ(values(b), (Values{1, 2, 3}));
    a += a;
    EXPECT_EQ(values(a), (Values{4, 8, 12}));
}

TEST(Vec, ArithmeticGivesNewCountedVectorsAndKeepsItsOperands)
{
    double row[3] = {1, 2, 3};
    Vec const a(row);
    Vec const b = vec(4, 6, 9);
    for (Vec const & result : {-a, a + b, a - b, a * 2.0, a / 2.0, a.cross(b)})
        EXPECT_EQ(countOf(result) > 0, true);
    EXPECT_EQ(values(-a), (Values{-1, -2, -3}));
    EXPECT_EQ(values(a + b), (Values{5, 8, 12}));
    EXPECT_EQ(values(a - b), (Values{-3, -4, -6}));
    EXPECT_EQ(values(a * 2.0), (Values{2, 4, 6}));
    EXPECT_EQ(values(a / 2.0), (Values{0.5, 1, 1.5}));
    EXPECT_EQ(values(a.cross(b)), (Values{2 * 9 - 3 * 6, 3 * 4 - 1 * 9, 1 * 6 - 2 * 4}));
    EXPECT_EQ(row[0], 1);
    EXPECT_EQ(values(b), (Values{4, 6, 9}));
}

TEST(Vec, ProductsLengthsAndAreas)
{
    Vec const a = vec(1, 2, 2);
    EXPECT_EQ(a.dot(vec(3, -1, 5)), 11);
    EXPECT_EQ(a.length(), 3);
    EXPECT_EQ(a.distance(vec(1, 2, 7)), 5);
    EXPECT_EQ(vec(1, 1, 1).area(vec(4, 1, 1), vec(1, 5, 1)), 6);
}

TEST(Vec, UnitDividesByTheLengthInPlace)
{
    double row[3] = {0, 3, 4};
    Vec(row).unit();
    EXPECT_EQ(row[1], 0.6);
    EXPECT_EQ(row[2], 0.8);
}

TEST(Vec, UnitOfAZeroVectorIsNaN)
{
    Vec v;
    v.unit();
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(std::isnan(std::as_const(v)[i]));
    EXPECT_FALSE(v == v);
    EXPECT_TRUE(v != v);
}

TEST(Vec, ComparisonIsExactInEachComponent)
{
    Vec const a = vec(1, 2, 3);
    EXPECT_TRUE(a == vec(1, 2, 3));
    for (int i = 0; i < 3; ++i)
    {
        Vec b(a);
        b[i] = std::nextafter(b[i], 10.0);
        EXPECT_FALSE(a == b);
        EXPECT_TRUE(a != b);
    }
}

TEST(Vec, ReadingAConstVectorNeverDetaches)
{
    Vec const a = vec(1, 2, 3);
    Vec const b(a);
    EXPECT_EQ(b[1] + b.length() * 0.0 + a.dot(b) * 0.0, 2);
    EXPECT_EQ(members(a).values, members(b).values);
    static_assert(std::is_same_v<decltype(std::declval<Vec const &>()[0]), double>);
}

TEST(Vec, ProtectedOperationsCountCopyAndDetach)
{
    double row[3] = {1, 2, 3};
    OpenVec view(row);
    view.increment();
    view.unique();
    EXPECT_EQ(members(view).values, row);
    view.copy();
    EXPECT_NE(members(view).values, row);
    EXPECT_EQ(countOf(view), 1);
    double * const block = members(view).values;
    view.unique();
    EXPECT_EQ(members(view).values, block);
    Vec const sharer(view);
    view.copy();
    EXPECT_EQ(countOf(view), 1);
    EXPECT_EQ(countOf(sharer), 1);
}

// Random operations on a pool of views and counted vectors, against plain values: a view aliases its row for good.
TEST(Vec, RandomAssignmentsAgreeWithPlainValues)
{
    std::mt19937 random(7);
    double rows[4][3] = {};
    {
        std::vector<Vec> pool;
        pool.reserve(8); // a move to a larger block would copy the views
        for (double(&row)[3] : rows)
            pool.emplace_back(row);
        for (int i = 0; i < 4; ++i)
            pool.emplace_back();
        std::array<Values, 8> expected{};
        for (int step = 0; step < 20000; ++step)
        {
            std::size_t const a = random() % 8;
            std::size_t const b = random() % 8;
            std::size_t const c = random() % 3;
            double const value = static_cast<double>(random() % 100);
            switch (random() % 4)
            {
            case 0:
                if (a == b)
                    break;
                pool[a] = pool[b];
                expected[a] = expected[b];
                break;
            case 1:
                pool[a][static_cast<int>(c)] = value;
                expected[a][c] = value;
                break;
            case 2:
                pool[a] -= pool[b];
                for (std::size_t i = 0; i < 3; ++i)
                    expected[a][i] -= a == b ? expected[a][i] : expected[b][i];
                break;
            default:
                pool[a].zero();
                expected[a] = {};
            }
            for (std::size_t i = 0; i < 8; ++i)
                ASSERT_EQ(values(pool[i]), expected[i]) << "step " << step << ", vector " << i;
        }
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_EQ(members(pool[i]).values, rows[i]);
    }
}
} // namespace
