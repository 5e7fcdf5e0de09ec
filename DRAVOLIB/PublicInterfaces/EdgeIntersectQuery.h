// EdgeIntersectQuery.h: the search for an edge of a flat pattern that crosses a given one.
//
// The pattern lies in the xy plane of the mesh; z is never looked at. A crossing of two free edges is an overlap
// failure, one with an internal edge a fold failure. A query serves for one edge and stops testing at its first
// failure, the first in the tree's order.
//
// Edges are signed: n is edge n of the InternalEdgeSet, -n is edge n of the FreeEdgeSet. Numbers of no edge cross
// nothing.
//
// With R the tree's region, the key (x low, x high, y low, y high) of each edge and the query box from (R x low,
// x low, R y low, y low) to (x high, R x high, y high, R y high) no pair whose boxes overlap is missed.

#ifndef EDGEINTERSECTQUERY_H
#define EDGEINTERSECTQUERY_H

#include "ADTree.h"

class FreeEdgeSet;
class InternalEdgeSet;
class VOZCatMesh;

class ExportedByVOZDravo EdgeIntersectQuery : public ADTreeQuery
{
public:
    // i_lower, i_upper: the query box, four doubles each. Mesh and sets must outlive the query.
    EdgeIntersectQuery(int i_edge, double const * const i_lower, double const * const i_upper,
                       VOZCatMesh const & i_mesh, FreeEdgeSet const & i_freeEdges,
                       InternalEdgeSet const & i_internalEdges);
    ~EdgeIntersectQuery() override;

    void visit(int i_id) override;

    bool isOverlapFailure() const { return mIsOverlapFailure; }
    bool isFoldFailure() const { return mIsFoldFailure; }
    int intersectingEdge() const { return mIntersectingEdge; } // 0 for none

protected:
    int startNode(int i_id) const; // 0 if there is no such edge
    int endNode(int i_id) const;
    void generateEdgeBox(double * const o_box, int i_id) const; // x low, x high, y low, y high; empty for no edge
    bool isEdgeOverlapping(int i_id) const;                     // its box and the query box
    // The corners in four dimensions of such a box.
    void getBoundsMin(double * const o_corner, double * const i_box) const;
    void getBoundsMax(double * const o_corner, double * const i_box) const;

private:
    VOZCatMesh const * mMesh;
    FreeEdgeSet const * mFreeEdges;
    InternalEdgeSet const * mInternalEdges;
    int mEdge;
    int mIntersectingEdge;
    bool mIsOverlapFailure;
    bool mIsFoldFailure;
};

#endif
