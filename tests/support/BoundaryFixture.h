// BoundaryFixture.h: the boundary pipeline up to the loops, as every caller runs it.

#ifndef BOUNDARYFIXTURE_H
#define BOUNDARYFIXTURE_H

#include "EdgeSets.h"
#include "FreeEdgeLoops.h"
#include "Mesh.h"

#include <algorithm>
#include <vector>

struct Chained
{
    FreeEdgeSet edges;
    int error = 0; // before the loops, which write it
    FreeEdgeLoops loops;

    explicit Chained(VOZCatMesh const & mesh, int preset = 0) : edges(mesh), error(preset), loops(edges, mesh, &error)
    {
    }
    Chained(Chained const &) = delete;
    Chained & operator=(Chained const &) = delete;
};

// The free edges of loop l in walking order.
inline std::vector<int> walk(FreeEdgeLoops const & loops, int l)
{
    std::vector<int> result;
    for (int i = 1; i <= loops.numLoopEdges(l); ++i)
        result.push_back(loops.loopEdge(l, i));
    return result;
}

inline std::vector<int> allWalks(VOZCatMesh const & mesh)
{
    Chained const chained(mesh);
    std::vector<int> result;
    for (int l = 1; l <= chained.loops.numLoops(); ++l)
        for (int const k : walk(chained.loops, l))
            result.push_back(k);
    return result;
}

inline std::vector<int> sorted(std::vector<int> values)
{
    std::sort(values.begin(), values.end());
    return values;
}

inline std::vector<int> oneTo(int n)
{
    std::vector<int> result;
    for (int i = 1; i <= n; ++i)
        result.push_back(i);
    return result;
}

#endif
