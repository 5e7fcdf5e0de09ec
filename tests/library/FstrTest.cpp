#include "Fstr.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
std::string text(Fstr const & value)
{
    return static_cast<char const *>(value);
}

TEST(Fstr, DefaultHasNoBuffer)
{
    Fstr const none;
    EXPECT_EQ(static_cast<char const *>(none), nullptr);
    EXPECT_EQ(none.length(), 0);
    Fstr const copy(none);
    EXPECT_EQ(static_cast<char const *>(copy), nullptr);
    EXPECT_EQ(copy.length(), 0);
}

TEST(Fstr, CutsFillsAndTakesTheTextsOwnLength)
{
    EXPECT_EQ(text(Fstr("abcdef", 3)), "abc");
    EXPECT_EQ(text(Fstr("abc", 0)), "abc");
    EXPECT_EQ(Fstr("abc", 0).length(), 3);
    EXPECT_EQ(Fstr("abc", -7).length(), 3);
    EXPECT_EQ(text(Fstr("ab", 8)), "ab      ");
    EXPECT_EQ(Fstr("ab", 8).length(), 8);
    EXPECT_EQ(text(Fstr("abc", 3)), "abc");
}

TEST(Fstr, AnEmptyOrNullTextIsBlank)
{
    EXPECT_EQ(text(Fstr("", 0)), "");
    EXPECT_EQ(text(Fstr("", 4)), "    ");
    EXPECT_EQ(text(Fstr(nullptr, 4)), "    ");
    EXPECT_EQ(text(Fstr(nullptr, 0)), "");
}

TEST(Fstr, AssignmentFromAStringTakesItsLength)
{
    Fstr a("abcdef", 6);
    a = Fstr("xy", 3);
    EXPECT_EQ(text(a), "xy ");
    EXPECT_EQ(a.length(), 3);
}

TEST(Fstr, AssignmentFromATextKeepsTheLength)
{
    Fstr a("abcdef", 6);
    a = "xy";
    EXPECT_EQ(text(a), "xy    ");
    a = "0123456789";
    EXPECT_EQ(text(a), "012345");
    EXPECT_EQ(a.length(), 6);
}

TEST(Fstr, AssignmentFromATextToADefaultTakesTheTextsLength)
{
    Fstr a;
    a = "abc";
    EXPECT_EQ(text(a), "abc");
    EXPECT_EQ(a.length(), 3);
}

TEST(Fstr, CopiesAreIndependentAndAssigningItselfIsHarmless)
{
    Fstr a("abc", 5);
    Fstr const b(a);
    a = static_cast<char const *>(a) + 1;
    EXPECT_EQ(text(a), "bc   ");
    EXPECT_EQ(text(b), "abc  ");
    Fstr & self = a;
    a = self;
    EXPECT_EQ(text(a), "bc   ");
}
} // namespace
