// IncrementalFixture.h: the incremental driver with everything of it laid open, and a job of four meshes for it.

#ifndef INCREMENTALFIXTURE_H
#define INCREMENTALFIXTURE_H

#include "DriverFixture.h"
#include "VOZIncrementalSettings.h"
#include "VOZSolverIncremental.h"

#include <cstddef>
#include <string>
#include <vector>

// The driver with its members; a test derives from it where it wants to watch the blocks.
class IncrementalProbe : public VOZSolverIncremental
{
public:
    using VOZSolver::m_dBlankHolderForce;
    using VOZSolver::m_nCurrentStepIndex;
    using VOZSolver::m_nNbIntegrationPoints;
    using VOZSolver::m_pResultMesh;
    using VOZSolver::m_pSolverIOData;
    using VOZSolver::m_strPartName;
    using VOZSolver::m_strTemplateName;

    using VOZSolverIncremental::EvalToolsPosition;

    using VOZSolverIncremental::m_achBinderName;
    using VOZSolverIncremental::m_achBlankName;
    using VOZSolverIncremental::m_achDieName;
    using VOZSolverIncremental::m_achPunchName;
    using VOZSolverIncremental::m_adTippingVector;
    using VOZSolverIncremental::m_astrMeshFiles;
    using VOZSolverIncremental::m_bMassScaling;
    using VOZSolverIncremental::m_bSmoothContact;
    using VOZSolverIncremental::m_dAdaptEnergy;
    using VOZSolverIncremental::m_dAdaptFrequency;
    using VOZSolverIncremental::m_dAdaptSize;
    using VOZSolverIncremental::m_dAdaptThickness;
    using VOZSolverIncremental::m_dAsciiOutputInterval;
    using VOZSolverIncremental::m_dBeadDepth;
    using VOZSolverIncremental::m_dBinaryOutputInterval;
    using VOZSolverIncremental::m_dBinderAccelFactor;
    using VOZSolverIncremental::m_dBinderCloseTime;
    using VOZSolverIncremental::m_dBinderGapFactor;
    using VOZSolverIncremental::m_dBlankIntegrationPoints;
    using VOZSolverIncremental::m_dDensity;
    using VOZSolverIncremental::m_dFrictionBinder;
    using VOZSolverIncremental::m_dFrictionDie;
    using VOZSolverIncremental::m_dFrictionPunch;
    using VOZSolverIncremental::m_dKValue;
    using VOZSolverIncremental::m_dMassScalingTimeStep;
    using VOZSolverIncremental::m_dMaxBlankElementSize;
    using VOZSolverIncremental::m_dMaxStrain;
    using VOZSolverIncremental::m_dMinBlankElementSize;
    using VOZSolverIncremental::m_dNValue;
    using VOZSolverIncremental::m_dOffsetBinder;
    using VOZSolverIncremental::m_dOffsetDie;
    using VOZSolverIncremental::m_dOffsetPunch;
    using VOZSolverIncremental::m_dPoisson;
    using VOZSolverIncremental::m_dPunchAcceleration;
    using VOZSolverIncremental::m_dPunchPlateauTime;
    using VOZSolverIncremental::m_dPunchRampTime;
    using VOZSolverIncremental::m_dPunchStroke;
    using VOZSolverIncremental::m_dPunchVelocity;
    using VOZSolverIncremental::m_dRValue;
    using VOZSolverIncremental::m_dStrokeAsDZmax;
    using VOZSolverIncremental::m_dTangentModulus;
    using VOZSolverIncremental::m_dTerminationTime;
    using VOZSolverIncremental::m_dThickness;
    using VOZSolverIncremental::m_dToolDensityFactor;
    using VOZSolverIncremental::m_dToolIntegrationPoints;
    using VOZSolverIncremental::m_dYieldStress;
    using VOZSolverIncremental::m_dYoungsModulus;
    using VOZSolverIncremental::m_nAdaptivityLevel;
    using VOZSolverIncremental::m_nAdaptPass;
    using VOZSolverIncremental::m_nAdaptRefine;
    using VOZSolverIncremental::m_nBeadNodeCounter;
    using VOZSolverIncremental::m_nCurveBinder;
    using VOZSolverIncremental::m_nCurvePunch;
    using VOZSolverIncremental::m_nCurveStressStrain;
    using VOZSolverIncremental::m_nCurveType;
    using VOZSolverIncremental::m_nFirstBeadCurve;
    using VOZSolverIncremental::m_nFirstBeadSet;
    using VOZSolverIncremental::m_nFirstPadCurve;
    using VOZSolverIncremental::m_nHourglassType;
    using VOZSolverIncremental::m_nIadpn90;
    using VOZSolverIncremental::m_nMaterialBinder;
    using VOZSolverIncremental::m_nMaterialBlank;
    using VOZSolverIncremental::m_nMaterialDie;
    using VOZSolverIncremental::m_nMaterialPunch;
    using VOZSolverIncremental::m_nNumPoints;
    using VOZSolverIncremental::m_nOutputPoints;
    using VOZSolverIncremental::m_nPartBinder;
    using VOZSolverIncremental::m_nPartBlank;
    using VOZSolverIncremental::m_nPartDie;
    using VOZSolverIncremental::m_nPartPunch;
    using VOZSolverIncremental::m_nSectionBinder;
    using VOZSolverIncremental::m_nSectionBlank;
    using VOZSolverIncremental::m_nSectionDie;
    using VOZSolverIncremental::m_nSectionPunch;
    using VOZSolverIncremental::m_nSetBinder;
    using VOZSolverIncremental::m_nSetBlank;
    using VOZSolverIncremental::m_nSetDie;
    using VOZSolverIncremental::m_nSetPunch;
    using VOZSolverIncremental::m_nSteps;
    using VOZSolverIncremental::m_nVectorId;
    using VOZSolverIncremental::m_padOutputPoints;
    using VOZSolverIncremental::m_padPoints;
    using VOZSolverIncremental::m_pBinderMesh;
    using VOZSolverIncremental::m_pBlankMesh;
    using VOZSolverIncremental::m_pDieMesh;
    using VOZSolverIncremental::m_pPunchMesh;
    using VOZSolverIncremental::m_pSettings;
    using VOZSolverIncremental::m_pStream;
    using VOZSolverIncremental::m_strWorkingFolder;
};

// A dome of 120 mm x 80 mm, die above the blank and punch below it, seen along y:
//
//        ____
//    ___/    \___    die, 30 mm above the blank at its rim, facing down
//    ------------    blank, at z = 0
//    -          -    binder, at z = -1, facing up
//        ____
//    ___/    \___    punch, 10 mm below the blank at its rim, facing up
//
// The punch is the lower one by 40 mm at the rim and by 41 mm at the top of the dome: the stroke is 40 mm. Labels run
// through: blank, punch, die, binder.
class IncrementalJob : public DriverFixture
{
protected:
    IncrementalJob()
    {
        take(blank, plate(12, 8, 0.0, 0.0, "VOZBlank"));
        take(punch, plate(12, 8, -10.0, 11.0, "VOZPunch"));
        take(die, plate(12, 8, 30.0, 12.0, "VOZDie"));
        die.reverse();
        take(holder, plate(6, 4, -1.0, 0.0, "VOZBinder"));
        int nodes = 0;
        int elements = 0;
        for (VOZCatMesh * const mesh : {&blank, &punch, &die, &holder})
        {
            mesh->IdsOffset(nodes, elements);
            nodes += mesh->numNode();
            elements += mesh->numElem();
        }
        meshes = {&blank, &die, &punch, &holder};
        meshCount = 4;
        index(blank.numElem());
        VOZMaterial & sheet = *property.material(1);
        sheet.m_strName = CATUnicodeString("test-steel");
        host.environment["VOZMaterialDB"] = database.Path();
        database.Write("test.xml", kMaterials);
    }

    // 120 mm x 80 mm at the height i_z, with a dome of i_height.
    static VOZCatMesh plate(int i_columns, int i_rows, double i_z, double i_height, char const * i_name)
    {
        samples::Grid grid;
        grid.columns = i_columns;
        grid.rows = i_rows;
        grid.x1 = 120.0;
        grid.y1 = 80.0;
        grid.surface = [=](double x, double y)
        {
            double const u = std::sin(3.14159265358979 * x / 120.0);
            double const v = std::sin(3.14159265358979 * y / 80.0);
            return samples::Point{x, y, i_z + i_height * u * u * v * v};
        };
        VOZCatMesh mesh = grid.mesh();
        mesh.SetName(i_name);
        return mesh;
    }

    // A copy has no name of its own.
    static void take(VOZCatMesh & o_mesh, VOZCatMesh const & i_plate)
    {
        o_mesh = i_plate;
        o_mesh.SetName(i_plate.GetName());
    }

    static constexpr char const * kMaterials = R"(<?xml version="1.0" encoding="UTF-8"?>
<materials>
  <material name="another" group="steel">
    <thickness unit="mm">1.5</thickness><K unit="MPa">111</K><n>0.11</n><r>1.1</r><yield unit="MPa">101</yield>
    <young unit="GPa">101</young><poisson>0.11</poisson><density unit="kg/m3">1111</density>
    <source of="all">made up</source>
  </material>
  <material name="test-steel" group="steel">
    <thickness unit="mm">1.7</thickness><K unit="MPa">543</K><n>0.23</n><r>1.81</r><yield unit="MPa">142</yield>
    <young unit="GPa">207</young><poisson>0.29</poisson><density unit="kg/m3">7851</density>
    <source of="all">made up</source>
  </material>
</materials>
)";

    TempFolder database; // the material database
    VOZCatMesh blank;
    VOZCatMesh punch;
    VOZCatMesh die;
    VOZCatMesh holder;
};

#endif
