// OpenSolverDeckTest.cpp: the second deck, for open explicit solvers, card by card.

#include "OpenSolverDeck.h"

#include "DeckJobs.h"
#include "KeywordFixture.h"
#include "KeywordReference.h"

#include "OutputFile.h"

#include <gmock/gmock.h>

#include <set>

using deckjobs::firstDifference;
using deckjobs::linesOf;
using deckjobs::readFile;
using keyworddeck::Block;
using keyworddeck::Card;
using keyworddeck::Deck;
using keywordjob::Numbers;
using testing::ElementsAre;
using testing::HasSubstr;
using voz::workbench::OpenDeckRemark;
using voz::workbench::OpenDeckSolver;
using voz::workbench::OutputError;

namespace
{
using Driver = keywordjob::BasicDriver<OpenDeckSolver>;

class OpenSolverDeck : public KeywordFixture
{
protected:
    OpenSolverDeck()
    {
        numbers.binderForce = 2e5;
        numbers.pads = {{1e6, {0, 0, 0, 100, 0, 0, 0, 100, 0}}};
        numbers.beads = {{1e5, {1, 2, 3}}};
    }
    Deck deck() const
    {
        Driver(numbers).WriteOpenDeck();
        return Deck("inputls_open.dyn");
    }
};

std::set<std::string> keywords(Deck const & deck)
{
    std::set<std::string> found;
    for (Block const & block : deck.blocks())
        found.insert(block.keyword);
    return found;
}

} // namespace

TEST_F(OpenSolverDeck, LeavesTheFormingDeckAsItIs)
{
    Driver driver(numbers);
    driver.WriteOpenDeck();
    ASSERT_EQ(driver.write(), 0); // bead nodes are numbered as if there had been no other deck
    EXPECT_EQ(firstDifference(keywordreference::deck(numbers), readFile("inputls.dyn")), "");
}

TEST_F(OpenSolverDeck, HasTheKeywordsThatAnOpenSolverUses)
{
    EXPECT_THAT(keywords(deck()),
                ElementsAre("BOUNDARY_PRESCRIBED_MOTION_RIGID", "CONTACT_AUTOMATIC_ONE_WAY_SURFACE_TO_SURFACE",
                            "CONTROL_TERMINATION", "CONTROL_TIMESTEP", "CONTROL_UNITS", "DATABASE_BINARY_D3PLOT",
                            "DATABASE_EXTENT_BINARY", "DEFINE_COORDINATE_SYSTEM", "DEFINE_CURVE", "DEFINE_VECTOR",
                            "END", "INCLUDE", "KEYWORD", "LOAD_RIGID_BODY", "MAT_PIECEWISE_LINEAR_PLASTICITY",
                            "MAT_RIGID", "NODE", "PART", "SECTION_SHELL", "SET_PART_LIST", "TITLE"));
}

TEST_F(OpenSolverDeck, ListsEveryKeywordOfTheFormingDeckThatItDoesNotHave)
{
    for (bool const smooth : {false, true})
    {
        numbers.smooth = smooth;
        Driver driver(numbers);
        ASSERT_EQ(driver.write(), 0);
        std::set<std::string> known = keywords(deck());
        for (OpenDeckRemark const & remark : driver.Remarks())
            known.insert(remark.keyword.substr(1));
        EXPECT_THAT(known, testing::IsSupersetOf(keywords(Deck("inputls.dyn"))));
    }
}

TEST_F(OpenSolverDeck, WritesItsRemarksBesideTheDeck)
{
    std::vector<OpenDeckRemark> const remarks = Driver(numbers).WriteOpenDeck();
    std::vector<std::string> const lines = linesOf(readFile("inputls_open.txt"));
    ASSERT_EQ(lines.size(), remarks.size());
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_EQ(lines[i], remarks[i].keyword + ": " + remarks[i].reason);
    EXPECT_THAT(lines, testing::Contains(HasSubstr("*LOAD_MASK: left out")));
    numbers = Numbers();
    numbers.hourglass = 0;
    numbers.massScaling = false;
    std::vector<OpenDeckRemark> const fewer = Driver(numbers).WriteOpenDeck();
    EXPECT_EQ(fewer.size() + 7, remarks.size()); // pad, four of the bead, hourglass, mass scaling
}

TEST_F(OpenSolverDeck, SaysItsOwnNameAboveTheFormingDecksMeshes)
{
    Driver(numbers).WriteOpenDeck();
    std::string const text = readFile("inputls_open.dyn");
    EXPECT_THAT(text, HasSubstr("$\n$     THIS FILE NAME: inputls_open.dyn\n$\n*INCLUDE\n./VOZBlank.mod\n$\n"));
    EXPECT_THAT(text, testing::Not(HasSubstr("inputls.dyn")));
}

TEST_F(OpenSolverDeck, AnErrorLeavesTheFormingDeckItsOwnCards)
{
    struct Leaving : Driver
    {
        using Driver::Driver;
        bool leaves = true;

    protected:
        void WriteToolingTitleBlock() override
        {
            if (leaves)
                throw 7;
            Driver::WriteToolingTitleBlock();
        }
    };
    Leaving driver(numbers);
    EXPECT_THROW(driver.WriteOpenDeck(), int);
    driver.leaves = false;
    ASSERT_EQ(driver.write(), 0);
    EXPECT_EQ(firstDifference(keywordreference::deck(numbers), readFile("inputls.dyn")), "");
}

TEST_F(OpenSolverDeck, ControlCardsStandInTheirColumns)
{
    numbers.outputTimes.resize(11);
    Deck const deck = this->deck();
    Card const & units = deck.one("CONTROL_UNITS").card(0);
    EXPECT_EQ(units.text("LENGTH") + " " + units.text("TIME") + " " + units.text("MASS"), "m sec kg");
    EXPECT_EQ(deck.one("CONTROL_TERMINATION").card(0).real("ENDTIM"), 0.021);
    Block const & step = deck.one("CONTROL_TIMESTEP");
    EXPECT_EQ(step.cards.size(), 1U);
    EXPECT_THAT(step.card(0).reals({"DTINIT", "TSSFAC", "DT2MS"}), ElementsAre(0, 0.9, -1.5e-7));
    EXPECT_EQ(deck.one("DATABASE_BINARY_D3PLOT").card(0).real("DT"), 0.0021);
    numbers.massScaling = false;
    EXPECT_TRUE(this->deck().one("CONTROL_TIMESTEP").card(0).blank("DT2MS"));
}

TEST_F(OpenSolverDeck, TheSheetIsIsotropicWithTheSameCurve)
{
    Deck const deck = this->deck();
    Block const & material = deck.one("MAT_PIECEWISE_LINEAR_PLASTICITY");
    EXPECT_THAT(material.card(0).reals({"MID", "RO", "E", "PR", "SIGY"}), ElementsAre(5, 7800, 2.1e11, 0.3, 1.8e8));
    EXPECT_EQ(material.card(1).integer("LCSS"), 99);
    ASSERT_EQ(Driver(numbers).write(), 0);
    EXPECT_EQ(deck.curve(99), Deck("inputls.dyn").curve(99));
    for (Block const * const section : deck.all("SECTION_SHELL"))
        EXPECT_EQ(section->card(0).text("NIP").find('.'), std::string::npos); // an integer
    EXPECT_EQ(deck.all("SECTION_SHELL").front()->card(0).integer("NIP"), 5);
}

TEST_F(OpenSolverDeck, ToolsStandOffTheirMeshByTheirOffset)
{
    numbers.offsetPunch = -0.0008;
    numbers.frictionPunch = 0.11;
    Deck const deck = this->deck();
    auto const contacts = deck.all("CONTACT_AUTOMATIC_ONE_WAY_SURFACE_TO_SURFACE");
    ASSERT_EQ(contacts.size(), 3U); // die, punch, binder
    EXPECT_THAT(contacts[1]->card(0).reals({"SSID", "MSID", "SSTYP", "MSTYP"}), ElementsAre(5, 2, 3, 3));
    EXPECT_EQ(contacts[1]->card(1).real("FS"), 0.11);
    EXPECT_EQ(contacts[1]->card(2).real("MST"), 0.0016);
    EXPECT_EQ(contacts[0]->card(2).real("MST"), 8e-6); // next to nothing, and not 0, which means the shells' thickness
    EXPECT_EQ(contacts[0]->cards.size(), 3U);
}

TEST_F(OpenSolverDeck, PunchAndBinderMoveAlongTheStampingDirection)
{
    Deck const deck = this->deck();
    EXPECT_THAT(
        deck.one("BOUNDARY_PRESCRIBED_MOTION_RIGID").card(0).reals({"TYPEID", "DOF", "VAD", "LCID", "SF", "VID"}),
        ElementsAre(2, 4, 0, 100, 1, 555));
    EXPECT_THAT(deck.one("LOAD_RIGID_BODY").card(0).reals({"PID", "DOF", "LCID", "SF", "CID"}),
                ElementsAre(3, 3, 101, 1, 556));
    for (Block const * const material : deck.all("MAT_RIGID"))
        EXPECT_EQ(material->card(1).integer("CON1"), 556);
    EXPECT_EQ(deck.all("MAT_RIGID").front()->card(1).integer("CON2"), 111111);
}

TEST_F(OpenSolverDeck, WithoutABinderThereIsNone)
{
    numbers.binderForce = 0.0;
    Deck const deck = this->deck();
    EXPECT_EQ(deck.all("INCLUDE").size(), 3U);
    EXPECT_FALSE(deck.has("LOAD_RIGID_BODY"));
}

TEST_F(OpenSolverDeck, AFolderThatIsNotThereIsAnErrorWithItsPath)
{
    numbers.folder = "nowhere";
    try
    {
        Driver(numbers).WriteOpenDeck();
        FAIL();
    }
    catch (OutputError const & error)
    {
        EXPECT_THAT(error.what(), HasSubstr("nowhere/inputls_open.dyn"));
    }
}
