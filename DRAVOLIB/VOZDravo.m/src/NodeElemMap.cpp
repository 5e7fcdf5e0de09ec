// NodeElemMap.cpp: the elements at each node, ascending.

#include "EdgeSets.h"

#include "MeshRows.h"
#include "NodeRuns.h"

#include <cstdio>

namespace
{
// begin(first corner) for each element, then visit(corner, element) for its 3 or 4 corners.
template <class Begin, class Visit>
void forEachCorner(meshrows::Rows const & rows, Begin begin, Visit visit)
{
    for (int e = 1; e <= rows.numElem; ++e)
    {
        begin(rows.corner(e, 0));
        visit(rows.corner(e, 0), e);
        visit(rows.corner(e, 1), e);
        visit(rows.corner(e, 2), e);
        if (!meshrows::isTriangle(rows.elems[e]))
            visit(rows.corner(e, 3), e);
    }
}
} // namespace

NodeElemMap::NodeElemMap(VOZCatMesh const & i_mesh) : mNumNode(i_mesh.numNode()), mOffset(nullptr), mMap(nullptr)
{
    meshrows::Rows const rows(i_mesh);
    auto const warn = [this](int node)
    {
        // One beyond the last node passes in silence: the test is about the table's room, not about the mesh.
        if (node < 0 || node - 1 > mNumNode)
            std::puts("NodeElemMap::NodeElemMap -- mOffset over limit");
    };
    auto const pass = [](int) {};
    auto const overLimit = [] { std::puts("NodeElemMap::NodeElemMap -- mMap over limit"); };
    noderuns::build(
        mNumNode, [&](auto visit) { forEachCorner(rows, warn, visit); },
        [&](auto visit) { forEachCorner(rows, pass, visit); }, overLimit, mOffset, mMap);
}

NodeElemMap::~NodeElemMap()
{
    delete[] mOffset;
    delete[] mMap;
}
