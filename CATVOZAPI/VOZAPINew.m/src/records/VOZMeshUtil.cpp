// VOZMeshUtil.cpp: whether a mesh record can be worked with at all.
//
// What a solve refuses with a reason of its own passes here: the caller of this test has no text to give.

#include "VOZMeshUtil.h"

#include "VOZMesh.h"

#include <algorithm>

bool VOZMeshUtil::EvalMeshBoundaries(VOZMesh_s * i_psMesh)
{
    if (!i_psMesh || !i_psMesh->m_padNodalCoords || !i_psMesh->GetElements())
        return false;
    int const nNumNodes = i_psMesh->GetNumNodes();
    int const nNumElements = i_psMesh->GetNumElements();
    if (nNumNodes < 1 || nNumElements < 1)
        return false;
    auto const exists = [=](int node) { return node >= 0 && node < nNumNodes; };
    auto const isWhole = [=](VOZElement_s const & element)
    {
        int const * const node = element.m_anNodeIndices;
        return exists(node[0]) && exists(node[1]) && exists(node[2]) && (node[3] == -1 || exists(node[3]));
    };
    return std::all_of(i_psMesh->GetElements(), i_psMesh->GetElements() + nNumElements, isWhole);
}
