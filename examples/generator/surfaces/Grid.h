// Grid.h: cells of structured meshes.

#ifndef GRID_H
#define GRID_H

#include "Surfaces.h"

namespace voz::examples
{

// Adds the cell a-b-c-d as a quadrilateral, or as two triangles with the diagonal a-c or b-d.
inline void addCell(SurfaceMesh & mesh, std::array<int, 4> const & cell, Cells cells, bool diagonalFromFirst)
{
    auto const [a, b, c, d] = cell;
    if (cells == Cells::Quads)
        mesh.elements.push_back(cell);
    else if (diagonalFromFirst)
    {
        mesh.elements.push_back({a, b, c, -1});
        mesh.elements.push_back({a, c, d, -1});
    }
    else
    {
        mesh.elements.push_back({a, b, d, -1});
        mesh.elements.push_back({b, c, d, -1});
    }
}

// A sheet of rows x columns cells over node(row, column); node indices run along the columns first.
template <class Node>
SurfaceMesh sheet(int rows, int columns, Cells cells, Node node)
{
    SurfaceMesh mesh;
    for (int row = 0; row <= rows; ++row)
        for (int column = 0; column <= columns; ++column)
            mesh.nodes.push_back(node(row, column));
    int const across = columns + 1;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
        {
            int const first = row * across + column;
            addCell(mesh, {first, first + across, first + across + 1, first + 1}, cells, (row + column) % 2 == 0);
        }
    return mesh;
}

} // namespace voz::examples

#endif
