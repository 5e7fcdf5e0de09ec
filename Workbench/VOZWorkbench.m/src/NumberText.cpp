// NumberText.cpp: std::from_chars, and what the formats write beside its grammar.

#include "NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace voz::workbench
{
namespace
{
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string_view withoutPlus(std::string_view text)
{
    bool const hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
    return hasPlus ? text.substr(1) : text;
}

// "inf" and "nan" are words to from_chars too.
bool startsNumber(std::string_view text)
{
    if (!text.empty() && text[0] == '-')
        text.remove_prefix(1);
    if (!text.empty() && text[0] == '.')
        text.remove_prefix(1);
    return !text.empty() && isDigit(text[0]);
}

// The mantissa is read up to i_mantissa; what follows it is an exponent of another spelling.
bool parseOtherExponent(std::string_view text, std::size_t mantissa, double & value, Exponent allowed)
{
    std::string_view rest = text.substr(mantissa);
    if (rest[0] == 'd' || rest[0] == 'D')
        rest.remove_prefix(1);
    else if (allowed != Exponent::Bare || (rest[0] != '+' && rest[0] != '-'))
        return false;
    rest = withoutPlus(rest);
    std::array<char, 64> buffer;
    if (rest.empty() || mantissa + 1 + rest.size() > buffer.size())
        return false;
    char * end = std::copy_n(text.data(), mantissa, buffer.data());
    *end++ = 'e';
    end = std::copy(rest.begin(), rest.end(), end);
    double parsed = 0.0;
    auto const [stop, error] = std::from_chars(buffer.data(), end, parsed);
    if (error != std::errc() || stop != end || !std::isfinite(parsed))
        return false;
    value = parsed;
    return true;
}

// Digits of a shortest or rounded scientific form, put together in the form that takes fewer columns.
std::string assembled(std::string_view scientific, Exponent style)
{
    std::size_t const at = scientific.find('e');
    std::string const sign = scientific[0] == '-' ? "-" : "";
    std::string digits;
    for (char const c : scientific.substr(0, at))
        if (isDigit(c))
            digits += c;
    while (digits.size() > 1 && digits.back() == '0')
        digits.pop_back();
    int exponent = 0;
    std::string_view const power = withoutPlus(scientific.substr(at + 1));
    std::from_chars(power.data(), power.data() + power.size(), exponent);

    std::string_view const all(digits);
    std::string mantissa = sign + digits.substr(0, 1) + "." + digits.substr(1);
    std::string const powerText = std::to_string(std::abs(exponent));
    std::string const mark = style == Exponent::Bare ? (exponent < 0 ? "-" : "+") : (exponent < 0 ? "e-" : "e");
    std::string const withExponent = mantissa + mark + powerText;

    int const count = static_cast<int>(digits.size());
    if (exponent < -20 || exponent > 20)
        return withExponent;
    std::string plain;
    if (exponent < 0)
        plain = sign + "." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    else if (exponent + 1 >= count)
        plain = sign + digits + std::string(static_cast<std::size_t>(exponent + 1 - count), '0') + ".";
    else
        plain = sign + std::string(all.substr(0, static_cast<std::size_t>(exponent + 1))) + "." +
                std::string(all.substr(static_cast<std::size_t>(exponent + 1)));
    return plain.size() <= withExponent.size() ? plain : withExponent;
}

std::size_t utf8Length(std::string_view text, std::size_t i) // of the character at i; 0 if it is none
{
    auto const byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    unsigned const lead = byte(i);
    if (lead < 0x80)
        return 1;
    std::size_t const length = lead >= 0xC2 && lead < 0xE0   ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || i + length > text.size())
        return 0;
    for (std::size_t k = i + 1; k < i + length; ++k)
        if ((byte(k) & 0xC0U) != 0x80U)
            return 0;
    // No overlong forms, no surrogates, nothing beyond U+10FFFF.
    unsigned const second = byte(i + 1);
    bool const isBad = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                       (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return isBad ? 0 : length;
}

bool isUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();)
    {
        std::size_t const length = utf8Length(text, i);
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}
} // namespace

bool ParseInteger(std::string_view i_text, int & o_value)
{
    i_text = withoutPlus(i_text);
    int value = 0;
    auto const [stop, error] = std::from_chars(i_text.data(), i_text.data() + i_text.size(), value);
    if (error != std::errc() || stop != i_text.data() + i_text.size())
        return false;
    o_value = value;
    return true;
}

bool ParseReal(std::string_view i_text, double & o_value, Exponent i_exponent)
{
    i_text = withoutPlus(i_text);
    if (!startsNumber(i_text))
        return false;
    double value = 0.0;
    auto const [stop, error] = std::from_chars(i_text.data(), i_text.data() + i_text.size(), value);
    if (error != std::errc())
        return false;
    auto const taken = static_cast<std::size_t>(stop - i_text.data());
    if (taken < i_text.size())
        return parseOtherExponent(i_text, taken, o_value, i_exponent);
    o_value = value;
    return true;
}

std::string RealInColumns(double i_value, std::size_t i_width, Exponent i_exponent)
{
    if (i_value == 0.0)
        return "0.";
    std::array<char, 64> buffer;
    auto shortest = std::to_chars(buffer.data(), buffer.data() + buffer.size(), i_value, std::chars_format::scientific);
    std::string text = assembled({buffer.data(), static_cast<std::size_t>(shortest.ptr - buffer.data())}, i_exponent);
    for (int decimals = 16; text.size() > i_width && decimals >= 0; --decimals)
    {
        auto const rounded = std::to_chars(buffer.data(), buffer.data() + buffer.size(), i_value,
                                           std::chars_format::scientific, decimals);
        text = assembled({buffer.data(), static_cast<std::size_t>(rounded.ptr - buffer.data())}, i_exponent);
    }
    return text;
}

std::string_view Trimmed(std::string_view i_text)
{
    while (!i_text.empty() && (i_text.front() == ' ' || i_text.front() == '\t'))
        i_text.remove_prefix(1);
    while (!i_text.empty() && (i_text.back() == ' ' || i_text.back() == '\t'))
        i_text.remove_suffix(1);
    return i_text;
}

std::string Upper(std::string_view i_text)
{
    std::string text(i_text);
    for (char & c : text)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return text;
}

std::string AsUtf8(std::string_view i_text)
{
    bool const isAlready = isUtf8(i_text);
    std::string text;
    text.reserve(i_text.size());
    for (char const c : i_text)
    {
        auto const code = static_cast<unsigned char>(c);
        if (code < 0x20 || code == 0x7F)
            text += ' ';
        else if (code < 0x80 || isAlready)
            text += c;
        else
        {
            text += static_cast<char>(0xC0U | (code >> 6U));
            text += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return text;
}

std::string Quoted(std::string_view i_text)
{
    constexpr std::size_t kMost = 40;
    if (i_text.empty())
        return "nothing";
    std::string text = AsUtf8(i_text);
    if (text.size() <= kMost)
        return "\"" + text + "\"";
    std::size_t cut = kMost;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0U) == 0x80U) // never inside a character
        --cut;
    return "\"" + text.substr(0, cut) + "...\"";
}

std::string_view NextWord(std::string_view & io_rest)
{
    std::size_t const begin = io_rest.find_first_not_of(" \t");
    if (begin == std::string_view::npos)
    {
        io_rest = {};
        return {};
    }
    std::size_t const end = std::min(io_rest.find_first_of(" \t", begin), io_rest.size());
    std::string_view const word = io_rest.substr(begin, end - begin);
    io_rest.remove_prefix(end);
    return word;
}

} // namespace voz::workbench
