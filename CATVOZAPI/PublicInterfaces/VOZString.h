// VOZString.h: the kernel's text: UTF-16, closed by a zero.

#ifndef VOZSTRING_H
#define VOZSTRING_H

#include "ExportedByVOZAPINew.h"

class CATUnicodeString;

class ExportedByVOZAPINew VOZString
{
public:
    VOZString(); // empty
    VOZString(char const * i_utf8);
    VOZString(unsigned short const * i_text);
    VOZString(CATUnicodeString const & i_text);
    VOZString(VOZString const & i_other);
    VOZString & operator=(VOZString const & i_other);
    ~VOZString();

    int GetLength() const;                  // in units of 16 bits, without the closing zero
    unsigned short const * GetText() const; // never null; lives as long as the text is not changed
    bool IsEmpty() const { return GetLength() == 0; }
    CATUnicodeString ToUnicodeString() const;

    // Below 0, 0 or above 0, as this text comes before, is equal to or comes after the other, unit by unit.
    int SortCompare(VOZString const & i_other) const;

private:
    unsigned short * m_pchText; // owned; null: empty
    int m_nLength;
};

#endif
