// ZonesFixture.h: values at the nodes of a mesh, and the zones that they make.

#ifndef ZONESFIXTURE_H
#define ZONESFIXTURE_H

#include "CATRawColl.h"
#include "HostFixture.h"
#include "SampleMeshes.h"
#include "Zones.h"

#include <map>
#include <vector>

namespace zonesof
{
using samples::Grid;
using samples::Ints;
using samples::Point;
using samples::Points;
using samples::Quads;
using samples::Triangles;

using Marks = std::map<int, double>;

// Three values a node, of which the first two are bait.
inline CATRawColldouble collection(int numNode, Marks const & marks)
{
    CATRawColldouble values;
    for (int n = 1; n <= numNode; ++n)
    {
        values.Append(4.5);
        values.Append(0.5);
        auto const mark = marks.find(n);
        values.Append(mark == marks.end() ? 2.0 : mark->second);
    }
    return values;
}

inline bool eval(Zones & zones, VOZCatMesh const & mesh, Marks const & marks)
{
    CATRawColldouble values = collection(mesh.numNode(), marks);
    return zones.Eval(&values);
}

inline Ints listOf(Zones::INT_LIST const * cell)
{
    Ints result;
    for (; cell; cell = cell->next)
        result.push_back(cell->value);
    return result;
}

inline std::vector<double> rowOf(Vec const & v)
{
    return {v[0], v[1], v[2]};
}

inline std::vector<Zones::Zone const *> zonesOf(Zones & zones) // in the order of creation
{
    std::vector<Zones::Zone const *> result;
    for (Zones::Zone const * zone = zones.GetZones(); zone; zone = zone->next)
        result.insert(result.begin(), zone);
    return result;
}

// 5 x 5 cells of 1 mm, nodes 1 .. 36 row after row: 8 to 11, 14 to 17 ... are inside.
inline Grid plate(bool split = false)
{
    Grid grid;
    grid.columns = grid.rows = 5;
    grid.x1 = grid.y1 = 5;
    grid.split = split;
    return grid;
}

class ZonesTest : public HostFixture
{
};

} // namespace zonesof

#endif
