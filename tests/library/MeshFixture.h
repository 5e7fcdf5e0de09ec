// MeshFixture.h: meshes for the tests of the container, and their rows compared.

#ifndef MESHFIXTURE_H
#define MESHFIXTURE_H

#include "Mesh.h"

#include "SampleMeshes.h"

#include <cstring>

namespace meshtest
{
using samples::Ints;

inline Ints rowOf(VOZCatMesh const & mesh, int e)
{
    return {mesh.ElementValue(e, 0), mesh.ElementValue(e, 1), mesh.ElementValue(e, 2), mesh.ElementValue(e, 3)};
}

inline bool sameRows(VOZCatMesh const & a, VOZCatMesh const & b)
{
    if (a.numElem() != b.numElem() || a.numNode() != b.numNode())
        return false;
    for (int e = 1; e <= a.numElem(); ++e)
        if (rowOf(a, e) != rowOf(b, e))
            return false;
    for (int n = 1; n <= a.numNode(); ++n)
        if (std::memcmp(a.GetNodeData()[n], b.GetNodeData()[n], sizeof(double[3])) != 0)
            return false;
    return true;
}

// Ten nodes in two rows of five, four quadrilaterals between.
inline VOZCatMesh tenNodes()
{
    samples::Grid grid;
    grid.columns = 4;
    grid.rows = 1;
    grid.x1 = 4;
    return grid.mesh();
}
} // namespace meshtest

#endif
