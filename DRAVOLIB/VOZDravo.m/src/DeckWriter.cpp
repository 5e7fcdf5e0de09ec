// DeckWriter.cpp: text in blocks.

#include "DeckWriter.h"

#include "DeckNumber.h"

#include <charconv>
#include <cmath>

namespace
{
constexpr std::size_t kIntBytes = 16; // of the longest int as text
constexpr std::size_t kWidest = 64;   // field
// Sign, the 309 digits of the largest double, point, decimals.
constexpr std::size_t kFixedBytes = 512;

// Moves the text [io_at, end) to the right end of a field of that width. Returns the field's end.
char * AlignRight(char * io_at, char * end, std::size_t width)
{
    std::size_t const size = static_cast<std::size_t>(end - io_at);
    if (size >= width)
        return end;
    std::memmove(io_at + (width - size), io_at, size);
    std::memset(io_at, ' ', width - size);
    return io_at + width;
}

char * Fixed(char * o_at, double value, int decimals)
{
    return std::to_chars(o_at, o_at + kFixedBytes, value, std::chars_format::fixed, decimals).ptr;
}
} // namespace

DeckWriter::DeckWriter(std::FILE * i_file) : mFile(i_file), mBlock(new char[kBlockBytes]) {}

void DeckWriter::Flush()
{
    if (mUsed > 0)
        static_cast<void>(std::fwrite(mBlock.get(), 1, mUsed, mFile));
    mUsed = 0;
}

// A text that does not fit behind what is there: piece by piece.
void DeckWriter::LongText(std::string_view i_text)
{
    while (!i_text.empty())
    {
        Flush();
        std::string_view const piece = i_text.substr(0, kBlockBytes);
        std::memcpy(mBlock.get(), piece.data(), piece.size());
        mUsed = piece.size();
        i_text.remove_prefix(piece.size());
    }
}

void DeckWriter::Number(int i_value)
{
    char * const at = Reserve(kIntBytes);
    Take(std::to_chars(at, at + kIntBytes, i_value).ptr);
}

void DeckWriter::Number(double i_value)
{
    char * const at = Reserve(kDeckNumberSize);
    Take(at + FormatDeckDouble(i_value, at));
}

void DeckWriter::IntegerField(int i_value, std::size_t i_width)
{
    char * const at = Reserve(kIntBytes + kWidest);
    std::memset(at, ' ', kWidest);
    char digits[kIntBytes];
    char * const end = digits + kIntBytes;
    char * first = end;
    unsigned rest = i_value < 0 ? 0U - static_cast<unsigned>(i_value) : static_cast<unsigned>(i_value);
    for (; rest > 9; rest /= 10)
        *--first = static_cast<char>('0' + rest % 10);
    *--first = static_cast<char>('0' + rest);
    if (i_value < 0)
        *--first = '-';
    std::size_t const size = static_cast<std::size_t>(end - first);
    std::size_t const blanks = size < i_width ? i_width - size : 0;
    std::memcpy(at + blanks, first, size);
    Take(at + blanks + size);
}

void DeckWriter::LeftField(std::string_view i_text, std::size_t i_width)
{
    Text(i_text);
    if (i_text.size() >= i_width)
        return;
    std::size_t const blanks = i_width - i_text.size();
    char * const at = Reserve(kWidest);
    std::memset(at, ' ', blanks);
    Take(at + blanks);
}

void DeckWriter::LeftNumber(int i_value, std::size_t i_width)
{
    char digits[kIntBytes];
    char const * const end = std::to_chars(digits, digits + kIntBytes, i_value).ptr;
    LeftField({digits, static_cast<std::size_t>(end - digits)}, i_width);
}

void DeckWriter::RightField(std::string_view i_text, std::size_t i_width)
{
    for (std::size_t i = i_text.size(); i < i_width; ++i)
        Text(" ");
    Text(i_text);
}

void DeckWriter::FixedField(double i_value, std::size_t i_width, int i_decimals)
{
    char * const at = Reserve(kFixedBytes + kWidest);
    Take(AlignRight(at, Fixed(at, i_value, i_decimals), i_width));
}

void DeckWriter::SignedField(double i_value, std::size_t i_width, int i_decimals)
{
    char * const at = Reserve(kFixedBytes + kWidest);
    bool const hasMinus = std::signbit(i_value);
    at[0] = '+';
    Take(AlignRight(at, Fixed(hasMinus ? at : at + 1, i_value, i_decimals), i_width));
}
