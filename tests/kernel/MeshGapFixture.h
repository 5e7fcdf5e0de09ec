// MeshGapFixture.h: meshes for the gap between two of them, and the gap by trying every triangle.

#ifndef MESHGAPFIXTURE_H
#define MESHGAPFIXTURE_H

#include "VOZAPIMesh.h"
#include "VOZStatus.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace meshgap
{

using Point = std::array<double, 3>;

struct Surface
{
    std::vector<Point> nodes;
    std::vector<std::array<int, 4>> elements;

    void append(Surface const & other)
    {
        int const offset = static_cast<int>(nodes.size());
        nodes.insert(nodes.end(), other.nodes.begin(), other.nodes.end());
        for (std::array<int, 4> element : other.elements)
        {
            for (int & node : element)
                node += node >= 0 ? offset : 0;
            elements.push_back(element);
        }
    }
    Surface moved(std::function<Point(Point const &)> const & move) const
    {
        Surface result = *this;
        for (Point & node : result.nodes)
            node = move(node);
        return result;
    }
};

inline std::unique_ptr<VOZAPIMesh> kernelMesh(Surface const & surface)
{
    std::unique_ptr<VOZAPIMesh> mesh(VOZAPIMesh::Create());
    mesh->SetNumNodes(static_cast<int>(surface.nodes.size()));
    mesh->SetNumElements(static_cast<int>(surface.elements.size()));
    mesh->AllocateData();
    for (std::size_t i = 0; i < surface.nodes.size(); ++i)
        mesh->SetNodeCoord(static_cast<int>(i), Point(surface.nodes[i]).data());
    for (std::size_t e = 0; e < surface.elements.size(); ++e)
        std::copy(surface.elements[e].begin(), surface.elements[e].end(), mesh->GetElements()[e]);
    return mesh;
}

// Squares, or triangles, over x0..x1, y0..y1.
inline Surface patch(double x0, double x1, double y0, double y1, int nx, int ny,
                     std::function<double(double, double)> const & height, bool triangles = false)
{
    Surface surface;
    for (int j = 0; j <= ny; ++j)
        for (int i = 0; i <= nx; ++i)
        {
            double const x = x0 + (x1 - x0) * i / nx;
            double const y = y0 + (y1 - y0) * j / ny;
            surface.nodes.push_back({x, y, height(x, y)});
        }
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i)
        {
            int const a = j * (nx + 1) + i;
            int const d = a + nx + 1;
            if (triangles)
            {
                surface.elements.push_back({a, a + 1, d + 1, -1});
                surface.elements.push_back({a, d + 1, d, -1});
            }
            else
                surface.elements.push_back({a, a + 1, d + 1, d});
        }
    return surface;
}

inline Surface plane(double x0, double x1, double y0, double y1, double z, int n = 4, bool triangles = false)
{
    return patch(
        x0, x1, y0, y1, n, n, [z](double, double) { return z; }, triangles);
}

struct Gap
{
    long result = 1;
    double least = std::numeric_limits<double>::quiet_NaN();
    double greatest = std::numeric_limits<double>::quiet_NaN();
};

inline Gap gapBetween(Surface const & first, Surface const & second, Point const & direction = {0, 0, 1},
                      double cell = 5.0)
{
    tagVOZFILEINFO info;
    info.m_nVersion = 5;
    Gap gap;
    gap.result = VOZAPIEvalDistanceBetweenMeshes_Average(*kernelMesh(first), *kernelMesh(second), direction.data(),
                                                         cell, info, gap.least, gap.greatest);
    return gap;
}

// The reference: lines in space against every triangle, no projection, no grid.

inline Point minus(Point const & a, Point const & b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline double dot(Point const & a, Point const & b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline Point cross(Point const & a, Point const & b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

using Triangle = std::array<Point, 3>;

inline std::vector<Triangle> trianglesOf(Surface const & surface, Point const & u)
{
    std::vector<Triangle> all;
    for (std::array<int, 4> const & e : surface.elements)
    {
        auto const node = [&](int corner)
        { return surface.nodes[static_cast<std::size_t>(e[static_cast<std::size_t>(corner)])]; };
        if (e[3] < 0)
        {
            all.push_back({node(0), node(1), node(2)});
            continue;
        }
        Point const one = minus(node(0), node(2));
        Point const two = minus(node(1), node(3));
        bool const first = dot(one, one) <= dot(two, two);
        all.push_back({node(0), node(1), node(first ? 2 : 3)});
        all.push_back({node(first ? 0 : 1), node(2), node(3)});
    }
    std::erase_if(all,
                  [&](Triangle const & t)
                  {
                      Point const n = cross(minus(t[1], t[0]), minus(t[2], t[0]));
                      return !(std::fabs(dot(n, u)) > 1e-4 * std::sqrt(dot(n, n)));
                  });
    return all;
}

// The way along u from p to the triangle's plane, by Cramer's rule; true if the triangle itself is met.
inline bool meets(Triangle const & t, Point const & p, Point const & u, double & way)
{
    Point const one = minus(t[1], t[0]);
    Point const two = minus(t[2], t[0]);
    Point const from = minus(p, t[0]);
    double const determinant = dot(one, cross(u, two));
    double const a = dot(from, cross(u, two)) / determinant;
    double const b = dot(u, cross(from, one)) / determinant;
    way = dot(two, cross(from, one)) / determinant;
    return a >= -1e-9 && b >= -1e-9 && a + b <= 1.0 + 1e-9;
}

// Side is 1 where p belongs to the first mesh, -1 where it belongs to the second.
inline void bruteForceFrom(std::vector<Triangle> const & own, std::vector<Triangle> const & other, Point const & u,
                           double side, Gap & gap)
{
    for (Triangle const & triangle : own)
        for (Point const & corner : triangle)
        {
            Point inside = corner;
            for (std::size_t i = 0; i < 3; ++i)
                inside[i] += 1e-3 * ((triangle[0][i] + triangle[1][i] + triangle[2][i]) / 3.0 - corner[i]);
            double way = 0.0;
            bool const hidden =
                std::any_of(own.begin(), own.end(),
                            [&](Triangle const & t) { return meets(t, inside, u, way) && side * way > 1e-7; });
            Triangle const * partner = nullptr;
            double nearest = std::numeric_limits<double>::infinity();
            for (Triangle const & t : other)
                if (meets(t, inside, u, way) && side * way < nearest)
                {
                    nearest = side * way;
                    partner = &t;
                }
            if (hidden || !partner)
                continue;
            meets(*partner, corner, u, way);
            std::array<double, 3> heights{};
            for (std::size_t i = 0; i < 3; ++i)
                heights[i] = dot(minus((*partner)[i], corner), u);
            auto const [low, high] = std::minmax_element(heights.begin(), heights.end());
            way = side * std::clamp(way, *low, *high);
            gap.least = std::min(gap.least, way);
            gap.greatest = std::max(gap.greatest, way);
        }
}

inline Gap bruteForce(Surface const & first, Surface const & second, Point u)
{
    double const length = std::sqrt(dot(u, u));
    for (double & component : u)
        component /= length;
    std::vector<Triangle> const one = trianglesOf(first, u);
    std::vector<Triangle> const two = trianglesOf(second, u);
    Gap gap{0, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    bruteForceFrom(one, two, u, 1.0, gap);
    bruteForceFrom(two, one, u, -1.0, gap);
    if (!(gap.least <= gap.greatest))
        gap = {E_FAIL, 0.0, 0.0};
    return gap;
}

// Turns by a random rotation, the same for all points.
class RandomTurn
{
public:
    explicit RandomTurn(std::mt19937 & random)
    {
        std::normal_distribution<double> normal;
        std::array<double, 4> q = {normal(random), normal(random), normal(random), normal(random)};
        double const length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
        m_axis = {q[1] / length, q[2] / length, q[3] / length};
        m_real = q[0] / length;
    }
    Point operator()(Point const & p) const // of the unit quaternion
    {
        Point const once = cross(m_axis, p);
        Point const twice = cross(m_axis, once);
        return {p[0] + 2.0 * (m_real * once[0] + twice[0]), p[1] + 2.0 * (m_real * once[1] + twice[1]),
                p[2] + 2.0 * (m_real * once[2] + twice[2])};
    }

private:
    Point m_axis;
    double m_real;
};

} // namespace meshgap

#endif
