// Zones.h: the nodes of a mesh that carry one of two marked values, gathered into connected zones.
//
// The marked values are 4.5 and 0.5. A zone has a number, a type that tells whether it reaches the boundary, an area
// and a mean normal. Neighbours of a node are all other nodes of its elements, across a diagonal too.
//
// Three things are the system's own definition and are easily taken for mistakes:
//
//     the list of a zone repeats its nodes: a node enters it once for its own record and once for each neighbour's
//     record of it, the seed once more; the zone's normal is weighted accordingly
//     the area of a zone sums, over that list, the area of the element of the same number as the node
//     the normal of a node is that of the lowest-numbered element at it
//
// Numbers are positions, from 1; lengths mm. A corner that is no node of the mesh is no neighbour either. The mesh must
// outlive the object and keep its rows.

#ifndef ZONES_H
#define ZONES_H

#include "ExportedByVOZDravo.h"
#include "Vec.h"

class CATRawColldouble;
class VOZCatMesh;

class ExportedByVOZDravo Zones
{
public:
    struct INT_LIST
    {
        int value;
        INT_LIST * next;
    };

    // One record of a node's chain, which begins with the node's own and goes on with one for each neighbour.
    struct Node
    {
        int id;              // the node that the record stands for
        int type = 1;        // of an own record: 1 interior, 2 on an inner loop, 3 on the outer one
        int visited = 0;     // 1 when the search has passed the record
        double value = -1.0; // of an own record
        INT_LIST * elements = nullptr;
        Node * next = nullptr;
        Vec normal; // of an own record: not normalised
    };

    struct Zone
    {
        int id;                // from 1, in the order of creation
        int type;              // 1, 2, 3 as for a node, of the last one met on a loop; -1 where the value is 0.5
        double area = 0.0;     // mm^2
        INT_LIST * nodes;      // the newest first
        Zone * next = nullptr; // the one created before it
        Vec normal;            // not normalised
    };

    explicit Zones(VOZCatMesh & i_mesh);
    virtual ~Zones();
    Zones(Zones const &) = delete; // it owns its chains
    Zones & operator=(Zones const &) = delete;

    // Three values per node, of which the third counts. False for a null collection, and for one of another size than
    // three times the nodes; true otherwise, without a marked node too. A boundary that is refused leaves all nodes
    // interior. To be called once: a second run finds the chains turned round. A node number beyond the mesh's elements
    // is reported as the mesh's broken contract, once per cell of the list, and adds no area.
    bool Eval(CATRawColldouble * i_values);

    int NbZones() const { return mNumZones; }
    Zone * GetZones() const { return mZones; } // the newest zone first; null for none; owned here, until the next Eval
    double GetArea() const { return mArea; }   // of the whole mesh
    Vec Normal(int n) const;                   // of node n; (0, 0, 0) before Eval, and where n is no node

protected:
    bool BuildMap(); // false if the boundary is refused
    void CreateZones();
    bool BuildZone(Node * i_seed, double i_value); // false, and no zone, for a null or visited seed
    void NodeNormal(int n);                        // into the own record; (0, 0, -1) without an element
    Vec ElemNormal(int e) const;                   // (node 1 - node 0) x (node 2 - node 0), for quadrilaterals too
    double Area(int e) const;                      // of triangle 0 1 2, and of 3 1 2 in a quadrilateral

    // A new cell before the one given, which it links to.
    INT_LIST * AddToList(INT_LIST * i_next, int i_value);
    Node * AddNode(Node * i_next, int i_id);
    Zone * AddZone(Zone * i_next, INT_LIST * i_nodes);

private:
    bool IsNode(int n) const { return n > 0 && n <= mNumNode; }
    void BuildChains();
    bool MarkBoundary();
    int GatherZone(int i_seed, double i_value, INT_LIST *& io_nodes);
    void ReleaseZones();

    VOZCatMesh * mMesh;
    int mNumNode;
    Node ** mNodes; // rows 0 .. mNumNode: the heads of the chains
    int mNumZones;
    Zone * mZones;
    double mArea;
};

#endif
