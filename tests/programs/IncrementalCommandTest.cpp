// IncrementalCommandTest.cpp. The incremental route as a user meets it: deck, codes, messages, import. Results are made
// by hand here; LaunchTest drives the launcher.

#include "CommandFixture.h"
#include "KeywordDeck.h"
#include "RecordFile.h"

#include <nlohmann/json.hpp>

namespace
{
using nlohmann::json;

class IncrementalCommand : public CommandFixture
{
protected:
    // Plates 20 mm above and below the part, which is 24 x 24 mm.
    std::string MakeToolJob(std::string const & i_more = "") const
    {
        for (auto const & [name, z] : {std::pair{"die.bdf", "20."}, {"punch.bdf", "-20."}, {"binder.bdf", "-8."}})
            WritePlate(name, z);
        Write("bump.bdf", Bump());
        return Write("bump.toml", JobText() +
                                      "[incremental]\ndie = \"die.bdf\"\npunch = \"punch.bdf\"\n"
                                      "binder = \"binder.bdf\"\n" +
                                      i_more);
    }
    void WritePlate(std::string const & i_name, std::string const & i_z) const
    {
        constexpr int kCells = 8;
        std::string text = "BEGIN BULK\n";
        for (int r = 0; r <= kCells; ++r)
            for (int c = 0; c <= kCells; ++c)
                text += "GRID," + std::to_string(1 + c + (kCells + 1) * r) + ",," + std::to_string(4 * c - 4) + ".," +
                        std::to_string(4 * r - 4) + ".," + (r == 0 && c == 0 && i_name == "punch.bdf" ? "-21." : i_z) +
                        "\n";
        for (int r = 0; r < kCells; ++r)
            for (int c = 0; c < kCells; ++c)
            {
                int const n = 1 + c + (kCells + 1) * r;
                text += "CQUAD4," + std::to_string(1 + c + kCells * r) + ",1," + std::to_string(n) + "," +
                        std::to_string(n + 1) + "," + std::to_string(n + kCells + 2) + "," +
                        std::to_string(n + kCells + 1) + "\n";
            }
        Write(i_name, text + "ENDDATA\n");
    }
    void WriteResults() const
    {
        WriteRecords({Record::Plate(0, 6, 6, 0.004F, 0.0F, {0.0F, 0.0F}, 0.0F, 0.0F),
                      Record::Plate(1, 6, 6, 0.004F, 0.01F, {0.05F, 0.02F}, 0.01F, 2e8F)},
                     Path("out/bump-001/solver/output.voz"));
    }
};
} // namespace

TEST_F(IncrementalCommand, RunWritesADeckThatReadsCardByCard)
{
    MakeToolJob("template = \"mild-steel\"\n");
    Ran const ran = Dravo("run bump.toml --route incremental");
    ASSERT_EQ(ran.code, 0) << ran.err << ran.out;
    EXPECT_TRUE(ran.Shows("Deck                  for an LS-DYNA solver, settings: mild-steel")) << ran.out;
    EXPECT_TRUE(ran.Shows("Mesh of the blank     the flat mesh of a kernel run: 49 nodes, 36 elements")) << ran.out;
    EXPECT_TRUE(ran.Shows("Blank size")) << "the kernel's run is told, too";
    keyworddeck::Deck const deck(Path("out/bump-001/solver/inputls.dyn"));
    EXPECT_EQ(deck.all("INCLUDE").size(), 4U);
    EXPECT_TRUE(std::filesystem::exists(Path("out/bump-001/solver/kernel/sum.log")));
    std::string const report = ReadBack(Path("out/bump-001/report.html"));
    EXPECT_NE(report.find("Deck for an explicit solver"), std::string::npos);
    EXPECT_NE(report.find("id=\"blank\""), std::string::npos);
}

TEST_F(IncrementalCommand, TheJsonHoldsTheProcessNumbers)
{
    MakeToolJob();
    json const document = json::parse(Dravo("run bump.toml --route incremental --json --quiet").out);
    EXPECT_EQ(document["route"], "incremental");
    json const & incremental = document["incremental"];
    EXPECT_GT(incremental["stroke_mm"].get<double>(), 30.0);
    EXPECT_GT(incremental["binder_force_N"].get<double>(), 0.0);
    EXPECT_GE(incremental["outputs"].size(), 3U);
    EXPECT_EQ(incremental["files"].size(), 5U);
}

TEST_F(IncrementalCommand, TheLockedJobNamesTheToolsAndRunsAgain)
{
    MakeToolJob("process_flag = true\n");
    ASSERT_EQ(Dravo("run bump.toml --route incremental").code, 0);
    std::string const lock = ReadBack(Path("out/bump-001/job.lock.toml"));
    EXPECT_NE(lock.find("[incremental]\nprocess_flag = true\n"), std::string::npos) << lock;
    EXPECT_NE(lock.find("die.bdf"), std::string::npos);
    Ran const again = Dravo("run out/bump-001/job.lock.toml --route incremental --out b");
    EXPECT_EQ(again.code, 0) << again.err;
    EXPECT_EQ(ReadBack(Path("out/bump-001/solver/VOZBlank.mod")), ReadBack(Path("b/bump-001-001/solver/VOZBlank.mod")));
}

TEST_F(IncrementalCommand, ExplainTellsWhatTheModesDo)
{
    MakeToolJob();
    Ran const ran = Dravo("explain bump.toml");
    EXPECT_TRUE(ran.Shows("# the stroke ends one thickness before punch and die would touch")) << ran.out;
    EXPECT_TRUE(ran.Shows("# contact takes the tools where their meshes are"));
}

TEST_F(IncrementalCommand, CheckRefusesSettingsThatAreNotThere)
{
    MakeToolJob("template = \"mild-stel\"\n");
    Ran const ran = Dravo("check bump.toml --route incremental");
    EXPECT_EQ(ran.code, 3);
    EXPECT_TRUE(ran.Says("there are no settings \"mild-stel\"")) << ran.err;
    EXPECT_TRUE(ran.Says("\"mild-steel\"")) << ran.err;
    EXPECT_EQ(Dravo("check bump.toml").code, 0) << "the other routes need none";
}

TEST_F(IncrementalCommand, OnlyTheIncrementalRouteLaunches)
{
    MakeToolJob();
    Ran const ran = Dravo("run bump.toml --launch");
    EXPECT_EQ(ran.code, 2);
    EXPECT_TRUE(ran.Says("--route incremental does")) << ran.err;
}

TEST_F(IncrementalCommand, ImportReadsTheLastStepOrTheOneAskedFor)
{
    MakeToolJob();
    ASSERT_EQ(Dravo("run bump.toml --route incremental").code, 0);
    WriteResults();
    Ran const last = Dravo("import bump.toml");
    EXPECT_EQ(last.code, 0) << last.err;
    EXPECT_TRUE(last.Shows("Step                  1 of 0 to 1")) << last.out;
    EXPECT_FALSE(last.Shows("Blank size"));
    EXPECT_FALSE(last.Shows("Punch force"));
    json const first = json::parse(Dravo("import bump.toml --step 0 --json").out);
    EXPECT_EQ(first["imported"]["step"], 0);
    EXPECT_EQ(first["imported"]["time_s"], 0.0);
    EXPECT_EQ(first["folder"], Path("out/bump-001/step-0"));
    EXPECT_EQ(Dravo("import bump.toml --step 0").code, 5) << "not replaced";
    EXPECT_EQ(Dravo("import bump.toml --step 0 --force").code, 0);
    EXPECT_EQ(Dravo("import bump.toml --all --run out/bump-001").code, 0);
    EXPECT_TRUE(std::filesystem::exists(Path("out/bump-001/steps/report.html")));
}

TEST_F(IncrementalCommand, ImportSaysWhatIsMissing)
{
    MakeToolJob();
    Ran const none = Dravo("import bump.toml");
    EXPECT_EQ(none.code, 3);
    EXPECT_TRUE(none.Says("there is no run of this job with a deck")) << none.err;
    ASSERT_EQ(Dravo("run bump.toml --route incremental").code, 0);
    EXPECT_TRUE(Dravo("import bump.toml").Says("the deck was not solved yet"));
    Write("out/bump-001/solver/launch.status", "state=failed\nmessage=error termination\n");
    Ran const failed = Dravo("import bump.toml");
    EXPECT_EQ(failed.code, 4);
    EXPECT_TRUE(failed.Says("error termination"));
    WriteResults();
    EXPECT_TRUE(Dravo("import bump.toml --step 9").Says("it holds the steps 0, 1"));
    EXPECT_EQ(Dravo("import bump.toml --step 1 --all").code, 2);
    EXPECT_EQ(Dravo("import bump.toml --step -1").code, 2);
}

TEST_F(IncrementalCommand, AChangedJobIsToldAtTheImport)
{
    MakeToolJob();
    ASSERT_EQ(Dravo("run bump.toml --route incremental").code, 0);
    WriteResults();
    MakeToolJob("process_mode = 0\n");
    EXPECT_TRUE(Dravo("import bump.toml").Says("is not what it was when the run was made"));
}
