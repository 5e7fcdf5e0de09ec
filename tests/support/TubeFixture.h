// TubeFixture.h: closed tubes for tests, and what is asked of them. Tubes lie along x: node (i, j) is station i along
// the axis and j around it, angles from +z to +y.

#ifndef TUBEFIXTURE_H
#define TUBEFIXTURE_H

#include "ElemProperty.h"
#include "HostFixture.h"
#include "SampleMeshes.h"
#include "Tube.h"
#include "VOZCatAxis.h"

#include <cmath>
#include <optional>

namespace tubes
{
using samples::Ints;
using samples::Point;
using samples::Points;
using samples::Quads;
using samples::Triangles;

constexpr double kPi = 3.141592653589793;

inline std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

enum class Cells
{
    quads,
    triangles,
    mixed
};

struct Pipe
{
    int around = 12;
    int along = 6;
    double radius = 10.0;
    double length = 30.0;
    double angle = 0.0; // of node (i, 0)
    Cells cells = Cells::quads;

    int node(int i, int j) const { return i * around + (j + around) % around + 1; }

    VOZCatMesh mesh() const
    {
        Points points;
        for (int i = 0; i <= along; ++i)
            for (int j = 0; j < around; ++j)
            {
                double const turn = angle + 2.0 * kPi * j / around;
                points.push_back({length * i / along, radius * std::sin(turn), radius * std::cos(turn)});
            }
        Quads rows;
        for (int i = 0; i < along; ++i)
            for (int j = 0; j < around; ++j)
            {
                int const a = node(i, j);
                int const b = node(i + 1, j);
                int const c = node(i + 1, j + 1);
                int const d = node(i, j + 1);
                if (cells == Cells::quads || (cells == Cells::mixed && (i * 7 + j * 3) % 5 < 2))
                    rows.push_back({a, b, c, d});
                else
                {
                    rows.push_back({a, b, c, a});
                    rows.push_back({a, c, d, a});
                }
            }
        return samples::mesh(points, rows);
    }
};

inline VOZCatAxis turnedFrame()
{
    VOZCatAxis frame;
    double const s = std::sqrt(0.5);
    double const rows[3][3] = {{s, s, 0}, {0, 0, 1}, {s, -s, 0}};
    double const origin[3] = {100, -20, 7};
    for (int i = 0; i < 3; ++i)
        frame.axis(i, Vec(static_cast<double const *>(rows[i])));
    frame.origin(Vec(static_cast<double const *>(origin)));
    return frame;
}

inline Points pointsOf(VOZCatMesh const & mesh)
{
    Points result;
    for (int n = 1; n <= mesh.numNode(); ++n)
        result.push_back({mesh.NodeValue(n, 0), mesh.NodeValue(n, 1), mesh.NodeValue(n, 2)});
    return result;
}

inline Quads rowsOf(VOZCatMesh const & mesh)
{
    Quads result;
    for (int e = 1; e <= mesh.numElem(); ++e)
        result.push_back(
            {mesh.ElementValue(e, 0), mesh.ElementValue(e, 1), mesh.ElementValue(e, 2), mesh.ElementValue(e, 3)});
    return result;
}

inline Ints nodesOf(DispBC const & table)
{
    return Ints(table.nodes, table.nodes + table.size);
}

// A job with room for the two tables behind those already there.
struct Opened
{
    VOZCatMesh mesh;
    ElemProperty property;
    VOZCatAxis axis;
    std::optional<Tube> tube;
    bool isOpen;

    explicit Opened(VOZCatMesh const & i_mesh, double factor = 1.0, double radius = 0.0, int tables = 2) : mesh(i_mesh)
    {
        property.sizeDispBC(tables);
        tube.emplace(mesh, property, axis, radius);
        isOpen = tube->Eval(factor);
    }
    Opened(Opened const &) = delete;
    Opened & operator=(Opened const &) = delete;
};

class TubeTest : public HostFixture
{
};
} // namespace tubes

#endif
