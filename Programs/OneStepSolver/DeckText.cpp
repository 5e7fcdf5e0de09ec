// DeckText.cpp: splitting a deck into lines and fields.

#include "DeckText.h"

#include "VOZFile.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

namespace voz::deck
{

namespace
{
constexpr std::size_t kMostShown = 40;

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

// std::from_chars takes no plus sign.
template <class Number>
bool parse(std::string_view text, Number & o_value)
{
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), o_value);
    return error == std::errc() && end == text.data() + text.size();
}
} // namespace

std::string Quoted(std::string_view i_text)
{
    std::string result = "\"";
    for (char const c : i_text.substr(0, kMostShown))
        result += static_cast<unsigned char>(c) < 0x20 ? '?' : c;
    return result + (i_text.size() > kMostShown ? "...\"" : "\"");
}

std::string ReadWholeFile(std::string const & i_path)
{
    struct Closed
    {
        void operator()(std::FILE * i_file) const { std::fclose(i_file); }
    };
    errno = 0;
    std::unique_ptr<std::FILE, Closed> const file(VOZOpenFile(i_path.c_str(), "rb"));
    if (!file)
        throw DeckError(i_path, 0, std::string("cannot be opened (") + std::strerror(errno) + "); expected a file");
    std::string text;
    std::array<char, std::size_t{1} << 16> block;
    while (std::size_t const got = std::fread(block.data(), 1, block.size(), file.get()))
        text.append(block.data(), got);
    if (std::ferror(file.get()) != 0)
        throw DeckError(i_path, 0, std::string("cannot be read (") + std::strerror(errno) + ")");
    return text;
}

// Row

Row::Row(std::string const & i_file, int i_line, std::string_view i_text) : mFile(i_file), mLine(i_line)
{
    std::size_t at = 0;
    while (true)
    {
        while (at < i_text.size() && isBlank(i_text[at]))
            ++at;
        if (at == i_text.size())
            return;
        std::size_t const begin = at;
        while (at < i_text.size() && !isBlank(i_text[at]))
            ++at;
        if (mCount == kMostFields)
            Fail("the line has more than " + std::to_string(kMostFields) + " fields; no line of a deck has");
        mFields[static_cast<std::size_t>(mCount++)] = i_text.substr(begin, at - begin);
    }
}

void Row::Fail(std::string const & i_text) const
{
    throw DeckError(mFile, mLine, i_text);
}

void Row::Expect(int i_count, char const * i_what) const
{
    if (mCount != i_count)
        Fail(std::string(i_what) + " has " + std::to_string(mCount) + " fields; expected " + std::to_string(i_count));
}

int Row::Int(int i_field, int i_least, int i_greatest, char const * i_what) const
{
    int value = 0;
    if (i_field <= mCount && parse(Field(i_field), value) && value >= i_least && value <= i_greatest)
        return value;
    std::string const found = i_field <= mCount ? Quoted(Field(i_field)) : "missing";
    std::string range = "a whole number";
    if (i_least == i_greatest)
        range = std::to_string(i_least);
    else if (i_greatest != kAnyInt)
        range += " from " + std::to_string(i_least) + " to " + std::to_string(i_greatest);
    else if (i_least != -kAnyInt)
        range += ", " + std::to_string(i_least) + " or more";
    Fail(std::string(i_what) + " (field " + std::to_string(i_field) + ") is " + found + "; expected " + range);
}

double Row::Real(int i_field, char const * i_what) const
{
    double value = 0.0;
    if (i_field <= mCount && parse(Field(i_field), value) && std::isfinite(value))
        return value;
    std::string const found = i_field <= mCount ? Quoted(Field(i_field)) : "missing";
    Fail(std::string(i_what) + " (field " + std::to_string(i_field) + ") is " + found + "; expected a finite number");
}

// DeckLines

DeckLines::DeckLines(std::string const & i_file, std::string_view i_text) : mFile(i_file), mRest(i_text)
{
    Next();
}

void DeckLines::Next()
{
    ++mNumber;
    if (mRest.empty())
    {
        mLine = std::string_view();
        return;
    }
    std::size_t const feed = mRest.find('\n');
    mLine = mRest.substr(0, feed);
    mRest.remove_prefix(feed == std::string_view::npos ? mRest.size() : feed + 1);
    if (!mLine.empty() && mLine.back() == '\r')
        mLine.remove_suffix(1);
}

void DeckLines::Fail(std::string const & i_text) const
{
    throw DeckError(mFile, mNumber, i_text);
}

Row DeckLines::Take(char const * i_what)
{
    if (!InBlock())
        Fail(std::string(AtEnd() ? "the file" : "the block") + " ends here; expected " + i_what);
    Row const row = Peek();
    Next();
    return row;
}

void DeckLines::Separator(char const * i_after)
{
    if (!AtSeparator() || mLine.find_first_not_of('*') != std::string_view::npos)
        Fail((AtEnd() ? "the file ends here" : "found " + Quoted(mLine)) + "; expected a line of asterisks behind " +
             i_after);
    Next();
}

} // namespace voz::deck
