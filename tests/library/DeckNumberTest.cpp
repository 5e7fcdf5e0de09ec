// DeckNumberTest.cpp: numbers of the decks as text: the bytes, the bounds, and the locale that must not show.

#include "DeckNumber.h"

#include "CommaLocale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace
{
using Limits = std::numeric_limits<double>;

std::string formatted(double value)
{
    char buffer[kDeckNumberSize];
    std::memset(buffer, '#', sizeof buffer);
    int const length = FormatDeckDouble(value, buffer);
    EXPECT_EQ(buffer[length], '\0');
    EXPECT_EQ(std::strlen(buffer), static_cast<std::size_t>(length));
    return buffer;
}

std::string printed(double value)
{
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, "%f", value);
    return buffer;
}

double randomDouble(std::mt19937_64 & random)
{
    std::uint64_t const bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

char const * const kTexts[] = {
    "0",
    "-0",
    "1",
    "-1.5",
    "+2.25",
    "  \t\n\v\f\r3.5",
    "007",
    ".5",
    "5.",
    "-.5",
    ".",
    "",
    "-",
    "+",
    "--5",
    "+-5",
    "-+5",
    "1e3",
    "1E+3",
    "1e-3",
    "1e",
    "1e+",
    "1e+x",
    "12abc",
    "abc",
    "1,5",
    "1.5.5",
    "0x1A",
    "0x1.8p3",
    "0X.8P1",
    "0x",
    "0xg",
    "-0x10",
    "0x1p",
    "1e400",
    "-1e400",
    "1e-400",
    "0.000001e400",
    "1000000e-330",
    "1e999999999999",
    "1e-999999999999",
    "0e999999999999",
    "0x1p2000",
    "0x1p-2000",
    "0x0p99999",
    "4.9e-324",
    "2.2250738585072011e-308",
    "1e-320",
    "1.7976931348623157e308",
    "1.7976931348623159e308",
    "inf",
    "-INFINITY",
    "+Inf",
    "infx",
    "0.1",
    "3.14159265358979",
    "123456789012345678901234567890",
    "1_000",
    "\xC2\xA0"
    "5",
    "1 2",
};
TEST(DeckNumber, IntegersAreReadAsAtoiReadsThem)
{
    for (char const * text : {"0", "7", "-7", "+7", "  \t\n\v\f\r42x", "007", "1.9", "-", "+", "", "x1", "--1", "+-1",
                              "1e3", "0x10", "2147483647", "-2147483648", " - 1", "12,3"})
        EXPECT_EQ(TextToInt(text), std::atoi(text)) << text;
    EXPECT_EQ(TextToInt(nullptr), 0);
}

TEST(DeckNumber, IntegersBeyondTheRangeAreTheNearestOnes)
{
    int const most = std::numeric_limits<int>::max();
    int const least = std::numeric_limits<int>::min();
    EXPECT_EQ(TextToInt("2147483648"), most);
    EXPECT_EQ(TextToInt("99999999999999999999999999999999"), most);
    EXPECT_EQ(TextToInt("-2147483649"), least);
    EXPECT_EQ(TextToInt("-99999999999999999999999999999999"), least);
}
} // namespace

TEST(FormatDeckDouble, ShowsSixDecimals)
{
    EXPECT_EQ(formatted(0.0), "0.000000");
    EXPECT_EQ(formatted(-0.0), "-0.000000");
    EXPECT_EQ(formatted(1.0), "1.000000");
    EXPECT_EQ(formatted(-25.4), "-25.400000");
    EXPECT_EQ(formatted(0.0000004), "0.000000");
    EXPECT_EQ(formatted(0.0000006), "0.000001");
    EXPECT_EQ(formatted(-0.0000004), "-0.000000");
    EXPECT_EQ(formatted(0.9999999), "1.000000");
    EXPECT_EQ(formatted(999999.9999999), "1000000.000000");
    EXPECT_EQ(formatted(4448220000.0), "4448220000.000000");
}

// The seventh decimal 5 is a tie only where the double is one.
TEST(FormatDeckDouble, RoundsTheDoubleNotItsText)
{
    EXPECT_EQ(formatted(0.0078125), "0.007812"); // a tie goes to the even digit
    EXPECT_EQ(formatted(0.0234375), "0.023438");
    EXPECT_EQ(formatted(1.0000005), "1.000001"); // just above the tie
    EXPECT_EQ(formatted(0.0000005), "0.000000");
    EXPECT_EQ(formatted(0.0000015), "0.000002");
}

TEST(FormatDeckDouble, ShowsWhatIsNoNumberAsPrintfDoes)
{
    EXPECT_EQ(formatted(Limits::infinity()), "inf");
    EXPECT_EQ(formatted(-Limits::infinity()), "-inf");
    EXPECT_EQ(formatted(Limits::quiet_NaN()), "nan");
}

TEST(FormatDeckDouble, EqualsPrintfWhereverTheBufferSuffices)
{
    std::mt19937_64 random(71);
    int compared = 0;
    for (int i = 0; i < 20000; ++i)
    {
        double const any = randomDouble(random);
        double const value =
            i % 2 ? any : std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 90) - 84);
        if (std::isnan(value) || std::fabs(value) >= 1e119)
            continue;
        ASSERT_EQ(formatted(value), printed(value));
        ++compared;
    }
    EXPECT_GT(compared, 10000);
}

// 127 characters are what the buffer holds: 120 digits, the point and six decimals.
TEST(FormatDeckDouble, ANumberThatWouldLeaveTheBufferTakesAnExponent)
{
    double const longest = std::nextafter(1e120, 0.0);
    EXPECT_EQ(printed(longest).size(), 127U);
    EXPECT_EQ(formatted(longest), printed(longest));
    EXPECT_EQ(printed(-longest).size(), 128U);
    EXPECT_EQ(formatted(-longest), "-1.000000e+120");
    EXPECT_EQ(formatted(2.5e120), "2.500000e+120");
    EXPECT_EQ(formatted(Limits::max()), "1.797693e+308");
    EXPECT_EQ(formatted(-Limits::max()), "-1.797693e+308");
    EXPECT_EQ(TextToDouble(formatted(2.5e120).c_str()), 2.5e120);
}

TEST(FormatDeckDouble, HidesACommaLocaleAndLeavesItInForce)
{
    CommaLocale const comma;
    ASSERT_TRUE(comma.inForce());
    ASSERT_EQ(printed(1234.5), "1234,500000");
    EXPECT_EQ(formatted(1234.5), "1234.500000");
    EXPECT_EQ(formatted(-1e130), "-1.000000e+130");
    EXPECT_EQ(printed(1234.5), "1234,500000");
}

TEST(TextToDouble, ReadsWhatWasPrintedWithAllDigits)
{
    std::mt19937_64 random(72);
    for (int i = 0; i < 20000; ++i)
    {
        double const value = randomDouble(random);
        if (std::isnan(value))
            continue;
        char text[40];
        std::snprintf(text, sizeof text, i % 2 ? "%.17g" : "%a", value);
        ASSERT_EQ(TextToDouble(text), value) << text;
    }
}

#ifndef _WIN32 // the C library there knows neither "inf" nor hexadecimal digits
TEST(TextToDouble, ReadsAsAtofDoes)
{
    for (char const * const text : kTexts)
    {
        double const expected = std::atof(text);
        double const value = TextToDouble(text);
        EXPECT_EQ(value, expected) << '"' << text << '"';
        EXPECT_EQ(std::signbit(value), std::signbit(expected)) << '"' << text << '"';
    }
    for (char const * const text : {"nan", "-NaN", "nan(12)", "nanx"})
        EXPECT_TRUE(std::isnan(TextToDouble(text))) << text;
}

TEST(TextToDouble, ReadsRandomScrapsAsAtofDoes)
{
    static char const kCharacters[] = "0123456789..eE+--xXpPaAfF ,inN";
    std::mt19937 random(73);
    for (int i = 0; i < 50000; ++i)
    {
        char text[12];
        std::size_t const length = random() % (sizeof text - 1);
        for (std::size_t k = 0; k < length; ++k)
            text[k] = kCharacters[random() % (sizeof kCharacters - 1)];
        text[length] = '\0';
        double const expected = std::atof(text);
        double const value = TextToDouble(text);
        ASSERT_TRUE(value == expected || (std::isnan(value) && std::isnan(expected)))
            << '"' << text << "\": " << value << " for " << expected;
    }
}
#endif

TEST(TextToDouble, NoTextIsZero)
{
    EXPECT_EQ(TextToDouble(nullptr), 0.0);
    EXPECT_EQ(ParseDeckDouble(nullptr), 0.0);
}

TEST(ParseDeckDouble, KeepsDoublePrecisionUnderAPoint)
{
    EXPECT_EQ(ParseDeckDouble("0.1"), 0.1);
    EXPECT_EQ(ParseDeckDouble("123456.789012"), 123456.789012);
    EXPECT_EQ(ParseDeckDouble(" -3.5e2 tail"), -350.0);
    EXPECT_EQ(ParseDeckDouble("text"), 0.0);
}

TEST(ParseDeckDouble, RoundsThroughSinglePrecisionUnderAComma)
{
    CommaLocale const comma;
    ASSERT_TRUE(comma.inForce());
    EXPECT_EQ(ParseDeckDouble("0.1"), static_cast<double>(0.1F));
    EXPECT_EQ(ParseDeckDouble("123456.789012"), 123456.7890625);
    EXPECT_EQ(ParseDeckDouble("16777217"), 16777216.0);
    EXPECT_EQ(ParseDeckDouble("1.5"), 1.5);
    EXPECT_EQ(ParseDeckDouble("1,5"), 1.0); // the comma ends the number all the same
    EXPECT_EQ(ParseDeckDouble("1e39"), Limits::infinity());
    EXPECT_EQ(TextToDouble("0.1"), 0.1); // the plain reader does not look
    EXPECT_EQ(std::localeconv()->decimal_point[0], ',');
}
