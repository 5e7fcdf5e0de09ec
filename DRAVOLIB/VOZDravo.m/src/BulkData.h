// BulkData.h: what the NASTRAN listings of the library share: comments, titles, continuation marks, single precision.

#ifndef BULKDATA_H
#define BULKDATA_H

#include "DeckWriter.h"
#include "MeshRows.h"

#include <charconv>
#include <cstddef>
#include <string_view>

namespace bulkdata
{
constexpr int kElementContinuation = 100000; // plus the element's position

inline void WriteComments(DeckWriter & out, int count)
{
    for (int i = 0; i < count; ++i)
    {
        out.Text("$..");
        out.LeftField(" ", 40);
        out.Text("\n");
    }
}

inline void WriteTitle(DeckWriter & out, std::string_view title)
{
    out.Text("$..          ");
    out.LeftField(title, 70);
    out.Text("\n");
}

inline void WriteHead(DeckWriter & out)
{
    WriteComments(out, 6);
    WriteTitle(out, "NASTRAN DATA DECK IS GENERATED WITH VOZ TRANSLATOR MODULE");
    WriteComments(out, 4);
}

inline void WriteElementTitle(DeckWriter & out)
{
    WriteComments(out, 6);
    WriteTitle(out, "CONNECTING CARDS");
}

// A number in single precision as "%10.7e" writes it: only what is no number is shorter than 10.
class SingleText
{
public:
    explicit SingleText(double i_value)
    {
        double const single = static_cast<double>(static_cast<float>(i_value));
        char text[24];
        char const * const end = std::to_chars(text, text + sizeof text, single, std::chars_format::scientific, 7).ptr;
        std::size_t const size = static_cast<std::size_t>(end - text);
        std::size_t const blanks = size < 10 ? 10 - size : 0;
        std::memset(mText, ' ', blanks);
        std::memcpy(mText + blanks, text, size);
        mSize = blanks + size;
    }
    operator std::string_view() const { return {mText, mSize}; }

private:
    char mText[24];
    std::size_t mSize;
};

// "+E100001"
inline void WriteMark(DeckWriter & out, int element)
{
    out.Text("+E");
    out.IntegerField(meshrows::labelOf(element, kElementContinuation), 6);
}

// The first line of a triangle, up to its mark, and the fields of the second that are blank.
inline void WriteTriangle(DeckWriter & out, int element, int property, int const * nodes)
{
    out.Text("CTRIA3  ");
    for (int const field : {element, property, nodes[0], nodes[1], nodes[2]})
        out.IntegerField(field, 8);
    out.LeftField("", 24);
    WriteMark(out, element);
    out.Text("\n");
}
} // namespace bulkdata

#endif
