// TubeRouteTest.cpp. The bulged tube of the examples, against the membrane of revolution.
//
// With free ends the meridional force is 0 there; along the meridian s the forces per length balance,
//
//     d(R Ns) = Nh dR,
//
// the hoop strain is ln(R / r0), and the law of the sheet (K (e0 + e)^n, normal anisotropy r, plane stress) gives Ns
// and Nh of both strains. So the meridional strain follows from the end to the middle by one march: C. R. Calladine's
// "Theory of Shell Structures" (1983) for the balance, R. Hill (1948) for the law.

#include "Job.h"
#include "JobModel.h"
#include "KernelRoute.h"
#include "MeshFile.h"
#include "OutcomeAnalysis.h"
#include "Route.h"
#include "Run.h"
#include "TempFolder.h"

#include "surfaces/Surfaces.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>

namespace voz::workbench
{

namespace
{
namespace fs = std::filesystem;

struct Law
{
    double strength, prestrain, exponent, r;

    struct Forces
    {
        double along, hoop; // per length, over K t0
    };
    Forces Of(double i_along, double i_hoop) const
    {
        double const factor = (1.0 + r) / std::sqrt(1.0 + 2.0 * r);
        double const effective =
            factor *
            std::sqrt(std::max(i_along * i_along + i_hoop * i_hoop + 2.0 * r / (1.0 + r) * i_along * i_hoop, 1e-300));
        double const stress = std::pow(prestrain + effective, exponent);
        double const slope = stress / effective * (1.0 + r) / (1.0 + 2.0 * r);
        double const thickness = std::exp(-i_along - i_hoop);
        return {slope * ((1.0 + r) * i_along + r * i_hoop) * thickness,
                slope * ((1.0 + r) * i_hoop + r * i_along) * thickness};
    }
    // The strain along the meridian that carries i_force: uniaxial hoop and more.
    double Along(double i_hoop, double i_force) const
    {
        double low = -0.6 * std::abs(i_hoop) - 0.01;
        double high = 0.6 * std::abs(i_hoop) + 0.01;
        for (int i = 0; i < 80; ++i)
        {
            double const middle = 0.5 * (low + high);
            (Of(middle, i_hoop).along < i_force ? low : high) = middle;
        }
        return 0.5 * (low + high);
    }
};

struct Ring
{
    double along, hoop;
    double length; // of the tube to begin with, from the end to here
};

// From the end to the middle.
std::vector<Ring> March(examples::BulgedTube const & i_tube, Law const & i_law)
{
    constexpr int kSteps = 40000;
    std::vector<Ring> rings;
    double force = 0.0; // R Ns
    double length = 0.0;
    double const step = 0.5 * i_tube.length / kSteps;
    for (int i = 0; i < kSteps; ++i)
    {
        double const x = step * (i + 0.5);
        double const radius = i_tube.radiusAt(x);
        double const rise = i_tube.radiusAt(x + 0.5 * step) - i_tube.radiusAt(x - 0.5 * step);
        double const hoop = std::log(radius / i_tube.radius);
        double const along = i_law.Along(hoop, force / radius);
        force += i_law.Of(along, hoop).hoop * rise;
        length += std::hypot(step, rise) * std::exp(-along);
        rings.push_back({along, hoop, length});
    }
    return rings;
}

void WriteSurface(examples::SurfaceMesh const & i_surface, std::string const & i_path)
{
    MeshModel model;
    model.mesh = VOZCatMesh(static_cast<int>(i_surface.nodes.size()), static_cast<int>(i_surface.elements.size()));
    for (std::size_t n = 0; n < i_surface.nodes.size(); ++n)
    {
        std::ranges::copy(i_surface.nodes[n], model.mesh.GetNodeData()[n + 1]);
        model.nodeIds.push_back(static_cast<int>(n) + 1);
    }
    ElementSet all;
    all.id = 1;
    for (std::size_t e = 0; e < i_surface.elements.size(); ++e)
    {
        for (std::size_t k = 0; k < 4; ++k)
            model.mesh.GetElemData()[e + 1][k] = i_surface.elements[e][i_surface.elements[e][k] < 0 ? 0 : k] + 1;
        model.elementIds.push_back(static_cast<int>(e) + 1);
        all.elements.push_back(static_cast<int>(e) + 1);
    }
    model.sets = {all};
    WriteMesh(model, i_path);
}

class TubeExample : public testing::Test
{
protected:
    TubeExample() : mFolder(mTemp.Path()), mJob(ReadJob(VOZ_SOURCE_DIR "/examples/tube/job.toml")) {}

    Outcome Run() const
    {
        RunObserver observer;
        RouteOptions options;
        options.folder = mFolder.string();
        return KernelRoute().Run(mJob, ReadModel(mJob), options, observer);
    }
    std::string Refusal(std::string const & i_tube, std::string const & i_mesh = "") const
    {
        try
        {
            std::string const mesh = i_mesh.empty() ? VOZ_SOURCE_DIR "/examples/tube/tube.bdf" : i_mesh;
            Job const job = ParseJob("[mesh]\nfile = \"" + mesh +
                                         "\"\n[blank]\nthickness_mm = 1.5\n[material]\nfrom = "
                                         "\"stainless-304\"\n" +
                                         i_tube,
                                     (mFolder / "job.toml").string());
            FindTipping(job, ReadModel(job));
        }
        catch (InputError const & error)
        {
            return error.what();
        }
        return "";
    }

    TempFolder mTemp;
    fs::path mFolder;
    Job mJob;
};
} // namespace

TEST_F(TubeExample, AgreesWithTheMembraneOfRevolution)
{
    examples::BulgedTube const shape;
    Outcome const outcome = Run();
    ASSERT_TRUE(outcome.tube.has_value());
    EXPECT_NEAR(outcome.tube->radius, 30.0, 1e-6);
    JobMaterial const & material = mJob.materials.front();
    Law const law = {material.strength, std::pow(material.yield / material.strength, 1.0 / material.exponent),
                     material.exponent, material.anisotropy};
    std::vector<Ring> const rings = March(shape, law);
    EXPECT_NEAR(outcome.tube->length, 2.0 * rings.back().length, 0.01 * rings.back().length);

    double const middle = 1.5 * std::exp(-rings.back().along - rings.back().hoop);
    double least = 10.0;
    double most = 0.0;
    for (int n = 0; n < outcome.tube->closedNodes; ++n)
        if (std::abs(outcome.part.NodeValue(n + 1, 0) - 80.0) < 0.1)
        {
            double const thickness = outcome.nodes[static_cast<std::size_t>(n)].thickness;
            least = std::min(least, thickness);
            most = std::max(most, thickness);
        }
    EXPECT_NEAR(0.5 * (least + most), middle, 0.01 * middle) << "at the top of the bulge";
    EXPECT_LT(most - least, 0.01 * middle) << "the same all round";
    EXPECT_GT(least, 1.5 * 30.0 / 42.0) << "thicker than in plane strain";
    EXPECT_LT(most, 1.5) << "and thinner than the tube";
}

TEST_F(TubeExample, EveryRingIsTheSameAllRound)
{
    Outcome const outcome = Run();
    examples::BulgedTube const shape;
    for (int row = 0; row < shape.rows; ++row)
    {
        double least = 10.0;
        double most = 0.0;
        for (int j = 0; j < shape.around; ++j)
        {
            double const thickness = outcome.elements[static_cast<std::size_t>(row * shape.around + j)].thickness;
            least = std::min(least, thickness);
            most = std::max(most, thickness);
        }
        EXPECT_LT(most - least, 0.01) << row;
    }
}

TEST_F(TubeExample, TheDevelopedSheetIsTheTubeUnrolled)
{
    Outcome const outcome = Run();
    TubeOutcome const & tube = *outcome.tube;
    EXPECT_NEAR(outcome.summary.blankHeight, 60.0 * std::numbers::pi, 1e-3) << "across the sheet: the circumference";
    EXPECT_NEAR(outcome.summary.blankArea, tube.area, 0.002 * tube.area);
    EXPECT_LT(tube.gap, 0.01);
    EXPECT_EQ(tube.seam.size(), 65U) << "a row of nodes along the tube";
    EXPECT_EQ(tube.closedNodes, 65 * 48);
    EXPECT_EQ(outcome.part.numNode(), 66 * 48 + 65 - 48);
    for (int const n : tube.seam)
    {
        EXPECT_NEAR(outcome.part.NodeValue(n + 1, 1), 0.0, 1e-9);
        EXPECT_GT(outcome.part.NodeValue(n + 1, 2), 0.0) << "on the side that the cut names";
    }
    for (OutcomeCheck const & check : outcome.checks)
    {
        if (check.name.find("seam") != std::string::npos || check.name.find("developed") != std::string::npos)
        {
            EXPECT_TRUE(check.passed) << check.name << " " << check.value;
        }
    }
}

TEST_F(TubeExample, WrappedBackItIsACylinder)
{
    Outcome const outcome = Run();
    for (int n = 0; n < outcome.tube->closedNodes; ++n)
    {
        Point3 const & shift = outcome.tube->wrapped[static_cast<std::size_t>(n)];
        double const y = outcome.part.NodeValue(n + 1, 1) + shift[1];
        double const z = outcome.part.NodeValue(n + 1, 2) + shift[2];
        ASSERT_NEAR(std::hypot(y, z), 30.0, 1e-3) << n;
        double const before = std::atan2(outcome.part.NodeValue(n + 1, 1), outcome.part.NodeValue(n + 1, 2));
        double const turned = std::remainder(std::atan2(y, z) - before, 2.0 * std::numbers::pi);
        ASSERT_NEAR(turned, 0.0, 5e-3) << "no node goes round the tube: " << n;
    }
}

TEST_F(TubeExample, ARunShowsTheSeamAndTellsTheTube)
{
    RunOptions options;
    options.out = mFolder.string();
    RunObserver observer;
    RunRecord const record = RunJob(mJob, options, observer);
    nlohmann::json const summary = SummaryJson(record);
    EXPECT_NEAR(summary["tube"]["radius_mm"].get<double>(), 30.0, 1e-6);
    EXPECT_EQ(summary["tube"]["seam_nodes"], 65);
    EXPECT_TRUE(summary["punch_force_N"].is_null()) << "no punch forms it";
    EXPECT_TRUE(summary["blank"]["model_crossings"].empty());
    std::ifstream file(fs::path(record.folder) / "report.html");
    std::string const page((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::size_t const section = page.find("<section id=\"tube\">");
    ASSERT_NE(section, std::string::npos);
    EXPECT_NE(page.find("<polyline points=", section), std::string::npos) << "the seam";
    EXPECT_EQ(page.find("<section id=\"forces\">"), std::string::npos);
    EXPECT_TRUE(fs::exists(fs::path(record.folder) / "tube.vtu"));
    Job const locked = ReadJob((fs::path(record.folder) / "job.lock.toml").string());
    ASSERT_TRUE(locked.tube.has_value());
    EXPECT_EQ(locked.tube->cut, mJob.tube->cut);
}

TEST_F(TubeExample, AZoneAcrossTheSeamIsOne)
{
    Outcome outcome = Run();
    for (NodeOutcome & node : outcome.nodes)
        node.safety = 2;
    int const ring = 32 * 48; // the middle: nodes all round, the seam's first
    for (int j = 0; j < 48; ++j)
        outcome.nodes[static_cast<std::size_t>(ring + j)].safety = 0;
    AnalyseOutcome(outcome);
    ASSERT_EQ(outcome.zones.size(), 1U);
    EXPECT_EQ(outcome.zones[0].nodes.size(), 48U);
    EXPECT_EQ(outcome.zones[0].place, ZonePlace::Interior) << "the seam is no edge";
    EXPECT_NEAR(outcome.zones[0].area, 2.0 * std::numbers::pi * 42.0 * 2.5, 0.02 * 660.0);
}

TEST_F(TubeExample, OneEndOrThreeIsNoTube)
{
    std::string const plate = Refusal("[tube]\n", VOZ_SOURCE_DIR "/examples/v_bend/v_bend.bdf");
    EXPECT_NE(plate.find("tube: a tube has two open ends and no holes, and the mesh has 1 loop of free edges"),
              std::string::npos)
        << plate;
    examples::SurfaceMesh wall = examples::bulgedTube({}, examples::Cells::Quads);
    wall.elements.erase(wall.elements.begin() + 1000);
    std::string const holed = (mFolder / "holed.bdf").string();
    WriteSurface(wall, holed);
    std::string const message = Refusal("[tube]\n", holed);
    EXPECT_NE(message.find("and the mesh has 3 loops of free edges; \"dravo convert --fill\" closes holes"),
              std::string::npos)
        << message;
}

TEST_F(TubeExample, AnAxisThatMissesTheTubeIsRefused)
{
    std::string const beside = Refusal("[tube]\npoint_mm = [0, 100, 0]\n");
    EXPECT_NE(beside.find("job.toml:7: tube: the plane of the cut misses the tube: its axis does not pass through the "
                          "end around 0.000, 0.000, 0.000 mm"),
              std::string::npos)
        << beside;
    EXPECT_NE(Refusal("[tube]\ncut = [1, 0, 0]\n").find("the cut points along the tube's axis"), std::string::npos);
}

// Its path comes to the other end with its second node and goes on along it.
TEST_F(TubeExample, ATubeOfOneRowOfElementsHasNoRoomForASeam)
{
    examples::SurfaceMesh ring;
    for (int n = 0; n < 24; ++n)
        ring.nodes.push_back({n < 12 ? 0.0 : 10.0, 30.0 * std::sin(n * std::numbers::pi / 6.0),
                              30.0 * std::cos(n * std::numbers::pi / 6.0)});
    for (int j = 0; j < 12; ++j)
        ring.elements.push_back({j, j + 12, (j + 1) % 12 + 12, (j + 1) % 12});
    std::string const path = (mFolder / "ring.bdf").string();
    WriteSurface(ring, path);
    std::string const message = Refusal("[tube]\n", path);
    EXPECT_NE(message.find("at least two rows of elements along its axis"), std::string::npos) << message;
}

TEST_F(TubeExample, AnyCutRoundTheTubeFindsItsWay)
{
    for (char const * const cut : {"[0, 1, 0]", "[0, -1, -1]", "[0, 0.3, 1]", "[0.2, 0, -1]"})
        EXPECT_EQ(Refusal(std::string("[tube]\ncut = ") + cut + "\n"), "") << cut;
}

TEST_F(TubeExample, GoesWithoutToolsAndTheFileRoute)
{
    EXPECT_NE(Refusal("[tube]\n[blank_holder]\nlevel = 2\n").find("a job with [tube] goes without [blank_holder]"),
              std::string::npos);
    EXPECT_NE(Refusal("[tube]\n[symmetry]\nplanes = \"yz\"\n").find("goes without [symmetry]"), std::string::npos);
    EXPECT_NE(Refusal("[tube]\nradius_mm = 0\n").find("tube.radius: must be above 0"), std::string::npos);
    try
    {
        MakeRoute(kFileRoute, VOZ_BINARY_DIR "/bin/dravo")->CheckJob(mJob);
        ADD_FAILURE();
    }
    catch (InputError const & error)
    {
        EXPECT_NE(std::string(error.what()).find("tube: the file route carries no tube"), std::string::npos);
    }
}

} // namespace voz::workbench
