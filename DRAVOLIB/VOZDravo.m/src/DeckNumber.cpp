// DeckNumber.cpp: numbers as text, independent of the locale.

#include "DeckNumber.h"

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cstring>
#include <limits>
#include <string_view>
#include <system_error>

namespace
{
constexpr int kDecimals = 6;

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// The text after an exponent mark, as a number that stops growing long before it could overflow.
int SaturatedExponent(std::string_view text)
{
    constexpr int kLimit = 100000000;
    bool const negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (negative || text.front() == '+'))
        text.remove_prefix(1);
    int exponent = 0;
    for (char const c : text)
        if (exponent < kLimit)
            exponent = 10 * exponent + (c - '0');
    return negative ? -exponent : exponent;
}

// Whether a number that no double can hold is too large (true) or too small: the place of its first digit that is
// not zero, shifted by its exponent.
bool IsTooLarge(std::string_view text, bool hexadecimal)
{
    std::size_t const mark = text.find_first_of(hexadecimal ? "pP" : "eE");
    bool pointSeen = false;
    bool digitSeen = false;
    double place = 0.0;
    for (char const c : text.substr(0, mark))
    {
        if (c == '.')
        {
            pointSeen = true;
            continue;
        }
        digitSeen = digitSeen || c != '0';
        if (digitSeen && !pointSeen)
            place += 1.0;
        else if (!digitSeen && pointSeen)
            place -= 1.0;
    }
    int const exponent = mark == std::string_view::npos ? 0 : SaturatedExponent(text.substr(mark + 1));
    return place * (hexadecimal ? 4.0 : 1.0) + exponent > 0.0;
}

double NumberAt(char const * first, bool negative)
{
    bool const hexadecimal = first[0] == '0' && (first[1] == 'x' || first[1] == 'X') &&
                             (IsHexDigit(first[2]) || (first[2] == '.' && IsHexDigit(first[3])));
    if (hexadecimal)
        first += 2;
    double value = 0.0;
    auto const format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
    auto const [end, error] = std::from_chars(first, first + std::strlen(first), value, format);
    if (error == std::errc::invalid_argument)
        return 0.0; // a sign alone gives it none
    if (error == std::errc::result_out_of_range)
    {
        std::string_view const text(first, static_cast<std::size_t>(end - first));
        value = IsTooLarge(text, hexadecimal) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return negative ? -value : value;
}
} // namespace

int FormatDeckDouble(double i_value, char * o_buffer)
{
    char * const last = o_buffer + kDeckNumberSize - 1;
    auto result = std::to_chars(o_buffer, last, i_value, std::chars_format::fixed, kDecimals);
    if (result.ec != std::errc())
        result = std::to_chars(o_buffer, last, i_value, std::chars_format::scientific, kDecimals);
    *result.ptr = '\0';
    return static_cast<int>(result.ptr - o_buffer);
}

double TextToDouble(char const * i_text)
{
    if (!i_text)
        return 0.0;
    while (IsBlank(*i_text))
        ++i_text;
    bool const negative = *i_text == '-';
    if (negative || *i_text == '+')
        ++i_text;
    if (*i_text == '-') // std::from_chars would take a second sign
        return 0.0;
    return NumberAt(i_text, negative);
}

double ParseDeckDouble(char const * i_text)
{
    double const value = TextToDouble(i_text);
    return std::localeconv()->decimal_point[0] == '.' ? value : static_cast<double>(static_cast<float>(value));
}

int TextToInt(char const * i_text)
{
    if (!i_text)
        return 0;
    while (IsBlank(*i_text))
        ++i_text;
    bool const negative = *i_text == '-';
    if (negative || *i_text == '+')
        ++i_text;
    long long constexpr kLimit = 1LL + std::numeric_limits<int>::max();
    long long value = 0;
    for (; *i_text >= '0' && *i_text <= '9'; ++i_text)
        value = std::min(10 * value + (*i_text - '0'), kLimit);
    return static_cast<int>(negative ? -value : std::min(value, kLimit - 1));
}
