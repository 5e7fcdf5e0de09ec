// ProcessRecordsFixture.h: filled records of a process definition.

#ifndef PROCESSRECORDSFIXTURE_H
#define PROCESSRECORDSFIXTURE_H

#include "ElemProperty.h"

#include <algorithm>
#include <cstddef>
#include <vector>

inline int * arrayOf(std::vector<int> const & values)
{
    int * const array = new int[values.size()];
    std::copy(values.begin(), values.end(), array);
    return array;
}

inline DrawBead beadWith(int edges)
{
    DrawBead bead;
    bead.edgeCount = edges;
    bead.force = 120.0;
    bead.uplift = 3.0;
    bead.edges = new EdgeProperty[static_cast<std::size_t>(edges)];
    for (int i = 0; i < edges; ++i)
        bead.edges[i].element = 10 + i;
    bead.xyzCount = 2;
    bead.xyz = new double[6]{1, 2, 3, 4, 5, 6};
    return bead;
}

inline BlankHolder holderWith(int edges)
{
    BlankHolder holder;
    holder.edgeCount = edges;
    holder.force = 5000.0;
    holder.values[2] = 7.0;
    holder.edges = new EdgeProperty[static_cast<std::size_t>(edges)];
    for (int i = 0; i < edges; ++i)
        holder.edges[i].node1 = 20 + i;
    return holder;
}

inline DispBC tableWith(std::vector<int> const & nodes)
{
    DispBC table(static_cast<int>(nodes.size()));
    std::copy(nodes.begin(), nodes.end(), table.nodes);
    return table;
}

#endif
