// ShellFrameTest.cpp: strains known in the plane of a shell that lies anywhere come back through the library's
// formulas.

#include "ShellFrame.h"
#include "D3plotFixture.h"
#include "VOZSolver.h"

#include <cmath>

namespace
{
using voz::launch::FrameOf;
using voz::launch::MembranePart;
using voz::launch::Row3;

// The formulas of the read-back.
class Formulas : public VOZSolver
{
public:
    using VOZSolver::EvalPrincipalAngle;
    using VOZSolver::EvalPrincipalStrains;
};

// A random rotation by its axes.
struct Axes
{
    explicit Axes(std::mt19937 & io_random)
    {
        std::normal_distribution<double> normal;
        Row3 const a{normal(io_random), normal(io_random), normal(io_random)};
        Row3 const b{normal(io_random), normal(io_random), normal(io_random)};
        x = Unit(a);
        z = Unit(voz::launch::Cross(a, b));
        y = voz::launch::Cross(z, x);
    }
    static Row3 Unit(Row3 const & v) { return voz::launch::Scaled(1.0 / std::sqrt(voz::launch::Dot(v, v)), v); }

    Row3 Place(double u, double v) const
    {
        Row3 p{};
        for (std::size_t k = 0; k < 3; ++k)
            p[k] = 0.3 + u * x[k] + v * y[k];
        return p;
    }

    // The tensor with e1 at that angle from x, e2 across, e3 along the normal; xx, yy, zz, xy, yz, zx.
    std::array<float, 6> Tensor(double e1, double e2, double e3, double angle) const
    {
        constexpr int kPairs[6][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {1, 2}, {2, 0}};
        std::array<float, 6> tensor{};
        for (std::size_t i = 0; i < 6; ++i)
        {
            auto const component = [&](int k)
            {
                auto const at = static_cast<std::size_t>(k);
                return std::array<double, 3>{std::cos(angle) * x[at] + std::sin(angle) * y[at],
                                             -std::sin(angle) * x[at] + std::cos(angle) * y[at], z[at]};
            };
            auto const a = component(kPairs[i][0]), b = component(kPairs[i][1]);
            tensor[i] = static_cast<float>(e1 * a[0] * b[0] + e2 * a[1] * b[1] + e3 * a[2] * b[2]);
        }
        return tensor;
    }

    Row3 x, y, z;
};

TEST(ShellFrame, XLiesAlongTheFirstSideAndZAlongTheNormal)
{
    Row3 const quad[4] = {{0, 0, 1}, {2, 0, 1}, {2, 3, 1}, {0, 3, 1}};
    auto const frame = FrameOf(quad, false);
    EXPECT_EQ(frame.x, (Row3{1, 0, 0}));
    EXPECT_EQ(frame.y, (Row3{0, 1, 0}));
    Row3 const turned[3] = {{0, 0, 0}, {0, 0, 5}, {4, 0, 0}};
    auto const other = FrameOf(turned, true);
    EXPECT_EQ(other.x, (Row3{0, 0, 1}));
    EXPECT_EQ(other.y, (Row3{1, 0, 0}));
}

TEST(ShellFrame, AWarpedShellsAxesLieInThePlaneOfItsDiagonals)
{
    Row3 const quad[4] = {{0, 0, 0.1}, {1, 0, -0.1}, {1, 1, 0.1}, {0, 1, -0.1}};
    auto const frame = FrameOf(quad, false);
    for (Row3 const & axis : {frame.x, frame.y})
    {
        EXPECT_NEAR(axis[2], 0.0, 1e-15);
        EXPECT_NEAR(voz::launch::Dot(axis, axis), 1.0, 1e-15);
    }
    EXPECT_NEAR(frame.x[0], 1.0, 1e-15);
}

TEST(ShellFrame, AShellWithoutAreaKeepsTheGlobalAxes)
{
    Row3 const point[4] = {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}};
    Row3 const line[3] = {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}};
    for (auto const & frame : {FrameOf(point, false), FrameOf(line, true)})
    {
        EXPECT_EQ(frame.x, (Row3{1, 0, 0}));
        EXPECT_EQ(frame.y, (Row3{0, 1, 0}));
    }
}

TEST(ShellFrame, ASideWithoutLengthLeavesTheDiagonal)
{
    Row3 const quad[4] = {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    EXPECT_NEAR(FrameOf(quad, false).x[0], 1.0, 1e-15);
}

TEST(ShellFrame, ThePrincipalStrainsAndTheirAngleComeBackThroughTheReadBacksFormulas)
{
    std::mt19937 random(20261121);
    std::uniform_real_distribution<double> strain(-0.5, 0.5), turn(0.02, 3.12), slope(-0.4, 0.4);
    for (int i = 0; i < 2000; ++i)
    {
        Axes const axes(random);
        double e1 = strain(random), e2 = strain(random);
        if (e1 < e2)
            std::swap(e1, e2);
        if (e1 - e2 < 0.01) // no direction to speak of
            continue;
        double const angle = turn(random);
        bool const isTriangle = i % 2 == 0;
        Row3 const corners[4] = {axes.Place(0, 0), axes.Place(0.02, 0), axes.Place(0.02, 0.02 + 0.01 * slope(random)),
                                 axes.Place(0.01 * slope(random), 0.02)};
        auto const part = MembranePart(FrameOf(corners, isTriangle), axes.Tensor(e1, e2, -(e1 + e2), angle).data());
        Formulas formulas;
        float major = 0.0F, minor = 0.0F;
        formulas.EvalPrincipalStrains(part[0], part[1], part[2], major, minor);
        EXPECT_NEAR(major, e1, 1e-6);
        EXPECT_NEAR(minor, e2, 1e-6);
        EXPECT_NEAR(formulas.EvalPrincipalAngle(part[0], part[1], 0.5 * part[2]), angle, 2e-4);
    }
}

TEST(ShellFrame, TheEquivalentStressIsVonMises)
{
    float const uniaxial[6] = {0, -300, 0, 0, 0, 0}, shear[6] = {0, 0, 0, 0, 100, 0}, pressure[6] = {5, 5, 5, 0, 0, 0};
    EXPECT_FLOAT_EQ(voz::launch::EquivalentStress(uniaxial), 300.0F);
    EXPECT_FLOAT_EQ(voz::launch::EquivalentStress(shear), std::sqrt(3.0F) * 100.0F);
    EXPECT_EQ(voz::launch::EquivalentStress(pressure), 0.0F);
    float const plane[6] = {400, 100, 0, 50, 0, 0}; // s1^2 - s1 s2 + s2^2 + 3 t^2
    EXPECT_FLOAT_EQ(voz::launch::EquivalentStress(plane), std::sqrt(160000.0F - 40000.0F + 10000.0F + 7500.0F));
}
} // namespace
