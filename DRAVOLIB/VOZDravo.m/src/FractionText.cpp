// FractionText.cpp: fractions and powers of ten. Nine digits, which a deck's coordinates have, take a short way where
// one product in double precision settles all of them; it is about three times as fast as the long way.

#include "FractionText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace
{
// "E", a sign, two digits or more. Returns the end.
char * SpellPower(int power, char * o_at)
{
    *o_at++ = 'E';
    *o_at++ = power < 0 ? '-' : '+';
    int const size = std::abs(power);
    if (size < 10)
        *o_at++ = '0';
    return std::to_chars(o_at, o_at + 4, size).ptr;
}

char * SpellNoNumber(double value, int digits, char * o_digits)
{
    std::string_view const mark = std::isinf(value) ? "1#INF" : "1#QNAN";
    for (std::size_t i = 0; i < static_cast<std::size_t>(digits); ++i)
        o_digits[i] = i < mark.size() ? mark[i] : '0';
    return SpellPower(1, o_digits + digits);
}

// The product with an exact power of ten is off by less than 1e-6 where it is below 1e9. False, with nothing written,
// where that could turn the rounding, and outside of the range.
bool SpellNine(double size, char * o_digits, char *& o_end)
{
    static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                         1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr double kDoubt = 1e-6;
    if (!(size >= 1e-12 && size < 1e8))
        return false;
    int binary = 0;
    static_cast<void>(std::frexp(size, &binary));
    int power = ((binary - 1) * 1233 >> 12) + 1; // of ten, by the power of two; it may be off by one
    double scaled = size * kPowers[9 - power];
    if (scaled >= 1e9)
        scaled = size * kPowers[9 - ++power];
    else if (scaled < 1e8)
        scaled = size * kPowers[9 - --power];
    unsigned figures = static_cast<unsigned>(scaled);
    double const rest = scaled - figures;
    if (std::fabs(rest - 0.5) < kDoubt)
        return false;
    figures += rest > 0.5 ? 1 : 0;
    if (figures == 1000000000)
    {
        figures = 100000000;
        ++power;
    }
    std::to_chars(o_digits, o_digits + 9, figures);
    o_end = SpellPower(power, o_digits + 9);
    return true;
}
} // namespace

char * SpellFraction(double i_value, int i_digits, char * o_text)
{
    o_text[0] = std::signbit(i_value) ? '-' : ' ';
    o_text[1] = '.';
    char * const first = o_text + 2;
    if (!std::isfinite(i_value))
        return SpellNoNumber(i_value, i_digits, first);
    double const size = std::fabs(i_value);
    char * end = nullptr;
    if (i_digits == 9 && SpellNine(size, first, end))
        return end;
    // "d.ddde+dd" with its point on the first digit's place, so that all digits but that one stand in theirs already.
    char * const mantissa = o_text + 1;
    char * const last = o_text + FractionBytes(i_digits);
    char const * const stop = std::to_chars(mantissa, last, size, std::chars_format::scientific, i_digits - 1).ptr;
    char const * const mark = i_digits > 1 ? first + i_digits : mantissa + 1;
    int exponent = 0;
    for (char const * at = mark + 2; at < stop; ++at)
        exponent = 10 * exponent + (*at - '0');
    if (mark[1] == '-')
        exponent = -exponent;
    first[0] = mantissa[0];
    mantissa[0] = '.';
    return SpellPower(size > 0.0 ? exponent + 1 : 0, first + i_digits);
}
