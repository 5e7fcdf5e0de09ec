// KeywordGoldenTest.cpp: the keyword deck, byte for byte.
//
// Whole decks stand in tests/golden/keyword, each read line by line against the format's description. They are the text
// of the second writer (KeywordReference.h), which shares nothing with the library's; with the environment variable
// VOZ_WRITE_KEYWORD_GOLDENS set, the tests write it anew.

#include "DeckJobs.h"
#include "FolderFixture.h"
#include "KeywordDeck.h"
#include "KeywordReference.h"

#include "VOZHost.h"

#include <cstdlib>
#include <random>

using deckjobs::firstDifference;
using deckjobs::readFile;
using deckjobs::writeFile;
using keywordjob::Driver;
using keywordjob::Numbers;

namespace
{
std::vector<double> square(double size, double z)
{
    return {0.0, 0.0, z, 0.5 * size, 0.0, z, size, 0.0, z, size, size, z, 0.0, size, z, 0.0, 0.0, z};
}

void withBinder(Numbers & n)
{
    n.binderForce = 2.0e5;
    n.closeTime = 2.8284271247461901e-4;
}
void twoPads(Numbers & n)
{
    n.pads = {{1.5e6, square(120.0, 10.0)}, {2.0e5, {-10.0, -10.0, 3.0, 40.0, -10.0, 4.0, 15.0, 33.3, 5.0}}};
}
void twoBeads(Numbers & n)
{
    n.beads = {{1.2e5, {0.0, -55.5, 1.25, 10.0, -55.5, 1.25, 20.0, -54.0, 1.5, 30.0, -50.0, 1.75, 40.0, -45.0, 2.0}},
               {9.81e4, {}}};
    n.beads[1].points.assign(21, 12.345678);
    n.offsetDie = -0.0008;
}
void smoothContact(Numbers & n)
{
    withBinder(n);
    n.smooth = true;
}
void noHourglass(Numbers & n)
{
    n.hourglass = 0;
}
void noMassScaling(Numbers & n)
{
    n.massScaling = false;
}
void pointTable(Numbers & n)
{
    n.table = {{0.0, 1.8e8}, {0.05, 2.9e8}, {0.3, 4.4e8}, {1.0, 5.5e8}};
}
void threeOutputs(Numbers & n)
{
    n.outputTimes = {0.0, 0.0125, 0.021};
}
void toolOffsets(Numbers & n)
{
    withBinder(n);
    n.offsetPunch = n.offsetBinder = -0.0008;
    n.asciiInterval = 0.0021;
    n.tip[0] = 0.6;
    n.tip[1] = 0.0;
    n.tip[2] = -0.8;
    n.plateauTime = 0.0;
}
void otherIds(Numbers & n)
{
    withBinder(n);
    twoPads(n);
    twoBeads(n);
    n.die = {11, 12, 13, 14};
    n.punch = {21, 22, 23, 24};
    n.binder = {31, 32, 33, 34};
    n.blank = {51, 52, 53, 54};
    n.vectorId = 700;
    n.punchCurve = 201;
    n.binderCurve = 202;
    n.stressCurve = 203;
    n.firstPadCurve = 300;
    n.firstBeadCurve = 400;
    n.firstBeadSet = 61;
    n.beadNodes = 20000000;
}

struct Golden
{
    char const * name;
    void (*change)(Numbers &);
};
constexpr Golden kGoldens[] = {
    {"no_binder", [](Numbers &) {}},
    {"binder", withBinder},
    {"two_pads", twoPads},
    {"two_beads", twoBeads},
    {"smooth_contact", smoothContact},
    {"no_hourglass", noHourglass},
    {"no_mass_scaling", noMassScaling},
    {"point_table", pointTable},
    {"three_outputs", threeOutputs},
    {"tool_offsets", toolOffsets},
    {"other_ids", otherIds},
};

class KeywordGolden : public FolderFixture, public testing::WithParamInterface<Golden>
{
};
class KeywordRandom : public FolderFixture
{
protected:
    // Settings of all sizes and signs, every switch either way.
    Numbers random(unsigned seed);

    double real(double low, double high) { return std::uniform_real_distribution<double>(low, high)(mEngine); }
    int integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(mEngine); }
    bool coin() { return integer(0, 1) == 1; }
    // Of any magnitude that the deck may meet; 0 now and then.
    double any()
    {
        double const value = std::pow(10.0, real(-12.0, 12.0));
        return integer(0, 9) == 0 ? 0.0 : coin() ? value : -value;
    }
    double positive() { return std::pow(10.0, real(-12.0, 12.0)); }
    std::vector<double> points(int count)
    {
        std::vector<double> values(3 * static_cast<std::size_t>(count));
        for (double & value : values)
            value = real(-900.0, 900.0);
        return values;
    }
    void times(Numbers & n);
    void tools(Numbers & n);
    void sheet(Numbers & n);
    void loads(Numbers & n);

    std::mt19937 mEngine;
};

void KeywordRandom::times(Numbers & n)
{
    n.endTime = any();
    n.rampTime = positive();
    n.plateauTime = coin() ? any() : n.rampTime * 0.001 * real(0.9, 1.1);
    n.closeTime = positive();
    n.velocity = positive();
    n.massStep = positive();
    n.asciiInterval = any();
    n.adaptFrequency = positive();
    n.adaptSize = positive();
    n.adaptEnergy = any();
    n.adaptThickness = any();
    n.adaptLevel = integer(1, 9);
    n.adaptPass = integer(0, 3);
    n.adaptRefine = integer(0, 3);
    n.iadpn90 = integer(-9, 9);
    n.hourglass = integer(0, 3);
    n.massScaling = coin();
    n.outputTimes.resize(static_cast<std::size_t>(integer(0, 30)));
    for (double & time : n.outputTimes)
        time = any();
}

void KeywordRandom::tools(Numbers & n)
{
    for (double * friction : {&n.frictionDie, &n.frictionPunch, &n.frictionBinder})
        *friction = any();
    for (double * offset : {&n.offsetDie, &n.offsetPunch, &n.offsetBinder})
        *offset = coin() ? any() : real(-2e-14, 2e-14);
    for (auto * ids : {&n.die, &n.punch, &n.binder, &n.blank})
        *ids = {integer(1, 99), integer(1, 9999), integer(1, 99999999), integer(1, 999)};
    n.vectorId = integer(1, 99999);
    n.punchCurve = integer(1, 99999);
    n.binderCurve = integer(1, 99999);
    n.stressCurve = integer(1, 99999);
    n.smooth = coin();
    n.blankPoints = integer(1, 11);
    n.toolPoints = integer(1, 11);
    n.toolDensity = coin() ? 1.0 : 10.0;
    for (double & component : n.tip)
        component = real(-1.0, 1.0);
}

void KeywordRandom::sheet(Numbers & n)
{
    n.density = positive();
    n.young = positive();
    n.poisson = real(0.0, 0.5);
    n.yield = positive();
    n.tangent = any();
    n.rValue = positive();
    n.thickness = positive();
    n.beadDepth = any();
    n.nValue = real(0.05, 0.5);
    n.kValue = real(1e8, 1e9);
    n.steps = integer(2, 40);
    n.maxStrain = real(0.1, 2.0);
    n.table.resize(static_cast<std::size_t>(coin() ? integer(1, 12) : 0));
    for (auto & point : n.table)
        point = {any(), any()};
}

void KeywordRandom::loads(Numbers & n)
{
    n.binderForce = any();
    n.firstPadCurve = integer(1, 9999);
    n.firstBeadCurve = integer(1, 9999);
    n.firstBeadSet = integer(1, 9999);
    n.beadNodes = integer(1, 89999999);
    for (int pads = integer(0, 3); pads > 0; --pads)
        n.pads.push_back({any(), points(integer(3, 25))});
    for (int beads = integer(0, 3); beads > 0; --beads)
        n.beads.push_back({any(), points(integer(0, 12))});
    for (std::string * name : {&n.blankName, &n.dieName, &n.punchName, &n.binderName})
        if (integer(0, 4) == 0)
            name->clear();
}

Numbers KeywordRandom::random(unsigned seed)
{
    mEngine.seed(seed);
    Numbers n;
    times(n);
    tools(n);
    sheet(n);
    loads(n);
    return n;
}

// The words of a deck of the reader's, mesh files empty.
void makeMeshFiles(std::filesystem::path const & folder)
{
    for (char const * name : {"VOZBlank.mod", "VOZDie.mod", "VOZPunch.mod", "VOZBinder.mod"})
        writeFile(folder / name, "*NODE\n*END\n");
}
} // namespace

TEST_P(KeywordGolden, IsWrittenByteForByte)
{
    Numbers numbers;
    GetParam().change(numbers);
    std::filesystem::path const golden = std::filesystem::path(VOZ_SOURCE_DIR) / "tests" / "golden" / "keyword" /
                                         (std::string(GetParam().name) + ".dyn");
    if (std::getenv("VOZ_WRITE_KEYWORD_GOLDENS"))
        writeFile(golden, keywordreference::deck(numbers));
    ASSERT_EQ(Driver(numbers).write(), 0);
    EXPECT_EQ(firstDifference(readFile(golden), readFile("inputls.dyn")), "");
}

TEST_P(KeywordGolden, ParsesByTheColumnsOfItsCards)
{
    Numbers numbers;
    GetParam().change(numbers);
    ASSERT_EQ(Driver(numbers).write(), 0);
    makeMeshFiles(folder);
    EXPECT_NO_THROW(keyworddeck::Deck("inputls.dyn"));
}

INSTANTIATE_TEST_SUITE_P(Decks, KeywordGolden, testing::ValuesIn(kGoldens),
                         [](auto const & deck) { return std::string(deck.param.name); });

TEST_F(KeywordRandom, TheSecondWriterMakesTheSameBytes)
{
    for (unsigned seed = 1; seed <= 600; ++seed)
    {
        Numbers const numbers = random(seed);
        ASSERT_EQ(Driver(numbers).write(), 0);
        ASSERT_EQ(firstDifference(keywordreference::deck(numbers), readFile("inputls.dyn")), "") << "seed " << seed;
    }
}

TEST_F(KeywordRandom, EveryDeckParsesByTheColumnsOfItsCards)
{
    makeMeshFiles(folder);
    for (unsigned seed = 1; seed <= 200; ++seed)
    {
        ASSERT_EQ(Driver(random(seed)).write(), 0);
        ASSERT_NO_THROW(keyworddeck::Deck("inputls.dyn")) << "seed " << seed;
    }
}
