// SyntheticOutcome.h: an outcome made by hand: a plate with a round hole, flat in the xy plane, its values known in
// closed form.

#ifndef SYNTHETICOUTCOME_H
#define SYNTHETICOUTCOME_H

#include "Outcome.h"

#include <cmath>
#include <numbers>

namespace voz::workbench::test
{

// A ring of quadrilaterals between a circle of radius `hole` and the outline of a rectangle, `around` columns (a
// multiple of 8), `across` rows.
//
//     +-----------+
//     |   ,---.   |      node (column j, row i) stands at position i * around + j + 1
//     |  (     )  |
//     |   `---'   |
//     +-----------+
inline Outcome plateWithHole(double width, double height, double hole, int around, int across)
{
    Outcome outcome;
    int const numNode = around * (across + 1);
    outcome.part = VOZCatMesh(numNode, around * across);
    double(*nodes)[3] = outcome.part.GetNodeData();
    for (int i = 0; i <= across; ++i)
        for (int j = 0; j < around; ++j)
        {
            double const angle = 2.0 * std::numbers::pi * j / around;
            double const c = std::cos(angle);
            double const s = std::sin(angle);
            double const reach =
                std::min(0.5 * width / std::max(std::abs(c), 1e-12), 0.5 * height / std::max(std::abs(s), 1e-12));
            double const radius = hole + (reach - hole) * i / across;
            double * const row = nodes[i * around + j + 1];
            row[0] = radius * c;
            row[1] = radius * s;
            row[2] = 0.0;
        }
    int(*elems)[4] = outcome.part.GetElemData();
    for (int i = 0; i < across; ++i)
        for (int j = 0; j < around; ++j)
        {
            int * const row = elems[i * around + j + 1];
            int const next = (j + 1) % around;
            row[0] = i * around + j + 1;
            row[1] = (i + 1) * around + j + 1;
            row[2] = (i + 1) * around + next + 1;
            row[3] = i * around + next + 1;
        }
    outcome.title = "plate & hole <test>";
    outcome.route = "file";
    outcome.materialName = "mild steel";
    outcome.firstThickness = 0.8;
    outcome.density = 7850.0;
    outcome.limit = FormingLimit(1.6, 0.2, 0.8, 10.0, 8.0, 35.0, 0);
    outcome.nodes.resize(static_cast<std::size_t>(numNode));
    for (int n = 1; n <= numNode; ++n)
    {
        NodeOutcome & node = outcome.nodes[static_cast<std::size_t>(n - 1)];
        node.flat = {nodes[n][0], nodes[n][1], 0.0};
        node.thickness = 0.8;
    }
    outcome.elements.resize(static_cast<std::size_t>(around * across));
    outcome.undercut.assign(outcome.elements.size(), 0);
    for (std::size_t e = 0; e < outcome.elements.size(); ++e)
    {
        ElementOutcome & element = outcome.elements[e];
        element.major = 5.0 + 0.1 * static_cast<double>(e);
        element.minor = -2.0;
        element.thickness = 0.8 - 0.001 * static_cast<double>(e);
        element.thinning = 100.0 * (0.8 - element.thickness) / 0.8;
        element.safety = e % 2 == 0 ? 2 : 1;
        element.forming = 2;
    }
    return outcome;
}

} // namespace voz::workbench::test

#endif
