// BaseInputFixture.h: the base driver with its input laid open, over the job of DriverFixture and a mixed mesh.

#ifndef BASEINPUTFIXTURE_H
#define BASEINPUTFIXTURE_H

#include "DriverFixture.h"
#include "VOZSolverIOData.h"

class InputProbe : public VOZSolver
{
public:
    using VOZSolver::ConvertMeshData;
    using VOZSolver::EvalBinder;
    using VOZSolver::EvalBoundaries;
    using VOZSolver::FillInXenSolverData;
    using VOZSolver::GetFilesFoldersPaths;
    using VOZSolver::SetBlankHolderForce;
    using VOZSolver::SetDispConstraints;
    using VOZSolver::SetDrawBeads;
    using VOZSolver::SetPressurePads;
    long SetConditions() { return VOZSolver::SetBoundaryConditions(); }

    using VOZSolver::m_dBlankHolderForce;
    using VOZSolver::m_nNbIntegrationPoints;
    using VOZSolver::m_pFreeEdge;
    using VOZSolver::m_pProcessEdges;
    using VOZSolver::m_pSolverIOData;
    using VOZSolver::m_pSymmetryFilter;
};

//   7---8---9
//   |   |  /|
//   |   | / |
//   4---5---6
//   |   |   |
//   1---2---3     cells of 10 mm x 10 mm; elements: 3 quadrilaterals, then the two triangles
inline VOZCatMesh mixed()
{
    samples::Points points;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            points.push_back({10.0 * column, 10.0 * row, 1.0});
    return samples::mesh(points, samples::Quads{{1, 2, 5, 4}, {2, 3, 6, 5}, {4, 5, 8, 7}, {5, 6, 9, 5}, {5, 9, 8, 5}});
}

class BaseInput : public DriverFixture
{
protected:
    BaseInput() : DriverFixture(mixed())
    {
        driver.m_pSolverIOData = &record;
        give(driver);
    }

    VOZSolverIOData record;
    InputProbe driver;
};

#endif
