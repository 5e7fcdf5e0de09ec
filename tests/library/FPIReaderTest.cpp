// FPIReaderTest.cpp: a material out of a deck: the decks of tests/golden/deck, a library entry, bad ones.

#include "FPIReader.h"

#include "CommaLocale.h"
#include "DeckJobs.h"
#include "FPIReaderFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>

using namespace fpi;

namespace
{
TEST(FPIReader, ReadsALibraryEntry)
{
    Read const read(libraryEntry());
    EXPECT_EQ(read.error, 0);
    EXPECT_EQ(read.reader.getNumMaterials(), 1);
    EXPECT_EQ(read.name(), "DC04");
    EXPECT_EQ(read.description(), "deep drawing, mild");
    EXPECT_EQ(Inspection::curveSize(read.reader), 4);
    EXPECT_EQ(Inspection::curveId(read.reader), 1);
    EXPECT_EQ(read.properties(), (Properties{1, 0, 0, 0, 160.5F, 0.22F, 1.55F, 520.25F, //
                                             0, 0, 0, 0, 0, 0.031496F, 0, 0}));
    Control control{};
    control[2] = 2;
    control[3] = 1;
    control[19] = 2;
    control[29] = 1;
    int const second[6] = {4, 3, 3, 19961024, 2, 1};
    std::copy(std::begin(second), std::end(second), control.begin() + 30);
    EXPECT_EQ(read.control(), control);
}

TEST(FPIReader, ReadsTheMaterialBackThatADeckWasWrittenWith)
{
    int decks = 0;
    for (fs::directory_entry const & entry : fs::directory_iterator(deckjobs::goldenFolder()))
    {
        if (entry.path().extension() != ".golden")
            continue;
        ++decks;
        deckjobs::Json const job =
            deckjobs::Json::parse(deckjobs::readFile(fs::path(entry.path()).replace_extension(".json")));
        Read const read(deckjobs::readFile(entry.path()));
        EXPECT_EQ(read.error, 0) << entry.path();
        EXPECT_EQ(read.reader.getNumMaterials(), 1);
        Properties const properties = read.properties();
        deckjobs::Json const & material = job["material"];
        EXPECT_EQ(properties[0], 1.0F) << entry.path();
        EXPECT_NEAR(properties[4], material["yield"].get<double>(), 1e-4) << entry.path();
        EXPECT_NEAR(properties[5], material["nvalue"].get<double>(), 1e-6) << entry.path();
        EXPECT_NEAR(properties[6], material["rBar"].get<double>(), 1e-6) << entry.path();
        EXPECT_NEAR(properties[7], material["intercept"].get<double>(), 1e-4) << entry.path();
        EXPECT_NEAR(properties[13], material["thickness"].get<double>() / 25.4, 1e-6) << entry.path();
        Control const control = read.control();
        EXPECT_EQ(control[0], static_cast<int>(job["nodes"].size())) << entry.path();
        EXPECT_EQ(control[1], static_cast<int>(job["elems"].size())) << entry.path();
        EXPECT_EQ(control[2], 2) << entry.path();
        EXPECT_EQ((std::array<int, 6>{control[36], control[37], control[38], control[39], control[40], control[41]}),
                  (std::array<int, 6>{control[0], 0, 0, control[39], 0, 1}));
        EXPECT_EQ(control[58], job["controlValue"].get<int>()) << entry.path();
        bool const hasCurves = !job["properties"].empty();
        EXPECT_EQ(read.name(), hasCurves ? "material" : "") << entry.path();
        EXPECT_EQ(read.description(), hasCurves ? "none" : "") << entry.path();
    }
    EXPECT_GE(decks, 9);
}

TEST(FPIReader, ReportsOneMaterialWhateverTheDeckAnnounces)
{
    for (char const * count : {"-5", "0", "1", "2", "4", "25", "1000000000"})
    {
        Read const read(deck("block II\n6 3 " + std::string(count) + " 1\n" + kStars));
        EXPECT_EQ(read.error, 0) << count;
        EXPECT_EQ(read.control()[2], 2) << count;
        EXPECT_EQ(read.reader.getNumMaterials(), 1) << count;
        EXPECT_EQ(read.name(), "steel") << count;
    }
}

TEST(FPIReader, AFurtherControlLineIsReadOnlyIfTheLastFieldBeforeItIsNotZero)
{
    // the flags of lines 1 to 6; the seventh line's own says nothing
    for (std::size_t lines = 1; lines <= 7; ++lines)
    {
        std::string control = "block II\n" + kLine1 + (lines > 1 ? "-1\n" : "0\n");
        for (int line = 2; line <= 8; ++line) // an eighth is there, and never read
            control += "1 2 3 4 5 " + std::string(static_cast<std::size_t>(line) < lines ? "7\n" : "0\n");
        Read const read(deck(control + kStars));
        EXPECT_EQ(read.error, 0);
        Control const got = read.control();
        for (std::size_t line = 2; line <= 7; ++line)
            for (std::size_t k = 0; k < 5; ++k)
                EXPECT_EQ(got[30 + 6 * (line - 2) + k], line <= lines ? static_cast<int>(k) + 1 : 0)
                    << lines << " lines, line " << line;
    }
}

TEST(FPIReader, AFlagOnTheLastControlLineReadsNoEighth)
{
    std::string control = "block II\n" + kLine1 + "1\n";
    for (int line = 2; line <= 9; ++line)
        control += "1 1 1 1 1 1\n";
    Read const read(deck(control + kStars));
    EXPECT_EQ(read.error, 0);
    EXPECT_EQ(read.control()[65], 1);
    EXPECT_EQ(read.name(), "steel");
}

TEST(FPIReader, FieldsPartAtCommasBlanksAsterisksAndTabs)
{
    Read const read(
        deck("block II\n11,12*13\t14 , *\t 15\n" + kStars, "block V\n7,1.5*2.5\t3.5 , * 4.5\n,,1\n \n" + kStars));
    Control const control = read.control();
    EXPECT_EQ((std::array<int, 6>{control[0], control[1], control[2], control[3], control[4], control[5]}),
              (std::array<int, 6>{11, 12, 2, 14, 15, 0}));
    EXPECT_EQ(read.properties(), (Properties{1, 1.5F, 2.5F, 3.5F, 4.5F, 0, 0, 0, 1}));
}

TEST(FPIReader, AFieldThatIsNoNumberIsZeroWhateverFollows)
{
    Read const read(deck("block II\n- 1 \r 2\n" + kStars, "block V\n1 \r 0.5 - 7 x\n0\n0\n" + kStars));
    EXPECT_EQ((std::array<int, 2>{read.control()[0], read.control()[1]}), (std::array<int, 2>{0, 1}));
    EXPECT_EQ(read.control()[3], 2);
    EXPECT_EQ(read.properties(), (Properties{1, 0, 0.5F, 0, 7}));
}

TEST(FPIReader, ExtraFieldsAreNotRead)
{
    Read const read(deck("block II\n" + kLine1 + "0 99 98\n" + kStars,
                         "block V\n1 2 3 4 5 6 7 8 9\n1 2 3 4 5 6 7 8 9\n1 2 3 4 5 6 7 8 9\n" + kStars));
    EXPECT_EQ(read.control()[30], 0);
    EXPECT_EQ(read.properties(), (Properties{1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(FPIReader, TheRecordNumberIsAlwaysOne)
{
    Read const read(deck(kControl, "block V\n7 0 0 0 160\n0\n0\n" + kStars));
    EXPECT_EQ(read.properties()[0], 1.0F);
    EXPECT_EQ(read.properties()[4], 160.0F);
}

TEST(FPIReader, OnlyTheFirstRecordIsRead)
{
    Read const read(deck(kControl, "block V\n" + kRecord + "2 9 9 9 9 9 9 9\n9\n9\n" + kStars));
    EXPECT_EQ(read.properties()[4], 160.5F);
    EXPECT_EQ(read.properties()[8], 0.0F);
    EXPECT_EQ(read.name(), "steel");
}

TEST(FPIReader, LabelsAreOfOneCase)
{
    for (bool const upper : {false, true})
    {
        auto const label = [upper](char const * number) { return (upper ? "BLOCK " : "block ") + std::string(number); };
        Read const read(deck(label("II") + "\n0\n" + kStars, label("V") + "\n" + kRecord + kStars,
                             label("XXVI") + "\n1 3 \"a\" \"b\"\n" + kStars));
        EXPECT_EQ(read.error, 0);
        EXPECT_EQ(read.properties()[4], 160.5F);
        EXPECT_EQ(read.name(), "a");
    }
    EXPECT_EQ(Read(deck("Block II\n0\n" + kStars)).error, 1);
    EXPECT_EQ(Read(deck("block ii\n0\n" + kStars)).error, 1);
    EXPECT_EQ(Read(deck(kControl, "Block V\n" + kRecord + kStars)).properties()[4], 0.0F);
    EXPECT_EQ(Read(deck(kControl, kMaterial, "Block XXVI\n1 3 \"a\" \"b\"\n" + kStars)).name(), "");
}

TEST(FPIReader, WithoutABlockVItReadsFromBlockVIOn)
{
    Read const read(deck(kControl, "block VI: tables\n0 0 0 0.5 0 0 0 0\n0.25\n0\n" + kStars));
    EXPECT_EQ(read.error, 0);
    EXPECT_EQ(read.properties(), (Properties{1, 0, 0, 0.5F, 0, 0, 0, 0, 0.25F}));
    EXPECT_EQ(read.name(), "steel");
}

// "block III" begins as "block II" does, and so its rows are taken for control lines.
TEST(FPIReader, ADeckWithoutAHeaderHasItsFirstBlockTakenForIt)
{
    Read const lost(kControl + "block IV\n" + kStars + kMaterial + kCurve);
    EXPECT_EQ(lost.error, 1);
    EXPECT_EQ(lost.reader.getNumMaterials(), 0);
    Read const nodes(kControl + "block III\n5 6 7 8\n" + kStars + kMaterial + kCurve);
    EXPECT_EQ(nodes.error, 0);
    EXPECT_EQ(nodes.control()[0], 5);
    EXPECT_EQ(nodes.name(), "steel");
}

TEST(FPIReader, WhatIsNoDeckIsAnErrorOfOne)
{
    for (std::string const & text :
         {std::string(), std::string("\n"), std::string("header"), "header\n" + kStars, kStars, kStars + kStars,
          "header\n" + kStars + "\n" + kControl, std::string(5000, 'x'), std::string(100, '\0')})
    {
        Read const read(text);
        EXPECT_EQ(read.error, 1) << text;
        EXPECT_EQ(read.reader.getNumMaterials(), 0);
        EXPECT_EQ(read.control(), Control{});
        EXPECT_EQ(read.properties()[0], -99.0F);
        EXPECT_EQ(read.name(), "");
    }
}

TEST(FPIReader, WithoutAFileTheErrorIsOne)
{
    int error = 0;
    FPIReader const reader(nullptr, error, false);
    EXPECT_EQ(error, 1);
    EXPECT_EQ(reader.getNumMaterials(), 0);
    int control = 5;
    reader.getFPIControl(&control);
    EXPECT_EQ(control, 5);
}

TEST(FPIReader, AnEndInsideTheControlBlockIsAnErrorOfTen)
{
    std::string const head = "header\n" + kStars + "block II\n";
    for (std::string const & text : {head, head + kLine1 + "0\n", head + kLine1 + "1\n",
                                     head + kLine1 + "1\n4 3 3 19961024 2 1\n1 2", head + "0\nand so on\n"})
    {
        Read const read(text);
        EXPECT_EQ(read.error, 10) << text;
        EXPECT_EQ(read.reader.getNumMaterials(), 0);
        EXPECT_EQ(read.control()[2], 2);
        EXPECT_EQ(read.properties()[0], -99.0F);
    }
}

TEST(FPIReader, ASeparatorEndsTheControlBlockAtAnyPoint)
{
    Read const none(deck("block II\n" + kStars));
    EXPECT_EQ(none.error, 0);
    Control control{};
    control[2] = 2;
    EXPECT_EQ(none.control(), control);
    EXPECT_EQ(none.name(), "steel");
    EXPECT_EQ(none.properties()[4], 160.5F); // this separator was the block's: no other block was passed over

    Read const broken(deck("block II\n" + kLine1 + "1\n1 2 3 4 5 6\n" + kStars));
    EXPECT_EQ(broken.error, 0);
    EXPECT_EQ(broken.control()[35], 6);
    EXPECT_EQ(broken.name(), "steel");
}

// The curve read afterwards has the last word on the error.
TEST(FPIReader, ABrokenRecordIsForgottenButItsPropertiesStayZero)
{
    Read const one(deck(kControl, "block V\n1 0 0 0 160\n" + kStars + "block VI\n" + kStars));
    EXPECT_EQ(one.error, 0);
    EXPECT_EQ(one.properties(), (Properties{1, 0, 0, 0, 160}));
    EXPECT_EQ(one.name(), "steel");
    Read const empty(deck(kControl, "block V\n" + kStars + "block VI\n" + kStars));
    EXPECT_EQ(empty.error, 0);
    EXPECT_EQ(empty.properties(), Properties{});
    Read const missing("header\n" + kStars + kControl);
    EXPECT_EQ(missing.error, 0);
    EXPECT_EQ(missing.properties(), Properties{});
    EXPECT_EQ(missing.reader.getNumMaterials(), 1);
}

// Behind the broken record the reader looks for the separator of the block, which it has had.
TEST(FPIReader, ABrokenRecordCostsTheNextBlock)
{
    Read const read(deck(kControl, "block V\n1\n" + kStars));
    EXPECT_EQ(read.error, 0);
    EXPECT_EQ(read.name(), ""); // block XXVI was passed over
}

TEST(FPIReader, ACurveLineWithoutQuotesHasNoNames)
{
    Read const read(deck(kControl, kMaterial, "block XXVI\n1 12 steel mild\n" + kStars));
    EXPECT_EQ(read.error, 0);
    EXPECT_EQ(read.name(), "");
    EXPECT_EQ(read.description(), "");
    EXPECT_EQ(Inspection::curveSize(read.reader), 12);
    EXPECT_EQ(Inspection::curveId(read.reader), 1);
}

TEST(FPIReader, QuotedTextsAreTakenOutBeforeTheFieldsAreCounted)
{
    struct Case
    {
        char const * line;
        char const * name;
        char const * description;
        int size;
    };
    for (Case const & wanted :
         {Case{"\"a b 9\" 7 \"c\" 8", "a b 9", "c", 8}, Case{"1 5 \"only one\"", "only one", "", 5},
          Case{"1 5 \"\" \"second\"", "", "second", 5}, Case{"1 5 \"open", "", "", 5},
          Case{"1 5 \"a\" \"open", "a", "", 5}, Case{"3", "", "", 0}, Case{"\"n\"\"d\"", "n", "d", 0},
          Case{"1,6,\"a,b\",\"*\"", "a,b", "*", 6}, Case{"", "", "", 0}})
    {
        Read const read(deck(kControl, kMaterial, std::string("block XXVI\n") + wanted.line + "\n" + kStars));
        EXPECT_EQ(read.error, 0);
        EXPECT_EQ(read.name(), wanted.name) << wanted.line;
        EXPECT_EQ(read.description(), wanted.description) << wanted.line;
        EXPECT_EQ(Inspection::curveSize(read.reader), wanted.size) << wanted.line;
    }
}

TEST(FPIReader, NamesAreCutTo255Characters)
{
    auto const nameOf = [](std::string const & text)
    { return Read(deck(kControl, kMaterial, "block XXVI\n1 0 \"" + text + "\" \"" + text + "\"\n")).name(); };
    EXPECT_EQ(nameOf(std::string(255, 'a')), std::string(255, 'a'));
    EXPECT_EQ(nameOf(std::string(256, 'a')), std::string(255, 'a'));
    EXPECT_EQ(nameOf(std::string(400, 'a')), std::string(255, 'a'));
    EXPECT_EQ(nameOf(std::string(254, 'a') + "\xC3\xA4"), std::string(254, 'a')); // no half of a character
    EXPECT_EQ(nameOf(std::string(253, 'a') + "\xC3\xA4"), std::string(253, 'a') + "\xC3\xA4");
}

TEST(FPIReader, ACurveBlockThatIsEmptyOrMissingHasNoNames)
{
    for (std::string const & curve :
         {std::string(), std::string("block XXVI"), "block XXVI\n" + kStars + "1 5 \"a\"\n"})
    {
        Read const read(deck(kControl, kMaterial, curve));
        EXPECT_EQ(read.error, 0);
        EXPECT_EQ(read.name(), "");
        EXPECT_EQ(Inspection::curveSize(read.reader), 0);
        EXPECT_EQ(Inspection::curveId(read.reader), 0);
    }
}

TEST(FPIReader, ALongLineGoesOnAsTheNext)
{
    std::string const blanks(1019, ' ');
    Read const read(deck(kControl, "block V\n1 2 " + blanks + "3 4\n5\n" + kStars));
    // 1023 characters: "1 2 " and the blanks; then "3 4", then "5"
    EXPECT_EQ(read.properties(), (Properties{1, 2, 0, 0, 0, 0, 0, 0, 3, 4, 0, 0, 0, 0, 0, 0, 5}));
    // a separator in the middle of a line becomes one
    Read const star(deck("block II\n1" + std::string(1022, ' ') + "*\n"));
    EXPECT_EQ(star.error, 0);
    EXPECT_EQ(star.name(), "steel");
}

TEST(FPIReader, LineEndsOfWindowsChangeNothing)
{
    std::string text;
    for (char const c : libraryEntry())
        text += c == '\n' ? std::string("\r\n") : std::string(1, c);
    Read const windows(text);
    Read const plain(libraryEntry());
    EXPECT_EQ(windows.error, 0);
    EXPECT_EQ(windows.control(), plain.control());
    EXPECT_EQ(windows.properties(), plain.properties());
    EXPECT_EQ(windows.name(), plain.name());
}

TEST(FPIReader, ReadsTheSameUnderACommaLocale)
{
    CommaLocale const locale;
    ASSERT_TRUE(locale.inForce());
    EXPECT_EQ(Read(libraryEntry()).properties()[13], 0.031496F);
}

TEST(FPIReader, MaterialsThatAreNotThereLeaveTheOutputAsItIs)
{
    Read const read(deck());
    for (int const i : {0, -1, 2, 24, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(read.properties(i)[0], -99.0F) << i;
    for (int const i : {0, -1, 25, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
    {
        EXPECT_EQ(read.name(i), "untouched") << i;
        EXPECT_EQ(read.description(i), "untouched") << i;
    }
    EXPECT_EQ(read.name(24), "");
}

TEST(FPIReader, TheFileStaysOpenAndBehindTheCurveLine)
{
    File const file = fileOf(deck() + "left over\n");
    int error = -1;
    FPIReader const reader(file.get(), error, false);
    char line[100];
    ASSERT_NE(std::fgets(line, sizeof line, file.get()), nullptr);
    EXPECT_EQ(line, kStars);
    ASSERT_NE(std::fgets(line, sizeof line, file.get()), nullptr);
    EXPECT_STREQ(line, "left over\n");
}

TEST(FPIReader, CopiesShareTheArraysAndOutliveTheirSource)
{
    auto source = std::make_unique<Read>(deck());
    FPIReader const copy(source->reader);
    Read assigned(std::string{});
    assigned.reader = source->reader;
    EXPECT_EQ(Inspection::useCount(copy), 3);
    source.reset();
    EXPECT_EQ(Inspection::useCount(copy), 2);
    EXPECT_EQ(copy.getNumMaterials(), 1);
    EXPECT_EQ(assigned.properties()[4], 160.5F);
    EXPECT_EQ(assigned.name(), "steel");
    EXPECT_EQ(assigned.description(), "mild");
    Inspection::cleanUp(assigned.reader);
    EXPECT_EQ(assigned.reader.getNumMaterials(), 0);
    EXPECT_EQ(assigned.properties()[0], -99.0F);
    EXPECT_EQ(Inspection::useCount(copy), 1);
}

TEST(FPIReader, TheLastTokenIsTheFifthField)
{
    EXPECT_EQ(Inspection::lastToken("1 2 3 4 5 6"), 5);
    EXPECT_EQ(Inspection::lastToken(" ,1*2\t3,,4 -17\n"), -17);
    EXPECT_EQ(Inspection::lastToken("1 2 3 4\n"), 0);
    EXPECT_EQ(Inspection::lastToken(""), 0);
    EXPECT_EQ(Inspection::lastToken(nullptr), 0);
}

TEST(FPIReader, BlocksAreSkippedUpToTheirSeparator)
{
    Read read(deck());
    File const file = fileOf("a\nb\n*\nc\n*\n" + kRecord + "rest\n*\n1\n*\nend\n");
    EXPECT_TRUE(Inspection::skip(read.reader, file.get()));
    EXPECT_EQ(Inspection::idBlock(read.reader, file.get()), 0);
    EXPECT_EQ(Inspection::materialProperties(read.reader, file.get()), 0);
    EXPECT_EQ(Inspection::materialBlock(read.reader, file.get()), 1); // 1, then the separator
    EXPECT_EQ(Inspection::materialBlock(read.reader, file.get()), 0); // the end after a line
    EXPECT_EQ(Inspection::materialBlock(read.reader, file.get()), 1);
    EXPECT_FALSE(Inspection::skip(read.reader, file.get()));
    EXPECT_EQ(Inspection::idBlock(read.reader, file.get()), 0);
}

} // namespace
