// MeshExtensionRecord.cpp: the debug record of an extended mesh. The forms of its lines are literal.

#include "MeshExtension.h"
#include "MeshRows.h"

#include <charconv>
#include <string>

namespace meshextension
{
namespace
{
constexpr int kNodeContinuation = 1000000;
constexpr int kElementContinuation = 100000;
constexpr int kProperty = 3;
constexpr char kBlank[] = " ";
constexpr char kOne[] = "1.000000";

void writeComments(std::FILE * i_file, int i_count)
{
    for (int i = 0; i < i_count; ++i)
        std::fprintf(i_file, "$..%-40s\n", kBlank);
}

void writeTitle(std::FILE * i_file, char const * i_title)
{
    std::fprintf(i_file, "$..%10s%-70s\n", kBlank, i_title);
}

// As "%10.7e" writes it in any locale: the text is never shorter than 10.
std::string realText(double i_value)
{
    char text[32];
    double const rounded = static_cast<double>(static_cast<float>(i_value));
    std::to_chars_result const end =
        std::to_chars(text, text + sizeof(text), rounded, std::chars_format::scientific, 7);
    std::string const digits(text, end.ptr);
    return digits.size() < 10 ? std::string(10 - digits.size(), ' ') + digits : digits; // inf, nan
}

void writeNode(std::FILE * i_file, int n, double const * i_row)
{
    unsigned long const continuation = static_cast<unsigned long>(n) + kNodeContinuation;
    std::fprintf(i_file, "%-8s%16i%16s%16s%16s %7lu\n", "GRID*", n, "     ", realText(i_row[0]).c_str(),
                 realText(i_row[1]).c_str(), continuation);
    std::fprintf(i_file, "*%-7lu%16s\n", continuation, realText(i_row[2]).c_str());
}

void writeElement(std::FILE * i_file, int e, int const (&i_nodes)[3])
{
    int const continuation = meshrows::labelOf(e, kElementContinuation);
    std::fprintf(i_file, "%-8s%8i%8i%8i%8i%8i%8s%8s%8s+E%6i\n", "CTRIA3", e, kProperty, i_nodes[0], i_nodes[1],
                 i_nodes[2], kBlank, kBlank, kBlank, continuation);
    std::fprintf(i_file, "+E%6i%8s%8s%8s%8s%8s\n", continuation, kBlank, kBlank, kOne, kOne, kOne);
}
} // namespace

void WriteRecord(std::FILE * i_file, VOZCatMesh const & i_mesh)
{
    meshrows::Rows const rows(i_mesh);
    writeComments(i_file, 6);
    writeTitle(i_file, "NASTRAN DATA DECK IS GENERATED WITH VOZ TRANSLATOR MODULE");
    writeComments(i_file, 4);
    for (int n = 1; n <= rows.numNode; ++n)
        writeNode(i_file, n, rows.nodes[n]);
    writeComments(i_file, 6);
    writeTitle(i_file, "CONNECTING CARDS");
    for (int e = 1; e <= rows.numElem; ++e)
        writeElement(i_file, e, {rows.corner(e, 0), rows.corner(e, 1), rows.corner(e, 2)});
    writeComments(i_file, 5);
}
} // namespace meshextension
