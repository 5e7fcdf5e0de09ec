// CardText.h: fields of fixed width, for the decks that the workbench writes.

#ifndef CARDTEXT_H
#define CARDTEXT_H

#include "NumberText.h"

#include <algorithm>
#include <string>

namespace voz::workbench
{

inline std::string LeftIn(std::string i_text, std::size_t i_width)
{
    i_text.resize(std::max(i_text.size(), i_width), ' ');
    return i_text;
}

inline std::string RightIn(std::string i_text, std::size_t i_width)
{
    if (i_text.size() < i_width)
        i_text.insert(0, i_width - i_text.size(), ' ');
    return i_text;
}

// Fields of keyword decks: to the right, exponents with a letter.
inline std::string KeywordField(int i_value, std::size_t i_width)
{
    return RightIn(std::to_string(i_value), i_width);
}

inline std::string KeywordField(double i_value, std::size_t i_width)
{
    return RightIn(RealInColumns(i_value, i_width, Exponent::WithLetter), i_width);
}

// Fields of bulk data: to the left, 8 columns or 16, exponents bare.
inline std::string SmallField(int i_value)
{
    return LeftIn(std::to_string(i_value), 8);
}

inline std::string SmallField(double i_value)
{
    return LeftIn(RealInColumns(i_value, 8, Exponent::Bare), 8);
}

inline std::string LargeField(int i_value)
{
    return LeftIn(std::to_string(i_value), 16);
}

inline std::string LargeField(double i_value)
{
    return LeftIn(RealInColumns(i_value, 16, Exponent::Bare), 16);
}

// A grid point in large field, in the basic system.
inline std::string GridCard(int i_id, double const * i_point)
{
    return "GRID*   " + LargeField(i_id) + std::string(16, ' ') + LargeField(i_point[0]) + LargeField(i_point[1]) +
           "\n*       " + LargeField(i_point[2]) + "\n";
}

} // namespace voz::workbench

#endif
