// VOZString.cpp: the kernel's text.

#include "VOZString.h"

#include "CATUnicodeString.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace
{
int LengthOf(unsigned short const * i_text)
{
    int length = 0;
    while (i_text && i_text[length] != 0)
        ++length;
    return length;
}

// With its closing zero; null for no text.
unsigned short * CopyOf(unsigned short const * i_text, int i_nLength)
{
    if (i_nLength == 0)
        return nullptr;
    unsigned short * const pchCopy = new unsigned short[static_cast<std::size_t>(i_nLength) + 1];
    std::copy(i_text, i_text + i_nLength, pchCopy);
    pchCopy[i_nLength] = 0;
    return pchCopy;
}

constexpr unsigned short kNoText[1] = {0};
} // namespace

VOZString::VOZString() : m_pchText(nullptr), m_nLength(0) {}

VOZString::VOZString(unsigned short const * i_text)
    : m_pchText(CopyOf(i_text, LengthOf(i_text))), m_nLength(LengthOf(i_text))
{
}

VOZString::VOZString(CATUnicodeString const & i_text) : VOZString(i_text.ConvertToUTF16().c_str()) {}

VOZString::VOZString(char const * i_utf8) : VOZString(CATUnicodeString(i_utf8)) {}

VOZString::VOZString(VOZString const & i_other)
    : m_pchText(CopyOf(i_other.m_pchText, i_other.m_nLength)), m_nLength(i_other.m_nLength)
{
}

VOZString & VOZString::operator=(VOZString const & i_other)
{
    VOZString copy(i_other);
    std::swap(m_pchText, copy.m_pchText); // the old text goes with the copy
    std::swap(m_nLength, copy.m_nLength);
    return *this;
}

VOZString::~VOZString()
{
    delete[] m_pchText;
}

int VOZString::GetLength() const
{
    return m_nLength;
}

unsigned short const * VOZString::GetText() const
{
    return m_pchText ? m_pchText : kNoText;
}

CATUnicodeString VOZString::ToUnicodeString() const
{
    return CATUnicodeString(GetText());
}

int VOZString::SortCompare(VOZString const & i_other) const
{
    unsigned short const * const pchOther = i_other.GetText();
    unsigned short const * const pchText = GetText();
    int i = 0;
    while (pchText[i] != 0 && pchText[i] == pchOther[i])
        ++i;
    return static_cast<int>(pchText[i]) - static_cast<int>(pchOther[i]);
}
