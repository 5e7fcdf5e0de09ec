// ToolMeshesFixture.h: parts with exact sizes as jobs, flat blanks made up for them, and slow measurements of tools.

#ifndef TOOLMESHESFIXTURE_H
#define TOOLMESHESFIXTURE_H

#include "ToolMeshes.h"
#include "ToolSurface.h"
#include "surfaces/Surfaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace toolcases
{
using voz::workbench::Point3;

constexpr double kThickness = 1.0;

inline VOZCatMesh meshOf(voz::examples::SurfaceMesh const & i_surface)
{
    VOZCatMesh mesh(static_cast<int>(i_surface.nodes.size()), static_cast<int>(i_surface.elements.size()));
    for (std::size_t n = 0; n < i_surface.nodes.size(); ++n)
        std::ranges::copy(i_surface.nodes[n], mesh.GetNodeData()[n + 1]);
    for (std::size_t e = 0; e < i_surface.elements.size(); ++e)
        for (std::size_t k = 0; k < 4; ++k)
        {
            int const node = i_surface.elements[e][k];
            mesh.GetElemData()[e + 1][k] = (node < 0 ? i_surface.elements[e][0] : node) + 1;
        }
    return mesh;
}

inline voz::workbench::WholeJob jobOf(voz::examples::SurfaceMesh const & i_surface,
                                      std::vector<voz::workbench::JobPlane> const & i_planes = {})
{
    voz::workbench::Job job;
    job.path = "job.toml";
    job.mesh = "part.bdf";
    job.thickness = kThickness;
    job.planes = i_planes;
    voz::workbench::JobModel model;
    model.mesh.mesh = meshOf(i_surface);
    for (int n = 1; n <= model.mesh.mesh.numNode(); ++n)
        model.mesh.nodeIds.push_back(n);
    for (int e = 1; e <= model.mesh.mesh.numElem(); ++e)
        model.mesh.elementIds.push_back(e);
    return MakeWholeJob(job, model, voz::workbench::FindTipping(job, model));
}

// A blank that is wider than the part by its height: each node goes outward by how far it is from the level of the
// part's middle. Strips keep their y.
inline voz::workbench::Outcome flatOf(voz::workbench::WholeJob const & i_whole, bool i_isStrip = false)
{
    voz::workbench::Surface const part = voz::workbench::SurfaceOf(i_whole.part.mesh, i_whole.tipping.frame);
    voz::workbench::PointBox const box = part.Box();
    double const x0 = 0.5 * (box.low[0] + box.high[0]);
    double const y0 = 0.5 * (box.low[1] + box.high[1]);
    double middle = 0.0;
    double nearest = INFINITY;
    for (Point3 const & p : part.nodes)
        if (std::hypot(p[0] - x0, p[1] - y0) < nearest)
        {
            nearest = std::hypot(p[0] - x0, p[1] - y0);
            middle = p[2];
        }
    voz::workbench::Outcome flat;
    int model = -1;
    for (int const n : i_whole.part.nodeOf)
        model = std::max(model, n);
    flat.nodes.resize(static_cast<std::size_t>(model) + 1);
    for (std::size_t n = 0; n < flat.nodes.size(); ++n) // the model's nodes are the whole's first
    {
        Point3 const & p = part.nodes[n];
        double const x = p[0] - x0;
        double const y = p[1] - y0;
        double const across = i_isStrip ? std::abs(x) : std::hypot(x, y);
        double const wider = across > 1e-9 ? 1.0 + std::abs(p[2] - middle) / across : 1.0;
        flat.nodes[n].flat = {x0 + wider * x, i_isStrip ? p[1] : y0 + wider * y, 0.0};
    }
    return flat;
}

inline voz::workbench::Surface surfaceOf(VOZCatMesh const & i_mesh)
{
    return voz::workbench::SurfaceOf(i_mesh, VOZCatAxis());
}

struct Triangle
{
    Point3 a, b, c;
};

inline std::vector<Triangle> trianglesOf(voz::workbench::Surface const & i_surface)
{
    std::vector<Triangle> triangles;
    for (auto const & row : i_surface.elements)
    {
        triangles.push_back({i_surface.At(row[0]), i_surface.At(row[1]), i_surface.At(row[2])});
        if (voz::workbench::Surface::Corners(row) == 4)
            triangles.push_back({i_surface.At(row[0]), i_surface.At(row[2]), i_surface.At(row[3])});
    }
    return triangles;
}

inline double distanceToSegment(Point3 const & p, Point3 const & a, Point3 const & b)
{
    using namespace voz::workbench;
    Point3 const ab = Difference(b, a);
    double const t = std::clamp(Dot(Difference(p, a), ab) / Dot(ab, ab), 0.0, 1.0);
    return Length(Difference(p, Sum(a, ab, t)));
}

inline double distanceTo(Point3 const & p, Triangle const & t)
{
    using namespace voz::workbench;
    Point3 const normal = Unit(Cross(Difference(t.b, t.a), Difference(t.c, t.a)));
    auto const isInside = [&](Point3 const & a, Point3 const & b)
    { return Dot(Cross(Difference(b, a), Difference(p, a)), normal) >= 0.0; };
    if (isInside(t.a, t.b) && isInside(t.b, t.c) && isInside(t.c, t.a))
        return std::abs(Dot(Difference(p, t.a), normal));
    return std::min({distanceToSegment(p, t.a, t.b), distanceToSegment(p, t.b, t.c), distanceToSegment(p, t.c, t.a)});
}

// Least and greatest distance of the middles of the first surface's elements from the second, every pair looked at.
inline std::pair<double, double> distances(voz::workbench::Surface const & i_from, voz::workbench::Surface const & i_to)
{
    std::vector<Triangle> const triangles = trianglesOf(i_to);
    std::pair<double, double> range{INFINITY, 0.0};
    for (auto const & row : i_from.elements)
    {
        Point3 middle{};
        int const corners = voz::workbench::Surface::Corners(row);
        for (int k = 0; k < corners; ++k)
            middle = voz::workbench::Sum(middle, i_from.At(row[static_cast<std::size_t>(k)]), 1.0 / corners);
        double nearest = INFINITY;
        for (Triangle const & t : triangles)
            nearest = std::min(nearest, distanceTo(middle, t));
        range.first = std::min(range.first, nearest);
        range.second = std::max(range.second, nearest);
    }
    return range;
}

// The smallest way along +z from a node of the lower surface to the upper one, or from a node of the upper down to the
// lower; what stands on edge in that view counts for nothing.
inline double smallestGap(voz::workbench::Surface const & i_lower, voz::workbench::Surface const & i_upper)
{
    double least = INFINITY;
    auto const look =
        [&least](std::vector<Point3> const & i_nodes, std::vector<Triangle> const & i_triangles, double sign)
    {
        for (Point3 const & p : i_nodes)
            for (Triangle const & t : i_triangles)
            {
                auto const turn = [&p](Point3 const & a, Point3 const & b)
                { return (b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0]); };
                double const area = (t.b[0] - t.a[0]) * (t.c[1] - t.a[1]) - (t.b[1] - t.a[1]) * (t.c[0] - t.a[0]);
                Point3 const normal =
                    voz::workbench::Cross(voz::workbench::Difference(t.b, t.a), voz::workbench::Difference(t.c, t.a));
                double const c = turn(t.a, t.b) / area;
                double const a = turn(t.b, t.c) / area;
                double const b = turn(t.c, t.a) / area;
                if (std::abs(area) < 1e-4 * voz::workbench::Length(normal) || a < -1e-9 || b < -1e-9 || c < -1e-9)
                    continue;
                least = std::min(least, sign * (a * t.a[2] + b * t.b[2] + c * t.c[2] - p[2]));
            }
    };
    look(i_lower.nodes, trianglesOf(i_upper), 1.0);
    look(i_upper.nodes, trianglesOf(i_lower), -1.0);
    return least;
}

// Pairs of neighbours that face against each other by more than 120 degrees: a surface folded over.
inline int foldedPairs(voz::workbench::Surface const & i_surface)
{
    using namespace voz::workbench;
    ElementNeighbours const neighbours(i_surface);
    int folded = 0;
    for (std::size_t e = 0; e < i_surface.elements.size(); ++e)
        neighbours.ForEach(static_cast<int>(e),
                           [&](int other)
                           {
                               Point3 const a = Unit(i_surface.AreaVector(i_surface.elements[e]));
                               Point3 const b =
                                   Unit(i_surface.AreaVector(i_surface.elements[static_cast<std::size_t>(other)]));
                               folded += Dot(a, b) < -0.5 ? 1 : 0;
                           });
    return folded / 2;
}

// Whether a place, seen from above, lies inside of a rim: by crossings of a ray.
inline bool isInside(Point3 const & p, voz::workbench::Surface const & i_surface)
{
    bool inside = false;
    for (voz::workbench::RimEdge const & edge : voz::workbench::FreeEdgesOf(i_surface))
    {
        Point3 const & a = i_surface.At(edge.from);
        Point3 const & b = i_surface.At(edge.to);
        if ((a[1] > p[1]) != (b[1] > p[1]) && p[0] < a[0] + (p[1] - a[1]) * (b[0] - a[0]) / (b[1] - a[1]))
            inside = !inside;
    }
    return inside;
}

inline std::vector<Point3> sortedNodes(VOZCatMesh const & i_mesh)
{
    std::vector<Point3> nodes = surfaceOf(i_mesh).nodes;
    for (Point3 & p : nodes)
        for (double & c : p)
            c = std::round(c * 1e6) / 1e6 + 0.0;
    std::ranges::sort(nodes);
    return nodes;
}
} // namespace toolcases

#endif
