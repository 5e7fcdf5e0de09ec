// IncrementalImportTest.cpp. Records made by hand into outcomes: units, layers, places, and what is said where there is
// nothing to import. The part stands on end, so that the stamping frame is not the part's own.

#include "IncrementalImport.h"
#include "DeckFixture.h"
#include "IncrementalReport.h"
#include "OutputFile.h"
#include "RecordFile.h"
#include "Run.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cmath>

using namespace voz::workbench;

namespace
{
namespace fs = std::filesystem;

class IncrementalImportTest : public DeckFixture
{
protected:
    // A run's folder with a deck, and results of three steps: flat, half formed, formed.
    IncrementalImportTest()
    {
        WriteTools(true);
        fs::create_directories(Folder() + "/out/job-004/solver");
        Run(Tools(false));
        fs::remove_all(Folder() + "/out/job-004/solver");
        fs::rename(Folder() + "/solver", Folder() + "/out/job-004/solver");
        WriteRecords(Steps(), Records());
    }
    static std::vector<Record> Steps()
    {
        return {Record::Plate(0, 4, 3, 0.002F, 0.0F, {0.0F, 0.0F}, 0.0F, 0.0F),
                Record::Plate(1, 4, 3, 0.002F, 0.010F, {0.05F, 0.01F}, 0.01F, 2.0e8F),
                Record::Plate(2, 8, 6, 0.001F, 0.020F, {0.10F, 0.02F}, 0.01F, 3.0e8F)};
    }
    std::string Records() const { return Folder() + "/out/job-004/solver/output.voz"; }
    void Status(std::string const & i_text) const { Write("out/job-004/solver/launch.status", i_text); }

    Job Parsed() const
    {
        Job job = ParseJob(Sound() + Tools(false), Folder() + "/job.toml");
        job.name = "job";
        job.outputs.tables = true;
        return job;
    }
    ImportOptions In(int i_step = -1) const
    {
        ImportOptions options;
        options.out = Folder() + "/out";
        options.step = i_step;
        return options;
    }
    RunRecord Import(ImportOptions const & i_options) const
    {
        RunObserver nobody;
        return ImportSteps(Parsed(), i_options, nobody);
    }
    std::string RefusalOf(ImportOptions const & i_options) const
    {
        try
        {
            Import(i_options);
        }
        catch (std::runtime_error const & error)
        {
            return error.what();
        }
        return "not refused";
    }
    static bool Holds(std::string const & i_text, std::string const & i_part)
    {
        return i_text.find(i_part) != std::string::npos;
    }
    static bool Warns(RunRecord const & i_record, std::string const & i_part)
    {
        for (std::string const & warning : i_record.outcome.warnings)
            if (Holds(warning, i_part))
                return true;
        return false;
    }
};
} // namespace

TEST_F(IncrementalImportTest, ARecordBecomesMillimetresPercentAndMegapascals)
{
    Outcome const outcome = Import(In(2)).outcome;
    EXPECT_EQ(outcome.route, "incremental");
    ASSERT_EQ(outcome.elements.size(), 48U) << "a mesh of its own";
    ASSERT_EQ(outcome.nodes.size(), 63U);
    for (ElementOutcome const & element : outcome.elements)
    {
        EXPECT_NEAR(element.major, 100.0 * std::expm1(0.10), 1e-4);
        EXPECT_NEAR(element.minor, 100.0 * std::expm1(0.02), 1e-4);
        EXPECT_NEAR(element.thickness, 0.78 * std::exp(-0.12), 1e-6);
        EXPECT_NEAR(element.thinning, 100.0 * (1.0 - std::exp(-0.12)), 1e-4);
        EXPECT_NEAR(element.stress, 300.0, 1e-3);
        EXPECT_EQ(element.safety, 2);
        EXPECT_NEAR(element.area, 1.0, 1e-5);
    }
    EXPECT_NEAR(outcome.top.front().major, 100.0 * std::expm1(0.11), 1e-4);
    EXPECT_NEAR(outcome.bottom.front().major, 100.0 * std::expm1(0.09), 1e-4);
    for (NodeOutcome const & node : outcome.nodes)
    {
        EXPECT_NEAR(node.thickness, 0.78 * std::exp(-0.12), 1e-6);
        EXPECT_EQ(node.displacement, (Point3{}));
    }
    EXPECT_FALSE(outcome.hasBlank);
    EXPECT_EQ(outcome.summary.blankArea, 0.0);
}

TEST_F(IncrementalImportTest, AStepStandsWhereThePartDoes)
{
    Outcome const outcome = Import(In(2)).outcome;
    VOZCatAxis frame = outcome.frame;
    std::vector<Record> const steps = Steps();
    for (std::size_t n = 0; n < outcome.nodes.size(); ++n)
        for (int i = 0; i < 3; ++i)
        {
            double local = 0.0;
            for (int c = 0; c < 3; ++c)
                local += frame.axis(i, c) * (outcome.part.GetNodeData()[n + 1][c] - frame.origin(c));
            EXPECT_NEAR(local, 1000.0 * static_cast<double>(steps[2].nodes[n][static_cast<std::size_t>(i)]), 1e-4);
        }
}

TEST_F(IncrementalImportTest, TheLastStepIsTheDefaultAndEachHasItsFolder)
{
    RunRecord const last = Import(In());
    EXPECT_EQ(last.outcome.imported->step, 2);
    EXPECT_EQ(last.outcome.imported->steps, 3);
    EXPECT_EQ(last.folder, Folder() + "/out/job-004/step-2");
    EXPECT_EQ(Import(In(1)).outcome.elements.size(), 12U);
    EXPECT_TRUE(Holds(RefusalOf(In(1)), "it is there already; --force replaces it"));
    ImportOptions forced = In(1);
    forced.isForced = true;
    EXPECT_EQ(Import(forced).outcome.imported->step, 1);
}

TEST_F(IncrementalImportTest, FilesAreThoseOfARunWithoutABlank)
{
    fs::path const folder = Import(In(2)).folder;
    for (char const * const name :
         {"report.html", "summary.json", "part.vtu", "results.pvd", "elements.csv", "nodes.csv"})
        EXPECT_TRUE(fs::exists(folder / name)) << name;
    for (char const * const name : {"blank.dxf", "blank.svg", "blank.vtu"})
        EXPECT_FALSE(fs::exists(folder / name)) << name;
    std::ifstream nodes(folder / "nodes.csv");
    std::string header;
    std::getline(nodes, header);
    EXPECT_EQ(header, "node,x (mm),y (mm),z (mm),thickness (mm),major strain (%),minor strain (%),safety zone,forming "
                      "zone");
    std::ifstream report(folder / "report.html");
    std::string const html(std::istreambuf_iterator<char>(report), {});
    EXPECT_TRUE(Holds(html, "Steps of the explicit solver"));
    EXPECT_FALSE(Holds(html, "id=\"blank\""));
    EXPECT_FALSE(Holds(html, "id=\"forces\"")) << "records hold no forces";
    std::ifstream file(folder / "summary.json");
    nlohmann::json const json = nlohmann::json::parse(file);
    EXPECT_EQ(json["imported"]["step"], 2);
    EXPECT_FALSE(json.contains("blank"));
    EXPECT_FALSE(json.contains("punch_force_N"));
}

TEST_F(IncrementalImportTest, AllStepsStandInOneReport)
{
    ImportOptions all = In();
    all.areAllSteps = true;
    RunRecord const record = Import(all);
    ASSERT_EQ(record.outcome.steps.size(), 3U);
    EXPECT_EQ(record.outcome.steps[1].elements.size(), 12U);
    EXPECT_EQ(record.outcome.elements.size(), 48U) << "the last";
    std::string const html = StepsSection(record.outcome);
    for (int step = 0; step < 3; ++step)
        EXPECT_TRUE(Holds(html, "Thinning of the sheet in step " + std::to_string(step)));
    for (char const * const name : {"step-0.vtu", "step-1.vtu", "step-2.vtu", "results.pvd"})
        EXPECT_TRUE(fs::exists(fs::path(record.folder) / name)) << name;
}

// --- Which run -------------------------------------------------------------------------------------------------------

TEST_F(IncrementalImportTest, TheNewestRunWithADeckIsTaken)
{
    fs::create_directories(Folder() + "/out/job-009");
    fs::create_directories(Folder() + "/out/job-2-011/solver");
    EXPECT_EQ(Import(In(0)).folder, Folder() + "/out/job-004/step-0");
    ImportOptions named;
    named.run = Folder() + "/out/job-004/solver";
    EXPECT_EQ(Import(named).folder, Folder() + "/out/job-004/step-2") << "the deck's own folder names the run, too";
    named.run = Folder() + "/out/job-009";
    EXPECT_TRUE(Holds(RefusalOf(named), "there is no deck"));
    named.run = Folder() + "/none";
    EXPECT_TRUE(Holds(RefusalOf(named), "there is no such folder"));
    ImportOptions elsewhere;
    elsewhere.out = Folder() + "/elsewhere";
    EXPECT_TRUE(Holds(RefusalOf(elsewhere), "there is no run of this job with a deck"));
}

// --- What is not there, cut, old -------------------------------------------------------------------------------------

TEST_F(IncrementalImportTest, WithoutResultsTheStatusTellsWhatToDo)
{
    fs::remove(Records());
    EXPECT_TRUE(Holds(RefusalOf(In()), "the deck was not solved yet"));
    Status("state=running\ntime=0.002\nend=0.008\nrecords=3\n");
    EXPECT_TRUE(Holds(RefusalOf(In()), "is not there yet: the run is running (0.002 of 0.008 s, 3 states written)"));
    Status("state=failed\nmessage=negative volume\n");
    EXPECT_TRUE(Holds(RefusalOf(In()), "the explicit solver failed: negative volume"));
}

TEST_F(IncrementalImportTest, AStepThatIsNotThereIsRefusedWithThoseThatAre)
{
    EXPECT_TRUE(Holds(RefusalOf(In(7)), "holds no step 7; it holds the steps 0, 1, 2"));
}

TEST_F(IncrementalImportTest, ACutFileGivesItsWholeStepsAndSaysSo)
{
    std::string bytes;
    for (Record const & step : Steps())
        bytes += step.Bytes();
    Write("out/job-004/solver/output.voz", bytes.substr(0, bytes.size() - 3));
    RunRecord const record = Import(In());
    EXPECT_EQ(record.outcome.imported->step, 1);
    EXPECT_TRUE(Warns(record, "is damaged behind step 1: cut off"));
    EXPECT_TRUE(Holds(RefusalOf(In(2)), "holds no step 2; it holds the steps 0, 1; cut off"));
    Write("out/job-004/solver/output.voz", bytes.substr(0, 40));
    EXPECT_TRUE(Holds(RefusalOf(In()), "holds no whole step; cut off"));
    Write("out/job-004/solver/output.voz", "");
    EXPECT_TRUE(Holds(RefusalOf(In()), "it is empty"));
}

TEST_F(IncrementalImportTest, ResultsOlderThanTheDeckAreTold)
{
    fs::last_write_time(Records(),
                        fs::last_write_time(Folder() + "/out/job-004/solver/inputls.dyn") - std::chrono::hours(1));
    EXPECT_TRUE(Warns(Import(In()), "is older than the deck"));
}

TEST_F(IncrementalImportTest, ARecordThatContradictsItselfIsRefused)
{
    std::vector<Record> steps = Steps();
    steps[2].elements[0][1] = 64;
    WriteRecords(steps, Records());
    EXPECT_TRUE(Holds(RefusalOf(In(2)), "step 2: element 1 names node 64; there are 63"));
    steps = Steps();
    steps[2].nodes.push_back({0.0F, 0.0F, 0.0F});
    WriteRecords(steps, Records());
    EXPECT_TRUE(Holds(RefusalOf(In(2)), "node 64 belongs to no element"));
}

TEST_F(IncrementalImportTest, MissingComponentsCountAsNothingAndAreTold)
{
    std::vector<Record> steps = Steps();
    for (std::vector<float> Record::*values : {&Record::stress, &Record::top, &Record::bottom, &Record::middle})
        (steps[2].*values).resize(12);
    WriteRecords(steps, Records());
    RunRecord const record = Import(In(2));
    EXPECT_TRUE(Warns(record, "holds 12 components of strain, expected 12 for each element, 576"));
    EXPECT_GT(record.outcome.elements.front().major, 10.0);
    EXPECT_EQ(record.outcome.elements.back().major, 0.0);
}

TEST_F(IncrementalImportTest, AFileThatEndsBeforeTheRunDoesIsTold)
{
    Write("out/job-004/summary.json",
          R"({"incremental": {"outputs": [{"position_percent": 0, "time_s": 0}, {"position_percent": 40, "time_s": 0.1},
              {"position_percent": 80, "time_s": 0.2}, {"position_percent": 100, "time_s": 0.3}]}})");
    RunRecord const record = Import(In());
    EXPECT_TRUE(Warns(record, "hold the steps 0, 1, 2; the deck asks for 4 states"));
    EXPECT_NEAR(record.outcome.imported->output.time, 0.2, 1e-12);
    EXPECT_NEAR(record.outcome.imported->output.position, 80.0, 1e-12);
}

TEST_F(IncrementalImportTest, ResultsOfASolverThatFailedAreTakenAndItIsTold)
{
    Status("state=failed\nmessage=shells with a negative area\n");
    EXPECT_TRUE(Warns(Import(In()), "the explicit solver failed: shells with a negative area"));
}

TEST_F(IncrementalImportTest, ASummaryOfOtherContentIsNoFault)
{
    ImportOptions forced = In();
    forced.isForced = true;
    for (char const * const text : {"", "{", "[]", "{\"incremental\": 1}", "{\"incremental\": {\"outputs\": 7}}",
                                    "{\"incremental\": {\"outputs\": [1, \"x\", {\"time_s\": \"late\"}]}}"})
    {
        Write("out/job-004/summary.json", text);
        EXPECT_EQ(Import(forced).outcome.imported->output.time, 0.0) << text;
    }
}

TEST_F(IncrementalImportTest, ARunOfAnotherJobIsTold)
{
    ImportOptions forced = In();
    forced.isForced = true;
    std::string const lock = Sound() + "[lock]\nversion = \"1\"\n[[lock.input]]\npath = \"../../part.bdf\"\n";
    Write("out/job-004/job.lock.toml", lock + "sha256 = \"0\"\n");
    EXPECT_TRUE(Warns(Import(forced), "part.bdf")) << "a lock that cannot be read is no reason to lose the results";
    fs::copy_file(Folder() + "/part.bdf", Folder() + "/out/job-004/part.bdf");
    EXPECT_TRUE(Warns(Import(forced), "was made with another job than"));
    Write("out/job-004/job.lock.toml", lock + "sha256 = \"" + Parsed().sha256 + "\"\n");
    EXPECT_FALSE(Warns(Import(forced), "was made with another job than"));
}
