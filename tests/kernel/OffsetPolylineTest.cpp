// OffsetPolylineTest.cpp: offset lines of wires in the plane and in space, against two rules that hold for any of them:
// no point nearer than the offset, and no edge that meets another; and against a field of distances on a grid.

#include "geometry/OffsetPolyline.h"
#include "VOZInitEvalPOL.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <random>

using namespace voz::geometry;

namespace
{

using Wire = std::vector<Vec3>;

double const kPi = 3.141592653589793;

double segmentDistance(Vec3 p, Vec3 a, Vec3 b)
{
    double const dx = b.x - a.x;
    double const dy = b.y - a.y;
    double const t = std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double distanceTo(Wire const & wire, Vec3 p)
{
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < wire.size(); ++i)
        least = std::min(least, segmentDistance(p, wire[i], wire[(i + 1) % wire.size()]));
    return least;
}

bool isInside(Wire const & wire, Vec3 p)
{
    bool inside = false;
    for (std::size_t i = 0; i < wire.size(); ++i)
    {
        Vec3 const a = wire[i];
        Vec3 const b = wire[(i + 1) % wire.size()];
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x))
            inside = !inside;
    }
    return inside;
}

double areaOf(Wire const & wire)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < wire.size(); ++i)
        sum += cross(horizontal(wire[i]), horizontal(wire[(i + 1) % wire.size()]));
    return 0.5 * sum;
}

bool crossesItself(Wire const & wire)
{
    auto const side = [](Vec3 a, Vec3 b, Vec3 p) { return cross(horizontal(b - a), horizontal(p - a)) > 0.0; };
    auto const apart = [](double a, double b, double c, double d)
    { return std::max(a, b) < std::min(c, d) || std::max(c, d) < std::min(a, b); };
    for (std::size_t i = 0; i < wire.size(); ++i)
        for (std::size_t j = i + 2; j < wire.size(); ++j)
        {
            std::size_t const k = (j + 1) % wire.size();
            if (apart(wire[i].x, wire[i + 1].x, wire[j].x, wire[k].x) ||
                apart(wire[i].y, wire[i + 1].y, wire[j].y, wire[k].y)) // or on one line
                continue;
            if (k != i && side(wire[i], wire[i + 1], wire[j]) != side(wire[i], wire[i + 1], wire[k]) &&
                side(wire[j], wire[k], wire[i]) != side(wire[j], wire[k], wire[i + 1]))
                return true;
        }
    return false;
}

// Points along the answer, corners and between: none nearer than the offset, and none much farther.
void expectOffset(Wire const & wire, Wire const & line, double offset, double farthest)
{
    ASSERT_GE(line.size(), 3u);
    EXPECT_FALSE(crossesItself(line));
    EXPECT_GT(areaOf(line) * areaOf(wire), 0.0) << "the sense of the wire";
    EXPECT_GT(std::fabs(areaOf(line)), std::fabs(areaOf(wire)));
    double least = std::numeric_limits<double>::infinity();
    double most = 0.0;
    for (std::size_t i = 0; i < line.size(); ++i)
        for (double t = 0.0; t < 1.0; t += 0.25)
        {
            Vec3 const p = line[i] + t * (line[(i + 1) % line.size()] - line[i]);
            least = std::min(least, distanceTo(wire, p));
            most = std::max(most, distanceTo(wire, p));
        }
    EXPECT_GE(least, offset * (1.0 - 1e-8));
    EXPECT_LE(most, offset * farthest);
    for (Vec3 const & p : wire)
        EXPECT_TRUE(isInside(line, p));
}

constexpr double kArc = 1.0353; // 1 / cos(15 degrees), the farthest corner of an arc in turns below 30 degrees

Wire offsetBy(Wire const & wire, double offset)
{
    return offsetOutward(wire, {offset, 0.0, 0.0});
}

Wire circle(int n, double radius)
{
    Wire wire;
    for (int i = 0; i < n; ++i)
        wire.push_back({radius * std::cos(2 * kPi * i / n), radius * std::sin(2 * kPi * i / n), 0.0});
    return wire;
}

Wire reversed(Wire wire)
{
    std::reverse(wire.begin(), wire.end());
    return wire;
}

Wire slot(double gap) // a U of 100 by 60 with a slot 40 deep from above
{
    return {{0, 0, 0},
            {100, 0, 0},
            {100, 60, 0},
            {50 + gap / 2, 60, 0},
            {50 + gap / 2, 20, 0},
            {50 - gap / 2, 20, 0},
            {50 - gap / 2, 60, 0},
            {0, 60, 0}};
}

TEST(OffsetPolyline, ACircleBecomesAPolygonAroundTheLargerOne)
{
    for (int const n : {3, 5, 12, 60, 400})
    {
        Wire const wire = circle(n, 50.0);
        Wire const line = offsetBy(wire, 8.0);
        expectOffset(wire, line, 8.0, kArc);
        EXPECT_EQ(line.size() == static_cast<std::size_t>(n), n >= 60) << "a mitre at each corner";
    }
}

TEST(OffsetPolyline, ASquareGetsSixTurnsOf15DegreesAtEachCorner)
{
    Wire const wire = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
    Wire const line = offsetBy(wire, 5.0);
    expectOffset(wire, line, 5.0, 1.0087);
    EXPECT_EQ(line.size(), 24u);
    double const corners = 25.0 * 6.0 * 4.0 * std::tan(kPi / 24.0); // tangents around a circle
    EXPECT_NEAR(areaOf(line), 100.0 + 4 * 50.0 + corners, 1e-10);
}

TEST(OffsetPolyline, TheLeastAngleDividesTheArcs)
{
    Wire const wire = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
    EXPECT_EQ(offsetOutward(wire, {5.0, 0.0, 0.5 * kPi}).size(), 4u);
    EXPECT_NEAR(areaOf(offsetOutward(wire, {5.0, 0.0, 3.0})), 400.0, 1e-10) << "a mitre";
    EXPECT_EQ(offsetOutward(wire, {5.0, 0.0, 0.25 * kPi}).size(), 8u);
    EXPECT_LT(offsetOutward(wire, {5.0, 0.0, 1e-9}).size(), 8000u) << "arcs are bounded";
}

TEST(OffsetPolyline, ANeedleGetsNoLongMitre)
{
    Wire const wire = {{0, 0, 0}, {100, -0.1, 0}, {100, 0.1, 0}};
    for (double const angle : {0.0, 0.5 * kPi, 3.1})
        expectOffset(wire, offsetOutward(wire, {2.0, 0.0, angle}), 2.0, 1.4143);
}

TEST(OffsetPolyline, AnLKeepsItsInnerCornerSharp)
{
    Wire const wire = {{0, 0, 0}, {60, 0, 0}, {60, 20, 0}, {20, 20, 0}, {20, 60, 0}, {0, 60, 0}};
    Wire const line = offsetBy(wire, 7.0);
    expectOffset(wire, line, 7.0, 1.42); // the inner corner's two lines meet at a distance of 7 from both
    EXPECT_TRUE(
        std::any_of(line.begin(), line.end(), [](Vec3 p) { return std::hypot(p.x - 27.0, p.y - 27.0) < 1e-12; }));
}

TEST(OffsetPolyline, ASlotNarrowerThanTwiceTheOffsetIsClosed)
{
    for (double const gap : {0.01, 1.0, 5.0, 9.9, 9.999999, 10.0, 10.001, 12.0, 30.0})
    {
        Wire const wire = slot(gap);
        Wire const line = offsetBy(wire, 5.0);
        expectOffset(wire, line, 5.0, 1.5);
        double const depth = 40.0; // both the bottom and the outline move by the offset
        double const open = gap > 10.0001 ? (gap - 10.0) * depth : 0.0;
        double const outline = areaOf(offsetBy({{0, 0, 0}, {100, 0, 0}, {100, 60, 0}, {0, 60, 0}}, 5.0));
        EXPECT_NEAR(areaOf(line), outline - open, gap < 10.0001 ? 15.0 : 40.0) << gap;
    }
}

TEST(OffsetPolyline, AnyTurningSenseAndStartGiveTheSameLine)
{
    Wire wire = slot(8.0);
    double const area = areaOf(offsetBy(wire, 5.0));
    for (std::size_t i = 0; i < wire.size(); ++i)
    {
        std::rotate(wire.begin(), wire.begin() + 1, wire.end());
        EXPECT_NEAR(areaOf(offsetBy(wire, 5.0)), area, 1e-9);
        Wire const back = reversed(wire);
        expectOffset(back, offsetBy(back, 5.0), 5.0, 1.5);
        EXPECT_NEAR(areaOf(offsetBy(back, 5.0)), -area, 1e-9);
    }
}

// A star with a random radius at each of its equal steps: concave, with slots of all widths.
Wire star(std::mt19937 & random, int n, double least)
{
    std::uniform_real_distribution<double> radius(least, 1.0);
    Wire wire;
    for (int i = 0; i < n; ++i)
    {
        double const r = 100.0 * radius(random);
        wire.push_back({r * std::cos(2 * kPi * i / n), r * std::sin(2 * kPi * i / n), 0.0});
    }
    return wire;
}

TEST(OffsetPolyline, StarsAtRandomKeepTheirDistanceAndCrossNowhere)
{
    std::mt19937 random(31);
    for (int run = 0; run < 80; ++run)
    {
        int const n = 3 + static_cast<int>(random() % 90);
        Wire wire = star(random, n, run % 3 == 0 ? 0.05 : 0.5);
        if (run % 2 == 0)
            wire = reversed(wire);
        for (double const offset : {0.1, 3.0, 20.0, 400.0})
        {
            Wire const line = offsetBy(wire, offset);
            ASSERT_FALSE(line.empty()) << run << " " << offset;
            expectOffset(wire, line, offset, 2.0);
        }
    }
}

// What lies inside the wire or within the offset of it lies inside the line; what lies inside the line is nearer than
// the farthest corner of an arc, or in a pocket that the outer boundary closes.
TEST(OffsetPolyline, EnclosesAllThatLiesWithinTheOffset)
{
    std::mt19937 random(7);
    for (int run = 0; run < 8; ++run)
    {
        Wire const wire = star(random, 40, 0.2);
        double const offset = 1.0 + static_cast<double>(random() % 12);
        Wire const line = offsetBy(wire, offset);
        int outside = 0;
        for (double x = -130.0; x <= 130.0; x += 2.6)
            for (double y = -130.0; y <= 130.0; y += 2.6)
            {
                Vec3 const p = {x, y, 0.0};
                bool const near = isInside(wire, p) || distanceTo(wire, p) <= offset * (1.0 - 1e-6);
                EXPECT_TRUE(!near || isInside(line, p)) << x << " " << y;
                outside += isInside(line, p) ? 0 : 1;
            }
        EXPECT_GT(outside, 100);
    }
}

// Rows of squares at whole numbers: branches that meet in corners, and slots of exactly twice the offset.
TEST(OffsetPolyline, CombsOfExactlyTwiceTheOffsetAreSettled)
{
    for (int teeth = 1; teeth <= 8; ++teeth)
        for (double const depth : {1.0, 2.0, 4.0, 10.0})
        {
            Wire wire = {{0, 0, 0}, {4.0 * teeth + 2.0, 0, 0}};
            for (int i = teeth; i >= 0; --i)
            {
                wire.push_back({4.0 * i + 2.0, 20.0, 0});
                wire.push_back({4.0 * i, 20.0, 0});
                if (i > 0)
                {
                    wire.push_back({4.0 * i, 20.0 - depth, 0});
                    wire.push_back({4.0 * i - 2.0, 20.0 - depth, 0});
                }
            }
            for (double const offset : {0.5, 1.0, 2.0, 5.0})
            {
                Wire const line = offsetBy(wire, offset);
                ASSERT_FALSE(line.empty()) << teeth << " " << depth << " " << offset;
                expectOffset(wire, line, offset, 1.5);
            }
        }
}

TEST(OffsetPolyline, RoundedSlotsWithRadiiBelowTheOffsetAreSettled)
{
    for (double const radius : {1.0, 4.0, 6.0})
        for (int const steps : {4, 16, 64})
        {
            Wire wire = {{-50, 40, 0}, {-50, -40, 0}, {50, -40, 0}, {50, 40, 0}};
            for (int i = 0; i <= steps; ++i) // a half-round bay in the upper side
                wire.push_back({radius * std::cos(-kPi * i / steps), 40.0 + radius * std::sin(-kPi * i / steps), 0.0});
            Wire const line = offsetBy(wire, 5.0);
            expectOffset(wire, line, 5.0, 1.3);
        }
}

TEST(OffsetPolyline, RepeatedPointsAndSpikesAreTaken)
{
    Wire const doubled = {{0, 0, 0}, {0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}};
    EXPECT_EQ(offsetBy(doubled, 5.0).size(), 24u);
    Wire const spike = {{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {20, 5, 0}, {10, 5, 0}, {10, 10, 0}, {0, 10, 0}};
    Wire const line = offsetBy(spike, 2.0);
    ASSERT_FALSE(line.empty());
    EXPECT_GT(std::max_element(line.begin(), line.end(), [](Vec3 a, Vec3 b) { return a.x < b.x; })->x, 22.0 - 1e-9);
    Wire const straight = {{0, 0, 0}, {3, 0, 0}, {10, 0, 0}, {10, 10, 0}, {5, 10, 0}, {0, 10, 0}, {0, 5, 0}};
    EXPECT_EQ(offsetBy(straight, 5.0).size(), 24u + 3u);
}

TEST(OffsetPolyline, ShortEdgesAreMergedAndTheDistanceIsKept)
{
    Wire const wire = circle(720, 50.0); // edges of 0.44 mm
    Wire const line = offsetOutward(wire, {5.0, 2.0, 0.0});
    expectOffset(wire, line, 5.0, 1.1);
    EXPECT_LT(line.size(), 300u);
    std::mt19937 random(3);
    for (int run = 0; run < 40; ++run)
    {
        Wire const shape = star(random, 60, 0.4);
        Wire const fine = offsetOutward(shape, {4.0, 0.0, 0.0});
        Wire const coarse = offsetOutward(shape, {4.0, 1.5, 0.0});
        expectOffset(shape, coarse, 4.0, 2.5);
        EXPECT_LE(coarse.size(), fine.size());
    }
}

TEST(OffsetPolyline, HeightsAreThoseOfTheWire)
{
    Wire wire = {{0, 0, 1}, {60, 0, 2}, {60, 20, 3}, {20, 20, 4}, {20, 60, 5}, {0, 60, 6}};
    for (Vec3 const & p : offsetBy(wire, 7.0))
    {
        double nearest = std::numeric_limits<double>::infinity();
        double height = 0.0;
        for (Vec3 const & q : wire)
            if (std::hypot(p.x - q.x, p.y - q.y) < nearest)
            {
                nearest = std::hypot(p.x - q.x, p.y - q.y);
                height = q.z;
            }
        EXPECT_EQ(p.z, height);
    }
}

TEST(OffsetPolyline, ThousandsOfPointsTakeNoTime)
{
    std::mt19937 random(5);
    Wire const wire = star(random, 3000, 0.8);
    Wire const line = offsetBy(wire, 2.0);
    EXPECT_FALSE(line.empty());
    EXPECT_TRUE(isApart(line, 0.0));
}

TEST(OffsetPolyline, TheDistanceOfTwoLinesIsThatOfTheirNearestEdges)
{
    EXPECT_NEAR(distanceBetween(circle(4, 1.0), {{10, -1, 0}, {10, 1, 0}, {11, 0, 0}}), 9.0, 1e-12);
    EXPECT_EQ(distanceBetween(circle(4, 1.0), {{0, 0, 0}, {5, 0, 0}, {5, 1, 0}}), 0.0);
    EXPECT_FALSE(isApart({{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}}, 0.0));
    EXPECT_TRUE(isApart(circle(5, 1.0), 0.1));
}

// The door: points in space.
struct Door
{
    std::vector<double> points;
    std::vector<double> normals;
    double average[3] = {0.0, 0.0, 1.0};
    int count = 0;

    explicit Door(Wire const & wire)
    {
        count = static_cast<int>(wire.size());
        for (Vec3 const & p : wire)
        {
            points.insert(points.end(), {p.x, p.y, p.z});
            normals.insert(normals.end(), {0.0, 0.0, 1.0});
        }
    }

    Wire operator()(double offset, double minEdge = 0.0, double minAngle = 0.0)
    {
        std::unique_ptr<double[]> const answer(
            VOZInitEvalPOLNew(count, points.data(), normals.data(), average, offset, minEdge, minAngle));
        EXPECT_EQ(answer == nullptr, count == 0);
        Wire line;
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
            line.push_back({answer[3 * i], answer[3 * i + 1], answer[3 * i + 2]});
        return line;
    }
};

TEST(VOZInitEvalPOLNew, WorksInThePlaneOfTheAverageNormal)
{
    // the L, turned so that its plane's normal is (1, 2, 2) / 3, with a wave across the plane
    Vec3 const z = {1.0 / 3, 2.0 / 3, 2.0 / 3};
    Vec3 const x = {2.0 / 3, 1.0 / 3, -2.0 / 3};
    Vec3 const y = cross(z, x);
    Wire const wire = {{0, 0, 3}, {60, 0, -2}, {60, 20, 1}, {20, 20, 0}, {20, 60, 4}, {0, 60, 0}};
    Wire turned;
    for (Vec3 const & p : wire)
        turned.push_back(Vec3{7, 8, 9} + p.x * x + p.y * y + p.z * z);
    for (double const sign : {1.0, -1.0}) // a normal to the other side turns the sense, not the side
    {
        Door door(turned);
        door.average[0] = 5.0 * sign * z.x; // of any length
        door.average[1] = 5.0 * sign * z.y;
        door.average[2] = 5.0 * sign * z.z;
        Wire line;
        for (Vec3 const & p : door(7.0))
        {
            Vec3 const d = p - Vec3{7, 8, 9};
            line.push_back({dot(d, x), dot(d, y), dot(d, z)});
        }
        expectOffset(wire, line, 7.0, 1.42);
        for (Vec3 const & p : line)
        {
            EXPECT_LE(p.z, 4.0 + 1e-9);
            EXPECT_GE(p.z, -2.0 - 1e-9);
        }
    }
}

TEST(VOZInitEvalPOLNew, NormalsAlongEachAxisAreTaken)
{
    Wire const wire = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
    Wire const sides[2] = {{{0, 0, 0}, {0, 10, 0}, {0, 10, 10}, {0, 0, 10}},
                           {{0, 0, 0}, {10, 0, 0}, {10, 0, 10}, {0, 0, 10}}};
    for (std::size_t axis = 0; axis < 2; ++axis)
    {
        Door door(sides[axis]);
        door.average[2] = 0.0;
        door.average[axis] = 1.0;
        EXPECT_EQ(door(5.0).size(), 24u);
    }
    EXPECT_EQ(Door(wire)(5.0).size(), 24u);
}

TEST(VOZInitEvalPOLNew, BadInputGivesNothing)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    double const infinity = std::numeric_limits<double>::infinity();
    Wire const wire = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
    for (int const count : {-5, 0, 1, 2})
    {
        Door door(wire);
        door.count = count;
        EXPECT_TRUE(door(5.0).empty());
    }
    for (double const offset : {0.0, -1.0, nan, infinity})
        EXPECT_TRUE(Door(wire)(offset).empty());
    for (double const bad : {nan, infinity})
    {
        EXPECT_TRUE(Door(wire)(5.0, bad).empty());
        EXPECT_TRUE(Door(wire)(5.0, 0.0, bad).empty());
        for (int place = 0; place < 3; ++place)
        {
            Door door(wire);
            (place == 0 ? door.points[4] : place == 1 ? door.normals[11] : door.average[0]) = bad;
            EXPECT_TRUE(door(5.0).empty());
        }
    }
    Door flat(wire);
    flat.average[2] = 0.0;
    EXPECT_TRUE(flat(5.0).empty()) << "a normal of no length";
    EXPECT_TRUE(Door({{1, 1, 1}, {1, 1, 1}, {1, 1, 2}})(5.0).empty()) << "one point in the plane";
    EXPECT_TRUE(Door({{0, 0, 0}, {1e200, 0, 0}, {0, 1e200, 0}})(5.0).empty());
    int count = 4;
    double const up[3] = {0, 0, 1};
    EXPECT_EQ(VOZInitEvalPOLNew(count, nullptr, nullptr, up, 5.0, 0.0, 0.0), nullptr);
    EXPECT_EQ(count, 0);
}

TEST(VOZInitEvalPOLNew, ABowTieOrALineOfNoAreaDoesNoHarm)
{
    Door tie({{0, 0, 0}, {10, 10, 0}, {10, 0, 0}, {0, 10, 0}});
    tie(1.0);
    Door line({{0, 0, 0}, {10, 0, 0}, {20, 0, 0}, {5, 0, 0}});
    Wire const capsule = line(1.0);
    for (Vec3 const & p : capsule)
        EXPECT_GE(distanceTo({{0, 0, 0}, {20, 0, 0}}, p), 1.0 - 1e-8);
}

} // namespace
