// OneStepSolverTest.cpp: the solver program by itself: its command line, files, settings, refusals.

#include "OneStepSolverFixture.h"

#include <gmock/gmock.h>

#if !defined(_WIN32)
using namespace sheetjobs;
using deckjobs::goldenFolder;
using deckjobs::readFile;
using deckjobs::writeFile;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(OneStepSolver, WritesTheResultBesideTheDeckInRowsOfFewerThan254Characters)
{
    std::filesystem::create_directory("job");
    SheetJob job(cup(ex::Cells::Quads), Symmetry(true, true));
    ASSERT_EQ(job.solver().write("job/my deck.fpi", false, false, 0), 0);
    Ended const ended = start("-pfpi \"job\\my deck.fpi\" -sd \"job\"");
    EXPECT_EQ(ended.code, 0) << ended.errors;
    EXPECT_THAT(ended.errors, IsEmpty()); // no progress where nobody looks
    EXPECT_THAT(ended.output, HasSubstr("punch force"));
    std::string const text = readFile("job/my deck.fpo");
    std::size_t quads = 0;
    for (int e = 1; e <= job.mesh.numElem(); ++e)
        quads += job.mesh.isTriangle(e) == 0 ? 1 : 0;
    std::vector<std::string> const lines = deckjobs::linesOf(text);
    EXPECT_EQ(lines.size(), 3u + static_cast<std::size_t>(job.mesh.numNode()) + 1u +
                                static_cast<std::size_t>(job.mesh.numElem()) + 3u * quads + 3u);
    for (std::string const & line : lines)
        EXPECT_LT(line.size(), 254u);
    EXPECT_FALSE(std::filesystem::exists("job/my deck.fpo.part"));
}

TEST_F(OneStepSolver, GivesTheSameBytesTwice)
{
    writeCup();
    ASSERT_EQ(start("-pfpi deck.fpi -sd .").code, 0);
    std::string const once = readFile("deck.fpo");
    ASSERT_EQ(start("-sd . -pfpi deck.fpi").code, 0);
    EXPECT_EQ(readFile("deck.fpo"), once);
}

TEST_F(OneStepSolver, TakesWhatTheDeckLacksFromSolverCfg)
{
    writeCup();
    ASSERT_EQ(start("-pfpi deck.fpi").code, 0);
    std::string const steel = readFile("deck.fpo");
    writeFile("solver.cfg", "YoungsModulus=210e9\nPoissonsRatio=0.3\nToolFriction=0\n");
    ASSERT_EQ(start("-pfpi deck.fpi -sd .").code, 0);
    EXPECT_EQ(readFile("deck.fpo"), steel);
    writeFile("solver.cfg", "YoungsModulus=70e9\n");
    ASSERT_EQ(start("-pfpi deck.fpi -sd .").code, 0);
    EXPECT_NE(readFile("deck.fpo"), steel);
    writeFile("solver.cfg", "YoungsModulus=70\n");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 3);
    EXPECT_THAT(ended.errors, HasSubstr("solver.cfg:1: YoungsModulus is 70; expected pascals"));
}

TEST_F(OneStepSolver, RefusesAMalformedDeckAndLeavesNoResultNotEvenAnOlderOne)
{
    writeFile("deck.fpo", "of last week");
    writeFile("deck.fpi", "DRAVO3D - version 5.0 - deck.fpi\n***\nblock II: control line\n1 2\n");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.errors, "OneStepSolver: deck.fpi:4: the first control line has 2 fields; expected 30\n");
    EXPECT_THAT(filesHere(), testing::Not(testing::Contains(HasSubstr(".fpo"))));
}

TEST_F(OneStepSolver, RefusesWhatIsNoDeck)
{
    std::filesystem::create_directory("folder.fpi");
    writeFile("empty.fpi", "");
    for (char const * name : {"folder.fpi", "empty.fpi", "missing.fpi"})
    {
        Ended const ended = start(std::string("-pfpi ") + name + " -sd .");
        EXPECT_EQ(ended.code, 3) << name;
        EXPECT_THAT(ended.errors, HasSubstr(name));
    }
}

TEST_F(OneStepSolver, SaysWhyAPartCannotBeSolved)
{
    // One element without any area.
    std::string deck = readFile(goldenFolder() / "no_material.golden");
    deck.replace(deck.find("3 0.000000 1.000000"), 19, "3 0.000000 0.000000");
    writeFile("deck.fpi", deck);
    writeFile("deck.fpo", "of last week");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 4);
    EXPECT_THAT(ended.errors, HasSubstr("element"));
    EXPECT_THAT(ended.errors, HasSubstr("counted from 0 here, in the deck from 1"));
    EXPECT_FALSE(std::filesystem::exists("deck.fpo"));
}

TEST_F(OneStepSolver, SaysSoWhereTheResultCannotBeWritten)
{
    writeCup();
    std::filesystem::create_directories("deck.fpo/in the way");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 5);
    EXPECT_THAT(ended.errors, HasSubstr("cannot write deck.fpo"));
    EXPECT_FALSE(std::filesystem::exists("deck.fpo.part"));
}

TEST_F(OneStepSolver, SaysSoWhereTheDiskIsFull)
{
    writeCup();
    std::filesystem::create_symlink("/dev/full", "deck.fpo.part");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 5);
    EXPECT_THAT(ended.errors, HasSubstr("cannot write deck.fpo: No space left on device"));
    EXPECT_THAT(filesHere(), testing::Not(testing::Contains(HasSubstr(".fpo"))));
}

// A whole part that nothing holds: only distances are known.
TEST_F(OneStepSolver, ThreePinsHoldAWholePart)
{
    SheetJob job(ex::cup(ex::Cup(), 1, ex::Extent::Whole, ex::Cells::Triangles), Symmetry(false, false));
    ASSERT_EQ(job.solver().write("deck.spi", false, false, 0), 0);
    Ended const ended = start("-pspi deck.spi -sd .");
    EXPECT_EQ(ended.code, 0) << ended.errors;
    EXPECT_THAT(ended.output, HasSubstr("outcome              converged"));
    EXPECT_THAT(readFile("deck-springback.log"), HasSubstr("6 rigid motions are pinned"));
}

TEST_F(OneStepSolver, TellsHowItIsUsed)
{
    EXPECT_EQ(start("--help").code, 0);
    EXPECT_THAT(start("--help").output, AllOf(HasSubstr("-pfpi"), HasSubstr("Exit codes"), HasSubstr("Example")));
    struct Case
    {
        char const * arguments;
        char const * message;
    };
    for (Case const & c :
         {Case{"", "no deck"}, Case{"-sd .", "no deck"}, Case{"-pfpi", "-pfpi has no value"},
          Case{"deck.fpi", "unknown option \"deck.fpi\""}, Case{"-pfpi a.fpi -pfpi b.fpi", "a second deck with -pfpi"},
          Case{"-pspi deck.spi -pfpi deck.fpi -sd .", "a second deck"},
          Case{"-pfpi deck.fpo -sd .", "the extension of results"}})
    {
        Ended const ended = start(c.arguments);
        EXPECT_EQ(ended.code, 2) << c.arguments;
        EXPECT_THAT(ended.errors, HasSubstr(c.message));
    }
}
#endif
