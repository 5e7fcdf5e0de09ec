// StageFixture.h: the multi-stage driver with its stage laid open, over the job of DriverFixture.

#ifndef STAGEFIXTURE_H
#define STAGEFIXTURE_H

#include "DriverFixture.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverBCData.h"
#include "VOZSolverMultiStage.h"

class StageProbe : public VOZSolverMultiStage
{
public:
    using VOZSolverMultiStage::ConvertMeshData;
    using VOZSolverMultiStage::EvalAutoBC;
    using VOZSolverMultiStage::FillInXenSolverData;
    using VOZSolverMultiStage::SetAutoStrain;
    using VOZSolverMultiStage::SetBlankHolderForce;
    using VOZSolverMultiStage::SetDispConstraints;
    using VOZSolverMultiStage::SetDrawBeads;
    using VOZSolverMultiStage::SetPressurePads;
    long SetConditions() { return VOZSolverMultiStage::SetBoundaryConditions(); }

    using VOZSolverMultiStage::m_dBlankHolderForce;
    using VOZSolverMultiStage::m_nLoopError;
    using VOZSolverMultiStage::m_nNbIntegrationPoints;
    using VOZSolverMultiStage::m_padPressureFrictionValues;
    using VOZSolverMultiStage::m_pasBHFs;
    using VOZSolverMultiStage::m_pasDrawbeads;
    using VOZSolverMultiStage::m_pasNodeConstraints2D;
    using VOZSolverMultiStage::m_pFreeEdge;
    using VOZSolverMultiStage::m_pProcessEdges;
    using VOZSolverMultiStage::m_psBCData;
    using VOZSolverMultiStage::m_psFormingResult;
    using VOZSolverMultiStage::m_psIOData;
    using VOZSolverMultiStage::m_pSymmetryFilter;

    VOZSolverStage_s & stage() { return *m_psIOData->m_pasStages; }
    VOZSolverBCData_s & conditions() { return *stage().m_psBCData; }
};

class Stage : public DriverFixture
{
protected:
    explicit Stage(VOZCatMesh const & i_part = dome(3, 2, false)) : DriverFixture(i_part) { give(driver); }

    void giveBinder()
    {
        binder = dome(5, 4, true);
        meshes[1] = &binder;
        meshCount = 2;
        give(driver);
    }

    void fillStage() { ASSERT_EQ(driver.FillInXenSolverData(), 0); }

    StageProbe driver;
};

class TriangleStage : public Stage
{
protected:
    TriangleStage() : Stage(dome(3, 2, true)) {}
};

#endif
