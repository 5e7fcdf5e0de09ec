// DeckText.h: the lines of a deck and their fields, with errors that name file and line.

#ifndef DECKTEXT_H
#define DECKTEXT_H

#include "DeckReader.h"

#include <limits>

namespace voz::deck
{

constexpr int kAnyInt = std::numeric_limits<int>::max();

// A line split at blanks and tabs.
class Row
{
public:
    Row(std::string const & i_file, int i_line, std::string_view i_text);

    int Line() const { return mLine; }
    int Count() const { return mCount; }
    std::string_view Field(int i_field) const { return mFields[static_cast<std::size_t>(i_field) - 1]; }

    // Field numbers run from 1, as in the description of the deck.
    void Expect(int i_count, char const * i_what) const; // as many fields
    int Int(int i_field, int i_least, int i_greatest, char const * i_what) const;
    double Real(int i_field, char const * i_what) const; // finite
    [[noreturn]] void Fail(std::string const & i_text) const;

private:
    static constexpr int kMostFields = 40;

    std::string const & mFile;
    int mLine;
    int mCount = 0;
    std::array<std::string_view, kMostFields> mFields{};
};

class DeckLines
{
public:
    DeckLines(std::string const & i_file, std::string_view i_text);

    bool AtEnd() const { return mLine.data() == nullptr; }
    bool AtSeparator() const { return !mLine.empty() && mLine[0] == '*'; }
    bool InBlock() const { return !AtEnd() && !AtSeparator(); }
    int Number() const { return mNumber; } // of the present line
    std::string_view Line() const { return mLine; }
    std::size_t Left() const { return mRest.size() + mLine.size(); } // characters
    void Next();

    Row Peek() const { return Row(mFile, mNumber, mLine); }
    Row Take(char const * i_what); // a row of the block; an error at its end
    void Separator(char const * i_after);
    [[noreturn]] void Fail(std::string const & i_text) const;

private:
    std::string const & mFile;
    std::string_view mRest;
    std::string_view mLine; // null data at the end
    int mNumber = 0;
};

std::string Quoted(std::string_view i_text); // shortened, without control characters

} // namespace voz::deck

#endif
