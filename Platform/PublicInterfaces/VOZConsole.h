// VOZConsole.h: what a program needs to know of its own streams, and a way to turn them aside for a while.

#ifndef VOZCONSOLE_H
#define VOZCONSOLE_H

#include "ExportedByVOZPlatform.h"

#include <cstdio>

class ExportedByVOZPlatform VOZConsole
{
public:
    static bool IsTerminal(std::FILE * i_stream);
    static int Width(); // columns of the terminal of standard error; 80 where that is none
};

// While it lives, all that goes to standard output (from this process and from children that it starts) is appended
// to a file; with i_errorsToo standard error as well. Where the file cannot be opened nothing changes and IsActive() is
// false. Not to be nested.
class ExportedByVOZPlatform VOZStreamsToFile
{
public:
    VOZStreamsToFile(char const * i_path, bool i_errorsToo);
    ~VOZStreamsToFile();
    VOZStreamsToFile(VOZStreamsToFile const &) = delete;
    VOZStreamsToFile & operator=(VOZStreamsToFile const &) = delete;
    bool IsActive() const { return mOutput >= 0; }

private:
    int mOutput = -1; // the streams as they were
    int mErrors = -1;
};

#endif
