// VOZCatConfigPaser.cpp: two passes over the file, the first of which counts.

#include "VOZCatConfigPaser.h"

#include "DeckNumber.h"
#include "VOZFile.h"

#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace
{
constexpr int kBlockSize = 256;    // of a key, and of a value
constexpr int kLineSize = 254 + 1; // a line and its NUL: key and value fit their blocks

struct CloseFile
{
    void operator()(std::FILE * file) const { std::fclose(file); }
};

// The "=" of a line that is an entry, null for any other line.
char const * EqualsSignOfEntry(char const * line)
{
    return line[0] == '#' ? nullptr : std::strchr(line, '=');
}

int TruncatedToInt(double value)
{
    using Limits = std::numeric_limits<int>;
    if (value >= static_cast<double>(Limits::max()))
        return Limits::max();
    if (value <= static_cast<double>(Limits::min()))
        return Limits::min();
    return value == value ? static_cast<int>(value) : 0;
}
} // namespace

VOZCatConfigPaser::VOZCatConfigPaser(char * i_path) : mPath{}, mKeys(nullptr), mValues(nullptr), mCount(0)
{
    // A path that was cut would name another file; an empty one names none.
    if (i_path && std::strlen(i_path) < sizeof mPath)
        std::strcpy(mPath, i_path);
}

VOZCatConfigPaser::~VOZCatConfigPaser()
{
    Clear();
}

void VOZCatConfigPaser::Clear()
{
    for (int i = 0; i < mCount; ++i)
    {
        delete[] mKeys[i];
        delete[] mValues[i];
    }
    delete[] mKeys;
    delete[] mValues;
    mKeys = nullptr;
    mValues = nullptr;
    mCount = 0;
}

int VOZCatConfigPaser::ReadAndPaser()
{
    Clear();
    std::unique_ptr<std::FILE, CloseFile> const file(VOZOpenFile(mPath, "r"));
    if (!file)
        return -1;

    char line[kLineSize];
    int count = 0;
    while (ReadLine(file.get(), line, kLineSize) == 0)
        if (EqualsSignOfEntry(line))
            ++count;
    if (!Allocate(count))
    {
        Clear();
        return -1;
    }
    std::rewind(file.get());
    Fill(file.get());
    return 0;
}

// Makes the arrays and a block per key and value. The count covers only pairs of blocks that are there.
bool VOZCatConfigPaser::Allocate(int n)
{
    mKeys = new (std::nothrow) char *[static_cast<std::size_t>(n)]();
    mValues = new (std::nothrow) char *[static_cast<std::size_t>(n)]();
    if (!mKeys || !mValues)
        return false;
    while (mCount < n)
    {
        std::unique_ptr<char[]> key(new (std::nothrow) char[kBlockSize]());
        std::unique_ptr<char[]> value(new (std::nothrow) char[kBlockSize]());
        if (!key || !value)
            return false;
        mKeys[mCount] = key.release();
        mValues[mCount] = value.release();
        ++mCount;
    }
    return true;
}

void VOZCatConfigPaser::Fill(std::FILE * i_file)
{
    char line[kLineSize];
    for (int i = 0; i < mCount && ReadLine(i_file, line, kLineSize) == 0;)
    {
        char const * const equals = EqualsSignOfEntry(line);
        if (!equals)
            continue;
        std::memcpy(mKeys[i], line, static_cast<std::size_t>(equals - line)); // the block is zero: it ends there
        std::strcpy(mValues[i], equals + 1);
        ++i;
    }
}

int VOZCatConfigPaser::ReadLine(std::FILE * i_file, char * o_line, int i_size)
{
    int c = std::getc(i_file);
    if (c == EOF)
        return 1;
    int length = 0;
    bool stored = false; // the character ahead of c
    for (; c != EOF && c != '\n'; c = std::getc(i_file))
    {
        stored = length < i_size - 1;
        if (stored)
            o_line[length++] = static_cast<char>(c);
    }
    // Text mode takes the carriage return off only on the system that writes it.
    if (c == '\n' && stored && o_line[length - 1] == '\r')
        --length;
    o_line[length] = '\0';
    return 0;
}

int VOZCatConfigPaser::Find(char const * i_key) const
{
    for (int i = 0; i_key && i < mCount; ++i)
        if (std::strcmp(mKeys[i], i_key) == 0)
            return i;
    return -1;
}

int VOZCatConfigPaser::GetString(char * i_key, char * o_value)
{
    int const i = Find(i_key);
    if (i >= 0)
        std::strcpy(o_value, mValues[i]);
    return i;
}

int VOZCatConfigPaser::GetInteger(char * i_key, int & o_value)
{
    int const i = Find(i_key);
    if (i >= 0)
        o_value = TruncatedToInt(ParseDeckDouble(mValues[i]));
    return i;
}

int VOZCatConfigPaser::GetDouble(char * i_key, double & o_value)
{
    int const i = Find(i_key);
    if (i >= 0)
        o_value = ParseDeckDouble(mValues[i]);
    return i;
}
