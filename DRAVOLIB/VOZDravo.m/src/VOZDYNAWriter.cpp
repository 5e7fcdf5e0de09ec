// VOZDYNAWriter.cpp: a mesh as keyword cards: heads, nodes, elements, nodal thickness.
//
// Literal lines stand here byte for byte, their trailing blanks included. A row of nodes or elements costs what its
// numbers cost: it is put together in a block of memory.

#include "VOZDYNAWriter.h"

#include "DeckWriter.h"
#include "FractionText.h"
#include "MeshRows.h"
#include "Result.h"
#include "VOZFile.h"

#include <string_view>

namespace
{
constexpr int kDigits = 9; // of coordinates and thicknesses
constexpr std::size_t kIdWidth = 8;

// clang-format off
constexpr char const * kTitle[] = {
    "$..",
    "$..",
    "$..",
    "$..",
    "$..",
    "$..          LS-DYNA DATA DECK IS GENERATED WITH VOZ TRANSLATOR MODULE",
    "$..",
    "$..",
    "$..",
    "$..",
    "$..",
};
constexpr char const * kNodeTitle[] = {
    "$---+----1----+----2----+----3----+----4----+----5----+----6----+----7----+----8",
    "$                         NODAL POINT CARDS",
    "$---+----1----+----2----+----3----+----4----+----5----+----6----+----7----+----8",
};
constexpr char const * kNodes[] = {
    "*NODE",
    "$   NODE               X               Y               Z      TC      RC",
};
constexpr char const * kShellTitle[] = { // this ruler ends in a blank
    "$---+----1----+----2----+----3----+----4----+----5----+----6----+----7----+----8 ",
    "$                       SHELL ELEMENT CARDS ",
    "$---+----1----+----2----+----3----+----4----+----5----+----6----+----7----+----8 ",
};
constexpr char const * kShells[] = {
    "*ELEMENT_SHELL ",
    "$    EID     PID      N1      N2      N3      N4 ",
};
constexpr char const * kThickShells[] = {
    "*ELEMENT_SHELL_THICKNESS ",
    "$    EID     PID      N1      N2      N3      N4 ",
    "$          THIC1           THIC2           THIC3           THIC4             PSI",
};
constexpr char const * kEnd[] = {
    "*END",
};
// clang-format on

template <std::size_t N>
void WriteLines(std::FILE * stream, char const * const (&lines)[N])
{
    if (stream == nullptr)
        return;
    DeckWriter out(stream);
    for (char const * const line : lines)
        out.Row(std::string_view(line));
}

void WriteFraction(DeckWriter & out, double value)
{
    out.Take(SpellFraction(value, kDigits, out.Reserve(FractionBytes(kDigits))));
}

// Number, part, corners by their labels as they are stored; a triangle has its third twice.
void WriteShell(DeckWriter & out, int number, int part, int const * row)
{
    out.IntegerField(number, kIdWidth);
    out.IntegerField(part, kIdWidth);
    for (int k = 0; k < 3; ++k)
        out.IntegerField(row[k], kIdWidth);
    out.IntegerField(meshrows::isTriangle(row) ? row[2] : row[3], kIdWidth);
    out.Text("\n");
}
} // namespace

DYNAWriter::DYNAWriter(VOZCatMesh * i_pMesh, Result ** const i_apResults, int const & /*i_nThicknessPoints*/,
                       char * i_strPath, VOZCatAxis * i_pAxis, int i_nPartId)
    : m_pMesh(i_pMesh), m_apResults{}, m_nThicknessPoints(3),
      m_pStream(i_strPath != nullptr ? VOZOpenFile(i_strPath, "w") : nullptr), m_pAxis(i_pAxis), m_nPartId(i_nPartId)
{
    for (int i = 0; i < 3; ++i)
        m_apResults[i] = i_apResults != nullptr ? i_apResults[i] : nullptr;
}

DYNAWriter::~DYNAWriter()
{
    if (m_pStream != nullptr)
        std::fclose(m_pStream);
}

void DYNAWriter::Write()
{
    if (m_pStream == nullptr)
        return;
    WriteTitleBlock();
    WriteNodalPointCardsTitleBlock();
    Write_NODE_Block();
    WriteShellElementCardsTitleBlock();
    if (HasResults())
    {
        Write_ELEMENT_SHELL_THICKNESS_Block();
        Write_INITIAL_STRAIN_SHELL_Block();
        Write_INITIAL_STRESS_SHELL_Block();
    }
    else
        Write_ELEMENT_SHELL_Block();
    WriteEndBlock();
}

void DYNAWriter::DoubleConvert(double const & i_dValue, int i_nDigits, char * o_text)
{
    if (o_text != nullptr)
        *SpellFraction(i_dValue, i_nDigits < 1 ? 1 : i_nDigits, o_text) = '\0';
}

void DYNAWriter::WriteLine(char * i_strLine)
{
    if (m_pStream == nullptr || i_strLine == nullptr)
        return;
    DeckWriter out(m_pStream);
    out.Row(std::string_view(i_strLine));
}

void DYNAWriter::WriteTitleBlock()
{
    WriteLines(m_pStream, kTitle);
}

void DYNAWriter::WriteNodalPointCardsTitleBlock()
{
    WriteLines(m_pStream, kNodeTitle);
}

void DYNAWriter::WriteShellElementCardsTitleBlock()
{
    WriteLines(m_pStream, kShellTitle);
}

void DYNAWriter::WriteEndBlock()
{
    WriteLines(m_pStream, kEnd);
}

void DYNAWriter::Write_NODE_Block()
{
    WriteLines(m_pStream, kNodes);
    if (m_pStream == nullptr || m_pMesh == nullptr)
        return;
    meshrows::Rows const rows(*m_pMesh);
    DeckWriter out(m_pStream);
    for (int n = 1; n <= rows.numNode; ++n)
    {
        out.IntegerField(meshrows::labelOf(n, rows.firstNode), kIdWidth);
        for (int c = 0; c < 3; ++c)
        {
            out.Text(" ");
            WriteFraction(out, rows.nodes[n][c]);
        }
        out.Text("\n");
    }
}

void DYNAWriter::Write_ELEMENT_SHELL_Block()
{
    WriteLines(m_pStream, kShells);
    if (m_pStream == nullptr || m_pMesh == nullptr)
        return;
    meshrows::Rows const rows(*m_pMesh);
    DeckWriter out(m_pStream);
    for (int e = 1; e <= rows.numElem; ++e)
        WriteShell(out, meshrows::labelOf(e, m_pMesh->GetFirstElementNumber()), m_nPartId, rows.elems[e]);
}

// The element's number is its position here, and a triangle's fourth thickness that of its fourth entry, the first.
void DYNAWriter::Write_ELEMENT_SHELL_THICKNESS_Block()
{
    WriteLines(m_pStream, kThickShells);
    if (m_pStream == nullptr || m_pMesh == nullptr)
        return;
    meshrows::Rows const rows(*m_pMesh);
    DeckWriter out(m_pStream);
    for (int e = 1; e <= rows.numElem; ++e)
    {
        WriteShell(out, e, m_nPartId, rows.elems[e]);
        if (m_apResults[0] == nullptr)
            continue;
        for (int k = 0; k < 4; ++k)
        {
            out.Text(" ");
            WriteFraction(out, m_apResults[0]->NodeThickness(rows.corner(e, k)));
        }
        out.Text("\n");
    }
}
