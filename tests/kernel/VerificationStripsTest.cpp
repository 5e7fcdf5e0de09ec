// VerificationStripsTest.cpp: hat channels in closed form, and developable parts, which must unroll without strain.

#include "ChannelCases.h"
#include "OneStepFixture.h"

#include <algorithm>

namespace
{

using namespace onesteptest;

struct ForceStrain
{
    double force, strain;
};

TEST(VerificationChannel, EveryForceGivesItsStrain)
{
    for (Cells cells : {Cells::Triangles, Cells::Quads})
        for (ForceStrain const & row :
             {ForceStrain{120.0, 0.000470}, ForceStrain{180.0, 0.003315}, ForceStrain{240.0, 0.023293},
              ForceStrain{300.0, 0.078937}, ForceStrain{330.0, 0.163804}})
        {
            Channel const c = channel(row.force, cells);
            Settings fine; // the blank's length is compared to a nanometre
            fine.tolerance = 1.0e-10;
            Solution const solution = solve(c.problem, fine);
            double least = 1.0;
            double greatest = -1.0;
            for (std::size_t e = 0; e < c.problem.elements.size(); ++e)
                for (int point = 0; point < points(c.problem, e); ++point)
                {
                    Strain const h = strainAt(solution, e, point, solution.strains.mid);
                    least = std::min(least, h.major);
                    greatest = std::max(greatest, h.major);
                    EXPECT_NEAR(h.minor, 0.0, 1e-9);
                }
            double blank = 0.0;
            for (std::size_t i = 0; i < c.mesh.nodes.size(); ++i)
                blank = std::max(blank, flat(solution, static_cast<int>(i))[0]);
            tell("f = %g N/mm: h1 %.7f to %.7f, %d steps", row.force, least, greatest, solution.newtonSteps);
            EXPECT_NEAR(least, row.strain, 6e-7);
            EXPECT_NEAR(greatest, row.strain, 6e-7);
            EXPECT_NEAR(blank, c.profileLength * std::exp(-greatest), 1e-6);
        }
}

// Wall force f exp(mu alpha) behind the die arc, f again under the punch: both bends are 80 degrees. Twelve facets an
// arc give 276.0038 and 0.049030 where the smooth rope has 275.9626 and 0.048990.
TEST(VerificationChannel, ToolFrictionFollowsTheRopeFormula)
{
    Channel c = channel(240.0, Cells::Quads);
    c.problem.toolFriction = 0.1;
    Solution const solution = solve(c.problem);
    int const rows = 6 * kRowsPerArc;
    std::vector<double> strain; // by row
    for (int row = 0; row < rows; ++row)
        strain.push_back(strainAt(solution, static_cast<std::size_t>(2 * row), 0, solution.strains.mid).major);
    double const wall = strain[static_cast<std::size_t>(3 * kRowsPerArc + kRowsPerArc / 2)];
    double const bottom = strain.front();
    tell("wall h1 %.6f, bottom h1 %.6f", wall, bottom);
    EXPECT_NEAR(wall, 0.049030, 2e-6);
    EXPECT_NEAR(bottom, 0.023293, 2e-6);
    EXPECT_NEAR(strain.back(), 0.023293, 2e-6);
}

// A hat with free ends is in uniaxial tension: h2 = -r / (1 + r) h1 up to the elastic part of the law, which has the
// same ratio, so the strip narrows by exactly that.
TEST(VerificationChannel, AHatWithFreeEndsNarrowsAsTheAnisotropySays)
{
    Hat const hat;
    SurfaceMesh const mesh = wholeHat(hat, 60.0, 6, 6, Cells::Quads);
    Problem problem = problemOf(mesh, mildSteel());
    double const end = mesh.nodes.back()[0];
    restrain(problem, mesh, 200.0, [end](Point3 const & p) { return std::fabs(p[0]) == end; });
    Solution const solution = solve(problem);
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
    {
        Strain const h = strainAt(solution, e, 0, solution.strains.mid);
        ASSERT_GT(h.major, 0.001);
        ASSERT_NEAR(h.minor, -1.79 / 2.79 * h.major, 1e-7);
    }
}

// --- Developable parts -----------------------------------------------------------------------------------------------

double largestMidStrain(Problem const & problem, Solution const & solution)
{
    double worst = 0.0;
    for (std::size_t e = 0; e < problem.elements.size(); ++e)
        for (int point = 0; point < points(problem, e); ++point)
        {
            Strain const h = strainAt(solution, e, point, solution.strains.mid);
            worst = std::max({worst, std::fabs(h.major), std::fabs(h.minor)});
        }
    return worst;
}

double distance(Solution const & solution, int a, int b)
{
    Point2 const p = flat(solution, a);
    Point2 const q = flat(solution, b);
    return std::hypot(p[0] - q[0], p[1] - q[1]);
}

TEST(VerificationDevelopable, TheCylinderUnrolls)
{
    for (Cells cells : {Cells::Triangles, Cells::Quads})
    {
        constexpr int rows = 20;
        SurfaceMesh const mesh = cylinder(20.0, 0.6, 24, 30.0, rows, cells);
        Problem const problem = problemOf(mesh, mildSteel());
        Solution const solution = solve(problem);
        double const strain = largestMidStrain(problem, solution);
        int const farCorner = 24 * (rows + 1);
        tell("largest strain %.3g, blank %.6f x %.6f, %d steps", strain, distance(solution, 0, farCorner),
             distance(solution, 0, rows), solution.newtonSteps);
        EXPECT_LT(strain, 1e-12);
        EXPECT_NEAR(distance(solution, 0, farCorner), 23.99750, 5e-6);
        EXPECT_NEAR(distance(solution, 0, rows), 30.0, 1e-9);
        EXPECT_NEAR(distance(solution, 0, farCorner + rows), 38.41718, 5e-6);
    }
}

TEST(VerificationDevelopable, TheConeUnrolls)
{
    for (Cells cells : {Cells::Triangles, Cells::Quads})
    {
        constexpr int rows = 16;
        SurfaceMesh const mesh = cone(0.6, 20.0, 60.0, 1.0, 24, rows, cells);
        Problem const problem = problemOf(mesh, mildSteel());
        Solution const solution = solve(problem);
        double const strain = largestMidStrain(problem, solution);
        int const outer = rows * 25;
        tell("largest strain %.3g, inner chord %.6f, slant %.6f, corner to corner %.6f, %d steps", strain,
             distance(solution, 0, 24), distance(solution, 0, outer), distance(solution, 0, outer + 24),
             solution.newtonSteps);
        EXPECT_LT(strain, 1e-12);
        EXPECT_NEAR(distance(solution, 0, 24), 21.40079, 5e-6);
        EXPECT_NEAR(distance(solution, 0, outer), 40.0, 1e-9);
        EXPECT_NEAR(distance(solution, 0, outer + 24), 54.53422, 5e-6);
    }
}

TEST(VerificationDevelopable, TheBracketBecomesItsBlankHoleAndAll)
{
    for (Cells cells : {Cells::Triangles, Cells::Quads})
    {
        SurfaceMesh const mesh = bracket({}, cells);
        SurfaceMesh const blank = bracketBlank({}, cells);
        Problem const problem = problemOf(mesh, mildSteel());
        Solution const solution = solve(problem);
        double worst = 0.0; // of the distances to three nodes far apart
        for (int from : {0, static_cast<int>(mesh.nodes.size()) / 2, static_cast<int>(mesh.nodes.size()) - 1})
            for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
            {
                Point3 const & p = blank.nodes[static_cast<std::size_t>(from)];
                Point3 const & q = blank.nodes[i];
                worst = std::max(worst, std::fabs(distance(solution, from, static_cast<int>(i)) -
                                                  std::hypot(p[0] - q[0], p[1] - q[1])));
            }
        tell("largest strain %.3g, largest error of a distance %.3g mm, %d steps", largestMidStrain(problem, solution),
             worst, solution.newtonSteps);
        EXPECT_LT(largestMidStrain(problem, solution), 1e-12);
        EXPECT_LT(worst, 1e-9);
        EXPECT_NEAR(flatArea(problem, solution), area(mesh), 1e-8);
    }
}

// Top less mid is ln(1 + t/2R) across the generators and nothing along them; the normal points outward.
TEST(VerificationDevelopable, LayersOfTheCylinderAreBentByItsRadius)
{
    for (Cells cells : {Cells::Triangles, Cells::Quads})
    {
        SurfaceMesh const mesh = cylinder(20.0, 0.6, 24, 30.0, 20, cells);
        Problem const problem = problemOf(mesh, mildSteel());
        Solution const solution = solve(problem);
        double worstTop = 0.0;
        double worstBottom = 0.0;
        double worstAlong = 0.0;
        for (std::size_t e = 0; e < problem.elements.size(); ++e)
            for (int point = 0; point < points(problem, e); ++point)
            {
                Strain const top = strainAt(solution, e, point, solution.strains.top);
                Strain const bottom = strainAt(solution, e, point, solution.strains.bottom);
                worstTop = std::max(worstTop, std::fabs(top.major - 0.019312));
                worstBottom = std::max(worstBottom, std::fabs(bottom.minor + 0.019693));
                worstAlong = std::max({worstAlong, std::fabs(top.minor), std::fabs(bottom.major)});
            }
        tell("largest error: top %.3g, bottom %.3g, along %.3g", worstTop, worstBottom, worstAlong);
        EXPECT_LT(worstTop, 0.005 * 0.019312);
        EXPECT_LT(worstBottom, 0.005 * 0.019693);
        EXPECT_LT(worstAlong, 0.005 * 0.019312);
    }
}

} // namespace
