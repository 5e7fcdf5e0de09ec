// VOZMultiStageSolverIOData.h: a whole forming job: its stages, materials, binder and files. Fixed layouts: never
// reorder.
//
// Lengths in metres. What a setter takes belongs to the record from then on: single records are made by new, arrays
// by new[]. A second call frees what the first one gave.

#ifndef VOZMULTISTAGESOLVERIODATA_H
#define VOZMULTISTAGESOLVERIODATA_H

#include "ExportedByVOZAPINew.h"

#include <cstddef>

struct VOZFormingResult_s;
struct VOZMechanicalProp_s;
struct VOZMesh_s;
struct VOZSolverBCData_s;

// One stage: part, blank, what acts, and the frame in which it is formed (its third row is the stamping direction).
struct ExportedByVOZAPINew VOZSolverStage_s
{
    VOZSolverStage_s(); // no meshes; the global frame
    ~VOZSolverStage_s();
    VOZSolverStage_s(VOZSolverStage_s const &) = delete;
    VOZSolverStage_s & operator=(VOZSolverStage_s const &) = delete;

    void SetPartMeshData(VOZMesh_s * i_psMesh);
    void SetBlankMeshData(VOZMesh_s * i_psMesh); // same topology as the part; a solve writes its coordinates
    // 3 rows of 3, and 3: copied. A null leaves what stands.
    void SetLocalCS(double const * i_padRows, double const * i_padOrigin);
    void SetBCData(VOZSolverBCData_s * i_psBCData);
    void SetFormingResult(VOZFormingResult_s * i_psResult);

    VOZMesh_s * m_psPartMesh; // owned, like all pointers here
    double m_adLocalCS[9];    // three rows
    double m_adOrigin[3];     // metres
    VOZSolverBCData_s * m_psBCData;
    void * m_apReserved112[2];
    VOZMesh_s * m_psBlankMesh;
    VOZFormingResult_s * m_psFormingResult;
};

static_assert(sizeof(VOZSolverStage_s) == 144, "drivers make this record");
static_assert(offsetof(VOZSolverStage_s, m_psPartMesh) == 0, "drivers read this field");
static_assert(offsetof(VOZSolverStage_s, m_adLocalCS) == 8, "drivers read this field");
static_assert(offsetof(VOZSolverStage_s, m_adOrigin) == 80, "drivers write this field");
static_assert(offsetof(VOZSolverStage_s, m_psBCData) == 104, "drivers read this field");
static_assert(offsetof(VOZSolverStage_s, m_psBlankMesh) == 128, "drivers read this field");
static_assert(offsetof(VOZSolverStage_s, m_psFormingResult) == 136, "drivers read this field");

struct ExportedByVOZAPINew VOZMultiStageSolverIOData_s
{
    VOZMultiStageSolverIOData_s();
    ~VOZMultiStageSolverIOData_s();
    VOZMultiStageSolverIOData_s(VOZMultiStageSolverIOData_s const &) = delete;
    VOZMultiStageSolverIOData_s & operator=(VOZMultiStageSolverIOData_s const &) = delete;

    void SetWorkingDir(unsigned short const * i_strFolder);    // copied; null or empty: the process's folder
    void SetSummaryFileName(unsigned short const * i_strName); // copied; null or empty: no summary, no log
    void SetMaterialData(int i_nCount, double * i_padThicknesses, VOZMechanicalProp_s * i_pasProperties);
    void SetStagesData(int i_nCount, VOZSolverStage_s * i_pasStages);
    void SetBinderMeshData(VOZMesh_s * i_psBinder, VOZMesh_s * i_psBlankOnBinder);

    unsigned short * m_strWorkingDir;      // owned, ends with 0; null: not set
    unsigned short * m_strSummaryFileName; // likewise
    int m_nNumMaterials;
    int m_nReserved20;
    double * m_padInitMaterialThickness; // metres, 1 per material; owned, like all pointers here
    VOZMechanicalProp_s * m_pasMaterialProperties;
    int m_nFirstControl; // kept; this kernel reads none of the three
    int m_nSecondControl;
    double m_dControl;
    int m_nNumStages;
    int m_nReserved60;
    VOZMesh_s * m_psBinderMesh;
    void * m_pReserved72;
    VOZSolverStage_s * m_pasStages;
    VOZMesh_s * m_psBlankOnBinderMesh;
};

static_assert(sizeof(VOZMultiStageSolverIOData_s) == 96, "drivers make this record");
static_assert(offsetof(VOZMultiStageSolverIOData_s, m_nNumMaterials) == 16, "drivers read this field");
static_assert(offsetof(VOZMultiStageSolverIOData_s, m_padInitMaterialThickness) == 24, "drivers read this field");
static_assert(offsetof(VOZMultiStageSolverIOData_s, m_pasMaterialProperties) == 32, "drivers read this field");
static_assert(offsetof(VOZMultiStageSolverIOData_s, m_nFirstControl) == 40, "drivers write this field");
static_assert(offsetof(VOZMultiStageSolverIOData_s, m_nSecondControl) == 44, "drivers write this field");
static_assert(offsetof(VOZMultiStageSolverIOData_s, m_dControl) == 48, "drivers write this field");
static_assert(offsetof(VOZMultiStageSolverIOData_s, m_pasStages) == 80, "drivers read this field");
static_assert(offsetof(VOZMultiStageSolverIOData_s, m_psBlankOnBinderMesh) == 88, "drivers read this field");

#endif
