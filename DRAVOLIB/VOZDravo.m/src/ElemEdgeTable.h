// ElemEdgeTable.h: the undirected edges of a mesh, numbered from 1 in order of first appearance.
//
// Local edge i of an element runs from its local node i to i + 1, modulo its corner count. An edge has room for two
// elements. A third one lands in the first slot of the next edge's record, a fourth in its second, and whoever enters
// that slot later replaces it: the walk that this table serves assumes a mesh that is manifold along its edges.
// All lists are flat arrays; finding an edge scans the short list of its low node.

#ifndef ELEMEDGETABLE_H
#define ELEMEDGETABLE_H

#include <cstddef>
#include <vector>

class VOZCatMesh;

class ElemEdgeTable
{
public:
    explicit ElemEdgeTable(VOZCatMesh const & i_mesh);
    virtual ~ElemEdgeTable();

    int numEdge() const { return mNumEdge; }
    int numElem() const { return mNumElem; }
    int numNode() const { return mNumNode; }
    int localEdges(int e) const { return static_cast<int>(mElemStart[row(e) + 1] - mElemStart[row(e)]); } // 3 or 4
    int elemEdge(int e, int i) const { return mElemEdge[mElemStart[row(e)] + row(i)]; }
    int * edgeElems(int k) { return mEdgeElem.data() + 2 * row(k); } // two slots; 0 in the second: a boundary edge
    int low(int k) const { return mEdgeNode[2 * row(k)]; }
    int high(int k) const { return mEdgeNode[2 * row(k) + 1]; }

private:
    static std::size_t row(int i) { return static_cast<std::size_t>(i); }
    std::size_t listOf(int node) const;
    void startLists(VOZCatMesh const & i_mesh);
    int findOrMake(int i_low, int i_high);
    void append(int node, int k);

    std::vector<int> mNodeEdge;          // the edges that touch each node, list after list
    std::vector<std::size_t> mNodeStart; // where each node's list begins: room for every side at the node
    std::vector<int> mNodeEdgeCount;     // length of that list
    std::vector<int> mElemEdge;          // edge numbers, element after element
    std::vector<std::size_t> mElemStart; // where each element's begin; one more behind the last
    std::vector<int> mEdgeElem;          // two per edge, and a record behind the last for what overflows
    std::vector<int> mEdgeElemCount;     // how many elements have been entered
    std::vector<int> mEdgeNode;          // low, high
    int mNumEdge;
    int mNumElem;
    int mNumNode;
};

#endif
