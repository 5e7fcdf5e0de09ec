// LauncherTest.cpp: the launcher as it is started: its arguments, its exit codes, what it leaves in the folder.

#include "D3plotFixture.h"

#include <cstdlib>
#include <filesystem>

namespace
{
constexpr char kDeck[] = "*KEYWORD\n*CONTROL_TERMINATION\n 1.000E+00\n*END\n"; // points spread evenly

class Launcher : public D3plotFixture
{
protected:
    // i_arguments as the shell takes them; variables of the environment ahead. The exit code.
    int Start(std::string const & i_arguments, std::string const & i_variables = "")
    {
        std::string const command = i_variables + " '" VOZ_LAUNCHER "' " + i_arguments + " >'" + streams.Path("out") +
                                    "' 2>'" + streams.Path("err") + "' </dev/null";
        int const status = std::system(command.c_str());
        return status >= 0 && (status & 0x7f) == 0 ? (status >> 8 & 0xff) : -1;
    }
    bool Says(std::string const & i_text) const { return streams.Read("err").find(i_text) != std::string::npos; }
    std::string Status() const { return folder.Read("launch.status"); }
    std::string Folder() const { return "'" + folder.Path() + "'"; }
    std::string Solver(std::string const & i_lines) const
    {
        std::string const path = streams.Write("solver", "#!/bin/sh\n" + i_lines + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return "VOZDynaSolver='" + path + "'";
    }

    TempFolder streams; // apart from the folder of the deck
};

TEST_F(Launcher, WrongUseIsTwo)
{
    for (char const * const words : {"", "a", "a b c", "a ten", "a 0", "a -1", "a 10001"})
    {
        EXPECT_EQ(Start(words), 2) << words;
        EXPECT_TRUE(Says("expected FOLDER COUNT")) << words;
    }
    EXPECT_EQ(Start(Folder() + " 99999999999"), 2);
    EXPECT_NE(Status().find("state=failed"), std::string::npos) << "whoever waits sees it";
}

TEST_F(Launcher, HelpIsOnStandardOutput)
{
    EXPECT_EQ(Start("--help"), 0);
    EXPECT_NE(streams.Read("out").find("VOZDynaSolver"), std::string::npos);
    EXPECT_EQ(streams.Read("err"), "");
}

TEST_F(Launcher, AFolderOrADeckThatIsMissingIsThree)
{
    EXPECT_EQ(Start("'" + folder.Path("none") + "' 10"), 3);
    EXPECT_TRUE(Says("is no folder"));
    EXPECT_EQ(Start(Folder() + " 10"), 3);
    EXPECT_TRUE(Says("inputls.dyn"));
    EXPECT_NE(Status().find("state=failed"), std::string::npos);
    EXPECT_NE(Status().find("the deck is not there"), std::string::npos) << Status();
}

TEST_F(Launcher, AMissingSolverIsFour)
{
    folder.Write("inputls.dyn", kDeck);
    EXPECT_EQ(Start(Folder() + " 3", "VOZDynaSolver='" + folder.Path("none") + "'"), 4);
    EXPECT_TRUE(Says("VOZDynaSolver names"));
    EXPECT_NE(Status().find("end=1\n"), std::string::npos) << "the deck was read before";
}

TEST_F(Launcher, ARunLeavesRecordsLogAndStatus)
{
    folder.Write("inputls.dyn", kDeck);
    streams.Write("results", OneFile(Small(), {0.0, 0.5, 1.0}));
    folder.Write("d3plotaa", "of an earlier run");
    folder.Write("d3plotab03", "of an earlier run, whose first file is gone");
    folder.Write("output.voz", "of an earlier run");
    EXPECT_EQ(Start(Folder() + " '\"3'", Solver("echo \"$1\"; ls; cp '" + streams.Path("results") + "' d3plot")), 0);
    EXPECT_EQ(recordsIn(folder.Read("output.voz")).size(), 3U);
    EXPECT_EQ(folder.Read("launch.log"), "i=inputls.dyn\ninputls.dyn\nlaunch.log\nlaunch.status\n")
        << "the deck in its own folder, without what an earlier run left";
    EXPECT_EQ(Status(), "state=done\ntime=1\nend=1\nrecords=3\nmessage=3 of 3 records\n");
    EXPECT_EQ(streams.Read("out"), "3 of 3 records\n");
}

TEST_F(Launcher, ArgumentsOfTheSettingFollowTheDeck)
{
    folder.Write("inputls.dyn", kDeck);
    std::string const solver = Solver("echo \"$@\"");
    std::string const path = solver.substr(solver.find('\'') + 1, solver.size() - solver.find('\'') - 2);
    EXPECT_EQ(Start(Folder() + " 3", "VOZDynaSolver='" + path + " ncpu=4 memory=200m'"), 4) << "no results";
    EXPECT_EQ(folder.Read("launch.log"), "i=inputls.dyn ncpu=4 memory=200m\n");
}

TEST_F(Launcher, ASolverThatIsNoProgramIsFour)
{
    folder.Write("inputls.dyn", kDeck);
    EXPECT_EQ(Start(Folder() + " 3", "VOZDynaSolver='" + streams.Write("text", "no program") + "'"), 4);
    EXPECT_TRUE(Says("could not be started") || Says("ended with code")) << streams.Read("err");
}

TEST_F(Launcher, AnErrorThatTheLogTellsIsAFailureWhateverTheExitCode)
{
    folder.Write("inputls.dyn", kDeck);
    streams.Write("results", OneFile(Small(), {0.0, 0.5, 1.0}));
    std::string const times =
        "for i in 1 2 3 4 5 6 7 8 9; do echo 'Elapsed time of something or other 12345 seconds'; done";
    std::string const copy = "cp '" + streams.Path("results") + "' d3plot; ";
    EXPECT_EQ(Start(Folder() + " 3", Solver(copy + "echo ' E r r o r   t e r m i n a t i o n'; " + times)), 4);
    EXPECT_TRUE(Says("the solver ended with an error"));
    EXPECT_TRUE(Says("3 of 3 records")) << "what is whole is there";
    EXPECT_EQ(Start(Folder() + " 3", Solver(copy + "echo ' N o r m a l    t e r m i n a t i o n'; " + times)), 0);
}

TEST_F(Launcher, ResultsThatLieThereCanBeConvertedAlone)
{
    folder.Write("inputls.dyn", kDeck);
    folder.Write("d3plot", OneFile(Small(), {0.0, 0.5}));
    EXPECT_EQ(Start("--convert " + Folder() + " 3", "VOZDynaSolver=/none"), 4);
    EXPECT_TRUE(Says("2 of 3 records; no state for output points 2"));
    EXPECT_EQ(recordsIn(folder.Read("output.voz")).size(), 2U);
    EXPECT_TRUE(std::filesystem::exists(folder.Path("d3plot")));
    EXPECT_EQ(Start("--convert " + Folder() + " 2", "VOZDynaSolver=/none"), 4) << "0 and the end, which is not there";
}

TEST_F(Launcher, RecordsThatCannotBeWrittenAreFive)
{
    folder.Write("inputls.dyn", kDeck);
    folder.Write("d3plot", OneFile(Small(), {0.0}));
    std::filesystem::create_directories(folder.Path("output.voz.new"));
    EXPECT_EQ(Start("--convert " + Folder() + " 1"), 5);
    EXPECT_TRUE(Says("could not be written"));
    EXPECT_NE(Status().find("state=failed"), std::string::npos);
}
} // namespace
