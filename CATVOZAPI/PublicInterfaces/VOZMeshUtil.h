// VOZMeshUtil.h: checks and preparations of a mesh record.

#ifndef VOZMESHUTIL_H
#define VOZMESHUTIL_H

#include "ExportedByVOZAPINew.h"

struct VOZMesh_s;

class ExportedByVOZAPINew VOZMeshUtil
{
public:
    // Whether the mesh has a boundary that a solve can work with: at least one element, every node index inside the
    // mesh and none twice in an element, every coordinate a finite number, no side with more than two elements, and at
    // least one side with a single one. Linear in the mesh. A null mesh is false.
    static bool EvalMeshBoundaries(VOZMesh_s * i_psMesh);
};

#endif
