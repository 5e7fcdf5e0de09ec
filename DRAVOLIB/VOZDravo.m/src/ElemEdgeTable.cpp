// ElemEdgeTable.cpp: one pass over the sides makes the edges; the lists' room is counted before.

#include "ElemEdgeTable.h"

#include "MeshRows.h"

#include <algorithm>

ElemEdgeTable::ElemEdgeTable(VOZCatMesh const & i_mesh) : mNumEdge(0)
{
    meshrows::Rows const rows(i_mesh);
    mNumElem = rows.numElem;
    mNumNode = rows.numNode;
    startLists(i_mesh);

    // At most one edge per side, and so never more elements behind an edge than there are sides left: even what
    // overflows stays within two slots per side and the last record.
    std::size_t const sides = mElemStart.back();
    mElemEdge.resize(sides);
    mEdgeNode.resize(2 * (sides + 1));
    mEdgeElem.resize(2 * (sides + 2));
    mEdgeElemCount.resize(sides + 1);
    for (int e = 1; e <= mNumElem; ++e)
    {
        int const corners = localEdges(e);
        for (int i = 0; i < corners; ++i)
        {
            int const a = rows.corner(e, i);
            int const b = rows.corner(e, i + 1 == corners ? 0 : i + 1);
            int const k = findOrMake(std::min(a, b), std::max(a, b));
            mElemEdge[mElemStart[row(e)] + row(i)] = k;
            mEdgeElem[2 * row(k) + row(mEdgeElemCount[row(k)]++)] = e;
        }
    }
    mEdgeNode.resize(2 * (row(mNumEdge) + 1));
    mEdgeElem.resize(2 * (row(mNumEdge) + 2));
    mEdgeElemCount.resize(row(mNumEdge) + 1);
}

ElemEdgeTable::~ElemEdgeTable() = default;

// A number that is no node shares a list with some other: lists are compared by both numbers, so that is harmless.
std::size_t ElemEdgeTable::listOf(int node) const
{
    bool const isNode = node > 0 && node <= mNumNode;
    return isNode ? row(node) : static_cast<unsigned>(node) % (row(mNumNode) + 1);
}

void ElemEdgeTable::startLists(VOZCatMesh const & i_mesh)
{
    meshrows::Rows const rows(i_mesh);
    mElemStart.assign(row(mNumElem) + 2, 0);
    mNodeStart.assign(row(mNumNode) + 2, 0);
    for (int e = 1; e <= mNumElem; ++e)
    {
        int const corners = meshrows::cornerCount(rows.elems[e]);
        mElemStart[row(e) + 1] = mElemStart[row(e)] + row(corners);
        for (int i = 0; i < corners; ++i)
            mNodeStart[listOf(rows.corner(e, i)) + 1] += 2; // a corner ends two sides
    }
    for (std::size_t n = 1; n < mNodeStart.size(); ++n)
        mNodeStart[n] += mNodeStart[n - 1];
    mNodeEdge.resize(mNodeStart.back());
    mNodeEdgeCount.assign(row(mNumNode) + 1, 0);
}

int ElemEdgeTable::findOrMake(int i_low, int i_high)
{
    std::size_t const list = listOf(i_low);
    for (std::size_t i = 0; i < row(mNodeEdgeCount[list]); ++i)
    {
        int const k = mNodeEdge[mNodeStart[list] + i];
        if (low(k) == i_low && high(k) == i_high)
            return k;
    }
    int const k = ++mNumEdge;
    mEdgeNode[2 * row(k)] = i_low;
    mEdgeNode[2 * row(k) + 1] = i_high;
    append(i_low, k);
    append(i_high, k);
    return k;
}

void ElemEdgeTable::append(int node, int k)
{
    std::size_t const list = listOf(node);
    mNodeEdge[mNodeStart[list] + row(mNodeEdgeCount[list]++)] = k;
}
