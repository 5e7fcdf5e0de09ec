// IncrementalSettingsReaderTest.cpp: the reader of the database of incremental settings.

#include "CATUnicodeString.h"
#include "SettingsNumbers.h"
#include "TempFolder.h"
#include "VOZIncrementalSettings.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace
{

using settingsnumbers::numbersOf;
using testing::HasSubstr;

struct Database
{
    explicit Database(std::string const & path)
    {
        result = ReadIncrementSettingsFromXMLDatabase(CATUnicodeString(path.c_str()).ConvertToUTF16().c_str(), &text,
                                                      entries);
    }
    ~Database() { entries.DeleteAll(); }
    Database(Database const &) = delete;
    Database & operator=(Database const &) = delete;

    std::string error() const { return text.ConvertToChar(); }
    std::string name(int i) const { return entries[i]->m_strName.ToUnicodeString().ConvertToChar(); }

    CATUnicodeString text = "left over";
    VOZTPtrArray<VOZIncrementalSettings, int> entries{10};
    long result = 1;
};

class IncrementalDatabase : public testing::Test
{
protected:
    std::string write(std::string const & name, std::string const & text) const
    {
        std::ofstream(folder.Path(name), std::ios::binary) << text;
        return folder.Path(name);
    }

    std::string errorOf(std::string const & text)
    {
        Database const database(write("s.xml", text));
        EXPECT_EQ(database.result, E_FAIL);
        EXPECT_EQ(database.entries.GetSize(), 0);
        return database.error();
    }

    TempFolder folder;
};

std::string document(std::string const & inside)
{
    return "<incrementalSettings>\n" + inside + "</incrementalSettings>\n";
}

std::string entry(std::string const & name, std::string const & inside = "")
{
    return "<settings name=\"" + name + "\">\n" + inside + "</settings>\n";
}

// Every field, none with its default.
std::string const kWhole =
    "<integrationPoints>7</integrationPoints>\n<spareSetting>-3</spareSetting>\n"
    "<punchAcceleration unit=\"m/s2\">4000</punchAcceleration>\n"
    "<punchVelocityFlagSet unit=\"m/s\">1.5</punchVelocityFlagSet>\n"
    "<punchVelocityFlagClear unit=\"m/s\">3</punchVelocityFlagClear>\n"
    "<adaptivityLevel>5</adaptivityLevel>\n<adaptivePasses>12</adaptivePasses>\n"
    "<strokeThreshold unit=\"mm\">60</strokeThreshold>\n<adaptSizeFactor>1.25</adaptSizeFactor>\n"
    "<iadpn90>6</iadpn90>\n<adaptEnergyFactor>-1.5</adaptEnergyFactor>\n"
    "<adaptThicknessFactor>0.75</adaptThicknessFactor>\n<dt2msFactor>1.1</dt2msFactor>\n"
    "<binderGapFactor>0.2</binderGapFactor>\n<binderAccelFactor>0.5</binderAccelFactor>\n"
    "<smoothContact>yes</smoothContact>\n<hourglassType>0</hourglassType>\n"
    "<outputPositions unit=\"%\">0 12.5 50 100</outputPositions>\n";

TEST_F(IncrementalDatabase, ReadsEveryFieldIntoSI)
{
    Database const database(write("s.xml", document(entry("all", kWhole))));
    ASSERT_EQ(database.result, 0) << database.error();
    EXPECT_EQ(database.error(), "");
    ASSERT_EQ(database.entries.GetSize(), 1);
    EXPECT_EQ(database.name(0), "all");
    EXPECT_THAT(numbersOf(*database.entries[0]),
                testing::ElementsAre(7, -3, 4000, 1.5, 3, 5, 12, testing::DoubleEq(0.06), 1.25, 6, -1.5, 0.75, 1.1, 0.2,
                                     0.5, 1, 0, 4, 0, 12.5, 50, 100));
}

TEST_F(IncrementalDatabase, AFieldThatIsLeftOutHasTheRecordsDefault)
{
    Database const database(write("s.xml", document(entry("few", "<iadpn90>3</iadpn90>"))));
    ASSERT_EQ(database.result, 0) << database.error();
    VOZIncrementalSettings expected;
    expected.m_nIadpn90 = 3;
    EXPECT_EQ(numbersOf(*database.entries[0]), numbersOf(expected));
}

TEST_F(IncrementalDatabase, HonoursEachUnit)
{
    Database const database(
        write("s.xml", document(entry("u", "<strokeThreshold unit=\"m\">0.06</strokeThreshold>"
                                           "<punchVelocityFlagSet unit=\"mm/s\">1500</punchVelocityFlagSet>"))));
    ASSERT_EQ(database.result, 0) << database.error();
    EXPECT_DOUBLE_EQ(database.entries[0]->m_dStrokeThreshold, 0.06);
    EXPECT_DOUBLE_EQ(database.entries[0]->m_dPunchVelocityFlagSet, 1.5);
}

TEST_F(IncrementalDatabase, KeepsTheOrderOfFilesByNameAndOfEntriesInThem)
{
    write("b.xml", document(entry("third")));
    write("a.xml", document(entry("second") + entry("first")));
    write("notes.txt", "not a database");
    Database const database(folder.Path());
    ASSERT_EQ(database.entries.GetSize(), 3) << database.error();
    EXPECT_EQ(database.name(0) + database.name(1) + database.name(2), "secondfirstthird");
}

TEST_F(IncrementalDatabase, AppendsToWhatIsThereAndAFailureAppendsNothing)
{
    VOZTPtrArray<VOZIncrementalSettings, int> entries(10);
    entries.Add(new VOZIncrementalSettings);
    auto const read = [&](std::string const & text)
    {
        return ReadIncrementSettingsFromXMLDatabase(
            CATUnicodeString(write("s.xml", text).c_str()).ConvertToUTF16().c_str(), nullptr, entries);
    };
    EXPECT_EQ(read(document(entry("a") + entry("b", "<iadpn90>x</iadpn90>"))), E_FAIL);
    EXPECT_EQ(entries.GetSize(), 1);
    EXPECT_EQ(read(document(entry("a") + entry("b"))), 0);
    EXPECT_EQ(entries.GetSize(), 3);
    EXPECT_EQ(read(document("")), 0); // a database without an entry is a good one
    EXPECT_EQ(entries.GetSize(), 3);
    entries.DeleteAll();
}

TEST_F(IncrementalDatabase, TakesTheEndsOfEveryRangeAndRefusesWhatLiesBeyond)
{
    struct Case
    {
        std::string element;
        std::string least;
        std::string greatest;
        std::string below;
        std::string above;
        std::string unit;
    };
    for (Case const & c : {
             Case{"integrationPoints", "1", "10", "0", "11", ""},
             Case{"spareSetting", "-1000000", "1000000", "-1000001", "1000001", ""},
             Case{"punchAcceleration", "1", "1000000", "0.999", "1000001", "m/s2"},
             Case{"punchVelocityFlagSet", "0.001", "100", "0", "100.1", "m/s"},
             Case{"punchVelocityFlagClear", "0.001", "100", "-5", "1e9", "m/s"},
             Case{"adaptivityLevel", "1", "10", "0", "11", ""},
             Case{"adaptivePasses", "1", "10000", "0", "10001", ""},
             Case{"strokeThreshold", "0", "10", "-0.001", "10.1", "m"},
             Case{"adaptSizeFactor", "0.01", "100", "0", "101", ""},
             Case{"iadpn90", "-1", "100", "-2", "101", ""},
             Case{"adaptEnergyFactor", "-100", "100", "-101", "101", ""},
             Case{"adaptThicknessFactor", "0", "1", "-0.1", "1.1", ""},
             Case{"dt2msFactor", "0.01", "100", "0", "101", ""},
             Case{"binderGapFactor", "0.001", "100", "0", "101", ""},
             Case{"binderAccelFactor", "0.001", "100", "0", "101", ""},
             Case{"hourglassType", "0", "10", "-1", "11", ""},
         })
    {
        std::string const open = "<" + c.element + (c.unit.empty() ? "" : " unit=\"" + c.unit + "\"") + ">";
        auto const with = [&](std::string const & value)
        { return document(entry("r", open + value + "</" + c.element + ">")); };
        EXPECT_EQ(Database(write("s.xml", with(c.least))).error(), "");
        EXPECT_EQ(Database(write("s.xml", with(c.greatest))).error(), "");
        for (std::string const & value : {c.below, c.above})
            EXPECT_THAT(errorOf(with(value)), HasSubstr("s.xml:3: <" + c.element + "> is " + value + "; expected "));
    }
}

TEST_F(IncrementalDatabase, RefusesWhatItDoesNotUnderstand)
{
    struct Case
    {
        std::string inside;
        char const * message;
    };
    for (Case const & c : {
             Case{"<adaptSizefactor>2</adaptSizefactor>",
                  "s.xml:3: <settings> holds <adaptSizefactor>; expected <adaptSizeFactor>, perhaps"},
             Case{"<outputs>0 100</outputs>", "<settings> holds <outputs>; expected <"},
             Case{"<smoothcontact/>", "expected <smoothContact>, perhaps"},
             Case{"loose", "<settings> holds the text \"loose\"; expected elements alone"},
             Case{"<iadpn90>3</iadpn90>\n<iadpn90>3</iadpn90>", "s.xml:4: <iadpn90> stands twice"},
             Case{"<iadpn90>3.5</iadpn90>", "<iadpn90> is 3.5; expected a whole number"},
             Case{"<iadpn90>nan</iadpn90>", "<iadpn90> is \"nan\"; expected a number"},
             Case{"<dt2msFactor>inf</dt2msFactor>", "is \"inf\"; expected a number"},
             Case{"<dt2msFactor>1e999</dt2msFactor>", "is \"1e999\"; expected a number"},
             Case{"<dt2msFactor>0,9</dt2msFactor>", "is \"0,9\"; expected a number"},
             Case{"<dt2msFactor>0.9 1</dt2msFactor>", "is \"0.9 1\"; expected a number"},
             Case{"<dt2msFactor/>", "is \"\"; expected a number"},
             Case{"<dt2msFactor>0.9<!-- -->1</dt2msFactor>", "<dt2msFactor> holds the text \"1\""},
             Case{"<dt2msFactor>0.9<b/></dt2msFactor>", "<dt2msFactor> holds <b>; expected one text alone"},
             Case{"<dt2msFactor unit=\"m\">1</dt2msFactor>", "has the attribute \"unit\"; expected no attribute"},
             Case{"<strokeThreshold>60</strokeThreshold>", "has no unit; expected unit=\"mm\" or \"m\""},
             Case{"<strokeThreshold unit=\"in\">60</strokeThreshold>", "has the unit \"in\""},
             Case{"<strokeThreshold unit=\"mm\" unit=\"m\">60</strokeThreshold>",
                  "s.xml:3: <strokeThreshold> has the attribute \"unit\" twice; expected it once"},
             Case{"<smoothContact>true</smoothContact>", "is \"true\"; expected \"yes\" or \"no\""},
             Case{"<smoothContact a=\"b\">yes</smoothContact>", "has the attribute \"a\""},
         })
        EXPECT_THAT(errorOf(document(entry("steel", c.inside))), HasSubstr(c.message));
}

TEST_F(IncrementalDatabase, TakesPositionsThatRiseFromTheStartOfTheStrokeToItsEnd)
{
    auto const with = [](std::string const & text)
    { return document(entry("p", "<outputPositions unit=\"%\">" + text + "</outputPositions>")); };
    Database const three(write("s.xml", with("\n 0\t1e-3\r\n 100 ")));
    ASSERT_EQ(three.result, 0) << three.error();
    EXPECT_EQ(three.entries[0]->m_nOutputPoints, 3);
    EXPECT_EQ(three.entries[0]->m_padOutputPositions[1], 1e-3);
    std::string many = "0";
    for (int i = 1; i < 999; ++i)
        many += " " + std::to_string(0.1 * i);
    Database const thousand(write("s.xml", with(many + " 100")));
    EXPECT_EQ(thousand.result, 0) << thousand.error();
    EXPECT_EQ(thousand.entries[0]->m_nOutputPoints, 1000);

    EXPECT_THAT(errorOf(with(many + " 99.95 100")), HasSubstr("more positions; expected 3 to 1000"));
    EXPECT_THAT(errorOf(with("0 100")), HasSubstr("fewer positions; expected 3 to 1000"));
    EXPECT_THAT(errorOf(with("")), HasSubstr("fewer positions"));
    EXPECT_THAT(errorOf(with("0 50 50 100")), HasSubstr("after 50 comes 50; expected positions that rise"));
    EXPECT_THAT(errorOf(with("0 50 40 100")), HasSubstr("after 50 comes 40"));
    EXPECT_THAT(errorOf(with("1 50 100")), HasSubstr("run from 1 to 100; expected 0 to 100"));
    EXPECT_THAT(errorOf(with("0 50 99")), HasSubstr("run from 0 to 99"));
    EXPECT_THAT(errorOf(with("-5 50 100")), HasSubstr("run from -5 to 100"));
    EXPECT_THAT(errorOf(with("0 50 101")), HasSubstr("run from 0 to 101"));
    EXPECT_THAT(errorOf(with("0 a 100")), HasSubstr("a position is \"a\"; expected a number"));
    EXPECT_THAT(errorOf(with("0, 50, 100")), HasSubstr("a position is \"0,\""));
}

TEST_F(IncrementalDatabase, RefusesABrokenDocumentWithItsLine)
{
    EXPECT_THAT(errorOf("<incrementalSettings>\n<settings name=\"a\">\n</incrementalSettings>"),
                HasSubstr("s.xml:3: the XML is broken"));
    EXPECT_THAT(errorOf(""), HasSubstr("s.xml:1: the XML is broken"));
    EXPECT_THAT(errorOf("<materials/>"), HasSubstr("element is <materials>; expected <incrementalSettings>"));
    EXPECT_THAT(errorOf(document("<setting/>")), HasSubstr("s.xml:2: <incrementalSettings> holds <setting>"));
    EXPECT_THAT(errorOf(document("<settings/>")), HasSubstr("an entry has no name"));
    EXPECT_THAT(errorOf(document(entry(" a"))), HasSubstr("without blanks at its ends"));
    EXPECT_THAT(errorOf(document("<settings name=\"a\" group=\"b\"/>")), HasSubstr("has the attribute \"group\""));
}

// A second document behind the first, or what an editor left there, is no comment.
TEST_F(IncrementalDatabase, RefusesWhatStandsBesideTheDocumentsElement)
{
    EXPECT_THAT(errorOf(document(entry("a")) + document(entry("b"))),
                HasSubstr("s.xml:5: beside <incrementalSettings> stands <incrementalSettings>; expected one "
                          "<incrementalSettings> alone"));
    EXPECT_THAT(errorOf(document(entry("a")) + "<settings name=\"b\"/>"), HasSubstr("s.xml:5: beside"));
    EXPECT_THAT(errorOf(document(entry("a")) + "loose\n"), HasSubstr("stands the text \"loose\""));
    EXPECT_THAT(errorOf("loose " + document(entry("a"))), HasSubstr("s.xml:1: beside"));
    EXPECT_THAT(errorOf("<?xml version=\"1.0\"?>\n<!-- nothing -->\n"), HasSubstr("there is no element"));
    Database const good(
        write("s.xml", "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- a -->\n" + document(entry("a")) + "\n<!-- b -->\n"));
    EXPECT_EQ(good.result, 0) << good.error();
}

TEST_F(IncrementalDatabase, RefusesTwoEntriesOfOneNameAndTellsBothPlaces)
{
    write("a.xml", document(entry("steel")));
    write("b.xml", document("\n" + entry("steel")));
    Database const database(folder.Path());
    EXPECT_EQ(database.result, E_FAIL);
    EXPECT_EQ(database.entries.GetSize(), 0);
    EXPECT_THAT(database.error(), testing::ContainsRegex("b\\.xml:3: .*\"steel\".*a\\.xml:2 already"));
}

TEST_F(IncrementalDatabase, RefusesAMissingPathAFolderWithoutDatabaseAndNoPathAtAll)
{
    EXPECT_THAT(Database(folder.Path("nothing.xml")).error(), HasSubstr("nothing.xml: cannot be opened"));
    EXPECT_THAT(Database(folder.Path()).error(), HasSubstr("holds no file"));
    EXPECT_THAT(Database("").error(), HasSubstr("no path was given"));
    VOZTPtrArray<VOZIncrementalSettings, int> entries(1);
    EXPECT_EQ(ReadIncrementSettingsFromXMLDatabase(nullptr, nullptr, entries), E_FAIL);
}

void expectSane(Database const & database, std::string const & file)
{
    if (database.result != 0)
    {
        EXPECT_EQ(database.error().rfind(file, 0), 0U) << database.error();
        EXPECT_EQ(database.entries.GetSize(), 0);
    }
    for (int i = 0; i < database.entries.GetSize(); ++i)
    {
        VOZIncrementalSettings const & s = *database.entries[i];
        EXPECT_GE(s.m_nOutputPoints, 3);
        EXPECT_TRUE(std::isfinite(s.m_dPunchVelocityFlagClear) && s.m_dPunchVelocityFlagClear > 0.0);
    }
}

TEST_F(IncrementalDatabase, EveryPrefixOfAGoodFileIsRefused)
{
    std::string const text = document(entry("all", kWhole));
    for (std::size_t length = 0; length + 2 < text.size(); ++length)
    {
        std::string const file = write("s.xml", text.substr(0, length));
        Database const database(file);
        EXPECT_EQ(database.result, E_FAIL) << length;
        expectSane(database, file);
    }
}

// One byte at a time, at every place; then many at random.
TEST_F(IncrementalDatabase, FilesWithBrokenBytesAreReadOrRefused)
{
    std::string const good = document(entry("all", kWhole) + entry("few"));
    std::mt19937 random(11);
    auto const check = [&](std::string const & text)
    {
        std::string const file = write("s.xml", text);
        expectSane(Database(file), file);
    };
    for (std::size_t at = 0; at < good.size(); ++at)
    {
        std::string text = good;
        text[at] = static_cast<char>(at % 2 == 0 ? text[at] ^ (1 << random() % 8) : random() % 256);
        check(text);
    }
    for (int turn = 0; turn < 300; ++turn)
    {
        std::string text = good;
        for (std::size_t change = 0; change <= random() % 4; ++change)
        {
            std::size_t const at = random() % text.size();
            if (random() % 3 == 0)
                text.erase(at, 1 + random() % 30);
            else if (random() % 2 == 0)
                text.insert(at, text.substr(random() % text.size(), random() % 60));
            else
                text.insert(at, 1 + random() % 3, "<>&\"'/=-9e"[random() % 10]);
        }
        check(text);
    }
}

// The documents' example holds every field, each with its default.
TEST_F(IncrementalDatabase, TheExampleOfTheDocumentsHoldsTheDefaults)
{
    std::ifstream file(std::string(VOZ_SOURCE_DIR) + "/docs/incremental-settings.md");
    std::string const page((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::size_t const start = page.find("```xml\n") + 7;
    std::string const example = page.substr(start, page.find("```", start) - start);
    Database const database(write("s.xml", example));
    ASSERT_EQ(database.result, 0) << database.error();
    EXPECT_EQ(std::count(example.begin(), example.end(), '\n'), 5 + std::count(kWhole.begin(), kWhole.end(), '\n'));
    EXPECT_EQ(numbersOf(*database.entries[0]), numbersOf(VOZIncrementalSettings()));
}

// The shipped templates.

std::string const kShipped = std::string(VOZ_SOURCE_DIR) + "/InstallRoot/Increment";

TEST(ShippedIncrementalSettings, AreThereForThreeKindsOfSheet)
{
    Database const database(kShipped);
    ASSERT_EQ(database.result, 0) << database.error();
    std::vector<std::string> names;
    for (int i = 0; i < database.entries.GetSize(); ++i)
        names.push_back(database.name(i));
    EXPECT_THAT(names, testing::ElementsAre("aluminium", "high-strength-steel", "mild-steel", "mild-steel-draft"));
}

TEST(ShippedIncrementalSettings, MildSteelWritesTheDefaultsOut)
{
    Database const database(kShipped + "/mild-steel.xml");
    ASSERT_EQ(database.result, 0) << database.error();
    EXPECT_EQ(numbersOf(*database.entries[0]), numbersOf(VOZIncrementalSettings()));
}

TEST(ShippedIncrementalSettings, LieInWhatAFormingEngineerWouldTake)
{
    Database const database(kShipped);
    for (int i = 0; i < database.entries.GetSize(); ++i)
    {
        VOZIncrementalSettings const & s = *database.entries[i];
        std::string const name = database.name(i);
        EXPECT_GE(s.m_nIntegrationPoints, 3) << name;
        EXPECT_LE(s.m_nIntegrationPoints, 5) << name; // what the result file keeps
        EXPECT_LE(s.m_dPunchVelocityFlagClear, 5.0) << name;
        EXPECT_LT(s.m_dPunchVelocityFlagSet, s.m_dPunchVelocityFlagClear) << name;
        // The velocity is reached in the first and left in the last 2.5 mm.
        EXPECT_LE(0.5 * s.m_dPunchVelocityFlagClear * s.m_dPunchVelocityFlagClear / s.m_dPunchAcceleration, 0.0025001)
            << name;
        EXPECT_GE(s.m_dAdaptSizeFactor, 1.0) << name;
        EXPECT_GT(s.m_dAdaptThicknessFactor, 0.5) << name;
        EXPECT_LE(s.m_dAdaptThicknessFactor, 0.9) << name;
        EXPECT_LE(s.m_dDT2MSFactor, name == "mild-steel-draft" ? 2.0 : 0.94) << name;
        EXPECT_EQ(s.m_nHourglassType, 4) << name;
    }
}

} // namespace
