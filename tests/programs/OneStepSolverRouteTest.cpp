// OneStepSolverRouteTest.cpp: the solver program at the end of the file route.
//
// The cup is case A1 of the axisymmetric verification problems (blank radius 67.110 mm, punch force 29369.6 N for the
// whole), A2 with 20 N/mm around its rim (66.897 mm); the values come from the ordinary differential equation of the
// cup. The mesh here is the coarsest one, good for 0.3 % of the radius and 5 % of the force.

#include "OneStepSolverFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <memory>

#if !defined(_WIN32)
using namespace sheetjobs;
using deckjobs::readFile;
using testing::HasSubstr;

TEST_F(OneStepSolver, FindsTheBlankOfACupOfTriangles)
{
    SheetJob job(cup(ex::Cells::Triangles), Symmetry(true, true));
    auto const result = job.solve();
    ASSERT_TRUE(result);
    EXPECT_NEAR(job.blankRadius(*result), 67.110, 0.2);
    EXPECT_NEAR(result->PunchForce(), 29369.57 / 4.0, 0.06 * 29369.57 / 4.0);
    for (int n = 1; n <= job.mesh.numNode(); ++n)
        EXPECT_NEAR(job.flat(*result, n, 2), 0.0, 1.0e-5);
}

TEST_F(OneStepSolver, FindsTheBlankOfACupOfQuadrilaterals)
{
    SheetJob job(cup(ex::Cells::Quads), Symmetry(true, true));
    auto const result = job.solve();
    ASSERT_TRUE(result);
    EXPECT_NEAR(job.blankRadius(*result), 67.110, 0.2);
}

TEST_F(OneStepSolver, GivesThicknessAndStrainsThatKeepTheVolume)
{
    for (ex::Cells const cells : {ex::Cells::Triangles, ex::Cells::Quads})
    {
        SheetJob job(cup(cells), Symmetry(true, true));
        auto const result = job.solve();
        ASSERT_TRUE(result);
        for (int e = 1; e <= job.mesh.numElem(); ++e)
        {
            double const h1 = std::log1p(0.01 * static_cast<double>(result->strain(e, 0)));
            double const h2 = std::log1p(0.01 * static_cast<double>(result->strain(e, 1)));
            EXPECT_GE(h1, h2);
            EXPECT_NEAR(result->thickness(e), kThickness * std::exp(-h1 - h2), 0.01 * kThickness) << e;
            // Stress of mild steel in pascals for both kinds, though the text has two units.
            EXPECT_GT(result->stress(e), 1.0e6f) << e;
            EXPECT_LT(result->stress(e), 1.0e9f) << e;
        }
    }
}

TEST_F(OneStepSolver, GivesTheSameDisplacementsInAnotherFrame)
{
    SheetJob plain(cup(ex::Cells::Triangles), Symmetry(true, true));
    auto const expected = plain.solve();
    SheetJob turned(cup(ex::Cells::Triangles), Symmetry(true, true));
    // Global x is local -y, global y is local x: the planes of symmetry change places and stay planes.
    double const origin[3] = {100.0, -50.0, 7.0};
    double const rows[3][3] = {{0.0, 1.0, 0.0}, {-1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}};
    for (int i = 0; i < 3; ++i)
        turned.axis.axis(i, Vec(rows[i]));
    turned.axis.origin(Vec(static_cast<double const *>(origin)));
    for (int n = 1; n <= turned.mesh.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
            turned.mesh.GetNodeData()[n][c] += origin[c];
    auto const result = turned.solve();
    ASSERT_TRUE(expected && result);
    for (int n = 1; n <= plain.mesh.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(result->disp1(n, c), expected->disp1(n, c), 2.0e-4) << n;
    EXPECT_NEAR(result->PunchForce(), expected->PunchForce(), 0.1);
}

// 20 N/mm around the rim, said in two ways that stand in the deck in different units.
TEST_F(OneStepSolver, FeelsTheFullHolderAndASingleOneAlike)
{
    SheetJob single(cup(ex::Cells::Triangles), Symmetry(true, true));
    single.holdRim(20000.0);
    auto const bySingle = single.solve();
    SheetJob full(cup(ex::Cells::Triangles), Symmetry(true, true));
    full.fullHolder.factor(20000.0 / (0.001 * kThickness * 1.0e6 * kYield));
    auto const byFull = full.solve();
    ASSERT_TRUE(bySingle && byFull);
    EXPECT_NEAR(single.blankRadius(*bySingle), 66.897, 0.2);
    EXPECT_NEAR(full.blankRadius(*byFull), single.blankRadius(*bySingle), 1.0e-4);
    EXPECT_NEAR(byFull->PunchForce(), bySingle->PunchForce(), 0.5);
    EXPECT_GT(byFull->PunchForce(), 1.1 * 29369.57 / 4.0);
}

TEST_F(OneStepSolver, LocksTheRimWhereTheHolderSaysSo)
{
    SheetJob job(cup(ex::Cells::Triangles), Symmetry(true, true));
    job.fullHolder.option(4);
    auto const result = job.solve();
    ASSERT_TRUE(result);
    EXPECT_NEAR(job.blankRadius(*result), kRim, 1.0e-4);
}

namespace
{
// A flat plate of 20 x 10 mm that the flat squeezes by half a millimetre from both sides: uniaxial tension along x.
std::unique_ptr<SheetJob> pulledPlate(ex::Cells cells)
{
    auto job = std::make_unique<SheetJob>(ex::extrude(ex::Profile({0.0, 0.0}, 0.0).line(20.0, 4), 10.0, 2, cells),
                                          Symmetry(false, false));
    job->property.sizeDispBC(2);
    for (int table = 1; table <= 2; ++table)
    {
        double const x = table == 1 ? 0.0 : 20.0;
        std::vector<int> nodes;
        for (int n = 1; n <= job->mesh.numNode(); ++n)
            if (std::fabs(job->mesh.NodeValue(n, 0) - x) < 1.0e-9)
                nodes.push_back(n);
        DispBC & bc = job->property.dispBCs(table);
        bc.setSize(static_cast<int>(nodes.size()));
        std::copy(nodes.begin(), nodes.end(), bc.nodes);
        bc.setCode(0b000001);
        bc.values[0] = table == 1 ? 0.5 : -0.5;
    }
    return job;
}
} // namespace

TEST_F(OneStepSolver, MovesNodesFromThePartToTheFlatAsPrescribed)
{
    auto const job = pulledPlate(ex::Cells::Quads);
    auto const result = job->solve();
    ASSERT_TRUE(result);
    for (int n = 1; n <= job->mesh.numNode(); ++n)
        EXPECT_NEAR(result->disp1(n, 0), 0.5 - 0.05 * job->mesh.NodeValue(n, 0), 2.0e-3) << n;
}

TEST_F(OneStepSolver, GivesEachQuantityOfATensileTestInItsUnit)
{
    double const r = 1.79;
    double const h = std::log(20.0 / 19.0);
    for (ex::Cells const cells : {ex::Cells::Triangles, ex::Cells::Quads})
    {
        auto const job = pulledPlate(cells);
        auto const result = job->solve();
        ASSERT_TRUE(result);
        for (int e = 1; e <= job->mesh.numElem(); ++e)
        {
            EXPECT_NEAR(result->strain(e, 0), 100.0 * std::expm1(h), 0.01);
            EXPECT_NEAR(result->strain(e, 1), 100.0 * std::expm1(-h * r / (1.0 + r)), 0.02);
            EXPECT_NEAR(result->thickness(e), kThickness * std::exp(-h / (1.0 + r)), 1.0e-4);
            EXPECT_NEAR(result->stress(e), 271.0e6, 2.0e6); // the curve at 0.0513, pascals
            if (job->mesh.isTriangle(e) == 0)
                continue;
            double const factor = std::sqrt(2.0 * (2.0 + r) / (3.0 * (1.0 + r)));
            EXPECT_NEAR(result->EquivalentStrain(e), 100.0 * std::expm1(factor * h), 0.01);
            int const a = job->mesh.ElementValue(e, 0);
            int const b = job->mesh.ElementValue(e, 1);
            double const side = std::atan2(job->mesh.NodeValue(b, 1) - job->mesh.NodeValue(a, 1),
                                           job->mesh.NodeValue(b, 0) - job->mesh.NodeValue(a, 0));
            double const angle = static_cast<double>(result->strain(e, 2)) * std::acos(-1.0) / 180.0;
            EXPECT_NEAR(std::sin(side + angle), 0.0, 1.0e-3) << e; // together they turn from x to x
            EXPECT_GE(angle, 0.0);
            EXPECT_LT(angle, 3.1416);
        }
    }
}

TEST_F(OneStepSolver, CarriesBeadsPadsAndToolFriction)
{
    SheetJob job(cup(ex::Cells::Quads), Symmetry(true, true));
    auto const plain = job.solve();
    auto const rubbed = job.solve(true);
    ASSERT_TRUE(plain && rubbed);
    EXPECT_GT(rubbed->PunchForce(), 1.01f * plain->PunchForce()); // the control flag switches tool friction on

    // A pad on the whole sheet.
    job.property.sizePressPads(1);
    job.property.pressPadVal(1, 1.0e6);
    job.property.pressPadSize(1, job.mesh.numNode());
    for (int n = 1; n <= job.mesh.numNode(); ++n)
        job.property.pressPads(1, n, n);
    auto const padded = job.solve();
    ASSERT_TRUE(padded);
    EXPECT_GT(std::fabs(padded->PunchForce() - plain->PunchForce()), 1.0f);
    job.property.clearPressPads();

    // A bead through the middle of the last element, which lies at the rim.
    job.property.sizeDrawBeads(1);
    DrawBead & bead = job.property.drawBeads(1);
    bead.force = 50000.0;
    bead.edgeCount = 1;
    bead.edges = new EdgeProperty[1];
    bead.edges[0].element = job.mesh.numElem();
    double const ends[4] = {-1.0, 0.0, 1.0, 0.0};
    std::copy(ends, ends + 4, bead.edges[0].edgeValues);
    auto const beaded = job.solve();
    ASSERT_TRUE(beaded);
    EXPECT_GT(std::fabs(beaded->PunchForce() - plain->PunchForce()), 0.1f);
}

// The cup's planes of symmetry stay planes, and what is read back are positions in mm in the stamping frame.
TEST_F(OneStepSolver, SpringsACupBackFromEndToEnd)
{
    SheetJob job(cup(ex::Cells::Triangles), Symmetry(true, true));
    ASSERT_EQ(job.solver().write("deck.spi", false, false, 0), 0);
    EXPECT_EQ(job.solver().run_spb(program().c_str(), "deck.spi"), 0);
    ASSERT_TRUE(std::filesystem::exists("deck.spo"));
    EXPECT_THAT(filesHere(), testing::Not(testing::Contains(HasSubstr(".fpo"))));
    EXPECT_THAT(readFile("deck-springback.sum"), HasSubstr("outcome              converged"));
    EXPECT_THAT(readFile("deck.sum"), HasSubstr("punch force N"));
    Result result(job.mesh);
    job.solver().read("deck.spo", result, false);
    double greatest = 0.0;
    for (int n = 1; n <= job.mesh.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
        {
            double const before = job.mesh.NodeValue(n, c);
            double const after = static_cast<double>(result.dispOnBinder1(n, c));
            greatest = std::max(greatest, std::abs(after - before));
            if (c < 2 && before == 0.0)
            {
                EXPECT_NEAR(after, 0.0, 1.0e-5) << n;
            }
        }
    EXPECT_GT(greatest, 0.01); // mm
    EXPECT_LT(greatest, 5.0);
}
#endif
