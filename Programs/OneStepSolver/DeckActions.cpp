// DeckActions.cpp: the blocks of a one-step deck that act on the sheet: displacements, pads, holders, beads.

#include "DeckBlocks.h"

namespace voz::deck
{

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

} // namespace voz::deck
