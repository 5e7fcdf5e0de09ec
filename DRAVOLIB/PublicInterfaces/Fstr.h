// Fstr.h: a blank-padded string of fixed length.
//
// A text is cut or filled with blanks to the length, with a NUL behind; a length below 1 means the text's own. A null
// text counts as an empty one. Only the default string and its copies have no buffer.

#ifndef FSTR_H
#define FSTR_H

#include "ExportedByVOZDravo.h"

class ExportedByVOZDravo Fstr
{
public:
    Fstr();                                  // null buffer, length 0
    Fstr(char const * i_text, int i_length); // a length below 1 means the text's own
    Fstr(Fstr const & i_other);
    ~Fstr();
    Fstr & operator=(Fstr const & i_other); // takes the length of the source
    Fstr & operator=(char const * i_text);  // fills this length anew; length 0 takes the text's own
    operator char const *() const { return mText; }
    int length() const { return mLength; }

private:
    void fill(char const * i_text, int i_length);

    char * mText;
    int mLength;
};

#endif
