#include "CATUnicodeString.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
using Utf16 = std::basic_string<unsigned short>;

TEST(UnicodeString, IsEmptyByDefaultAndFromNull)
{
    EXPECT_TRUE(CATUnicodeString().IsNull());
    EXPECT_TRUE(CATUnicodeString(static_cast<char const *>(nullptr)).IsNull());
    EXPECT_TRUE(CATUnicodeString(static_cast<unsigned short const *>(nullptr)).IsNull());
    EXPECT_STREQ(CATUnicodeString().ConvertToChar(), "");
    EXPECT_EQ(CATUnicodeString().GetLengthInChar(), 0);
}

TEST(UnicodeString, KeepsTheBytesOfTextThatIsNotUtf8)
{
    EXPECT_STREQ(CATUnicodeString("a\xB7z\xE4").ConvertToChar(), "a\xB7z\xE4");
    EXPECT_EQ(CATUnicodeString("a\xB7z\xE4").GetLengthInChar(), 4);
}

TEST(UnicodeString, CountsCharactersNotBytes)
{
    EXPECT_EQ(CATUnicodeString("\xC3\xA4").GetLengthInChar(), 1);
    EXPECT_EQ(CATUnicodeString("\xE2\x82\xAC").GetLengthInChar(), 1);
    EXPECT_EQ(CATUnicodeString("\xF0\x9F\x98\x80!").GetLengthInChar(), 2);
    EXPECT_EQ(CATUnicodeString("\xC0\xAF").GetLengthInChar(), 2);     // an overlong slash is two bad bytes
    EXPECT_EQ(CATUnicodeString("\xED\xA0\x80").GetLengthInChar(), 3); // a surrogate is none
    EXPECT_EQ(CATUnicodeString("\xE2\x82").GetLengthInChar(), 2);     // cut off
}

TEST(UnicodeString, AppendsItselfToItself)
{
    CATUnicodeString text("ab");
    text.Append(text);
    text += "c";
    EXPECT_STREQ(text.ConvertToChar(), "ababc");
    EXPECT_STREQ((text + "/" + text).ConvertToChar(), "ababc/ababc");
    EXPECT_STREQ(text.ConvertToChar(), "ababc");
}

TEST(UnicodeString, ComparesInCodePointOrder)
{
    EXPECT_EQ(CATUnicodeString("a").Compare("b"), 1);
    EXPECT_EQ(CATUnicodeString("b").Compare("b"), 2);
    EXPECT_EQ(CATUnicodeString("b").Compare("a"), 3);
    EXPECT_EQ(CATUnicodeString("a").Compare("ab"), 1);
    EXPECT_EQ(CATUnicodeString("A").Compare("a"), 1);
    EXPECT_EQ(CATUnicodeString("z").Compare("\xC3\xA4"), 1); // U+00E4 stands behind ASCII
    EXPECT_EQ(CATUnicodeString("\xEF\xBF\xBD").Compare("\xF0\x9F\x98\x80"), 1);
    EXPECT_TRUE(CATUnicodeString("x") == "x");
    EXPECT_TRUE(CATUnicodeString("x") != "X");
}

TEST(UnicodeString, SearchGivesAPositionInCharactersOrMinusOne)
{
    CATUnicodeString const text("\xC3\xA4part.catpart.catpart");
    EXPECT_EQ(text.SearchSubString(".catpart"), 5);
    EXPECT_EQ(text.SearchSubString(".catpart", 5), 5);
    EXPECT_EQ(text.SearchSubString(".catpart", 6), 13);
    EXPECT_EQ(text.SearchSubString(".catpart", 14), -1);
    EXPECT_EQ(text.SearchSubString(".CATPart"), -1);
    EXPECT_EQ(text.SearchSubString("part", -3), 1);
    EXPECT_EQ(text.SearchSubString("", 2), 2);
    EXPECT_EQ(text.SearchSubString("", 99), -1);
    EXPECT_EQ(text.SearchSubString("\xA4"), -1); // the second half of a character is not in the text
}

TEST(UnicodeString, LowersAsciiLettersOnly)
{
    CATUnicodeString text("Part_09.CATPart \xC3\x84[`{@");
    text.ToLower();
    EXPECT_STREQ(text.ConvertToChar(), "part_09.catpart \xC3\x84[`{@");
}

TEST(UnicodeString, ReplacesEveryOccurrenceFromLeftToRight)
{
    CATUnicodeString path("C:\\bin\\VOZDravo.dll");
    EXPECT_EQ(path.ReplaceSubString("VOZDravo.dll", "VOZLaunchDyna.exe"), 1);
    EXPECT_STREQ(path.ConvertToChar(), "C:\\bin\\VOZLaunchDyna.exe");
    CATUnicodeString text("aaaaa");
    EXPECT_EQ(text.ReplaceSubString("aa", "aab"), 2);
    EXPECT_STREQ(text.ConvertToChar(), "aabaaba");
    EXPECT_EQ(text.ReplaceSubString("", "x"), 0);
    EXPECT_EQ(text.ReplaceSubString(text, text), 1);
    EXPECT_STREQ(text.ConvertToChar(), "aabaaba");
}

TEST(UnicodeString, BuildsFromANumber)
{
    CATUnicodeString text("old");
    text.BuildFromNum(-2147483647 - 1);
    EXPECT_STREQ(text.ConvertToChar(), "-2147483648");
    text.BuildFromNum(0);
    EXPECT_STREQ(text.ConvertToChar(), "0");
}

TEST(UnicodeString, EveryCodePointSurvivesTheRoadThroughUtf16)
{
    for (unsigned code = 1; code <= 0x10FFFF; code += (code < 0x3000 ? 1 : 61))
    {
        if (code >= 0xD800 && code < 0xE000)
            continue;
        Utf16 units;
        if (code < 0x10000)
            units.push_back(static_cast<unsigned short>(code));
        else
        {
            units.push_back(static_cast<unsigned short>(0xD800 + ((code - 0x10000) >> 10)));
            units.push_back(static_cast<unsigned short>(0xDC00 + ((code - 0x10000) & 0x3FF)));
        }
        CATUnicodeString const text(units.c_str());
        ASSERT_EQ(text.GetLengthInChar(), 1) << code;
        ASSERT_EQ(text.ConvertToUTF16(), units) << code;
    }
}

TEST(UnicodeString, ALoneSurrogateBecomesTheReplacementCharacter)
{
    unsigned short const units[] = {'a', 0xD83D, 'b', 0xDE00, 0xD83D, 0};
    EXPECT_STREQ(CATUnicodeString(units).ConvertToChar(), "a\xEF\xBF\xBD"
                                                          "b\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(UnicodeString, RandomBytesAreConvertedWithoutHarm)
{
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round)
    {
        std::string bytes(random() % 12, ' ');
        for (char & c : bytes)
            c = static_cast<char>(1 + random() % 255);
        CATUnicodeString const text(bytes.c_str());
        Utf16 const units = text.ConvertToUTF16();
        CATUnicodeString const again(units.c_str());
        EXPECT_EQ(again.GetLengthInChar(), text.GetLengthInChar());
        EXPECT_EQ(again.ConvertToUTF16(), units);
    }
}
} // namespace
