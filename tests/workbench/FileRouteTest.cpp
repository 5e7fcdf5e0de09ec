// FileRouteTest.cpp. The route runs with small scripts in place of the solver program: they leave what the test wants
// to see read, or nothing.

#include "FileRoute.h"
#include "FileRouteParts.h"
#include "JobFixture.h"
#include "OutputFile.h"

#include "Result.h"
#include "VOZHost.h"
#include "Vec.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

using namespace voz::workbench;

namespace
{
class Listener : public RunObserver
{
public:
    void Stage(std::string const & i_name) override { stages += i_name + ";"; }
    bool IsInterrupted() override { return isInterrupted; }

    std::string stages;
    bool isInterrupted = false;
};

class FileRouteTest : public JobFixture
{
protected:
    // The plate of the fixture, 20 nodes and 12 quadrilaterals, with the first cut into two triangles.
    FileRouteTest()
    {
        std::string text = PlateText();
        std::string const first = "CQUAD4,1,1,1,2,7,6\n";
        text.replace(text.find(first), first.size(), "CTRIA3,1,1,1,2,7\nCTRIA3,101,1,1,7,6\n");
        Write("part.bdf", text);
        std::filesystem::create_directories(Folder() + "/solver");
    }

    void SetUp() override
    {
        if (std::filesystem::path::preferred_separator != '/')
            GTEST_SKIP() << "the scripts need a shell";
    }

    // A program that does what the shell lines say; $2 is the deck.
    std::string Script(std::string const & i_lines) const
    {
        std::string const path = Write("fake solver.sh", "#!/bin/sh\n" + i_lines + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    std::string Leaving(std::string const & i_output) const
    {
        std::string const path = Write("prepared.fpo", i_output);
        return Script("cp '" + path + "' \"${2%.fpi}.fpo\"");
    }

    // In inches; every node moves by 1 inch along x. Rows: thickness, minor %, major %, stress, equivalent %, radians.
    std::string Output(int i_nodes = 20, int i_rows = 46) const
    {
        std::string text = "* one\n* two\n* three\n";
        JobModel const model = ReadModel(mJob);
        for (int n = 1; n <= i_nodes; ++n)
        {
            double const * const p = model.mesh.mesh.GetNodeData()[n];
            std::string const place =
                " " + Shortest(p[0] / 25.4 + 1.0) + " " + Shortest(p[1] / 25.4) + " " + Shortest(p[2] / 25.4);
            text += std::to_string(n) + place + place + "\n";
        }
        text += "* elements\n";
        for (int row = 0; row < i_rows; ++row) // the triangles' stress is in psi of 6895 Pa, the quadrilaterals' in Pa
            text += "1 0.03 -4 10 " + std::string(row < 2 ? "43509.064539521394" : "3e8") + " 9.5 0.5\n";
        return text + "* end\n* force\npunch force 1000\n";
    }

    Outcome Run(std::string const & i_solver, Listener & io_listener) const
    {
        FileRouteOptions options;
        options.folder = Folder() + "/solver";
        options.solver = i_solver;
        return RunFileRoute(mJob, ReadModel(mJob), options, io_listener);
    }
    Outcome Run(std::string const & i_solver) const
    {
        Listener listener;
        return Run(i_solver, listener);
    }
    std::string FailureOf(std::string const & i_solver) const
    {
        try
        {
            Run(i_solver);
        }
        catch (SolverError const & error)
        {
            return error.what();
        }
        return "no failure";
    }
    std::string ReadBack(std::string const & i_name) const
    {
        std::ifstream file(Folder() + "/solver/" + i_name, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    Job mJob = (Write("part.bdf", PlateText()), ParseJob(Sound(), JobPath()));
};

bool Holds(std::string const & i_text, std::string const & i_part)
{
    return i_text.find(i_part) != std::string::npos;
}
} // namespace

TEST_F(FileRouteTest, ConvertsTheResultOnceIntoTheWorkbenchsUnits)
{
    Outcome const outcome = Run(Leaving(Output()));
    ASSERT_EQ(outcome.elements.size(), 13U);
    ASSERT_EQ(outcome.nodes.size(), 20U);
    for (std::size_t e = 0; e < outcome.elements.size(); ++e)
    {
        ElementOutcome const & element = outcome.elements[e];
        EXPECT_NEAR(element.thickness, 0.762, 1e-6) << "inches become mm";
        EXPECT_NEAR(element.thinning, 100.0 * (1.0 - 0.762 / 0.78), 1e-4);
        EXPECT_NEAR(element.major, 10.0, 1e-6);
        EXPECT_NEAR(element.minor, -4.0, 1e-6);
        EXPECT_NEAR(element.thicknessStrain, 100.0 * (1.0 / (1.1 * 0.96) - 1.0), 1e-4);
        EXPECT_NEAR(element.angle, 0.5, 1e-6) << "degrees, and four times for quadrilaterals, become radians";
        EXPECT_NEAR(element.stress, e < 2 ? 299.995 : 300.0, 1e-3) << "Pa become MPa for both kinds";
        EXPECT_NEAR(element.equivalentStrain, e < 2 ? 9.5 : EquivalentStrainPercent(10.0, -4.0, 1.79), 1e-5);
        EXPECT_EQ(element.safety, 2);
    }
    EXPECT_NEAR(outcome.nodes[7].displacement[0], 25.4, 1e-5);
    EXPECT_NEAR(outcome.nodes[7].displacement[1], 0.0, 1e-5);
    EXPECT_NEAR(outcome.nodes[7].onBinder[0], 25.4, 1e-5);
    EXPECT_NEAR(outcome.nodes[7].thickness, 0.762, 1e-6);
    EXPECT_NEAR(outcome.nodes[7].major, 10.0, 1e-6);
    EXPECT_NEAR(outcome.summary.punchForce, 4448.222, 0.01) << "pounds-force become N";
}

TEST_F(FileRouteTest, EquivalentStrainIsTheLibrarysNormalisation)
{
    // Uniaxial tension of an isotropic sheet: the strain itself.
    double const h = std::log(1.1);
    EXPECT_NEAR(EquivalentStrainPercent(10.0, 100.0 * std::expm1(-0.5 * h), 1.0), 10.0, 1e-9);
    // With r, uniaxial tension at minor strain -r/(1+r) is larger by sqrt(2 (2 + r) / (3 (1 + r))).
    double const r = 1.8;
    double const factor = std::sqrt(2.0 * (2.0 + r) / (3.0 * (1.0 + r)));
    EXPECT_NEAR(EquivalentStrainPercent(10.0, 100.0 * std::expm1(-r / (1.0 + r) * h), r),
                100.0 * std::expm1(factor * h), 1e-9);
}

TEST_F(FileRouteTest, LeavesTheFilesOfTheRunAndNoAddressInTheLog)
{
    Run(Leaving(Output()));
    EXPECT_TRUE(Holds(ReadBack("deck.fpi"), "block XXXIII"));
    EXPECT_TRUE(Holds(ReadBack("config.cfg"), "ThinningLimit=-0.28768207245178"));
    EXPECT_EQ(ReadBack("solver.cfg"), "YoungsModulus=2.1e+11\nPoissonsRatio=0.3\nToolFriction=0\nSteps=1\n");
    EXPECT_EQ(ReadBack("solver.log"), "");
    EXPECT_FALSE(std::filesystem::exists(Folder() + "/solver/solver.raw"));
}

TEST_F(FileRouteTest, TellsItsStagesInOrder)
{
    Listener listener;
    Run(Leaving(Output()), listener);
    EXPECT_EQ(listener.stages, "stamping frame;deck;solver program;results;");
}

TEST_F(FileRouteTest, StopsWhenAskedTo)
{
    Listener listener;
    listener.isInterrupted = true;
    EXPECT_THROW(Run(Leaving(Output()), listener), Interrupted);
}

TEST_F(FileRouteTest, AChildThatLeavesNoFileIsToldWithItsLastWords)
{
    std::string const failure = FailureOf(Script("echo no luck at element 7 >&2; exit 4"));
    EXPECT_TRUE(Holds(failure, "left no result")) << failure;
    EXPECT_TRUE(Holds(failure, "no luck at element 7")) << failure;
}

TEST_F(FileRouteTest, AChildThatCrashesIsTold)
{
    EXPECT_TRUE(Holds(FailureOf(Script("kill -SEGV $$")), "left no result"));
}

TEST_F(FileRouteTest, AProgramThatCannotBeStartedIsTold)
{
    EXPECT_TRUE(Holds(FailureOf(Folder() + "/part.bdf"), "could not be started") ||
                Holds(FailureOf(Folder() + "/part.bdf"), "left no result"));
}

// Whatever is cut off or no number is refused with the line: the library would take it quietly.
struct BadOutput
{
    int nodes;
    int rows;
    char const * from;
    char const * to;
    char const * words;
};

class FileRouteOutputs : public FileRouteTest, public testing::WithParamInterface<BadOutput>
{
};

TEST_P(FileRouteOutputs, IsRefused)
{
    BadOutput const & bad = GetParam();
    std::string text = Output(bad.nodes, bad.rows);
    if (*bad.from != '\0')
        text.replace(text.find(bad.from), std::string(bad.from).size(), bad.to);
    std::string const failure = FailureOf(Leaving(text));
    EXPECT_TRUE(Holds(failure, bad.words)) << failure;
    EXPECT_TRUE(Holds(failure, "deck.fpo:")) << failure;
}

INSTANTIATE_TEST_SUITE_P(Bad, FileRouteOutputs,
                         testing::Values(BadOutput{19, 46, "", "", "has 19 rows of nodes, expected 20"},
                                         BadOutput{21 - 1, 45, "", "", "has 45 rows of elements, expected 46"},
                                         BadOutput{20, 46, "0.03", "nan", "\"nan\" is no finite number"},
                                         BadOutput{20, 46, "0.03", "inf", "\"inf\" is no finite number"},
                                         BadOutput{20, 46, "0.03", "x", "\"x\" is no finite number"},
                                         BadOutput{20, 46, " 9.5 0.5", "", "has 5 columns, expected 7"},
                                         BadOutput{20, 46, "punch force 1000\n", "", "has no punch force"},
                                         BadOutput{20, 46, "punch force 1000", "", "no third column"},
                                         BadOutput{20, 46, "punch force 1000", "punch force", "no third column"},
                                         BadOutput{20, 46, "* end\n", "", "ends ahead of the punch force"}));

TEST_F(FileRouteTest, AnEmptyResultIsRefused)
{
    EXPECT_TRUE(Holds(FailureOf(Leaving("")), "ends ahead of the node section"));
}

TEST_F(FileRouteTest, EveryTruncationIsRefusedAndNothingElse)
{
    std::string const whole = Output();
    std::string const path = Folder() + "/cut.fpo";
    JobModel const model = ReadModel(mJob);
    for (std::size_t length = 0; length + 6 < whole.size(); length += 7)
    {
        std::ofstream(path, std::ios::binary) << whole.substr(0, length);
        EXPECT_THROW(CheckSolverText(path, model.mesh.mesh), SolverError) << length;
    }
    std::ofstream(path, std::ios::binary) << whole;
    EXPECT_NO_THROW(CheckSolverText(path, model.mesh.mesh));
}

TEST_F(FileRouteTest, SeveralMaterialsAreRefusedByName)
{
    mJob.materials.push_back(mJob.materials[0]);
    mJob.materials[0].name = "soft";
    mJob.materials[1].name = "hard";
    try
    {
        CheckFileRoute(mJob);
        FAIL();
    }
    catch (InputError const & error)
    {
        EXPECT_TRUE(Holds(error.what(), "\"soft\", \"hard\"")) << error.what();
    }
}

TEST_F(FileRouteTest, AMaterialOfSomeElementsAloneIsRefused)
{
    mJob.materials[0].set = "2";
    EXPECT_THROW(CheckFileRoute(mJob), InputError);
}

TEST_F(FileRouteTest, ATotalForceAboveYieldingIsWarnedOf)
{
    Job const job = ParseJob(Sound() + "[blank_holder]\ntotal_force = \"100 kN\"\n", JobPath());
    JobModel const model = ReadModel(job);
    Process process;
    BuildProcess(job, model, FindTipping(job, model), PadRows::Nodes, process);
    ASSERT_EQ(process.warnings.size(), 1U);
    EXPECT_TRUE(Holds(process.warnings[0], "at least 1071.4 N/mm, above the 122.5 N/mm")) << process.warnings[0];
}

TEST_F(FileRouteTest, FoldersThatTheLibraryCannotHoldAreRefused)
{
    auto const refusal = [](std::string const & i_folder)
    {
        try
        {
            CheckRoutePath(i_folder, "/bin/solver");
        }
        catch (InputError const & error)
        {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_EQ(refusal("/home/u/out/cup-001/solver"), "");
    EXPECT_TRUE(Holds(refusal("/home/u/a.spots/solver"), ".spo"));
    EXPECT_TRUE(Holds(refusal("/home/u/a\"b/solver"), "quote"));
    EXPECT_TRUE(Holds(refusal("/home/u/a\\b/solver"), "backslash"));
    EXPECT_TRUE(Holds(refusal("/home/u/a\nb/solver"), "control character"));
    std::string const longest = "/" + std::string(255 - 1 - std::string("/config.cfg").size(), 'a');
    EXPECT_EQ(refusal(longest), "") << "255 characters with the file's name";
    EXPECT_TRUE(Holds(refusal(longest + "a"), "1 characters too long"));
    EXPECT_THROW(CheckRoutePath("/out", std::string(1000, 'p')), InputError) << "the command line";
}

TEST_F(FileRouteTest, WorksInFoldersWithBlanksAndLettersOfAnyKind)
{
    FileRouteOptions options;
    options.folder = Folder() + "/a folder \xC3\xBC";
    options.solver = Leaving(Output());
    std::filesystem::create_directories(options.folder);
    Listener listener;
    EXPECT_EQ(RunFileRoute(mJob, ReadModel(mJob), options, listener).elements.size(), 13U);
}

TEST_F(FileRouteTest, TheSettingsOfTheJobCountAndNoOthers)
{
    // A limit that every element passes: without the job's own configuration they would be safe.
    mJob.limits.thinning = 2.0;
    mJob.limits.thinningMargin = 1.0;
    VOZMemoryHost host;
    host.environment["VOZDRAVO3D"] = "/nowhere";
    VOZHost::Install(&host);
    Outcome const outcome = Run(Leaving(Output()));
    VOZHost::Install(nullptr);
    EXPECT_EQ(outcome.elements[5].safety, 0);
    EXPECT_EQ(outcome.summary.safetyShare[1], 1.0);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(FileRouteTest, TheSolverProgramIsNamedOrFoundOrRefused)
{
    std::string const script = Script("exit 0");
    EXPECT_EQ(FindSolverProgram(script), script);
    VOZMemoryHost host;
    host.environment["VOZONESTEPSOLVER"] = script;
    VOZHost::Install(&host);
    EXPECT_EQ(FindSolverProgram(""), script);
    VOZHost::Install(nullptr);
    EXPECT_THROW(FindSolverProgram(Folder() + "/none"), InputError);
    EXPECT_THROW(FindSolverProgram(Folder()), InputError) << "a folder";
}

// One plane of symmetry is local x = 0, whichever it is in the part.
TEST_F(FileRouteTest, AHalfModelIsLaidWithItsPlaneOnLocalX)
{
    for (char const * const plane : {"xz", "yz"})
    {
        Job const job = ParseJob(Sound() + "[symmetry]\nplanes = \"" + plane + "\"\n", JobPath());
        Tipping const tipping = FindTipping(job, ReadModel(job));
        EXPECT_TRUE(tipping.symmetry.yzSymmetry()) << plane;
        EXPECT_FALSE(tipping.symmetry.xzSymmetry()) << plane;
        EXPECT_NEAR(tipping.frame.axis(0, plane == std::string("xz") ? 1 : 0), 1.0, 1e-12) << plane;
    }
}

TEST_F(FileRouteTest, AQuarterModelLiesOnBothPlanes)
{
    Job const job = ParseJob(Sound() + "[symmetry]\nplanes = \"both\"\n", JobPath());
    Tipping const tipping = FindTipping(job, ReadModel(job));
    EXPECT_TRUE(tipping.symmetry.quarterSymmetry());
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(tipping.frame.origin(i), 0.0, 1e-12);
}

TEST_F(FileRouteTest, APlaneThatCutsThePartOrMissesItIsRefused)
{
    for (char const * const place : {"1 mm", "-1 mm"})
    {
        Job const job =
            ParseJob(Sound() + "[symmetry]\nplanes = \"yz\"\nx = \"" + std::string(place) + "\"\n", JobPath());
        EXPECT_THROW(FindTipping(job, ReadModel(job)), InputError) << place;
    }
}

TEST_F(FileRouteTest, ElementsThatRunAgainstTheirNeighboursAreTurnedAndSaidSo)
{
    std::string text = PlateText();
    std::string const sixth = "CQUAD4,6,1,7,8,13,12\n";
    Write("part.bdf", text.replace(text.find(sixth), sixth.size(), "CQUAD4,6,1,12,13,8,7\n"));
    JobModel const model = ReadModel(mJob);
    ASSERT_EQ(model.remarks.size(), 1U);
    EXPECT_TRUE(Holds(model.remarks[0], "1 elements that ran against their neighbours were turned"));
    Job job = mJob;
    job.repairOrientation = false;
    EXPECT_THROW(ReadModel(job), InputError);
}

TEST_F(FileRouteTest, MeshesThatNoRouteCanTakeAreRefusedWithThePlace)
{
    std::string const text = PlateText();
    std::string const end = "ENDDATA\n";
    auto const refusal = [&](std::string const & i_more)
    {
        Write("part.bdf", text.substr(0, text.size() - end.size()) + i_more + end);
        try
        {
            ReadModel(mJob);
        }
        catch (InputError const & error)
        {
            return std::string(error.what());
        }
        return std::string("taken");
    };
    EXPECT_TRUE(Holds(refusal("CQUAD4,77,1,1,2,7,6\n"), "77")) << "an element twice";
    EXPECT_TRUE(Holds(refusal("GRID,90,,0.,0.,5.\nCTRIA3,77,1,7,8,90\n"), "no sheet can be formed")) << "a T joint";
    EXPECT_TRUE(Holds(refusal("GRID,90,,20.,0.,0.\nGRID,91,,22.,0.,0.\nGRID,92,,20.,2.,0.\nCTRIA3,77,1,90,91,92\n"),
                      "no sheet can be formed"))
        << "a piece of its own";
}

TEST_F(FileRouteTest, SelectionsNameWhatTheMeshHas)
{
    JobModel const model = ReadModel(mJob);
    JobSelection selection;
    selection.where = "pad[1]";
    selection.set = "2";
    EXPECT_EQ(ElementsOf(selection, mJob, model), (std::vector<int>{5, 9, 13}));
    selection.set = "9";
    EXPECT_THROW(ElementsOf(selection, mJob, model), InputError);
    selection.set.clear();
    selection.ids = {101, 1};
    EXPECT_EQ(ElementsOf(selection, mJob, model), (std::vector<int>{1, 2})) << "ids of the file, not positions";
    selection.ids = {500};
    EXPECT_THROW(ElementsOf(selection, mJob, model), InputError);
    selection.ids.clear();
    selection.box = {Point3{-1, -1, -1}, Point3{2, 2, 1}};
    EXPECT_EQ(NodesOf(selection, mJob, model), (std::vector<int>{1, 2, 6, 7}));
    EXPECT_EQ(ElementsOf(selection, mJob, model), (std::vector<int>{1, 2}));
    selection.box = {Point3{50, 0, 0}, Point3{60, 1, 1}};
    EXPECT_THROW(NodesOf(selection, mJob, model), InputError) << "nothing within";
}

// --- Springback ------------------------------------------------------------------------------------------------------

// In inches and in the stamping frame: every node a hundredth of its local x lower, which is 0.254 mm per inch.
namespace
{
class FileRouteSpringback : public FileRouteTest
{
protected:
    FileRouteSpringback() { mJob = ParseJob(Sound() + "[springback]\nwatch_nodes = [5]\n", JobPath()); }

    std::string Sprung(int i_nodes = 20) const
    {
        std::string text = "* 1\n* 2\n* 3\n*\n*\n*\n*\nnode, place\n\n";
        JobModel const model = ReadModel(mJob);
        Tipping const tipping = FindTipping(mJob, model);
        for (int n = 1; n <= i_nodes; ++n)
        {
            double const * const p = model.mesh.mesh.GetNodeData()[n];
            Vec const local = tipping.frame.fromGlobal(Vec(p));
            text += std::to_string(n) + " " + Shortest(local[0] / 25.4) + " " + Shortest(local[1] / 25.4) + " " +
                    Shortest((local[2] - 0.01 * local[0]) / 25.4) + "\n";
        }
        return text + "* end\n";
    }
    std::string LeavingBoth(std::string const & i_sprung, std::string const & i_more = "") const
    {
        std::string const forming = Write("prepared.fpo", Output());
        std::string const sprung = Write("prepared.sprung", i_sprung);
        return Script("if [ \"$1\" = -pfpi ]; then cp '" + forming + "' \"${2%.fpi}.fpo\"; else cp '" + sprung +
                      "' \"${2%.fpi}.spo\"; " + i_more + " fi");
    }
};
} // namespace

TEST_F(FileRouteSpringback, RunsTheSolverASecondTimeAndReadsTheShapeInTheFrame)
{
    Listener listener;
    Outcome const outcome = Run(LeavingBoth(Sprung()), listener);
    EXPECT_EQ(listener.stages, "stamping frame;deck;solver program;results;springback;");
    ASSERT_TRUE(outcome.springback);
    SpringbackOutcome const & springback = *outcome.springback;
    EXPECT_TRUE(springback.after.empty()) << "laying on points is not this route's";
    ASSERT_EQ(springback.before.size(), 20U);
    for (int n = 1; n <= 20; ++n)
    {
        Vec const local = outcome.frame.fromGlobal(Vec(outcome.part.GetNodeData()[n]));
        Point3 const & shift = springback.before[static_cast<std::size_t>(n) - 1];
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(shift[static_cast<std::size_t>(c)], -0.01 * local[0] * outcome.frame.axis(2, c), 1e-5) << n;
    }
    ASSERT_EQ(springback.points.size(), 1U);
    EXPECT_EQ(springback.points[0].node, 4);
    EXPECT_TRUE(std::filesystem::exists(Folder() + "/solver/springback.log"));
}

TEST_F(FileRouteSpringback, AShapeThatIsCutOffMissingOrFollowedByACrashIsAFailure)
{
    EXPECT_TRUE(Holds(FailureOf(LeavingBoth(Sprung(19))), "has 19 rows of nodes, expected 20"));
    EXPECT_TRUE(Holds(FailureOf(LeavingBoth("")), "ends ahead of the node section"));
    EXPECT_TRUE(Holds(FailureOf(LeavingBoth(Sprung(), "exit 4;")), "ended with exit code 4"));
    EXPECT_TRUE(Holds(FailureOf(Leaving(Output())), "left no result")) << "it left the forming alone";
}

TEST_F(FileRouteTest, AResultThatACrashFollowsIsAFailure)
{
    std::string const path = Write("prepared.fpo", Output());
    std::string const failure = FailureOf(Script("cp '" + path + "' \"${2%.fpi}.fpo\"; echo oh >&2; exit 7"));
    EXPECT_TRUE(Holds(failure, "ended with exit code 7, so that it cannot be trusted")) << failure;
    EXPECT_TRUE(Holds(failure, "oh")) << failure;
}
