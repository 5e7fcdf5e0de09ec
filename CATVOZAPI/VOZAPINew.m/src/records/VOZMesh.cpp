// VOZMesh.cpp: the kernel's mesh records.

#include "VOZMesh.h"

VOZTopologyMesh_s::VOZTopologyMesh_s()
    : m_nNumNodes(0), m_nNumElements(0), m_pasElements(nullptr), m_apReserved16{nullptr, nullptr}
{
}

VOZTopologyMesh_s::~VOZTopologyMesh_s()
{
    delete[] m_pasElements;
}

void VOZTopologyMesh_s::SetNodesElements(int i_nNumNodes, int i_nNumElements, VOZElement_s * i_pasElements)
{
    if (m_pasElements != i_pasElements)
        delete[] m_pasElements;
    m_nNumNodes = i_nNumNodes;
    m_nNumElements = i_nNumElements;
    m_pasElements = i_pasElements;
}

VOZMesh_s::VOZMesh_s()
    : m_psTopology(nullptr), m_padNodalCoords(nullptr), m_padNodalNormals(nullptr), m_padCurvatures(nullptr),
      m_panElementsStatus(nullptr), m_bOwnsTopology(0), m_abReserved41{}, m_nProcessMode(0),
      m_nReserved52(0), m_apReserved56{nullptr, nullptr, nullptr}
{
}

VOZMesh_s::~VOZMesh_s()
{
    SetData(nullptr, nullptr, nullptr, false, nullptr);
    SetElementsStatus(nullptr);
}

namespace
{
template <class Value>
void Take(Value *& io_pOwned, Value * i_pGiven)
{
    if (io_pOwned != i_pGiven)
        delete[] io_pOwned;
    io_pOwned = i_pGiven;
}
} // namespace

void VOZMesh_s::SetData(double * i_padCoords, double * i_padNormals, double * i_padCurvatures, bool i_bOwnsTopology,
                        VOZTopologyMesh_s * i_psTopology)
{
    Take(m_padNodalCoords, i_padCoords);
    Take(m_padNodalNormals, i_padNormals);
    Take(m_padCurvatures, i_padCurvatures);
    if (m_bOwnsTopology != 0 && m_psTopology != i_psTopology)
        delete m_psTopology;
    m_psTopology = i_psTopology;
    m_bOwnsTopology = i_bOwnsTopology ? 1 : 0;
}

void VOZMesh_s::SetElementsStatus(int * i_panStatus)
{
    Take(m_panElementsStatus, i_panStatus);
}

int VOZMesh_s::GetNumNodes() const
{
    return m_psTopology ? m_psTopology->m_nNumNodes : 0;
}

int VOZMesh_s::GetNumElements() const
{
    return m_psTopology ? m_psTopology->m_nNumElements : 0;
}

VOZElement_s * VOZMesh_s::GetElements() const
{
    return m_psTopology ? m_psTopology->m_pasElements : nullptr;
}
