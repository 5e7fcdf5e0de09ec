// VOZAPIMesh.cpp: a surface mesh as the kernel's geometry operations take it.

#include "VOZAPIMesh.h"

#include <algorithm>
#include <cstddef>
#include <new>

VOZAPIMesh * VOZAPIMesh::Create()
{
    return new (std::nothrow) VOZAPIMesh;
}

VOZAPIMesh::VOZAPIMesh()
    : m_nNumNodes(0), m_nNumElements(0), m_adNodes(nullptr), m_anElements(nullptr), m_nAllocatedNodes(0),
      m_nAllocatedElements(0)
{
}

VOZAPIMesh::~VOZAPIMesh()
{
    Clear();
}

void VOZAPIMesh::Clear()
{
    delete[] m_adNodes;
    delete[] m_anElements;
    m_adNodes = nullptr;
    m_anElements = nullptr;
    m_nNumNodes = m_nNumElements = m_nAllocatedNodes = m_nAllocatedElements = 0;
}

bool VOZAPIMesh::AllocateData()
{
    int const nNodes = m_nNumNodes;
    int const nElements = m_nNumElements;
    Clear();
    m_nNumNodes = nNodes;
    m_nNumElements = nElements;
    if (nNodes < 0 || nElements < 0)
        return false;

    m_adNodes = new (std::nothrow) double[static_cast<std::size_t>(nNodes)][3]();
    m_anElements = new (std::nothrow) int[static_cast<std::size_t>(nElements)][4];
    if (!m_adNodes || !m_anElements)
    {
        Clear();
        return false;
    }
    std::fill_n(m_anElements[0], 4 * static_cast<std::size_t>(nElements), -1);
    m_nAllocatedNodes = nNodes;
    m_nAllocatedElements = nElements;
    return true;
}

void VOZAPIMesh::SetNodeCoord(int i_nNode, double * i_adCoord)
{
    if (i_nNode >= 0 && i_nNode < m_nAllocatedNodes)
        std::copy(i_adCoord, i_adCoord + 3, m_adNodes[i_nNode]);
}

double const * VOZAPIMesh::GetNodeCoord(int i_nNode) const
{
    return i_nNode >= 0 && i_nNode < m_nAllocatedNodes ? m_adNodes[i_nNode] : nullptr;
}
