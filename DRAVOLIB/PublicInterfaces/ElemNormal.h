// ElemNormal.h: one normal per element, as long as twice the element's area; and the repair of the orientation.
//
// A snapshot of the mesh: rows 1 .. numNormal, row 0 unused. A copy shares the array, and both free it: nobody copies
// one.

#ifndef ELEMNORMAL_H
#define ELEMNORMAL_H

#include "ExportedByVOZDravo.h"
#include "Vec.h"

class VOZCatMesh;

class ExportedByVOZDravo ElemNormal
{
public:
    ElemNormal();
    explicit ElemNormal(VOZCatMesh const & i_mesh);
    virtual ~ElemNormal();

    void compute(VOZCatMesh const & i_mesh); // throws an earlier array away
    int numNormal() const { return mNumNormal; }
    double normal(int e, int c) const { return mNormal[e][c]; } // no bounds check
    Vec normal(int e) const { return Vec(mNormal[e]); }         // a view: writing to it changes the stored row
    double const (*data() const)[3] { return mNormal; }         // rows 0 .. numNormal, for walks on raw rows

    // Orientation. Only numbers are compared, never coordinates; the rows here stay as they are.
    int FindNeighbour(int e, int * i_list, int n);   // index of the first of n entries that differs from e, or -1
    void FlipOneNormal(int e, VOZCatMesh * io_mesh); // for a mesh without label offset: entries are stored as positions
    int IsCorrectDirection(int e1, int e2, int i_nodeA, int i_nodeB, VOZCatMesh * i_mesh); // 1: opposite runs, else 0
    // Makes all orientations agree within each connected piece, which takes that of its lowest element.
    // 0; or 1 with nothing changed: a null mesh, no element, no memory.
    int CheckFlipAllElemNormals(VOZCatMesh * io_mesh);

private:
    double (*mNormal)[3];
    int mNumNormal;
};

#endif
