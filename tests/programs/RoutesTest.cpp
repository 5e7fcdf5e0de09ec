// RoutesTest.cpp. The same job by the in-process route and by the file route: the deck's six decimals of an inch are
// all that may stand between them.

#include "ExamplesFixture.h"

#include "surfaces/Surfaces.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double kOfItsSize = 1e-5;     // the blank
constexpr double kStrainPercent = 0.03; // a strain: 1e-5 of the size over an element that is a hundredth of it
constexpr double kThickness = 2e-4;     // relative
constexpr double kForce = 1e-3;         // relative
constexpr double kZones = 0.02;         // share of the elements that lie so near a bound that it decides otherwise

void ExpectSameBlank(Outcome const & i_kernel, Outcome const & i_file)
{
    double const size = std::max(i_kernel.summary.blankWidth, i_kernel.summary.blankHeight);
    double farthest = 0.0;
    for (std::size_t n = 0; n < i_kernel.nodes.size(); ++n)
        farthest = std::max(farthest, std::hypot(i_kernel.nodes[n].flat[0] - i_file.nodes[n].flat[0],
                                                 i_kernel.nodes[n].flat[1] - i_file.nodes[n].flat[1]));
    EXPECT_LE(farthest, kOfItsSize * size);
    EXPECT_NEAR(i_kernel.summary.blankArea, i_file.summary.blankArea, kOfItsSize * i_kernel.summary.blankArea);
    EXPECT_NEAR(i_kernel.summary.blankMass, i_file.summary.blankMass, kOfItsSize * i_kernel.summary.blankMass);
}

void ExpectSameSheet(Outcome const & i_kernel, Outcome const & i_file)
{
    std::size_t otherwise = 0;
    double major = 0.0;
    double minor = 0.0;
    double thickness = 0.0;
    double thinning = 0.0;
    for (std::size_t e = 0; e < i_kernel.elements.size(); ++e)
    {
        ElementOutcome const & a = i_kernel.elements[e];
        ElementOutcome const & b = i_file.elements[e];
        major = std::max(major, std::abs(a.major - b.major));
        minor = std::max(minor, std::abs(a.minor - b.minor));
        thickness = std::max(thickness, std::abs(a.thickness / b.thickness - 1.0));
        thinning = std::max(thinning, std::abs(a.thicknessStrain - b.thicknessStrain));
        otherwise += a.safety != b.safety || a.forming != b.forming ? 1U : 0U;
    }
    EXPECT_LE(major, kStrainPercent);
    EXPECT_LE(minor, kStrainPercent);
    EXPECT_LE(thinning, kStrainPercent);
    EXPECT_LE(thickness, kThickness);
    EXPECT_LE(static_cast<double>(otherwise), kZones * static_cast<double>(i_kernel.elements.size()));
    EXPECT_NEAR(i_kernel.summary.punchForce, i_file.summary.punchForce, kForce * i_kernel.summary.punchForce + 1.0);
}
class Routes : public Examples, public testing::WithParamInterface<char const *>
{
protected:
    void Compare(char const * i_example)
    {
        Job job = JobOf(i_example);
        job.outputs.report = job.outputs.vtu = job.outputs.dxf = job.outputs.svg = job.outputs.tables = false;
        Outcome const kernel = FormedJob(job, kKernelRoute).outcome;
        Outcome const file = FormedJob(job, kFileRoute).outcome;
        EXPECT_EQ(kernel.route, "kernel");
        EXPECT_EQ(file.route, "file");
        ASSERT_EQ(kernel.nodes.size(), file.nodes.size());
        ExpectSameBlank(kernel, file);
        ExpectSameSheet(kernel, file);
        EXPECT_EQ(kernel.top.size(), kernel.elements.size()) << "three layers";
        EXPECT_EQ(kernel.bottom.size(), kernel.elements.size());
        EXPECT_TRUE(file.top.empty()) << "a file holds the middle";
    }
};

class SlowRoutes : public Routes
{
};
} // namespace

TEST_P(Routes, GiveTheSameBlankAndTheSameSheet)
{
    Compare(GetParam());
}

TEST_P(SlowRoutes, GiveTheSameBlankAndTheSameSheet)
{
    Compare(GetParam());
}

INSTANTIATE_TEST_SUITE_P(OfTheExamples, Routes,
                         testing::Values("square_cup_quarter", "square_cup_quads", "hat_section", "bracket"));
INSTANTIATE_TEST_SUITE_P(OfTheExamples, SlowRoutes, testing::Values("square_cup", "square_cup_15", "cylindrical_cup"));

// Beads, pads of whole sets, friction of the tools, prescribed displacements: what acts arrives alike. On a coarse cup.
TEST_F(Examples, WhatActsOnTheSheetArrivesAlikeByBothRoutes)
{
    voz::examples::SurfaceMesh const cup =
        voz::examples::cup(voz::examples::Cup{}, 1, voz::examples::Extent::Whole, voz::examples::Cells::Quads);
    std::string mesh;
    for (auto const & p : cup.nodes)
        mesh += "v " + std::to_string(p[0]) + " " + std::to_string(p[1]) + " " + std::to_string(p[2]) + "\n";
    for (auto const & element : cup.elements)
    {
        mesh += "f";
        for (int const n : element)
            mesh += n < 0 ? "" : " " + std::to_string(n + 1);
        mesh += "\n";
    }
    Write("cup.obj", mesh);
    for (char const * const process :
         {"[[bead]]\nforce = \"20 N/mm\"\npoints_mm = [[50, -20, 20], [50, 20, 20]]\n",
          "[friction]\ncoefficient = 0.1\n[[pad]]\npressure = \"5 MPa\"\nbox_mm = [[-60, -60, 19.9], [60, 60, 20.1]]\n",
          "[friction]\ncoefficient = 0.144\ntools = true\n[blank_holder]\nforce_per_length = \"20 N/mm\"\n",
          "[friction]\ncoefficient = 0.1\n[blank_holder]\ntotal_force = \"35.814 kN\"\n", "[blank_holder]\nlevel = 4\n",
          "[friction]\ncoefficient = 0.1\n[[holder]]\nforce = \"10 kN\"\nbox_mm = [[40, -60, 19], [60, 60, 21]]\n",
          "[[constraint]]\nx = \"1 mm\"\nbox_mm = [[54, -16, 19], [58, 16, 21]]\n"
          "[[constraint]]\nx = \"0 mm\"\ny = \"0 mm\"\nbox_mm = [[-1, -1, -1], [1, 1, 1]]\n"})
    {
        SCOPED_TRACE(process);
        Job const job =
            ParseJob("[mesh]\nfile = \"cup.obj\"\nlength_unit = \"mm\"\n" + Sheet() + process, Path("cup.toml"));
        Outcome const kernel = FormedJob(job, kKernelRoute).outcome;
        Outcome const file = FormedJob(job, kFileRoute).outcome;
        ExpectSameBlank(kernel, file);
        ExpectSameSheet(kernel, file);
    }
}
