// VOZHTML.cpp: pieces of HTML. The texts are literal, their blanks and missing quotes included.

#include "VOZHTML.h"

#include "CATFatalError.h"
#include "CATUnicodeString.h"

#include <charconv>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace
{
constexpr std::size_t kIntBytes = 16; // of the longest int as text

// clang-format off
constexpr char kFont[]  = "font-family:Verdana, Geneva, Arial, Helvetica, sans-serif;\n";
constexpr char kShade[] = "background-color: #e0e0e0;\n";
constexpr char kBold[]  = "font-weight:bold;\n";
constexpr char kSize8[]  = "font-size:8pt;\n";
constexpr char kSize10[] = "font-size:10pt;\n";

constexpr char const * kStyleHead[] = {
    "\n<style type='text/css'>",
    "\n<!-- \n",
    "td \n{\n",
    "font-family:Verdana,\nGeneva, \nArial, \nHelvetica, \nsans-serif;\n",
    kSize10,
    "} \n",
    "\n",
};

struct StyleRule
{
    char const * name;
    char const * properties[4];
};
constexpr StyleRule kStyleRules[] = {
    {"tabletitle",      {kShade, kFont, kSize10, kBold}},
    {"celltitle",       {kFont, kSize8, kBold, ""}},
    {"celltitleshaded", {kShade, kFont, kSize8, kBold}},
    {"cellvalue",       {kFont, kSize8, "", ""}},
    {"cellvalueshaded", {kShade, kFont, kSize8, ""}},
    {"rowshaded",       {kShade, "", "", ""}},
};
constexpr char kStyleTail[] = "//-->\n</style>";
// clang-format on

// Text behind text in the caller's buffer.
class Builder
{
public:
    explicit Builder(char * o_buffer) : mAt(o_buffer) { *mAt = '\0'; }

    Builder & operator<<(char const * i_text) // null: nothing
    {
        if (i_text != nullptr)
        {
            std::size_t const size = std::strlen(i_text);
            std::memcpy(mAt, i_text, size + 1);
            mAt += size;
        }
        return *this;
    }
    Builder & operator<<(int i_value) // not by IntToString, whose text a caller may be handing over here
    {
        char digits[kIntBytes];
        *std::to_chars(digits, digits + kIntBytes - 1, i_value).ptr = '\0';
        return *this << digits;
    }

    void Attribute(char const * i_name, char const * i_value) // if there is a value
    {
        if (i_value != nullptr && *i_value != '\0')
            *this << i_name << i_value;
    }
    void Attribute(char const * i_name, int i_value) // if it is positive
    {
        if (i_value > 0)
            *this << i_name << i_value;
    }

private:
    char * mAt;
};

char * Wrapped(char * io_chNewStr, char const * before, char const * text, char const * behind)
{
    if (io_chNewStr != nullptr)
        Builder(io_chNewStr) << before << text << behind;
    return io_chNewStr;
}
} // namespace

VOZHTML::VOZHTML() = default;
VOZHTML::VOZHTML(VOZHTML const &) = default;
VOZHTML & VOZHTML::operator=(VOZHTML const &) = default;
VOZHTML::~VOZHTML() = default;

char const * VOZHTML::EndHTMLDoc()
{
    return "\n</body>\n</html>\n";
}

char const * VOZHTML::StartPreformatting()
{
    return "<pre>\n";
}

char const * VOZHTML::EndPreformatting()
{
    return "</pre>\n";
}

char const * VOZHTML::StartParagraph()
{
    return "<p>";
}

char const * VOZHTML::LineFeed()
{
    return "<br>\n";
}

char const * VOZHTML::EndTable()
{
    return "</TABLE>\n";
}

char const * VOZHTML::StartTableRow()
{
    return "<TR>\n";
}

char const * VOZHTML::EndTableRow()
{
    return "</TR>\n";
}

char * VOZHTML::AsTitle(char * io_chNewStr, char const * i_chTitle)
{
    VOZ_CONTRACT(io_chNewStr && i_chTitle, "io_chNewStr && i_chTitle");
    return Wrapped(io_chNewStr, "<h1>", i_chTitle, "</h1>\n");
}

char * VOZHTML::AsSubTitle(char * io_chNewStr, char const * i_chSubTitle)
{
    VOZ_CONTRACT(io_chNewStr && i_chSubTitle, "io_chNewStr && i_chSubTitle");
    return Wrapped(io_chNewStr, "<h3>", i_chSubTitle, "</h3>\n");
}

char * VOZHTML::AsBoldScript(char * io_chNewStr, char const * i_chText)
{
    VOZ_CONTRACT(io_chNewStr && i_chText, "io_chNewStr && i_chText");
    return Wrapped(io_chNewStr, "<B>", i_chText, "</B>");
}

char * VOZHTML::AsEmphasizedScript(char * io_chNewStr, char const * i_chText)
{
    VOZ_CONTRACT(io_chNewStr && i_chText, "io_chNewStr && i_chText");
    return Wrapped(io_chNewStr, "<EM>", i_chText, "</EM>");
}

char * VOZHTML::AsSuperScript(char * io_chNewStr, char const * i_chText)
{
    VOZ_CONTRACT(io_chNewStr && i_chText, "io_chNewStr && i_chText");
    return Wrapped(io_chNewStr, "<SUP>", i_chText, "</SUP>");
}

char const * VOZHTML::IntToString(int i_nValue)
{
    static thread_local CATUnicodeString text;
    text.BuildFromNum(i_nValue);
    return text.ConvertToChar();
}

char * VOZHTML::GenerateDefaultVOZStyle(char * io_chNewStr)
{
    if (io_chNewStr == nullptr)
        return io_chNewStr;
    Builder out(io_chNewStr);
    for (char const * const text : kStyleHead)
        out << text;
    for (StyleRule const & rule : kStyleRules)
    {
        out << "td." << rule.name << "\n{\n";
        for (char const * const property : rule.properties)
            out << property;
        out << (&rule == std::end(kStyleRules) - 1 ? "}\n" : "} \n\n"); // the last has neither the blank nor the line
    }
    out << kStyleTail;
    return io_chNewStr;
}

char * VOZHTML::StartHTMLDoc(char * io_chNewStr, char const * i_chTitle, char const * i_chStyle, int i_nLeftMargin)
{
    if (!VOZ_CONTRACT(io_chNewStr, "io_chNewStr"))
        return io_chNewStr;
    Builder out(io_chNewStr);
    out << "<html>\n<head>\n";
    if (i_chTitle != nullptr && *i_chTitle != '\0')
        out << "<title>" << i_chTitle << "</title>\n";
    out << i_chStyle << "\n</head>\n<body leftmargin=" << i_nLeftMargin
        << "%%>\n"; // no format halves the percent signs
    return io_chNewStr;
}

char * VOZHTML::StartTable(char * io_chNewStr, char const * i_chAlign, int i_nBorder, int i_nCellPadding,
                           int i_nCellSpacing, char const * i_chWidth)
{
    if (!VOZ_CONTRACT(io_chNewStr, "io_chNewStr"))
        return io_chNewStr;
    Builder(io_chNewStr) << "<TABLE align=" << i_chAlign << " border=" << i_nBorder << " cellpadding=" << i_nCellPadding
                         << " cellspacing=" << i_nCellSpacing << " width=" << i_chWidth << ">\n";
    return io_chNewStr;
}

char * VOZHTML::StartTableRow(char * io_chNewStr, char const * i_chClass, int i_nHeight, char const * i_chColor)
{
    if (!VOZ_CONTRACT(io_chNewStr, "io_chNewStr"))
        return io_chNewStr;
    Builder out(io_chNewStr);
    out << "<TR";
    out.Attribute(" CLASS=", i_chClass);
    out.Attribute(" HEIGHT=", i_nHeight);
    out.Attribute(" BGCOLOR=", i_chColor);
    out << ">\n";
    return io_chNewStr;
}

char * VOZHTML::AddTableData(char * io_chNewStr, char const * i_chText, char const * i_chClass, char const * i_chAlign,
                             char const * i_chVAlign, int i_nColSpan, int i_nRowSpan, int i_nWidth, int i_nHeight,
                             char const * i_chColor)
{
    if (!VOZ_CONTRACT(io_chNewStr, "io_chNewStr"))
        return io_chNewStr;
    Builder out(io_chNewStr);
    if (i_chText == nullptr || *i_chText == '\0')
    {
        out << "<TD>&nbsp;</TD>";
        return io_chNewStr;
    }
    out << "<TD";
    out.Attribute(" CLASS=", i_chClass);
    out.Attribute(" ALIGN=", i_chAlign);
    out.Attribute(" VALIGN=", i_chVAlign);
    out << " COLSPAN=" << i_nColSpan << " ROWSPAN=" << i_nRowSpan;
    out.Attribute(" WIDTH=", i_nWidth);
    out.Attribute(" HEIGHT=", i_nHeight);
    out.Attribute(" BGCOLOR=", i_chColor);
    out << ">" << i_chText << "</TD>\n";
    return io_chNewStr;
}

char * VOZHTML::AddImage(char * io_chNewStr, char const * i_chImageFile, int i_nBorder, char const * i_chAlt,
                         char const * i_chAlign, char const * i_chVAlign, int i_nWidth, int i_nHeight)
{
    VOZ_CONTRACT(io_chNewStr && i_chImageFile, "io_chNewStr && i_chImageFile");
    if (io_chNewStr == nullptr)
        return io_chNewStr;
    Builder out(io_chNewStr);
    out << "<IMG SRC='" << i_chImageFile << "'";
    out.Attribute(" BORDER=", i_nBorder);
    if (i_chAlt != nullptr) // an empty one too
        out << " ALT='" << i_chAlt << "'";
    out << " ALIGN=" << i_chAlign << " VALIGN=" << i_chVAlign;
    out.Attribute(" WIDTH=", i_nWidth);
    out.Attribute(" HEIGHT=", i_nHeight);
    out << ">\n";
    return io_chNewStr;
}
