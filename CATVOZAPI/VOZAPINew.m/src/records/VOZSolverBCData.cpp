// VOZSolverBCData.cpp: what acts on the sheet.

#include "VOZSolverBCData.h"

VOZSBConstraints_s::VOZSBConstraints_s() : m_nCount(0), m_nReserved4(0), m_panNodeIndices(nullptr), m_panCodes(nullptr)
{
}

VOZSBConstraints_s::~VOZSBConstraints_s()
{
    delete[] m_panNodeIndices;
    delete[] m_panCodes;
}

VOZSolverBCData_s::VOZSolverBCData_s()
    : m_nNumBHFs(0), m_nReserved4(0), m_pasBHFs(nullptr), m_nNumNodeConstraints2D(0), m_nReserved20(0),
      m_pasNodeConstraints2D(nullptr), m_nNumDrawbeads(0), m_nReserved36(0), m_pasDrawbeads(nullptr),
      m_padPressureFrictionValues(nullptr), m_bProcess(0), m_abReserved57{}, m_dFriction(0.0), m_apReserved72{},
      m_psSBConstraints(nullptr)
{
}

VOZSolverBCData_s::~VOZSolverBCData_s()
{
    delete[] m_pasBHFs;
    delete[] m_pasNodeConstraints2D;
    delete[] m_pasDrawbeads;
    delete[] m_padPressureFrictionValues;
    delete m_psSBConstraints;
}

namespace
{
template <class Record>
void Take(int & o_nCount, Record *& io_pasOwned, int i_nCount, Record * i_pasGiven)
{
    if (io_pasOwned != i_pasGiven)
        delete[] io_pasOwned;
    o_nCount = i_nCount;
    io_pasOwned = i_pasGiven;
}
} // namespace

void VOZSolverBCData_s::SetBHFs(int i_nCount, VOZSolverBHF_s * i_pasBHFs)
{
    Take(m_nNumBHFs, m_pasBHFs, i_nCount, i_pasBHFs);
}

void VOZSolverBCData_s::SetDrawbeads(int i_nCount, VOZSolverDrawbead_s * i_pasDrawbeads)
{
    Take(m_nNumDrawbeads, m_pasDrawbeads, i_nCount, i_pasDrawbeads);
}

void VOZSolverBCData_s::SetNodeConstraints2D(int i_nCount, VOZSolverNodeConstraint2D_s * i_pasConstraints)
{
    Take(m_nNumNodeConstraints2D, m_pasNodeConstraints2D, i_nCount, i_pasConstraints);
}

void VOZSolverBCData_s::SetPressureFrictionValues(double * i_padValues)
{
    if (m_padPressureFrictionValues != i_padValues)
        delete[] m_padPressureFrictionValues;
    m_padPressureFrictionValues = i_padValues;
}

void VOZSolverBCData_s::SetProcess(bool i_bProcess, double i_dFriction)
{
    m_bProcess = i_bProcess ? 1 : 0;
    m_dFriction = i_dFriction;
}
