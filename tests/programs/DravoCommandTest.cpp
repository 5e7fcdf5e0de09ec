// DravoCommandTest.cpp. The command from outside: what it prints where, and each exit code.

#include "CommandFixture.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

using nlohmann::json;

namespace
{
class DravoCommand : public CommandFixture
{
protected:
    void SetUp() override
    {
        if (std::filesystem::path::preferred_separator != '/')
            GTEST_SKIP() << "commands and scripts need a shell";
    }

    // Standard error of a pipe holds no escape sequences.
    static bool IsPlain(std::string const & i_text) { return i_text.find('\x1b') == std::string::npos; }
};
} // namespace

// --- 0: done
// -----------------------------------------------------------------------------------------------------------

TEST_F(DravoCommand, RunFormsAPartIntoANumberedFolder)
{
    MakeJob();
    Ran const first = Dravo("run bump.toml --out results");
    ASSERT_EQ(first.code, 0) << first.err;
    for (char const * const name : {"report.html", "blank.dxf", "blank.svg", "part.vtu", "summary.json",
                                    "job.lock.toml", "solver/sum.txt", "solver/sum.log", "solver/config.cfg"})
        EXPECT_TRUE(std::filesystem::exists(Path("results/bump-001/") + name)) << name;
    for (char const * const row :
         {"Blank size", "Blank area", "Blank mass", "Thickness", "Elements", "Punch force", "Undercuts", "report.html"})
        EXPECT_TRUE(first.Shows(row)) << row << "\n" << first.out;
    EXPECT_EQ(first.err, "dravo: mesh\ndravo: stamping frame\ndravo: solver\ndravo: results\ndravo: output\n")
        << "one plain line per stage in a pipe";
    EXPECT_EQ(Dravo("run bump.toml --out results").code, 0);
    EXPECT_TRUE(std::filesystem::exists(Path("results/bump-002/summary.json"))) << "never overwritten";
}

TEST_F(DravoCommand, TheFileRouteLeavesItsDeckAndItsText)
{
    MakeJob();
    Ran const ran = Dravo("run bump.toml --route file --out results");
    ASSERT_EQ(ran.code, 0) << ran.err;
    for (char const * const name : {"report.html", "solver/deck.fpi", "solver/deck.fpo", "solver/config.cfg"})
        EXPECT_TRUE(std::filesystem::exists(Path("results/bump-001/") + name)) << name;
    EXPECT_EQ(ran.err, "dravo: mesh\ndravo: stamping frame\ndravo: deck\ndravo: solver program\ndravo: results\n"
                       "dravo: output\n");
    json const summary = json::parse(ReadBack(Path("results/bump-001/summary.json")));
    EXPECT_EQ(summary["route"], "file");
    EXPECT_FALSE(summary["strains"].contains("top"));
    EXPECT_NE(ReadBack(Path("results/bump-001/report.html")).find("dravo run bump.toml --route file"),
              std::string::npos)
        << "the command that repeats it";
}

TEST_F(DravoCommand, TheInProcessRouteTellsThreeLayers)
{
    MakeJob("[output]\ntables = true\n");
    ASSERT_EQ(Dravo("run bump.toml").code, 0);
    json const summary = json::parse(ReadBack(Path("out/bump-001/summary.json")));
    EXPECT_EQ(summary["route"], "kernel");
    double const middle = summary["strains"]["greatest_major_percent"].get<double>();
    EXPECT_GT(std::max(summary["strains"]["top"]["greatest_major_percent"].get<double>(),
                       summary["strains"]["bottom"]["greatest_major_percent"].get<double>()),
              middle)
        << "bending stretches one side more";
    for (char const * const name : {"elements.csv", "elements_top.csv", "elements_bottom.csv"})
        EXPECT_TRUE(std::filesystem::exists(Path("out/bump-001/") + name)) << name;
    EXPECT_NE(ReadBack(Path("out/bump-001/part.vtu")).find("major strain, top (%)"), std::string::npos);
    EXPECT_NE(ReadBack(Path("out/bump-001/report.html")).find("<section id=\"layers\">"), std::string::npos);
}

TEST_F(DravoCommand, RunWritesTheFormedBlankForWhatComesAfterItWhereTheJobAsks)
{
    MakeJob("[output]\ndyna = true\nnastran = true\ndisplacements = true\n");
    for (char const * const route : {"kernel", "file"})
    {
        Ran const ran = Dravo(std::string("run bump.toml --out ") + route + " --route " + route);
        ASSERT_EQ(ran.code, 0) << ran.err;
        std::string const folder = route + std::string("/bump-001/");
        for (char const * const name : {"formed.k", "formed.nas", "formed.bdf"})
            EXPECT_EQ(Dravo("inspect " + folder + name).code, 0) << name;
        EXPECT_EQ(Dravo("inspect " + folder + "formed_main.k --length-unit m").code, 0);
        EXPECT_EQ(ReadBack(Path(folder + "displacements.txt")).rfind("Locations Axis", 0), 0u);
    }
}

TEST_F(DravoCommand, RunAsJsonIsOneDocumentWithUnitsInItsKeys)
{
    MakeJob("[output]\nreport = false\nvtu = false\ndxf = false\nsvg = false\n");
    Ran const ran = Dravo("run bump.toml --json --quiet");
    ASSERT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(ran.err, "");
    json const document = json::parse(ran.out);
    EXPECT_EQ(document["schema"], 1);
    EXPECT_EQ(document["status"], "done");
    EXPECT_EQ(document["thickness_mm"], 0.8);
    EXPECT_EQ(document["elements"], 36);
    EXPECT_NEAR(document["blank"]["width_mm"].get<double>(), 24.3, 0.3);
    EXPECT_GT(document["blank"]["area_mm2"].get<double>(), 576.0);
    EXPECT_NEAR(document["blank"]["mass_kg"].get<double>(), document["blank"]["area_mm2"].get<double>() * 0.8 * 7.85e-6,
                1e-8);
    EXPECT_GT(document["punch_force_N"].get<double>(), 0.0);
    double shares = 0.0;
    for (auto const & share : document["share_of_elements"])
        shares += share.get<double>();
    EXPECT_NEAR(shares, 1.0, 1e-6);
    EXPECT_EQ(document["undercut"]["elements"], 0);
    EXPECT_EQ(document["inputs"][1]["sha256"].get<std::string>().size(), 64U);
    EXPECT_EQ(document["folder"], Path("out/bump-001"));
    EXPECT_FALSE(std::filesystem::exists(Path("out/bump-001/report.html"))) << "not asked for";
}

TEST_F(DravoCommand, TheSameInputGivesTheSameBytes)
{
    MakeJob();
    ASSERT_EQ(Dravo("run bump.toml --out a").code, 0);
    ASSERT_EQ(Dravo("run bump.toml --out b").code, 0);
    for (char const * const name : {"summary.json", "blank.dxf", "part.vtu", "report.html", "solver/sum.log"})
        EXPECT_EQ(ReadBack(Path("a/bump-001/") + name), ReadBack(Path("b/bump-001/") + name)) << name;
    ASSERT_EQ(Dravo("run bump.toml --route file --out a").code, 0);
    ASSERT_EQ(Dravo("run bump.toml --route file --out b").code, 0);
    for (char const * const name : {"summary.json", "blank.dxf", "part.vtu", "report.html", "solver/deck.fpo"})
        EXPECT_EQ(ReadBack(Path("a/bump-002/") + name), ReadBack(Path("b/bump-002/") + name)) << name;
}

TEST_F(DravoCommand, TheLockedJobRunsToTheSameBlank)
{
    MakeJob();
    ASSERT_EQ(Dravo("run bump.toml --out a").code, 0);
    ASSERT_EQ(Dravo("run a/bump-001/job.lock.toml --out b").code, 0);
    EXPECT_EQ(ReadBack(Path("a/bump-001/blank.dxf")), ReadBack(Path("b/bump-001-001/blank.dxf")));
    EXPECT_EQ(ReadBack(Path("a/bump-001/part.vtu")), ReadBack(Path("b/bump-001-001/part.vtu")));
    Write("bump.bdf", Bump() + "$ changed\n");
    EXPECT_TRUE(Dravo("run a/bump-001/job.lock.toml --out b").Says("is not what it was when the job was locked"));
}

TEST_F(DravoCommand, CheckSolvesNothing)
{
    MakeJob();
    Ran const ran = Dravo("check bump.toml");
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_TRUE(ran.Shows("can be run by the kernel route: 49 nodes, 36 elements"));
    EXPECT_FALSE(std::filesystem::exists(Path("out")));
    EXPECT_EQ(json::parse(Dravo("check bump.toml --json").out)["nodes"], 49);
}

TEST_F(DravoCommand, ExplainShowsEveryValueWithItsUnit)
{
    MakeJob();
    Ran const ran = Dravo("explain bump.toml");
    EXPECT_EQ(ran.code, 0);
    EXPECT_TRUE(ran.Shows("0.8 mm\n")) << ran.out;
    EXPECT_TRUE(ran.Shows("(default)"));
    json const document = json::parse(Dravo("explain bump.toml --json").out);
    std::set<std::string> keys;
    for (auto const & value : document["values"])
        keys.insert(value["key"].get<std::string>());
    EXPECT_TRUE(keys.count("blank_holder.force_per_length") == 1);
    EXPECT_TRUE(keys.count("limits.fld0") == 1);
}

TEST_F(DravoCommand, InspectShowsFrameAndUndercuts)
{
    MakeJob();
    Ran const ran = Dravo("inspect bump.bdf --tip");
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_TRUE(ran.Shows("Stamping frame")) << ran.out;
    EXPECT_TRUE(ran.Shows("Undercuts: 0"));
    json const document = json::parse(Dravo("inspect bump.bdf --tip --die-line 0 0 -1 --json").out);
    EXPECT_EQ(document["stamping_frame"]["axes"][2][2], 1.0) << "the part tells the sense";
}

TEST_F(DravoCommand, InspectRefusesAPartWithoutAStampingDirection)
{
    std::string text = "BEGIN BULK\n";
    for (int n = 0; n < 8; ++n)
        text += "GRID," + std::to_string(n + 1) + ",," + (n % 2 ? "1." : "0.") + "," + (n / 2 % 2 ? "1." : "0.") + "," +
                (n / 4 ? "1." : "0.") + "\n";
    Write("cube.bdf", text + "CQUAD4,1,1,1,3,4,2\nCQUAD4,2,1,5,6,8,7\nCQUAD4,3,1,1,2,6,5\nCQUAD4,4,1,3,7,8,4\n"
                             "CQUAD4,5,1,1,5,7,3\nCQUAD4,6,1,2,4,8,6\nENDDATA\n");
    Ran const ran = Dravo("inspect cube.bdf --tip");
    EXPECT_EQ(ran.code, 3) << ran.out;
    EXPECT_TRUE(ran.Says("give --die-line")) << ran.err;
    EXPECT_NE(Dravo("inspect cube.bdf --tip --die-line 0 0 1").code, 3);
}

TEST_F(DravoCommand, InspectMendsAndConvertWritesOtherFormats)
{
    MakeJob();
    std::string const sixth = "CQUAD4,8,1,9,10,17,16\n";
    std::string text = Bump();
    ASSERT_NE(text.find(sixth), std::string::npos);
    Write("bad.bdf", text.replace(text.find(sixth), sixth.size(), "CQUAD4,8,1,16,17,10,9\n"));
    EXPECT_EQ(Dravo("inspect bad.bdf").code, 1) << "flipped: a check failed";
    EXPECT_FALSE(Dravo("inspect bad.bdf --list 0").Shows("  element ")) << "counted, not named";
    EXPECT_EQ(Dravo("inspect bad.bdf --repair good.bdf").code, 0);
    EXPECT_EQ(Dravo("inspect good.bdf").code, 0);
    EXPECT_EQ(Dravo("convert good.bdf good.stl").code, 0);
    EXPECT_EQ(Dravo("inspect good.stl").code, 0);
    EXPECT_EQ(Dravo("convert good.bdf good.stl").code, 5) << "not replaced";
    EXPECT_EQ(Dravo("convert good.bdf good.stl --force").code, 0);
}

TEST_F(DravoCommand, MaterialsListsAndShows)
{
    Ran const list = Dravo("materials");
    EXPECT_EQ(list.code, 0) << list.err;
    EXPECT_TRUE(list.Shows("mild-steel-numisheet93"));
    Ran const one = Dravo("materials mild-140-270");
    EXPECT_TRUE(one.Shows("541.000 MPa")) << one.out;
    EXPECT_TRUE(one.Shows("source"));
    EXPECT_GE(json::parse(Dravo("materials --json").out)["materials"].size(), 8U);
    Ran const none = Dravo("materials mild-140-271");
    EXPECT_EQ(none.code, 3);
    EXPECT_TRUE(none.Says("the nearest is \"mild-140-270\"")) << none.err;
}

TEST_F(DravoCommand, InitWritesAJobThatNeedsItsMeshAlone)
{
    EXPECT_EQ(Dravo("init").code, 0);
    EXPECT_EQ(Dravo("check job.toml").code, 3) << "there is no part.bdf";
    Write("part.bdf", Bump());
    EXPECT_EQ(Dravo("check job.toml").code, 0) << Dravo("check job.toml").err;
    EXPECT_EQ(Dravo("init").code, 5) << "not replaced";
    EXPECT_TRUE(Dravo("init -").Shows("[material]"));
}

TEST_F(DravoCommand, HelpOfEachVerbHasAnExample)
{
    EXPECT_TRUE(Dravo("--help").Shows("Exit codes"));
    for (std::string const verb :
         {"run", "check", "explain", "import", "inspect", "convert", "materials", "init", "completion"})
    {
        Ran const ran = Dravo(verb + " --help");
        EXPECT_EQ(ran.code, 0) << verb;
        EXPECT_TRUE(ran.Shows("Example: dravo " + verb)) << verb;
        EXPECT_TRUE(Dravo("--help").Shows("  " + verb)) << verb;
    }
}

TEST_F(DravoCommand, CompletionAndManPageComeFromTheOptionTable)
{
    std::string const bash = Write("completion.bash", Dravo("completion bash").out);
    std::string const asked = "bash -c '. \"" + bash + "\"; COMP_WORDS=(dravo run --js); COMP_CWORD=2; _dravo; " +
                              "echo \"${COMPREPLY[@]}\"' >\"" + Path("words.txt") + "\"";
    ASSERT_EQ(std::system(asked.c_str()), 0);
    EXPECT_EQ(ReadBack(Path("words.txt")), "--json\n");
    EXPECT_TRUE(Dravo("completion fish").Shows("__fish_seen_subcommand_from run' -l out -r -d"));
    EXPECT_TRUE(Dravo("completion zsh").Shows("#compdef dravo"));
    Ran const man = Dravo("completion man");
    EXPECT_TRUE(man.Shows(".TH DRAVO 1"));
    EXPECT_TRUE(man.Shows("\\-\\-strict")) << man.out;
    EXPECT_TRUE(man.Shows("EXIT STATUS"));
    EXPECT_EQ(Dravo("completion tcsh").code, 2);
}

TEST_F(DravoCommand, VersionTellsWhatItIsBuiltOf)
{
    EXPECT_EQ(Dravo("--version").out.substr(0, 6), "dravo ");
    json const document = json::parse(Dravo("--version --json").out);
    EXPECT_TRUE(document["libraries"].contains("tomlplusplus"));
    EXPECT_TRUE(document.contains("commit"));
    EXPECT_TRUE(document.contains("compiler"));
}

TEST_F(DravoCommand, AJobCanComeFromStandardInput)
{
    MakeJob();
    EXPECT_EQ(Dravo("check -").code, 3) << "an empty one";
    EXPECT_EQ(Dravo("check -", "cat bump.toml |").code, 0);
}

// --- 1: a check failed
// ---------------------------------------------------------------------------------------------------

TEST_F(DravoCommand, StrictMakesAWarningCount)
{
    MakeJob("[friction]\ncoefficient = 0.4\n");
    Ran const ran = Dravo("run bump.toml");
    EXPECT_EQ(ran.code, 0);
    EXPECT_TRUE(ran.Says("warning: friction coefficient 0.4 is outside the usual 0 to 0.3")) << ran.err;
    EXPECT_EQ(Dravo("run bump.toml --strict").code, 1);
    EXPECT_EQ(Dravo("check bump.toml --strict").code, 1);
}

// --- 2: wrong use
// --------------------------------------------------------------------------------------------------------

TEST_F(DravoCommand, WrongUseIsTwo)
{
    for (char const * const arguments :
         {"", "frobnicate", "run", "run --no-such-option x", "run x --route tube", "run x --quiet --verbose",
          "inspect x --die-line 0 1", "inspect x --die-line 0 0 0", "inspect x --die-line nan 0 1",
          "inspect x --tolerance nan", "inspect x --tolerance -1", "inspect x --symmetry zx", "convert only_one",
          "convert a.bdf b.unknown", "convert a.bdf b.bdf.gz", "run x --solver y", "check x --route tube"})
    {
        Ran const ran = Dravo(arguments);
        EXPECT_EQ(ran.code, 2) << arguments;
        EXPECT_EQ(ran.out, "") << arguments;
        EXPECT_NE(ran.err, "") << arguments;
    }
}

// --- 3: input refused
// ----------------------------------------------------------------------------------------------------

TEST_F(DravoCommand, BadJobsAreThreeWithTheirLine)
{
    MakeJob("[frictoin]\n");
    Ran const ran = Dravo("run bump.toml");
    EXPECT_EQ(ran.code, 3);
    EXPECT_TRUE(ran.Says("bump.toml:10: unknown key \"frictoin\"; the nearest valid key is \"friction\"")) << ran.err;
    for (auto const & [from, to] : {std::pair{"[blank]", "[blnak]"}, std::pair{"[mesh]", "[mseh]"},
                                    std::pair{"[material]", "[materail]"}, std::pair{"thickness", "thicknes"}})
    {
        std::string text = JobText();
        Write("bump.toml", text.replace(text.find(from), std::string(from).size(), to));
        std::string const key = std::string(from).substr(from[0] == '[' ? 1 : 0, std::string(from).find(']') - 1);
        EXPECT_TRUE(Dravo("check bump.toml").Says("the nearest valid key is \"" + key)) << Dravo("check bump.toml").err;
    }
    for (char const * const thickness : {"1e300", "0", "-1", "nan"})
    {
        std::string text = JobText();
        Write("bump.toml", text.replace(text.find("\"0.8 mm\""), 8, std::string("\"") + thickness + " mm\""));
        EXPECT_EQ(Dravo("check bump.toml").code, 3) << thickness;
    }
    EXPECT_EQ(Dravo("run none.toml").code, 3);
    EXPECT_EQ(Dravo("run .").code, 3) << "a folder";
    EXPECT_FALSE(std::filesystem::exists(Path("out"))) << "nothing was made";
}

TEST_F(DravoCommand, BadMeshesAreThree)
{
    std::string const good = (MakeJob(), Bump());
    struct Case
    {
        char const * name;
        std::string text;
    };
    std::string nan = good;
    nan.replace(nan.find(",4.,0.,0."), 9, ",nan,0.,0.");
    std::string infinite = good;
    infinite.replace(infinite.find(",4.,0.,0."), 9, ",1e999,0.,0.");
    std::string outside = good;
    outside.replace(outside.find("CQUAD4,1,1,1,2,9,8"), 18, "CQUAD4,1,1,1,2,999,8");
    for (Case const & bad :
         {Case{"empty", ""}, Case{"NaN", nan}, Case{"infinite", infinite}, Case{"a node that is not there", outside},
          Case{"truncated", good.substr(0, good.find("CQUAD4,9") + 14)}, Case{"no mesh", "hello\n"}})
    {
        Write("bump.bdf", bad.text);
        Ran const ran = Dravo("run bump.toml");
        EXPECT_EQ(ran.code, 3) << bad.name << ": " << ran.err;
        EXPECT_TRUE(ran.Says("bump.bdf")) << bad.name << ": " << ran.err;
    }
    std::filesystem::remove(Path("bump.bdf"));
    std::filesystem::create_directory(Path("bump.bdf"));
    EXPECT_EQ(Dravo("run bump.toml").code, 3) << "a folder";
}

TEST_F(DravoCommand, FoldersThatMarkSpringbackAreRefusedByTheFileRoute)
{
    MakeJob();
    Ran const ran = Dravo("run bump.toml --route file --out a.spot");
    EXPECT_EQ(ran.code, 3);
    EXPECT_TRUE(ran.Says(".spo")) << ran.err;
    EXPECT_FALSE(std::filesystem::exists(Path("a.spot")));
}

TEST_F(DravoCommand, TooLongAFolderIsRefusedBeforeAnythingIsMade)
{
    MakeJob();
    Ran const ran = Dravo("run bump.toml --out " + std::string(240, 'x'));
    EXPECT_EQ(ran.code, 3) << ran.err;
    EXPECT_TRUE(ran.Says("characters too long"));
    EXPECT_EQ(Dravo("check bump.toml --out " + std::string(240, 'x')).code, 3) << "checked ahead of the run, too";
}

TEST_F(DravoCommand, ASolverProgramThatIsNotThereIsRefused)
{
    MakeJob();
    EXPECT_EQ(Dravo("run bump.toml --route file --solver nothing").code, 3);
    EXPECT_EQ(Dravo("check bump.toml --route file --solver nothing").code, 3);
}

// --- 4: no result
// --------------------------------------------------------------------------------------------------------

TEST_F(DravoCommand, AChildThatCrashesOrLeavesNothingIsFour)
{
    MakeJob();
    for (char const * const lines :
         {"kill -SEGV $$", "exit 0", "echo out of luck >&2; exit 4", "echo '* cut off' >\"${2%.fpi}.fpo\"",
          ": >\"${2%.fpi}.fpo\"", "'" VOZ_BINARY_DIR "/bin/OneStepSolver' \"$@\" && kill -SEGV $$"})
    {
        Ran const ran = Dravo("run bump.toml --route file --solver '" + Script(lines) + "'");
        EXPECT_EQ(ran.code, 4) << lines << ": " << ran.err;
        EXPECT_EQ(ran.out, "") << lines;
        EXPECT_TRUE(ran.Says("error: the solver")) << lines << ": " << ran.err;
    }
    EXPECT_EQ(json::parse(ReadBack(Path("out/bump-001/summary.json")))["status"], "failed");
}

TEST_F(DravoCommand, TheSolversLastWordsAreTold)
{
    MakeJob();
    Ran const ran =
        Dravo("run bump.toml --route file --solver '" + Script("echo out of luck at node 9 >&2; exit 4") + "'");
    EXPECT_TRUE(ran.Says("out of luck at node 9")) << ran.err;
}

// --- 5: output not written
// -----------------------------------------------------------------------------------------------

TEST_F(DravoCommand, OutputThatCannotBeWrittenIsFive)
{
    MakeJob();
    Write("file", "in the way");
    EXPECT_EQ(Dravo("run bump.toml --out file").code, 5);
    EXPECT_EQ(Dravo("init nowhere/job.toml").code, 5);
    EXPECT_EQ(Dravo("convert bump.bdf nowhere/x.stl").code, 5);
}

TEST_F(DravoCommand, AFullDeviceIsFive)
{
    MakeJob();
    Ran const ran = Dravo("materials", "", "/dev/full");
    EXPECT_EQ(ran.code, 5);
    EXPECT_TRUE(ran.Says("standard output could not be written")) << ran.err;
    EXPECT_EQ(Dravo("run bump.toml --json", "", "/dev/full").code, 5);
    EXPECT_EQ(Dravo("init /dev/full --force").code, 5);
}

// --- 130: interrupted
// ----------------------------------------------------------------------------------------------------

TEST_F(DravoCommand, AnInterruptIsAHundredAndThirtyAndLeavesWhatThereIs)
{
    MakeJob();
    std::string const solver = Script("sleep 3");
    Ran const ran = Dravo("run bump.toml --route file --solver '" + solver + "'",
                          "timeout --foreground --preserve-status -s INT 1.5");
    EXPECT_EQ(ran.code, 130) << ran.err;
    EXPECT_TRUE(ran.Says("interrupted")) << ran.err;
    EXPECT_TRUE(std::filesystem::exists(Path("out/bump-001/solver/deck.fpi")));
    EXPECT_EQ(json::parse(ReadBack(Path("out/bump-001/summary.json")))["status"], "interrupted");
}

// --- Manners
// -------------------------------------------------------------------------------------------------------------

TEST_F(DravoCommand, ColourIsForTerminalsUnlessItIsForced)
{
    MakeJob("[friction]\ncoefficient = 0.4\n");
    EXPECT_TRUE(IsPlain(Dravo("check bump.toml").err));
    EXPECT_FALSE(IsPlain(Dravo("check bump.toml", "CLICOLOR_FORCE=1").err));
    EXPECT_TRUE(IsPlain(Dravo("check bump.toml", "NO_COLOR=1 CLICOLOR_FORCE=1").err));
}

TEST_F(DravoCommand, QuietSaysNothingButErrors)
{
    MakeJob("[friction]\ncoefficient = 0.4\n");
    EXPECT_EQ(Dravo("run bump.toml --quiet").err, "");
    EXPECT_NE(Dravo("run none.toml --quiet").err, "");
}

TEST_F(DravoCommand, WorksWithoutHomeAndUnderACommaLocale)
{
    MakeJob();
    Ran const plain = Dravo("run bump.toml --out a");
    Ran const other = Dravo("run bump.toml --out b", "env -u HOME -u TERM LC_ALL=de_DE.UTF-8");
    EXPECT_EQ(other.code, 0) << other.err;
    EXPECT_EQ(ReadBack(Path("a/bump-001/summary.json")), ReadBack(Path("b/bump-001/summary.json")));
}
