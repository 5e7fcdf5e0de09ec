// ExportMeshes.h: a mesh of both kinds of elements for the exports, and one of random shape.

#ifndef EXPORTMESHES_H
#define EXPORTMESHES_H

#include "SampleMeshes.h"

#include <random>

namespace exportmeshes
{
//   4---3
//   | 1 |\       element 1: 1 2 3 4; element 2: 2 5 3
//   1---2-5
inline VOZCatMesh pair(samples::Points const & points)
{
    return samples::mesh(points, samples::Quads{{1, 2, 3, 4}, {2, 5, 3, 2}});
}

// A grid whose nodes are shaken, cells in two triangles or whole as it comes, labels from the offsets onward. No node
// is without an element.
inline VOZCatMesh random(std::mt19937 & io_generator, int i_columns, int i_rows, int i_nodeOffset, int i_elemOffset)
{
    std::uniform_real_distribution<double> shake(-0.3, 0.3);
    samples::Grid grid;
    samples::Points points;
    grid.columns = i_columns;
    grid.rows = i_rows;
    samples::Quads cells;
    for (int row = 0; row <= i_rows; ++row)
        for (int column = 0; column <= i_columns; ++column)
            points.push_back(
                {7.0 * (column + shake(io_generator)), 7.0 * (row + shake(io_generator)), 20.0 * shake(io_generator)});
    for (int row = 0; row < i_rows; ++row)
        for (int column = 0; column < i_columns; ++column)
        {
            int const a = grid.node(column, row);
            int const b = grid.node(column + 1, row);
            int const c = grid.node(column + 1, row + 1);
            int const d = grid.node(column, row + 1);
            if (shake(io_generator) > 0.0)
                cells.push_back({a, b, c, d});
            else
            {
                cells.push_back({a, b, c, a});
                cells.push_back({a, c, d, a});
            }
        }
    VOZCatMesh mesh = samples::mesh(points, cells);
    mesh.IdsOffset(i_nodeOffset, i_elemOffset);
    return mesh;
}
} // namespace exportmeshes

#endif
