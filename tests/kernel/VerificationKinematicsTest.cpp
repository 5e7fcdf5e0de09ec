// VerificationKinematicsTest.cpp: exact kinematics, and invariance to where the part lies.

#include "OneStepFixture.h"

#include <algorithm>
#include <random>

namespace
{

using namespace onesteptest;

constexpr double kLambdaX = 1.2;
constexpr double kLambdaY = 1.1;

enum class Kind
{
    Triangles,
    Quads,
    Mixed
};

// A square of 100 x 100 in 8 x 8 cells whose inner nodes are moved about.
SurfaceMesh distortedSquare(Kind kind)
{
    constexpr int n = 8;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> shift(-3.0, 3.0);
    SurfaceMesh mesh;
    for (int i = 0; i <= n; ++i)
        for (int j = 0; j <= n; ++j)
        {
            bool const rim = i == 0 || j == 0 || i == n || j == n;
            double const x = 100.0 * i / n + (rim ? 0.0 : shift(random));
            mesh.nodes.push_back({x, 100.0 * j / n + (rim ? 0.0 : shift(random)), 0.0});
        }
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
        {
            int const a = i * (n + 1) + j;
            std::array<int, 4> const cell{a, a + n + 1, a + n + 2, a + 1};
            if (kind == Kind::Quads || (kind == Kind::Mixed && (i + j) % 2 == 0))
                mesh.elements.push_back(cell);
            else
            {
                mesh.elements.push_back({cell[0], cell[1], cell[2], -1});
                mesh.elements.push_back({cell[0], cell[2], cell[3], -1});
            }
        }
    return mesh;
}

// The rim goes to p / lambda.
Problem stretched(Kind kind)
{
    SurfaceMesh const mesh = distortedSquare(kind);
    Problem problem = problemOf(mesh, mildSteel());
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
    {
        Point3 const & p = mesh.nodes[i];
        if (p[0] != 0.0 && p[0] != 100.0 && p[1] != 0.0 && p[1] != 100.0)
            continue;
        int const node = static_cast<int>(i);
        problem.constraints.push_back({node, 0.0, 0.001 * p[0] * (1.0 / kLambdaX - 1.0)});
        problem.constraints.push_back({node, kHalfPi, 0.001 * p[1] * (1.0 / kLambdaY - 1.0)});
    }
    return problem;
}

TEST(VerificationKinematics, AStretchedSquareIsUniformToTheLastDigits)
{
    for (Kind kind : {Kind::Triangles, Kind::Quads, Kind::Mixed})
    {
        Problem const problem = stretched(kind);
        Settings exact;
        exact.tolerance = 1e-13; // the strains themselves, not where the iteration may stop
        Solution const solution = solve(problem, exact);
        double worst = 0.0;
        for (std::size_t e = 0; e < problem.elements.size(); ++e)
            for (int point = 0; point < points(problem, e); ++point)
            {
                Strain const h = strainAt(solution, e, point, solution.strains.mid);
                worst =
                    std::max({worst, std::fabs(h.major - std::log(kLambdaX)), std::fabs(h.minor - std::log(kLambdaY))});
            }
        tell("kind %d: largest error of the strains %.3g, %d steps", static_cast<int>(kind), worst,
             solution.newtonSteps);
        EXPECT_LT(worst, 1e-12);
        EXPECT_EQ(solution.stride, kind == Kind::Triangles ? 1 : 4);
    }
}

// The whole problem turned in the plane about the stamping axis: constraints keep their nodes and turn with it.
Problem turned(Problem problem, double angle, double dx, double dy)
{
    double const c = std::cos(angle);
    double const s = std::sin(angle);
    for (auto & p : problem.nodes)
        p = {c * p[0] - s * p[1] + dx, s * p[0] + c * p[1] + dy, p[2]};
    for (auto & constraint : problem.constraints)
        if (constraint.angle <= 1000.0)
            constraint.angle += angle;
    return problem;
}

double largestStrainChange(Problem const & problem, Solution const & a, Solution const & b)
{
    double worst = 0.0;
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
        for (int point = 0; point < points(problem, e); ++point)
        {
            Strain const p = strainAt(a, e, point, a.strains.mid);
            Strain const q = strainAt(b, e, point, b.strains.mid);
            worst = std::max({worst, std::fabs(p.major - q.major), std::fabs(p.minor - q.minor)});
        }
    return worst;
}

TEST(VerificationKinematics, TurningAndMovingThePartLeavesTheStrains)
{
    Problem const problem = stretched(Kind::Mixed);
    Solution const solution = solve(problem);
    for (auto const & [angle, dx, dy] :
         {std::array{0.7, 0.0, 0.0}, std::array{2.9, 0.3, -0.05}, std::array{0.0, 100.0, 0.0}})
    {
        double const change = largestStrainChange(problem, solution, solve(turned(problem, angle, dx, dy)));
        tell("turned by %.1f, moved by %.2f m: strains change by %.3g", angle, dx, change);
        EXPECT_LT(change, 1e-9);
    }
}

} // namespace
