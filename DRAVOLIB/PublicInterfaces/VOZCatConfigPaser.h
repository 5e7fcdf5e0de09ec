// VOZCatConfigPaser.h: a configuration file of key=value lines, read into memory and looked up by key.
//
// A line is at most 254 characters; empty lines and lines that begin with "#" are ignored. The key is all before the
// first "=", the value all behind it: nothing is trimmed. Keys compare exactly; the first of two equal keys wins. The
// spelling of the name is the name.

#ifndef VOZCATCONFIGPASER_H
#define VOZCATCONFIGPASER_H

#include "ExportedByVOZDravo.h"

#include <cstdio>

class ExportedByVOZDravo VOZCatConfigPaser
{
public:
    explicit VOZCatConfigPaser(char * i_path); // at most 255 characters
    VOZCatConfigPaser(VOZCatConfigPaser const &) = delete;
    VOZCatConfigPaser & operator=(VOZCatConfigPaser const &) = delete;
    virtual ~VOZCatConfigPaser();

    int ReadAndPaser(); // 0, or -1 if the file cannot be opened: the object stays empty

    // The entry's index, or -1 with the output left alone.
    int GetString(char * i_key, char * o_value); // room for 256 bytes
    int GetInteger(char * i_key, int & o_value); // truncates: 2.9 reads as 2
    int GetDouble(char * i_key, double & o_value);

protected:
    int ReadLine(std::FILE * i_file, char * o_line, int i_size); // without its line feed; 0, or 1 at the end

private:
    int Find(char const * i_key) const;

    char mPath[256];
    char ** mKeys; // one block of 256 bytes per entry
    char ** mValues;
    int mCount;
};

#endif
