// NodeAt.h: the node of a part that lies nearest to a place seen from above.

#ifndef NODEAT_H
#define NODEAT_H

#include "OneStepMeshes.h"

#include <cmath>

namespace onesteptest
{

inline int nodeAt(Problem const & problem, double x, double y) // mm
{
    int nearest = 0;
    auto const distance = [&](int i)
    { return std::hypot(problem.nodes[at(i)][0] - 0.001 * x, problem.nodes[at(i)][1] - 0.001 * y); };
    for (int i = 1; i < static_cast<int>(problem.nodes.size()); ++i)
        if (distance(i) < distance(nearest))
            nearest = i;
    return nearest;
}

} // namespace onesteptest

#endif
