// VOZCatConfigPaserTest.cpp: the file's grammar, the conversions, and files that are none.

#include "VOZCatConfigPaser.h"

#include "CommaLocale.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

namespace
{
class ConfigFile : public testing::Test
{
protected:
    // A reader that has read these bytes.
    VOZCatConfigPaser & read(std::string const & text)
    {
        std::string path = folder.Write("config.cfg", text);
        mReader = std::make_unique<VOZCatConfigPaser>(path.data());
        EXPECT_EQ(mReader->ReadAndPaser(), 0);
        return *mReader;
    }

    static std::string value(VOZCatConfigPaser & reader, std::string key)
    {
        char text[256];
        std::memset(text, '#', sizeof text);
        return reader.GetString(key.data(), text) < 0 ? "(none)" : text;
    }

    static int index(VOZCatConfigPaser & reader, std::string key)
    {
        char text[256];
        return reader.GetString(key.data(), text);
    }

    TempFolder folder;

private:
    std::unique_ptr<VOZCatConfigPaser> mReader;
};

int integerOf(VOZCatConfigPaser & reader, std::string key)
{
    int value = -7;
    EXPECT_GE(reader.GetInteger(key.data(), value), 0) << key;
    return value;
}

double doubleOf(VOZCatConfigPaser & reader, std::string key)
{
    double value = -7.0;
    EXPECT_GE(reader.GetDouble(key.data(), value), 0) << key;
    return value;
}

class OpenReader : public VOZCatConfigPaser
{
public:
    using VOZCatConfigPaser::ReadLine;
    using VOZCatConfigPaser::VOZCatConfigPaser;
};
} // namespace

// One virtual operation, the path, two arrays and the count.
static_assert(std::has_virtual_destructor_v<VOZCatConfigPaser>);
static_assert(sizeof(VOZCatConfigPaser) == sizeof(void *) + 256 + 3 * sizeof(void *));

TEST_F(ConfigFile, SplitsALineAtItsFirstEqualsSign)
{
    VOZCatConfigPaser & reader = read("a=1\nb=x=y\nc=\n=d\n");
    EXPECT_EQ(value(reader, "a"), "1");
    EXPECT_EQ(value(reader, "b"), "x=y");
    EXPECT_EQ(value(reader, "c"), "");
    EXPECT_EQ(value(reader, ""), "d");
}

TEST_F(ConfigFile, TrimsNothing)
{
    VOZCatConfigPaser & reader = read("key = value \n\tother=\t1\n");
    EXPECT_EQ(value(reader, "key"), "(none)");
    EXPECT_EQ(value(reader, "key "), " value ");
    EXPECT_EQ(value(reader, "other"), "(none)");
    EXPECT_EQ(value(reader, "\tother"), "\t1");
}

TEST_F(ConfigFile, IgnoresEmptyLinesAndComments)
{
    VOZCatConfigPaser & reader = read("\n# a=1\n#b=2\n\n #c=3\nd=4#5\n\n");
    EXPECT_EQ(value(reader, "# a"), "(none)");
    EXPECT_EQ(value(reader, "#b"), "(none)");
    EXPECT_EQ(value(reader, " #c"), "3"); // only a line that begins with the mark is a comment
    EXPECT_EQ(value(reader, "d"), "4#5");
}

TEST_F(ConfigFile, ReturnsTheIndexOfTheEntry)
{
    VOZCatConfigPaser & reader = read("# head\na=1\n\nb=2\n# more\nc=3\n");
    EXPECT_EQ(index(reader, "a"), 0);
    EXPECT_EQ(index(reader, "b"), 1);
    EXPECT_EQ(index(reader, "c"), 2);
    EXPECT_EQ(index(reader, "d"), -1);
    int whole = 0;
    double real = 0.0;
    char key[] = "c";
    EXPECT_EQ(reader.GetInteger(key, whole), 2);
    EXPECT_EQ(reader.GetDouble(key, real), 2);
}

TEST_F(ConfigFile, ComparesKeysExactlyAndTheFirstWins)
{
    VOZCatConfigPaser & reader = read("Key=1\nkey=2\nKey=3\nKeyTwo=4\n");
    EXPECT_EQ(value(reader, "Key"), "1");
    EXPECT_EQ(value(reader, "key"), "2");
    EXPECT_EQ(value(reader, "KEY"), "(none)");
    EXPECT_EQ(value(reader, "Ke"), "(none)");
    EXPECT_EQ(index(reader, "Key"), 0);
}

TEST_F(ConfigFile, LeavesTheOutputAloneWithoutTheKey)
{
    VOZCatConfigPaser & reader = read("a=1\n");
    char key[] = "b";
    char text[256] = "default";
    int whole = 42;
    double real = 4.2;
    EXPECT_EQ(reader.GetString(key, text), -1);
    EXPECT_EQ(reader.GetInteger(key, whole), -1);
    EXPECT_EQ(reader.GetDouble(key, real), -1);
    EXPECT_STREQ(text, "default");
    EXPECT_EQ(whole, 42);
    EXPECT_EQ(real, 4.2);
    EXPECT_EQ(reader.GetInteger(nullptr, whole), -1);
}

TEST_F(ConfigFile, ConvertsAsAtofDoesAndTruncatesToIntegers)
{
    VOZCatConfigPaser & reader = read("a=2.9\nb=-2.9\nc= 7 tons\nd=text\ne=\nf=1e3\ng=1e30\nh=-1e30\ni=nan\nj=0.1\n");
    EXPECT_EQ(integerOf(reader, "a"), 2);
    EXPECT_EQ(integerOf(reader, "b"), -2);
    EXPECT_EQ(integerOf(reader, "c"), 7);
    EXPECT_EQ(integerOf(reader, "d"), 0);
    EXPECT_EQ(integerOf(reader, "e"), 0);
    EXPECT_EQ(integerOf(reader, "f"), 1000);
    EXPECT_EQ(integerOf(reader, "g"), INT_MAX);
    EXPECT_EQ(integerOf(reader, "h"), INT_MIN);
    EXPECT_EQ(integerOf(reader, "i"), 0);
    EXPECT_EQ(doubleOf(reader, "a"), 2.9);
    EXPECT_EQ(doubleOf(reader, "c"), 7.0);
    EXPECT_EQ(doubleOf(reader, "d"), 0.0);
    EXPECT_EQ(doubleOf(reader, "j"), 0.1);
}

TEST_F(ConfigFile, ReadsPointsUnderACommaLocaleInSinglePrecision)
{
    VOZCatConfigPaser & reader = read("a=0.1\nb=16777217\nc=2.9\n");
    CommaLocale const comma;
    ASSERT_TRUE(comma.inForce());
    EXPECT_EQ(doubleOf(reader, "a"), static_cast<double>(0.1F));
    EXPECT_EQ(integerOf(reader, "b"), 16777216);
    EXPECT_EQ(integerOf(reader, "c"), 2);
}

TEST_F(ConfigFile, ReadsTheLastLineWithoutItsLineFeed)
{
    EXPECT_EQ(value(read("a=1\nb=2"), "b"), "2");
}

TEST_F(ConfigFile, TakesTheOtherEndOfLineToo)
{
    VOZCatConfigPaser & reader = read("a=1\r\n\r\n# c\r\nb=x y\r\nc=\r\nd=1\r2\r\n");
    EXPECT_EQ(value(reader, "a"), "1");
    EXPECT_EQ(value(reader, "b"), "x y");
    EXPECT_EQ(value(reader, "c"), "");
    EXPECT_EQ(value(reader, "d"), "1\r2");
    EXPECT_EQ(index(reader, "d"), 3);
}

TEST_F(ConfigFile, PassesOverALineWithoutAnEqualsSign)
{
    VOZCatConfigPaser & reader = read("a=1\nnothing here\nb=2\n");
    EXPECT_EQ(value(reader, "nothing here"), "(none)");
    EXPECT_EQ(index(reader, "b"), 1);
}

TEST_F(ConfigFile, KeepsALineOfTheFullLengthAndCutsALongerOne)
{
    std::string const full = "k=" + std::string(252, 'v');
    std::string const longer = "l=" + std::string(253, 'w');
    std::string const longest = "m=" + std::string(100000, 'x') + "=\nn=1";
    std::string const key(253, 'y');
    VOZCatConfigPaser & reader = read(full + "\r\n" + longer + "\n" + longest + "\n" + key + "=1\n" + key + "z=1\n");
    EXPECT_EQ(value(reader, "k"), std::string(252, 'v'));
    EXPECT_EQ(value(reader, "l"), std::string(252, 'w'));
    EXPECT_EQ(value(reader, "m"), std::string(252, 'x'));
    EXPECT_EQ(value(reader, "n"), "1");
    EXPECT_EQ(value(reader, key), "");             // the value stood behind the cut
    EXPECT_EQ(value(reader, key + "z"), "(none)"); // and so did this equals sign
    EXPECT_EQ(index(reader, key), 4);
}

TEST_F(ConfigFile, TheTailOfALongCommentIsNoEntry)
{
    VOZCatConfigPaser & reader = read("#" + std::string(254, '-') + "a=1\nb=2\n");
    EXPECT_EQ(value(reader, "a"), "(none)");
    EXPECT_EQ(index(reader, "b"), 0);
}

TEST_F(ConfigFile, SurvivesBytesThatAreNoText)
{
    std::string bytes = "a=1\nb\xFF\xFE=\x80\n";
    bytes += std::string("c\0d=2\n", 6) + std::string(300, '\0') + "\ne=3";
    VOZCatConfigPaser & reader = read(bytes);
    EXPECT_EQ(value(reader, "a"), "1");
    EXPECT_EQ(value(reader, "b\xFF\xFE"), "\x80");
    EXPECT_EQ(value(reader, "c"), "(none)"); // its text ends ahead of the equals sign
    EXPECT_EQ(value(reader, "e"), "3");
}

TEST_F(ConfigFile, AnEmptyFileHoldsNothing)
{
    EXPECT_EQ(value(read(""), ""), "(none)");
    EXPECT_EQ(value(read("\n"), ""), "(none)");
}

TEST_F(ConfigFile, AFileThatCannotBeReadLeavesItEmpty)
{
    std::string missing = folder.Path("missing.cfg");
    std::string itself = folder.Path();
    for (std::string * const path : {&missing, &itself})
    {
        VOZCatConfigPaser reader(path->data());
        EXPECT_EQ(reader.ReadAndPaser(), -1) << *path;
        EXPECT_EQ(value(reader, "a"), "(none)");
    }
}

// A path that was cut could name another file.
TEST_F(ConfigFile, APathThatItCannotHoldIsNotOpened)
{
    folder.Write("config.cfg", "a=1\n");
    for (std::size_t const size : {256U, 1000U, 100000U})
    {
        std::string path = folder.Path("config.cfg");
        path.insert(path.rfind('/'), std::string(size, '/'));
        VOZCatConfigPaser reader(path.data());
        EXPECT_EQ(reader.ReadAndPaser(), -1) << size;
        EXPECT_EQ(value(reader, "a"), "(none)");
    }
    VOZCatConfigPaser none(nullptr);
    EXPECT_EQ(none.ReadAndPaser(), -1);
}

TEST_F(ConfigFile, APathOfTheGreatestLengthIsOpened)
{
    std::string path = folder.Write("config.cfg", "a=1\n");
    path.insert(path.rfind('/'), std::string(255 - path.size(), '/'));
    ASSERT_EQ(path.size(), 255U);
    VOZCatConfigPaser reader(path.data());
    EXPECT_EQ(reader.ReadAndPaser(), 0);
    EXPECT_EQ(value(reader, "a"), "1");
}

TEST_F(ConfigFile, ReadingAgainReplacesWhatWasRead)
{
    std::string path = folder.Write("config.cfg", "a=1\nb=2\n");
    VOZCatConfigPaser reader(path.data());
    EXPECT_EQ(value(reader, "a"), "(none)"); // nothing before the first reading
    ASSERT_EQ(reader.ReadAndPaser(), 0);
    folder.Write("config.cfg", "b=3\n");
    ASSERT_EQ(reader.ReadAndPaser(), 0);
    EXPECT_EQ(value(reader, "a"), "(none)");
    EXPECT_EQ(value(reader, "b"), "3");
}

TEST_F(ConfigFile, ReadLineGivesOneLineAndThenTheEnd)
{
    std::string path = folder.Write("lines", "one\n\nthree");
    OpenReader reader(path.data());
    std::FILE * const file = std::fopen(path.c_str(), "rb");
    ASSERT_NE(file, nullptr);
    char line[16];
    EXPECT_EQ(reader.ReadLine(file, line, sizeof line), 0);
    EXPECT_STREQ(line, "one");
    EXPECT_EQ(reader.ReadLine(file, line, sizeof line), 0);
    EXPECT_STREQ(line, "");
    EXPECT_EQ(reader.ReadLine(file, line, 3), 0);
    EXPECT_STREQ(line, "th");
    EXPECT_EQ(reader.ReadLine(file, line, sizeof line), 1);
    std::fclose(file);
}
