// SpringbackBendingTest.cpp: strips bent to an arc, against closed forms.

#include "SpringbackFixture.h"

#include "springback/Resultants.h"

using namespace springtest;

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
        double last = 0.0;
        for (int const rows : {6, 12, 24})
        {
            Problem const problem = sector(c.radius, c.turn, rows, 2, Cells::Triangles);
            Solution const solution = solve(problem);
            auto const [move, error] = tipOf(problem, solution, c.radius, c.turn);
            double const order = last > 0.0 ? std::log2(last / error) : c.order;
            tell("R %g, turn %g, %2d rows: tip moves %.4f mm, error %.5f mm (%.3f %%), order %.2f, %d steps", c.radius,
                 c.turn, rows, 1000 * move, 1000 * error, 100 * error / move, order, solution.newtonSteps);
            EXPECT_GE(order, c.order);
            EXPECT_LT(error, (rows == 24 ? 1e-3 : 1e-2) * move);
            last = error;
        }
    }
}

// The legs keep their rows while the arc's become finer: what counts is that no row beside the arc takes of its
// turning.
TEST(SpringbackBending, AVOpensByWhatItsArcLosesAndItsLegsStayFlat)
{
    double const expected = veeOpening();
    EXPECT_NEAR(expected * 180.0 / kPi, 4.786, 0.001);
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
        for (int const legRows : {15, 30})
            for (int const arcRows : {6, 12})
            {
                Problem const problem = vee(arcRows, legRows, cells);
                Solution const solution = solve(problem);
                auto const after = headings(problem, solution.shape);
                for (std::size_t i = 1; i + 1 < static_cast<std::size_t>(legRows); ++i)
                {
                    EXPECT_NEAR(after[i], after[0], 1e-4);
                    EXPECT_NEAR(after[after.size() - 1 - i], after.back(), 1e-4);
                }
                double const opened = opening(problem, solution);
                tell("V, arc %d rows, legs %d: opening %.4f of %.4f degrees (%+.3f %%)", arcRows, legRows,
                     opened * 180.0 / kPi, expected * 180.0 / kPi, 100.0 * (opened / expected - 1.0));
                EXPECT_NEAR(opened, expected, (arcRows == 6 ? 3e-3 : 5e-4) * expected);
            }
}

TEST(SpringbackBending, AVOfAnIrregularMeshOpensByTheSame)
{
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Problem const problem = vee(12, 15, cells, 0.25);
        double const opened = opening(problem, solve(problem));
        tell("V, nodes moved: opening off by %+.3f %%", 100.0 * (opened / veeOpening() - 1.0));
        EXPECT_NEAR(opened, veeOpening(), 5e-4 * veeOpening());
    }
}

TEST(SpringbackBending, CurvaturesOfTheMeshReplaceTheMeasuredOnes)
{
    Problem problem = sector(20.0, 0.6, 24, 2, Cells::Triangles);
    problem.curvatures.assign(problem.elements.size(), {0.0, 1.0 / 0.010, 0.0}); // as sharp as a radius of 10
    // the loss of curvature is M/D, whatever bent the strip
    double const expected =
        0.6 * (1.0 - springRatio(mildSteel(), 0.020)) * moment(mildSteel(), 0.010) / moment(mildSteel(), 0.020);
    EXPECT_NEAR(endRotation(problem, solve(problem)), expected, 1e-3 * expected);
}
