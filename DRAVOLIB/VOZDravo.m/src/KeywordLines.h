// KeywordLines.h: the banner lines of the keyword deck, the head of its curves, and the check that each banner fills
// its 80 columns.

#ifndef KEYWORDLINES_H
#define KEYWORDLINES_H

#include <cstddef>
#include <string_view>

// clang-format off
constexpr char kPipeRule[]    = "$|||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||||";
constexpr char kDoubleRule[]  = "$||=============================================================================";
constexpr char kSingleRule[]  = "$||-----------------------------------------------------------------------------";
constexpr char kEmptyBanner[] = "$||                                                                           ||";
constexpr char kComment[]     = "$";

constexpr char kCurveKeyword[] = "*DEFINE_CURVE";
constexpr char kCurveFields[]  = "$     LCID      SIDR      SCLA      SCLO      OFFA      OFFO";
// clang-format on

// Whether the banner lines of a table, which begin with "$|", have 80 characters each.
template <std::size_t N>
constexpr bool BannersFillTheLine(char const * const (&i_aLines)[N])
{
    for (std::string_view const line : i_aLines)
        if (line.substr(0, 2) == "$|" && line.size() != 80)
            return false;
    return true;
}

#endif
