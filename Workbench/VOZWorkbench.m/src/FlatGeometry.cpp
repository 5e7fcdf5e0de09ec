// FlatGeometry.cpp: plane polygons.

#include "FlatGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace voz::workbench
{
namespace
{

double cross(Point2 const & o, Point2 const & a, Point2 const & b)
{
    return (a[0] - o[0]) * (b[1] - o[1]) - (a[1] - o[1]) * (b[0] - o[0]);
}

// One chain of the hull over points in order of x (A. M. Andrew, Inf. Process. Lett. 9 (1979) 216).
template <class Iterator>
void appendChain(Iterator begin, Iterator end, std::vector<Point2> & hull)
{
    std::size_t const base = hull.size();
    for (; begin != end; ++begin)
    {
        while (hull.size() >= base + 2 && cross(hull[hull.size() - 2], hull.back(), *begin) <= 0.0)
            hull.pop_back();
        hull.push_back(*begin);
    }
    hull.pop_back(); // the other chain begins with it
}

} // namespace

double SignedArea(std::vector<Point2> const & i_loop)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < i_loop.size(); ++i)
    {
        // Relative to the first point, so that a loop far from the origin keeps its digits.
        Point2 const & a = i_loop[i];
        Point2 const & b = i_loop[(i + 1) % i_loop.size()];
        twice += cross(i_loop.front(), a, b);
    }
    return 0.5 * twice;
}

double Perimeter(std::vector<Point2> const & i_loop)
{
    double length = 0.0;
    for (std::size_t i = 0; i < i_loop.size(); ++i)
    {
        Point2 const & a = i_loop[i];
        Point2 const & b = i_loop[(i + 1) % i_loop.size()];
        length += std::hypot(b[0] - a[0], b[1] - a[1]);
    }
    return length;
}

std::pair<double, double> Extent(std::vector<Point2> const & i_points, int i_axis)
{
    if (i_points.empty())
        return {0.0, 0.0};
    auto const axis = static_cast<std::size_t>(i_axis);
    auto const [least, greatest] = std::minmax_element(
        i_points.begin(), i_points.end(), [axis](Point2 const & a, Point2 const & b) { return a[axis] < b[axis]; });
    return {(*least)[axis], (*greatest)[axis]};
}

std::vector<Point2> ConvexHull(std::vector<Point2> i_points)
{
    std::sort(i_points.begin(), i_points.end());
    i_points.erase(std::unique(i_points.begin(), i_points.end()), i_points.end());
    if (i_points.size() < 3)
        return i_points;
    std::vector<Point2> hull;
    appendChain(i_points.begin(), i_points.end(), hull);
    appendChain(i_points.rbegin(), i_points.rend(), hull);
    return hull;
}

std::array<double, 3> SmallestRectangle(std::vector<Point2> const & i_points)
{
    std::vector<Point2> const hull = ConvexHull(i_points);
    std::size_t const count = hull.size();
    if (count < 2)
        return {};
    auto const at = [&](std::size_t i) -> Point2 const & { return hull[i % count]; };
    std::array<double, 3> best{};
    double bestArea = -1.0;
    // Calipers: as the side turns once round, the farthest points in the three directions turn with it and never back.
    std::size_t far = 1;
    std::size_t top = 1;
    std::size_t near = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        Point2 const & a = at(i);
        double const side = std::hypot(at(i + 1)[0] - a[0], at(i + 1)[1] - a[1]);
        double const ux = (at(i + 1)[0] - a[0]) / side;
        double const uy = (at(i + 1)[1] - a[1]) / side;
        auto const along = [&](std::size_t k) { return (at(k)[0] - a[0]) * ux + (at(k)[1] - a[1]) * uy; };
        auto const above = [&](std::size_t k) { return (at(k)[1] - a[1]) * ux - (at(k)[0] - a[0]) * uy; };
        far = std::max(far, i + 1);
        while (along(far + 1) > along(far))
            ++far;
        top = std::max(top, far);
        while (above(top + 1) > above(top))
            ++top;
        near = std::max(near, top);
        while (along(near + 1) < along(near))
            ++near;
        double const length = along(far) - along(near);
        double const width = above(top);
        if (bestArea >= 0.0 && length * width >= bestArea)
            continue;
        bestArea = length * width;
        double const angle = std::atan2(uy, ux) * 180.0 / std::numbers::pi + (length >= width ? 0.0 : 90.0);
        best = {std::max(length, width), std::min(length, width), std::fmod(angle + 360.0, 180.0)};
    }
    return best;
}

} // namespace voz::workbench
