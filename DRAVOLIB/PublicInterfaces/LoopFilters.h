// LoopFilters.h: boundary loops classified for the process: large inner loops, symmetry edges, blank-holder edges.
//
// Snapshots: plain arrays, no bounds checks; copies share the arrays and both free them: nobody copies one.

#ifndef LOOPFILTERS_H
#define LOOPFILTERS_H

#include "ExportedByVOZDravo.h"

class FreeEdgeLoops;
class FreeEdgeSet;
class FullBlankHolder;
class Symmetry;
class VOZCatAxis;
class VOZCatMesh;

// Marks the inner loops that are at least i_ratio times as long as the outer one.
class ExportedByVOZDravo LoopSizeFilter
{
public:
    LoopSizeFilter(FreeEdgeLoops const & i_loops, float const & i_ratio);
    virtual ~LoopSizeFilter();
    int numFilteredInnerLoops() const { return mNumFilteredInnerLoops; }
    int numFilteredInnerEdges() const { return mNumFilteredInnerEdges; }
    int isFilteredLoop(int l) const { return mMark[l]; } // l from 1

private:
    int mNumFilteredInnerEdges;
    int mNumFilteredInnerLoops;
    int * mMark;
};

// Marks the edges of the outer loop that lie on a plane of symmetry: local y = 0 (xz), local x = 0 (yz).
class ExportedByVOZDravo LoopSymmetryFilter
{
public:
    LoopSymmetryFilter(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges, FreeEdgeLoops const & i_loops,
                       Symmetry const & i_symmetry, VOZCatAxis const & i_axis);
    virtual ~LoopSymmetryFilter();
    int numXZsymmetry() const { return mNumXZ; }
    int numYZsymmetry() const { return mNumYZ; }
    int xzNode(int i) const { return mXZNode[i]; } // i from 0
    int yzNode(int i) const { return mYZNode[i]; }
    int isSymmetryEdge(int i) const; // position in the outer loop, from 1: 0, 1 (xz) or 2 (yz); 0 beyond its end

private:
    void release();

    int mNumXZ;
    int mNumYZ;
    int * mMark; // positions 1 .. numOuter of the outer loop; entry 0 holds numOuter
    int * mXZNode;
    int * mYZNode;
};

// The free edges that the full blank holder acts on: the outer loop and the large inner ones, less symmetry edges.
class ExportedByVOZDravo ProcessEdgeSequence
{
public:
    ProcessEdgeSequence(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges, FreeEdgeLoops const & i_loops,
                        Symmetry const & i_symmetry, LoopSymmetryFilter const & i_onPlane,
                        FullBlankHolder const & i_holder, LoopSizeFilter const & i_large);
    virtual ~ProcessEdgeSequence();
    int numBlankHolder() const { return mNumBlankHolder; }
    int outerBHolderCount() const { return mOuterBHolderCount; }
    int blankHolderEdge(int i) const { return mEdge[i]; }   // free-edge number; i from 1
    double outerBHLength() const { return mOuterBHLength; } // mm

private:
    int mNumBlankHolder;
    int mOuterBHolderCount;
    int * mEdge;
    double mOuterBHLength;
};

#endif
