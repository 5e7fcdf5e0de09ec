// VOZMeshUtil.h: checks and preparations of a mesh record.

#ifndef VOZMESHUTIL_H
#define VOZMESHUTIL_H

#include "ExportedByVOZAPINew.h"

struct VOZMesh_s;

class ExportedByVOZAPINew VOZMeshUtil
{
public:
    // Whether the mesh can be worked with: at least one node and one element, arrays for both, and every corner of
    // every element a node of the mesh. What a solve refuses with a reason that it tells (a closed surface, a side with
    // three elements, a coordinate that is no number) passes. Linear in the mesh, changes nothing. A null mesh is
    // false.
    static bool EvalMeshBoundaries(VOZMesh_s * i_psMesh);
};

#endif
