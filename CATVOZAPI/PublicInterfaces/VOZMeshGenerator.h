// VOZMeshGenerator.h: preparation of a mesh for the springback solve.

#ifndef VOZMESHGENERATOR_H
#define VOZMESHGENERATOR_H

#include "ExportedByVOZAPINew.h"
#include "VOZProgressCallback.h"

struct VOZMesh_s;

class ExportedByVOZAPINew VOZMeshGenerator
{
public:
    // Checks the mesh for VOZSolverSpringback::Unfold. Topology and numbering stay, since the answer has three values
    // per given node. Raises a CATError that says what was found, where and what was expected. The callback is not
    // called: progress belongs to the solve that follows.
    static void ModifyMeshTopolgyForSpringBack(VOZMesh_s * io_psMesh, unsigned short const * i_strFolder,
                                               VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved);
};

#endif
