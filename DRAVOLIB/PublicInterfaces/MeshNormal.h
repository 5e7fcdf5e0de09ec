// MeshNormal.h: the area-weighted mean normal of a mesh, with none, one or two planes of symmetry.
//
// A unit vector. Element normals that cancel, or no element at all, give NaN components.

#ifndef MESHNORMAL_H
#define MESHNORMAL_H

#include "ExportedByVOZDravo.h"
#include "Vec.h"

class ElemNormal;
class Plane;

class ExportedByVOZDravo MeshNormal
{
public:
    MeshNormal(); // zero
    explicit MeshNormal(ElemNormal const & i_normals);
    MeshNormal(ElemNormal const & i_normals, Plane const & i_plane);
    MeshNormal(ElemNormal const & i_normals, Plane const & i_first, Plane const & i_second);
    virtual ~MeshNormal();

    void compute(ElemNormal const & i_normals);
    void compute(ElemNormal const & i_normals, Plane const & i_plane); // the sum of the projections on the plane
    void compute(ElemNormal const & i_normals, Plane const & i_first, Plane const & i_second); // along second x first

    double normal(int c) const { return mNormal[c]; }
    Vec normal() const { return Vec(static_cast<double const *>(mNormal)); } // counted copy

protected:
    void init();

private:
    double mNormal[3];
};

#endif
