// PlaneGrid.cpp: a search grid over projected triangles.

#include "PlaneGrid.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{
constexpr std::size_t kCrowded = 64;     // triangles of a cell that may earn it a grid of its own
constexpr std::size_t kMostEntries = 16; // per triangle: long triangles get larger cells
constexpr int kAskedEnough = 16;         // walks through a list that cost what those entries do
constexpr int kDeepest = 12;

PlaneGrid::Box BoxOf(std::span<PlaneTriangle const> i_triangles)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    PlaneGrid::Box box = {{kInfinity, kInfinity}, {-kInfinity, -kInfinity}};
    for (PlaneTriangle const & triangle : i_triangles)
        for (std::size_t corner = 0; corner < 3; ++corner)
            for (std::size_t axis = 0; axis < 2; ++axis)
            {
                box.least[axis] = std::min(box.least[axis], triangle.At(corner)[axis]);
                box.greatest[axis] = std::max(box.greatest[axis], triangle.At(corner)[axis]);
            }
    return box;
}

// Two triangles a cell where they fill the box: an element's edge on a mesh of squares.
double EvenCell(PlaneGrid::Box const & i_box, std::size_t i_nTriangles)
{
    double const area = (i_box.greatest[0] - i_box.least[0]) * (i_box.greatest[1] - i_box.least[1]);
    return std::sqrt(2.0 * area / static_cast<double>(i_nTriangles));
}

struct Range
{
    double least = std::numeric_limits<double>::infinity();
    double greatest = -std::numeric_limits<double>::infinity();

    void Take(double i_value)
    {
        least = std::min(least, i_value);
        greatest = std::max(greatest, i_value);
    }
};

// The x of the triangle between two values of y.
Range RangeBetween(PlaneTriangle const & i_triangle, double i_low, double i_high)
{
    Range range;
    for (std::size_t corner = 0; corner < 3; ++corner)
    {
        PlaneTriangle::Corner const & from = i_triangle.At(corner);
        PlaneTriangle::Corner const & to = i_triangle.At((corner + 1) % 3);
        if (from[1] >= i_low && from[1] <= i_high)
            range.Take(from[0]);
        for (double const y : {i_low, i_high})
            if ((from[1] < y) != (to[1] < y))
                range.Take(from[0] + (to[0] - from[0]) * ((y - from[1]) / (to[1] - from[1])));
    }
    return range;
}
} // namespace

PlaneTriangle::PlaneTriangle(std::array<Corner, 3> const & i_corners)
    : m_corners(i_corners), m_rise1(i_corners[1][2] - i_corners[0][2]), m_rise2(i_corners[2][2] - i_corners[0][2])
{
    double const x1 = i_corners[1][0] - i_corners[0][0];
    double const y1 = i_corners[1][1] - i_corners[0][1];
    double const x2 = i_corners[2][0] - i_corners[0][0];
    double const y2 = i_corners[2][1] - i_corners[0][1];
    double const twiceArea = x1 * y2 - x2 * y1;
    m_part1 = {y2 / twiceArea, -x2 / twiceArea};
    m_part2 = {-y1 / twiceArea, x1 / twiceArea};
}

double PlaneTriangle::HeightAt(double i_x, double i_y) const
{
    double const x = i_x - m_corners[0][0];
    double const y = i_y - m_corners[0][1];
    double const height =
        m_corners[0][2] + (m_part1[0] * x + m_part1[1] * y) * m_rise1 + (m_part2[0] * x + m_part2[1] * y) * m_rise2;
    auto const [least, greatest] = std::minmax({m_corners[0][2], m_corners[1][2], m_corners[2][2]});
    return std::clamp(height, least, greatest);
}

PlaneGrid::PlaneGrid(std::span<PlaneTriangle const> i_triangles, double i_dLargestCell)
    : m_triangles(i_triangles), m_box(BoxOf(i_triangles))
{
    Ids all(i_triangles.size());
    std::iota(all.begin(), all.end(), 0U);
    double const cell = EvenCell(m_box, i_triangles.size());
    Build(all, i_dLargestCell > 0.0 ? std::min(cell, i_dLargestCell) : cell);
}

PlaneGrid::PlaneGrid(std::span<PlaneTriangle const> i_triangles, std::span<std::uint32_t const> i_ids,
                     Box const & i_box, int i_nDepth)
    : m_triangles(i_triangles), m_box(i_box), m_nDepth(i_nDepth)
{
    Build(i_ids, EvenCell(m_box, i_ids.size()));
}

// At most about 8 cells a triangle, however small a cell was asked for and however long the box is.
void PlaneGrid::ChooseCells(double i_dCell)
{
    double const nTriangles = static_cast<double>(m_ids.size()) + 4.0;
    std::array<double, 2> const sides = {m_box.greatest[0] - m_box.least[0], m_box.greatest[1] - m_box.least[1]};
    m_cell = std::max({i_dCell, sides[0] / (2.0 * nTriangles), sides[1] / (2.0 * nTriangles),
                       std::sqrt(sides[0] * sides[1] / (4.0 * nTriangles))});
    if (!(m_cell > 0.0)) // a box smaller than what doubles tell apart there
        m_cell = 1.0;
    for (std::size_t axis = 0; axis < 2; ++axis)
        m_counts[axis] = 1 + static_cast<std::size_t>(sides[axis] / m_cell);
}

// The cell of a coordinate along an axis; the nearest one for a coordinate beyond the box.
std::size_t PlaneGrid::Index(double i_value, std::size_t i_axis) const
{
    double const place = (i_value - m_box.least[i_axis]) / m_cell;
    if (!(place > 0.0))
        return 0;
    return place < static_cast<double>(m_counts[i_axis]) ? static_cast<std::size_t>(place) : m_counts[i_axis] - 1;
}

// The cells that the triangle lies over, row by row, a little more at each end than it covers: rounding loses none.
template <class Visit>
void PlaneGrid::ForEachCell(PlaneTriangle const & i_triangle, Visit const & i_visit) const
{
    double const margin = 1e-6 * m_cell;
    Range rows;
    for (std::size_t corner = 0; corner < 3; ++corner)
        rows.Take(i_triangle.At(corner)[1]);
    std::size_t const last = Index(rows.greatest + margin, 1);
    for (std::size_t row = Index(rows.least - margin, 1); row <= last; ++row)
    {
        double const low = m_box.least[1] + static_cast<double>(row) * m_cell;
        Range const range = RangeBetween(i_triangle, std::min(low - margin, rows.greatest),
                                         std::max(low + m_cell + margin, rows.least));
        if (range.greatest < m_box.least[0] - margin || range.least > m_box.greatest[0] + margin)
            continue;
        std::size_t const end = Index(range.greatest + margin, 0);
        for (std::size_t column = Index(range.least - margin, 0); column <= end; ++column)
            i_visit(row * m_counts[0] + column);
    }
}

void PlaneGrid::Build(std::span<std::uint32_t const> i_ids, double i_dCell)
{
    m_ids.assign(i_ids.begin(), i_ids.end());
    std::size_t nEntries = 0;
    for (double cell = i_dCell;; cell *= 2.0)
    {
        ChooseCells(cell);
        m_starts.assign(m_counts[0] * m_counts[1] + 1, 0);
        nEntries = 0;
        for (std::uint32_t const id : i_ids)
            ForEachCell(m_triangles[id],
                        [&](std::size_t i_cell)
                        {
                            ++m_starts[i_cell + 1];
                            ++nEntries;
                        });
        if (nEntries <= kMostEntries * i_ids.size() || m_starts.size() == 2)
            break;
    }
    std::partial_sum(m_starts.begin(), m_starts.end(), m_starts.begin());
    std::vector<std::size_t> next(m_starts.begin(), m_starts.end() - 1);
    m_ids.resize(nEntries);
    for (std::uint32_t const id : i_ids)
        ForEachCell(m_triangles[id], [&](std::size_t i_cell) { m_ids[next[i_cell]++] = id; });
}

// The cell's own grid; null where it has none, or not yet.
PlaneGrid * PlaneGrid::Finer(std::size_t i_cell)
{
    std::size_t const nHere = m_starts[i_cell + 1] - m_starts[i_cell];
    if (nHere <= kCrowded || m_nDepth == kDeepest || m_starts.size() == 2)
        return nullptr;
    if (m_crowds.empty())
        m_crowds.resize(m_starts.size() - 1);
    Crowd & crowd = m_crowds[i_cell];
    if (!crowd.pFiner && ++crowd.nAsked > kAskedEnough)
    {
        double const x = m_box.least[0] + static_cast<double>(i_cell % m_counts[0]) * m_cell;
        double const y = m_box.least[1] + static_cast<double>(i_cell / m_counts[0]) * m_cell;
        crowd.pFiner.reset(new PlaneGrid(m_triangles, std::span(m_ids).subspan(m_starts[i_cell], nHere),
                                         {{x, y}, {x + m_cell, y + m_cell}}, m_nDepth + 1));
    }
    return crowd.pFiner.get();
}

PlaneGrid::Hit PlaneGrid::Highest(double i_x, double i_y)
{
    std::size_t const cell = Index(i_y, 1) * m_counts[0] + Index(i_x, 0);
    if (PlaneGrid * const pFiner = Finer(cell))
        return pFiner->Highest(i_x, i_y);
    Hit hit;
    for (std::size_t i = m_starts[cell]; i < m_starts[cell + 1]; ++i)
    {
        double const height = m_triangles[m_ids[i]].HeightInside(i_x, i_y);
        if (height > hit.height)
            hit = {m_ids[i], height};
    }
    return hit;
}
