// KeywordPadsAndBeadsTest.cpp: pressure pads and draw beads of the keyword deck.

#include "DeckJobs.h"
#include "FailingNew.h"
#include "KeywordFixture.h"

#include <gmock/gmock.h>

using deckjobs::readFile;
using keyworddeck::Block;
using keyworddeck::Card;
using keyworddeck::Deck;
using keywordjob::Driver;
using keywordjob::Numbers;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

namespace
{
// The driver's own operations, on a stream of the test's.
class PadDriver : public Driver
{
public:
    using Driver::Driver;
    using Driver::WritePressurePadData;
    using Driver::WriteXYforPressurePad;
    using Driver::WriteXYZDrawBead;

    int counter() const { return m_nBeadNodeCounter; }

    template <class Write>
    std::string text(Write i_write)
    {
        m_pStream = std::fopen("part.txt", "w");
        i_write();
        std::fclose(m_pStream);
        m_pStream = nullptr;
        return readFile("part.txt");
    }
};

class KeywordPadsAndBeads : public KeywordFixture
{
};

std::vector<double> const kTriangle = {0, 0, 0, 100, 0, 5, 0, 100, 9};
} // namespace

TEST_F(KeywordPadsAndBeads, PadCardsStandInTheirColumns)
{
    numbers.pads = {{1.5e6, kTriangle}, {2.5e5, kTriangle}};
    Deck const deck = this->deck();
    auto const masks = deck.all("LOAD_MASK");
    ASSERT_EQ(masks.size(), 2U);
    std::vector<std::string> const fields = {"PID", "LCID", "VID1", "OFF", "BOXID", "LCIDM", "VID2", "INOUT"};
    EXPECT_THAT(masks[0]->card(0).reals(fields), ElementsAre(5, 800, 555, 0, 0, 801, 555, 0));
    EXPECT_THAT(masks[1]->card(0).reals(fields), ElementsAre(5, 803, 555, 0, 0, 804, 555, 0));
    EXPECT_EQ(masks[0]->card(1).integer("ICYCLE"), 50);
    EXPECT_THAT(deck.curve(800), ElementsAre(Pair(0, 0), Pair(numbers.closeTime, 1.5e6), Pair(0.021, 1.5e6)));
    EXPECT_THAT(deck.curve(801), ElementsAre(Pair(0, 0), Pair(0.1, 0), Pair(0, 0.1))); // metres, z left out
    EXPECT_THROW(deck.curve(802), std::runtime_error);
    for (Block const * const curve : deck.all("DEFINE_CURVE"))
        if (int const id = curve->card(0).integer("LCID"); id == 801 || id == 804)
        {
            EXPECT_THAT(curve->card(0).reals({"SIDR", "SFA", "SFO", "OFFA", "OFFO", "DATTYP"}),
                        ElementsAre(0, 1, 1, 0, 0, 1));
        }
}

TEST_F(KeywordPadsAndBeads, AnOutlineIsThinnedUnlessTooLittleWouldBeLeft)
{
    // The point in the middle of a side goes; of a triangle with such a point nothing does.
    numbers.pads = {{1.0, {0, 0, 0, 50, 0, 0, 100, 0, 0, 100, 100, 0, 0, 100, 0, 0, 0, 0}},
                    {1.0, {0, 0, 0, 50, 0, 0, 100, 0, 0, 0, 100, 0}}};
    Deck const deck = this->deck();
    EXPECT_THAT(deck.curve(801), ElementsAre(Pair(0, 0), Pair(0.1, 0), Pair(0.1, 0.1), Pair(0, 0.1), Pair(0, 0)));
    EXPECT_EQ(deck.curve(804).size(), 4U);
}

TEST_F(KeywordPadsAndBeads, AnOutlineIsSeenAlongTheStampingDirection)
{
    numbers.tip[0] = 1.0;
    numbers.tip[2] = 0.0;
    numbers.pads = {{1.0, {7, 0, 0, 8, 100, 0, 9, 0, 50}}}; // in the plane across x
    auto const rows = deck().curve(801);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_NEAR(std::hypot(rows[0].first, rows[0].second), 0.0, 1e-12);
    EXPECT_NEAR(std::hypot(rows[1].first, rows[1].second), 0.1, 1e-9);
    EXPECT_NEAR(std::hypot(rows[2].first, rows[2].second), 0.05, 1e-9);
}

TEST_F(KeywordPadsAndBeads, APadOfTwoPointsIsReportedAndSkippedWithItsNumbers)
{
    numbers.pads = {{1.0, {0, 0, 0, 1, 1, 1}}, {2.0, kTriangle}};
    Deck const deck = this->deck();
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:nNumPoints > 2"));
    EXPECT_EQ(deck.one("LOAD_MASK").card(0).integer("LCID"), 803);
}

TEST_F(KeywordPadsAndBeads, AnOutlineInOnePlaceIsReportedAndStays)
{
    numbers.pads = {{1.0, std::vector<double>(12, 5.0)}};
    EXPECT_EQ(deck().curve(801).size(), 4U);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:dScale != 0.0"));
}

TEST_F(KeywordPadsAndBeads, PadsThatAreMissingAreReported)
{
    PadDriver driver(numbers);
    EXPECT_EQ(driver.text([&] { driver.WriteXYforPressurePad(3, nullptr); }), "");
    EXPECT_THAT(driver.text([&] { driver.WritePressurePadData(); }), HasSubstr("(7)   DEFINE PRESSURE PAD"));
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:i_padPointsXYZ",
                                        "AssertionFailed:m_pElemProperty->getNbPressurePads() > 0"));
}

TEST_F(KeywordPadsAndBeads, AnOutlineWithoutMemoryIsReported)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library keeps to its own operators";
    PadDriver driver(numbers);
    EXPECT_EQ(driver.text(
                  [&]
                  {
                      FailingNew const failing(1);
                      driver.WriteXYforPressurePad(3, kTriangle.data());
                  }),
              "");
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:padPointsXYZ"));
}

TEST_F(KeywordPadsAndBeads, WithoutAProcessThereAreNeitherPadsNorBeads)
{
    struct Bare : VOZSolverIncremental
    {
        void write(std::string & o_pads, std::string & o_beads)
        {
            m_pStream = std::fopen("part.txt", "w");
            WritePressurePadData();
            std::fclose(m_pStream);
            o_pads = readFile("part.txt");
            m_pStream = std::fopen("part.txt", "w");
            int last = 17;
            WriteDrawBeadData();
            WriteXYZDrawBead(11, 18, &last, 1);
            std::fclose(m_pStream);
            m_pStream = nullptr;
            o_beads = readFile("part.txt");
        }
    };
    std::string pads, beads;
    Bare().write(pads, beads);
    EXPECT_THAT(pads, HasSubstr("(7)   DEFINE PRESSURE PAD"));
    EXPECT_THAT(beads, HasSubstr("(8)   DEFINE DRAW BEAD DATA"));
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:m_pElemProperty->getNbPressurePads() > 0",
                                        "AssertionFailed:1<=i_nDrawBeadPos && "
                                        "i_nDrawBeadPos<=m_pElemProperty->sizeDrawBeads()"));
}

TEST_F(KeywordPadsAndBeads, PadsThatAreCountedAloneAreSkipped)
{
    PadDriver driver(numbers);
    driver.property.clearPressPads();
    driver.property.setNbPressurePads(2);
    ASSERT_EQ(driver.write(), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:nNumPoints > 2", "AssertionFailed:nNumPoints > 2"));
}

TEST_F(KeywordPadsAndBeads, APadAgainstTheStampingDirectionNamesTheOppositeVector)
{
    PadDriver driver(numbers);
    std::string const text = driver.text([&] { driver.WritePressurePadData(800, 1.0, false); });
    EXPECT_THAT(text, HasSubstr("         5       800       557         0         0       801       555         0\n"));
}

TEST_F(KeywordPadsAndBeads, BeadCardsStandInTheirColumns)
{
    numbers.beads = {{1.2e5, {1, 2, 3, 4.5, -5, 6}}};
    numbers.frictionPunch = 0.2;
    numbers.frictionDie = 0.3;
    numbers.offsetDie = -0.0007;
    Deck const deck = this->deck();
    Block const & nodes = *deck.all("NODE").front();
    ASSERT_EQ(nodes.cards.size(), 2U);
    EXPECT_THAT(nodes.card(0).reals({"NID", "X", "Y", "Z"}), ElementsAre(10000001, 0.001, 0.002, 0.003));
    EXPECT_THAT(nodes.card(1).reals({"NID", "X", "Y", "Z"}), ElementsAre(10000002, 0.0045, -0.005, 0.006));
    Block const & set = deck.one("SET_NODE_LIST_GENERATE");
    EXPECT_EQ(set.card(0).integer("SID"), 11);
    EXPECT_THAT(set.card(1).reals({"B1BEG", "B1END"}), ElementsAre(10000001, 10000002));
    EXPECT_THAT(deck.one("CONSTRAINED_EXTRA_NODES_SET").card(0).reals({"PID", "NSID"}), ElementsAre(1, 11));
    Block const & contact = deck.one("CONTACT_DRAWBEAD");
    EXPECT_THAT(contact.card(0).reals({"SSID", "MSID", "SSTYP", "MSTYP", "SBOXID", "MBOXID", "SPR", "MPR"}),
                ElementsAre(11, 5, 4, 3, 0, 11, 1, 1));
    EXPECT_THAT(contact.card(1).reals({"FS", "VC", "VDC"}), ElementsAre(0.2, 0, 0));
    EXPECT_EQ(contact.card(2).real("MST"), -0.0014);
    EXPECT_THAT(contact.card(3).reals({"LCIDRF", "LCIDNF", "DBDTH"}), ElementsAre(900, 0, 8e-4));
    EXPECT_EQ(contact.card(3).text("DBDTH"), "8.000E-04");
    EXPECT_THAT(deck.curve(900), ElementsAre(Pair(0, 1.2e5), Pair(8e-4, 1.2e5)));
    EXPECT_THAT(deck.one("DEFINE_BOX_DRAWBEAD").card(0).reals({"BOXID", "PID", "SID", "IDIR"}),
                ElementsAre(11, 5, 11, 3));
}

TEST_F(KeywordPadsAndBeads, BeadsNumberTheirNodesOneAfterTheOther)
{
    numbers.beads = {{1.0, std::vector<double>(15, 1.0)}, {1.0, std::vector<double>(21, 1.0)}};
    PadDriver driver(numbers);
    ASSERT_EQ(driver.write(), 0);
    EXPECT_EQ(driver.counter(), 10000013);
    Deck const deck = this->deck();
    auto const sets = deck.all("SET_NODE_LIST_GENERATE");
    EXPECT_THAT(sets.at(0)->card(1).reals({"B1BEG", "B1END"}), ElementsAre(10000001, 10000005));
    EXPECT_THAT(sets.at(1)->card(1).reals({"B1BEG", "B1END"}), ElementsAre(10000006, 10000012));
    EXPECT_EQ(sets.at(1)->card(0).integer("SID"), 12);
}

TEST_F(KeywordPadsAndBeads, ABeadWithoutPointsHasASetThatEndsAheadOfItsBegin)
{
    numbers.beads = {{1.0, {}}, {1.0, {1, 2, 3}}};
    Deck const deck = this->deck();
    auto const sets = deck.all("SET_NODE_LIST_GENERATE");
    EXPECT_THAT(sets.at(0)->card(1).reals({"B1BEG", "B1END"}), ElementsAre(10000001, 10000000));
    EXPECT_THAT(sets.at(1)->card(1).reals({"B1BEG", "B1END"}), ElementsAre(10000001, 10000001));
}

TEST_F(KeywordPadsAndBeads, ABeadThatIsNotThereIsReported)
{
    numbers.beads = {{1.0, {1, 2, 3}}};
    PadDriver driver(numbers);
    int last = 17;
    for (int position : {0, 2})
        EXPECT_THAT(driver.text([&] { driver.WriteXYZDrawBead(11, 18, &last, position); }), HasSubstr("*NODE\n"));
    EXPECT_EQ(last, 17);
    EXPECT_EQ(reported(), std::vector<std::string>(2, "AssertionFailed:1<=i_nDrawBeadPos && "
                                                      "i_nDrawBeadPos<=m_pElemProperty->sizeDrawBeads()"));
}
