// VOZHTML.h: pieces of HTML for the host's report module, which puts a page together from them.
//
// A builder fills the caller's buffer, whose size is the caller's affair, and returns it. Null counts as empty for the
// optional texts. Attribute values stand without quotes, but for those of an image.

#ifndef VOZHTML_H
#define VOZHTML_H

#include "ExportedByVOZDravo.h"

class ExportedByVOZDravo VOZHTML
{
public:
    VOZHTML();
    VOZHTML(VOZHTML const & i_other);
    VOZHTML & operator=(VOZHTML const & i_other);
    virtual ~VOZHTML();

    static char const * EndHTMLDoc();
    static char const * StartPreformatting();
    static char const * EndPreformatting();
    static char const * StartParagraph();
    static char const * LineFeed();
    static char const * EndTable();
    static char const * StartTableRow();
    static char const * EndTableRow();

    static char * AsTitle(char * io_chNewStr, char const * i_chTitle);
    static char * AsSubTitle(char * io_chNewStr, char const * i_chSubTitle);
    static char * AsBoldScript(char * io_chNewStr, char const * i_chText);
    static char * AsEmphasizedScript(char * io_chNewStr, char const * i_chText);
    static char * AsSuperScript(char * io_chNewStr, char const * i_chText);

    static char const * IntToString(int i_nValue); // good until the next call on this thread

    static char * GenerateDefaultVOZStyle(char * io_chNewStr);
    static char * StartHTMLDoc(char * io_chNewStr, char const * i_chTitle, char const * i_chStyle, int i_nLeftMargin);
    static char * StartTable(char * io_chNewStr, char const * i_chAlign, int i_nBorder, int i_nCellPadding,
                             int i_nCellSpacing, char const * i_chWidth);
    static char * StartTableRow(char * io_chNewStr, char const * i_chClass, int i_nHeight, char const * i_chColor);
    static char * AddTableData(char * io_chNewStr, char const * i_chText, char const * i_chClass,
                               char const * i_chAlign, char const * i_chVAlign, int i_nColSpan, int i_nRowSpan,
                               int i_nWidth, int i_nHeight, char const * i_chColor);
    static char * AddImage(char * io_chNewStr, char const * i_chImageFile, int i_nBorder, char const * i_chAlt,
                           char const * i_chAlign, char const * i_chVAlign, int i_nWidth, int i_nHeight);
};

#endif
