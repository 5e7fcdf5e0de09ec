// MaterialDeckTest.cpp. The deck of tests/golden/materials, and what can be missing from one.

#include "MaterialDeck.h"

#include "MeshFixture.h"

namespace voz::workbench
{

namespace
{
std::string Golden()
{
    return meshtest::ContentOf(VOZ_SOURCE_DIR "/tests/golden/materials/library.fpi");
}

std::string Replaced(std::string i_text, std::string const & i_old, std::string const & i_new)
{
    std::size_t const place = i_text.find(i_old);
    EXPECT_NE(place, std::string::npos) << i_old;
    return i_text.replace(place, i_old.size(), i_new);
}

class MaterialDeckFile : public testing::Test
{
protected:
    std::string MessageOf(std::string const & i_deck) const
    {
        std::string const path = mFolder.Write("steel.fpi", i_deck);
        return meshtest::MessageOf([&] { ReadMaterialDeck(path); });
    }
    meshtest::Folder mFolder;
};
} // namespace

TEST_F(MaterialDeckFile, GivesTheFiguresInTheWorkbenchsUnits)
{
    MaterialDeck const deck = ReadMaterialDeck(mFolder.Write("library.fpi", Golden()));
    JobMaterial const & material = deck.entry.material;
    EXPECT_EQ(material.name, "DC04");
    EXPECT_EQ(material.source, "deck library.fpi: deep drawing, mild");
    EXPECT_EQ(material.yield, 160.5) << "as the deck writes it, not what single precision makes of it";
    EXPECT_EQ(material.exponent, 0.22);
    EXPECT_EQ(material.anisotropy, 1.55);
    EXPECT_EQ(material.strength, 520.25);
    EXPECT_NEAR(deck.thickness, 0.031496 * 25.4, 1e-12);
    EXPECT_EQ(deck.remarks.size(), 2U) << "what no deck holds";
}

TEST_F(MaterialDeckFile, TheEntryReadsBackAsADatabase)
{
    MaterialDeck deck = ReadMaterialDeck(mFolder.Write("library.fpi", Golden()));
    deck.entry.material.source = "coil <4711> & \"more\"";
    std::string const path = mFolder.Write("own.xml", DatabaseText(deck));
    std::vector<DatabaseMaterial> const database = ReadDatabase(path);
    ASSERT_EQ(database.size(), 1U);
    JobMaterial const & material = database[0].material;
    EXPECT_EQ(material.name, "DC04");
    EXPECT_NEAR(material.yield, 160.5, 1e-9);
    EXPECT_NEAR(material.strength, 520.25, 1e-9);
    EXPECT_EQ(material.exponent, 0.22);
    EXPECT_EQ(material.anisotropy, 1.55);
    EXPECT_NEAR(material.modulus, 210000.0, 1e-6);
    EXPECT_EQ(material.density, 7850.0);
    EXPECT_NE(material.source.find("coil <4711> & \"more\""), std::string::npos) << material.source;
}

TEST_F(MaterialDeckFile, AFileThatIsNoDeckSaysWhatADeckIs)
{
    EXPECT_NE(MessageOf("").find("it is no deck: expected a header, a line of asterisks"), std::string::npos);
    EXPECT_NE(MessageOf("GRID,1,,0.,0.,0.\n").find("it is no deck"), std::string::npos);
    EXPECT_NE(MessageOf(Replaced(Golden(), "BLOCK II:", "Block II:")).find("begins with \"BLOCK II\""),
              std::string::npos)
        << "a mixed-case label is none";
    std::string const message = meshtest::MessageOf([&] { ReadMaterialDeck(mFolder / "none.fpi"); });
    EXPECT_NE(message.find("none.fpi: there is no deck of this name"), std::string::npos);
}

TEST_F(MaterialDeckFile, ADeckThatEndsInItsControlLinesSaysSo)
{
    std::string const deck = Golden();
    std::string const message = MessageOf(deck.substr(0, deck.find("4 3 3")));
    EXPECT_NE(message.find("ends inside the control lines (block II)"), std::string::npos) << message;
}

TEST_F(MaterialDeckFile, ARecordThatIsBrokenOrMissingIsNotTakenForAMaterial)
{
    // The reader says nothing of these: it leaves zeros.
    std::string const deck = Golden();
    std::string const cut = MessageOf(deck.substr(0, deck.find("7, 0.0")));
    EXPECT_NE(cut.find("its material record is broken or missing: no yield (field 5 of line 1"), std::string::npos)
        << cut;
    std::string const noK = MessageOf(Replaced(deck, ", 520.25", ""));
    EXPECT_NE(noK.find("no K (field 8 of line 1 of the first record of block V)"), std::string::npos) << noK;
    EXPECT_EQ(noK.find("yield"), std::string::npos) << "only what is missing";
    std::string const noThickness = MessageOf(Replaced(deck, "0.031496", "0.0"));
    EXPECT_NE(noThickness.find("no thickness (field 6 of line 2"), std::string::npos) << noThickness;
}

TEST_F(MaterialDeckFile, AFigureOutOfItsRangeIsNamedWithTheRange)
{
    std::string const message = MessageOf(Replaced(Golden(), "520.25", "520.25e6"));
    EXPECT_NE(message.find("K is 520250000 MPa (field 8 of line 1 of the first record of block V); expected 1 to 10000 "
                           "MPa"),
              std::string::npos)
        << message;
    EXPECT_NE(MessageOf(Replaced(Golden(), "0.22", "nan")).find("n is nan"), std::string::npos);
}

TEST_F(MaterialDeckFile, WithoutTextsInQuotesTheMaterialGoesByTheFilesName)
{
    std::string const path = mFolder.Write("steel.fpi", Replaced(Golden(), " \"DC04\" \"deep drawing, mild\"", ""));
    MaterialDeck const deck = ReadMaterialDeck(path);
    EXPECT_EQ(deck.entry.material.name, "steel");
    EXPECT_EQ(deck.remarks.size(), 3U);
}

TEST_F(MaterialDeckFile, EveryPrefixIsAMaterialOrAnErrorWithTheFilesName)
{
    std::string const deck = Golden();
    for (std::size_t length = 0; length < deck.size(); length += 3)
    {
        std::string const message = MessageOf(deck.substr(0, length));
        if (!message.empty())
        {
            EXPECT_NE(message.find("steel.fpi: "), std::string::npos) << length;
        }
    }
}

} // namespace voz::workbench
