// LaunchSearchTest.cpp: where the solver is looked for; what the status file says.

#include "SolverRun.h"
#include "StatusFile.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{
using voz::launch::FindSolver;
using voz::launch::Solver;
using voz::launch::SolverSearch;

class LaunchSearch : public testing::Test
{
protected:
    std::string Program(SolverSearch const & i_search)
    {
        message.clear();
        auto const solver = FindSolver(i_search, message);
        arguments = solver ? solver->arguments : "";
        return solver ? std::filesystem::path(solver->program).generic_string() : "";
    }

    TempFolder folder;
    std::string message, arguments;
};

TEST_F(LaunchSearch, TheVariableIsAheadOfTheConfigurationAndThatOfThePath)
{
    std::string const first = folder.Write("one", "x"), second = folder.Write("two", "x");
    std::string const third = folder.Write("ls-dyna", "x");
    SolverSearch search{first, second, "config.cfg", {folder.Path()}};
    EXPECT_EQ(Program(search), first);
    search.variable.clear();
    EXPECT_EQ(Program(search), second);
    search.configuration.clear();
    EXPECT_EQ(Program(search), third);
    EXPECT_EQ(message, "");
}

TEST_F(LaunchSearch, FoldersAreSearchedInTheirOrder)
{
    std::filesystem::create_directories(folder.Path("a"));
    std::filesystem::create_directories(folder.Path("b"));
    std::string const later = folder.Write("b/ls-dyna", "x");
    EXPECT_EQ(Program({"", "", "", {folder.Path("none"), folder.Path("a"), folder.Path("b")}}), later);
    std::string const sooner = folder.Write("a/lsdyna_sp.exe", "x");
    EXPECT_EQ(Program({"", "", "", {folder.Path("none"), folder.Path("a"), folder.Path("b")}}), sooner);
}

TEST_F(LaunchSearch, ASettingMayHaveBlanksOrArguments)
{
    std::string const program = folder.Write("my solver", "x");
    EXPECT_EQ(Program({program, "", "", {}}), program) << "a name with a blank, whole";
    EXPECT_EQ(arguments, "");
    EXPECT_EQ(Program({"\"" + program + "\"  ncpu=4 memory=200m", "", "", {}}), program);
    EXPECT_EQ(arguments, "ncpu=4 memory=200m");
    std::string const plain = folder.Write("solver", "x");
    EXPECT_EQ(Program({plain + " ncpu=2", "", "", {}}), plain);
    EXPECT_EQ(arguments, "ncpu=2");
}

TEST_F(LaunchSearch, ASettingThatNamesNoFileEndsTheSearchAndSaysSo)
{
    folder.Write("ls-dyna", "x");
    EXPECT_EQ(Program({folder.Path("none"), "", "", {folder.Path()}}), "");
    EXPECT_NE(message.find("VOZDynaSolver names"), std::string::npos) << message;
    EXPECT_EQ(Program({"", folder.Path(), "/root/config.cfg", {folder.Path()}}), "") << "a folder is no program";
    EXPECT_NE(message.find("DynaSolver of /root/config.cfg"), std::string::npos) << message;
}

TEST_F(LaunchSearch, WithoutASolverTheMessageSaysWhatToSet)
{
    EXPECT_EQ(Program({"", "", "", {folder.Path()}}), "");
    EXPECT_NE(message.find("set the variable VOZDynaSolver, or DynaSolver in config.cfg"), std::string::npos)
        << message;
}

TEST_F(LaunchSearch, TheStatusIsLinesOfKeysAndValues)
{
    voz::launch::StatusFile status(folder.Path());
    EXPECT_TRUE(status.Show());
    EXPECT_EQ(folder.Read("launch.status"), "state=starting\ntime=0\nend=0\nrecords=0\nmessage=\n");
    status.state = voz::launch::LaunchState::Failed;
    status.time = 0.0125;
    status.end = 0.02;
    status.records = 7;
    status.message = "two\nlines";
    EXPECT_TRUE(status.Show());
    EXPECT_EQ(folder.Read("launch.status"), "state=failed\ntime=0.0125\nend=0.02\nrecords=7\nmessage=two lines\n");
    EXPECT_FALSE(std::filesystem::exists(folder.Path("launch.status.new")));
    status.Remove();
    EXPECT_FALSE(std::filesystem::exists(folder.Path("launch.status")));
}

TEST_F(LaunchSearch, AStatusThatCannotBeWrittenIsNoFault)
{
    voz::launch::StatusFile status(folder.Path("none"));
    EXPECT_FALSE(status.Show());
}

TEST(LaunchLog, TheLastTimeOfTheLogIsFound)
{
    using voz::launch::TimeInLog;
    EXPECT_EQ(TimeInLog("      1 t 0.0000E+00 dt 4.40E-07 write d3plot file\n  100 t 1.2500E-03 dt 4.40E-07 flush\n"),
              1.25e-3);
    EXPECT_EQ(TimeInLog(" 7 t 2.0E-03 dt 1.0E-07 x\n is not t at all"), 2.0e-3);
    EXPECT_LT(TimeInLog(""), 0.0);
    EXPECT_LT(TimeInLog(" t "), 0.0);
    EXPECT_LT(TimeInLog(" t 1.0E-3"), 0.0) << "cut ahead of the step";
    EXPECT_LT(TimeInLog(" t t t t dt"), 0.0);
}
} // namespace
