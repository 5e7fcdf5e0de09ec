// MeshExtensionRecord.cpp: the debug record of an extended mesh. The forms of its lines are literal.

#include "BulkData.h"
#include "DeckWriter.h"
#include "MeshExtension.h"
#include "MeshRows.h"

namespace meshextension
{
namespace
{
constexpr int kNodeContinuation = 1000000;
constexpr int kProperty = 3;

void WriteNode(DeckWriter & out, int n, double const * row)
{
    int const continuation = meshrows::labelOf(n, kNodeContinuation);
    out.Text("GRID*   ");
    out.IntegerField(n, 16);
    out.LeftField("", 16);
    out.RightField(bulkdata::SingleText(row[0]), 16);
    out.RightField(bulkdata::SingleText(row[1]), 16);
    out.Text(" ");
    out.IntegerField(continuation, 7);
    out.Text("\n*");
    out.LeftNumber(continuation, 7);
    out.RightField(bulkdata::SingleText(row[2]), 16);
    out.Text("\n");
}

// The thickness of a record is 1 everywhere.
void WriteElement(DeckWriter & out, int e, int const (&nodes)[3])
{
    bulkdata::WriteTriangle(out, e, kProperty, nodes);
    bulkdata::WriteMark(out, e);
    out.LeftField("", 16);
    out.Text("1.0000001.0000001.000000\n");
}
} // namespace

void WriteRecord(std::FILE * i_file, VOZCatMesh const & i_mesh)
{
    meshrows::Rows const rows(i_mesh);
    DeckWriter out(i_file);
    bulkdata::WriteHead(out);
    for (int n = 1; n <= rows.numNode; ++n)
        WriteNode(out, n, rows.nodes[n]);
    bulkdata::WriteElementTitle(out);
    for (int e = 1; e <= rows.numElem; ++e)
        WriteElement(out, e, {rows.corner(e, 0), rows.corner(e, 1), rows.corner(e, 2)});
    bulkdata::WriteComments(out, 5);
}
} // namespace meshextension
