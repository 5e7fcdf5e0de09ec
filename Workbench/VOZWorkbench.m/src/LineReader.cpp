// LineReader.cpp: memchr over a window that slides along the text.

#include "LineReader.h"

#include "InputError.h"

#include <cstring>

namespace voz::workbench
{

LineReader::LineReader(ByteSource & i_source) : mSource(i_source), mBuffer(LineReader::kLongestLine / 4)
{
    passByteOrderMark();
}

void LineReader::passByteOrderMark()
{
    while (mEnd < 3 && fill())
    {
    }
    std::string_view const start(mBuffer.data(), mEnd);
    if (start.substr(0, 3) == "\xEF\xBB\xBF")
        mBegin = 3;
    if (start.substr(0, 2) == "\xFF\xFE" || start.substr(0, 2) == "\xFE\xFF")
        throw InputError(Name(), 0, 0, "the text is UTF-16, expected ASCII, Latin-1 or UTF-8");
}

// Moves what is left to the front and reads behind it; false at the end of the text.
bool LineReader::fill()
{
    if (mBegin > 0)
    {
        std::memmove(mBuffer.data(), mBuffer.data() + mBegin, mEnd - mBegin);
        mEnd -= mBegin;
        mBegin = 0;
    }
    if (mEnd == mBuffer.size())
    {
        if (mBuffer.size() >= kLongestLine)
        {
            ++mLine;
            Fail(0, "a line of more than " + std::to_string(kLongestLine) + " characters, expected text");
        }
        mBuffer.resize(mBuffer.size() * 2);
    }
    std::size_t const count = mSource.Read(mBuffer.data() + mEnd, mBuffer.size() - mEnd);
    mEnd += count;
    return count > 0;
}

bool LineReader::Next(std::string_view & o_line)
{
    std::size_t searched = 0;
    for (;;)
    {
        char const * const from = mBuffer.data() + mBegin;
        std::size_t const left = mEnd - mBegin;
        void const * const newline = left > searched ? std::memchr(from + searched, '\n', left - searched) : nullptr;
        std::size_t length = left;
        if (newline)
            length = static_cast<std::size_t>(static_cast<char const *>(newline) - from);
        else
        {
            searched = left;
            if (fill())
                continue;
            if (left == 0)
                return false;
        }
        o_line = {mBuffer.data() + mBegin, length};
        mBegin += newline ? length + 1 : length;
        if (!o_line.empty() && o_line.back() == '\r')
            o_line.remove_suffix(1);
        ++mLine;
        return true;
    }
}

void LineReader::Fail(std::size_t i_column, std::string const & i_message) const
{
    throw InputError(Name(), mLine, static_cast<int>(i_column), i_message);
}

} // namespace voz::workbench
