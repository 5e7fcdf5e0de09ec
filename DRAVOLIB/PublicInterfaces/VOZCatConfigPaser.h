// VOZCatConfigPaser.h: a configuration file of key=value lines, read into memory and looked up by key.
//
// A line is at most 254 characters; what stands beyond them is passed over. A line ends with LF or CR LF. Empty lines
// and lines that begin with "#" are ignored, and so is a line without "=". The key is all before the first "=", the
// value all behind it: nothing is trimmed. Keys compare exactly; the first of two equal keys wins. The spelling of the
// name is the name.

#ifndef VOZCATCONFIGPASER_H
#define VOZCATCONFIGPASER_H

#include "ExportedByVOZDravo.h"

#include <cstdio>

class ExportedByVOZDravo VOZCatConfigPaser
{
public:
    explicit VOZCatConfigPaser(char * i_path); // a path of more than 255 characters cannot be held, nor opened
    VOZCatConfigPaser(VOZCatConfigPaser const &) = delete;
    VOZCatConfigPaser & operator=(VOZCatConfigPaser const &) = delete;
    virtual ~VOZCatConfigPaser();

    int ReadAndPaser(); // 0, or -1 if the file cannot be opened or memory runs out: the object is then empty

    // The entry's index, from 0, or -1 with the output left alone. Numbers are read as atof does, with a decimal point
    // whatever the locale is; where the locale's own is another, they are rounded through single precision.
    int GetString(char * i_key, char * o_value); // room for 256 bytes
    int GetInteger(char * i_key, int & o_value); // truncates: 2.9 reads as 2; beyond the range: its nearest end
    int GetDouble(char * i_key, double & o_value);

protected:
    // One line without its end, cut to i_size - 1 characters; 0, or 1 at the end of the file.
    int ReadLine(std::FILE * i_file, char * o_line, int i_size);

private:
    int Find(char const * i_key) const;
    bool Allocate(int n);
    void Fill(std::FILE * i_file);
    void Clear();

    char mPath[256];
    char ** mKeys; // one block of 256 bytes per entry
    char ** mValues;
    int mCount;
};

#endif
