// VOZSolverSpringback.h: the shape of a formed part after the tools let go.

#ifndef VOZSOLVERSPRINGBACK_H
#define VOZSOLVERSPRINGBACK_H

#include "ExportedByVOZAPINew.h"
#include "VOZProgressCallback.h"

struct VOZMechanicalProp_s;
struct VOZMesh_s;
struct VOZSBConstraints_s;

class ExportedByVOZAPINew VOZSolverSpringback
{
public:
    // 0 on success. See the source for what each argument does.
    static int Unfold(unsigned short const * i_strSummaryName, unsigned short const * i_strFolder, int i_nProcessMode,
                      int i_nNumMaterials, double const * i_padThicknesses, VOZMechanicalProp_s const * i_pasMaterials,
                      double const * i_padLocalCS, double const * i_padOrigin, VOZStopFunction i_stop,
                      VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved, VOZMesh_s * i_psBlankMesh,
                      VOZSBConstraints_s const * i_psConstraints, void * i_pUnused, float * i_pafUnused1,
                      float * i_pafUnused2, float * i_pafUnused3, VOZMesh_s * i_psDeformedMesh, bool i_bProcess,
                      double * o_padXYZ);
};

#endif
