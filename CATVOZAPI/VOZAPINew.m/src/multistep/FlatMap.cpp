// FlatMap.cpp: point location on a uniform grid, and the way out over the rim.

#include "multistep/FlatMap.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::multistep
{

using geometry::Cell;
using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kOnTheEdge = -1.0e-9; // least share of a corner for a point that counts as inside
constexpr int kMostBoxes = 1000;       // along either side of the grid

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

std::vector<std::array<int, 3>> trianglesOf(geometry::SurfaceMesh const & i_mesh)
{
    std::vector<std::array<int, 3>> triangles;
    for (Cell const & cell : i_mesh.cells)
    {
        triangles.push_back({cell.node[0], cell.node[1], cell.node[2]});
        if (cell.count == 4)
            triangles.push_back({cell.node[0], cell.node[2], cell.node[3]});
    }
    return triangles;
}

FlatMap::FlatMap(onestep::Piece const & i_piece, std::span<Vec2 const> i_flat)
    : m_piece(i_piece), m_flat(i_flat), m_triangles(trianglesOf(i_piece.mesh))
{
    layGradients();
    layGrid();
}

// Weights are the flat areas, so that a triangle adds its gradient times the area without a division.
void FlatMap::layGradients()
{
    m_gradients.assign(m_flat.size(), {});
    std::vector<double> weight(m_flat.size(), 0.0);
    std::vector<Vec3> const & x = m_piece.mesh.position;
    for (auto const & [a, b, c] : m_triangles)
    {
        Vec2 const u = m_flat[at(b)] - m_flat[at(a)], v = m_flat[at(c)] - m_flat[at(a)];
        Vec3 const p = x[at(b)] - x[at(a)], q = x[at(c)] - x[at(a)];
        double const sign = cross(u, v) < 0.0 ? -1.0 : 1.0;
        Vec3 const first = sign * (v.y * p - u.y * q), second = sign * (u.x * q - v.x * p);
        for (int const node : {a, b, c})
        {
            Gradient & sum = m_gradients[at(node)];
            sum = {sum.first + first, sum.second + second};
            weight[at(node)] += std::abs(cross(u, v));
        }
    }
    for (std::size_t i = 0; i < weight.size(); ++i)
        if (weight[i] > 0.0)
            m_gradients[i] = {(1.0 / weight[i]) * m_gradients[i].first, (1.0 / weight[i]) * m_gradients[i].second};
}

void FlatMap::layGrid()
{
    double const infinite = std::numeric_limits<double>::infinity();
    Vec2 low{infinite, infinite}, high{-infinite, -infinite};
    for (Vec2 const x : m_flat)
    {
        low = {std::min(low.x, x.x), std::min(low.y, x.y)};
        high = {std::max(high.x, x.x), std::max(high.y, x.y)};
    }
    double const wide = high.x - low.x, tall = high.y - low.y;
    m_corner = low;
    m_width =
        std::max(std::sqrt(wide * tall / static_cast<double>(m_triangles.size())), std::max(wide, tall) / kMostBoxes);
    m_columns = 1 + static_cast<int>(wide / m_width);
    m_rows = 1 + static_cast<int>(tall / m_width);
    m_boxes.assign(at(m_columns) * at(m_rows), {});
    for (std::size_t t = 0; t < m_triangles.size(); ++t)
    {
        auto const & [a, b, c] = m_triangles[t];
        auto const [left, right] = std::minmax({m_flat[at(a)].x, m_flat[at(b)].x, m_flat[at(c)].x});
        auto const [bottom, top] = std::minmax({m_flat[at(a)].y, m_flat[at(b)].y, m_flat[at(c)].y});
        std::size_t const first = box({left, bottom}), last = box({right, top});
        for (std::size_t row = first / at(m_columns); row <= last / at(m_columns); ++row)
            for (std::size_t column = first % at(m_columns); column <= last % at(m_columns); ++column)
                m_boxes[row * at(m_columns) + column].push_back(static_cast<int>(t));
    }
}

std::size_t FlatMap::box(Vec2 i_place) const
{
    double const column = std::clamp((i_place.x - m_corner.x) / m_width, 0.0, static_cast<double>(m_columns - 1));
    double const row = std::clamp((i_place.y - m_corner.y) / m_width, 0.0, static_cast<double>(m_rows - 1));
    return static_cast<std::size_t>(row) * at(m_columns) + static_cast<std::size_t>(column);
}

bool FlatMap::holds(int i_triangle, Vec2 i_place, std::array<double, 3> & o_share) const
{
    auto const & [a, b, c] = m_triangles[at(i_triangle)];
    Vec2 const u = m_flat[at(b)] - m_flat[at(a)], v = m_flat[at(c)] - m_flat[at(a)], w = i_place - m_flat[at(a)];
    double const twice = cross(u, v);
    o_share[1] = cross(w, v) / twice;
    o_share[2] = cross(u, w) / twice;
    o_share[0] = 1.0 - o_share[1] - o_share[2];
    return std::min({o_share[0], o_share[1], o_share[2]}) >= kOnTheEdge;
}

Vec3 FlatMap::position(Vec2 i_place) const
{
    std::vector<Vec3> const & x = m_piece.mesh.position;
    std::array<double, 3> share{};
    for (int const t : m_boxes[box(i_place)])
        if (holds(t, i_place, share))
        {
            auto const & [a, b, c] = m_triangles[at(t)];
            return share[0] * x[at(a)] + share[1] * x[at(b)] + share[2] * x[at(c)];
        }
    return beyondRim(i_place);
}

Vec3 FlatMap::beyondRim(Vec2 i_place) const
{
    double least = std::numeric_limits<double>::infinity(), share = 0.0;
    geometry::Side const * nearest = nullptr;
    for (geometry::Side const & side : m_piece.sides.free)
    {
        Vec2 const a = m_flat[at(side.a)], along = m_flat[at(side.b)] - a;
        double const t = std::clamp(dot(i_place - a, along) / dot(along, along), 0.0, 1.0);
        Vec2 const way = i_place - (a + t * along);
        if (dot(way, way) < least)
        {
            least = dot(way, way);
            share = t;
            nearest = &side;
        }
    }
    if (nearest == nullptr)
        return {};
    std::size_t const a = at(nearest->a), b = at(nearest->b);
    auto const mix = [share](Vec3 first, Vec3 second) { return (1.0 - share) * first + share * second; };
    Vec2 const way = i_place - ((1.0 - share) * m_flat[a] + share * m_flat[b]);
    return mix(m_piece.mesh.position[a], m_piece.mesh.position[b]) +
           way.x * mix(m_gradients[a].first, m_gradients[b].first) +
           way.y * mix(m_gradients[a].second, m_gradients[b].second);
}

} // namespace voz::multistep
