// LineReader.h: the lines of a text, one at a time from a buffer of fixed size, with their numbers.
//
// A line ends with LF or CR LF; the last needs neither. A byte-order mark of UTF-8 is passed over. A line longer than
// kLongestLine and a text in UTF-16 are InputErrors.

#ifndef LINEREADER_H
#define LINEREADER_H

#include "ByteSource.h"

namespace voz::workbench
{

class LineReader
{
public:
    static constexpr std::size_t kLongestLine = std::size_t{1} << 20;

    explicit LineReader(ByteSource & i_source);

    bool Next(std::string_view & o_line); // without its end; valid until the next call
    int Line() const { return mLine; }    // of the line given last
    std::string const & Name() const { return mSource.Name(); }

    [[noreturn]] void Fail(std::size_t i_column, std::string const & i_message) const; // column from 1; 0: the line

private:
    bool fill();
    void passByteOrderMark();

    ByteSource & mSource;
    std::vector<char> mBuffer;
    std::size_t mBegin = 0; // of what is not yet given
    std::size_t mEnd = 0;
    int mLine = 0;
};

} // namespace voz::workbench

#endif
