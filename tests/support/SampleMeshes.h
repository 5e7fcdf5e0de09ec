// SampleMeshes.h: small meshes for tests: built from lists of rows, or one of a named set.
//
// Rows are written as they are drawn: node positions, 0-based lists whose entry r is position r + 1. A triangle is
// given by three entries.

#ifndef SAMPLEMESHES_H
#define SAMPLEMESHES_H

#include "Mesh.h"

#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace samples
{
using Point = std::array<double, 3>;
using Points = std::vector<Point>;
using Ints = std::vector<int>;
using Quads = std::vector<std::array<int, 4>>;
using Triangles = std::vector<std::array<int, 3>>;

inline VOZCatMesh mesh(Points const & points, Quads const & rows)
{
    VOZCatMesh result(static_cast<int>(points.size()), static_cast<int>(rows.size()));
    for (std::size_t n = 0; n < points.size(); ++n)
        for (std::size_t c = 0; c < 3; ++c)
            result.GetNodeData()[n + 1][c] = points[n][c];
    for (std::size_t e = 0; e < rows.size(); ++e)
        for (std::size_t k = 0; k < 4; ++k)
            result.GetElemData()[e + 1][k] = rows[e][k];
    return result;
}

inline Quads closed(Triangles const & rows)
{
    Quads result;
    for (std::array<int, 3> const & row : rows)
        result.push_back({row[0], row[1], row[2], row[0]});
    return result;
}

inline VOZCatMesh mesh(Points const & points, Triangles const & rows)
{
    return mesh(points, closed(rows));
}

// Nodes on a circle, so that no two coincide and no boundary degenerates, for meshes whose numbers alone matter.
inline Points anyPoints(Quads const & rows)
{
    int highest = 0;
    for (std::array<int, 4> const & row : rows)
        for (int const n : row)
            highest = n > highest ? n : highest;
    Points result;
    for (int n = 0; n < highest; ++n)
        result.push_back({std::cos(6.2831853 * n / highest), std::sin(6.2831853 * n / highest), 0.0});
    return result;
}

inline VOZCatMesh quads(Quads const & rows)
{
    return mesh(anyPoints(rows), rows);
}

inline VOZCatMesh triangles(Triangles const & rows)
{
    return quads(closed(rows));
}

using Surface = std::function<Point(double, double)>;

inline Point flat(double x, double y)
{
    return {x, y, 0.0};
}

// A grid of columns x rows cells over [x0, x1] x [y0, y1]; nodes row after row from (x0, y0), cells likewise,
// counter-clockwise. Cells that `drop` names by (column, row) are left out; their nodes stay.
struct Grid
{
    int columns = 4;
    int rows = 4;
    double x0 = 0.0;
    double x1 = 1.0;
    double y0 = 0.0;
    double y1 = 1.0;
    bool split = false; // each cell into two triangles
    Surface surface = flat;
    std::function<bool(int, int)> drop = [](int, int) { return false; };

    int node(int column, int row) const { return row * (columns + 1) + column + 1; }

    VOZCatMesh mesh() const
    {
        Points points;
        for (int row = 0; row <= rows; ++row)
            for (int column = 0; column <= columns; ++column)
                points.push_back(surface(x0 + (x1 - x0) * column / columns, y0 + (y1 - y0) * row / rows));
        Quads cells;
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column)
            {
                if (drop(column, row))
                    continue;
                int const a = node(column, row);
                int const b = node(column + 1, row);
                int const c = node(column + 1, row + 1);
                int const d = node(column, row + 1);
                if (split)
                {
                    cells.push_back({a, b, c, a});
                    cells.push_back({a, c, d, a});
                }
                else
                    cells.push_back({a, b, c, d});
            }
        return samples::mesh(points, cells);
    }
};

// The faces of the unit cube, outwards.
inline VOZCatMesh closedBox()
{
    return mesh(Points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}},
                Quads{{1, 4, 3, 2}, {5, 6, 7, 8}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}});
}

// A hat section across x: brim, wall, top, wall, brim; vertical walls.
inline VOZCatMesh hat()
{
    double const profile[6][2] = {{0, 0}, {2, 0}, {2, 1}, {4, 1}, {4, 0}, {6, 0}};
    Points points;
    for (double const y : {0.0, 1.5, 3.0})
        for (double const(&corner)[2] : profile)
            points.push_back({corner[0], y, corner[1]});
    Quads cells;
    for (int row = 0; row < 2; ++row)
        for (int i = 1; i <= 5; ++i)
            cells.push_back({row * 6 + i, row * 6 + i + 1, row * 6 + i + 7, row * 6 + i + 6});
    return mesh(points, cells);
}

// A plate of two concentric squares' worth of cells with a hole in the middle.
inline Grid plateWithHole(int cells = 5, bool split = false)
{
    Grid grid;
    grid.columns = grid.rows = cells;
    grid.x1 = grid.y1 = cells;
    grid.split = split;
    int const middle = cells / 2;
    grid.drop = [middle](int column, int row) { return column == middle && row == middle; };
    return grid;
}

struct Sample
{
    std::string name;
    VOZCatMesh mesh;
};

// Consistently oriented, manifold meshes whose boundaries are simple closed curves.
inline std::vector<Sample> cleanSamples()
{
    Grid dome;
    dome.columns = 7;
    dome.rows = 5;
    dome.split = true;
    dome.surface = [](double x, double y) { return Point{x, y, 0.3 * std::sin(3.0 * x) * std::cos(2.0 * y)}; };
    return {
        {"one triangle", triangles({{1, 2, 3}})},
        {"one quadrilateral", quads({{1, 2, 3, 4}})},
        {"two triangles", triangles({{1, 2, 3}, {1, 3, 4}})},
        {"a triangle beside a quadrilateral", quads({{1, 2, 3, 4}, {2, 5, 3, 2}})},
        {"two patches", quads({{1, 2, 3, 4}, {5, 6, 7, 5}})},
        {"plate with hole, quadrilaterals", plateWithHole().mesh()},
        {"plate with hole, triangles", plateWithHole(5, true).mesh()},
        {"dome", dome.mesh()},
        {"hat", hat()},
    };
}
} // namespace samples

#endif
