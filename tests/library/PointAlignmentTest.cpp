// PointAlignmentTest.cpp. Rigid motions are drawn at random and recovered; the single-precision road is pinned by an
// independent evaluation with long hand.

#include "PointAlignment.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace
{
using namespace pointalignment;

using Matrix = std::array<double, 16>;
using Point = std::array<double, 3>;
using FPoint = std::array<float, 3>;

Matrix const kUnit = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

std::vector<double> flat(std::vector<Point> const & points)
{
    std::vector<double> result;
    for (Point const & p : points)
        result.insert(result.end(), p.begin(), p.end());
    return result;
}

Matrix aligned(std::vector<Point> const & target, std::vector<Point> const & source)
{
    Matrix matrix;
    matrix.fill(7.0);
    AlignPoints(flat(target).data(), flat(source).data(), static_cast<int>(target.size()), matrix.data());
    return matrix;
}

Point moved(Matrix const & matrix, Point p)
{
    TransformPoint(p.data(), matrix.data());
    return p;
}

double distance(Point const & a, Point const & b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

class Draw
{
public:
    double number(double scale = 1.0) { return scale * mUnit(mRandom); }
    Point point(double scale = 1.0) { return {number(scale), number(scale), number(scale)}; }
    std::vector<Point> points(int n)
    {
        std::vector<Point> result;
        for (int i = 0; i < n; ++i)
            result.push_back(point());
        return result;
    }
    Matrix motion() // by a unit quaternion
    {
        double q[4];
        double norm = 0.0;
        for (double & part : q)
        {
            part = number();
            norm += part * part;
        }
        for (double & part : q)
            part /= std::sqrt(norm);
        double const w = q[0];
        double const x = q[1];
        double const y = q[2];
        double const z = q[3];
        return {1 - 2 * (y * y + z * z),
                2 * (x * y - w * z),
                2 * (x * z + w * y),
                number(),
                2 * (x * y + w * z),
                1 - 2 * (x * x + z * z),
                2 * (y * z - w * x),
                number(),
                2 * (x * z - w * y),
                2 * (y * z + w * x),
                1 - 2 * (x * x + y * y),
                number(),
                0,
                0,
                0,
                1};
    }

private:
    std::mt19937 mRandom{20};
    std::uniform_real_distribution<double> mUnit{-1.0, 1.0};
};

std::vector<Point> all(Matrix const & motion, std::vector<Point> const & points)
{
    std::vector<Point> result;
    for (Point const & p : points)
        result.push_back(moved(motion, p));
    return result;
}

bool isRotation(Matrix const & m, double tolerance)
{
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
        {
            double sum = 0.0;
            for (std::size_t k = 0; k < 3; ++k)
                sum += m[4 * i + k] * m[4 * j + k];
            if (std::fabs(sum - (i == j ? 1.0 : 0.0)) > tolerance)
                return false;
        }
    return m[12] == 0.0 && m[13] == 0.0 && m[14] == 0.0 && m[15] == 1.0;
}

TEST(TransformPoint, AppliesTheMatrixInPlace)
{
    Matrix const matrix = {0, -1, 0, 10, 1, 0, 0, 20, 0, 0, 1, 30, 0, 0, 0, 1};
    EXPECT_EQ(moved(matrix, {1, 2, 3}), (Point{8, 21, 33}));
}

TEST(AlignPoints, WithoutAPairTheIdentityStands)
{
    EXPECT_EQ(aligned({}, {}), kUnit);
    Matrix matrix;
    Point const p = {1, 2, 3};
    AlignPoints(p.data(), p.data(), -1, matrix.data());
    EXPECT_EQ(matrix, kUnit);
    AlignPoints(nullptr, p.data(), 1, matrix.data());
    EXPECT_EQ(matrix, kUnit);
    AlignPoints(p.data(), p.data(), 1, nullptr);
}

// Coordinates in metres become millimetres in single precision before they are subtracted.
TEST(AlignPoints, OnePairIsAShiftOfSinglePrecisionMillimetres)
{
    Point const target = {0.1234567891, -2.5, 1.0 / 3.0};
    Point const source = {0.9876543219, 0.0, 1e-9};
    Matrix const matrix = aligned({target}, {source});
    Matrix expected = kUnit;
    for (std::size_t i = 0; i < 3; ++i)
    {
        float const p = static_cast<float>(target[i] * 1000.0);
        float const q = static_cast<float>(source[i] * 1000.0);
        expected[4 * i + 3] = (static_cast<double>(p) - static_cast<double>(q)) / 1000.0;
    }
    EXPECT_EQ(matrix, expected);
}

TEST(AlignPoints, TwoPairsFitTheirDirectionAndTheSecondPointExactly)
{
    Draw draw;
    for (int run = 0; run < 200; ++run)
    {
        std::vector<Point> const target = draw.points(2);
        std::vector<Point> const source = draw.points(2); // of another distance
        Matrix const matrix = aligned(target, source);
        EXPECT_TRUE(isRotation(matrix, 1e-5)); // the axis is single precision
        EXPECT_LT(distance(moved(matrix, source[1]), target[1]), 3e-7);
        Point const first = moved(matrix, source[0]);
        double const d = distance(target[0], target[1]);
        double const along = distance(source[0], source[1]);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR((first[i] - target[1][i]) / along, (target[0][i] - target[1][i]) / d, 1e-5);
    }
}

TEST(AlignPoints, TwoPairsWithEqualPointsInOneListLeaveTheIdentity)
{
    EXPECT_EQ(aligned({{1, 2, 3}, {1, 2, 3}}, {{0, 0, 0}, {1, 0, 0}}), kUnit);
    EXPECT_EQ(aligned({{1, 2, 3}, {4, 2, 3}}, {{5, 5, 5}, {5, 5, 5}}), kUnit);
}

TEST(AlignPoints, OppositePairsAreNotTurned)
{
    Matrix const matrix = aligned({{0, 0, 0}, {0.001, 0, 0}}, {{0, 0, 0}, {-0.001, 0, 0}});
    Matrix expected = kUnit;
    expected[3] = 0.002; // the second pair fits
    EXPECT_EQ(matrix, expected);
}

// A rotation of normals alone: three pairs whose triangles lie in one plane are not turned in it.
TEST(AlignPoints, ThreePairsFitTheirPlanesAndTheirMean)
{
    Draw draw;
    for (int run = 0; run < 200; ++run)
    {
        std::vector<Point> const source = draw.points(3);
        std::vector<Point> const target = all(draw.motion(), source);
        Matrix const matrix = aligned(target, source);
        EXPECT_TRUE(isRotation(matrix, 1e-5));
        Point sum = {};
        for (std::size_t k = 0; k < 3; ++k)
            for (std::size_t i = 0; i < 3; ++i)
                sum[i] += moved(matrix, source[k])[i] - target[k][i];
        for (double const rest : sum)
            EXPECT_NEAR(rest, 0.0, 1e-6);
        Point const u = {target[1][0] - target[0][0], target[1][1] - target[0][1], target[1][2] - target[0][2]};
        Point const v = {target[2][0] - target[0][0], target[2][1] - target[0][1], target[2][2] - target[0][2]};
        Point normal = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
        double const size = std::hypot(normal[0], normal[1], normal[2]);
        if (size < 0.05)
            continue;
        for (Point const & p : source) // all on the target's plane
        {
            double height = 0.0;
            for (std::size_t i = 0; i < 3; ++i)
                height += (moved(matrix, p)[i] - target[0][i]) * normal[i] / size;
            EXPECT_NEAR(height, 0.0, 1e-5);
        }
    }
}

TEST(AlignPoints, ThreePairsInOnePlaneAreShiftedOnly)
{
    Matrix const matrix = aligned({{0, 0, 0}, {0, 1, 0}, {-1, 0, 0}}, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    EXPECT_EQ(matrix[0], 1.0); // a quarter turn about the normal is not seen
    EXPECT_NEAR(matrix[3], -2.0 / 3.0, 1e-7);
    EXPECT_NEAR(matrix[7], 0.0, 1e-7);
}

// A part that lies on its back is not turned over: its normal is opposite, so the mean shift is all there is.
TEST(AlignPoints, OppositeNormalsAreNotTurned)
{
    Matrix const matrix = aligned({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}}, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}});
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_EQ(matrix[4 * i + k], i == k ? 1.0 : 0.0);
    EXPECT_NEAR(matrix[3], 0.0, 1e-12);
    EXPECT_NEAR(matrix[7], 0.0, 1e-12);
    EXPECT_NEAR(matrix[11], 1.0, 1e-12);
}

TEST(AlignPoints, ThreeTargetsOnALineTakeTheFirstTwoPairsAndAThirdOfTheRest)
{
    Matrix const matrix = aligned({{0, 0, 0}, {0, 1, 0}, {0, 2, 0}}, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0.3}});
    EXPECT_NEAR(matrix[4], 1.0, 1e-7); // x goes to y
    Point const third = moved(matrix, {2, 0, 0.3});
    EXPECT_NEAR(third[2], 0.3 - 0.1, 1e-6);
    EXPECT_NEAR(moved(matrix, {1, 0, 0})[2], -0.1, 1e-6);
}

TEST(AlignPoints, AFailedPairOnALineIsCorrectedFromTheIdentity)
{
    // the two first sources are one point; the targets lie on a line
    Matrix const matrix = aligned({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {{0, 0, 0}, {0, 0, 0}, {0.5, 0, 0}});
    EXPECT_EQ(matrix[0], 1.0);
    EXPECT_NEAR(matrix[3], 0.5, 1e-7); // (2 - 0.5) / 3
}

TEST(AlignPoints, CoincidentFirstTargetsOfThreeTakeTheNormals)
{
    // the test of the line fails, so the mode is that of the plane; the target has no normal, so there is no turn
    Matrix const matrix = aligned({{1, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}});
    EXPECT_EQ(matrix[0], 1.0);
    EXPECT_NEAR(matrix[3], 1.0, 1e-7);
    EXPECT_NEAR(matrix[7], -1.0 / 3.0, 1e-7);
}

TEST(AlignPoints, TheFourthPairMovesAQuarterOfTheRest)
{
    std::vector<Point> const corners = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    std::vector<Point> target = corners;
    std::vector<Point> source = corners;
    target.push_back({1, 1, 0.4});
    source.push_back({1, 1, 0});
    Matrix const matrix = aligned(target, source);
    EXPECT_NEAR(matrix[11], 0.1, 1e-8);
    EXPECT_EQ(matrix[0], 1.0);
}

// Any straight triple of targets sends the first three pairs down the road of the line, and no source does.
TEST(AlignPoints, FourPairsLookAtTheTargetsTriplesOnly)
{
    std::vector<Point> const square = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    std::vector<Point> source = {{0, 0, 0}, {0, 1, 0}, {-1, 1, 0}, {-1, 0, 0}}; // a quarter turn about z
    EXPECT_NEAR(aligned(square, source)[0], 1.0, 1e-7) << "normals agree: no turn";

    std::vector<std::vector<Point>> const straight = {
        {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}},                                               // 0 1 2
        {{0, 1, 0}, {1, 1, 0}, {2, 1, 0}, {3, 1, 0}}, {{5, 7, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}, // 1 2 3
        {{0, 0, 0}, {0, 5, 0}, {2, 0, 0}, {3, 0, 0}},                                               // 0 2 3
        {{0, 0, 0}, {1, 0, 0}, {5, 7, 0}, {3, 0, 0}},                                               // 0 1 3
    };
    for (std::vector<Point> const & target : straight)
    {
        float const from[3] = {0, 1, 0};
        float const to[3] = {static_cast<float>(target[1][0] - target[0][0]),
                             static_cast<float>(target[1][1] - target[0][1]), 0};
        Matrix turn;
        RotationBetween(from, to, turn.data());
        EXPECT_NEAR(aligned(target, source)[0], turn[0], 1e-6) << target[0][0] << target[1][0];
    }
    source = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
    EXPECT_NEAR(aligned({{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}, source)[0], 1.0, 1e-7)
        << "sources on a line have no normal, and are not looked at";
}

TEST(AlignPoints, AFailedTripleEndsTheSearch)
{
    // 0 and 1 coincide: the first triple fails, and 1 2 3, which lie on a line, are not reached
    std::vector<Point> const target = {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    std::vector<Point> const source = {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}};
    Matrix const matrix = aligned(target, source);
    // the mode of the plane: mean of the three, then a quarter of the rest at the fourth
    double const x = (0.0 + 0.0 + 0.0) / 3.0;
    double const y = (0.0 - 1.0 + 0.0) / 3.0;
    EXPECT_NEAR(matrix[3], x + (2.0 - (1.0 + x)) / 4.0, 1e-7);
    EXPECT_NEAR(matrix[7], y + (0.0 - (1.0 + y)) / 4.0, 1e-7);
}

TEST(AlignPoints, FivePairsUseTheFirstFour)
{
    Draw draw;
    std::vector<Point> target = draw.points(4);
    std::vector<Point> source = draw.points(4);
    Matrix const four = aligned(target, source);
    target.push_back({100, 100, 100});
    source.push_back({-100, 3, 4});
    EXPECT_EQ(aligned(target, source), four);
}

TEST(AlignPoints, AlignedPointsStayWhereTheyAre)
{
    Draw draw;
    for (int n = 1; n <= 4; ++n)
    {
        std::vector<Point> const points = draw.points(n);
        Matrix const matrix = aligned(points, points);
        for (std::size_t i = 0; i < 16; ++i)
            EXPECT_NEAR(matrix[i], kUnit[i], 1e-12) << n;
    }
}

TEST(AlignPoints, NumbersThatAreNoneGiveNoCrash)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    for (int n = 1; n <= 4; ++n)
        for (double const bad : {nan, std::numeric_limits<double>::infinity(), 1e300})
            aligned(std::vector<Point>(static_cast<std::size_t>(n), Point{bad, 0, bad}),
                    std::vector<Point>(static_cast<std::size_t>(n), Point{0, bad, 1}));
}

TEST(RotationFromAxis, IsTheTurnAboutTheAxis)
{
    Draw draw;
    for (int run = 0; run < 100; ++run)
    {
        double const angle = draw.number(3.0);
        Point axis = draw.point();
        double const size = std::hypot(axis[0], axis[1], axis[2]);
        float unit[3];
        for (std::size_t i = 0; i < 3; ++i)
            unit[i] = static_cast<float>(axis[i] / size);
        Matrix matrix;
        EXPECT_EQ(RotationFromAxis(matrix.data(), std::sin(angle), std::cos(angle), unit), 0);
        Point const p = draw.point();
        Point const k = {double(unit[0]), double(unit[1]), double(unit[2])};
        double const along = k[0] * p[0] + k[1] * p[1] + k[2] * p[2];
        Point const side = {k[1] * p[2] - k[2] * p[1], k[2] * p[0] - k[0] * p[2], k[0] * p[1] - k[1] * p[0]};
        Point const q = moved(matrix, p);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(q[i], p[i] * std::cos(angle) + side[i] * std::sin(angle) + k[i] * along * (1 - std::cos(angle)),
                        1e-13);
    }
}

TEST(RotationBetween, CrossesInSinglePrecision)
{
    FPoint const from = {1.0F / 3.0F, 2.0F / 7.0F, -0.1F};
    FPoint const to = {0.7F, -1.1F, 0.3F};
    Matrix matrix;
    ASSERT_EQ(RotationBetween(from.data(), to.data(), matrix.data()), 0);

    float n[3] = {from[1] * to[2] - from[2] * to[1], from[2] * to[0] - from[0] * to[2],
                  from[0] * to[1] - from[1] * to[0]};
    double fromSquare = 0.0;
    double toSquare = 0.0;
    double nSquare = 0.0;
    double product = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
    {
        fromSquare += double(from[i]) * double(from[i]);
        toSquare += double(to[i]) * double(to[i]);
        nSquare += double(n[i]) * double(n[i]);
        product += double(from[i]) * double(to[i]);
    }
    double const c = product / (std::sqrt(toSquare) * std::sqrt(fromSquare));
    double const s = std::sqrt(std::fabs(1.0 - c * c));
    for (float & part : n)
        part = static_cast<float>(double(part) / std::sqrt(nSquare));
    Matrix expected;
    RotationFromAxis(expected.data(), s, c, n);
    EXPECT_EQ(matrix, expected);
}

TEST(RotationBetween, ParallelAndOppositeVectorsGiveNoTurn)
{
    float const x[3] = {2, 0, 0};
    float const opposite[3] = {-3, 0, 0};
    float const nearly[3] = {1, 5e-6F, 0}; // the product's length is 1e-05 at most
    float const none[3] = {0, 0, 0};
    Matrix matrix;
    EXPECT_EQ(RotationBetween(x, x, matrix.data()), 0);
    EXPECT_EQ(matrix, kUnit);
    EXPECT_EQ(RotationBetween(x, opposite, matrix.data()), 0);
    EXPECT_EQ(matrix, kUnit);
    EXPECT_EQ(RotationBetween(x, nearly, matrix.data()), 0);
    EXPECT_EQ(matrix, kUnit);
    matrix.fill(3.0);
    EXPECT_EQ(RotationBetween(x, none, matrix.data()), 1);
    EXPECT_EQ(matrix, kUnit);
    EXPECT_EQ(RotationBetween(none, x, matrix.data()), 1);
}

TEST(FitTwoPoints, LeavesTheMatrixAloneIfTheRotationFails)
{
    float const a[3] = {0, 0, 0};
    float const b[3] = {1, 0, 0};
    Matrix matrix;
    matrix.fill(5.0);
    EXPECT_EQ(FitTwoPoints(a, b, a, a, matrix.data()), 1);
    EXPECT_EQ(matrix[0], 5.0);
}

TEST(FitThreePoints, ModeOneIsTheMeanShift)
{
    float const o[3] = {0, 0, 0};
    float const x[3] = {3, 0, 0};
    float const y[3] = {0, 6, 0};
    Matrix matrix;
    EXPECT_EQ(FitThreePoints({x, x, y}, {o, o, o}, kTranslation, matrix.data()), 0);
    Matrix expected = kUnit;
    expected[3] = 2.0;
    expected[7] = 2.0;
    EXPECT_EQ(matrix, expected);
    EXPECT_EQ(FitThreePoints({x, x, y}, {o, o, o}, 4, matrix.data()), 1) << "no such mode";
}

TEST(IsCollinear, TakesAThousandthOfTheCosine)
{
    float const o[3] = {0, 0, 0};
    float const x[3] = {1, 0, 0};
    auto const flag = [&](double angle)
    {
        float const p[3] = {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)), 0};
        int result = -1;
        EXPECT_EQ(IsCollinear(o, x, p, &result), 0);
        return result;
    };
    double const limit = std::acos(0.999);
    EXPECT_EQ(flag(0.0), 1);
    EXPECT_EQ(flag(limit - 1e-4), 1);
    EXPECT_EQ(flag(limit + 1e-4), 0);
    EXPECT_EQ(flag(3.141592653589793), 1); // on the other side
    EXPECT_EQ(flag(3.141592653589793 - limit - 1e-4), 0);
    int result = -1;
    EXPECT_EQ(IsCollinear(o, o, x, &result), 1);
    EXPECT_EQ(result, -1) << "not written";
    EXPECT_EQ(IsCollinear(o, x, o, &result), 0); // no angle there
    EXPECT_EQ(result, 0);
}

TEST(PointAlignment, ANullPointerIsAFailure)
{
    float const p[3] = {0, 0, 0};
    double m[16];
    int flag = 0;
    EXPECT_NE(MatrixIdentity(nullptr), 0);
    EXPECT_NE(MatrixCopy(nullptr, m), 0);
    EXPECT_NE(MatrixCopy(m, nullptr), 0);
    EXPECT_NE(RotationFromAxis(nullptr, 0, 1, p), 0);
    EXPECT_NE(RotationFromAxis(m, 0, 1, nullptr), 0);
    EXPECT_NE(RotationBetween(nullptr, p, m), 0);
    EXPECT_NE(RotationBetween(p, nullptr, m), 0);
    EXPECT_NE(RotationBetween(p, p, nullptr), 0);
    EXPECT_NE(FitTwoPoints(p, p, nullptr, p, m), 0);
    EXPECT_NE(FitPlaneNormals(nullptr, p, {p, p, p}, {p, p, p}, m), 0);
    EXPECT_NE(FitPlaneNormals(p, p, {p, nullptr, p}, {p, p, p}, m), 0);
    EXPECT_NE(FitThreePoints({p, p, p}, {p, p, nullptr}, kPlane, m), 0);
    EXPECT_NE(FitThreePoints({p, p, p}, {p, p, p}, kPlane, nullptr), 0);
    EXPECT_NE(FitFourPoints({p, p, p, nullptr}, {p, p, p, p}, kPlane, m), 0);
    EXPECT_NE(FitFourPoints({p, p, p, p}, {p, p, p, p}, kPlane, nullptr), 0);
    EXPECT_NE(IsCollinear(p, p, nullptr, &flag), 0);
    EXPECT_NE(IsCollinear(p, p, p, nullptr), 0);
}
} // namespace
