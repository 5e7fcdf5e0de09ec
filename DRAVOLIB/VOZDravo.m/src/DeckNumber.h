// DeckNumber.h: the one road of a real number into and out of the positional decks and the configuration file.
//
// The locale is read, never set: both directions show and take a decimal point whatever it is.

#ifndef DECKNUMBER_H
#define DECKNUMBER_H

constexpr int kDeckNumberSize = 128; // bytes that a formatted number needs, its NUL included

// Writes i_value as "%f" does (six decimals, a point) with its NUL, and returns the length. A number of more than 120
// digits before the point, which "%f" could not put into the buffer, is written as "%e" does: readers take it with
// the same meaning, and nothing stands outside the buffer.
int FormatDeckDouble(double i_value, char * o_buffer);

// The number at the start of the text, as atof reads it in the "C" locale: leading blanks, sign, decimal or
// hexadecimal digits, exponent, infinity, nan; 0 if there is none; infinity or 0 beyond the range. Null reads as 0.
double TextToDouble(char const * i_text);

// The same, but rounded through single precision where the locale's decimal point is not ".".
double ParseDeckDouble(char const * i_text);

// The integer at the start of the text, as atoi reads it: leading blanks, sign, decimal digits; 0 if there is none; the
// nearest int beyond the range. Null reads as 0.
int TextToInt(char const * i_text);

#endif
