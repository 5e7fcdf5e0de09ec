// VOZAPIMesh.h: a surface mesh as the kernel's geometry operations take it, and the gap between two of them.

#ifndef VOZAPIMESH_H
#define VOZAPIMESH_H

#include "ExportedByVOZAPINew.h"

// Nodes and elements are 0-based. Made by Create, deleted by the caller. The counts are set first, then AllocateData
// makes both tables anew: coordinates 0, corners -1.
class ExportedByVOZAPINew VOZAPIMesh
{
public:
    static VOZAPIMesh * Create(); // null without memory
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

// The smallest and the largest gap along i_adDirection from the first mesh to the second, in the meshes' unit: at every
// node of either mesh that has the other's surface before or behind it along the direction, the signed way along the
// direction from the first mesh to the second. Nodes without a partner do not count. A direction of any length.
//
// Where a line meets a mesh more than once, the sides that face each other count: the last point of the first mesh
// along the direction, the first point of the second. A node that is hidden behind its own mesh does not count.
// Elements that lie along the direction (within 0.006 degrees) have no gap of their own, and a node beside one is
// measured to both sides of it, from inside of the node's own elements: walls along the direction that lie over each
// other, or outlines that touch, make no gap where nothing overlaps. Quadrilaterals are two triangles, parted by the
// shorter diagonal.
//
// i_dCellSize, in the meshes' unit, is the largest cell of the search; smaller ones are taken where the meshes are
// fine, and one that is not above 0 asks for nothing. n log n on meshes of any usual shape.
//
// Returns 0; E_FAIL with both gaps 0 for a mesh without elements, a direction of no length, a coordinate of any node
// that is no number or beyond 1e100, an element whose corners are not there, another version, where no pair exists at
// all, and where memory runs out.
ExportedByVOZAPINew long VOZAPIEvalDistanceBetweenMeshes_Average(VOZAPIMesh const & i_first,
                                                                 VOZAPIMesh const & i_second,
                                                                 double const * i_adDirection, double i_dCellSize,
                                                                 tagVOZFILEINFO const & i_info, double & o_dMinDistance,
                                                                 double & o_dMaxDistance);

#endif
