// OutputFile.h: the one way in which the workbench writes a file.
//
// The text gathers in memory and goes to "<path>.part" on Commit, which renames it to its final name: nothing half
// written ever stands under that name. An existing file is replaced. Any failure (no folder, no room, no permission) is
// an OutputError that names the path and the reason; without Commit nothing is left.

#ifndef OUTPUTFILE_H
#define OUTPUTFILE_H

#include <stdexcept>
#include <string>
#include <string_view>

namespace voz::workbench
{

class OutputError : public std::runtime_error
{
public:
    OutputError(std::string const & i_path, std::string const & i_reason)
        : std::runtime_error("cannot write " + i_path + ": " + i_reason)
    {
    }
};

// Numbers as text, whatever the locale. NaN and infinities come out as "nan", "inf", "-inf".
std::string Fixed(double i_value, int i_decimals); // never "-0.00"
std::string Shortest(double i_value);              // the fewest digits that read back equal

class OutputFile
{
public:
    explicit OutputFile(std::string i_path) : mPath(std::move(i_path)) {}

    OutputFile & operator<<(std::string_view i_text)
    {
        mText += i_text;
        return *this;
    }
    OutputFile & operator<<(char i_character)
    {
        mText += i_character;
        return *this;
    }
    OutputFile & operator<<(int i_value) { return *this << std::string_view(std::to_string(i_value)); }
    OutputFile & operator<<(double i_value) = delete; // say how: Fixed or Shortest

    std::string & Text() { return mText; }
    void Commit();

private:
    std::string mPath;
    std::string mText;
};

} // namespace voz::workbench

#endif
