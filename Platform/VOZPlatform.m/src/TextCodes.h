// TextCodes.h: between UTF-8, UTF-16 and wide text. A malformed sequence counts as one character per byte or unit and
// becomes U+FFFD.

#ifndef TEXTCODES_H
#define TEXTCODES_H

#include <string>
#include <string_view>

namespace voz::platform
{
using Utf16 = std::basic_string<unsigned short>;

struct Character
{
    char32_t code;
    int length; // bytes taken, at least 1
};

Character FirstCharacter(std::string_view i_utf8); // of a text that is not empty
Utf16 Utf16FromUtf8(std::string_view i_utf8);
std::string Utf8FromUtf16(unsigned short const * i_utf16); // null counts as empty
std::string Utf8FromWide(wchar_t const * i_wide);          // 16-bit or 32-bit units; null counts as empty
std::wstring WideFromUtf8(std::string_view i_utf8);
} // namespace voz::platform

#endif
