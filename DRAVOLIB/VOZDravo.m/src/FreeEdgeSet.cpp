// FreeEdgeSet.cpp: the boundary edges of a mesh: its sides that are not shared.

#include "EdgeSets.h"

#include "SideMarks.h"

#include <memory>

FreeEdgeSet::FreeEdgeSet(VOZCatMesh const & i_mesh)
{
    SideMarks const sides(i_mesh, [](int, int, bool shared) { return !shared; });
    mNumEdge = sides.count();
    std::size_t const size = static_cast<std::size_t>(mNumEdge) + 1;
    std::unique_ptr<int[]> elem(new int[size]);
    std::unique_ptr<int[]> elemLocal(new int[size]);
    std::unique_ptr<int[]> startNode(new int[size]);
    std::unique_ptr<int[]> endNode(new int[size]);
    std::size_t k = 0;
    sides.forEach(
        [&](int e, int corner, int a, int b)
        {
            ++k;
            elem[k] = e;
            elemLocal[k] = corner;
            startNode[k] = a;
            endNode[k] = b;
        });
    mElem = elem.release();
    mElemLocal = elemLocal.release();
    mStartNode = startNode.release();
    mEndNode = endNode.release();
}

FreeEdgeSet::~FreeEdgeSet()
{
    delete[] mElem;
    delete[] mElemLocal;
    delete[] mStartNode;
    delete[] mEndNode;
}
