// Fstr.cpp: a blank-padded string of fixed length.

#include "Fstr.h"

#include <cstring>

static_assert(sizeof(Fstr) == 2 * sizeof(void *), "a string is its buffer and its length, and nothing else");

Fstr::Fstr() : mText(nullptr), mLength(0) {}

Fstr::Fstr(char const * i_text, int i_length) : Fstr()
{
    fill(i_text, i_length);
}

Fstr::Fstr(Fstr const & i_other) : Fstr()
{
    if (i_other.mText)
        fill(i_other.mText, i_other.mLength);
}

Fstr::~Fstr()
{
    delete[] mText;
}

Fstr & Fstr::operator=(Fstr const & i_other)
{
    fill(i_other.mText, i_other.mLength);
    return *this;
}

Fstr & Fstr::operator=(char const * i_text)
{
    fill(i_text, mLength);
    return *this;
}

void Fstr::fill(char const * i_text, int i_length)
{
    char const * const source = i_text ? i_text : "";
    int const length = i_length < 1 ? static_cast<int>(std::strlen(source)) : i_length;
    char * const text = new char[static_cast<std::size_t>(length) + 1];
    int copied = 0;
    for (; copied < length && source[copied] != '\0'; ++copied)
        text[copied] = source[copied];
    std::memset(text + copied, ' ', static_cast<std::size_t>(length - copied));
    text[length] = '\0';
    delete[] mText; // only now: the text may be this string's own
    mText = text;
    mLength = length;
}
