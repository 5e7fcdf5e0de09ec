// VOZMultiStageSolverIOData.cpp: a forming job's records.

#include "VOZMultiStageSolverIOData.h"

#include "VOZFormingResult.h"
#include "VOZMechanicalProp.h"
#include "VOZMesh.h"
#include "VOZSolverBCData.h"

#include <algorithm>

namespace
{
template <class Record>
void Take(Record *& io_psOwned, Record * i_psGiven)
{
    if (io_psOwned != i_psGiven)
        delete io_psOwned;
    io_psOwned = i_psGiven;
}

template <class Value>
void TakeArray(Value *& io_paOwned, Value * i_paGiven)
{
    if (io_paOwned != i_paGiven)
        delete[] io_paOwned;
    io_paOwned = i_paGiven;
}

unsigned short * CopyOf(unsigned short const * i_strText)
{
    if (!i_strText)
        return nullptr;
    int nLength = 0;
    while (i_strText[nLength] != 0)
        ++nLength;
    unsigned short * const strCopy = new unsigned short[static_cast<std::size_t>(nLength) + 1];
    std::copy(i_strText, i_strText + nLength + 1, strCopy);
    return strCopy;
}
} // namespace

VOZSolverStage_s::VOZSolverStage_s()
    : m_psPartMesh(nullptr), m_adLocalCS{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}, m_adOrigin{0.0, 0.0, 0.0},
      m_psBCData(nullptr), m_apReserved112{}, m_psBlankMesh(nullptr), m_psFormingResult(nullptr)
{
}

VOZSolverStage_s::~VOZSolverStage_s()
{
    delete m_psFormingResult;
    delete m_psBlankMesh;
    delete m_psBCData;
    delete m_psPartMesh;
}

void VOZSolverStage_s::SetPartMeshData(VOZMesh_s * i_psMesh)
{
    Take(m_psPartMesh, i_psMesh);
}

void VOZSolverStage_s::SetBlankMeshData(VOZMesh_s * i_psMesh)
{
    Take(m_psBlankMesh, i_psMesh);
}

void VOZSolverStage_s::SetLocalCS(double const * i_padRows, double const * i_padOrigin)
{
    if (i_padRows)
        std::copy(i_padRows, i_padRows + 9, m_adLocalCS);
    if (i_padOrigin)
        std::copy(i_padOrigin, i_padOrigin + 3, m_adOrigin);
}

void VOZSolverStage_s::SetBCData(VOZSolverBCData_s * i_psBCData)
{
    Take(m_psBCData, i_psBCData);
}

void VOZSolverStage_s::SetFormingResult(VOZFormingResult_s * i_psResult)
{
    Take(m_psFormingResult, i_psResult);
}

VOZMultiStageSolverIOData_s::VOZMultiStageSolverIOData_s()
    : m_strWorkingDir(nullptr), m_strSummaryFileName(nullptr), m_nNumMaterials(0), m_nReserved20(0),
      m_padInitMaterialThickness(nullptr), m_pasMaterialProperties(nullptr), m_nFirstControl(0), m_nSecondControl(0),
      m_dControl(0.0), m_nNumStages(0), m_nReserved60(0), m_psBinderMesh(nullptr), m_pReserved72(nullptr),
      m_pasStages(nullptr), m_psBlankOnBinderMesh(nullptr)
{
}

VOZMultiStageSolverIOData_s::~VOZMultiStageSolverIOData_s()
{
    delete m_psBlankOnBinderMesh;
    delete m_psBinderMesh;
    delete[] m_pasStages;
    delete[] m_pasMaterialProperties;
    delete[] m_padInitMaterialThickness;
    delete[] m_strSummaryFileName;
    delete[] m_strWorkingDir;
}

void VOZMultiStageSolverIOData_s::SetWorkingDir(unsigned short const * i_strFolder)
{
    if (i_strFolder != m_strWorkingDir)
        TakeArray(m_strWorkingDir, CopyOf(i_strFolder));
}

void VOZMultiStageSolverIOData_s::SetSummaryFileName(unsigned short const * i_strName)
{
    if (i_strName != m_strSummaryFileName)
        TakeArray(m_strSummaryFileName, CopyOf(i_strName));
}

void VOZMultiStageSolverIOData_s::SetMaterialData(int i_nCount, double * i_padThicknesses,
                                                  VOZMechanicalProp_s * i_pasProperties)
{
    m_nNumMaterials = i_nCount;
    TakeArray(m_padInitMaterialThickness, i_padThicknesses);
    TakeArray(m_pasMaterialProperties, i_pasProperties);
}

void VOZMultiStageSolverIOData_s::SetStagesData(int i_nCount, VOZSolverStage_s * i_pasStages)
{
    m_nNumStages = i_nCount;
    TakeArray(m_pasStages, i_pasStages);
}

void VOZMultiStageSolverIOData_s::SetBinderMeshData(VOZMesh_s * i_psBinder, VOZMesh_s * i_psBlankOnBinder)
{
    Take(m_psBinderMesh, i_psBinder);
    Take(m_psBlankOnBinderMesh, i_psBlankOnBinder);
}
