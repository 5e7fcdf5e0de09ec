// SpringbackBendingTest.cpp: strips bent to an arc, against closed forms.

#include "SpringbackFixture.h"

#include "springback/Resultants.h"

using namespace springtest;

namespace
{

// A sector of a cylinder, convex upwards, its first generator at the origin.
Problem sector(double radius, double turn, int rows, int strips, Cells cells)
{
    Problem problem =
        strip(Profile({0.0, 0.0}, 0.0).arc(radius, -turn, rows), 2.0 * radius * turn / rows * strips, strips, cells);
    holdPlaneStrain(problem, 2.0 * radius * turn / rows * strips);
    return problem;
}

// Turn of the free end against the clamped one.
double endRotation(Problem const & problem, Solution const & solution)
{
    auto const before = headings(problem, problem.formed), after = headings(problem, solution.shape);
    double const facets = static_cast<double>(before.size());
    double const between =
        (after.back() - after.front()) - (before.back() - before.front()); // middles of the end facets
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
        tell("R %g: M %.5f (%.5f), R/R' %.6f (%.6f)", row.radius, r.moment(0), row.moment,
             springRatio(mildSteel(), radius), row.ratio);
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
            if (cells == Cells::Triangles)
                tell("R %g: rotation %.6f, closed form %.6f; %d steps, pins %g, residual %g", radius, rotation,
                     expected, solution.newtonSteps, solution.pinReaction, solution.residual);
            EXPECT_NEAR(rotation, expected, 5e-4 * expected);
        }
}

TEST(SpringbackBending, ErrorsFallWithTheSquareOfTheMesh)
{
    struct Case
    {
        double radius, turn;
        double order; // in the range where the thickness rule (5e-4 of the moment) does not yet count
    };
    for (Case const & c : {Case{20.0, 0.6, 1.7}, Case{100.0, 2.0, 1.9}})
    {
        // The tip of the sprung arc: length kept, radius of the closed form.
        double const sprung = 0.001 * c.radius / springRatio(mildSteel(), 0.001 * c.radius);
        double const angle = 0.001 * c.radius * c.turn / sprung;
        double const x1 = sprung * std::sin(angle), z1 = sprung * (std::cos(angle) - 1.0);
        double const x0 = 0.001 * c.radius * std::sin(c.turn), z0 = 0.001 * c.radius * (std::cos(c.turn) - 1.0);
        double const move = std::hypot(x1 - x0, z1 - z0);
        double last = 0.0;
        for (int const rows : {6, 12, 24})
        {
            Problem const problem = sector(c.radius, c.turn, rows, 2, Cells::Triangles);
            Solution const solution = solve(problem);
            auto const tip = std::max_element(problem.flat.begin(), problem.flat.end()) - problem.flat.begin();
            auto const & x = solution.shape[static_cast<std::size_t>(tip)];
            double const error = std::hypot(x[0] - x1, x[2] - z1);
            double const order = last > 0.0 ? std::log2(last / error) : c.order;
            tell("R %g, turn %g, %2d rows: tip moves %.4f mm, error %.5f mm (%.3f %%), order %.2f, %d steps", c.radius,
                 c.turn, rows, 1000 * move, 1000 * error, 100 * error / move, order, solution.newtonSteps);
            EXPECT_GE(order, c.order);
            last = error;
        }
        EXPECT_LT(last, 1e-3 * move);
    }
}

// Two flat legs and an arc of 90 degrees. Node normals smear the end of the arc over the first row of the leg, where
// the moment is nearly that of the arc: the error is that row's length times the loss of curvature, so the rows beside
// the arc are short here.
TEST(SpringbackBending, AVOpensByWhatItsArcLosesAndItsLegsStayFlat)
{
    double const expected = 0.5 * kPi * (1.0 - springRatio(mildSteel(), 0.010)) * 180.0 / kPi;
    EXPECT_NEAR(expected, 4.786, 0.001);
    auto const opening = [](int rows, double beside, Cells cells)
    {
        Profile const profile = Profile({0.0, 0.0}, 0.0)
                                    .line(28.0, 14)
                                    .line(1.8, 3)
                                    .line(beside, 1)
                                    .arc(10.0, -0.5 * kPi, rows)
                                    .line(beside, 1)
                                    .line(1.8, 3)
                                    .line(28.0, 14);
        Problem problem = strip(profile, 2.0, 2, cells);
        holdPlaneStrain(problem, 2.0);
        Solution const solution = solve(problem);
        auto const before = headings(problem, problem.formed), after = headings(problem, solution.shape);
        for (std::size_t i = 1; i < 14; ++i)
        {
            EXPECT_NEAR(after[i], after[0], 1e-4);
            EXPECT_NEAR(after[after.size() - 1 - i], after.back(), 1e-4);
        }
        return (after.back() - before.back() - after.front() + before.front()) * 180.0 / kPi;
    };
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        double last = 0.0;
        for (int const rows : {12, 24, 48})
        {
            double const error = std::abs(opening(rows, 2.4 / rows, cells) - expected);
            tell("V, %d rows: error %.4f of %.4f degrees, order %.2f", rows, error, expected,
                 last > 0.0 ? std::log2(last / error) : 0.0);
            if (last > 0.0)
            {
                EXPECT_GT(std::log2(last / error), 0.9);
            }
            last = error;
        }
        EXPECT_LT(last, 0.01 * expected);
    }
}
