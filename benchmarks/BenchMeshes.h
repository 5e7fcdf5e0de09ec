// BenchMeshes.h: the meshes of the measurements.

#ifndef BENCHMESHES_H
#define BENCHMESHES_H

#include "Mesh.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

namespace benchmeshes
{
// 0, 1 .. n, the numbers from 1 at random places if scattered.
inline std::vector<int> oneTo(int n, bool scattered)
{
    std::vector<int> result(static_cast<std::size_t>(n) + 1);
    std::iota(result.begin(), result.end(), 0);
    if (scattered)
        std::shuffle(result.begin() + 1, result.end(), std::mt19937(1));
    return result;
}

inline bool isHole(int column, int row, int cells)
{
    int const third = cells / 3;
    return column >= third && column < 2 * third && row >= third && row < 2 * third;
}

// A plate of about that many triangles, domed, with a square hole of a ninth of its area.
inline VOZCatMesh dome(int triangles, bool scattered)
{
    int const cells = static_cast<int>(std::lround(std::sqrt(triangles / 2.0 * 9.0 / 8.0)));
    int const side = cells + 1;
    int const hole = (cells / 3) * (cells / 3);
    VOZCatMesh mesh(side * side, 2 * (cells * cells - hole));
    std::vector<int> const node = oneTo(mesh.numNode(), scattered);
    std::vector<int> const elem = oneTo(mesh.numElem(), scattered);
    auto const at = [&](int column, int row) { return node[static_cast<std::size_t>(row * side + column) + 1]; };
    std::size_t e = 0;
    auto const add = [&](int a, int b, int c)
    {
        int * const row = mesh.GetElemData()[elem[++e]];
        row[0] = row[3] = a;
        row[1] = b;
        row[2] = c;
    };
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column)
        {
            double const x = 300.0 * column / cells;
            double const y = 300.0 * row / cells;
            double * const point = mesh.GetNodeData()[at(column, row)];
            point[0] = x;
            point[1] = y;
            point[2] = 40.0 * std::sin(x / 95.0) * std::sin(y / 95.0) + 0.1 * x;
            if (column == cells || row == cells || isHole(column, row, cells))
                continue;
            add(at(column, row), at(column + 1, row), at(column + 1, row + 1));
            add(at(column, row), at(column + 1, row + 1), at(column, row + 1));
        }
    return mesh;
}
} // namespace benchmeshes

#endif
