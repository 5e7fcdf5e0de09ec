// SpringbackTest.cpp. Figures, pictures and files of a springback whose shifts are made up, so that all is known.

#include "Exports.h"
#include "JobFixture.h"
#include "Report.h"
#include "Route.h"
#include "SpringbackModel.h"
#include "SpringbackPictures.h"
#include "SyntheticOutcome.h"

#include <cmath>
#include <fstream>
#include <sstream>

using namespace voz::workbench;

namespace
{
class Springback : public JobFixture
{
protected:
    // The plate of the fixture; every node moves down by a hundredth of its x.
    SpringbackOutcome Bent(std::string const & i_more, double i_slope = 0.01) const
    {
        Job const job = ParseJob(Sound() + "[springback]\n" + i_more, JobPath());
        JobModel const model = ReadModel(job);
        SpringbackOutcome springback;
        springback.part = model.mesh.mesh;
        springback.modelNodes = 20;
        for (int n = 1; n <= 20; ++n)
            springback.before.push_back({0.0, 0.0, -i_slope * model.mesh.mesh.node(n, 0)});
        springback.trimmed.assign(12, 0);
        if (job.springback->trimmed)
            for (int const e : ElementsOf(*job.springback->trimmed, job, model))
                springback.trimmed[static_cast<std::size_t>(e) - 1] = 1;
        if (!job.springback->alignNodes.empty())
            for (int n = 1; n <= 20; ++n)
                springback.after.push_back({0.0, 0.0, 0.5 * i_slope * (model.mesh.mesh.node(n, 0) - 8.0)});
        FinishSpringback(job, model, VOZCatAxis(), springback);
        return springback;
    }
    Outcome WithSpringback(SpringbackOutcome i_springback) const
    {
        Outcome outcome = test::plateWithHole(100.0, 60.0, 10.0, 16, 2);
        Summarise(outcome);
        outcome.part = i_springback.part; // the pictures of springback take its own mesh
        outcome.springback = std::move(i_springback);
        return outcome;
    }
};

bool Holds(std::string const & i_text, std::string const & i_part)
{
    return i_text.find(i_part) != std::string::npos;
}
} // namespace

TEST_F(Springback, FiguresAreLargestWithItsNodeAndTheMeanOverTheSurface)
{
    SpringbackOutcome const springback = Bent("");
    EXPECT_NEAR(springback.figuresBefore.largest, 0.08, 1e-12);
    EXPECT_EQ(springback.figuresBefore.largestNode, 4) << "the first at a tie";
    EXPECT_NEAR(springback.figuresBefore.mean, 0.04, 1e-12);
    EXPECT_EQ(&springback.Shown(), &springback.before);
}

TEST_F(Springback, WhatIsCutOffCountsForNothing)
{
    SpringbackOutcome const springback = Bent("[springback.trim]\nset = \"2\"\n");
    EXPECT_NEAR(springback.figuresBefore.largest, 0.06, 1e-12);
    EXPECT_NEAR(springback.figuresBefore.mean, 0.03, 1e-12);
}

TEST_F(Springback, ChosenPointsTellBeforeAndAligned)
{
    SpringbackOutcome const springback =
        Bent("align_nodes = [5]\nwatch_nodes = [20]\nwatch_points_mm = [[0.3, 0.1, 4]]\n");
    ASSERT_EQ(springback.points.size(), 2U);
    EXPECT_EQ(springback.points[0].node, 19);
    EXPECT_NEAR(springback.points[0].before, 0.08, 1e-12);
    EXPECT_NEAR(springback.points[0].after.value(), 0.0, 1e-12);
    EXPECT_EQ(springback.points[1].node, 0);
    EXPECT_NEAR(springback.points[1].after.value(), 0.04, 1e-12);
    EXPECT_NEAR(springback.figuresAfter.largest, 0.04, 1e-12);
    EXPECT_EQ(&springback.Shown(), &springback.after);
}

TEST_F(Springback, NothingThatSprangIsAFailure)
{
    EXPECT_THROW(Bent("", 0.0), SolverError);
    EXPECT_THROW(Bent("", 1e-12), SolverError) << "what is left of rounding";
    EXPECT_NO_THROW(Bent("", 1e-7));
}

TEST_F(Springback, TheSectionIsDrawnAsLargeAsItSays)
{
    SpringbackOutcome const chosen = Bent("");
    EXPECT_NEAR(chosen.exaggeration, 10.0, 1e-12) << "0.08 mm on a plate of 10 mm: 8 % of it";
    SpringbackOutcome const given =
        Bent("exaggeration = 3.5\nsection_normal = [0, 1, 0]\nsection_point_mm = [0, 3, 0]\n");
    EXPECT_EQ(given.exaggeration, 3.5);
    std::string const svg = DrawSection(WithSpringback(given));
    EXPECT_TRUE(Holds(svg, "drawn 3.5 times as large")) << svg;
    EXPECT_EQ(std::count(svg.begin(), svg.end(), 'L') >= 16, true) << "four elements in two triangles, twice";
    EXPECT_FALSE(Holds(svg, "nan"));
    SpringbackOutcome beside = given;
    beside.section.point = {0, 50, 0};
    EXPECT_EQ(DrawSection(WithSpringback(beside)), "") << "a plane beside the part";
}

// The chosen plane goes through the largest deviation, which lies on the rim: the section must not be empty for that.
TEST_F(Springback, TheChosenSectionCutsThePart)
{
    SpringbackOutcome const springback = Bent("");
    EXPECT_NEAR(std::abs(springback.section.normal[0]) + std::abs(springback.section.normal[1]), 1.0, 1e-12);
    EXPECT_FALSE(DrawSection(WithSpringback(springback)).empty());
}

TEST_F(Springback, PagesAndFilesHoldIt)
{
    Outcome const outcome = WithSpringback(Bent("align_nodes = [5]\nwatch_nodes = [20]\n"));
    Outcome page = test::plateWithHole(100.0, 60.0, 10.0, 16, 2);
    Summarise(page);
    WriteReport(page, Folder() + "/plain.html");
    page.springback = outcome.springback;
    for (Point3 const & shift : std::vector<Point3>(page.nodes.size(), Point3{}))
        page.springback->after.push_back(shift); // the view takes a shift per node of the model
    auto const text = [&](char const * i_name)
    {
        std::ifstream file(Folder() + i_name, std::ios::binary);
        std::ostringstream all;
        all << file.rdbuf();
        return all.str();
    };
    WriteReport(page, Folder() + "/sprung.html");
    EXPECT_FALSE(Holds(text("/plain.html"), "Springback"));
    std::string const html = text("/sprung.html");
    for (char const * const part : {"<section id=\"springback\">", "Deviation of the sprung shape from the part",
                                    "laid on the part at the chosen points", "Deviation at chosen points",
                                    "id=\"view-sprung\"", "times as large"})
        EXPECT_TRUE(Holds(html, part)) << part;
    WriteTables(page, Folder());
    std::string const table = text("/springback.csv");
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 21);
    EXPECT_TRUE(Holds(table, "\n5,8,0,0,0,0,-0.08,0.08,0,0,0,0\n")) << table;
    WriteVtu(page, Folder());
    EXPECT_TRUE(Holds(text("/springback.vtu"), "Name=\"deviation (mm)\""));
    EXPECT_TRUE(Holds(text("/springback.vtu"), "NumberOfPoints=\"20\""));
    EXPECT_TRUE(Holds(text("/results.pvd"), "timestep=\"2\" part=\"0\" name=\"springback\" file=\"springback.vtu\""));
}
