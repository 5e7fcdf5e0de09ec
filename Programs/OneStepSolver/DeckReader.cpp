// DeckReader.cpp: reads the blocks of a one-step deck in their order.

#include "DeckReader.h"

#include "DeckText.h"

#include <algorithm>

namespace voz::deck
{

namespace
{
constexpr char const * kTitle = "DRAVO3D - version 5.0 - ";
constexpr std::size_t kLeastNodeLine = 8; // characters: no more rows than fit are prepared for

class Reader
{
public:
    Reader(std::string const & i_name, std::string_view i_text) : mLines(i_name, i_text) { mDeck.file = i_name; }

    Deck Read();

    void ControlLines();
    void Nodes();
    void Elements();
    void Materials();
    void FastConditions();
    void Displacements();
    void Pads();
    void Holders();
    void NoTable(); // "0 0 0"
    void Beads();
    void Curves();
    void FormingLimits();
    void IntegrationPoints();
    void Friction();
    void Development();
    void Matrix();
    void Empty() {}

private:
    void FirstControlLine();
    void MaterialRecordOf(MaterialRecord & o_record);
    int DisplacementHeads(long long & o_rows);
    void DisplacementRow();
    int HolderHead();
    void HolderEdges(Holder & io_holder, int i_count);
    int NodeNumber(Row const & i_row, int i_field, char const * i_what) const;
    int ElementNumber(Row const & i_row, int i_field, char const * i_what) const;
    std::size_t Prepared(int i_count) const; // rows to reserve: never more than the text can hold

    DeckLines mLines;
    Deck mDeck;
    int mNumNode = 0;
    int mNumElem = 0;
    int mNumMaterial = 0;
    int mNumTables = 0; // of displacements
};

struct Block
{
    char const * label;
    void (Reader::*content)();
};

// clang-format off
constexpr Block kBlocks[] = {
    {"block II: control line",                         &Reader::ControlLines},
    {"block III: nodal coordinates",                   &Reader::Nodes},
    {"block IV: element connectivities",               &Reader::Elements},
    {"block V: material properties",                   &Reader::Materials},
    {"block VI: fast boundary condition tables",       &Reader::FastConditions},
    {"block VII: beam tables",                         &Reader::Empty},
    {"block VIII: nodal displacement tables",          &Reader::Displacements},
    {"block IX PRESSURE PAD",                          &Reader::Pads},
    {"block X: rigid constraint equations",            &Reader::Empty},
    {"block XI: force boundary condition",             &Reader::Empty},
    {"block XII: blankholder force",                   &Reader::Holders},
    {"block XIII: friction tables",                    &Reader::Empty},
    {"block XIV: friction nodes",                      &Reader::Empty},
    {"block XV: bendline tables",                      &Reader::NoTable},
    {"block XVII: drawbead tables",                    &Reader::Beads},
    {"block XVIII: lockbead tables",                   &Reader::NoTable},
    {"block XIX: neutral surfaces",                    &Reader::Empty},
    {"block XX: tailor welded blank tables",           &Reader::NoTable},
    {"block XXI",                                      &Reader::Empty},
    {"block XXII",                                     &Reader::Empty},
    {"block XXVI: user defined stress-strain curves",  &Reader::Curves},
    {"block XXVII: user defined forming limit curves", &Reader::FormingLimits},
    {"block XXVIII: integration point information",    &Reader::IntegrationPoints},
    {"block XXIX: friction table",                     &Reader::Friction},
    {"block XXX: development table",                   &Reader::Development},
    {"block XXXI: form design 3d table",               &Reader::Empty},
    {"block XXXII: boundary condition line tables",    &Reader::NoTable},
    {"block XXXIII: transformation matrix",            &Reader::Matrix},
};
// clang-format on

std::string_view withoutTail(std::string_view line)
{
    std::size_t const last = line.find_last_not_of(" \t");
    return line.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

Deck Reader::Read()
{
    if (mLines.AtEnd() || mLines.Line().substr(0, std::string_view(kTitle).size()) != kTitle)
        mLines.Fail((mLines.AtEnd() ? "the file is empty" : "found " + Quoted(mLines.Line())) + "; expected \"" +
                    kTitle + "\" and the deck's name");
    mLines.Next();
    mLines.Separator("the title");
    for (Block const & block : kBlocks)
    {
        if (mLines.AtEnd() || withoutTail(mLines.Line()) != block.label)
            mLines.Fail((mLines.AtEnd() ? "the file ends here" : "found " + Quoted(mLines.Line())) + "; expected \"" +
                        block.label + "\"");
        mLines.Next();
        (this->*block.content)();
        mLines.Separator(block.label);
    }
    while (!mLines.AtEnd() && withoutTail(mLines.Line()).empty())
        mLines.Next();
    if (!mLines.AtEnd())
        mLines.Fail("found " + Quoted(mLines.Line()) + " behind the last block; expected the end of the file");
    return std::move(mDeck);
}

std::size_t Reader::Prepared(int i_count) const
{
    return std::min(static_cast<std::size_t>(i_count), mLines.Left() / kLeastNodeLine + 1);
}

int Reader::NodeNumber(Row const & i_row, int i_field, char const * i_what) const
{
    return i_row.Int(i_field, 1, mNumNode, i_what);
}

int Reader::ElementNumber(Row const & i_row, int i_field, char const * i_what) const
{
    return i_row.Int(i_field, 1, mNumElem, i_what);
}

// II to IV

void Reader::FirstControlLine()
{
    Row const row = mLines.Take("the first control line");
    row.Expect(30, "the first control line");
    mNumNode = row.Int(1, 1, kAnyInt, "the number of nodes");
    mNumElem = row.Int(2, 1, kAnyInt, "the number of elements");
    mNumMaterial = row.Int(3, 1, kAnyInt, "the number of material records");
    mDeck.controlFlag = row.Int(5, 0, 1, "the control flag") != 0;
    row.Int(6, 0, kAnyInt, "the number of displaced nodes"); // more than is written with half symmetry about xz
    mDeck.holderCount = row.Int(28, 0, kAnyInt, "the number of blank holders");
    for (int field : {4, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 29})
        row.Int(field, -kAnyInt, kAnyInt, "a control field");
    row.Int(30, 1, 1, "the mark that another control line follows");
}

void Reader::ControlLines()
{
    constexpr int kLast = 7;
    FirstControlLine();
    for (int line = 2; line <= kLast; ++line)
    {
        Row const row = mLines.Take("a control line");
        row.Expect(6, "a control line");
        for (int field = 1; field <= 5; ++field)
            row.Int(field, -kAnyInt, kAnyInt, "a control field");
        int const more = line < kLast ? 1 : 0;
        row.Int(6, more, more, "the mark whether another control line follows");
        if (line == 3)
        {
            row.Int(1, mNumNode, mNumNode, "the number of nodes");
            mNumTables = row.Int(4, 0, kAnyInt, "the number of displacement tables");
        }
        if (line == 6)
            mDeck.controlValue = row.Int(5, -kAnyInt, kAnyInt, "the control value");
    }
}

void Reader::Nodes()
{
    mDeck.nodes.reserve(Prepared(mNumNode));
    for (int n = 1; n <= mNumNode; ++n)
    {
        Row const row = mLines.Take("a node");
        row.Expect(4, "a node");
        row.Int(1, n, n, "the node's number");
        mDeck.nodes.push_back({row.Real(2, "x"), row.Real(3, "y"), row.Real(4, "z")});
    }
}

void Reader::Elements()
{
    constexpr int kQuadrilateral = 1;
    constexpr int kTriangle = 2;
    mDeck.elements.reserve(Prepared(mNumElem));
    for (int e = 1; e <= mNumElem; ++e)
    {
        Row const row = mLines.Take("an element");
        row.Int(1, e, e, "the element's number");
        Element element;
        element.line = row.Line();
        element.property = row.Int(2, -kAnyInt, kAnyInt, "the element's property");
        row.Int(3, 1, 1, "the third field of an element");
        row.Int(4, 0, 0, "the fourth field of an element");
        element.corners = row.Int(5, kQuadrilateral, kTriangle, "the element's type") == kTriangle ? 3 : 4;
        row.Expect(5 + element.corners, element.corners == 3 ? "a triangle" : "a quadrilateral");
        for (int corner = 0; corner < element.corners; ++corner)
            element.nodes[static_cast<std::size_t>(corner)] = NodeNumber(row, 6 + corner, "a corner");
        mDeck.elements.push_back(element);
    }
}

// V, XXVI, XXVII

void Reader::MaterialRecordOf(MaterialRecord & o_record)
{
    Row const first = mLines.Take("the first line of a material record");
    first.Expect(8, "the first line of a material record");
    o_record.line = first.Line();
    o_record.number = first.Int(1, 0, kAnyInt, "the record's number");
    o_record.yield = first.Real(5, "the yield stress");
    o_record.nValue = first.Real(6, "the hardening exponent");
    o_record.rValue = first.Real(7, "the anisotropy");
    o_record.kValue = first.Real(8, "the strength coefficient");
    for (int field = 2; field <= 4; ++field)
        first.Real(field, "a field of a material record");
    Row const second = mLines.Take("the second line of a material record");
    second.Expect(8, "the second line of a material record");
    o_record.thickness = second.Real(6, "the thickness");
    mLines.Take("the third line of a material record").Expect(8, "the third line of a material record");
}

void Reader::Materials()
{
    mDeck.materials.reserve(Prepared(mNumMaterial));
    for (int record = 1; record <= mNumMaterial; ++record)
        MaterialRecordOf(mDeck.materials.emplace_back());
}

// A row per record but the last, then the points of those that have some.
void Reader::Curves()
{
    std::vector<int> counts;
    for (int record = 1; record < mNumMaterial; ++record)
    {
        Row const row = mLines.Take("the head of a stress-strain curve");
        auto const at = static_cast<std::size_t>(record) - 1;
        row.Int(1, mDeck.materials[at].number, mDeck.materials[at].number, "the curve's record");
        counts.push_back(row.Int(2, 0, kAnyInt, "the number of points"));
        for (int field = 3; field <= 7; ++field)
            row.Real(field, "a field of a curve's head");
    }
    for (std::size_t record = 0; record < counts.size(); ++record)
        for (int point = 1; point <= counts[record]; ++point)
        {
            Row const row = mLines.Take("a point of a stress-strain curve");
            row.Expect(2, "a point of a stress-strain curve");
            mDeck.materials[record].curve.push_back({row.Real(1, "the strain"), row.Real(2, "the stress")});
        }
}

void Reader::FormingLimits()
{
    for (int record = 1; record < mNumMaterial; ++record)
    {
        Row const row = mLines.Take("a forming limit");
        row.Expect(7, "a forming limit");
        row.Int(1, 0, kAnyInt, "the record's number");
        row.Int(2, 0, 0, "the number of points of a forming limit curve"); // none is of use in a one-step solve
    }
}

// VI, XV, XVIII, XX, XXVIII to XXX, XXXII, XXXIII

void Reader::FastConditions()
{
    mLines.Take("the first line of the fast conditions").Expect(8, "the first line of the fast conditions");
    mLines.Take("the second line of the fast conditions").Expect(3, "the second line of the fast conditions");
}

void Reader::NoTable()
{
    Row const row = mLines.Take("\"0 0 0\"");
    row.Expect(3, "a table's count");
    for (int field = 1; field <= 3; ++field)
        row.Int(field, 0, 0, "a count of a table that this solver does not know");
}

void Reader::IntegrationPoints()
{
    Row const row = mLines.Take("the integration points");
    row.Expect(5, "the line of the integration points");
    for (int field = 1; field <= 5; ++field)
        row.Int(field, 0, 0, "a field of the integration points"); // the solver chooses its own
}

void Reader::Friction()
{
    Row const row = mLines.Take("the friction");
    row.Expect(3, "the line of the friction");
    mDeck.friction = row.Real(1, "the friction coefficient");
    if (mDeck.friction < 0.0 || mDeck.friction > 1.0)
        row.Fail("the friction coefficient is " + std::string(row.Field(1)) + "; expected 0 to 1");
}

void Reader::Development()
{
    mLines.Take("the first line of the development table").Expect(2, "the first line of the development table");
    for (int line = 0; line < 2; ++line)
        mLines.Take("a line of the development table").Expect(10, "a line of the development table");
}

// Nodes stand in the stamping frame already: another matrix would turn them twice.
void Reader::Matrix()
{
    for (int i = 1; i <= 4; ++i)
    {
        Row const row = mLines.Take("a row of the matrix");
        row.Expect(4, "a row of the matrix");
        for (int k = 1; k <= 4; ++k)
            row.Int(k, i == k ? 1 : 0, i == k ? 1 : 0, "an entry of the identity matrix");
    }
}

// VIII

// A run of heads: how many there are, and how many rows they ask for together.
int Reader::DisplacementHeads(long long & o_rows)
{
    constexpr int kHeadFields = 6;
    int heads = 0;
    o_rows = 0;
    for (; mLines.InBlock() && mLines.Peek().Count() == kHeadFields; ++heads)
    {
        Row const row = mLines.Take("a displacement table");
        o_rows += row.Int(2, 0, kAnyInt, "the number of nodes of a displacement table");
        for (int field : {1, 3, 4, 5, 6})
            row.Int(field, -kAnyInt, kAnyInt, "a field of a displacement table");
    }
    return heads;
}

void Reader::DisplacementRow()
{
    Row const row = mLines.Take("a displaced node");
    row.Expect(9, "a displaced node");
    DisplacedNode entry;
    entry.line = row.Line();
    entry.node = NodeNumber(row, 1, "the displaced node");
    std::string_view const code = row.Field(2);
    if (code.size() != entry.flags.size() || code.find_first_not_of("01") != std::string_view::npos)
        row.Fail("the directions (field 2) are " + Quoted(code) + "; expected six digits 0 or 1");
    for (std::size_t i = 0; i < entry.flags.size(); ++i)
    {
        entry.flags[i] = code[i] == '1';
        entry.values[i] = row.Real(static_cast<int>(i) + 3, "a displacement");
    }
    mDeck.displaced.push_back(entry);
}

// The symmetry tables come first, heads and rows, then those of the prescribed displacements.
void Reader::Displacements()
{
    int heads = 0;
    int const first = mLines.Number();
    while (mLines.InBlock())
    {
        long long rows = 0;
        int const run = DisplacementHeads(rows);
        if (run == 0)
            mLines.Fail("found " + Quoted(mLines.Line()) + "; expected the head of a displacement table");
        heads += run;
        for (; rows > 0; --rows)
            DisplacementRow();
    }
    if (heads != mNumTables)
        throw DeckError(mDeck.file, first,
                        "the block holds " + std::to_string(heads) + " displacement tables; expected " +
                            std::to_string(mNumTables) + ", as the third control line says");
}

// IX

void Reader::Pads()
{
    Row const count = mLines.Take("the number of pads");
    count.Expect(2, "the line of the number of pads");
    count.Int(1, -1, -1, "the mark of the pads");
    int const pads = count.Int(2, 0, kAnyInt, "the number of pads");
    for (int i = 1; i <= pads; ++i)
    {
        Row const head = mLines.Take("a pad");
        head.Expect(5, "a pad");
        head.Int(1, i, i, "the pad's number");
        int const size = head.Int(2, 0, kAnyInt, "the number of the pad's nodes");
        Pad & pad = mDeck.pads.emplace_back();
        pad.line = head.Line();
        pad.pressure = head.Real(3, "the pad's pressure");
        for (int k = 0; k < size; ++k)
        {
            Row const row = mLines.Take("a node of a pad");
            row.Expect(12, "a node of a pad");
            pad.nodes.push_back(NodeNumber(row, 1, "the pad's node"));
            row.Real(3, "the pressure");
        }
    }
}

// XII

int Reader::HolderHead()
{
    Row const row = mLines.Take("a blank holder");
    row.Expect(11, "a blank holder");
    Holder & holder = mDeck.holders.emplace_back();
    holder.line = row.Line();
    row.Int(1, static_cast<int>(mDeck.holders.size()), static_cast<int>(mDeck.holders.size()), "the holder's number");
    int const edges = row.Int(2, 0, kAnyInt, "the number of the holder's edges");
    holder.force = row.Real(3, "the holder's force");
    row.Real(5, "the friction coefficient");
    holder.length = row.Real(6, "the holder's length");
    return edges;
}

void Reader::HolderEdges(Holder & io_holder, int i_count)
{
    for (int k = 0; k < i_count; ++k)
    {
        Row const row = mLines.Take("an edge of a blank holder");
        row.Expect(4, "an edge of a blank holder");
        HolderEdge & edge = io_holder.edges.emplace_back();
        edge.line = row.Line();
        edge.element = ElementNumber(row, 1, "the edge's element");
        edge.node1 = NodeNumber(row, 2, "the edge's first node");
        row.Int(3, -1, -1, "the mark of an edge");
        edge.node2 = NodeNumber(row, 4, "the edge's second node");
        Row const force = mLines.Take("the restraint of an edge");
        force.Expect(6, "the restraint of an edge");
        edge.restraint = force.Real(2, "the restraint");
        force.Real(4, "the restraint");
        force.Real(6, "the restraint");
    }
}

// Heads run until a row of four fields whose third is -1.
void Reader::Holders()
{
    std::vector<int> counts;
    while (mLines.InBlock())
    {
        Row const row = mLines.Peek();
        if (row.Count() == 4 && row.Field(3) == "-1")
            break;
        counts.push_back(HolderHead());
    }
    for (std::size_t i = 0; i < counts.size(); ++i)
        HolderEdges(mDeck.holders[i], counts[i]);
}

// XVII

void Reader::Beads()
{
    Row const row = mLines.Take("the number of draw beads");
    row.Expect(3, "the line of the number of draw beads");
    int const beads = row.Int(1, 0, kAnyInt, "the number of draw beads");
    int const total = row.Int(2, 0, kAnyInt, "the number of bead segments");
    row.Int(3, total, total, "the number of bead segments, once more,");
    std::vector<int> counts;
    for (int i = 1; i <= beads; ++i)
    {
        Row const head = mLines.Take("a draw bead");
        head.Expect(6, "a draw bead");
        head.Int(1, i, i, "the bead's number");
        counts.push_back(head.Int(3, 0, kAnyInt, "the number of the bead's segments"));
        Bead & bead = mDeck.beads.emplace_back();
        bead.line = head.Line();
        bead.force = head.Real(4, "the bead's force");
        head.Real(5, "the bead's uplift");
    }
    int left = total;
    for (std::size_t i = 0; i < counts.size(); ++i)
        for (int k = 0; k < counts[i]; ++k, --left)
        {
            Row const line = mLines.Take("a bead segment");
            line.Expect(8, "a bead segment");
            BeadSegment & segment = mDeck.beads[i].segments.emplace_back();
            segment.line = line.Line();
            segment.element = ElementNumber(line, 1, "the segment's element");
            for (std::size_t value = 0; value < segment.natural.size(); ++value)
                segment.natural[value] = line.Real(static_cast<int>(value) + 3, "a natural coordinate");
            line.Real(7, "the force"); // of the last bead, whatever the segment's own: the head counts
            line.Real(8, "the uplift");
        }
    if (left != 0)
        row.Fail("the number of bead segments is " + std::to_string(total) + "; the beads have " +
                 std::to_string(total - left));
}
} // namespace

Deck ParseDeck(std::string const & i_name, std::string_view i_text)
{
    return Reader(i_name, i_text).Read();
}

Deck ReadDeck(std::string const & i_path)
{
    std::string const text = ReadWholeFile(i_path);
    return ParseDeck(i_path, text);
}

} // namespace voz::deck
