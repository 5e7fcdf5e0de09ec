// VOZAPIMesh.h: a surface mesh as the kernel's geometry operations take it, and the gap between two of them.

#ifndef VOZAPIMESH_H
#define VOZAPIMESH_H

#include "ExportedByVOZAPINew.h"

// Nodes and elements are 0-based. Made by Create, deleted by the caller. The counts are set first, then AllocateData
// makes both tables anew: coordinates 0, corners -1.
class ExportedByVOZAPINew VOZAPIMesh
{
public:
    static VOZAPIMesh * Create();
    VOZAPIMesh(VOZAPIMesh const &) = delete;
    VOZAPIMesh & operator=(VOZAPIMesh const &) = delete;
    virtual ~VOZAPIMesh();

    void Clear(); // no nodes, no elements, no tables
    void SetNumNodes(int i_nNum) { m_nNumNodes = i_nNum; }
    void SetNumElements(int i_nNum) { m_nNumElements = i_nNum; }
    int GetNumNodes() const { return m_nNumNodes; }
    int GetNumElements() const { return m_nNumElements; }
    virtual bool AllocateData(); // false, with no tables, for a negative count or where there is no memory

    void SetNodeCoord(int i_nNode, double * i_adCoord); // 3 coordinates; a node that is not there is ignored
    double const * GetNodeCoord(int i_nNode) const;     // null for a node that is not there
    // A row of four node ids per element, -1 as the fourth of a triangle; the mesh's own, for the caller to fill. Null
    // without a table, and where the count of elements was changed after the table was made.
    int (*GetElements() const)[4] { return m_nAllocatedElements == m_nNumElements ? m_anElements : nullptr; }

protected:
    VOZAPIMesh();

    int m_nNumNodes;
    int m_nNumElements;
    double (*m_adNodes)[3]; // owned
    int (*m_anElements)[4]; // owned
    int m_nAllocatedNodes;
    int m_nAllocatedElements;
};

struct tagVOZFILEINFO
{
    static constexpr int kVersion = 5; // the one that the operations below know

    int m_nVersion = 0;
};

// The smallest and the largest gap along i_adDirection from the first mesh to the second one: for every node of either
// mesh that has the other's surface before or behind it along the direction, the signed way along the direction from
// the first mesh to the second. Points without a partner do not count. i_dCellSize, in the meshes' unit, is the largest
// cell of the search; smaller ones are taken where the meshes are fine. n log n.
//
// Returns 0; E_FAIL with both gaps 0 for a mesh without elements, a direction of no length, a coordinate that is no
// number, an element whose corners are not there, another version, and where no pair exists at all.
ExportedByVOZAPINew long VOZAPIEvalDistanceBetweenMeshes_Average(VOZAPIMesh const & i_first,
                                                                 VOZAPIMesh const & i_second,
                                                                 double const * i_adDirection, double i_dCellSize,
                                                                 tagVOZFILEINFO const & i_info, double & o_dMinDistance,
                                                                 double & o_dMaxDistance);

#endif
