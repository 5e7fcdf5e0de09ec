// CATUnicodeString.h: the host's text class, for what the library does with it.
//
// Holds UTF-8 and counts in characters (code points). A value class; indices are 0-based.

#ifndef CATUNICODESTRING_H
#define CATUNICODESTRING_H

#include "ExportedByVOZPlatform.h"

#include <string>

class ExportedByVOZPlatform CATUnicodeString
{
public:
    CATUnicodeString() = default;
    CATUnicodeString(char const * i_utf8); // null counts as empty
    explicit CATUnicodeString(unsigned short const * i_utf16);

    void Append(CATUnicodeString const & i_tail);
    CATUnicodeString & operator+=(CATUnicodeString const & i_tail);
    CATUnicodeString operator+(CATUnicodeString const & i_tail) const;

    // 1 if this text is ahead of the other in code-point order ("less"), 2 if they are equal, 3 if it is behind.
    int Compare(CATUnicodeString const & i_other) const;
    bool operator==(CATUnicodeString const & i_other) const;
    bool operator!=(CATUnicodeString const & i_other) const;

    int SearchSubString(CATUnicodeString const & i_pattern, int i_start = 0) const; // -1 if it is not there

    // Puts the replacement in place of every occurrence, left to right, and returns their number. An empty pattern has
    // no occurrence.
    int ReplaceSubString(CATUnicodeString const & i_pattern, CATUnicodeString const & i_replacement);

    void BuildFromNum(int i_number); // becomes the number's text, as "%d" writes it
    void ToLower();                  // ASCII letters only; other characters stay
    int GetLengthInChar() const;
    bool IsNull() const;                // empty
    char const * ConvertToChar() const; // UTF-8; valid until the text changes
    std::basic_string<unsigned short> ConvertToUTF16() const;

private:
    std::string mUtf8;
};

#endif
