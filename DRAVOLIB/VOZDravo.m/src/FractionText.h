// FractionText.h: a real number as a fraction below 1 and a power of ten: " .150000000E+01" for 1.5 with 9 digits.
//
// A blank or the sign, the point, the digits, "E", a sign and two digits or more. Zero has the power 0. The exact value
// is rounded, a tie to the even digit. Infinities and NaN have the digits "1#INF" and "1#QNAN", cut or filled with
// zeros, and the power 1: they keep their width, and no reader takes them for a number.

#ifndef FRACTIONTEXT_H
#define FRACTIONTEXT_H

#include <cstddef>

constexpr std::size_t FractionBytes(int i_digits) // that SpellFraction may touch
{
    return static_cast<std::size_t>(i_digits) + 8;
}

// i_digits: 1 or more. Returns the end of the text; no NUL is written.
char * SpellFraction(double i_value, int i_digits, char * o_text);

#endif
