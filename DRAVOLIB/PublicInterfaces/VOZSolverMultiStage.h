// VOZSolverMultiStage.h: the driver that runs the kernel in-process.
//
// Run solves in one of three ways, in this order of precedence: to prescribed strains at one or two nodes (the process
// definition's auto strain), in one stage without a binder, in two stages with one. The results are in metres,
// engineering percent, pascals and newtons.

#ifndef VOZSOLVERMULTISTAGE_H
#define VOZSOLVERMULTISTAGE_H

#include "VOZSolver.h"

struct VOZFormingResult_s;
struct VOZMesh_s;
struct VOZMultiStageSolverIOData_s;
struct VOZSolverAutoBC_s;
struct VOZSolverBCData_s;
struct VOZSolverBHF_s;
struct VOZSolverDrawbead_s;
struct VOZSolverNodeConstraint2D_s;

class ExportedByVOZDravo VOZSolverMultiStage : public VOZSolver
{
    CATDeclareClass;

public:
    VOZSolverMultiStage();
    ~VOZSolverMultiStage() override;

    long Run(CATIProgressTaskUI * i_task) override;
    long GetResults(Result ** io_apLayers) override; // E_FAIL without a stage; displacements go to [0] alone
    using VOZSolver::SetBoundaryConditions;

protected:
    long ConvertMeshData(VOZCatMesh const * i_pMesh, VOZMesh_s & o_mesh);
    long FillInXenSolverData();
    long SetBoundaryConditions();
    long SetBlankHolderForce();
    long SetDrawBeads();
    long SetPressurePads();
    long SetDispConstraints();

    // The nodes nearest to two points (3 doubles in mm, or null), 0-based; both -1 without a point.
    void SetAutoStrain(double * i_padTarget, double * i_padReference, int & io_nTargetNode, int & io_nReferenceNode);

    // The record of a run to prescribed strains; false, with the record as it is made, if the process asks for none.
    bool EvalAutoBC(VOZSolverAutoBC_s & o_record);

    VOZResult GetResults(int i_nPoint, int i_nElement, double i_dRValue, double i_dThickness, int i_nLayer);
    void SetDisplacementResults(Result ** io_apLayers);
    void SetStressStrainResults(Result ** io_apLayers);

    VOZMultiStageSolverIOData_s * m_psIOData; // owned
    VOZSolverBCData_s * m_psBCData;           // the stage's
    VOZFormingResult_s * m_psFormingResult;   // the stage's; set by GetResults

    // Made and handed over within one operation, null outside it.
    VOZSolverBHF_s * m_pasBHFs;
    VOZSolverDrawbead_s * m_pasDrawbeads;
    VOZSolverNodeConstraint2D_s * m_pasNodeConstraints2D;
    double * m_padPressureFrictionValues;

private:
    void DropStage();
    long FillInJob();
    long FillInMaterials();
    void FillInMaterialIndices(VOZMesh_s & io_mesh);
    long FillInBinder(VOZMesh_s & i_mainMesh);
    long FillInStage(VOZMesh_s * i_psMainMesh); // takes the mesh
    VOZMesh_s * NewMeshLike(VOZMesh_s & i_mainMesh) const;
    long EvalAutoStrain(CATIProgressTaskUI * i_task, VOZSolverAutoBC_s const & i_record);
    long EvalWithBinder(CATIProgressTaskUI * i_task);
};

#endif
