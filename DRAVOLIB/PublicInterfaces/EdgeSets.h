// EdgeSets.h: the adjacency that all edge analysis needs: elements at a node, free and internal edges, free edges at a
// node.
//
// Snapshots of a mesh (positions, 1-based): a later change of the mesh is not seen. Plain arrays, read without bounds
// checks. Copies share the arrays and both free them: nobody copies one. Construction is linear in the mesh for bounded
// valence.

#ifndef EDGESETS_H
#define EDGESETS_H

#include "ExportedByVOZDravo.h"

class VOZCatMesh;

class ExportedByVOZDravo NodeElemMap
{
public:
    explicit NodeElemMap(VOZCatMesh const & i_mesh);
    virtual ~NodeElemMap();
    int numNode() const { return mNumNode; }
    int references(int n) const { return mOffset[n] - mOffset[n - 1]; } // how many elements touch node n
    int elem(int n, int i) const { return mMap[mOffset[n - 1] + i]; }   // i from 0; ascending

private:
    int mNumNode;
    int * mOffset; // mNumNode + 1 entries: the end of each node's run
    int * mMap;
};

class ExportedByVOZDravo FreeEdgeSet
{
public:
    explicit FreeEdgeSet(VOZCatMesh const & i_mesh);
    virtual ~FreeEdgeSet();
    int numEdge() const { return mNumEdge; }
    int elem(int k) const { return mElem[k]; }           // the element that owns free edge k, k from 1
    int elemLocal(int k) const { return mElemLocal[k]; } // 0-based corner of the edge's start in it
    int startNode(int k) const { return mStartNode[k]; } // in the direction in which the element runs
    int endNode(int k) const { return mEndNode[k]; }

private:
    int mNumEdge;
    int * mElem;
    int * mElemLocal;
    int * mStartNode;
    int * mEndNode;
};

// Each internal edge once, from the higher node to the lower, on a consistently oriented mesh.
class ExportedByVOZDravo InternalEdgeSet
{
public:
    explicit InternalEdgeSet(VOZCatMesh const & i_mesh);
    virtual ~InternalEdgeSet();
    int numEdge() const { return mNumEdge; }
    int startNode(int k) const { return mStartNode[k]; } // k from 1
    int endNode(int k) const { return mEndNode[k]; }

private:
    int mNumEdge;
    int * mStartNode;
    int * mEndNode;
};

class ExportedByVOZDravo NodeFreeEdgeMap
{
public:
    NodeFreeEdgeMap(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges);
    virtual ~NodeFreeEdgeMap();
    int numNode() const { return mNumNode; }
    int references(int n) const { return mOffset[n] - mOffset[n - 1]; }
    int edge(int n, int i) const { return mMap[mOffset[n - 1] + i]; } // i from 0; ascending

private:
    int mNumNode;
    int * mOffset;
    int * mMap;
};

#endif
