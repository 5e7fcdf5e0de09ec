// ExamplesTest.cpp. Each example from its job file to its blank, against figures that come from elsewhere: closed
// forms, an ordinary differential equation, or the published finite-element values of the method (square cup).

#include "ExamplesFixture.h"

#include "surfaces/Surfaces.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <random>

namespace
{
// About the middle of a blank that is symmetric, and of one that ends on its planes.
struct CupFigures
{
    double side = 0.0;
    double diagonal = 0.0;
    double leastH3 = 0.0;
    double greatestH3 = 0.0;
    double greatestMajor = 0.0;
};

CupFigures FiguresOf(Outcome const & i_outcome, bool i_isQuarter)
{
    double low[2] = {1e9, 1e9};
    double high[2] = {-1e9, -1e9};
    for (NodeOutcome const & node : i_outcome.nodes)
        for (std::size_t i = 0; i < 2; ++i)
        {
            low[i] = std::min(low[i], node.flat[i]);
            high[i] = std::max(high[i], node.flat[i]);
        }
    double const x0 = i_isQuarter ? 0.0 : 0.5 * (low[0] + high[0]);
    double const y0 = i_isQuarter ? 0.0 : 0.5 * (low[1] + high[1]);
    CupFigures figures;
    for (auto const & point : i_outcome.blank.front().points)
    {
        double const x = std::abs(point[0] - x0);
        double const y = std::abs(point[1] - y0);
        figures.diagonal = std::max(figures.diagonal, std::hypot(x, y));
        if (y < 1e-2) // the rim's node on the middle line
            figures.side = std::max(figures.side, x);
    }
    for (ElementOutcome const & element : i_outcome.elements)
    {
        double const h3 = std::log(element.thickness / i_outcome.firstThickness);
        figures.leastH3 = std::min(figures.leastH3, h3);
        figures.greatestH3 = std::max(figures.greatestH3, h3);
        figures.greatestMajor = std::max(figures.greatestMajor, std::log1p(element.major / 100.0));
    }
    return figures;
}

void ExpectCup40(CupFigures const & i_figures)
{
    EXPECT_NEAR(i_figures.side, 78.36, 0.1);
    EXPECT_NEAR(i_figures.diagonal, 106.46, 0.1);
    EXPECT_NEAR(i_figures.leastH3, -0.113, 0.012);
    EXPECT_NEAR(i_figures.greatestH3, 0.283, 0.015);
    EXPECT_NEAR(i_figures.greatestMajor, 0.703, 0.03);
}
} // namespace

TEST_F(Examples, SquareCupOf40MmFindsTheBlankOfTheMethod)
{
    RunRecord const record = Formed("square_cup");
    ExpectCup40(FiguresOf(record.outcome, false));
    EXPECT_NEAR(record.outcome.summary.blankArea / 4.0, 5726.0, 8.0);
    EXPECT_NEAR(record.outcome.summary.drawDepth, 40.0, 1e-3);
    EXPECT_NEAR(record.outcome.summary.blankMass, record.outcome.summary.blankArea * 0.78 * 7.85e-6, 1e-6);
    EXPECT_TRUE(std::filesystem::exists(record.folder + "/elements.csv"));
}

TEST_F(Examples, AQuarterOfTheSquareCupHasTheBlankOfTheWhole)
{
    RunRecord const record = Formed("square_cup_quarter");
    ExpectCup40(FiguresOf(record.outcome, true));
    EXPECT_EQ(record.outcome.summary.symmetryFactor, 4);
    EXPECT_NEAR(record.outcome.summary.blankArea, 5726.0, 8.0);
    nlohmann::json const json = SummaryJson(record);
    EXPECT_NEAR(json["blank"]["width_mm"].get<double>(), 2.0 * 78.36, 0.2) << "of the whole part";
    EXPECT_NEAR(json["blank"]["area_mm2"].get<double>(), 4.0 * 5726.0, 32.0);
}

TEST_F(Examples, InQuadrilateralsTheQuarterHasTheSameBlank)
{
    RunRecord const record = Formed("square_cup_quads");
    CupFigures const figures = FiguresOf(record.outcome, true); // strains are means over four points: no extremes here
    EXPECT_NEAR(figures.side, 78.36, 0.15);
    EXPECT_NEAR(figures.diagonal, 106.46, 0.15);
    EXPECT_NEAR(record.outcome.summary.blankArea, 5726.0, 8.0);
    EXPECT_EQ(record.outcome.part.isTriangle(record.outcome.part.numElem()), 0);
}

TEST_F(Examples, SquareCupOf15MmFindsTheBlankOfTheMethod)
{
    CupFigures const figures = FiguresOf(Formed("square_cup_15").outcome, false);
    EXPECT_NEAR(figures.side, 75.72, 0.05);
    EXPECT_NEAR(figures.diagonal, 106.34, 0.05);
    EXPECT_NEAR(figures.leastH3, -0.072, 0.003);
}

// Cup A2 of the method's verification: blank radius and punch force from an ordinary differential equation.
TEST_F(Examples, CylindricalCupFindsTheRadiusOfTheDifferentialEquation)
{
    RunRecord const record = Formed("cylindrical_cup");
    double greatest = 0.0;
    double least = 1e9;
    NodeOutcome const & pole = record.outcome.nodes.front();
    for (auto const & point : record.outcome.blank.front().points)
    {
        double const radius = std::hypot(point[0] - pole.flat[0], point[1] - pole.flat[1]);
        greatest = std::max(greatest, radius);
        least = std::min(least, radius);
    }
    EXPECT_NEAR(0.5 * (greatest + least), 66.89712, 0.03);
    EXPECT_LT(greatest - least, 0.03);
    EXPECT_NEAR(record.outcome.summary.punchForce, 34511.86, 0.015 * 34511.86);
}

// Plane strain under a uniform force: the profile's facets shrink by exp(-h), with h of the law for 240 N/mm at 0.78
// mm.
TEST_F(Examples, HatSectionFindsTheLengthOfPlaneStrain)
{
    RunRecord const record = Formed("hat_section");
    Outcome const & outcome = record.outcome;
    std::vector<std::array<double, 2>> profile; // x, z of the nodes on one side
    for (int n = 1; n <= outcome.part.numNode(); ++n)
        if (std::abs(outcome.part.node(n, 1)) < 1e-6)
            profile.push_back({outcome.part.node(n, 0), outcome.part.node(n, 2)});
    std::ranges::sort(profile);
    double length = 0.0;
    for (std::size_t i = 1; i < profile.size(); ++i)
        length += std::hypot(profile[i][0] - profile[i - 1][0], profile[i][1] - profile[i - 1][1]);
    double const h = 0.023293;
    EXPECT_NEAR(outcome.summary.blankWidth, length * std::exp(-h), 0.01);
    EXPECT_NEAR(outcome.summary.blankHeight, 60.0, 1e-3) << "its sides do not move";
    for (ElementOutcome const & element : outcome.elements)
        EXPECT_NEAR(std::log1p(element.major / 100.0), h, 2e-4);
}

// Developable: every distance of the blank is that of the part unrolled.
TEST_F(Examples, BracketUnrollsExactly)
{
    RunRecord const record = Formed("bracket");
    voz::examples::SurfaceMesh const blank =
        voz::examples::bracketBlank(voz::examples::Bracket{}, voz::examples::Cells::Triangles);
    std::vector<NodeOutcome> const & nodes = record.outcome.nodes;
    ASSERT_EQ(nodes.size(), blank.nodes.size());
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> any(0, nodes.size() - 1);
    for (int trial = 0; trial < 2000; ++trial)
    {
        std::size_t const a = any(random);
        std::size_t const b = any(random);
        double const found = std::hypot(nodes[a].flat[0] - nodes[b].flat[0], nodes[a].flat[1] - nodes[b].flat[1]);
        double const exact = std::hypot(blank.nodes[a][0] - blank.nodes[b][0], blank.nodes[a][1] - blank.nodes[b][1]);
        ASSERT_NEAR(found, exact, 2e-3) << a << " " << b;
    }
    EXPECT_NEAR(record.outcome.summary.blankArea, area(blank), 1e-4 * area(blank));
    EXPECT_EQ(record.outcome.blank.size(), 2U) << "the hole";
    for (ElementOutcome const & element : record.outcome.elements)
        ASSERT_NEAR(element.thinning, 0.0, 0.02);
}

// --- What acts on the sheet, on the cylindrical cup: figures of the same differential equation, cases A1, A2 and A4
// ------

namespace
{
double RadiusOf(RunRecord const & i_record)
{
    return 0.25 * (i_record.outcome.summary.blankWidth + i_record.outcome.summary.blankHeight);
}

double ForceOf(RunRecord const & i_record)
{
    return i_record.outcome.summary.punchForce;
}
} // namespace

TEST_F(Examples, WithoutAHolderTheCupIsDrawnFreely)
{
    RunRecord const record = FormedCup("[friction]\ncoefficient = 0.1\n");
    EXPECT_NEAR(RadiusOf(record), 67.11001, 0.03);
    EXPECT_NEAR(ForceOf(record), 29369.57, 0.015 * 29369.57);
}

// 2 x 0.1 x 35.814 kN over the rim of 2 pi 57 mm: 20 N/mm.
TEST_F(Examples, ATotalForceRestrainsThroughFriction)
{
    RunRecord const record = FormedCup("[friction]\ncoefficient = 0.1\n[blank_holder]\ntotal_force = \"35.814 kN\"\n");
    EXPECT_NEAR(RadiusOf(record), 66.89712, 0.03);
    EXPECT_NEAR(ForceOf(record), 34511.86, 0.015 * 34511.86);
}

TEST_F(Examples, FrictionOfTheToolsRaisesTheForce)
{
    RunRecord const record = FormedCup("[friction]\ncoefficient = 0.144\ntools = true\n"
                                       "[blank_holder]\nforce_per_length = \"20 N/mm\"\n");
    EXPECT_NEAR(RadiusOf(record), 66.75133, 0.03);
    EXPECT_NEAR(ForceOf(record), 43953.0, 0.015 * 43953.0);
}

// A ring of beads on the flange pulls as much as a holder at the rim; only the flange outside it is left free.
TEST_F(Examples, ABeadPullsLikeAHolder)
{
    std::string points;
    for (int i = 0; i <= 64; ++i)
    {
        double const angle = 2.0 * 3.14159265358979 * i / 64.0;
        points +=
            "[" + std::to_string(52.0 * std::cos(angle)) + ", " + std::to_string(52.0 * std::sin(angle)) + ", 20.0], ";
    }
    RunRecord const record = FormedCup("[[bead]]\nforce = \"20 N/mm\"\npoints_mm = [" + points + "]\n");
    EXPECT_NEAR(ForceOf(record), 34511.86, 0.02 * 34511.86);
    EXPECT_NEAR(RadiusOf(record), 66.92, 0.05);
}

TEST_F(Examples, APadOnTheFlangeRaisesTheForceThroughFriction)
{
    // 5 MPa x 0.1 on a ring of radii 45 and 57 mm.
    RunRecord const record = FormedCup("[friction]\ncoefficient = 0.1\n[[pad]]\npressure = \"5 MPa\"\n"
                                       "box_mm = [[-60, -60, 19.99], [60, 60, 20.01]]\n");
    EXPECT_GT(ForceOf(record), 30000.0);
    EXPECT_LT(ForceOf(record), 34500.0);
}

TEST_F(Examples, LevelFourLetsNothingIn)
{
    RunRecord const record = FormedCup("[blank_holder]\nlevel = 4\n");
    EXPECT_NEAR(RadiusOf(record), 57.0, 1e-3);
    EXPECT_GT(record.outcome.summary.safetyShare[1], 0.1) << "and it tears";
}

// A half model about either plane is laid with the plane on local x = 0, and has the blank of the whole.
TEST_F(Examples, AHalfOfTheSquareCupAboutEitherPlaneHasTheBlankOfTheWhole)
{
    voz::examples::SurfaceMesh const half = voz::examples::squareCup(
        voz::examples::squareCup15(), voz::examples::Extent::Half, voz::examples::Cells::Triangles);
    for (bool const isTurned : {false, true})
    {
        // Turned by a quarter, the plane x = 0 becomes y = 0.
        std::string text = "BEGIN BULK\n";
        for (std::size_t n = 0; n < half.nodes.size(); ++n)
        {
            auto const & p = half.nodes[n];
            text += "GRID," + std::to_string(n + 1) + ",," + std::to_string(isTurned ? -p[1] : p[0]) + "," +
                    std::to_string(isTurned ? p[0] : p[1]) + "," + std::to_string(p[2]) + "\n";
        }
        for (std::size_t e = 0; e < half.elements.size(); ++e)
            text += "CTRIA3," + std::to_string(e + 1) + ",1," + std::to_string(half.elements[e][0] + 1) + "," +
                    std::to_string(half.elements[e][1] + 1) + "," + std::to_string(half.elements[e][2] + 1) + "\n";
        Write("half.bdf", text + "ENDDATA\n");
        Job const job = ParseJob("[mesh]\nfile = \"half.bdf\"\n" + Sheet() + "[symmetry]\nplanes = \"" +
                                     (isTurned ? "xz" : "yz") + "\"\n[blank_holder]\nforce_per_length = \"9.4 N/mm\"\n",
                                 Path("half.toml"));
        OutcomeSummary const summary = FormedJob(job).outcome.summary;
        EXPECT_EQ(summary.symmetryFactor, 2);
        EXPECT_NEAR(summary.blankWidth, 75.72, 0.05) << isTurned;
        EXPECT_NEAR(summary.blankHeight, 2.0 * 75.72, 0.1) << isTurned;
    }
}
