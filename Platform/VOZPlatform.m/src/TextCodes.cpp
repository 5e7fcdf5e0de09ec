#include "TextCodes.h"

namespace voz::platform
{
namespace
{
constexpr char32_t kReplacement = 0xFFFD;

bool isSurrogate(char32_t code)
{
    return code >= 0xD800 && code <= 0xDFFF;
}

// The lead byte tells the length and its own payload bits; length 0 marks a byte that leads nothing.
struct Lead
{
    int length;
    char32_t payload;
    char32_t least; // a smaller code in this length is an overlong form
};

Lead readLead(unsigned char byte)
{
    if (byte < 0x80)
        return {1, byte, 0};
    if ((byte & 0xE0) == 0xC0)
        return {2, static_cast<char32_t>(byte & 0x1F), 0x80};
    if ((byte & 0xF0) == 0xE0)
        return {3, static_cast<char32_t>(byte & 0x0F), 0x800};
    if ((byte & 0xF8) == 0xF0)
        return {4, static_cast<char32_t>(byte & 0x07), 0x10000};
    return {0, kReplacement, 0};
}

void appendUtf8(std::string & io_text, char32_t code)
{
    auto const put = [&](char32_t bits) { io_text.push_back(static_cast<char>(static_cast<unsigned char>(bits))); };
    if (code < 0x80)
        put(code);
    else if (code < 0x800)
    {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    }
    else if (code < 0x10000)
    {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
    else
    {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

template <class String>
void appendUnits(String & io_text, char32_t code)
{
    using Unit = typename String::value_type;
    if (sizeof(Unit) == 2 && code >= 0x10000)
    {
        io_text.push_back(static_cast<Unit>(0xD800 + ((code - 0x10000) >> 10)));
        io_text.push_back(static_cast<Unit>(0xDC00 + ((code - 0x10000) & 0x3FF)));
    }
    else
        io_text.push_back(static_cast<Unit>(code));
}

template <class String>
String unitsFromUtf8(std::string_view utf8)
{
    String units;
    while (!utf8.empty())
    {
        Character const first = FirstCharacter(utf8);
        appendUnits(units, first.code);
        utf8.remove_prefix(static_cast<std::size_t>(first.length));
    }
    return units;
}

template <class Unit>
std::string utf8FromUnits(Unit const * units)
{
    std::string text;
    while (units != nullptr && *units != 0)
    {
        auto code = static_cast<char32_t>(*units++);
        auto const low = static_cast<char32_t>(*units); // at worst the closing zero
        bool const isPair = sizeof(Unit) == 2 && code >= 0xD800 && code < 0xDC00 && low >= 0xDC00 && low < 0xE000;
        if (isPair)
        {
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
            ++units;
        }
        else if (isSurrogate(code) || code > 0x10FFFF)
            code = kReplacement;
        appendUtf8(text, code);
    }
    return text;
}
} // namespace

Character FirstCharacter(std::string_view i_utf8)
{
    Lead const lead = readLead(static_cast<unsigned char>(i_utf8.front()));
    if (lead.length == 0 || i_utf8.size() < static_cast<std::size_t>(lead.length))
        return {kReplacement, 1};
    char32_t code = lead.payload;
    for (int i = 1; i < lead.length; ++i)
    {
        auto const byte = static_cast<unsigned char>(i_utf8[static_cast<std::size_t>(i)]);
        if ((byte & 0xC0) != 0x80)
            return {kReplacement, 1};
        code = (code << 6) | (byte & 0x3FU);
    }
    if (code < lead.least || code > 0x10FFFF || isSurrogate(code))
        return {kReplacement, 1};
    return {code, lead.length};
}

Utf16 Utf16FromUtf8(std::string_view i_utf8)
{
    return unitsFromUtf8<Utf16>(i_utf8);
}

std::string Utf8FromUtf16(unsigned short const * i_utf16)
{
    return utf8FromUnits(i_utf16);
}

std::string Utf8FromWide(wchar_t const * i_wide)
{
    return utf8FromUnits(i_wide);
}

std::wstring WideFromUtf8(std::string_view i_utf8)
{
    return unitsFromUtf8<std::wstring>(i_utf8);
}
} // namespace voz::platform
