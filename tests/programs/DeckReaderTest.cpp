// DeckReaderTest.cpp: the deck read back, and its way into the kernel's records.

#include "DeckJobs.h"
#include "FolderFixture.h"

#include "DeckReader.h"
#include "DeckRecords.h"
#include "SolverSettings.h"

#include "VOZMechanicalProp.h"
#include "VOZMesh.h"
#include "VOZSolverBCData.h"

#include <gmock/gmock.h>

#include <random>

using deckjobs::goldenFolder;
using deckjobs::readFile;
using testing::ElementsAre;
using testing::HasSubstr;
using voz::deck::Deck;
using voz::deck::DeckError;
using voz::deck::MakeRecords;
using voz::deck::ParseDeck;
using voz::deck::ParseSettings;
using voz::deck::ReadDeck;
using voz::deck::ReadSettings;
using voz::deck::SolverSettings;

namespace
{
constexpr char const * kGoldens[] = {"plain",   "no_material",     "bare",       "half_xz", "half_yz", "quarter",
                                     "holders", "little_friction", "full_holder"};

std::string golden(std::string const & name)
{
    return readFile(goldenFolder() / (name + ".golden"));
}

std::string replaced(std::string text, std::string const & from, std::string const & to)
{
    std::size_t const at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

// The message of a text that is refused; empty if it is taken.
std::string refusal(std::string const & text)
{
    try
    {
        MakeRecords(ParseDeck("deck.fpi", text), SolverSettings());
    }
    catch (DeckError const & error)
    {
        return error.what();
    }
    return {};
}

Deck parsed(std::string const & name)
{
    return ParseDeck(name, golden(name));
}

VOZSolverBCData_s const & actions(VOZMultiStageSolverIOData_s const & data)
{
    return *data.m_pasStages[0].m_psBCData;
}
} // namespace

TEST(DeckReader, ReadsNodesAndElements)
{
    Deck const deck = parsed("plain");
    ASSERT_EQ(deck.nodes.size(), 6u);
    EXPECT_THAT(deck.nodes[5], ElementsAre(2.0, 2.0, -0.5));
    ASSERT_EQ(deck.elements.size(), 3u);
    EXPECT_EQ(deck.elements[0].corners, 4);
    EXPECT_THAT(deck.elements[0].nodes, ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(deck.elements[2].corners, 3);
    EXPECT_EQ(deck.elements[2].property, 2);
    EXPECT_TRUE(deck.controlFlag);
    EXPECT_EQ(deck.controlValue, 7);
    EXPECT_EQ(deck.friction, 0.15);
}

TEST(DeckReader, ReadsTheMaterialWithItsCurve)
{
    Deck const deck = parsed("plain");
    ASSERT_EQ(deck.materials.size(), 3u);
    EXPECT_EQ(deck.materials[2].number, 2);
    EXPECT_EQ(deck.materials[0].yield, 160.0);
    EXPECT_EQ(deck.materials[0].nValue, 0.22);
    EXPECT_EQ(deck.materials[0].rValue, 1.5);
    EXPECT_EQ(deck.materials[0].kValue, 520.0);
    EXPECT_EQ(deck.materials[0].thickness, 0.05);
    ASSERT_EQ(deck.materials[1].curve.size(), 4u);
    EXPECT_THAT(deck.materials[1].curve[2], ElementsAre(0.2, 380.25));
    EXPECT_EQ(parsed("no_material").materials[0].number, 0);
    EXPECT_TRUE(parsed("holders").materials[0].curve.empty());
}

TEST(DeckReader, ReadsSymmetryAndDisplacementsAlike)
{
    Deck const deck = parsed("quarter");
    ASSERT_EQ(deck.displaced.size(), 8u);
    EXPECT_EQ(deck.displaced[0].node, 1);
    EXPECT_THAT(deck.displaced[0].flags, ElementsAre(false, true, false, false, false, false));
    EXPECT_EQ(deck.displaced[5].node, 5);
    EXPECT_THAT(deck.displaced[5].flags, ElementsAre(true, true, false, false, false, true));
    EXPECT_THAT(deck.displaced[5].values, ElementsAre(1.0, 0.0, -0.5, 25.4, 0.0, -0.5));
    EXPECT_EQ(parsed("half_xz").displaced.size(), 1u); // a head that counts nothing comes first
}

TEST(DeckReader, ReadsHoldersBeadsAndPads)
{
    Deck const deck = parsed("holders");
    ASSERT_EQ(deck.holders.size(), 2u);
    EXPECT_EQ(deck.holders[0].force, 6000.0);
    EXPECT_EQ(deck.holders[1].length, 2.0);
    ASSERT_EQ(deck.holders[1].edges.size(), 2u);
    EXPECT_EQ(deck.holders[1].edges[1].node2, 6);
    EXPECT_EQ(deck.holders[1].edges[1].restraint, -6.0);
    ASSERT_EQ(deck.beads.size(), 2u);
    EXPECT_EQ(deck.beads[0].force, 10.0);
    ASSERT_EQ(deck.beads[1].segments.size(), 2u);
    EXPECT_THAT(deck.beads[1].segments[0].natural, ElementsAre(0.0, 0.25, 0.5, 0.5));
    ASSERT_EQ(deck.pads.size(), 2u);
    EXPECT_THAT(deck.pads[0].nodes, ElementsAre(1, 2));
    EXPECT_EQ(deck.pads[0].pressure, 2500000.0);
    EXPECT_TRUE(deck.pads[1].nodes.empty());
}

TEST(DeckReader, RefusesEveryDeckThatBreaksOff)
{
    for (char const * name : kGoldens)
    {
        std::string const whole = golden(name);
        for (std::size_t length = 0; length + 24 < whole.size(); ++length) // the last asterisks may be fewer
            EXPECT_THROW(ParseDeck(name, whole.substr(0, length)), DeckError) << name << ", " << length << " bytes";
    }
}

TEST(DeckReader, RefusesMoreTextBehindTheLastBlockButNoBlankLines)
{
    EXPECT_EQ(refusal(golden("plain") + "\n  \n"), "");
    EXPECT_THAT(refusal(golden("plain") + "1 2 3\n"), HasSubstr("expected the end of the file"));
    EXPECT_THAT(refusal(golden("plain") + std::string(1, '\0')), HasSubstr("expected the end of the file"));
}

TEST(DeckReader, TakesEndsOfLinesOfAnotherSystem)
{
    std::string text;
    for (std::string const & line : deckjobs::linesOf(golden("full_holder")))
        text += line + "\r\n";
    EXPECT_EQ(refusal(text), "");
}

TEST(DeckReader, NamesFileLineAndWhatWasExpected)
{
    struct Case
    {
        char const * from;
        char const * to;
        char const * message;
    };
    // clang-format off
    Case const cases[] = {
        {"DRAVO3D - v", "DRAVO4D - v",  "deck.fpi:1: found \"DRAVO4D"},
        {"6 2 2 1 0 0", "7 2 2 1 0 0",  "deck.fpi:6: the number of nodes (field 1) is \"6\"; expected 7"},
        {"6 2 2 1 0 0", "x 2 2 1 0 0",  "deck.fpi:4: the number of nodes (field 1) is \"x\"; expected a whole number, 1 or more"},
        {"6 2 2 1 0 0", "6 2 2 1 2 0",  "deck.fpi:4: the control flag (field 5) is \"2\"; expected a whole number from 0 to 1"},
        {"6 2 2 1 0 0", "6 2 2 1 0",    "deck.fpi:4: the first control line has 29 fields; expected 30"},
        {"6 2 2 1 0 0", "6 2 99999999999 1 0 0", "deck.fpi:4: the number of material records (field 3) is \"99999999999\""},
        {"6 2 2 1 0 0", "2147483647 2 2 1 0 0",  "deck.fpi:6: the number of nodes"},
        {"6 2 2 1 0 0", "6 2147483647 2 1 0 0",  "deck.fpi:23: the block ends here; expected an element"},
        {"6 2 2 1 0 0", "6 2 2147483647 1 0 0",  "deck.fpi:31: the block ends here; expected the first line of a material"},
        {"5 1.000000 1.000000 0", "5 nan 1.000000 0",   "deck.fpi:17: x (field 2) is \"nan\"; expected a finite number"},
        {"5 1.000000 1.000000 0", "5 1e999 1.000000 0", "deck.fpi:17: x (field 2) is \"1e999\"; expected a finite number"},
        {"5 1.000000 1.000000 0", "4 1.000000 1.000000 0", "deck.fpi:17: the node's number (field 1) is \"4\"; expected 5"},
        {"2 1 1 0 1 2 3 6 5", "2 1 1 0 1 2 3 7 5",  "deck.fpi:22: a corner (field 8) is \"7\"; expected a whole number from 1 to 6"},
        {"2 1 1 0 1 2 3 6 5", "2 1 1 0 2 2 3 6 5",  "deck.fpi:22: a triangle has 9 fields; expected 8"},
        {"2 1 1 0 1 2 3 6 5", "2 3 1 0 1 2 3 6 5",  "deck.fpi:22: element 2 has the property 3"},
        {"160.000000 0.22",   "1,6 0.22",           "deck.fpi:25: the yield stress (field 5) is \"1,6\""},
        {"1 1 2500000.0",     "0 1 2500000.0",      "deck.fpi:43: the pad's node (field 1) is \"0\""},
        {"2 0 0.500000 1 1",  "2 1 0.500000 1 1",   "deck.fpi:46: the block ends here; expected a node of a pad"},
        {"2 2 -40.0",         "2 3 -40.0",          "deck.fpi:60: the block ends here; expected an edge of a blank holder"},
        {"2 3 -1 6",          "9 3 -1 6",           "deck.fpi:58: the edge's element (field 1) is \"9\""},
        {"2 3 3\n",           "2 4 4\n",            "deck.fpi:69: the number of bead segments is 4; the beads have 3"},
        {"2 3 3\n",           "2 3 4\n",            "deck.fpi:69: the number of bead segments, once more, (field 3) is \"4\"; expected 3"},
        {"0.150000  0  0",    "1.150000  0  0",     "the friction coefficient is 1.150000; expected 0 to 1"},
        {"0 0 1 0 ",          "0 1 0 0 ",           "an entry of the identity matrix (field 2) is \"1\"; expected 0"},
        {"block XXI\n",       "block XVI\n",        "found \"block XVI\"; expected \"block XXI\""},
        {"block VII: beam tables\n", "block VII: beam tables\n1 2 3\n", "found \"1 2 3\"; expected a line of asterisks behind block VII"},
        {"block XV: bendline tables\n0 0 0", "block XV: bendline tables\n1 0 0", "a count of a table that this solver does not know"},
    };
    // clang-format on
    for (Case const & c : cases)
        EXPECT_THAT(refusal(replaced(golden("holders"), c.from, c.to)), HasSubstr(c.message)) << c.from;
}

TEST(DeckReader, CountsTheDisplacementTables)
{
    EXPECT_THAT(refusal(replaced(golden("quarter"), "6 0 0 4 0 1", "6 0 0 3 0 1")),
                HasSubstr("the block holds 4 displacement tables; expected 3"));
    EXPECT_THAT(refusal(replaced(golden("quarter"), "5 110001", "5 11000")), HasSubstr("expected six digits 0 or 1"));
    EXPECT_THAT(refusal(replaced(golden("quarter"), "1 3 0 -1 1 1", "1 2 0 -1 1 1")), HasSubstr("head of a"));
}

TEST(DeckReader, RefusesWhatIsNoFile)
{
    EXPECT_THROW(ReadDeck("."), DeckError);
    EXPECT_THROW(ReadDeck("no such deck.fpi"), DeckError);
    EXPECT_THAT(refusal(""), HasSubstr("the file is empty"));
}

TEST(DeckReader, SurvivesDamagedDecks)
{
    std::mt19937 random(20261121);
    auto const below = [&random](std::size_t n)
    { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random); };
    constexpr char kBytes[] = "0123456789 -.*\n\teE\"ninf\0\r";
    for (char const * name : kGoldens)
        for (int trial = 0; trial < 400; ++trial)
        {
            std::string text = golden(name);
            for (std::size_t i = below(4) + 1; i > 0; --i)
            {
                std::size_t const at = below(text.size());
                switch (below(3))
                {
                case 0:
                    text[at] = kBytes[below(sizeof kBytes)];
                    break;
                case 1:
                    text.erase(at, below(20) + 1);
                    break;
                default:
                    text.insert(at, text.substr(below(text.size()), below(40)));
                }
            }
            refusal(text); // a message or a job, never more than that
        }
}

// Records

TEST(DeckRecords, AreInMetresAndPascals)
{
    auto const data = MakeRecords(parsed("plain"), SolverSettings());
    ASSERT_EQ(data->m_nNumMaterials, 2);
    EXPECT_DOUBLE_EQ(data->m_padInitMaterialThickness[1], 0.00127);
    VOZMechanicalProp_s const & material = data->m_pasMaterialProperties[0];
    EXPECT_EQ(material.m_dYield, 160.0e6);
    EXPECT_EQ(material.m_dKValue, 520.0e6);
    EXPECT_EQ(material.m_dNValue, 0.22);
    EXPECT_EQ(material.m_dRValue, 1.5);
    EXPECT_EQ(material.m_dYoungsModulus, 210.0e9);
    EXPECT_EQ(material.m_nCurveType, 2);
    EXPECT_EQ(material.m_nNumPoints, 4);
    EXPECT_EQ(material.m_padPoints[4], 0.2);
    EXPECT_EQ(material.m_padPoints[5], 380.25e6);
    VOZSolverStage_s const & stage = data->m_pasStages[0];
    EXPECT_DOUBLE_EQ(stage.m_psPartMesh->m_padNodalCoords[3 * 5 + 2], -0.0127);
    EXPECT_EQ(stage.m_psPartMesh->GetElements()[2].m_anNodeIndices[3], -1);
    EXPECT_EQ(stage.m_psPartMesh->GetElements()[2].m_anNodeIndices[2], 5);
    EXPECT_EQ(stage.m_psPartMesh->GetElements()[2].GetMaterialIndex(), 1);
    EXPECT_EQ(stage.m_psBlankMesh->m_psTopology, stage.m_psPartMesh->m_psTopology);
    EXPECT_THAT(stage.m_adLocalCS, ElementsAre(1, 0, 0, 0, 1, 0, 0, 0, 1));
    EXPECT_THAT(stage.m_adOrigin, ElementsAre(0, 0, 0));
    EXPECT_EQ(actions(*data).m_bProcess, 1); // the deck's control flag
    EXPECT_EQ(actions(*data).m_dFriction, 0.15);
}

TEST(DeckRecords, HaveTheControlValuesOfEveryJob)
{
    auto const data = MakeRecords(parsed("plain"), SolverSettings());
    EXPECT_EQ(data->m_nFirstControl, 3);
    EXPECT_EQ(data->m_nSecondControl, 3);
    EXPECT_EQ(data->m_dControl, 1.0);
}

TEST(DeckRecords, OfThreePointsFollowThePowerLaw)
{
    auto const data = MakeRecords(parsed("bare"), SolverSettings());
    EXPECT_EQ(data->m_pasMaterialProperties[0].m_nCurveType, 0);
    EXPECT_EQ(data->m_pasMaterialProperties[0].m_nNumPoints, 0);
    EXPECT_EQ(MakeRecords(parsed("no_material"), SolverSettings())->m_nNumMaterials, 1);
}

TEST(DeckRecords, TakeSixDecimalsOfAnInchForTheThickness)
{
    Deck deck = parsed("bare");
    for (auto & record : deck.materials)
        record.thickness = 0.030709; // as 0.78 mm arrives
    EXPECT_NEAR(MakeRecords(deck, SolverSettings())->m_padInitMaterialThickness[0], 0.00078, 1.6e-5 * 0.00078);
}

TEST(DeckRecords, ReadASingleHolderInNewtonsPerInch)
{
    auto const data = MakeRecords(parsed("little_friction"), SolverSettings());
    ASSERT_EQ(actions(*data).m_nNumBHFs, 1);
    EXPECT_DOUBLE_EQ(actions(*data).m_pasBHFs[0].m_dForce, 12.0 / 0.0254);
    EXPECT_EQ(actions(*data).m_pasBHFs[0].m_nElement, 0);
    EXPECT_EQ(actions(*data).m_pasBHFs[0].m_nFirstPosition, 0);
    EXPECT_EQ(actions(*data).m_pasBHFs[0].m_nSecondPosition, 1);
}

// The head of the inner loop repeats edges of the first one: they count once, and then comes the single holder.
TEST(DeckRecords, ReadTheFullHolderInNewtonsPerMetreAndItsLoopsOnce)
{
    auto const data = MakeRecords(parsed("full_holder"), SolverSettings());
    VOZSolverBCData_s const & bc = actions(*data);
    ASSERT_EQ(bc.m_nNumBHFs, 7 + 1);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(bc.m_pasBHFs[i].m_dForce, 70000.0) << i;
    EXPECT_DOUBLE_EQ(bc.m_pasBHFs[7].m_dForce, 300.0 / 0.0254);
    EXPECT_EQ(bc.m_pasBHFs[6].m_nElement, 4); // the one edge of the inner loop that is in the first list
}

TEST(DeckRecords, HaveNoForceFromAFullHolderWithoutALength)
{
    std::string text = golden("full_holder");
    for (std::size_t at = 0; (at = text.find("70000.000000", at)) != std::string::npos;)
        text.replace(at, 12, "0.000000");
    text = replaced(text, "41486.666667 2 0.150000 0.177800", "0.000000 2 0.150000 0.000000");
    auto const data = MakeRecords(ParseDeck("deck", text), SolverSettings());
    ASSERT_EQ(actions(*data).m_nNumBHFs, 7 + 1);
    EXPECT_EQ(actions(*data).m_pasBHFs[0].m_dForce, 0.0);
    EXPECT_DOUBLE_EQ(actions(*data).m_pasBHFs[7].m_dForce, 300.0 / 0.0254);
}

TEST(DeckRecords, RefuseHoldersThatContradictThemselves)
{
    EXPECT_THAT(refusal(replaced(golden("full_holder"), "0.177800", "0.277800")),
                HasSubstr("the holder's length (field 6) is 0.277800, its edges measure 7.000000 inches"));
    EXPECT_THAT(refusal(replaced(golden("full_holder"), "0 0 0 0 0 0 0 4 0 1", "0 0 0 0 0 0 0 9 0 1")),
                HasSubstr("field 28 of the first control line says 9"));
    EXPECT_THAT(refusal(golden("holders")), HasSubstr("the restraint of the edge is negative"));
    // Node 6 is no corner of element 1, and nodes 1 and 5 are opposite ones.
    EXPECT_THAT(refusal(replaced(golden("little_friction"), "1 1 -1 2", "1 5 -1 6")),
                HasSubstr("deck.fpi:49: nodes 5 and 6 are no side of element 1"));
    std::string const diagonal = replaced(golden("little_friction"), "1 1 -1 2", "1 1 -1 5");
    EXPECT_THAT(refusal(replaced(diagonal, "0.001000 1.000000 1 1", "0.001000 1.414214 1 1")),
                HasSubstr("deck.fpi:49: nodes 1 and 5 are no side of element 1"));
}

TEST(DeckRecords, TakeTheForceOfABeadFromItsHead)
{
    Deck deck = parsed("holders");
    deck.holders.clear();
    deck.holderCount = 0;
    auto const data = MakeRecords(deck, SolverSettings());
    VOZSolverBCData_s const & bc = actions(*data);
    ASSERT_EQ(bc.m_nNumDrawbeads, 3);
    EXPECT_EQ(bc.m_pasDrawbeads[0].m_dForce, 10.0); // its row in the deck shows the last bead's 20
    EXPECT_EQ(bc.m_pasDrawbeads[1].m_dForce, 20.0);
    EXPECT_DOUBLE_EQ(bc.m_pasDrawbeads[0].m_dUplift, 10.0 * 8.9934075e-07);
    EXPECT_THAT(bc.m_pasDrawbeads[1].m_adEdgeValues, ElementsAre(0.0, 0.25, 0.5, 0.5));
}

TEST(DeckRecords, PutAPadOnElementsThatLieUnderItWhollyAndTheLastOneCounts)
{
    Deck deck = parsed("bare");
    deck.pads.resize(2);
    deck.pads[0].pressure = 1.0e6;
    deck.pads[0].nodes = {1, 2, 3, 4, 5, 6};
    deck.pads[1].pressure = 2.0e6;
    deck.pads[1].nodes = {2, 3, 5, 6, 1};
    auto const data = MakeRecords(deck, SolverSettings());
    ASSERT_NE(actions(*data).m_padPressureFrictionValues, nullptr);
    EXPECT_DOUBLE_EQ(actions(*data).m_padPressureFrictionValues[0], 0.15e6);
    EXPECT_DOUBLE_EQ(actions(*data).m_padPressureFrictionValues[1], 0.30e6);
    EXPECT_EQ(actions(*MakeRecords(parsed("bare"), SolverSettings())).m_padPressureFrictionValues, nullptr);
}

TEST(DeckRecords, FixANodeInXAndInYByTwoRecordsInMillimetres)
{
    auto const data = MakeRecords(parsed("half_yz"), SolverSettings());
    VOZSolverBCData_s const & bc = actions(*data);
    ASSERT_EQ(bc.m_nNumNodeConstraints2D, 2 + 2 + 2);
    EXPECT_EQ(bc.m_pasNodeConstraints2D[0].m_nNode, 3);
    EXPECT_EQ(bc.m_pasNodeConstraints2D[0].m_dAngle, 0.0);
    EXPECT_EQ(bc.m_pasNodeConstraints2D[0].m_dDisplacement, 0.0);
    EXPECT_EQ(bc.m_pasNodeConstraints2D[2].m_nNode, 4);
    EXPECT_DOUBLE_EQ(bc.m_pasNodeConstraints2D[2].m_dDisplacement, 25.4);
    EXPECT_EQ(bc.m_pasNodeConstraints2D[3].m_nNode, 4);
    EXPECT_DOUBLE_EQ(bc.m_pasNodeConstraints2D[3].m_dAngle, 1.5707963267948966);
    EXPECT_EQ(bc.m_pasNodeConstraints2D[3].m_dDisplacement, 0.0);
    EXPECT_DOUBLE_EQ(bc.m_pasNodeConstraints2D[5].m_dDisplacement, -50.8);
}

TEST(DeckRecords, RefuseMaterialRecordsOutOfOrder)
{
    std::string numbers = replaced(golden("plain"), "2 0.0 0.0 0.0 160", "5 0.0 0.0 0.0 160");
    numbers = replaced(numbers, "2 4 0 0 0 0.000000", "5 4 0 0 0 0.000000");
    EXPECT_THAT(refusal(numbers), HasSubstr("deck.fpi:29: the material record has the number 5; expected 2"));
    std::string text = golden("plain");
    text.replace(text.rfind("160.000000 0.22"), 3, "170");
    EXPECT_THAT(refusal(text), HasSubstr("deck.fpi:32: the last material record differs"));
}

TEST(DeckRecords, RefuseNumbersThatNoSheetHas)
{
    auto const withBoth = [](std::string const & from, std::string const & to) // in both twins
    { return refusal(replaced(replaced(golden("holders"), from, to), from, to)); };
    std::string const thickness = "0 0.0 0.0 0.0 0.0 0.050000";
    EXPECT_EQ(withBoth(thickness, "0 0.0 0.0 0.0 0.0 0.000000"),
              "deck.fpi:26: the thickness (field 6) is 0.000000; expected more than 0 inches");
    EXPECT_EQ(withBoth("0.220000 1.500000 520", "0.220000 -1.50000 520"),
              "deck.fpi:25: the anisotropy (field 7) is -1.500000; expected more than 0");
    EXPECT_EQ(withBoth("0.220000 1.500000 520", "0.000000 1.500000 520"),
              "deck.fpi:25: the hardening exponent (field 6) is 0.000000; expected more than 0, at most 1");
    EXPECT_EQ(withBoth("1.500000 520.000000", "1.500000 0.000000"),
              "deck.fpi:25: the strength coefficient (field 8) is 0.000000; expected more than 0 MPa");
    EXPECT_EQ(withBoth("160.000000 0.22", "521.000000 0.22"),
              "deck.fpi:25: the yield stress (field 5) is 521.000000; expected 0 MPa to the strength coefficient");
    Deck curved = parsed("plain"); // its curve counts
    for (auto & record : curved.materials)
        record.nValue = record.kValue = record.yield = 0.0;
    EXPECT_NO_THROW(MakeRecords(curved, SolverSettings()));
}

// Settings

TEST(SolverSettings, HaveDefaultsWithoutAFile)
{
    SolverSettings const settings = ReadSettings("no such solver.cfg");
    EXPECT_EQ(settings.youngsModulus, 210.0e9);
    EXPECT_EQ(settings.poissonsRatio, 0.3);
    EXPECT_FALSE(settings.toolFriction.has_value());
    EXPECT_FALSE(settings.steps.has_value());
    EXPECT_THROW(ReadSettings("."), DeckError);
}

TEST(SolverSettings, GoIntoTheRecords)
{
    SolverSettings const settings =
        ParseSettings("solver.cfg", "# aluminium\nYoungsModulus=70e9\r\nPoissonsRatio=0.33\n\nToolFriction=0\nSteps=3");
    EXPECT_EQ(settings.steps, 3);
    auto const data = MakeRecords(parsed("plain"), settings);
    EXPECT_EQ(data->m_pasMaterialProperties[1].m_dYoungsModulus, 70.0e9);
    EXPECT_EQ(data->m_pasMaterialProperties[1].m_dPoisson, 0.33);
    EXPECT_EQ(actions(*data).m_bProcess, 0); // ahead of the deck's control flag
}

TEST(SolverSettings, AreRefusedWithFileLineAndWhatWasExpected)
{
    auto const message = [](std::string const & text) -> std::string
    {
        try
        {
            ParseSettings("solver.cfg", text);
        }
        catch (DeckError const & error)
        {
            return error.what();
        }
        return {};
    };
    EXPECT_EQ(message("\nYoung=1\n"), "solver.cfg:2: unknown key \"Young\"; expected YoungsModulus, PoissonsRatio, "
                                      "ToolFriction or Steps");
    EXPECT_EQ(message("YoungsModulus=210\n"), "solver.cfg:1: YoungsModulus is 210; expected pascals, 1e9 to 1e12");
    EXPECT_EQ(message("PoissonsRatio=0.5"), "solver.cfg:1: PoissonsRatio is 0.5; expected 0 to 0.499");
    EXPECT_THAT(message("PoissonsRatio=nan"), HasSubstr("expected a finite number"));
    EXPECT_THAT(message("ToolFriction=yes"), HasSubstr("solver.cfg:1: ToolFriction (field 1) is \"yes\""));
    EXPECT_THAT(message("ToolFriction="), HasSubstr("ToolFriction has 0 fields; expected 1"));
    EXPECT_THAT(message("Steps=4"), HasSubstr("from 1 to 3"));
    EXPECT_THAT(message("Steps 1"), HasSubstr("expected key=value"));
    EXPECT_THAT(message("Steps=1\nSteps=1"), HasSubstr("solver.cfg:2: the key \"Steps\" comes a second time"));
}
