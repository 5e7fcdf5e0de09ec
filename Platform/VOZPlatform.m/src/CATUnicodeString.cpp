#include "CATUnicodeString.h"

#include "TextCodes.h"

#include <string_view>

CATUnicodeString::CATUnicodeString(char const * i_utf8) : mUtf8(i_utf8 != nullptr ? i_utf8 : "") {}

CATUnicodeString::CATUnicodeString(unsigned short const * i_utf16) : mUtf8(voz::platform::Utf8FromUtf16(i_utf16)) {}

void CATUnicodeString::Append(CATUnicodeString const & i_tail)
{
    mUtf8 += i_tail.mUtf8;
}

CATUnicodeString & CATUnicodeString::operator+=(CATUnicodeString const & i_tail)
{
    Append(i_tail);
    return *this;
}

CATUnicodeString CATUnicodeString::operator+(CATUnicodeString const & i_tail) const
{
    CATUnicodeString sum(*this);
    sum.Append(i_tail);
    return sum;
}

int CATUnicodeString::Compare(CATUnicodeString const & i_other) const
{
    int const order = mUtf8.compare(i_other.mUtf8); // bytes of UTF-8 stand in the order of their code points
    if (order == 0)
        return 2;
    return order < 0 ? 1 : 3;
}

bool CATUnicodeString::operator==(CATUnicodeString const & i_other) const
{
    return mUtf8 == i_other.mUtf8;
}

bool CATUnicodeString::operator!=(CATUnicodeString const & i_other) const
{
    return mUtf8 != i_other.mUtf8;
}

int CATUnicodeString::SearchSubString(CATUnicodeString const & i_pattern, int i_start) const
{
    std::string_view rest(mUtf8);
    for (int position = 0;; ++position)
    {
        if (position >= i_start && rest.substr(0, i_pattern.mUtf8.size()) == i_pattern.mUtf8)
            return position;
        if (rest.empty())
            return -1;
        rest.remove_prefix(static_cast<std::size_t>(voz::platform::FirstCharacter(rest).length));
    }
}

int CATUnicodeString::ReplaceSubString(CATUnicodeString const & i_pattern, CATUnicodeString const & i_replacement)
{
    int count = 0;
    if (i_pattern.IsNull())
        return count;
    std::string const pattern = i_pattern.mUtf8; // the arguments may be this very text
    std::string const replacement = i_replacement.mUtf8;
    std::size_t at = 0;
    while ((at = mUtf8.find(pattern, at)) != std::string::npos)
    {
        mUtf8.replace(at, pattern.size(), replacement);
        at += replacement.size();
        ++count;
    }
    return count;
}

void CATUnicodeString::BuildFromNum(int i_number)
{
    mUtf8 = std::to_string(i_number);
}

void CATUnicodeString::ToLower()
{
    for (char & c : mUtf8)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
}

int CATUnicodeString::GetLengthInChar() const
{
    int length = 0;
    for (std::string_view rest(mUtf8); !rest.empty(); ++length)
        rest.remove_prefix(static_cast<std::size_t>(voz::platform::FirstCharacter(rest).length));
    return length;
}

bool CATUnicodeString::IsNull() const
{
    return mUtf8.empty();
}

char const * CATUnicodeString::ConvertToChar() const
{
    return mUtf8.c_str();
}

std::basic_string<unsigned short> CATUnicodeString::ConvertToUTF16() const
{
    return voz::platform::Utf16FromUtf8(mUtf8);
}
