// VOZMesh.h: the kernel's mesh: elements, their topology, a mesh on a topology. Fixed layouts: never reorder.
//
// Node and element indices are 0-based, lengths in metres. Arrays that a setter takes are made by new[] and belong to
// the record from then on; a second call frees what the first one gave.

#ifndef VOZMESH_H
#define VOZMESH_H

#include "ExportedByVOZAPINew.h"

#include <cstddef>

struct VOZElement_s
{
    int GetMaterialIndex() const { return m_nMaterialIndex; }

    int m_anNodeIndices[4] = {-1, -1, -1, -1}; // the fourth stays -1 for a triangle
    int m_anReserved16[2] = {0, 0};
    int m_nMaterialIndex = 0;
    int m_nReserved28 = 0;
};

static_assert(sizeof(VOZElement_s) == 32, "drivers make arrays of this record");
static_assert(offsetof(VOZElement_s, m_anNodeIndices) == 0, "drivers fill this field");
static_assert(offsetof(VOZElement_s, m_nMaterialIndex) == 24, "drivers fill this field");

struct ExportedByVOZAPINew VOZTopologyMesh_s
{
    VOZTopologyMesh_s();
    ~VOZTopologyMesh_s();
    VOZTopologyMesh_s(VOZTopologyMesh_s const &) = delete;
    VOZTopologyMesh_s & operator=(VOZTopologyMesh_s const &) = delete;

    void SetNodesElements(int i_nNumNodes, int i_nNumElements, VOZElement_s * i_pasElements); // takes the elements

    int m_nNumNodes;
    int m_nNumElements;
    VOZElement_s * m_pasElements; // owned
    void * m_apReserved16[2];
};

static_assert(sizeof(VOZTopologyMesh_s) == 32, "drivers make this record");

struct ExportedByVOZAPINew VOZMesh_s
{
    VOZMesh_s();
    ~VOZMesh_s();
    VOZMesh_s(VOZMesh_s const &) = delete;
    VOZMesh_s & operator=(VOZMesh_s const &) = delete;

    // Coordinates and normals: 3 per node. Curvatures: 3 per element (two principal values in 1/m and an angle), or
    // null. Takes the three arrays. The topology is freed with this mesh only if i_bOwnsTopology is set: meshes of the
    // same connectivity share one.
    void SetData(double * i_padCoords, double * i_padNormals, double * i_padCurvatures, bool i_bOwnsTopology,
                 VOZTopologyMesh_s * i_psTopology);
    void SetElementsStatus(int * i_panStatus); // one per element, 1: trimmed away; takes the array

    int GetNumNodes() const;            // 0 without a topology
    int GetNumElements() const;         // 0 without a topology
    VOZElement_s * GetElements() const; // null without a topology

    VOZTopologyMesh_s * m_psTopology;
    double * m_padNodalCoords;  // 3 per node, metres
    double * m_padNodalNormals; // 3 per node
    double * m_padCurvatures;   // 3 per element, or null
    int * m_panElementsStatus;  // 1 per element, or null
    unsigned char m_bOwnsTopology;
    unsigned char m_abReserved41[7];
    int m_nProcessMode;
    int m_nReserved52;
    void * m_apReserved56[3];
};

static_assert(sizeof(VOZMesh_s) == 80, "drivers make this record");
static_assert(offsetof(VOZMesh_s, m_psTopology) == 0, "drivers read this field");
static_assert(offsetof(VOZMesh_s, m_padNodalCoords) == 8, "drivers read this field");
static_assert(offsetof(VOZMesh_s, m_nProcessMode) == 48, "drivers write this field");

#endif
