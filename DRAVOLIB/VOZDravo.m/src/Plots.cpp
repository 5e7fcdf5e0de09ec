// Plots.cpp: a formed blank as NASTRAN bulk data and its displacements as a table. The forms of the lines are literal.
//
// Linear in nodes and elements; a line costs what its numbers cost.

#include "Plots.h"

#include "BulkData.h"
#include "CATFatalError.h"
#include "DeckWriter.h"
#include "MeshRows.h"
#include "Result.h"

#include <memory>
#include <new>

namespace
{
constexpr int kTriangleProperty = 3;
constexpr int kQuadrilateralProperty = 4;

// "%-10s%-31i%-16s%-16s", then the third coordinate on a line of its own.
void WriteNode(DeckWriter & out, int n, double const * row)
{
    out.Text("GRID*     ");
    out.LeftNumber(n, 31);
    out.LeftField(bulkdata::SingleText(row[0]), 16);
    out.LeftField(bulkdata::SingleText(row[1]), 16);
    out.Text("\n*       ");
    out.LeftField(bulkdata::SingleText(row[2]), 16);
    out.Text("\n");
}

// The mean thickness of the elements at each node, from 1; null if memory runs out. A corner that is no node counts for
// entry 0.
std::unique_ptr<double[]> NodeThickness(meshrows::Rows const & rows, Result const & result)
{
    std::size_t const size = static_cast<std::size_t>(rows.numNode) + 1;
    std::unique_ptr<int[]> const ar_nPos(new (std::nothrow) int[size]());
    if (!ar_nPos)
        return nullptr;
    std::unique_ptr<double[]> mean(new (std::nothrow) double[size]());
    if (!mean)
        return nullptr;
    for (int e = 1; e <= rows.numElem; ++e)
    {
        double const thickness = static_cast<double>(result.thickness(e));
        for (int k = 0; k < meshrows::cornerCount(rows.elems[e]); ++k)
        {
            int const p = rows.corner(e, k);
            int const place = rows.isNode(p) ? p : 0;
            ++ar_nPos[place];
            mean[place] += thickness;
        }
    }
    for (int i = 1; i <= rows.numNode; ++i)
        if (VOZ_ASSERTION(ar_nPos[i] > 0, "ar_nPos[i] > 0"))
            mean[i] /= ar_nPos[i];
    mean[0] = 0.0;
    return mean;
}

void WriteQuadrilateral(DeckWriter & out, int e, int const * nodes)
{
    out.Text("CQUAD4  ");
    for (int const field : {e, kQuadrilateralProperty, nodes[0], nodes[1], nodes[2], nodes[3]})
        out.IntegerField(field, 8);
    out.Text("0.0000000.000000"); // angle of the material, offset
    bulkdata::WriteMark(out, e);
    out.Text("\n");
}

void WriteElements(DeckWriter & out, meshrows::Rows const & rows, Result const & result)
{
    std::unique_ptr<double[]> const thickness = NodeThickness(rows, result);
    if (!thickness)
        return;
    for (int e = 1; e <= rows.numElem; ++e)
    {
        int const count = meshrows::cornerCount(rows.elems[e]);
        int nodes[4];
        for (int k = 0; k < 4; ++k)
            nodes[k] = rows.corner(e, k);
        if (count == 3)
            bulkdata::WriteTriangle(out, e, kTriangleProperty, nodes);
        else
            WriteQuadrilateral(out, e, nodes);
        bulkdata::WriteMark(out, e);
        out.LeftField("", 16);
        for (int k = 0; k < count; ++k)
            out.FixedField(thickness[rows.isNode(nodes[k]) ? nodes[k] : 0], 8, 6);
        out.Text("\n");
    }
}

double Single(double value)
{
    return static_cast<double>(static_cast<float>(value));
}
} // namespace

int WriteNastranFile(std::FILE * i_pStream, VOZCatMesh & i_mesh, Result & i_result)
{
    if (i_pStream == nullptr)
        return -1;
    meshrows::Rows const rows(i_mesh);
    DeckWriter out(i_pStream);
    bulkdata::WriteHead(out);
    for (int n = 1; n <= rows.numNode; ++n)
        WriteNode(out, n, rows.nodes[n]);
    bulkdata::WriteElementTitle(out);
    WriteElements(out, rows, i_result);
    bulkdata::WriteComments(out, 5);
    return 0;
}

int WriteDisplacements(std::FILE * i_pStream, VOZCatMesh & i_mesh, Result & i_result, char const * i_strUnit)
{
    if (i_pStream == nullptr)
        return -1;
    meshrows::Rows const rows(i_mesh);
    DeckWriter out(i_pStream);
    out.Text("Locations Axis\tGlobal\nValues axis\tGlobal\n");
    char const * const unit = i_strUnit != nullptr ? i_strUnit : "";
    char const * parting = "";
    for (char const * const column : {"x", "y", "z", "C1", "C2", "C3"})
    {
        for (char const * const piece : {parting, column, "(", unit, ")"})
            out.Text(piece);
        parting = "\t";
    }
    out.Text("\n");
    for (int n = 1; n <= rows.numNode; ++n)
    {
        for (int c = 0; c < 3; ++c)
        {
            out.FixedField(Single(rows.nodes[n][c]), 0, 6);
            out.Text("\t");
        }
        out.FixedField(static_cast<double>(i_result.disp(n, 0)), 0, 6); // reports a node that the store has not
        int const stored = n <= i_result.numNodeResult() ? n : 0;
        for (int c = 1; c < 3; ++c)
        {
            out.Text("\t");
            out.FixedField(static_cast<double>(i_result.disp(stored, c)), 0, 6);
        }
        out.Text("\n");
    }
    return 0;
}
