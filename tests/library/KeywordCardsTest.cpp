// KeywordCardsTest.cpp: what the cards of the keyword deck say, field by field, and where a card is left out.

#include "KeywordFixture.h"

#include <gmock/gmock.h>

using keyworddeck::Block;
using keyworddeck::Card;
using keyworddeck::Deck;
using keywordjob::Driver;
using keywordjob::Numbers;
using testing::ElementsAre;
using testing::Pair;

namespace
{
class KeywordCards : public KeywordFixture
{
};

// The card with that number in that field.
Card const & withNumber(std::vector<Block const *> const & blocks, std::size_t card, std::string const & field, int id)
{
    for (Block const * const block : blocks)
        if (block->card(card).integer(field) == id)
            return block->card(card);
    throw std::runtime_error("there is no card with " + field + " " + std::to_string(id));
}

// Tells which blocks were asked for.
class Recording : public Driver
{
public:
    using Driver::Driver;
    std::vector<std::string> calls;

protected:
#define RECORD(block)                                                                                                  \
    void block() override                                                                                              \
    {                                                                                                                  \
        calls.push_back(#block);                                                                                       \
    }
    RECORD(WriteTitleBlock)
    RECORD(WriteControlCardsData)
    RECORD(WriteASCIIOutputControlCards)
    RECORD(WriteBINARYOutputControlCards)
    RECORD(WriteCONTROL_BULK_VISCOSITY_Card)
    RECORD(WriteLocalCoordinateSystemDefinitionBlock)
    RECORD(WriteToolingTitleBlock)
    RECORD(WriteBlankDataBlock)
    RECORD(WriteCurveBlankStressStrain)
    RECORD(WriteDieDataBlock)
    RECORD(WritePunchDataBlock)
    RECORD(WriteCurveLoadPunch)
    RECORD(WriteBlankHolderDataBlock)
    RECORD(WriteCurveLoadBHolder)
    RECORD(WritePressurePadData)
    RECORD(WriteDrawBeadData)
    RECORD(WriteIncludedBlankToolingMeshFiles)
#undef RECORD
    using Driver::WriteDrawBeadData;
    using Driver::WritePressurePadData;
};
} // namespace

TEST_F(KeywordCards, BlocksAreAskedForInTheOrderOfTheDeck)
{
    numbers.binderForce = 1.0;
    numbers.pads = {{1.0, std::vector<double>(9)}};
    numbers.beads = {{1.0, {}}};
    Recording all(numbers);
    ASSERT_EQ(all.write(), 0);
    EXPECT_THAT(all.calls, ElementsAre("WriteTitleBlock", "WriteControlCardsData", "WriteASCIIOutputControlCards",
                                       "WriteBINARYOutputControlCards", "WriteCONTROL_BULK_VISCOSITY_Card",
                                       "WriteLocalCoordinateSystemDefinitionBlock", "WriteToolingTitleBlock",
                                       "WriteBlankDataBlock", "WriteCurveBlankStressStrain", "WriteDieDataBlock",
                                       "WritePunchDataBlock", "WriteCurveLoadPunch", "WriteBlankHolderDataBlock",
                                       "WriteCurveLoadBHolder", "WritePressurePadData", "WriteDrawBeadData",
                                       "WriteIncludedBlankToolingMeshFiles"));
    numbers = Numbers();
    numbers.binderForce = -1.0;
    Recording few(numbers);
    ASSERT_EQ(few.write(), 0);
    EXPECT_EQ(few.calls.size(), 13U);
    EXPECT_THAT(few.calls, testing::Not(testing::Contains("WriteBlankHolderDataBlock")));
}

TEST_F(KeywordCards, ControlCardsStandInTheirColumns)
{
    numbers.endTime = 0.0215;
    numbers.massStep = 1.25e-7;
    Deck const deck = this->deck();
    EXPECT_EQ(deck.one("CONTROL_TERMINATION").card(0).real("ENDTIM"), 0.0215);
    Block const & step = deck.one("CONTROL_TIMESTEP");
    EXPECT_THAT(step.card(0).reals({"DTINIT", "TSSFAC", "ISDO", "TSLIMT", "DT2MS"}),
                ElementsAre(0.0, 0.9, 0.0, 0.0, -1.25e-7));
    EXPECT_TRUE(step.card(0).blank("LCTM"));
    EXPECT_EQ(step.card(1).integer("IMSCL"), 1);
    EXPECT_EQ(deck.one("CONTROL_HOURGLASS").card(0).integer("IHQ"), 4);
    EXPECT_THAT(deck.one("CONTROL_SHELL").card(0).reals({"ESORT", "IRNXX", "ISTUPD", "THEORY"}),
                ElementsAre(1, 0, 1, 0));
    EXPECT_THAT(deck.one("CONTROL_CONTACT")
                    .card(0)
                    .reals({"SLSFAC", "RWPNAL", "ISLCHK", "SHLTHK", "PENOPT", "THKCHG", "ORIEN", "ENMASS"}),
                ElementsAre(0.1, 0.0, 2.0, 1.0, 4.0, 0.0, 1.0, 0.0));
    EXPECT_EQ(deck.one("CONTROL_CONTACT").card(1).integer("NSBCS"), 10);
    EXPECT_THAT(deck.one("CONTROL_ENERGY").card(0).reals({"HGEN", "RWEN", "SLNTEN"}), ElementsAre(2, 1, 2));
    EXPECT_EQ(deck.one("CONTROL_OUTPUT").card(0).integer("NPOPT"), 1);
    EXPECT_THAT(deck.one("CONTROL_BULK_VISCOSITY").card(0).reals({"Q1", "Q2", "TYPE"}), ElementsAre(1.5, 0.06, -1.0));
    EXPECT_EQ(deck.one("INTERFACE_SPRINGBACK_DYNA3D").card(0).integer("PSID"), 5);
}

TEST_F(KeywordCards, OutputCardsStandInTheirColumns)
{
    numbers.outputTimes = {0.001, 0.007, 0.02};
    Deck const deck = this->deck();
    Block const & extent = deck.one("DATABASE_EXTENT_BINARY");
    EXPECT_THAT(extent.card(0).reals({"NEIPS", "MAXINT", "STRFLG", "SIGFLG"}), ElementsAre(0, 5, 1, 0));
    EXPECT_THAT(extent.card(1).reals({"CMPFLG", "IEVERP", "BEAMIP", "DCOMP"}), ElementsAre(0, 1, 0, 2));
    EXPECT_EQ(deck.one("DATABASE_BINARY_D3PLOT").card(0).integer("LCDT"), 44);
    EXPECT_EQ(deck.one("DATABASE_BINARY_D3PLOT").card(1).integer("IOOPT"), 3);
    EXPECT_THAT(deck.curve(44), ElementsAre(Pair(0.0, 1.0), Pair(0.007, 2.0)));
    EXPECT_FALSE(deck.has("DATABASE_MATSUM"));
}

TEST_F(KeywordCards, AsciiOutputIsWrittenForAnIntervalAboveZeroAlone)
{
    numbers.asciiInterval = 0.002;
    Deck const deck = this->deck();
    for (char const * name : {"MATSUM", "GLSTAT", "RCFORC", "SLEOUT", "RBDOUT"})
        EXPECT_EQ(deck.one(std::string("DATABASE_") + name).card(0).real("DT"), 0.002);
    numbers.asciiInterval = 0.0;
    EXPECT_FALSE(this->deck().has("DATABASE_GLSTAT"));
}

TEST_F(KeywordCards, TheFrameStandsInItsColumns)
{
    numbers.tip[0] = 0.6;
    numbers.tip[2] = -0.8;
    Deck const deck = this->deck();
    auto const vectors = deck.all("DEFINE_VECTOR");
    std::vector<std::string> const head = {"XT", "YT", "ZT", "XH", "YH", "ZH"};
    EXPECT_THAT(withNumber(vectors, 0, "VID", 555).reals(head), ElementsAre(0, 0, 0, 0.6, 0, -0.8));
    EXPECT_THAT(withNumber(vectors, 0, "VID", 557).reals(head), ElementsAre(0, 0, 0, -0.6, 0, 0.8));
    Block const & frame = deck.one("DEFINE_COORDINATE_SYSTEM");
    EXPECT_EQ(frame.card(0).integer("CID"), 556);
    EXPECT_THAT(frame.card(0).reals({"XO", "YO", "ZO", "XL", "YL", "ZL"}), ElementsAre(0, 0, 0, 0.8, 0, 0.6));
    EXPECT_THAT(frame.card(1).reals({"XP", "YP", "ZP"}), ElementsAre(0, -1, 0));
}

TEST_F(KeywordCards, BlankCardsStandInTheirColumns)
{
    numbers.blank = {51, 52, 53, 54};
    numbers.adaptEnergy = 0.0003;
    numbers.iadpn90 = 7;
    Deck const deck = this->deck();
    EXPECT_EQ(withNumber(deck.all("SET_PART_LIST"), 0, "SID", 54).integer("SID"), 54);
    EXPECT_EQ(withNumber(deck.all("SET_PART_LIST"), 1, "PID1", 51).integer("PID1"), 51);
    EXPECT_THAT(withNumber(deck.all("PART"), 1, "PID", 51).reals({"SECID", "MID", "EOSID", "HGID", "GRAV", "ADPOPT"}),
                ElementsAre(52, 53, 0, 0, 0, 1));
    Card const & material = deck.one("MAT_TRANSVERSELY_ANISOTROPIC_ELASTIC_PLASTIC").card(0);
    EXPECT_THAT(material.reals({"MID", "RO", "E", "PR", "SIGY", "ETAN", "R", "HLCID"}),
                ElementsAre(53, 7800, 2.1e11, 0.3, 1.8e8, 2.1e11, 1.555, 99));
    Block const & section = *deck.all("SECTION_SHELL").front();
    EXPECT_THAT(section.card(0).reals({"SECID", "ELFORM", "SHRF", "NIP"}), ElementsAre(52, 2, 0.833, 5));
    EXPECT_THAT(section.card(1).reals({"T1", "T2", "T3", "T4"}), ElementsAre(8e-4, 8e-4, 8e-4, 8e-4));
    Block const & adaptive = deck.one("CONTROL_ADAPTIVE");
    EXPECT_THAT(
        adaptive.card(0).reals({"ADPFREQ", "ADPTOL", "ADPOPT", "MAXLVL", "TBIRTH", "TDEATH", "LCADP", "IOFLAG"}),
        ElementsAre(0.0021, 5, 2, 4, 0, 1e20, 0, 1));
    EXPECT_THAT(adaptive.card(1).reals({"ADPSIZE", "ADPASS", "IREFLG", "ADPENE", "ADPTH"}),
                ElementsAre(0.0016, 1, 0, 0.0003, 0.0004));
    EXPECT_EQ(adaptive.card(2).integer("IADPN90"), 7);
}

TEST_F(KeywordCards, ToolCardsStandInTheirColumns)
{
    numbers.binderForce = 2e5;
    numbers.binder = {31, 32, 33, 34};
    numbers.frictionBinder = 0.11;
    numbers.offsetBinder = -0.0008;
    Deck const deck = this->deck();
    Block const & material = *deck.all("MAT_RIGID").back();
    EXPECT_THAT(material.card(0).reals({"MID", "RO", "E", "PR"}), ElementsAre(33, 78000, 2.1e11, 0.3));
    EXPECT_THAT(material.card(1).reals({"CMO", "CON1", "CON2"}), ElementsAre(-1, 556, 110111));
    EXPECT_EQ(material.card(2).integer("LCO"), 556);
    EXPECT_EQ(deck.all("MAT_RIGID").front()->card(1).integer("CON2"), 111111); // the die stands
    Block const & section = *deck.all("SECTION_SHELL").back();
    EXPECT_THAT(section.card(0).reals({"SECID", "ELFORM", "SHRF", "NIP"}), ElementsAre(32, 2, 1, 3));
    EXPECT_EQ(section.card(1).real("T4"), 8e-4); // the sheet's
    Block const & contact = *deck.all("CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE").back();
    EXPECT_THAT(contact.card(0).reals({"SSID", "MSID", "SSTYP", "MSTYP", "SBOXID", "MBOXID", "SPR", "MPR"}),
                ElementsAre(5, 31, 3, 3, 0, 0, 1, 1));
    EXPECT_THAT(contact.card(1).reals({"FS", "FD", "DC", "VC", "VDC"}), ElementsAre(0.11, 0, 0, 0, 20));
    EXPECT_THAT(contact.card(2).reals({"SFS", "SFM", "SST", "MST"}), ElementsAre(0, 0, 0, -0.0016));
    EXPECT_TRUE(contact.card(3).line().empty());
    EXPECT_THAT(contact.card(4).reals({"PENMAX", "THKOPT", "SHLTHK", "SNLOG"}), ElementsAre(0, 0, 1, 1));
    EXPECT_THAT(
        deck.one("BOUNDARY_PRESCRIBED_MOTION_RIGID_LOCAL").card(0).reals({"TYPEID", "DOF", "VAD", "LCID", "SF", "VID"}),
        ElementsAre(2, 3, 0, 100, 1, 555));
    EXPECT_THAT(deck.one("LOAD_RIGID_BODY").card(0).reals({"PID", "DOF", "LCID", "SF", "CID"}),
                ElementsAre(31, 3, 101, 1, 556));
    EXPECT_THAT(deck.curve(101), ElementsAre(Pair(0, 0), Pair(numbers.closeTime, 2e5), Pair(0.021, 2e5)));
}

TEST_F(KeywordCards, AToolOffsetDoublesIntoTheContactThickness)
{
    numbers.offsetDie = 1e-14; // not below the bound
    numbers.offsetPunch = -9.9e-15;
    Deck const deck = this->deck();
    auto const contacts = deck.all("CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE");
    EXPECT_EQ(contacts.at(0)->card(2).text("MST"), "-2.00E-14");
    EXPECT_EQ(contacts.at(1)->card(2).line(), " 0.000E+00 0.000E+00 0.000E+00 0.000E+00");
}

TEST_F(KeywordCards, SmoothContactChangesTheToolsAndNotTheBeads)
{
    numbers.smooth = true;
    numbers.binderForce = 1.0;
    numbers.beads = {{1e5, {1, 2, 3}}};
    Deck const deck = this->deck();
    EXPECT_EQ(deck.all("CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE_SMOOTH").size(), 3U);
    EXPECT_FALSE(deck.has("CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE"));
    EXPECT_TRUE(deck.has("CONTACT_DRAWBEAD"));
}

TEST_F(KeywordCards, WithoutABinderForceThreeMeshesAreIncluded)
{
    std::ifstream stream((deck(), "inputls.dyn"));
    std::string const text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    EXPECT_NE(text.find("\n$\n*INCLUDE\n./VOZBlank.mod\n$\n*INCLUDE\n./VOZDie.mod\n$\n*INCLUDE\n./VOZPunch.mod\n$\n"
                        "$\n$\n*END\n"),
              std::string::npos);
}

TEST_F(KeywordCards, APlateauOfAThousandthOfTheRampIsLeftOut)
{
    numbers.rampTime = 1.0;
    numbers.plateauTime = 0.001;
    numbers.endTime = 0.0;
    EXPECT_THAT(deck().curve(100), ElementsAre(Pair(0, 0), Pair(1, 5), Pair(2.001, 0)));
    numbers.plateauTime = 0.00100001;
    numbers.endTime = 3.0;
    EXPECT_THAT(deck().curve(100),
                ElementsAre(Pair(0, 0), Pair(1, 5), Pair(testing::DoubleNear(1.001, 1e-7), 5), Pair(3, 0)));
}

TEST_F(KeywordCards, TheGeneratedCurveBeginsAtTwoPercentAndEndsBeyondItsLastStrain)
{
    auto const curve = deck().curve(99);
    ASSERT_EQ(curve.size(), 21U);
    EXPECT_EQ(curve.front().first, 0.0);
    EXPECT_NEAR(curve.front().second, 6e8 * std::pow(0.02, 0.2), 1.0);
    EXPECT_EQ(curve.back().first, 0.8);
    EXPECT_NEAR(curve.back().second, 6e8 * std::pow(0.82, 0.2) * (0.12 * 0.2 / 0.7 + 1.0), 1.0);
}

TEST_F(KeywordCards, ACurveOfOneStepIsReportedAndHasOneRow)
{
    numbers.steps = 1;
    EXPECT_EQ(deck().curve(99).size(), 1U);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:(m_nSteps - 1) != 0"));
}
