// LaunchDeckTest.cpp: when a deck asks for output; what the launcher is handed.

#include "DeckTimes.h"
#include "LaunchArguments.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

namespace
{
using Times = std::vector<double>;
using voz::launch::DeckError;
using voz::launch::ReadDeckTimes;

constexpr char kEnd[] = "*CONTROL_TERMINATION\n$   ENDTIM\n 2.000E-02\n";
constexpr char kPlot[] = "*DATABASE_BINARY_D3PLOT\n$  DT/CYCL      LCDT    NOBEAM\n                  44\n$    IOOPT\n"
                         "         3\n";
constexpr char kCurve[] = "*DEFINE_CURVE\n$ other\n        99\n                 0.7                 1.0\n"
                          "*DEFINE_CURVE\n$     LCID\n        44\n$\n"
                          "     0.000000000E+00             0.0E+00\n"
                          "    5.0000000000E-03            2.00E+00\n";

class LaunchDeck : public testing::Test
{
protected:
    Times Of(std::string const & i_text, int i_count)
    {
        voz::launch::DeckTimes const times = ReadDeckTimes(folder.Write("inputls.dyn", i_text), i_count);
        end = times.end;
        return times.points;
    }
    std::string Refused(std::string const & i_text)
    {
        try
        {
            Of(i_text, 3);
        }
        catch (DeckError const & error)
        {
            return error.what();
        }
        return "nothing";
    }

    TempFolder folder;
    double end = 0.0;
};

TEST_F(LaunchDeck, TheCurveGivesThePointsAndTheEndIsOneMore)
{
    EXPECT_EQ(Of(std::string("*KEYWORD\n") + kEnd + kPlot + kCurve + "*END\n", 3), (Times{0.0, 0.005, 0.02}));
    EXPECT_EQ(end, 0.02);
}

TEST_F(LaunchDeck, ACurveOfAsManyRowsAsPointsHasTheEndAlready)
{
    EXPECT_EQ(Of(std::string(kEnd) + kPlot + kCurve, 2), (Times{0.0, 0.005}));
}

TEST_F(LaunchDeck, ScaleAndOffsetOfTheCurveHold)
{
    EXPECT_EQ(Of(std::string(kEnd) + kPlot +
                     "*DEFINE_CURVE\n        44         0       2.0       0.0     0.001\n"
                     "               0.001                 1.0\n",
                 3),
              (Times{0.004, 0.02}));
}

TEST_F(LaunchDeck, FieldsMayStandBetweenCommas)
{
    EXPECT_EQ(Of("*control_termination\n0.02,0\n*DATABASE_BINARY_D3PLOT\n,44\n*DEFINE_CURVE\n44\n0.0,1\n+0.01,2\n", 3),
              (Times{0.0, 0.01, 0.02}));
}

TEST_F(LaunchDeck, AFixedIntervalGivesItsMultiples)
{
    EXPECT_EQ(Of(std::string(kEnd) + "*DATABASE_BINARY_D3PLOT\n     0.005\n", 5),
              (Times{0.0, 0.005, 0.01, 0.015, 0.02}));
}

TEST_F(LaunchDeck, WithoutACardThePointsAreSpreadEvenly)
{
    EXPECT_EQ(Of(kEnd, 3), (Times{0.0, 0.01, 0.02}));
    EXPECT_EQ(Of(kEnd, 1), (Times{0.02}));
}

TEST_F(LaunchDeck, WhatStandsBehindTheEndIsNotRead)
{
    EXPECT_EQ(Of(std::string(kEnd) + "*END\n*CONTROL_TERMINATION\n     9.000\n", 1), (Times{0.02}));
}

TEST_F(LaunchDeck, FaultsAreToldWithFileAndLine)
{
    EXPECT_NE(Refused(kCurve).find("no *CONTROL_TERMINATION"), std::string::npos);
    EXPECT_NE(Refused("*CONTROL_TERMINATION\n       0.0\n").find("inputls.dyn, line 2: ENDTIM"), std::string::npos);
    EXPECT_NE(Refused("*CONTROL_TERMINATION\n     1.2.3\n").find("line 2: \"1.2.3\" is no number"), std::string::npos);
    EXPECT_NE(Refused(std::string(kEnd) + kPlot).find("curve 44"), std::string::npos);
    EXPECT_NE(Refused(std::string(kEnd) + "*DATABASE_BINARY_D3PLOT\n 1.000E-12\n").find("too short"),
              std::string::npos);
    EXPECT_THROW(ReadDeckTimes(folder.Path("none.dyn"), 3), DeckError);
}

struct Case
{
    std::vector<std::string> words;
    std::string folder;
    int count;
};

TEST(LaunchArguments, AreAFolderAndACount)
{
    Case const cases[] = {
        {{"/jobs/part", "10"}, "/jobs/part", 10},
        {{"C:\\work\\part", "\"10"}, "C:\\work\\part", 10}, // where nothing has taken the quote away
        {{"a b", "10000"}, "a b", 10000},
        {{"C:\\work\\part\" 10"}, "C:\\work\\part", 10}, // a closing backslash makes one word of both
        {{"C:\\work\\part\" \"10\""}, "C:\\work\\part", 10},
    };
    for (Case const & c : cases)
    {
        voz::launch::Arguments arguments;
        EXPECT_EQ(voz::launch::ParseArguments(c.words, arguments), "") << c.words[0];
        EXPECT_EQ(arguments.folder, c.folder);
        EXPECT_EQ(arguments.count, c.count);
    }
}

TEST(LaunchArguments, OthersAreRefusedWithWhatWasExpected)
{
    std::vector<std::vector<std::string>> const cases = {
        {},         {"folder"},  {"a", "1", "2"}, {"", "10"},           {"a", ""},    {"a", "ten"},
        {"a", "0"}, {"a", "-3"}, {"a", "10001"},  {"a", "99999999999"}, {"a", "3.5"}, {"a", "2147483647"},
    };
    for (auto const & words : cases)
    {
        voz::launch::Arguments arguments;
        EXPECT_NE(voz::launch::ParseArguments(words, arguments).find("expected FOLDER COUNT"), std::string::npos);
    }
}
} // namespace
