// VOZSolverIOData.h: the record of the base driver: one mesh with its conditions, and places for the answer.
//
// SI units, log strains; node and element indices are 0-based except in m_panConnectivity. Every array is made by new[]
// and owned by its record, single values are arrays of one. The order of the fields is fixed.

#ifndef VOZSOLVERIODATA_H
#define VOZSOLVERIODATA_H

#include "ExportedByVOZDravo.h"

struct VOZMechanicalProp_s;

struct ExportedByVOZDravo VOZBasicMeshData_s
{
    VOZBasicMeshData_s() = default;
    ~VOZBasicMeshData_s();
    VOZBasicMeshData_s(VOZBasicMeshData_s const &) = delete;
    VOZBasicMeshData_s & operator=(VOZBasicMeshData_s const &) = delete;

    int m_nNumNodes = 0;
    double * m_padNodalCoords = nullptr; // 3 per node, metres
    int m_nNumElements = 0;
    int * m_panConnectivity = nullptr; // 4 per element: 1-based label less the mesh's shift; 0 fourth: triangle
    double * m_padCurvatureComponents = nullptr;          // 3 per element
    void * m_apReserved[3] = {nullptr, nullptr, nullptr}; // stay null
};

struct VOZSolverFlags_s
{
    int m_nProcessMode = 0;
    bool m_bProcess = false;
};

struct ExportedByVOZDravo VOZConstrainedNodes_s
{
    VOZConstrainedNodes_s() = default;
    ~VOZConstrainedNodes_s();
    VOZConstrainedNodes_s(VOZConstrainedNodes_s const &) = delete;
    VOZConstrainedNodes_s & operator=(VOZConstrainedNodes_s const &) = delete;

    int * m_panNodeIndices = nullptr;      // 1 per node
    double * m_padDisplacements = nullptr; // 2 per node
    int * m_panDisplFlags = nullptr;       // 2 per node
};

struct VOZDrawbeadSegment_s
{
    double m_adEdgeValues[4] = {0.0, 0.0, 0.0, 0.0};
    double m_dForce = 0.0;
    double m_dUplift = 0.0;
    int m_nElement = 0;
};

struct VOZBHFEdge_s
{
    int m_nElement = 0;
    double m_dForce = 0.0; // N/m
    int m_nFirstPosition = 0;
    int m_nSecondPosition = 0;
};

struct ExportedByVOZDravo VOZSolverIOData
{
    VOZSolverIOData() = default;
    ~VOZSolverIOData();
    VOZSolverIOData(VOZSolverIOData const &) = delete;
    VOZSolverIOData & operator=(VOZSolverIOData const &) = delete;

    unsigned short * m_strSumFileName = nullptr;
    int m_nSumFileNameLength = 0;
    unsigned short * m_strWorkDir = nullptr;
    int m_nWorkDirLength = 0;
    int m_nNodesPerElement = 0;
    VOZBasicMeshData_s * m_psMesh = nullptr;
    int * m_panElemMaterialIndices = nullptr; // 1 per element
    int m_nNumMaterials = 0;
    double * m_padInitMaterialThickness = nullptr;           // 1 per material
    VOZMechanicalProp_s * m_pasMaterialProperties = nullptr; // 1 per material
    double * m_pdAutobendingFriction = nullptr;
    double * m_padTippingMatrix = nullptr;  // 9: three rows
    double * m_padTippingOrigin = nullptr;  // 3
    VOZSolverFlags_s * m_psFlags = nullptr; // a single record
    int m_nNumNodesBinder = 0;
    double * m_padNodalCoordsBinder = nullptr;
    double * m_padNodalCoordsFlatBlankBinder = nullptr;
    int m_nNumElementsBinder = 0;
    int * m_panConnectivityBinder = nullptr;
    int m_nNumConstrainedNodes = 0;
    VOZConstrainedNodes_s * m_psConstrainedNodes = nullptr; // a single record
    int m_nUnused1 = 0;                                     // the next three stay 0
    int m_nUnused2 = 0;
    void * m_pUnused = nullptr;
    int m_nNumDrawbeadSegments = 0;
    VOZDrawbeadSegment_s * m_pasDrawbeads = nullptr;
    int m_nUnused3 = 0; // stays 0
    int m_nNumBHFEdges = 0;
    VOZBHFEdge_s * m_pasBHFs = nullptr;
    double * m_padPressureFrictionValues = nullptr; // 1 per element
    double * m_padNodalCoordsFlatBlank = nullptr;   // 3 per node
    double * m_padNodalCoordsBlankOnBinder = nullptr;
    double * m_padStrainComponentsMid = nullptr; // 3 per integration point
    double * m_padStrainComponentsTop = nullptr;
    double * m_padStrainComponentsBot = nullptr;
    double * m_padEquivalentStress = nullptr;
    double * m_pdEnergy = nullptr;
    double * m_pdPunchForce = nullptr;
    int * m_pnNumOfIterationsUsedInSolver = nullptr;
    double * m_pdMaxRelativeDisplacement = nullptr;
    double * m_pdRelativeDispersion = nullptr;
};

#endif
