// OutputRecordsTest.cpp. Which records a result file holds, and what is said of one that is damaged.

#include "OutputRecords.h"
#include "InputError.h"
#include "JobFixture.h"
#include "RecordFile.h"

#include <gtest/gtest.h>

using namespace voz::workbench;

namespace
{
class OutputRecordsTest : public JobFixture
{
protected:
    OutputRecords Scan(std::string const & i_bytes) const { return ScanRecords(Write("output.voz", i_bytes)); }
    static std::string Two()
    {
        return Record::Plate(0, 2, 1, 0.01F, 0.0F, {0.0F, 0.0F}, 0.0F, 0.0F).Bytes() +
               Record::Plate(7, 3, 2, 0.01F, 0.0F, {0.1F, 0.0F}, 0.0F, 1e8F).Bytes();
    }
};
} // namespace

TEST_F(OutputRecordsTest, EachRecordIsToldWithItsCounts)
{
    OutputRecords const records = Scan(Two());
    EXPECT_EQ(records.fault, "");
    ASSERT_EQ(records.whole.size(), 2U);
    EXPECT_EQ(records.whole[0].step, 0);
    EXPECT_EQ(records.whole[0].nodes, 6);
    EXPECT_EQ(records.whole[0].elements, 2);
    EXPECT_EQ(records.whole[0].components, 24);
    EXPECT_EQ(records.whole[1].step, 7);
    EXPECT_EQ(records.whole[1].nodes, 12);
    EXPECT_EQ(records.whole[1].elements, 6);
    EXPECT_EQ(records.whole[1].components, 72);
}

TEST_F(OutputRecordsTest, AnEmptyFileHoldsNone)
{
    EXPECT_TRUE(Scan("").whole.empty());
    EXPECT_EQ(Scan("").fault, "");
    EXPECT_THROW(ScanRecords(Folder() + "/none.voz"), InputError);
}

// At every byte: what is whole stays, what is cut is said.
TEST_F(OutputRecordsTest, ACutFileKeepsItsWholeRecords)
{
    std::string const bytes = Two();
    std::size_t const first = Record::Plate(0, 2, 1, 0.01F, 0.0F, {0.0F, 0.0F}, 0.0F, 0.0F).Bytes().size();
    for (std::size_t size = 1; size < bytes.size(); ++size)
    {
        OutputRecords const records = Scan(bytes.substr(0, size));
        ASSERT_EQ(records.whole.size(), size < first ? 0U : 1U) << size;
        ASSERT_EQ(records.fault.empty(), size == first) << size;
    }
    EXPECT_NE(Scan(bytes.substr(0, first + 6)).fault.find("the number of nodes"), std::string::npos);
}

TEST_F(OutputRecordsTest, CountsThatCannotBeEndTheFile)
{
    for (int const count : {0, -1, -2147483647 - 1, 2147483647})
    {
        std::string bytes = Two();
        std::string word;
        Record::Put(word, count);
        bytes.replace(4, 4, word); // nodes of the first record
        OutputRecords const records = Scan(bytes);
        EXPECT_TRUE(records.whole.empty());
        EXPECT_NE(records.fault.find(std::to_string(count) + " nodes"), std::string::npos) << records.fault;
    }
}
