// DeckReader.cpp: reads the blocks of a one-step deck in their order.

#include "DeckBlocks.h"

#include <algorithm>

namespace voz::deck
{

namespace
{
constexpr char const * kTitle = "DRAVO3D - version 5.0 - ";
constexpr std::size_t kLeastNodeLine = 8; // characters: no more rows than fit are prepared for

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

} // namespace

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
} // namespace

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
