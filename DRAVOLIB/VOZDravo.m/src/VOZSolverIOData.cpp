// VOZSolverIOData.cpp: releases what the base driver's record owns.

#include "VOZSolverIOData.h"

#include "VOZMechanicalProp.h"

#include <initializer_list>

VOZBasicMeshData_s::~VOZBasicMeshData_s()
{
    delete[] m_padNodalCoords;
    delete[] m_panConnectivity;
    delete[] m_padCurvatureComponents;
}

VOZConstrainedNodes_s::~VOZConstrainedNodes_s()
{
    delete[] m_panNodeIndices;
    delete[] m_padDisplacements;
    delete[] m_panDisplFlags;
}

VOZSolverIOData::~VOZSolverIOData()
{
    for (unsigned short * strText : {m_strSumFileName, m_strWorkDir})
        delete[] strText;
    for (int * pan : {m_panElemMaterialIndices, m_panConnectivityBinder, m_pnNumOfIterationsUsedInSolver})
        delete[] pan;
    for (double * pad : {m_padInitMaterialThickness, m_pdAutobendingFriction, m_padTippingMatrix, m_padTippingOrigin,
                         m_padNodalCoordsBinder, m_padNodalCoordsFlatBlankBinder, m_padPressureFrictionValues,
                         m_padNodalCoordsFlatBlank, m_padNodalCoordsBlankOnBinder, m_padStrainComponentsMid,
                         m_padStrainComponentsTop, m_padStrainComponentsBot, m_padEquivalentStress, m_pdEnergy,
                         m_pdPunchForce, m_pdMaxRelativeDisplacement, m_pdRelativeDispersion})
        delete[] pad;
    delete m_psMesh;
    delete[] m_pasMaterialProperties;
    delete m_psFlags;
    delete m_psConstrainedNodes;
    delete[] m_pasDrawbeads;
    delete[] m_pasBHFs;
}
