// OutputRecords.cpp: the records of a result file, by their counts.

#include "OutputRecords.h"

#include "InputError.h"

#include <array>
#include <cstdint>
#include <fstream>

namespace voz::workbench
{

namespace
{
constexpr std::uint64_t kWord = 4;

class Scanner
{
public:
    explicit Scanner(std::string const & i_path) : mFile(i_path, std::ios::binary)
    {
        if (!mFile)
            throw InputError(i_path, 0, 0, "cannot be opened");
        mFile.seekg(0, std::ios::end);
        mSize = static_cast<std::uint64_t>(mFile.tellg());
        mFile.seekg(0);
    }

    bool IsAtEnd() const { return mAt == mSize; }

    // Empty where a whole record was read.
    std::string Next(OutputRecord & o_record)
    {
        if (!Read(o_record.step))
            return Cut("the step number");
        struct Field
        {
            int OutputRecord::*count;
            char const * name;
            std::uint64_t words; // of values behind it, for each
        };
        for (Field const & field :
             {Field{&OutputRecord::nodes, "nodes", 3}, Field{&OutputRecord::elements, "elements", 4},
              Field{&OutputRecord::components, "components", 4}})
        {
            int & count = o_record.*field.count;
            if (!Read(count))
                return Cut(std::string("the number of ") + field.name);
            if (count <= 0)
                return At() + ": " + std::to_string(count) + " " + field.name + "; expected 1 or more";
            if (!Skip(field.words * static_cast<std::uint64_t>(count)))
                return Cut("the values of " + std::to_string(count) + " " + field.name);
        }
        return "";
    }

private:
    std::string At() const { return "at byte " + std::to_string(mAt); }
    std::string Cut(std::string const & i_what) const
    {
        return "cut off " + At() + " of " + std::to_string(mSize) + ", within " + i_what;
    }

    bool Read(int & o_value)
    {
        if (mSize - mAt < kWord)
            return false;
        std::array<unsigned char, kWord> bytes{};
        mFile.seekg(static_cast<std::streamoff>(mAt));
        mFile.read(reinterpret_cast<char *>(bytes.data()), kWord);
        if (mFile.gcount() != static_cast<std::streamsize>(kWord))
            return false;
        std::uint32_t value = 0;
        for (std::size_t i = kWord; i-- > 0;)
            value = value << 8U | bytes[i];
        o_value = static_cast<int>(value);
        mAt += kWord;
        return true;
    }

    bool Skip(std::uint64_t i_words)
    {
        if ((mSize - mAt) / kWord < i_words)
            return false;
        mAt += kWord * i_words;
        return true;
    }

    std::ifstream mFile;
    std::uint64_t mSize = 0;
    std::uint64_t mAt = 0;
};
} // namespace

OutputRecords ScanRecords(std::string const & i_path)
{
    Scanner scanner(i_path);
    OutputRecords records;
    while (!scanner.IsAtEnd())
    {
        OutputRecord record;
        records.fault = scanner.Next(record);
        if (!records.fault.empty())
            return records;
        records.whole.push_back(record);
    }
    return records;
}

} // namespace voz::workbench
