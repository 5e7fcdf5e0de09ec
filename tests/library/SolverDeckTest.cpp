// SolverDeckTest.cpp: the one-step deck, byte for byte.
//
// Whole decks stand in tests/golden/deck, each with its job and a note on what was checked in it. The writer in
// reference_deck.py shares nothing with the library's; both must make the same bytes of random jobs.

#include "CommaLocale.h"
#include "DeckJobs.h"
#include "FolderFixture.h"

#include "CATError.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <limits>

using deckjobs::blockOf;
using deckjobs::firstDifference;
using deckjobs::goldenFolder;
using deckjobs::Job;
using deckjobs::Json;
using deckjobs::linesOf;
using deckjobs::readFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
constexpr char kHolderBlock[] = "block XII: blankholder force";
constexpr char kBeadBlock[] = "block XVII: drawbead tables";
constexpr char kDispBlock[] = "block VIII: nodal displacement tables";

class SolverDeck : public FolderFixture
{
protected:
    // The deck of a job under the name that stands in its header.
    std::string deckOf(Job & job, std::string const & name = "deck.fpi")
    {
        config(job.config);
        EXPECT_EQ(job.write(name), 0);
        return readFile(name);
    }
    static Json golden(std::string const & name) { return Json::parse(readFile(goldenFolder() / (name + ".json"))); }
};

class SolverDeckGolden : public SolverDeck, public testing::WithParamInterface<char const *>
{
};
} // namespace

TEST_P(SolverDeckGolden, IsWrittenByteForByte)
{
    std::string const name = GetParam();
    Job job(goldenFolder() / (name + ".json"));
    EXPECT_EQ(firstDifference(readFile(goldenFolder() / (name + ".golden")), deckOf(job, name + ".fpi")), "");
}

INSTANTIATE_TEST_SUITE_P(Decks, SolverDeckGolden,
                         testing::Values("plain", "no_material", "bare", "half_xz", "half_yz", "quarter", "holders",
                                         "little_friction", "full_holder"),
                         [](auto const & deck) { return std::string(deck.param); });

#if !defined(_WIN32)
TEST_F(SolverDeck, AgreesWithTheReferenceWriterOnRandomJobs)
{
    for (char const * seed : {"1", "20261121"})
    {
        std::string const command =
            "python3 \"" + (goldenFolder() / "reference_deck.py").string() + "\" --random " + seed + " 120 .";
        ASSERT_EQ(std::system(command.c_str()), 0);
        for (int i = 1; i <= 120; ++i)
        {
            char stem[32];
            std::snprintf(stem, sizeof stem, "random_%04d", i);
            Job job(folder / (std::string(stem) + ".json"));
            std::string const wanted = readFile(folder / (std::string(stem) + ".golden"));
            ASSERT_EQ(firstDifference(wanted, deckOf(job, std::string(stem) + ".fpi")), "")
                << "seed " << seed << ", " << stem;
        }
    }
}

#endif

TEST_F(SolverDeck, IsTheSameUnderALocaleWithADecimalComma)
{
    Job job(goldenFolder() / "full_holder.json");
    config(job.config);
    std::string during;
    {
        CommaLocale const comma;
        if (std::localeconv()->decimal_point[0] != ',')
            GTEST_SKIP() << "this system has no locale with a decimal comma";
        ASSERT_EQ(job.write("full_holder.fpi"), 0);
        EXPECT_STREQ(std::localeconv()->decimal_point, ","); // still the user's
        during = readFile("full_holder.fpi");
    }
    EXPECT_EQ(firstDifference(readFile(goldenFolder() / "full_holder.golden"), during), "");
}

TEST_F(SolverDeck, KnowsPositionsOnlyWhateverTheLabels)
{
    Json json = golden("plain");
    Job labelled(json);
    json["firstNode"] = 0;
    json["firstElem"] = 0;
    Job plain(json);
    EXPECT_EQ(deckOf(labelled), deckOf(plain));
}

TEST_F(SolverDeck, ShowsTheFileNameAsGiven)
{
    Job job(goldenFolder() / "plain.json");
    std::filesystem::create_directory("sub");
    ASSERT_EQ(job.solver().write("sub\\deck.fpi", false, false, 0), 0);
    EXPECT_EQ(linesOf(readFile("sub/deck.fpi")).front(), "DRAVO3D - version 5.0 - sub\\deck.fpi");
}

TEST_F(SolverDeck, IgnoresTheControlFlagWithoutRestraintsButNotTheValue)
{
    Job job(goldenFolder() / "bare.json");
    for (bool const flag : {false, true})
    {
        ASSERT_EQ(job.solver().write("deck.fpi", true, flag, 11), 0);
        std::vector<std::string> const lines = blockOf(readFile("deck.fpi"), "block II: control line");
        ASSERT_EQ(lines.size(), 7u);
        EXPECT_EQ(lines[0], "6 2 2 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 2 0 0 0 0 0 0 0 0 0 1");
        EXPECT_EQ(lines[5], "0 0 0 0 11 1");
    }
}

TEST_F(SolverDeck, HasAnEmptyHolderBlockWithoutAnyHolder)
{
    Job job(goldenFolder() / "plain.json");
    EXPECT_THAT(blockOf(deckOf(job), kHolderBlock), IsEmpty());
}

TEST_F(SolverDeck, NumbersSingleHoldersBehindTheFullOneAndItsLoops)
{
    Json json = golden("full_holder");
    json["holders"].push_back({{"force", 2000.0}, {"edges", {{1, 1, 2}}}});
    Job job(json);
    std::vector<std::string> const lines = blockOf(deckOf(job), kHolderBlock);
    EXPECT_EQ(lines[3], "4 1 2000.000000 2 0.150000 1.000000 1 4 0 0 1");
}

TEST_F(SolverDeck, KeepsTheLastLoopForceWhereTheFullHolderHasNoLength)
{
    // Without an install root there is no configuration, and force, restraint and length are all 0.
    Job job(goldenFolder() / "full_holder.json");
    host.environment.clear();
    ASSERT_EQ(job.write("deck.fpi"), 0);
    std::vector<std::string> const lines = blockOf(readFile("deck.fpi"), kHolderBlock);
    EXPECT_EQ(lines[0], "1 7 0.000000 2 0.150000 0.000000 1 1 0 0 1");
    EXPECT_EQ(lines[1], "2 4 0.000000 2 0.150000 4.000000 1 2 0 0 1");
    EXPECT_EQ(lines[4], "0 0.000000 0 0.000000 0 0.000000");
}

TEST_F(SolverDeck, WritesALockAsTheEnormousForceThatItIs)
{
    Json json = golden("full_holder");
    json["full"]["option"] = 4;
    Job job(json);
    std::vector<std::string> const lines = blockOf(deckOf(job), kHolderBlock);
    EXPECT_EQ(lines[4], "0 889644000000000.000000 0 889644000000000.000000 0 889644000000000.000000");
}

TEST_F(SolverDeck, WritesAHeadForATableWithoutNodes)
{
    Json json = golden("half_xz");
    json["dispBCs"][0]["nodes"] = Json::array();
    Job job(json);
    EXPECT_THAT(blockOf(deckOf(job), kDispBlock), ElementsAre("1 0 0 -1 1 0", "2 0 3 -2 1 0"));
}

TEST_F(SolverDeck, WritesANegativeZeroWithoutDecimals)
{
    Json json = golden("half_xz");
    json["dispBCs"][0]["values"] = {-0.0, 1.0e-9, 0.0, -0.0, 0.0, 1.0e-9};
    Job job(json);
    EXPECT_EQ(blockOf(deckOf(job), kDispBlock).back(), "5 110001 0 0.000000 0 0 0 0.000000 0");
}

TEST_F(SolverDeck, TakesNumbersOfEverySize)
{
    Json json = golden("holders");
    Job job(json);
    double const largest = std::numeric_limits<double>::max();
    job.property.drawBeads(2).force = largest;
    job.property.pressPadVal(1, std::numeric_limits<double>::infinity());
    job.property.pressPadVal(2, -largest);
    std::string const deck = deckOf(job);
    EXPECT_EQ(blockOf(deck, "block IX PRESSURE PAD")[1], "1 2 inf 1 1");
    std::string const shown = blockOf(deck, kBeadBlock)[2].substr(std::string("2 0 2 ").size());
    EXPECT_NEAR(std::strtod(shown.c_str(), nullptr) / largest, 1.0, 1.0e-6);
}

TEST_F(SolverDeck, ReturnsOneWhereTheFileCannotBeOpened)
{
    Job job(goldenFolder() / "plain.json");
    EXPECT_EQ(job.write(folder / "no such folder" / "deck.fpi"), 1);
    EXPECT_EQ(job.write(folder), 1); // a folder
    EXPECT_FALSE(std::filesystem::exists(folder / "no such folder"));
}

TEST_F(SolverDeck, ReturnsTwoAndLeavesAnEmptyFileWhereTheBoundaryIsNoSetOfLoops)
{
    //       6---7
    //       | 2 |
    //   4---3---5      node 3 has four free edges
    //   | 1 |
    //   1---2
    Json json = golden("plain");
    json["nodes"] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 1, 0}, {1, 2, 0}, {2, 2, 0}};
    json["elems"] = {{1, 2, 3, 4}, {3, 5, 7, 6}};
    json["propertyIndex"] = {1, 1};
    Job job(json);
    EXPECT_EQ(job.write("deck.fpi"), 2);
    ASSERT_TRUE(std::filesystem::exists("deck.fpi"));
    EXPECT_EQ(std::filesystem::file_size("deck.fpi"), 0u);
}

TEST_F(SolverDeck, ReturnsTwoForAMeshWithoutElements)
{
    Json json = golden("plain");
    json["elems"] = Json::array();
    json["propertyIndex"] = Json::array();
    Job job(json);
    EXPECT_EQ(job.write("deck.fpi"), 2);
}

#if !defined(_WIN32)
TEST_F(SolverDeck, ReturnsZeroWhateverTheStreamDoes)
{
    Job job(goldenFolder() / "plain.json");
    EXPECT_EQ(job.write("/dev/full"), 0);
}
#endif

namespace
{
// Marks in the stream where its operations are called.
class MarkingSolver : public Solver
{
public:
    explicit MarkingSolver(Solver const & i_solver) : Solver(i_solver) {}

    void write_blankholders_head(std::FILE * io_file, bool i_skip, int i_idOffset) override
    {
        std::fprintf(io_file, "heads %d %d\n", i_skip ? 1 : 0, i_idOffset);
    }
    void write_blankholders(std::FILE * io_file, bool i_skip) override
    {
        std::fprintf(io_file, "edges %d\n", i_skip ? 1 : 0);
    }
    void write_drawbeads(std::FILE * io_file, bool i_skip) override
    {
        if (throws)
            throw CATError("no beads today", "SolverDeckTest", 1);
        std::fprintf(io_file, "beads %d\n", i_skip ? 1 : 0);
    }
    using Solver::tokens;

    bool throws = false;
};
} // namespace

TEST_F(SolverDeck, ReachesItsThreeOperationsThroughTheVirtualTableInTheOrderOfTheDeck)
{
    Job job(goldenFolder() / "full_holder.json");
    ASSERT_EQ(MarkingSolver(job.solver()).write("deck.fpi", false, false, 0), 0);
    std::string const deck = readFile("deck.fpi");
    std::vector<std::string> const holders = blockOf(deck, kHolderBlock);
    ASSERT_EQ(holders.size(), 2u + 1u + 2u * 11u + 1u);
    EXPECT_EQ(holders[2], "heads 0 2");
    EXPECT_EQ(holders.back(), "edges 0");
    EXPECT_THAT(blockOf(deck, kBeadBlock), ElementsAre("beads 0"));

    ASSERT_EQ(MarkingSolver(job.solver()).write("deck.fpi", true, false, 0), 0);
    EXPECT_THAT(blockOf(readFile("deck.fpi"), kHolderBlock), ElementsAre("heads 1 0", "edges 1"));
}

TEST_F(SolverDeck, PassesAnErrorOnAndLeavesTheTruncatedDeck)
{
    Job job(goldenFolder() / "plain.json");
    MarkingSolver solver(job.solver());
    solver.throws = true;
    EXPECT_THROW(solver.write("deck.fpi", false, false, 0), CATError);
    EXPECT_EQ(linesOf(readFile("deck.fpi")).back(), kBeadBlock);
}

TEST_F(SolverDeck, CopiesOfASolverWriteTheSameDeck)
{
    Job job(goldenFolder() / "holders.json");
    Solver const original = job.solver();
    Solver copy(original);
    ASSERT_EQ(copy.write("holders.fpi", false, false, 0), 0);
    EXPECT_EQ(firstDifference(readFile(goldenFolder() / "holders.golden"), readFile("holders.fpi")), "");
}
