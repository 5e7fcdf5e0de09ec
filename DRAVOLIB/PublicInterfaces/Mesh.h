// Mesh.h: VOZCatMesh, the one mesh type: a shell mesh of triangles and quadrilaterals.
//
// Two arrays with rows 1 .. N, row 0 unused: three doubles of coordinates per node (mm), four ints of connectivity per
// element. A triangle is a row whose fourth entry repeats the first: a, b, c, a. Entries are node labels.
//
// A position is 1-based and dense; a label is a position plus the offset that the mesh remembers (IdsOffset). Where an
// operation says "resolved", an argument up to the count is a position and one beyond it a label; below the offset of
// the labels the position wins.
//
// A broken contract is reported (see CATFatalError.h) and the access then goes to row 0, which holds zeros until such
// an access writes it; where there is no array it goes to zeros that are nobody's, and a write is lost. A coordinate or
// corner number outside its row breaks the contract of the access, below 0 too. The counts are the caller's word:
// numNode(int) and numElem(int) beyond the arrays are not noticed, but where there is no array at all nothing is read.
//
// The mesh owns its arrays: new[], N + 1 rows for N entries, null for none. Not synchronised.

#ifndef MESH_H
#define MESH_H

#include "ExportedByVOZDravo.h"
#include "Vec.h"

class VOZCatAxis;

class ExportedByVOZDravo VOZCatMesh
{
public:
    VOZCatMesh(int i_numNode = 0, int i_numElem = 0);
    // Row r of each 0-based source goes to position r + 1, as it stands.
    VOZCatMesh(int i_numNode, int i_numElem, double const (*i_nodes)[3], int const (*i_elems)[4]);
    VOZCatMesh(VOZCatMesh const & i_other); // deep, but for the name
    virtual ~VOZCatMesh();
    VOZCatMesh & operator=(VOZCatMesh const & i_other); // deep, but for the name

    // Sizes.
    void sizeNode(int n); // keeps the first min(old, n) rows; new rows are uninitialised
    void sizeElem(int n); // rows of curvature go with those of a mesh that has elements
    void addNode(double const (*i_rows)[3], int i_count); // 0-based source, appended in order
    int numNode() const { return mNumNode; }
    int numElem() const { return mNumElem; }
    void numNode(int n) { mNumNode = n; } // the count alone
    void numElem(int n) { mNumElem = n; }

    // Nodes and elements. n, e are resolved unless said otherwise; c, k are 0-based.
    double node(int n, int c) const;
    double node(int n, int c); // so that a literal 0 is no null row for the setter
    Vec node(int n);           // a view: writing to it writes the mesh
    void node(int n, Vec const & i_value);
    int elem(int e, int k) const;               // position of corner k: the entry less the node offset
    void elem(int e, int k, int i_label) const; // stores the label as it stands
    int * elem(int e) const;     // the raw row of position e; null if e is outside first .. first + count; not resolved
    int isTriangle(int e) const; // 1 or 0
    double NodeValue(int i, int c) const { return mNodes[i][c]; } // raw: no check, no offset
    int ElementValue(int e, int k) const { return mElems[e][k]; } // raw: the stored label
    double (*GetNodeData() const)[3] { return mNodes; }           // rows 0 .. numNode, row 0 unused; the mesh's own
    int (*GetElemData() const)[4] { return mElems; }              // rows 0 .. numElem
    double (*GetCrvData() const)[3] { return mCurvature; }        // null if there is none

    // Labels and name.
    void SetFirstNodeNumber(int i_first) { mFirstNode = i_first; }
    int GetFirstNodeNumber() const { return mFirstNode; }
    void SetFirstElementNumber(int i_first) { mFirstElem = i_first; }
    int GetFirstElementNumber() const { return mFirstElem; }
    void SetName(char const * i_name) { mName = i_name; } // neither copied nor freed
    char const * GetName() const { return mName; }
    // numElem + 1 rows by new[], owned by the mesh from here on; rows held before are not freed.
    void SetCurvatureValues(double (*i_rows)[3]) { mCurvature = i_rows; }
    void IdsOffset(int i_nodeOffset, int i_elemOffset); // shifts the labels, in the rows too

    // Geometry. In naturalCoord e is a position; in GetElementNodePosition it is resolved.
    // Natural coordinates of the corner with that label; untouched if the label is no corner of e.
    void naturalCoord(int i_label, int e, double & o_xi, double & o_eta) const;
    int GetElementNodePosition(int e, int n) const; // 0-based corner of node position n in e, or -1
    bool orient(Vec * i_reference) const;           // true if the mesh faces away from it (null: +z); changes nothing
    void reverse();                                 // the winding of every element
    void EvalMeshElementSize(double & o_maxEdge, double & o_minEdge) const; // mm; no element: -/+ the largest float
    void EvalMeshMinMaxZ(double & o_maxZ, double & o_minZ) const;           // over all nodes, used or not
    // Means of the unit normals around each node: 3 per node, 0-based, by new[], the caller's. Returns the count of
    // nodes; 0 leaves o_normals alone. A node without an element breaks a contract and gets NaN.
    int EvalNodesNormal(double *& o_normals) const;
    void EvalAverageNormal(double * const o_normal) const;      // 3 doubles
    void Transform(VOZCatAxis const * i_axis, int i_direction); // 2: fromGlobal, else toGlobal; null: nothing
    void Translate(double const * const i_vector);
    void Translate(Vec const & i_vector);

private:
    double * nodeRow(int n, bool i_holds) const; // the row of a position, or the one that a broken contract gets
    int * elemRow(int e, bool i_holds) const;
    int nodePosition(int n) const; // resolved
    int elemPosition(int e) const;
    bool isNode(int i_position) const { return i_position > 0 && i_position <= mNumNode; }
    bool isElem(int i_position) const { return i_position > 0 && i_position <= mNumElem; }
    void copyArrays(VOZCatMesh const & i_other);

    char const * mName;
    double (*mNodes)[3];
    int mNumNode;
    int (*mElems)[4];
    int mNumElem;
    int mFirstNode;
    int mFirstElem;
    double (*mCurvature)[3];
};

#endif
