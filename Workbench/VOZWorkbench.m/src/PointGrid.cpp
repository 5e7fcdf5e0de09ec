// PointGrid.cpp: cells four tolerances wide, so that a search looks into one cell as a rule, eight at the most.

#include "PointGrid.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace voz::workbench
{
namespace
{
constexpr double kLargestTolerance = 1e12; // beyond every distance; infinity has no cells
} // namespace

PointGrid::PointGrid(double const (*i_points)[3], int i_count, double i_tolerance)
    : mPoints(i_points), mTolerance(i_tolerance >= 0.0 ? std::min(i_tolerance, kLargestTolerance) : 0.0)
{
    double largest = 0.0;
    for (int n = 1; n <= i_count; ++n)
        for (double const x : mPoints[n])
            largest = std::max(largest, std::abs(x));
    constexpr double kMostCells = 1e12; // along an axis, so that cell numbers fit their type
    mCell = std::max({4.0 * mTolerance, largest / kMostCells, std::numeric_limits<double>::min()});
    std::size_t slots = 16;
    while (slots < 2 * static_cast<std::size_t>(i_count))
        slots *= 2;
    mHead.assign(slots, 0);
    mNext.assign(static_cast<std::size_t>(i_count) + 1, 0);
}

long long PointGrid::cellOf(double x) const
{
    return static_cast<long long>(std::floor(x / mCell));
}

std::size_t PointGrid::slotOf(Cell const & cell) const
{
    std::uint64_t hash = 0;
    for (long long const c : cell)
    {
        hash = (hash ^ static_cast<std::uint64_t>(c)) * 0x9E3779B97F4A7C15ULL;
        hash ^= hash >> 32U;
    }
    return static_cast<std::size_t>(hash) & (mHead.size() - 1);
}

int PointGrid::FindNear(int i_point) const
{
    double const(&p)[3] = mPoints[i_point];
    Cell low, high;
    for (std::size_t c = 0; c < 3; ++c)
    {
        low[c] = cellOf(p[c] - mTolerance);
        high[c] = cellOf(p[c] + mTolerance);
    }
    int best = 0;
    double bestSquare = mTolerance * mTolerance;
    auto const look = [&](Cell const & cell)
    {
        for (int other = mHead[slotOf(cell)]; other != 0; other = mNext[static_cast<std::size_t>(other)])
        {
            double const(&q)[3] = mPoints[other];
            double const dx = p[0] - q[0], dy = p[1] - q[1], dz = p[2] - q[2];
            double const square = dx * dx + dy * dy + dz * dz;
            if (square < bestSquare || (square == bestSquare && (best == 0 || other < best)))
            {
                best = other;
                bestSquare = square;
            }
        }
    };
    for (long long x = low[0]; x <= high[0]; ++x)
        for (long long y = low[1]; y <= high[1]; ++y)
            for (long long z = low[2]; z <= high[2]; ++z)
                look({x, y, z});
    return best;
}

void PointGrid::Add(int i_point)
{
    double const(&p)[3] = mPoints[i_point];
    int & head = mHead[slotOf({cellOf(p[0]), cellOf(p[1]), cellOf(p[2])})];
    mNext[static_cast<std::size_t>(i_point)] = head;
    head = i_point;
}

} // namespace voz::workbench
