// FreeEdgeLoops.h: the free edges chained into closed loops, with the outer one chosen.
//
// Loops and positions in them run from 1; loop 1 holds free edge 1. The outer loop is settled by a vote of the extreme
// crossings in the view along the stamping direction, with the longest loop as fallback; it can be 0.
// Refused boundaries (a node with one or more than two free edges; no free edge at all) set *error to 1; after a
// refusal in the walk the object may only be destroyed.

#ifndef FREEEDGELOOPS_H
#define FREEEDGELOOPS_H

#include "ExportedByVOZDravo.h"

class FreeEdgeSet;
class VOZCatMesh;

class ExportedByVOZDravo FreeEdgeLoops
{
public:
    FreeEdgeLoops(FreeEdgeSet const & i_edges, VOZCatMesh const & i_mesh,
                  int * io_error); // io_error: null, or set to 0 by the caller
    virtual ~FreeEdgeLoops();

    int numLoops() const { return mNumLoops; }
    int numLoopEdges(int l) const { return mLoopSize[l]; }
    int loopEdge(int l, int i) const { return mLoopEdge[mLoopStart[l] + i]; } // free-edge number; i from 1
    double loopLength(int l) const { return mLoopLength[l]; }
    int outerLoopNum() const { return mOuterLoop; }
    int numOuter() const { return mLoopSize[mOuterLoop]; }
    int edge(int i) const { return loopEdge(mOuterLoop, i); }
    double length() const { return mLoopLength[mOuterLoop]; }

private:
    bool chain(FreeEdgeSet const & i_edges, VOZCatMesh const & i_mesh, int * o_loopOf); // false: refused
    void measure(FreeEdgeSet const & i_edges, VOZCatMesh const & i_mesh, int const * i_loopOf);
    void chooseOuterLoop(FreeEdgeSet const & i_edges, VOZCatMesh const & i_mesh);
    void release();

    int mNumLoops;
    int * mLoopSize;      // loops 1 .. mNumLoops; entry 0 is 0
    int * mLoopStart;     // position before the first edge of each loop
    int * mLoopEdge;      // all edges from position 1, loop after loop, in walking order
    double * mLoopLength; // mm
    int mOuterLoop;
};

#endif
