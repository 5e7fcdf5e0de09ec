// NodeFreeEdgeMap.cpp: the free edges at each node, ascending.

#include "EdgeSets.h"

#include "Mesh.h"
#include "NodeRuns.h"

NodeFreeEdgeMap::NodeFreeEdgeMap(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges)
    : mNumNode(i_mesh.numNode()), mOffset(nullptr), mMap(nullptr)
{
    auto const forEachEnd = [&i_edges](auto visit)
    {
        for (int k = 1; k <= i_edges.numEdge(); ++k)
        {
            visit(i_edges.startNode(k), k);
            visit(i_edges.endNode(k), k);
        }
    };
    noderuns::build(
        mNumNode, forEachEnd, forEachEnd, [] {}, mOffset, mMap);
}

NodeFreeEdgeMap::~NodeFreeEdgeMap()
{
    delete[] mOffset;
    delete[] mMap;
}
