// NumberText.h: numbers and words of mesh files, read whatever the locale.

#ifndef NUMBERTEXT_H
#define NUMBERTEXT_H

#include <string>
#include <string_view>

namespace voz::workbench
{

// Which exponents a format may write beside "1.5e-3" and "1.5d-3".
enum class Exponent
{
    WithLetter,
    Bare // also "1.5-3"
};

// The whole text, no blanks around it; false leaves the value alone. Integers outside of 32 bits, NaN, infinities and
// reals outside of the range of a double are refused.
bool ParseInteger(std::string_view i_text, int & o_value);
bool ParseReal(std::string_view i_text, double & o_value, Exponent i_exponent = Exponent::WithLetter);

// The fewest digits that read back equal, or the nearest number that i_width columns hold, with a decimal point;
// exponents bare ("1.5-3") or with a letter ("1.5e-3").
std::string RealInColumns(double i_value, std::size_t i_width, Exponent i_exponent);

std::string_view Trimmed(std::string_view i_text); // without blanks and tabs at both ends
std::string Upper(std::string_view i_text);        // ASCII letters alone

// Latin-1 becomes UTF-8, UTF-8 stays, control characters become blanks.
std::string AsUtf8(std::string_view i_text);

// For messages: in quotes, as UTF-8, cut after 40 characters; "nothing" if empty.
std::string Quoted(std::string_view i_text);

// Takes the next word, parted by blanks and tabs, off the front of io_rest; empty at the end.
std::string_view NextWord(std::string_view & io_rest);

} // namespace voz::workbench

#endif
