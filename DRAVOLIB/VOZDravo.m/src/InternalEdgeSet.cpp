// InternalEdgeSet.cpp: the shared sides that run from the higher node to the lower.
//
// That condition alone lists each edge once: of two neighbours that run through it in opposite directions, one runs so.

#include "EdgeSets.h"

#include "SideMarks.h"

#include <memory>

InternalEdgeSet::InternalEdgeSet(VOZCatMesh const & i_mesh)
{
    SideMarks const sides(i_mesh, [](int a, int b, bool shared) { return shared && a > b; });
    mNumEdge = sides.count();
    std::size_t const size = static_cast<std::size_t>(mNumEdge) + 1;
    std::unique_ptr<int[]> startNode(new int[size]);
    std::unique_ptr<int[]> endNode(new int[size]);
    std::size_t k = 0;
    sides.forEach(
        [&](int, int, int a, int b)
        {
            ++k;
            startNode[k] = a;
            endNode[k] = b;
        });
    mStartNode = startNode.release();
    mEndNode = endNode.release();
}

InternalEdgeSet::~InternalEdgeSet()
{
    delete[] mStartNode;
    delete[] mEndNode;
}
