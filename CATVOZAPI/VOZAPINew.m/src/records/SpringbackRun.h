// SpringbackRun.h: records checked for the springback solve, the solve with its files, the answer written back.

#ifndef SPRINGBACKRUN_H
#define SPRINGBACKRUN_H

#include "JobProblem.h"
#include "RunFiles.h"
#include "VOZProgressCallback.h"
#include "springback/Springback.h"

struct VOZSBConstraints_s;

// A mesh with topology, elements and coordinates for both; else a JobError under the mesh's name.
void CheckMesh(VOZMesh_s const * i_pMesh, char const * i_strMesh);

// Both meshes in the frame: the one of the lesser extent along the third axis is the flat one. Constraints may be null.
voz::springback::Problem SpringbackProblemOf(StageFrame const & i_frame, VOZMesh_s const * i_pOne,
                                             VOZMesh_s const * i_pOther, VOZSBConstraints_s const * i_pConstraints,
                                             std::vector<voz::onestep::MaterialLaw> i_laws);

struct SpringbackCalls
{
    VOZStopFunction stop;
    VOZProgressCallback callback;
    void * task;
    void * reserved;
};

// Solves and writes the summary; the shape goes to o_padXYZ in the coordinates of the records. The return value is that
// of VOZSolverSpringback::Unfold.
int RunSpringback(voz::springback::Problem const & i_problem, StageFrame const & i_frame,
                  SpringbackCalls const & i_calls, RunFiles & io_files, double * o_padXYZ);

#endif
