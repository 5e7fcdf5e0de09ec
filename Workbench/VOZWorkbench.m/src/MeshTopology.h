// MeshTopology.h: edges, neighbours and directions of a mesh that may be broken.
//
// Positions are 1-based. An element takes part where i_isTaken says so: its corners must then be all different.

#ifndef MESHTOPOLOGY_H
#define MESHTOPOLOGY_H

#include "Mesh.h"

#include <span>
#include <utility>
#include <vector>

namespace voz::workbench
{

// A side of an element, seen from its edge.
struct EdgeSide
{
    int high; // the edge's node of the higher position
    int element;
    bool isUpward; // the element runs from the lower node to the higher
};

// The sides by the lower node of their edge, then by the higher, then by element.
class EdgeTable
{
public:
    EdgeTable(VOZCatMesh const & i_mesh, std::vector<char> const & i_isTaken);

    // visit(low, high, sides) for each edge, ascending.
    template <class Visit>
    void ForEachEdge(Visit visit) const
    {
        for (std::size_t low = 1; low + 1 < mBegin.size(); ++low)
            for (std::size_t i = mBegin[low]; i < mBegin[low + 1];)
            {
                std::size_t end = i + 1;
                while (end < mBegin[low + 1] && mSides[end].high == mSides[i].high)
                    ++end;
                visit(static_cast<int>(low), mSides[i].high, std::span(mSides.data() + i, end - i));
                i = end;
            }
    }

private:
    std::vector<std::size_t> mBegin; // per node, and one beyond
    std::vector<EdgeSide> mSides;
};

// Elements across edges, and whether they run alike there.
enum class Link : char
{
    Alike, // they run through the edge in opposite directions
    Against,
    Branched // more than two meet there: no direction is asked for
};

class Neighbours
{
public:
    Neighbours(EdgeTable const & i_edges, int i_numElem);

    struct Entry
    {
        int element;
        Link link;
    };
    std::span<Entry const> Of(int i_element) const
    {
        auto const e = static_cast<std::size_t>(i_element);
        return {mEntries.data() + mBegin[e], mBegin[e + 1] - mBegin[e]};
    }

private:
    std::vector<std::size_t> mBegin;
    std::vector<Entry> mEntries;
};

// The piece of each element: pieces are joined by edges, numbered from 1 by their lowest element; 0 for one not taken.
std::vector<int> PiecesOf(Neighbours const & i_neighbours, std::vector<char> const & i_isTaken);

struct Directions
{
    std::vector<char> isFlipped; // runs against most of its patch; a tie goes with the lowest element
    std::vector<std::pair<int, int>> contradictions; // elements that no choice of directions makes run alike
};
Directions DirectionsOf(Neighbours const & i_neighbours, std::vector<char> const & i_isTaken);

// Elements with the same corners as an earlier one that takes part: that one's position, else 0. Row 0 unused.
std::vector<int> EarlierTwins(VOZCatMesh const & i_mesh, std::vector<char> const & i_isTaken);

} // namespace voz::workbench

#endif
