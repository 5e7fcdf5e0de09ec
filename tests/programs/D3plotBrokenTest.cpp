// D3plotBrokenTest.cpp: files cut short and heads that cannot be: what is whole is converted, what is not is said, and
// no memory is asked for that the files' size does not justify.

#include "D3plotFixture.h"

#include <algorithm>
#include <filesystem>
#include <limits>

namespace
{
class D3plotBroken : public D3plotFixture
{
};

TEST_F(D3plotBroken, OfAFileCutAtAnyWordTheWholeStatesAreConverted)
{
    for (int const wordBytes : {4, 8})
    {
        d3plot::Model model = Small();
        model.options.wordBytes = wordBytes;
        d3plot::Writer const writer(model);
        std::string const whole = OneFile(model, {0.0, 0.5, 1.0});
        std::size_t const geometry = writer.Geometry().size();
        std::size_t const state = writer.Of(StateOf(model, 0.0)).size();
        folder.Write("d3plot", whole);
        std::vector<Record> const all = Convert({0.0, 0.5, 1.0});
        ASSERT_EQ(all.size(), 3U);
        for (std::size_t length = 0; length < whole.size(); length += 4)
        {
            std::filesystem::remove(folder.Path("output.voz"));
            folder.Write("d3plot", whole.substr(0, length));
            std::vector<Record> const records = Convert({0.0, 0.5, 1.0});
            std::size_t const expected = length < geometry ? 0 : std::min<std::size_t>((length - geometry) / state, 3);
            ASSERT_EQ(records.size(), expected) << length;
            EXPECT_TRUE(std::equal(records.begin(), records.end(), all.begin())) << length;
            EXPECT_EQ(std::filesystem::exists(folder.Path("output.voz")), expected > 0) << length;
            EXPECT_EQ(result.missing.size(), 3 - expected);
            EXPECT_TRUE(length >= geometry || Notes() != "") << length;
        }
    }
}

TEST_F(D3plotBroken, ACutStateIsSaidWithItsFileAndTheNextFilesAreRead)
{
    d3plot::Model const model = Small();
    d3plot::Writer const writer(model);
    folder.Write("d3plot", writer.Geometry() + writer.EndMark());
    folder.Write("d3plot01", writer.Of(StateOf(model, 0.0)) + writer.Of(StateOf(model, 0.5)).substr(0, 100));
    folder.Write("d3plot02", writer.Of(StateOf(model, 1.0)));
    EXPECT_EQ(Convert({0.0, 0.5, 1.0}).size(), 2U);
    EXPECT_EQ(result.missing, std::vector<int>{1});
    EXPECT_NE(Notes().find("d3plot01 is cut short"), std::string::npos) << Notes();
    EXPECT_NE(Notes().find("has 25 of"), std::string::npos) << Notes();
}

TEST_F(D3plotBroken, NoControlWordMakesTheReaderLeaveTheFile)
{
    for (int const wordBytes : {4, 8})
    {
        d3plot::Model model = Small();
        model.options.wordBytes = wordBytes;
        d3plot::Writer const writer(model);
        std::string const whole = OneFile(model, {0.0, 0.5});
        std::int64_t const most =
            wordBytes == 4 ? std::numeric_limits<std::int32_t>::max() : std::numeric_limits<std::int64_t>::max();
        for (std::size_t word = 11; word < 64; ++word)
            for (std::int64_t const value : {-most - 1, -most, std::int64_t{-10003}, std::int64_t{-1}, std::int64_t{0},
                                             std::int64_t{1}, std::int64_t{9}, std::int64_t{1000000000}, most})
            {
                std::string bytes = whole;
                std::string bad;
                writer.Integer(bad, value);
                bytes.replace(word * bad.size(), bad.size(), bad);
                folder.Write("d3plot", bytes);
                Convert({0.0, 0.5}); // the sanitizers look
                EXPECT_EQ(result.records + static_cast<int>(result.missing.size()), 2);
            }
    }
}

TEST_F(D3plotBroken, NoWordOfTheGeometryMakesTheReaderLeaveTheFile)
{
    d3plot::Model const model = Small();
    d3plot::Writer const writer(model);
    std::string const whole = OneFile(model, {0.0});
    std::size_t const words = writer.Geometry().size() / 4;
    for (std::size_t word = 64; word < words; ++word)
        for (std::int64_t const value : {-2147483647, -1, 0, 8, 1000000, 2147483647})
        {
            std::string bad;
            writer.Integer(bad, value);
            folder.Write("d3plot", std::string(whole).replace(4 * word, 4, bad));
            Convert({0.0});
            EXPECT_EQ(result.records + static_cast<int>(result.missing.size()), 1);
        }
}

TEST_F(D3plotBroken, AnAbsurdCountIsSaidWithWhatTheFilesHave)
{
    d3plot::Model const model = Small();
    std::string bytes = OneFile(model, {0.0});
    std::string bad;
    d3plot::Writer(model).Integer(bad, 500000000);
    bytes.replace(16 * 4, 4, bad); // NUMNP
    folder.Write("d3plot", bytes);
    EXPECT_TRUE(Convert({0.0}).empty());
    EXPECT_NE(Notes().find("500000000 nodes"), std::string::npos) << Notes();
    EXPECT_NE(Notes().find("the files have " + std::to_string(bytes.size() / 4)), std::string::npos) << Notes();
}

TEST_F(D3plotBroken, AShellWithANodeThatIsNotThereIsSaid)
{
    d3plot::Model model = Small();
    model.shells[1].node[2] = 8;
    folder.Write("d3plot", OneFile(model, {0.0}));
    EXPECT_TRUE(Convert({0.0}).empty());
    EXPECT_NE(Notes().find("shell 2 has node 8 of 7"), std::string::npos) << Notes();
}

TEST_F(D3plotBroken, ResultsWithoutTheBlankAreSaid)
{
    d3plot::Model model = Small();
    model.parts = {2, 7};
    folder.Write("d3plot", OneFile(model, {0.0}));
    EXPECT_TRUE(Convert({0.0}).empty());
    EXPECT_NE(Notes().find("no shells of part 5"), std::string::npos) << Notes();
}

TEST_F(D3plotBroken, AFolderWithoutResultsIsSaid)
{
    EXPECT_TRUE(Convert({0.0, 1.0}).empty());
    EXPECT_NE(Notes().find("no result files"), std::string::npos) << Notes();
    EXPECT_EQ(result.missing, (std::vector<int>{0, 1}));
}

TEST_F(D3plotBroken, ARootWhoseFirstFileIsMissingIsSaidAndTheOthersAreConverted)
{
    d3plot::Model const model = Small();
    d3plot::Writer const writer(model);
    folder.Write("d3plot", OneFile(model, {0.0}));
    folder.Write("d3plotaa01", writer.Of(StateOf(model, 1.0)));
    EXPECT_EQ(Convert({0.0, 1.0}).size(), 1U);
    EXPECT_NE(Notes().find("\"d3plotaa\""), std::string::npos) << Notes();
}

#if defined(__linux__)
TEST_F(D3plotBroken, ADiskThatIsFullLeavesNoHalfRecords)
{
    folder.Write("d3plot", OneFile(Small(), {0.0}));
    folder.Write("output.voz", "of an earlier run");
    std::filesystem::create_symlink("/dev/full", folder.Path("output.voz.new"));
    EXPECT_THROW(Convert({0.0}), voz::launch::OutputError);
    EXPECT_FALSE(std::filesystem::is_symlink(folder.Path("output.voz.new")));
    EXPECT_EQ(folder.Read("output.voz"), "of an earlier run");
}
#endif

TEST_F(D3plotBroken, WhatIsNotKnownIsRefusedByName)
{
    for (auto const & [word, value] :
         {std::pair(37, 5), std::pair(54, 1), std::pair(48, 1), std::pair(15, 2), std::pair(15, 7), std::pair(15, 8),
          std::pair(11, 1001), std::pair(25, -3), std::pair(78, 1), std::pair(79, 1)})
    {
        d3plot::Model model = Small();
        model.options.extraWords = 16;
        std::string bytes = OneFile(model, {0.0});
        std::string bad;
        d3plot::Writer(model).Integer(bad, value);
        bytes.replace(static_cast<std::size_t>(word) * 4, 4, bad);
        folder.Write("d3plot", bytes);
        EXPECT_TRUE(Convert({0.0}).empty());
        EXPECT_NE(Notes().find("not read here"), std::string::npos) << word << " " << Notes();
    }
}
} // namespace
