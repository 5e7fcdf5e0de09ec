// ShopCommandTest.cpp. From outside: stamping frames of parts of a part, flat patterns, holes, decks, zones.

#include "CommandFixture.h"

#include "Job.h"
#include "JobModel.h"

#include <nlohmann/json.hpp>

#include <cmath>

using nlohmann::json;

namespace
{
class ShopCommand : public CommandFixture
{
protected:
    void SetUp() override
    {
        if (std::filesystem::path::preferred_separator != '/')
            GTEST_SKIP() << "commands need a shell";
    }
    static std::string Example(std::string const & i_path) { return VOZ_SOURCE_DIR "/examples/" + i_path; }

    json FrameOf(std::string const & i_arguments) const
    {
        Ran const ran = Dravo("inspect " + i_arguments + " --tip --json");
        EXPECT_EQ(ran.err.find("dravo: error"), std::string::npos) << ran.err;
        return json::parse(ran.out)["stamping_frame"];
    }
    // A bow: the second triangle's tip lies below the side of the first.
    std::string Crossed() const
    {
        return Write("crossed.bdf", "GRID,11,,0.,0.,0.\nGRID,12,,10.,0.,0.\nGRID,13,,5.,10.,0.\nGRID,14,,5.,-2.,0.\n"
                                    "CTRIA3,21,1,11,12,13\nCTRIA3,22,1,12,14,13\n");
    }
    // The raised plate without its middle element.
    std::string Holed() const
    {
        std::string text = Bump();
        std::size_t const begin = text.find("CQUAD4,15,");
        text.erase(begin, text.find('\n', begin) + 1 - begin);
        return Write("holed.bdf", text);
    }
};
} // namespace

TEST_F(ShopCommand, AQuarterHasItsFrameOnBothPlanes)
{
    json const frame = FrameOf(Example("square_cup_quarter/square_cup_quarter.bdf") + " --symmetry both");
    EXPECT_EQ(frame["axes"], (json{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}));
    EXPECT_NEAR(frame["origin_mm"][0].get<double>(), 0.0, 1e-9);
    EXPECT_NEAR(frame["origin_mm"][1].get<double>(), 0.0, 1e-9);
    EXPECT_EQ(frame["symmetry"], (json{{"local_x", true}, {"local_y", true}}));
    EXPECT_EQ(frame["undercut_count"], 0);
    EXPECT_EQ(frame["undercut_area_mm2"], 0.0);
    EXPECT_NEAR(frame["draw_depth_mm"].get<double>(), 40.0, 1e-6);
    EXPECT_NEAR(frame["direction_to_z_deg"].get<double>(), 0.0, 1e-9);
}

TEST_F(ShopCommand, AHalfHasItsPlaneAcrossLocalXWhicheverItIs)
{
    std::string const mesh = Example("square_cup_quarter/square_cup_quarter.bdf");
    for (std::string const plane : {"xz", "yz"})
    {
        json const frame = FrameOf(mesh + " --symmetry " + plane + " --die-line 0,0,-1");
        EXPECT_EQ(frame["symmetry"], (json{{"local_x", true}, {"local_y", false}})) << plane;
        EXPECT_NEAR(frame["axes"][0][plane == "xz" ? 1 : 0].get<double>(), 1.0, 1e-12) << plane;
        EXPECT_NEAR(frame["axes"][2][2].get<double>(), 1.0, 1e-12) << "the sense comes from the part";
    }
}

TEST_F(ShopCommand, TheJobsSymmetryGivesTheSameFrameAsTheCommand)
{
    using namespace voz::workbench;
    std::string const mesh = Example("square_cup_quarter/square_cup_quarter.bdf");
    for (std::string const planes : {"none", "xz", "yz", "both"})
    {
        json const shown = FrameOf(mesh + " --symmetry " + planes);
        Job const job = ParseJob("[mesh]\nfile = \"" + mesh +
                                     "\"\n[blank]\nthickness_mm = 0.78\n[material]\nK_MPa = 500\nn = 0.2\nyield_MPa = "
                                     "200\nr = 1\n[symmetry]\nplanes = \"" +
                                     planes + "\"\n",
                                 Path("job.toml"));
        Tipping const tipping = FindTipping(job, ReadModel(job));
        for (int row = 0; row < 3; ++row)
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(shown["axes"][static_cast<std::size_t>(row)][static_cast<std::size_t>(c)].get<double>(),
                          tipping.frame.axis(row, c))
                    << planes;
    }
}

TEST_F(ShopCommand, APlaneThatCutsThePartOrMissesItIsRefused)
{
    Write("bump.bdf", Bump());
    Ran const cut = Dravo("inspect bump.bdf --tip --symmetry yz --plane-x 10");
    EXPECT_EQ(cut.code, 3);
    EXPECT_TRUE(cut.Says("cuts the part")) << cut.err;
    Ran const missed = Dravo("inspect bump.bdf --tip --symmetry xz --plane-y -3");
    EXPECT_EQ(missed.code, 3);
    EXPECT_TRUE(missed.Says("no node lies on the plane of symmetry")) << missed.err;
    EXPECT_TRUE(missed.Says("(the nearest is 3.000 mm away)")) << missed.err;
    EXPECT_EQ(Dravo("inspect bump.bdf --tip --symmetry both --plane-x 24 --plane-y 24").code, 0) << "the far sides";
}

TEST_F(ShopCommand, WhatOnlyTheFrameUsesIsWrongUseWithoutIt)
{
    Write("bump.bdf", Bump());
    for (char const * const option : {"--symmetry yz", "--die-line 0,0,1", "--plane-x 3", "--tip --plane-y 3"})
    {
        Ran const ran = Dravo(std::string("inspect bump.bdf ") + option);
        EXPECT_EQ(ran.code, 2) << option;
        EXPECT_TRUE(ran.Says("requires")) << ran.err;
    }
}

TEST_F(ShopCommand, ADieLineAcrossThePlaneIsWrongUse)
{
    Write("bump.bdf", Bump());
    EXPECT_EQ(Dravo("inspect bump.bdf --tip --symmetry yz --die-line 1,0,1").code, 2);
    EXPECT_EQ(Dravo("inspect bump.bdf --tip --symmetry both --die-line 0,0,1").code, 2);
    EXPECT_EQ(Dravo("inspect bump.bdf --tip --die-line 0,0,0").code, 2);
    EXPECT_EQ(Dravo("inspect bump.bdf --tip --die-line 0,1").code, 2);
    EXPECT_EQ(Dravo("inspect bump.bdf --tip --die-line 0 0 1").code, 0) << "blanks part the numbers as well";
}

TEST_F(ShopCommand, TheUndercutAreaIsThatOfTheElementsThatFaceAway)
{
    // A square that faces up, and half of it that hangs over.
    Write("lip.bdf", "GRID,1,,0.,0.,0.\nGRID,2,,10.,0.,0.\nGRID,3,,10.,10.,0.\nGRID,4,,0.,10.,0.\nGRID,5,,6.,0.,-3.\n"
                     "GRID,6,,6.,10.,-3.\nCQUAD4,1,1,1,2,3,4\nCQUAD4,2,1,2,5,6,3\n");
    json const frame = FrameOf("lip.bdf --die-line 0,0,1");
    EXPECT_EQ(frame["undercut_count"], 1);
    EXPECT_EQ(frame["undercut_elements"], json::array({2}));
    EXPECT_NEAR(frame["undercut_area_mm2"].get<double>(), 50.0, 1e-9);
    EXPECT_NEAR(frame["draw_depth_mm"].get<double>(), 3.0, 1e-12);
}

TEST_F(ShopCommand, AFlatPatternThatCrossesItselfIsAFailedCheck)
{
    Crossed();
    Ran const ran = Dravo("inspect crossed.bdf --flat");
    EXPECT_EQ(ran.code, 1) << ran.err;
    EXPECT_TRUE(ran.Shows("overlap: edge 11-12 crosses 14-13 at 5.000 0.000 mm")) << ran.out;
    json const document = json::parse(Dravo("inspect crossed.bdf --flat --json").out);
    EXPECT_EQ(document["flat"]["crossings"].size(), 2U);
    EXPECT_EQ(document["flat"]["turned_elements"], json::array({22}));
    EXPECT_EQ(Dravo("inspect crossed.bdf").code, 0) << "as a mesh in space there is nothing wrong with it";
    Write("bump.bdf", Bump());
    EXPECT_EQ(Dravo("inspect bump.bdf --flat").code, 0);
}

TEST_F(ShopCommand, AFilledMeshStaysInItsFormat)
{
    Holed();
    Ran const ran = Dravo("convert holed.bdf closed.bdf --fill");
    ASSERT_EQ(ran.code, 0) << ran.err;
    EXPECT_TRUE(ran.Shows("filled: 1 hole with ")) << ran.out;
    json const report = json::parse(Dravo("inspect closed.bdf --json").out);
    EXPECT_EQ(report["loops"].size(), 1U);
    EXPECT_EQ(report["sets"].size(), 2U);
    Ran const other = Dravo("convert holed.bdf closed.k --fill");
    EXPECT_EQ(other.code, 3);
    EXPECT_TRUE(other.Says("a filled mesh stays in the format of its input, which is Nastran bulk data")) << other.err;
    EXPECT_FALSE(std::filesystem::exists(Path("closed.k")));
    EXPECT_EQ(Dravo("convert holed.bdf closed.k").code, 0);
    EXPECT_TRUE(Dravo("convert closed.bdf again.bdf --fill").Shows("no holes to fill"));
    EXPECT_EQ(Dravo("convert holed.bdf closed.bdf --fill").code, 5) << "nothing is replaced";
}

TEST_F(ShopCommand, ADeckBecomesADatabaseThatAJobCanName)
{
    std::string const deck = VOZ_SOURCE_DIR "/tests/golden/materials/library.fpi";
    Ran const ran = Dravo("materials --deck " + deck);
    ASSERT_EQ(ran.code, 0) << ran.err;
    EXPECT_TRUE(ran.Says("no elastic constants and no density"));
    Write("own.xml", ran.out);
    EXPECT_TRUE(Dravo("materials DC04 --database own.xml").Shows("yield    160.500 MPa"));
    json const document = json::parse(Dravo("materials --json --deck " + deck).out);
    EXPECT_EQ(document["materials"][0]["K_MPa"], 520.25);
    EXPECT_EQ(document["remarks"].size(), 2U);
    Write("empty.fpi", "");
    EXPECT_EQ(Dravo("materials --deck empty.fpi").code, 3);
    EXPECT_EQ(Dravo("materials DC04 --deck " + deck).code, 2) << "one or the other";
}

TEST_F(ShopCommand, ARunTellsItsZonesAndThatItsBlankIsClean)
{
    MakeJob("[limits]\nfld0_percent = 0.5\n[output]\nvtu = false\n");
    ASSERT_EQ(Dravo("run bump.toml").code, 0);
    json const summary = json::parse(ReadBack(Path("out/bump-001/summary.json")));
    ASSERT_FALSE(summary["zones"].empty()) << "so low a limit is passed somewhere";
    double area = 1e300;
    int number = 0;
    for (json const & zone : summary["zones"])
    {
        EXPECT_EQ(zone["number"], ++number);
        EXPECT_LE(zone["model_area_mm2"].get<double>(), area) << "largest first";
        area = zone["model_area_mm2"].get<double>();
    }
    EXPECT_TRUE(summary["blank"]["model_crossings"].empty());
    EXPECT_NE(ReadBack(Path("out/bump-001/report.html")).find("<section id=\"zones\">"), std::string::npos);
}

TEST_F(ShopCommand, TheNewOptionsStandInCompletionAndManPage)
{
    for (char const * const shell : {"bash", "zsh", "fish", "man"})
    {
        std::string const text = Dravo(std::string("completion ") + shell).out;
        for (char const * const option : {"flat", "fill", "deck", "plane"})
            EXPECT_NE(text.find(option), std::string::npos) << shell << " " << option;
    }
}
