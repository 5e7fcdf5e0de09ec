// VOZSolverSpringBacks.h: the driver of the shape that a formed part takes when the tools let go.
//
// Handed over besides what the multi-stage driver takes: SetDisplacements, the rows of a forming result in mm, and in
// the process definition the springback lists: fixity, trimmed elements, alignment nodes. There is never a binder. Each
// element springs with the material of its property.
//
// Run raises a CATMfErrUpdate, "Failed to compute springback results!", where the kernel finds no answer, and lets the
// kernel's own errors through; it returns E_FAIL for what cannot be started. GetResults fills displacements (in metres,
// from the part to the shape let go) in the first store alone, and nothing after a Run that failed.

#ifndef VOZSOLVERSPRINGBACKS_H
#define VOZSOLVERSPRINGBACKS_H

#include "VOZSolverMultiStage.h"

class ExportedByVOZDravo VOZSolverSpringBacks : public VOZSolverMultiStage
{
    CATDeclareClass;

public:
    VOZSolverSpringBacks();
    ~VOZSolverSpringBacks() override;

    long Run(CATIProgressTaskUI * i_task) override;
    long GetResults(Result ** io_apLayers) override; // each call aligns the shape once more; [0] alone is needed

protected:
    void Alignment(); // of m_padXYZ to the part, at the nodes of the process definition
    void SetDisplacementResults(Result ** io_apLayers);
    void Trimming(VOZMesh_s & io_mesh);             // marks the trimmed elements
    long BoundaryFixity(VOZCatMesh const & i_mesh); // the loops of what trimming leaves
    long SetDispConstraints();                      // the nodes that are held

    double * m_padXYZ; // 3 per node, metres, 0-based: the shape; owned, null before Run

private:
    long Unfold(CATIProgressTaskUI * i_task, VOZMesh_s & io_blankMesh, VOZMesh_s & io_deformedMesh);
    void DropShape();
};

#endif
