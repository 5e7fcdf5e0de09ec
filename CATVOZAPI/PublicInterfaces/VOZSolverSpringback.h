// VOZSolverSpringback.h: the shape of a formed part after the tools let go.

#ifndef VOZSOLVERSPRINGBACK_H
#define VOZSOLVERSPRINGBACK_H

#include "ExportedByVOZAPINew.h"
#include "VOZProgressCallback.h"

struct VOZMechanicalProp_s;
struct VOZMesh_s;
struct VOZMultiStageSolverIOData_s;
struct VOZSBConstraints_s;

class ExportedByVOZAPINew VOZSolverSpringback
{
public:
    enum
    {
        Done = 0,
        Stopped = 1, // by the stop function or the callback
        Failed = 2   // no balance, or meshes that are no blank and its part; the summary and the log say which
    };

    // Elastic unloading of the stresses of forming, with bending through the thickness. The two meshes have the same
    // nodes and elements; whichever extends less along the third row of i_padLocalCS is the flat blank, the other the
    // part. Elements whose status is 1 in either mesh carry nothing. Lengths in metres.
    //
    // i_psConstraints (may be null): its nodes do not move, whatever their codes; indices outside the mesh are
    // skipped. A part that they do not hold is pinned at three nodes far apart, where nothing pulls. Planes of symmetry
    // are not known here: half a part springs back as if it were cut. See UnfoldStage.
    //
    // o_padXYZ: 3 per node, metres: the part with the displacements of springback, where the answer is Done; else it
    // stays as it was. Where both meshes have the same lengths nothing was formed: the answer is the part, and the
    // summary ("outcome no forming") and the log say so.
    //
    // A summary under i_strSummaryName and a log with the iteration table ("<stem>.log") go to i_strFolder; without a
    // name, or where a file cannot be written, the run goes on without. Records that cannot be read raise a CATError
    // whose text says what was found, where and what was expected. The mode, the flag and the unused pointers do
    // nothing.
    static int Unfold(unsigned short const * i_strSummaryName, unsigned short const * i_strFolder, int i_nProcessMode,
                      int i_nNumMaterials, double const * i_padThicknesses, VOZMechanicalProp_s const * i_pasMaterials,
                      double const * i_padLocalCS, double const * i_padOrigin, VOZStopFunction i_stop,
                      VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved, VOZMesh_s * i_psBlankMesh,
                      VOZSBConstraints_s const * i_psConstraints, void * i_pUnused, float * i_pafUnused1,
                      float * i_pafUnused2, float * i_pafUnused3, VOZMesh_s * i_psDeformedMesh, bool i_bProcess,
                      double * o_padXYZ);

    // The same for the first stage of a job that VOZUtilitySolving has solved: its part mesh is the part, its blank
    // mesh the blank. Its node constraints with value 0 along free edges are planes of symmetry, which the shape keeps;
    // what they leave free is pinned. Nodes held in both directions along an edge are a held rim, and no plane. The
    // nodes of the record's springback constraints do not move.
    static int UnfoldStage(VOZMultiStageSolverIOData_s * i_psData, VOZStopFunction i_stop,
                           VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved, double * o_padXYZ);
};

#endif
