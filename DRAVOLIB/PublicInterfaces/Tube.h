// Tube.h: a closed tube, opened along a path of nodes so that the solvers of open sheets can take it, and its results
// wrapped back.
//
//     {
//         Tube tube(mesh, property, axis, radius);   // the mesh moves into local coordinates
//         opened = tube.Eval(factor);                // cut, with two displacement tables more
//         ... solve ...
//     }                                              // the mesh moves back
//     Tube::Update(result, mesh, numNode, axis, radius);
//
// The tube lies along local x; the cut follows the plane of local y = 0 on the side of positive z. The path is found
// step by step, without looking ahead. Numbers are positions, lengths mm but for Update.
//
// The working state is static, one for all objects: a tube must be done with before the next is made, on any thread.

#ifndef TUBE_H
#define TUBE_H

#include "ExportedByVOZDravo.h"

#include <memory>

class ElemProperty;
class FreeEdgeLoops;
class FreeEdgeSet;
class Plane;
class Result;
class VOZCatAxis;
class VOZCatMesh;

class ExportedByVOZDravo Tube
{
public:
    // All three must outlive the object. A radius of 0 or less is to be found.
    Tube(VOZCatMesh & io_mesh, ElemProperty & io_property, VOZCatAxis const & i_axis, double i_radius);
    Tube(Tube const & i_other); // the same mesh, property, frame, plane and radius; each destructor moves the mesh back
    Tube & operator=(Tube const & i_other);
    virtual ~Tube(); // every node, the added ones too, back into global coordinates

    // Opens the tube: the nodes of the path move onto the plane and are doubled at the end of the mesh, in path order;
    // the elements below the plane take the doubles, and all are turned round. Tables n0 and n0 - 1 of the property's
    // n0, which the caller has left free, push the two lips apart by half the circumference each, along local y; a
    // property with less than two is a broken contract, and what has no place is left out.
    //
    // i_radiusFactor: what a radius that is to be found becomes, over the mean distance of the start loop's nodes from
    // the origin. False if the tube could not be opened: no boundary, or one that is refused; no edge of the start loop
    // across the plane; a path that finds no way on or does not reach another loop; no memory. Up to the path the mesh
    // is then as it was, but for the frame; in any case the object is to be destroyed.
    bool Eval(double i_radiusFactor);
    double Radius() const { return mRadius; } // mm; -1 while it is still to be found

    // Wraps results of the opened tube back. i_numNode: the nodes before the cut, to which mesh and result go back (not
    // more than the mesh has: a broken contract, and the mesh's own count stands). io_result: displacements in metres;
    // disp and dispOnBinder of each node are set. i_radius in metres, as is the frame's origin; below 1.2e-7, and where
    // it is no number, nothing is done.
    static void Update(Result & io_result, VOZCatMesh & io_mesh, int i_numNode, VOZCatAxis const & i_axis,
                       double i_radius);

protected:
    void BuildMap();
    bool Split(FreeEdgeSet & i_edges, FreeEdgeLoops & i_loops, double i_radiusFactor); // finds the path
    // -1 for an element with a node that is not there yet; with i_skip 0 for all others, else the side of the node
    // farthest from the plane.
    int Side(int e, bool i_skip) const;
    bool IntersectEdge(int a, int b) const; // unless both nodes are on the same side, and on it by more than 0.001
    bool IntersectElem(int e) const;        // any side of a triangle, any diagonal of a quadrilateral
    int UpdateConnectivity();               // the number of the last double; -1 for a node of the path without elements
    void Displacements(FreeEdgeSet & i_edges, FreeEdgeLoops & i_loops);

private:
    struct WorkingState;
    static WorkingState & State();

    int ChooseStartLoop(FreeEdgeSet const & i_edges, FreeEdgeLoops const & i_loops, double & o_meanDistance) const;
    bool ChooseFirstEdge(FreeEdgeSet const & i_edges, FreeEdgeLoops const & i_loops, int & o_near, int & o_far) const;
    int SecondNode(int i_near, int i_far) const;
    int NextNode(int i_previous, int i_current) const;
    bool AddPathNodes();

    VOZCatMesh * mMesh;
    ElemProperty * mProperty;
    VOZCatAxis const * mAxis;
    std::shared_ptr<Plane> mPlane; // shared with copies
    double mRadius;
};

#endif
