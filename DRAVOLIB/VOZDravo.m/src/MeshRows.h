// MeshRows.h: the raw rows of a mesh for a walk over all nodes or elements.
//
// Counts are 0 where there is no array. Corners are given as positions. A position that is no node (a row with a bad
// entry) takes the slow road through the mesh's own accessor: resolved once more, reported, and row 0.

#ifndef MESHROWS_H
#define MESHROWS_H

#include "Mesh.h"

#include <algorithm>

namespace meshrows
{
// label - offset without overflow, whatever the label.
inline int positionOf(int label, int offset)
{
    return static_cast<int>(static_cast<unsigned>(label) - static_cast<unsigned>(offset));
}

inline int labelOf(int position, int offset)
{
    return static_cast<int>(static_cast<unsigned>(position) + static_cast<unsigned>(offset));
}

inline bool isTriangle(int const * row)
{
    return row[0] == row[3];
}

inline int cornerCount(int const * row)
{
    return isTriangle(row) ? 3 : 4;
}

struct Rows
{
    double const (*nodes)[3];
    int const (*elems)[4];
    int numNode;
    int numElem;
    int firstNode;
    VOZCatMesh const & mesh;

    explicit Rows(VOZCatMesh const & i_mesh)
        : nodes(i_mesh.GetNodeData()), elems(i_mesh.GetElemData()), numNode(nodes ? std::max(i_mesh.numNode(), 0) : 0),
          numElem(elems ? std::max(i_mesh.numElem(), 0) : 0), firstNode(i_mesh.GetFirstNodeNumber()), mesh(i_mesh)
    {
    }

    int corner(int e, int k) const { return positionOf(elems[e][k], firstNode); }
    bool isNode(int position) const { return position > 0 && position <= numNode; }
    double const * node(int position) const { return isNode(position) ? nodes[position] : lostNode(position); }

private:
    double const * lostNode(int position) const
    {
        static constexpr double kNowhere[3] = {0.0, 0.0, 0.0};
        int const resolved = position > numNode ? positionOf(position, firstNode) : position;
        if (isNode(resolved))
            return nodes[resolved];
        mesh.node(position, 0); // reports
        return nodes ? nodes[0] : kNowhere;
    }
};
} // namespace meshrows

#endif
