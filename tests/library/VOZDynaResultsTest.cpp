// VOZDynaResultsTest.cpp: the reader of "output.voz": good files, files cut at every word, counts that lie.

#include "VOZDynaResults.h"

#include "CATUnicodeString.h"
#include "FailingNew.h"
#include "HostFixture.h"
#include "RecordBytes.h"
#include "TempFolder.h"
#include "VozRecords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

using vozrecords::bytes;
using vozrecords::Record;
using vozrecords::sample;

namespace
{
class OutputVoz : public HostFixture
{
protected:
    void write(std::string const & i_bytes)
    {
        folder.Write("output.voz", i_bytes);
        path = CATUnicodeString(folder.Path("output.voz").c_str());
    }

    // What a single reading of the bytes gives, from a stream that begins with them.
    bool readOne(VOZDynaResults & io_reader, std::string const & i_bytes)
    {
        write(i_bytes);
        std::FILE * const stream = std::fopen(path.ConvertToChar(), "rb");
        bool const isWhole = io_reader.ReadRecord(stream);
        std::fclose(stream);
        return isWhole;
    }

    std::vector<std::string> reported() const
    {
        std::vector<std::string> texts;
        for (VOZMemoryHost::Report const & report : host.reports)
            texts.push_back(report.text);
        return texts;
    }

    TempFolder folder;
    CATUnicodeString path;
};

void expectEqual(VOZDynaResults const & i_reader, Record const & i_record)
{
    EXPECT_EQ(i_reader.m_nRecordStep, i_record.step);
    ASSERT_EQ(i_reader.m_nNumNodes * 3, static_cast<int>(i_record.nodes.size()));
    ASSERT_EQ(i_reader.m_nNumElements * 4, static_cast<int>(i_record.elements.size()));
    ASSERT_EQ(i_reader.m_nNumComponents, static_cast<int>(i_record.stress.size()));
    auto const floats = [](float const * values, std::vector<float> const & expected)
    { return std::vector<float>(values, values + expected.size()) == expected; };
    EXPECT_TRUE(floats(i_reader.m_padNodalCoords, i_record.nodes));
    EXPECT_TRUE(floats(i_reader.m_padEquivalentStress, i_record.stress));
    EXPECT_TRUE(floats(i_reader.m_padStrainComponentsTop, i_record.top));
    EXPECT_TRUE(floats(i_reader.m_padStrainComponentsBot, i_record.bottom));
    EXPECT_TRUE(floats(i_reader.m_padStrainComponentsMid, i_record.middle));
    EXPECT_EQ(
        std::vector<std::int32_t>(i_reader.m_panConnectivity, i_reader.m_panConnectivity + i_record.elements.size()),
        i_record.elements);
}

void expectNoArrays(VOZDynaResults const & i_reader)
{
    EXPECT_EQ(i_reader.m_padNodalCoords, nullptr);
    EXPECT_EQ(i_reader.m_panConnectivity, nullptr);
    EXPECT_EQ(i_reader.m_padEquivalentStress, nullptr);
    EXPECT_EQ(i_reader.m_padStrainComponentsTop, nullptr);
    EXPECT_EQ(i_reader.m_padStrainComponentsBot, nullptr);
    EXPECT_EQ(i_reader.m_padStrainComponentsMid, nullptr);
}

// The record of 2 elements and 4 points as words: where each field begins.
constexpr std::size_t kNodeCount = 1;
constexpr std::size_t kElementCount = 17;
constexpr std::size_t kComponentCount = 26;
constexpr std::size_t kStress = 27;
constexpr std::size_t kTop = 51;
constexpr std::size_t kBottom = 75;
constexpr std::size_t kMiddle = 99;
constexpr std::size_t kEnd = 123;

std::string words(std::string const & i_bytes, std::size_t i_count)
{
    return i_bytes.substr(0, 4 * i_count);
}
} // namespace

TEST_F(OutputVoz, IsNewWithoutARecord)
{
    VOZDynaResults const reader(7, path);
    expectNoArrays(reader);
    EXPECT_EQ(reader.m_nRecordStep, -1);
    EXPECT_EQ(reader.m_nNumNodes, 0);
    EXPECT_EQ(reader.m_nNumElements, 0);
    EXPECT_EQ(reader.m_nNumComponents, 0);
    EXPECT_EQ(reader.m_nMaxRecords, 7);
    EXPECT_EQ(reader.m_pstrFile, &path);
}

TEST_F(OutputVoz, HasItsMembersInTheirOrderBehindTheVirtualTable)
{
    VOZDynaResults const reader(7, path);
    auto const offset = [&](void const * member)
    { return static_cast<char const *>(member) - reinterpret_cast<char const *>(&reader); };
    std::vector<std::ptrdiff_t> const offsets = {offset(&reader.m_padStrainComponentsMid),
                                                 offset(&reader.m_padStrainComponentsTop),
                                                 offset(&reader.m_padStrainComponentsBot),
                                                 offset(&reader.m_padEquivalentStress),
                                                 offset(&reader.m_nRecordStep),
                                                 offset(&reader.m_nNumComponents),
                                                 offset(&reader.m_padNodalCoords),
                                                 offset(&reader.m_nNumNodes),
                                                 offset(&reader.m_panConnectivity),
                                                 offset(&reader.m_nNumElements),
                                                 offset(&reader.m_nMaxRecords),
                                                 offset(&reader.m_pstrFile)};
    std::vector<std::ptrdiff_t> const expected = {8, 16, 24, 32, 40, 44, 48, 56, 64, 72, 76, 80};
    EXPECT_EQ(offsets, expected);
    EXPECT_EQ(sizeof(VOZDynaResults), 88U);
}

TEST_F(OutputVoz, ReadsTheFieldsOfARecordInTheirOrder)
{
    VOZDynaResults reader(1, path);
    EXPECT_TRUE(readOne(reader, sample(3).text()));
    expectEqual(reader, sample(3));
    EXPECT_THAT(reported(), testing::IsEmpty());
}

// The words of one record, written as a hex dump would show them.
TEST_F(OutputVoz, TakesEveryValueAsFourBytesWithTheLowestFirst)
{
    std::string const record("\x02\x01\x00\x00"  // step 258
                             "\x01\x00\x00\x00"  // one node
                             "\x00\x00\x80\x3f"  // 1
                             "\x00\x00\x00\xc0"  // -2
                             "\x00\x00\x00\x3f"  // 0.5
                             "\x01\x00\x00\x00"  // one element
                             "\x01\x00\x00\x00"  // 1
                             "\x00\x01\x00\x00"  // 256
                             "\xff\xff\xff\xff"  // -1
                             "\x00\x00\x00\x00"  // 0
                             "\x01\x00\x00\x00"  // one component
                             "\x00\x00\x20\x41"  // 10
                             "\x00\x00\xa0\x40"  // 5
                             "\x00\x00\xa0\xc0"  // -5
                             "\x00\x00\x00\x3e", // 0.125
                             60);
    VOZDynaResults reader(1, path);
    ASSERT_TRUE(readOne(reader, record));
    EXPECT_EQ(reader.m_nRecordStep, 258);
    EXPECT_THAT(std::vector<float>(reader.m_padNodalCoords, reader.m_padNodalCoords + 3),
                testing::ElementsAre(1.0F, -2.0F, 0.5F));
    EXPECT_THAT(std::vector<int>(reader.m_panConnectivity, reader.m_panConnectivity + 4),
                testing::ElementsAre(1, 256, -1, 0));
    EXPECT_EQ(reader.m_padEquivalentStress[0], 10.0F);
    EXPECT_EQ(reader.m_padStrainComponentsTop[0], 5.0F);
    EXPECT_EQ(reader.m_padStrainComponentsBot[0], -5.0F);
    EXPECT_EQ(reader.m_padStrainComponentsMid[0], 0.125F);
}

TEST_F(OutputVoz, GivesFalseForNoStream)
{
    VOZDynaResults reader(1, path);
    EXPECT_FALSE(reader.ReadRecord(nullptr));
    EXPECT_EQ(reader.m_nRecordStep, -1);
}

TEST_F(OutputVoz, ReadsOneRecordAfterTheOther)
{
    write(sample(5).text() + sample(6, 1).text());
    VOZDynaResults reader(2, path);
    std::FILE * const stream = std::fopen(path.ConvertToChar(), "rb");
    EXPECT_TRUE(reader.ReadRecord(stream));
    expectEqual(reader, sample(5));
    EXPECT_TRUE(reader.ReadRecord(stream));
    expectEqual(reader, sample(6, 1));
    EXPECT_FALSE(reader.ReadRecord(stream)) << "there is no third one";
    expectNoArrays(reader);
    EXPECT_EQ(reader.m_nRecordStep, 6) << "the number that was read last";
    std::fclose(stream);
}

TEST_F(OutputVoz, FindsAStepWhereverItStands)
{
    write(sample(4).text() + sample(0).text() + sample(9, 1).text());
    VOZDynaResults reader(3, path);
    for (int step : {9, 4, 0, 9})
    {
        EXPECT_EQ(reader.ReadStep(step), 1);
        expectEqual(reader, sample(step, step == 9 ? 1 : 4));
    }
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(OutputVoz, TakesTheFirstOfTwoRecordsWithOneNumber)
{
    Record second = sample(2);
    second.nodes[0] = 77.0F;
    write(sample(2).text() + second.text());
    VOZDynaResults reader(5, path);
    EXPECT_EQ(reader.ReadStep(2), 1);
    expectEqual(reader, sample(2));
}

TEST_F(OutputVoz, LooksAtNoMoreRecordsThanItIsTold)
{
    write(sample(0).text() + sample(1).text() + sample(2).text());
    VOZDynaResults two(2, path);
    EXPECT_EQ(two.ReadStep(1), 1);
    EXPECT_EQ(two.ReadStep(2), 0);
    expectNoArrays(two);
    VOZDynaResults none(0, path);
    EXPECT_EQ(none.ReadStep(0), 0);
    VOZDynaResults negative(-4, path);
    EXPECT_EQ(negative.ReadStep(0), 0);
}

TEST_F(OutputVoz, GivesNothingForAStepThatIsNotThere)
{
    write(sample(0).text());
    VOZDynaResults reader(std::numeric_limits<int>::max(), path); // the end of the file ends it, too
    EXPECT_EQ(reader.ReadStep(1), 0);
    expectNoArrays(reader);
    EXPECT_EQ(reader.ReadStep(0), 1);
    EXPECT_EQ(reader.ReadStep(1), 0) << "a step found before is not found again";
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(OutputVoz, GivesNothingForAFileThatCannotBeOpened)
{
    path = CATUnicodeString(folder.Path("missing.voz").c_str());
    VOZDynaResults reader(3, path);
    EXPECT_EQ(reader.ReadStep(-1), 0);
    path = CATUnicodeString(folder.Path().c_str()); // a folder
    EXPECT_EQ(reader.ReadStep(-1), 0);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(OutputVoz, TakesABackslashInThePathForASeparator)
{
    write(sample(1).text());
    path = CATUnicodeString((folder.Path() + "\\output.voz").c_str());
    VOZDynaResults reader(1, path);
    EXPECT_EQ(reader.ReadStep(1), 1);
}

TEST_F(OutputVoz, IsNotWholeHoweverItIsCut)
{
    std::string const whole = sample(8).text();
    ASSERT_EQ(whole.size(), 4 * kEnd);
    for (std::size_t length = 0; length < whole.size(); ++length) // words and parts of words
    {
        VOZDynaResults reader(1, path);
        EXPECT_FALSE(readOne(reader, whole.substr(0, length))) << length;
        std::size_t const nWords = length / 4;
        EXPECT_EQ(reader.m_nRecordStep, nWords >= 1 ? 8 : -1) << length;
        EXPECT_EQ(reader.m_nNumNodes, nWords > kNodeCount ? 5 : 0) << length;
        EXPECT_EQ(reader.m_padNodalCoords != nullptr, nWords >= kElementCount) << length;
        EXPECT_EQ(reader.m_nNumElements, nWords > kElementCount ? 2 : 0) << length;
        EXPECT_EQ(reader.m_panConnectivity != nullptr, nWords >= kComponentCount) << length;
        EXPECT_EQ(reader.m_nNumComponents, nWords > kComponentCount ? 24 : 0) << length;
        EXPECT_EQ(reader.m_padEquivalentStress != nullptr, nWords >= kTop) << length;
        EXPECT_EQ(reader.m_padStrainComponentsTop != nullptr, nWords >= kBottom) << length;
        EXPECT_EQ(reader.m_padStrainComponentsBot != nullptr, nWords >= kMiddle) << length;
        EXPECT_EQ(reader.m_padStrainComponentsMid, nullptr) << length;
    }
    EXPECT_THAT(reported(), testing::IsEmpty()) << "a short file breaks no contract";
}

TEST_F(OutputVoz, FindsACutRecordByItsNumber)
{
    std::string const whole = sample(8).text();
    write(sample(7).text() + words(whole, kStress + 3));
    VOZDynaResults reader(4, path);
    EXPECT_EQ(reader.ReadStep(8), 1);
    EXPECT_NE(reader.m_panConnectivity, nullptr);
    EXPECT_EQ(reader.m_nNumComponents, 24);
    EXPECT_EQ(reader.m_padEquivalentStress, nullptr);
    EXPECT_EQ(reader.ReadStep(9), 0);
}

TEST_F(OutputVoz, ReadsOnBehindABrokenRecordAsIfTheNextBeganThere)
{
    // A record without nodes ends at its count; what follows is the next one's step.
    write(bytes(3) + bytes(0) + sample(4).text());
    VOZDynaResults reader(2, path);
    EXPECT_EQ(reader.ReadStep(4), 1);
    expectEqual(reader, sample(4));
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:m_nNumNodes > 0"));
}

TEST_F(OutputVoz, ReportsCountsThatAreNotAboveZero)
{
    struct Case
    {
        std::size_t place;
        char const * text;
    };
    std::string const whole = sample(1).text();
    for (Case const & c : {Case{kNodeCount, "AssertionFailed:m_nNumNodes > 0"},
                           Case{kElementCount, "AssertionFailed:m_nNumElements > 0"},
                           Case{kComponentCount, "AssertionFailed:m_nNumComponents > 0"}})
        for (int count : {0, -1, std::numeric_limits<int>::min()})
        {
            host.reports.clear();
            VOZDynaResults reader(1, path);
            EXPECT_FALSE(readOne(reader, words(whole, c.place) + bytes(count) + whole.substr(4 * (c.place + 1))));
            EXPECT_THAT(reported(), testing::ElementsAre(c.text)) << count;
            EXPECT_EQ(reader.m_nRecordStep, 1);
        }
}

// 2^31 - 1 nodes would be 24 GB.
TEST_F(OutputVoz, AsksForNoMoreMemoryThanTheFileCanFill)
{
    std::string const whole = sample(1).text();
    for (std::size_t place : {kNodeCount, kElementCount, kComponentCount})
        for (int count : {100, 1000000, std::numeric_limits<int>::max()})
        {
            VOZDynaResults reader(1, path);
            EXPECT_FALSE(readOne(reader, words(whole, place) + bytes(count) + whole.substr(4 * (place + 1))))
                << place << " " << count;
        }
    EXPECT_THAT(reported(), testing::IsEmpty());
}

// An array beyond what is made at first grows while it is read.
TEST_F(OutputVoz, ReadsArraysOfAnySize)
{
    std::mt19937 random(7);
    Record record = sample(1);
    for (std::size_t count : {std::size_t{262143}, std::size_t{262144}, std::size_t{262145}, std::size_t{1500000}})
    {
        record.nodes.assign(count - count % 3, 0.0F);
        for (float & value : record.nodes)
            value = static_cast<float>(random() % 1000);
        record.stress.assign(count, 2.0F);
        record.top.assign(count, 3.0F);
        record.top[count - 1] = 4.0F;
        record.bottom.assign(count, 5.0F);
        record.middle.assign(count, 6.0F);
        VOZDynaResults reader(1, path);
        EXPECT_TRUE(readOne(reader, record.text()));
        expectEqual(reader, record);
    }
}

TEST_F(OutputVoz, ReportsEachArrayThatThereIsNoMemoryFor)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP();
    char const * const texts[] = {
        "AssertionFailed:m_padNodalCoords != NULL",         "AssertionFailed:m_panConnectivity != NULL",
        "AssertionFailed:m_padEquivalentStress != NULL",    "AssertionFailed:m_padStrainComponentsTop != NULL",
        "AssertionFailed:m_padStrainComponentsBot != NULL", "AssertionFailed:m_padStrainComponentsMid != NULL",
    };
    int number = 0;
    for (char const * text : texts)
    {
        host.reports.clear();
        VOZDynaResults reader(1, path);
        FailingNew const failing(++number);
        EXPECT_FALSE(readOne(reader, sample(1).text()));
        EXPECT_TRUE(failing.refused());
        EXPECT_THAT(reported(), testing::ElementsAre(text));
        EXPECT_EQ(reader.m_padStrainComponentsMid, nullptr);
    }
}

TEST_F(OutputVoz, IsFreedThroughItsBase)
{
    struct Derived : VOZDynaResults
    {
        Derived(CATUnicodeString const & i_path, bool & io_gone) : VOZDynaResults(1, i_path), gone(io_gone) {}
        ~Derived() override { gone = true; }
        bool & gone;
    };
    write(sample(1).text());
    bool gone = false;
    std::unique_ptr<VOZDynaResults> reader = std::make_unique<Derived>(path, gone);
    EXPECT_EQ(reader->ReadStep(1), 1);
    reader.reset();
    EXPECT_TRUE(gone);
}

// Files of random records with random damage: whatever stands in them, a reader stays within its own arrays, and what
// lies ahead of the damage is found.
TEST_F(OutputVoz, SurvivesRandomDamage)
{
    std::mt19937 random(11);
    for (int round = 0; round < 100; ++round)
    {
        std::string file = sample(0).text() + sample(1, 1).text();
        std::size_t const first = sample(0).text().size();
        for (int i = 0; i < 6; ++i)
        {
            std::size_t const place = first + random() % (file.size() - first);
            file[place] = static_cast<char>(random() & 0xFFU);
        }
        write(file.substr(0, first + random() % (file.size() - first)));
        VOZDynaResults reader(5, path);
        reader.ReadStep(static_cast<int>(random() % 4));
        EXPECT_EQ(reader.ReadStep(0), 1);
        expectEqual(reader, sample(0));
    }
}
