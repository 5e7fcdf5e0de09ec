// OutlineFitTest.cpp: closed polygons as lines and arcs.

#include "Exports.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace voz::workbench
{
namespace
{

using Loop = std::vector<std::array<double, 2>>;

constexpr int kWalk = 3000; // points a piece

// The largest distance of densely walked points of the loop from the pieces of the outline, found without the fitter's
// own formulas: arcs are walked by their angle.
double distanceByWalking(Loop const & loop, FittedOutline const & outline)
{
    Loop walked;
    for (std::size_t i = 0; i < outline.vertices.size(); ++i)
    {
        OutlineVertex const & a = outline.vertices[i];
        OutlineVertex const & b = outline.vertices[(i + 1) % outline.vertices.size()];
        double const angle = 4.0 * std::atan(a.bulge);
        for (int k = 0; k < kWalk; ++k)
        {
            double const t = static_cast<double>(k) / kWalk;
            if (angle == 0.0)
            {
                walked.push_back({a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)});
                continue;
            }
            // Turn the half chord about the centre that lies on the left for a left turn.
            double const mx = 0.5 * (a.x + b.x), my = 0.5 * (a.y + b.y);
            double const away = 1.0 / std::tan(0.5 * angle);
            double const cx = mx - 0.5 * away * (b.y - a.y), cy = my + 0.5 * away * (b.x - a.x);
            double const c = std::cos(t * angle), s = std::sin(t * angle);
            walked.push_back({cx + c * (a.x - cx) - s * (a.y - cy), cy + s * (a.x - cx) + c * (a.y - cy)});
        }
    }
    double worst = 0.0;
    for (std::size_t i = 0; i < loop.size(); ++i)
        for (double t : {0.0, 0.5})
        {
            auto const & p = loop[i];
            auto const & q = loop[(i + 1) % loop.size()];
            double const x = p[0] + t * (q[0] - p[0]), y = p[1] + t * (q[1] - p[1]);
            double nearest = INFINITY;
            for (auto const & w : walked)
                nearest = std::min(nearest, std::hypot(w[0] - x, w[1] - y));
            worst = std::max(worst, nearest);
        }
    return worst;
}

Loop rounded(double half, double radius, int perArc, int perSide)
{
    Loop loop;
    double const inner = half - radius;
    double const cx[] = {inner, -inner, -inner, inner};
    double const cy[] = {inner, inner, -inner, -inner};
    for (int corner = 0; corner < 4; ++corner)
    {
        for (int k = 0; k <= perArc; ++k)
        {
            double const angle = 0.5 * M_PI * (corner + static_cast<double>(k) / perArc);
            loop.push_back({cx[corner] + radius * std::cos(angle), cy[corner] + radius * std::sin(angle)});
        }
        auto const from = loop.back();
        double const angle = 0.5 * M_PI * (corner + 1);
        double const tx = -std::sin(angle), ty = std::cos(angle);
        for (int k = 1; k < perSide; ++k)
            loop.push_back({from[0] + 2.0 * inner * k / perSide * tx, from[1] + 2.0 * inner * k / perSide * ty});
    }
    return loop;
}

TEST(OutlineFit, ARectangleOfManyPointsIsFourLines)
{
    Loop loop;
    for (int i = 0; i < 40; ++i)
        loop.push_back({i * 0.25, 0.0});
    for (int i = 0; i < 20; ++i)
        loop.push_back({10.0, i * 0.25});
    for (int i = 0; i < 40; ++i)
        loop.push_back({10.0 - i * 0.25, 5.0});
    for (int i = 0; i < 20; ++i)
        loop.push_back({0.0, 5.0 - i * 0.25});
    FittedOutline const outline = FitOutline(loop, 0.05);
    ASSERT_EQ(outline.vertices.size(), 4u);
    for (OutlineVertex const & v : outline.vertices)
        EXPECT_EQ(v.bulge, 0.0);
    EXPECT_LT(outline.deviation, 1e-12);
}

TEST(OutlineFit, ACircleIsAFewArcsThatTurnLeft)
{
    Loop circle;
    for (int i = 0; i < 120; ++i)
        circle.push_back({30.0 * std::cos(2 * M_PI * i / 120), 30.0 * std::sin(2 * M_PI * i / 120)});
    FittedOutline const outline = FitOutline(circle, 0.05);
    EXPECT_LE(outline.vertices.size(), 4u);
    for (OutlineVertex const & v : outline.vertices)
        EXPECT_GE(v.bulge, 0.0); // a single chord left over is a line
    EXPECT_GT(outline.vertices.front().bulge, 0.0);
    EXPECT_LE(outline.deviation, 0.05);
    EXPECT_LE(distanceByWalking(circle, outline), 0.051);
}

TEST(OutlineFit, RoundedCornersBecomeArcsOfTheirRadius)
{
    FittedOutline const outline = FitOutline(rounded(50.0, 10.0, 24, 30), 0.02);
    double area = 0.0;
    for (std::size_t i = 0; i < outline.vertices.size(); ++i)
    {
        OutlineVertex const & a = outline.vertices[i];
        OutlineVertex const & b = outline.vertices[(i + 1) % outline.vertices.size()];
        double const angle = 4.0 * std::atan(a.bulge);
        double const chord = std::hypot(b.x - a.x, b.y - a.y);
        area += 0.5 * (a.x * b.y - a.y * b.x);
        if (angle != 0.0)
        {
            double const radius = 0.5 * chord / std::abs(std::sin(0.5 * angle));
            area += std::copysign(0.5 * radius * radius * (std::abs(angle) - std::sin(std::abs(angle))), angle);
        }
    }
    EXPECT_LE(outline.vertices.size(), 12u);
    EXPECT_NEAR(area, 100.0 * 100.0 - (4.0 - M_PI) * 100.0, 0.02 * 400.0);
}

TEST(OutlineFit, AClockwiseLoopBulgesTheOtherWay)
{
    Loop circle;
    for (int i = 0; i < 90; ++i)
        circle.push_back({20.0 * std::cos(2 * M_PI * i / 90), -20.0 * std::sin(2 * M_PI * i / 90)});
    FittedOutline const outline = FitOutline(circle, 0.05);
    for (OutlineVertex const & v : outline.vertices)
        EXPECT_LE(v.bulge, 0.0);
    EXPECT_LT(outline.vertices.front().bulge, 0.0);
}

// A coarse circle must not be replaced by a fine one: its chords stand off by their sag.
TEST(OutlineFit, TheSagOfLongChordsCounts)
{
    Loop octagon;
    for (int i = 0; i < 8; ++i)
        octagon.push_back({50.0 * std::cos(M_PI * i / 4), 50.0 * std::sin(M_PI * i / 4)});
    FittedOutline const outline = FitOutline(octagon, 0.05);
    EXPECT_EQ(outline.vertices.size(), 8u);
    EXPECT_EQ(outline.deviation, 0.0);
}

TEST(OutlineFit, RandomWavyLoopsStayWithinTheTolerance)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    for (int trial = 0; trial < 12; ++trial)
    {
        double const a = 5.0 * uniform(random), b = 2.0 * uniform(random);
        int const waves = 2 + trial % 5;
        Loop loop;
        for (int i = 0; i < 300; ++i)
        {
            double const t = 2 * M_PI * i / 300;
            double const r = 60.0 + a * std::cos(waves * t) + b * std::sin(3 * t);
            loop.push_back({r * std::cos(t), r * std::sin(t)});
        }
        FittedOutline const outline = FitOutline(loop, 0.05);
        EXPECT_LE(outline.deviation, 0.05);
        EXPECT_LT(outline.vertices.size(), loop.size() / 2);
        EXPECT_LE(distanceByWalking(loop, outline), 0.06) << trial;
    }
}

TEST(OutlineFit, FewerThanThreePointsComeBackAsTheyAre)
{
    EXPECT_EQ(FitOutline({}, 0.05).vertices.size(), 0u);
    EXPECT_EQ(FitOutline({{1.0, 2.0}, {3.0, 4.0}}, 0.05).vertices.size(), 2u);
}

} // namespace
} // namespace voz::workbench
