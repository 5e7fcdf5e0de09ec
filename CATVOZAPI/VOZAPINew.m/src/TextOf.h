// TextOf.h: one text from texts and numbers, whatever the locale.

#ifndef TEXTOF_H
#define TEXTOF_H

#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <type_traits>

inline std::string NumberText(double i_dValue, int i_nDigits, std::chars_format i_format = std::chars_format::general)
{
    std::array<char, 400> text; // the largest double in fixed form has 309 digits before the point
    auto const end = std::to_chars(text.data(), text.data() + text.size(), i_dValue, i_format, i_nDigits);
    return std::string(text.data(), end.ptr);
}

template <class Part>
void AppendText(std::string & io_text, Part const & i_part)
{
    if constexpr (std::is_integral_v<Part>)
        io_text.append(std::to_string(i_part));
    else if constexpr (std::is_floating_point_v<Part>)
        io_text.append(NumberText(i_part, 10));
    else
        io_text.append(std::string_view(i_part));
}

// All the parts in a row; reals with ten digits.
template <class... Parts>
std::string TextOf(Parts const &... i_parts)
{
    std::string text;
    (AppendText(text, i_parts), ...);
    return text;
}

#endif
