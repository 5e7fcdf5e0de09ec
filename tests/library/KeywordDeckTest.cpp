// KeywordDeckTest.cpp: the tests' reader of keyword decks, and the library's decks card by card.

#include "KeywordDeck.h"

#include "FolderFixture.h"
#include "KeywordJob.h"

#include <gmock/gmock.h>

using keyworddeck::Block;
using keyworddeck::Deck;
using keyworddeck::DeckError;
using keywordjob::Driver;
using keywordjob::Numbers;
using testing::HasSubstr;

namespace
{
class KeywordDeckReader : public FolderFixture
{
protected:
    std::filesystem::path file(std::string const & name, std::string const & text) const
    {
        std::ofstream(folder / name, std::ios::binary) << text;
        return folder / name;
    }
    // The deck of one block.
    Deck deckOf(std::string const & text) const { return Deck(file("deck.dyn", "*KEYWORD\n" + text + "*END\n")); }
    // What the reader says of a deck; empty if it takes it.
    std::string complaint(std::string const & text) const
    {
        try
        {
            deckOf(text);
        }
        catch (DeckError const & error)
        {
            return error.what();
        }
        return {};
    }
    static std::string curve(std::string const & row) { return "*DEFINE_CURVE\n        44\n" + row + "\n"; }
    // A text to the right of its columns.
    static std::string at(std::size_t width, std::string const & text)
    {
        return std::string(width - text.size(), ' ') + text;
    }
};
} // namespace

TEST_F(KeywordDeckReader, TakesFieldsByTheirColumns)
{
    Deck const deck = deckOf("*DEFINE_CURVE\n$ a comment\n        44\n" + at(20, "1.000E-03") + at(20, "-2.5E+08") +
                             "\n1.000000000000000000" + "1.000000000000000000\n");
    EXPECT_EQ(deck.one("DEFINE_CURVE").card(0).integer("LCID"), 44);
    EXPECT_TRUE(deck.one("DEFINE_CURVE").card(0).blank("SIDR"));
    EXPECT_EQ(deck.one("DEFINE_CURVE").card(0).real("SFA", 1.0), 1.0);
    EXPECT_THAT(deck.curve(44), testing::ElementsAre(testing::Pair(0.001, -2.5e8), testing::Pair(1.0, 1.0)));
}

TEST_F(KeywordDeckReader, TakesAnEmptyLineForACardOfBlanks)
{
    Deck const deck = deckOf("*CONTROL_TIMESTEP\n 0.000E+009.0000E-01\n\n");
    ASSERT_EQ(deck.one("CONTROL_TIMESTEP").cards.size(), 2U);
    EXPECT_EQ(deck.one("CONTROL_TIMESTEP").card(0).real("TSSFAC"), 0.9);
    EXPECT_TRUE(deck.one("CONTROL_TIMESTEP").card(1).blank("IMSCL"));
}

TEST_F(KeywordDeckReader, FollowsIncludeFilesToTheirEnd)
{
    file("nodes.mod", "*NODE\n       1" + at(16, "1.0") + at(16, "2.0") + at(16, "3.0") + "       0       0\n*END\n");
    Deck const deck = deckOf("*INCLUDE\nnodes.mod\n*CONTROL_HOURGLASS\n         4\n");
    EXPECT_EQ(deck.one("NODE").card(0).real("Y"), 2.0);
    EXPECT_EQ(deck.one("CONTROL_HOURGLASS").card(0).integer("IHQ"), 4);
    EXPECT_THAT(complaint("*INCLUDE\nnowhere.mod\n"), HasSubstr("nowhere.mod:0: cannot be opened"));
    EXPECT_THAT(complaint("*INCLUDE\ndeck.dyn\n"), HasSubstr("include each other"));
}

TEST_F(KeywordDeckReader, RefusesWhatASolverWouldMisread)
{
    EXPECT_EQ(complaint(curve(at(20, "1.0") + at(20, "2.0"))), "");
    EXPECT_THAT(complaint(curve(at(22, "123"))), HasSubstr("deck.dyn:4: field O1 (columns 21 to 40): [23] runs on"));
    EXPECT_THAT(complaint(curve(at(20, "1.0") + "2.0")), HasSubstr("runs on from the field ahead of it"));
    EXPECT_THAT(complaint(curve(at(20, "1,0") + at(20, "2.0"))), HasSubstr("field A1"));
    EXPECT_THAT(complaint(curve(at(20, "1.0") + at(20, "2.0 3.0"))), HasSubstr("is no number"));
    EXPECT_THAT(complaint(curve(at(20, "NAN") + at(20, "2.0"))), HasSubstr("is no number"));
    EXPECT_THAT(complaint(curve(at(20, "1.0") + at(20, "2.0") + " 3")), HasSubstr("from column 41"));
    EXPECT_THAT(complaint("*DEFINE_CURVE\n      44.0\n\n"), HasSubstr("is no integer"));
    EXPECT_THAT(complaint("*DEFINE_CURVE\n        44\n"), HasSubstr("needs 2 cards and has 1"));
    EXPECT_THAT(complaint("*CONTROL_HOURGLASS\n         4\n         5\n"), HasSubstr("a card too many"));
    EXPECT_THAT(complaint("*CONTROL_HOURGLAS\n         4\n"), HasSubstr("not in the table"));
    EXPECT_THAT(complaint("*TITLE\n" + std::string(81, 'x') + "\n"), HasSubstr("deck.dyn:3: a line of 81 columns"));
    EXPECT_EQ(complaint("$" + std::string(80, '-') + "\n"), ""); // a comment may be longer
}

TEST_F(KeywordDeckReader, RefusesADeckWithoutItsFrame)
{
    EXPECT_THROW(Deck(file("a.dyn", "*KEYWORD\n")), DeckError);
    EXPECT_THROW(Deck(file("b.dyn", "*TITLE\n text\n*END\n")), DeckError);
    EXPECT_THROW(Deck(file("c.dyn", "*KEYWORD\n*END\ndata\n")), DeckError);
    EXPECT_NO_THROW(Deck(file("d.dyn", "*KEYWORD\n*END\n$ a comment\n")));
}

TEST_F(KeywordDeckReader, TakesADeckOfTheDriver)
{
    Numbers numbers;
    numbers.binderForce = 2.0e5;
    for (char const * name : {"VOZBlank.mod", "VOZDie.mod", "VOZPunch.mod", "VOZBinder.mod"})
        file(name, "*NODE\n*END\n");
    ASSERT_EQ(Driver(numbers).write(), 0);
    Deck const deck("inputls.dyn");
    EXPECT_EQ(deck.all("INCLUDE").size(), 4U);
    EXPECT_EQ(deck.one("CONTROL_TERMINATION").card(0).real("ENDTIM"), 0.021);
}
