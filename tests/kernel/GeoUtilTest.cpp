// GeoUtilTest.cpp: frames, lengths, polylines, and the parabola through a thickness.

#include "VOZEngUtility.h"
#include "VOZGeoUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace
{

using Vector = std::array<double, 3>;
using Matrix = std::array<double, 9>;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
Matrix const kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};

Matrix frameOf(Vector const & vector)
{
    Matrix matrix;
    matrix.fill(kNan);
    VOZGeoUtil::EvalLocalCoordSystemMatrix(vector.data(), matrix.data());
    return matrix;
}

double rowProduct(Matrix const & m, std::size_t i, std::size_t k)
{
    return m[3 * i] * m[3 * k] + m[3 * i + 1] * m[3 * k + 1] + m[3 * i + 2] * m[3 * k + 2];
}

double determinant(Matrix const & m)
{
    return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) + m[2] * (m[3] * m[7] - m[4] * m[6]);
}

// Orthonormal, right-handed, the third row along the vector, the first in the plane of x and the vector, towards x.
void expectFrame(Vector const & vector)
{
    Matrix const m = frameOf(vector);
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_NEAR(rowProduct(m, i, k), i == k ? 1.0 : 0.0, 1e-14) << vector[0] << " " << vector[1];
    EXPECT_NEAR(determinant(m), 1.0, 1e-14);
    double const length = VOZGeoUtil::EvalLength3D(vector.data());
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(m[6 + i], vector[i] / length, 1e-15);
    EXPECT_NEAR(m[3], 0.0, 1e-15); // the second row is square to x and to the vector
    EXPECT_GT(m[0], 0.0);
}

TEST(LocalFrame, IsTheIdentityForTheZAxisOfAnyLengthWithoutASignOnAnyZero)
{
    for (double length : {1.0, 1e-200, 0.001, 7.0, 1e200})
    {
        Matrix const m = frameOf({0.0, 0.0, length});
        EXPECT_EQ(m, kIdentity);
        EXPECT_TRUE(std::none_of(m.begin(), m.end(), [](double value) { return std::signbit(value); }));
    }
}

TEST(LocalFrame, TurnsTheHandTogetherWithTheVectorForMinusZ)
{
    EXPECT_EQ(frameOf({0, 0, -2}), (Matrix{1, 0, 0, 0, -1, 0, 0, 0, -1}));
}

TEST(LocalFrame, TakesTheYAxisFirstForAVectorAlongX)
{
    EXPECT_EQ(frameOf({3, 0, 0}), (Matrix{0, 1, 0, 0, 0, 1, 1, 0, 0}));
    EXPECT_EQ(frameOf({-3, 0, 0}), (Matrix{0, 1, 0, 0, 0, -1, -1, 0, 0}));
}

TEST(LocalFrame, IsARotationOntoTheVectorForRandomVectorsOfAnyLength)
{
    std::mt19937 random(3);
    std::normal_distribution<double> normal;
    for (int turn = 0; turn < 2000; ++turn)
    {
        double const length = std::pow(10.0, static_cast<double>(turn % 300 - 150));
        expectFrame({length * normal(random), length * normal(random), length * normal(random)});
    }
}

TEST(LocalFrame, StaysARotationForVectorsThatAreNearlyAlongAnAxis)
{
    for (double tilt = 1e-1; tilt > 1e-11; tilt *= 0.1)
        for (double sign : {1.0, -1.0})
        {
            expectFrame({sign, tilt, -tilt});
            expectFrame({sign, 0.0, tilt});
            expectFrame({tilt, -sign, tilt});
            expectFrame({tilt, tilt, sign});
        }
}

TEST(LocalFrame, TurnsLittleWhereTheVectorNearZTurnsLittle)
{
    for (double tilt = 1e-3; tilt > 1e-15; tilt *= 0.1)
    {
        Matrix const m = frameOf({tilt, -tilt, 1.0});
        for (std::size_t i = 0; i < 9; ++i)
            EXPECT_NEAR(m[i], kIdentity[i], 1.5 * tilt);
    }
}

TEST(LocalFrame, IsTheIdentityForAVectorWithoutADirection)
{
    for (Vector const & vector : {Vector{0, 0, 0}, Vector{kNan, 0, 1}, Vector{0, 1, kNan}, Vector{kInf, 1, 0}})
        EXPECT_EQ(frameOf(vector), kIdentity);
}

TEST(FrameConversion, GoesToTheFrameAndBack)
{
    std::mt19937 random(4);
    std::normal_distribution<double> normal;
    for (int turn = 0; turn < 500; ++turn)
    {
        Matrix const frame = frameOf({normal(random), normal(random), normal(random)});
        Vector const origin = {normal(random), normal(random), normal(random)};
        Vector const point = {normal(random), normal(random), normal(random)};
        Vector moved = point;
        VOZGeoUtil::ConvertCoordGlobalToLocal(origin.data(), frame.data(), moved.data());
        double const fromOrigin = std::hypot(point[0] - origin[0], point[1] - origin[1], point[2] - origin[2]);
        EXPECT_NEAR(VOZGeoUtil::EvalLength3D(moved.data()), fromOrigin, 1e-13);
        VOZGeoUtil::ConvertCoordLocalToGlobal(origin.data(), frame.data(), moved.data());
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(moved[i], point[i], 1e-14);
    }
}

TEST(FrameConversion, ALocalUnitPointIsTheOriginPlusAnAxis)
{
    Matrix const frame = frameOf({1, 2, 3});
    Vector const origin = {10, 20, 30};
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        Vector point = {0, 0, 0};
        point[axis] = 1.0;
        VOZGeoUtil::ConvertCoordLocalToGlobal(origin.data(), frame.data(), point.data());
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_DOUBLE_EQ(point[i], origin[i] + frame[3 * axis + i]);
    }
}

TEST(Length, IsTheEuclideanOneOverTheWholeRangeOfDoubles)
{
    EXPECT_DOUBLE_EQ(VOZGeoUtil::EvalLength3D(Vector{2, -3, 6}.data()), 7.0);
    EXPECT_DOUBLE_EQ(VOZGeoUtil::EvalLength3D(Vector{2e200, 3e200, 6e200}.data()), 7e200);
    EXPECT_DOUBLE_EQ(VOZGeoUtil::EvalLength3D(Vector{2e-200, 3e-200, -6e-200}.data()), 7e-200);
    EXPECT_EQ(VOZGeoUtil::EvalLength3D(Vector{0, 0, 0}.data()), 0.0);
}

struct Scale
{
    explicit Scale(std::vector<double> const & points)
    {
        VOZGeoUtil::EvalScaleParametersForPolyline3D(static_cast<int>(points.size() / 3), points.data(), scale,
                                                     offsets.data());
    }
    double scale = kNan;
    Vector offsets = {kNan, kNan, kNan};
};

TEST(CrossProduct, IsSquareToBothInTheOrderOfTheAxes)
{
    Vector cross{};
    VOZGeoUtil::EvalCross3D(Vector{2, 0, 0}.data(), Vector{0, 3, 0}.data(), cross.data());
    EXPECT_EQ(cross, (Vector{0, 0, 6}));
    VOZGeoUtil::EvalCross3D(Vector{1, 2, 3}.data(), Vector{4, 5, 7}.data(), cross.data());
    EXPECT_EQ(cross, (Vector{-1, 5, -3}));
    Vector inPlace = {4, 5, 7};
    VOZGeoUtil::EvalCross3D(Vector{1, 2, 3}.data(), inPlace.data(), inPlace.data());
    EXPECT_EQ(inPlace, cross);
}

TEST(Normalizing, GivesALengthOfOneOverTheWholeRangeOfDoubles)
{
    for (double length : {1.0, 1e-300, 1e300, 5.0})
    {
        Vector vector = {3 * length, 0, -4 * length};
        VOZGeoUtil::Normalize3D(vector.data());
        EXPECT_NEAR(vector[0], 0.6, 1e-15);
        EXPECT_EQ(vector[1], 0.0);
        EXPECT_NEAR(vector[2], -0.8, 1e-15);
    }
}

TEST(Normalizing, LeavesAVectorWithoutADirection)
{
    Vector none = {0, 0, 0};
    VOZGeoUtil::Normalize3D(none.data());
    EXPECT_EQ(none, (Vector{0, 0, 0}));
    Vector endless = {kInf, 1, 0};
    VOZGeoUtil::Normalize3D(endless.data());
    EXPECT_EQ(endless, (Vector{kInf, 1, 0}));
    Vector broken = {1, kNan, 2};
    VOZGeoUtil::Normalize3D(broken.data());
    EXPECT_EQ(broken[0], 1.0);
    EXPECT_EQ(broken[2], 2.0);
}

TEST(PolylineScale, PutsThePolylineIntoTheUnitCubeAndFillsItsLongestSide)
{
    Scale const scale({10, 2, 5, 14, 4, 5, 12, 3, 4});
    EXPECT_EQ(scale.scale, 0.25);
    EXPECT_EQ(scale.offsets, (Vector{10, 2, 4}));
}

TEST(PolylineScale, HoldsForRandomPolylines)
{
    std::mt19937 random(5);
    std::normal_distribution<double> normal;
    for (int turn = 0; turn < 200; ++turn)
    {
        std::vector<double> points;
        for (int i = 0; i < 3 * (2 + turn % 30); ++i)
            points.push_back(100.0 * normal(random));
        Scale const scale(points);
        double largest = 0.0;
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            double const inCube = (points[i] - scale.offsets[i % 3]) * scale.scale;
            EXPECT_GE(inCube, 0.0);
            largest = std::max(largest, inCube);
        }
        EXPECT_NEAR(largest, 1.0, 1e-15);
    }
}

TEST(PolylineScale, IsZeroWhereNoScaleExists)
{
    EXPECT_EQ(Scale({}).scale, 0.0);
    EXPECT_EQ(Scale({}).offsets, (Vector{0, 0, 0}));
    EXPECT_EQ(Scale({1, 2, 3, 1, 2, 3}).scale, 0.0);
    EXPECT_EQ(Scale({1, 2, 3, 1, 2, 3}).offsets, (Vector{1, 2, 3}));
    for (double bad : {kNan, kInf, -kInf})
        for (std::size_t at = 0; at < 6; ++at)
        {
            std::vector<double> points = {0, 0, 0, 1, 1, 1};
            points[at] = bad;
            EXPECT_EQ(Scale(points).scale, 0.0);
            EXPECT_EQ(Scale(points).offsets, (Vector{0, 0, 0}));
        }
    EXPECT_EQ(Scale({-1.7e308, 0, 0, 1.7e308, 0, 0}).scale, 0.0); // the side is beyond the range of doubles
    EXPECT_EQ(Scale({0, 0, 0, 4e-324, 0, 0}).scale, 0.0);         // its reciprocal is
}

TEST(ThroughThickness, GivesEachSurfaceItsOwnValueExactly)
{
    std::mt19937 random(6);
    std::uniform_real_distribution<double> strain(0.0, 1.0);
    for (int turn = 0; turn < 100; ++turn)
    {
        double const mid = strain(random);
        double const top = strain(random);
        double const bottom = strain(random);
        EXPECT_EQ(VOZEngUtility::EvalEquivalentStrainThroughThickness(0.0, mid, top, bottom), mid);
        EXPECT_EQ(VOZEngUtility::EvalEquivalentStrainThroughThickness(1.0, mid, top, bottom), top);
        EXPECT_EQ(VOZEngUtility::EvalEquivalentStrainThroughThickness(-1.0, mid, top, bottom), bottom);
    }
}

TEST(ThroughThickness, FollowsAnyParabola)
{
    auto const parabola = [](double t) { return 0.2 - 0.05 * t + 0.3 * t * t; };
    for (double t : {-1.0, -0.6546536707079771, -0.3, 0.0, 0.25, 0.6546536707079771, 1.0})
        EXPECT_NEAR(
            VOZEngUtility::EvalEquivalentStrainThroughThickness(t, parabola(0.0), parabola(1.0), parabola(-1.0)),
            parabola(t), 1e-15);
}

} // namespace
