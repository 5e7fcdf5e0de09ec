// FormedSurface.cpp: nearest points through a grid of boxes.

#include "multistep/FormedSurface.h"

#include "multistep/FlatMap.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::multistep
{

using geometry::Vec3;

namespace
{

constexpr double kMostBoxes = 100.0; // along any side of the grid

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

Vec3 least(Vec3 a, Vec3 b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)};
}
Vec3 greatest(Vec3 a, Vec3 b)
{
    return {std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)};
}

} // namespace

FormedSurface::FormedSurface(onestep::Piece const & i_piece)
    : m_piece(i_piece), m_triangles(trianglesOf(i_piece.mesh)), m_onRim(i_piece.mesh.position.size(), false)
{
    for (geometry::Side const & side : i_piece.rimSides)
    {
        m_rim.insert(std::minmax(side.a, side.b));
        m_onRim[at(side.a)] = m_onRim[at(side.b)] = true;
    }
    layGrid();
}

void FormedSurface::layGrid()
{
    std::vector<Vec3> const & x = m_piece.mesh.position;
    Vec3 low = x.front(), high = x.front();
    for (Vec3 const p : x)
    {
        low = least(low, p);
        high = greatest(high, p);
    }
    double sum = 0.0;
    for (auto const & [a, b, c] : m_triangles)
        sum += length(x[at(b)] - x[at(a)]) + length(x[at(c)] - x[at(b)]) + length(x[at(a)] - x[at(c)]);
    Vec3 const extent = high - low;
    m_corner = low;
    m_width = std::max(sum / (3.0 * static_cast<double>(m_triangles.size())),
                       std::max({extent.x, extent.y, extent.z}) / kMostBoxes);
    m_count = {1 + static_cast<int>(extent.x / m_width), 1 + static_cast<int>(extent.y / m_width),
               1 + static_cast<int>(extent.z / m_width)};
    m_boxes.assign(at(m_count[0]) * at(m_count[1]) * at(m_count[2]), {});
    for (std::size_t t = 0; t < m_triangles.size(); ++t)
    {
        auto const & [a, b, c] = m_triangles[t];
        auto const first = box(least(x[at(a)], least(x[at(b)], x[at(c)])));
        auto const last = box(greatest(x[at(a)], greatest(x[at(b)], x[at(c)])));
        for (int i = first[0]; i <= last[0]; ++i)
            for (int j = first[1]; j <= last[1]; ++j)
                for (int k = first[2]; k <= last[2]; ++k)
                    m_boxes[index(i, j, k)].push_back(static_cast<int>(t));
    }
}

std::array<int, 3> FormedSurface::box(Vec3 i_point) const
{
    Vec3 const from = (1.0 / m_width) * (i_point - m_corner);
    auto const clamped = [](double value, int count)
    { return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(count - 1))); };
    return {clamped(from.x, m_count[0]), clamped(from.y, m_count[1]), clamped(from.z, m_count[2])};
}

std::size_t FormedSurface::index(int i_x, int i_y, int i_z) const
{
    return (at(i_z) * at(m_count[1]) + at(i_y)) * at(m_count[0]) + at(i_x);
}

FormedSurface::Foot FormedSurface::footOn(int i_triangle, Vec3 i_point) const
{
    std::vector<Vec3> const & x = m_piece.mesh.position;
    std::array<int, 3> const & node = m_triangles[at(i_triangle)];
    Vec3 const a = x[at(node[0])], u = x[at(node[1])] - a, v = x[at(node[2])] - a, w = i_point - a;
    Vec3 const normal = cross(u, v);
    double const twice = dot(normal, normal);
    double const second = dot(cross(w, v), normal) / twice, third = dot(cross(u, w), normal) / twice;
    if (second >= 0.0 && third >= 0.0 && second + third <= 1.0)
    {
        Vec3 const foot = a + second * u + third * v;
        return {foot, dot(i_point - foot, i_point - foot), false};
    }
    Foot best{i_point, std::numeric_limits<double>::infinity(), false};
    for (std::size_t k = 0; k < 3; ++k)
    {
        int const from = node[k], to = node[(k + 1) % 3];
        Vec3 const along = x[at(to)] - x[at(from)];
        double const t = std::clamp(dot(i_point - x[at(from)], along) / dot(along, along), 0.0, 1.0);
        Vec3 const foot = x[at(from)] + t * along;
        double const square = dot(i_point - foot, i_point - foot);
        if (!(square < best.square))
            continue;
        bool const onRim = t <= 0.0   ? m_onRim[at(from)]
                           : t >= 1.0 ? m_onRim[at(to)]
                                      : m_rim.count(std::minmax(from, to)) > 0;
        best = {foot, square, onRim};
    }
    return best;
}

Vec3 FormedSurface::nearest(Vec3 i_point) const
{
    auto const middle = box(i_point);
    Foot best{i_point, m_width * m_width, false};
    for (int k = std::max(0, middle[2] - 1); k <= std::min(m_count[2] - 1, middle[2] + 1); ++k)
        for (int j = std::max(0, middle[1] - 1); j <= std::min(m_count[1] - 1, middle[1] + 1); ++j)
            for (int i = std::max(0, middle[0] - 1); i <= std::min(m_count[0] - 1, middle[0] + 1); ++i)
                for (int const t : m_boxes[index(i, j, k)])
                {
                    Foot const foot = footOn(t, i_point);
                    if (foot.square < best.square)
                        best = foot;
                }
    return best.onRim ? i_point : best.point;
}

} // namespace voz::multistep
