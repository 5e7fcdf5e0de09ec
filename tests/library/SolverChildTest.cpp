// SolverChildTest.cpp: the child process: its command line, what is printed, what is returned.

#include "DeckJobs.h"
#include "FolderFixture.h"

#include "VOZStatus.h"

#include <gmock/gmock.h>

using deckjobs::goldenFolder;
using deckjobs::Job;
using deckjobs::readFile;
using deckjobs::writeFile;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

#if !defined(_WIN32)
namespace
{
class SolverChild : public FolderFixture
{
protected:
    SolverChild() : job(goldenFolder() / "plain.json") {}

    // A program that writes its arguments, one in a line, to a file, and then does as the last line says.
    void script(std::string const & name, std::string const & last)
    {
        writeFile(name, "#!/bin/sh\nfor a in \"$@\"; do echo \"$a\"; done > arguments\n" + last + "\n");
        std::filesystem::permissions(name, std::filesystem::perms::owner_all);
    }
    // What a call prints, and what it returns.
    template <class Call>
    std::string printed(Call call, int & o_result)
    {
        testing::internal::CaptureStdout();
        o_result = call();
        return testing::internal::GetCapturedStdout();
    }
    int run(std::string const & program) { return job.solver("solver folder").run(program.c_str(), "my deck.fpi"); }
    int runSpringback(std::string const & program)
    {
        return job.solver("solver folder").run_spb(program.c_str(), "my deck.spi");
    }

    Job job;
    int result = -1;
};
} // namespace

TEST_F(SolverChild, GetsDeckAndFolderInQuotes)
{
    script("program", "");
    EXPECT_EQ(run("./program"), 0);
    EXPECT_EQ(readFile("arguments"), "-pfpi\nmy deck.fpi\n-sd\nsolver folder\n");
}

TEST_F(SolverChild, IsAnnouncedWithItsNameAndTwoAddresses)
{
    script("program", "");
    std::string const text = printed([&] { return run("./program"); }, result);
    EXPECT_EQ(result, 0);
    EXPECT_THAT(text, MatchesRegex("Program Name: ./program\n0x[0-9a-f]+\n0x[0-9a-f]+\n"));
}

TEST_F(SolverChild, IsWaitedFor)
{
    script("program", "sleep 0.2; echo done >> arguments");
    EXPECT_EQ(run("./program"), 0);
    EXPECT_THAT(readFile("arguments"), EndsWith("done\n"));
}

TEST_F(SolverChild, MayFailOrCrashUnnoticed)
{
    script("fails", "exit 3");
    EXPECT_EQ(run("./fails"), 0);
    script("crashes", "kill -SEGV $$");
    EXPECT_EQ(run("./crashes"), 0);
}

TEST_F(SolverChild, IsNotQuotedByRun)
{
    script("my program", "");
    std::string const text = printed([&] { return run("./my program"); }, result);
    EXPECT_EQ(result, 1); // there is no "./my"
    EXPECT_THAT(text, EndsWith("Cannot create Process!\n"));
    EXPECT_EQ(run("\"./my program\""), 0);
    EXPECT_EQ(readFile("arguments"), "-pfpi\nmy deck.fpi\n-sd\nsolver folder\n");
}

TEST_F(SolverChild, IsNotStartedWithoutAConfigurationPath)
{
    script("program", "");
    host.environment.clear();
    EXPECT_EQ(run("./program"), E_FAIL);
    host.environment["VOZDRAVO3D"] = "ab"; // a root of two characters counts as missing
    std::string const text = printed([&] { return run("./program"); }, result);
    EXPECT_EQ(result, E_FAIL);
    EXPECT_EQ(text, "");
    EXPECT_FALSE(std::filesystem::exists("arguments"));
}

TEST_F(SolverChild, IsStartedWhateverSolverRamSays)
{
    script("program", "");
    config("SolverRam=12\n");
    EXPECT_EQ(run("./program"), 0);
    std::filesystem::remove("config.cfg");
    EXPECT_EQ(run("./program"), 0);
    EXPECT_EQ(readFile("arguments"), "-pfpi\nmy deck.fpi\n-sd\nsolver folder\n");
}

TEST_F(SolverChild, IsNotStartedByACommandThatDoesNotFit)
{
    script("program", "");
    std::string const text = printed([&] { return run("./program " + std::string(1100, 'x')); }, result);
    EXPECT_EQ(result, 1);
    EXPECT_THAT(text, StartsWith("Program Name: "));
    EXPECT_THAT(text, EndsWith("Cannot create Process!\n"));
    EXPECT_FALSE(std::filesystem::exists("arguments"));

    std::string command(3000, 'x');
    EXPECT_EQ(printed([&] { return job.solver().PrepAndLaunchRedirectedChild(command.data()); }, result).substr(0, 2),
              "0x");
    EXPECT_EQ(result, 1);
}

TEST_F(SolverChild, OfSpringbackIsStartedThroughTheInterpreterWithoutAnyConfiguration)
{
    script("program", "exit 3");
    host.environment.clear();
    std::string const text = printed([&] { return runSpringback("./program"); }, result);
    EXPECT_EQ(result, 3);
    EXPECT_EQ(text, "");
    EXPECT_EQ(readFile("arguments"), "-pspi\nmy deck.spi\n-sd\nsolver folder\n");
}

TEST_F(SolverChild, GetsAtMost255CharactersOfTheFolder)
{
    script("program", "");
    EXPECT_EQ(job.solver(std::string(400, 'f')).run("./program", "deck.fpi"), 0);
    EXPECT_EQ(readFile("arguments"), "-pfpi\ndeck.fpi\n-sd\n" + std::string(255, 'f') + "\n");
}
#endif
