// KernelRouteTest.cpp. The in-process route on small parts whose results are known: what comes back, in which unit, and
// how it fails.

#include "KernelRoute.h"
#include "JobFixture.h"
#include "OutputFile.h"

#include "surfaces/Surfaces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

using namespace voz::workbench;

namespace
{
class Listener : public RunObserver
{
public:
    void Stage(std::string const & i_name) override { stages += i_name + ";"; }
    void Progress(int i_percent) override
    {
        isForward = isForward && i_percent >= percent;
        percent = i_percent;
    }
    bool IsInterrupted() override { return isInterruptible && percent > 0; }

    std::string stages;
    int percent = 0;
    bool isForward = true;
    bool isInterruptible = false;
};

class KernelRouteTest : public JobFixture
{
protected:
    KernelRouteTest() { std::filesystem::create_directories(Folder() + "/solver"); }

    void WriteMesh(voz::examples::SurfaceMesh const & i_mesh) const
    {
        std::string text;
        for (auto const & p : i_mesh.nodes)
            text += "v " + Shortest(p[0]) + " " + Shortest(p[1]) + " " + Shortest(p[2]) + "\n";
        for (auto const & element : i_mesh.elements)
        {
            text += "f";
            for (int const n : element)
                if (n >= 0)
                    text += " " + std::to_string(n + 1);
            text += "\n";
        }
        Write("part.obj", text);
    }
    Job JobOf(std::string const & i_more = "") const
    {
        std::string text = Sound();
        if (std::filesystem::exists(Folder() + "/part.obj"))
            text.replace(text.find("part.bdf"), 8, "part.obj");
        return ParseJob(text + i_more, JobPath());
    }
    Outcome Run(Job const & i_job, Listener & io_listener) const
    {
        RouteOptions options;
        options.folder = Folder() + "/solver";
        return KernelRoute().Run(i_job, ReadModel(i_job), options, io_listener);
    }
    Outcome Run(Job const & i_job) const
    {
        Listener listener;
        return Run(i_job, listener);
    }
    std::string FailureOf(Job const & i_job) const
    {
        try
        {
            Run(i_job);
        }
        catch (SolverError const & error)
        {
            return error.what();
        }
        return "no failure";
    }
};

// Of the angle from side 1-2, in the plane at right angles to the diagonals of a quadrilateral.
Point3 MajorDirection(VOZCatMesh const & i_mesh, int i_elem, double i_angle)
{
    auto const way = [&](int i_from, int i_to)
    {
        Point3 d;
        for (int c = 0; c < 3; ++c)
            d[static_cast<std::size_t>(c)] =
                i_mesh.node(i_mesh.elem(i_elem, i_to), c) - i_mesh.node(i_mesh.elem(i_elem, i_from), c);
        return d;
    };
    auto const cross = [](Point3 const & a, Point3 const & b) {
        return Point3{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    };
    auto const unit = [](Point3 const & a)
    {
        double const size = std::hypot(a[0], a[1], a[2]);
        return Point3{a[0] / size, a[1] / size, a[2] / size};
    };
    Point3 const normal = unit(cross(way(0, 2), way(1, 3)));
    Point3 const across = unit(cross(normal, way(0, 1)));
    Point3 const along = cross(across, normal);
    Point3 direction;
    for (std::size_t c = 0; c < 3; ++c)
        direction[c] = std::cos(i_angle) * along[c] + std::sin(i_angle) * across[c];
    return direction;
}

bool Holds(std::string const & i_text, std::string const & i_part)
{
    return i_text.find(i_part) != std::string::npos;
}
} // namespace

TEST_F(KernelRouteTest, AFlatPlateStaysWhatItIs)
{
    Outcome const outcome = Run(JobOf());
    EXPECT_EQ(outcome.route, "kernel");
    ASSERT_EQ(outcome.elements.size(), 12U);
    for (ElementOutcome const & element : outcome.elements)
    {
        EXPECT_NEAR(element.thickness, 0.78, 1e-6) << "metres became mm";
        EXPECT_NEAR(element.thinning, 0.0, 1e-4);
        EXPECT_EQ(element.safety, 2) << "strains of rounding are no zone of their own";
        EXPECT_EQ(element.forming, 1);
    }
    for (NodeOutcome const & node : outcome.nodes)
        EXPECT_NEAR(node.thickness, 0.78, 1e-6);
    EXPECT_NEAR(outcome.summary.blankWidth * outcome.summary.blankHeight, 48.0, 1e-5);
    EXPECT_FALSE(outcome.hasBinder);
}

// Bent over a radius of 10, with the convex side up: that side is stretched by ln(1 + t / 2R), the other compressed.
TEST_F(KernelRouteTest, ThreeLayersOfABentStripAreInTheirOrder)
{
    WriteMesh(voz::examples::cylinder(10.0, 0.6, 24, 10.0, 8, voz::examples::Cells::Quads));
    Outcome const outcome = Run(JobOf("[friction]\ncoefficient = 0\n"));
    ASSERT_EQ(outcome.top.size(), 192U);
    ASSERT_EQ(outcome.bottom.size(), 192U);
    double const top = 100.0 * (0.39 / 10.0);
    for (std::size_t e = 40; e < 152; ++e) // away from the ends, where the normals have one neighbour alone
    {
        EXPECT_NEAR(outcome.top[e].major, top, 0.05 * top) << e;
        EXPECT_NEAR(outcome.bottom[e].minor, -top, 0.05 * top) << e;
        EXPECT_NEAR(outcome.elements[e].major, 0.0, 0.05);
        EXPECT_EQ(outcome.top[e].thickness, outcome.elements[e].thickness) << "the sheet has one thickness";
        EXPECT_EQ(outcome.top[e].stress, outcome.elements[e].stress) << "and one stress";
        int const at = static_cast<int>(e) + 1; // the axis of the bend is along y
        EXPECT_NEAR(MajorDirection(outcome.part, at, outcome.top[e].angle)[1], 0.0, 0.02) << e;
        EXPECT_NEAR(std::abs(MajorDirection(outcome.part, at, outcome.bottom[e].angle)[1]), 1.0, 0.02) << e;
    }
    EXPECT_NEAR(outcome.summary.blankWidth > outcome.summary.blankHeight ? outcome.summary.blankWidth
                                                                         : outcome.summary.blankHeight,
                12.0, 0.01);
}

// On a dome the strains are along the meridian and across it, whatever the shape of the cells.
TEST_F(KernelRouteTest, TheStrainsOfQuadrilateralsHaveTheirDirection)
{
    WriteMesh(voz::examples::dome(50.0, 0.7, 2, voz::examples::Extent::Whole, voz::examples::Cells::Quads));
    Outcome const outcome = Run(JobOf("[friction]\ncoefficient = 0\n"));
    int seen = 0;
    for (int e = 1; e <= outcome.part.numElem(); ++e)
    {
        ElementOutcome const & element = outcome.elements[static_cast<std::size_t>(e - 1)];
        if (outcome.part.isTriangle(e) != 0 || element.major - element.minor < 0.3)
            continue;
        ++seen;
        Point3 middle{};
        for (int k = 0; k < 4; ++k)
            for (int c = 0; c < 3; ++c)
                middle[static_cast<std::size_t>(c)] += outcome.part.node(outcome.part.elem(e, k), c) / 4.0;
        Point3 const direction = MajorDirection(outcome.part, e, element.angle);
        double const hoop = (direction[1] * middle[0] - direction[0] * middle[1]) / std::hypot(middle[0], middle[1]);
        EXPECT_LT(std::min(std::abs(hoop), 1.0 - std::abs(hoop)), 0.02) << e;
    }
    EXPECT_GT(seen, 50);
}

TEST_F(KernelRouteTest, TellsItsStagesAndAProgressThatNeverRunsBackwards)
{
    Listener listener;
    Outcome const outcome = Run(JobOf(), listener);
    EXPECT_EQ(listener.stages, "stamping frame;solver;results;");
    EXPECT_EQ(listener.percent, 100);
    EXPECT_TRUE(listener.isForward);
    EXPECT_FALSE(outcome.log.empty());
    EXPECT_FALSE(Holds(outcome.log, "time:"));
    EXPECT_TRUE(std::filesystem::exists(Folder() + "/solver/sum.txt"));
    EXPECT_TRUE(std::filesystem::exists(Folder() + "/solver/config.cfg"));
    EXPECT_FALSE(std::filesystem::exists(Folder() + "/solver/test.txt")) << "the probe of the folder";
    EXPECT_EQ(outcome.checks.at(0).name, "equilibrium residual");
}

TEST_F(KernelRouteTest, StopsInTheMiddleOfTheSolve)
{
    WriteMesh(voz::examples::cylinder(10.0, 0.6, 24, 10.0, 8, voz::examples::Cells::Quads));
    Listener listener;
    listener.isInterruptible = true;
    EXPECT_THROW(Run(JobOf("[blank_holder]\nlevel = 2\n"), listener), Interrupted);
    EXPECT_LT(listener.percent, 100);
    EXPECT_NO_THROW(Run(JobOf("[blank_holder]\nlevel = 2\n"))) << "and the next run is as good as ever";
}

TEST_F(KernelRouteTest, WhatTheKernelRefusesIsToldInItsWords)
{
    std::string text = Sound();
    text.replace(text.find("r = 1.79"), 8, "r = 1000");
    std::string const failure = FailureOf(ParseJob(text, JobPath()));
    EXPECT_TRUE(Holds(failure, "the kernel could not form the part: the r-value of material 0 is 1000")) << failure;
    EXPECT_TRUE(Holds(failure, "counted from 0")) << failure;
}

TEST_F(KernelRouteTest, FoldersThatTheLibraryCannotHoldAreRefused)
{
    auto const refusal = [](std::string const & i_folder)
    {
        try
        {
            KernelRoute().CheckFolder(i_folder);
        }
        catch (InputError const & error)
        {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_EQ(refusal("/home/u/a.spots \"x\"/solver"), "") << "no command line, no other reader";
    EXPECT_TRUE(Holds(refusal("/home/u/a\nb/solver"), "control character"));
    EXPECT_EQ(refusal("/" + std::string(243, 'a')), "");
    EXPECT_TRUE(Holds(refusal("/" + std::string(244, 'a')), "1 characters too long"));
    if (std::filesystem::path::preferred_separator == '/')
    {
        EXPECT_TRUE(Holds(refusal("/home/u/a\\b/solver"), "backslash"));
    }
}

TEST_F(KernelRouteTest, TheRoutesHaveNamesAndTheDefaultIsFirst)
{
    EXPECT_EQ(RouteNames(), (std::vector<std::string>{"kernel", "file", "incremental"}));
    EXPECT_STREQ(MakeRoute("kernel", "")->Name(), "kernel");
    EXPECT_THROW(MakeRoute("tube", ""), InputError);
    EXPECT_THROW(MakeRoute("file", Folder() + "/none"), InputError);
}

// Two halves, of which one is stronger by half: under one pull the weaker gives more.
TEST_F(KernelRouteTest, SeveralMaterialsAreSolvedAndJudgedEachByItsOwn)
{
    std::string const text =
        "[mesh]\nfile = \"part.bdf\"\n[blank]\nthickness = \"0.78 mm\"\n"
        "[[material]]\nname = \"soft\"\nK_MPa = 500\nn = 0.25\nr = 1.8\nyield_MPa = 150\n"
        "[[material]]\nname = \"hard\"\nK_MPa = 900\nn = 0.15\nr = 1\nyield_MPa = 350\nset = \"2\"\n"
        "[[constraint]]\nx_mm = 0.2\nnodes = [1, 6, 11, 16]\n[[constraint]]\nx_mm = -0.2\nnodes = [5, 10, 15, 20]\n";
    Outcome const outcome = Run(ParseJob(text, JobPath()));
    ASSERT_EQ(outcome.limits.size(), 2U);
    EXPECT_EQ(outcome.materials.at(0), 0);
    EXPECT_EQ(outcome.materials.at(3), 1);
    EXPECT_GT(outcome.LimitOf(0).fldZero(), outcome.LimitOf(3).fldZero());
    EXPECT_EQ(outcome.limit.fldZero(), outcome.LimitOf(3).fldZero()) << "drawn is the lowest";
    EXPECT_TRUE(Holds(outcome.limitSource, "hard"));
    double const strain = 100.0 * (8.0 / (8.0 - 0.4) - 1.0);
    EXPECT_LT(outcome.elements[3].major, strain) << "the part is longer than the blank; the hard column gives less";
    EXPECT_GT(outcome.elements[0].major, strain);
}
