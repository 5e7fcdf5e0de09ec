// SpringbackBendingTest.cpp: strips bent to an arc, against closed forms.

#include "SpringbackFixture.h"

#include "springback/Resultants.h"

using namespace springtest;

namespace
{

// A sector of a cylinder, convex upwards, its first generator at the origin.
Problem sector(double radius, double turn, int rows, int strips, Cells cells)
{
    Problem problem = strip(Profile({0.0, 0.0}, 0.0).arc(radius, -turn, rows), 2.0 * radius * turn / rows * strips,
                            strips, cells);
    holdPlaneStrain(problem, 2.0 * radius * turn / rows * strips);
    return problem;
}

// Turn of the free end against the clamped one.
double endRotation(Problem const & problem, Solution const & solution)
{
    auto const before = headings(problem, problem.formed), after = headings(problem, solution.shape);
    double const facets = static_cast<double>(before.size());
    double const between = (after.back() - after.front()) - (before.back() - before.front()); // middles of the end facets
    return between * facets / (facets - 1.0);
}

} // namespace

TEST(SpringbackBending, MomentsOfALayeredSheetAreThoseOfTheClosedForm)
{
    struct Row
    {
        double radius, moment, ratio;
    };
    voz::material::MembraneLaw const law(mildSteel(), {});
    for (Row const & row : {Row{5, 56.59148, 0.968994}, Row{10, 48.53396, 0.946818}, Row{20, 42.39559, 0.907088},
                            Row{50, 36.82221, 0.798257}, Row{100, 33.97420, 0.627721}})
    {
        double const radius = 0.001 * row.radius;
        auto const r = voz::springback::integrateStress(law, {}, {1.0 / radius, 0.0, 0.0}, mildSteel().thickness);
        EXPECT_NEAR(moment(mildSteel(), radius), row.moment, 2e-6 * row.moment) << row.radius;
        EXPECT_NEAR(springRatio(mildSteel(), radius), row.ratio, 1e-6) << row.radius;
        EXPECT_NEAR(r.moment(0), row.moment, 5e-4 * row.moment) << row.radius;
        tell("R %g: M %.5f (%.5f), R/R' %.6f (%.6f)", row.radius, r.moment(0), row.moment, springRatio(mildSteel(), radius), row.ratio);
    }
}

TEST(SpringbackBending, ASectorSpringsToItsUniformRadius)
{
    for (auto [radius, turn, expected] : {std::array{20.0, 0.6, 0.055747}, std::array{10.0, 0.6, 0.031909},
                                          std::array{5.0, 0.6, 0.018604}, std::array{50.0, 0.2, 0.040349}})
        for (Cells const cells : {Cells::Triangles, Cells::Quads})
        {
            Problem const problem = sector(radius, turn, 24, 2, cells);
            Solution const solution = solve(problem);
            double const rotation = endRotation(problem, solution);
            tell("R %g: rotation %.6f, closed form %.6f; %d steps, pins %g, residual %g", radius, rotation, expected, solution.newtonSteps, solution.pinReaction, solution.residual);
            EXPECT_NEAR(rotation, expected, 5e-4 * expected);
        }
}
