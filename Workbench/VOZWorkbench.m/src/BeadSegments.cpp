// BeadSegments.cpp: a line dropped on the sheet and cut at the sides of the elements.
//
// Each element is seen from the stamping direction as a triangle, or as two that share the first diagonal of a
// quadrilateral. A leg of the line is cut against each (Cyrus and Beck, IEEE Trans. Comput. C-27 (1978) 429) into an
// interval of its parameter. A sweep along the leg then takes from each interval what is not yet covered, so that a leg
// along a side common to two elements counts once.

#include "BeadSegments.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace voz::workbench
{

namespace
{
using Point2 = std::array<double, 2>;

constexpr double kTiny = 1e-9; // of a leg's length, or of an element's size squared

struct Corner
{
    Point2 place; // seen from the stamping direction
    double z;
    Point2 natural;
};

struct Facet // a triangle of the view
{
    int element;
    std::array<Corner, 3> corners;
};

struct Interval
{
    double begin;
    double end;
    double distance; // from the line to the sheet, at the middle
    Facet const * facet;
};

double Cross(Point2 const & a, Point2 const & b, Point2 const & c)
{
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

std::vector<Facet> Facets(VOZCatMesh const & i_mesh, std::vector<Point3> const & i_local)
{
    constexpr std::array<Point2, 3> kTriangle = {{{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}};
    constexpr std::array<Point2, 4> kQuadrilateral = {{{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}}};
    std::vector<Facet> facets;
    auto const corner = [&](int e, int k, Point2 const & i_natural)
    {
        Point3 const & p = i_local[static_cast<std::size_t>(i_mesh.ElementValue(e, k))];
        return Corner{{p[0], p[1]}, p[2], i_natural};
    };
    auto const add = [&facets](Facet const & i_facet)
    {
        auto const & [a, b, c] = i_facet.corners;
        double const area = std::abs(Cross(a.place, b.place, c.place));
        double const size = std::hypot(b.place[0] - a.place[0], b.place[1] - a.place[1]) +
                            std::hypot(c.place[0] - a.place[0], c.place[1] - a.place[1]);
        if (area > 1e-3 * size * size) // a wall seen from its edge takes no bead
            facets.push_back(i_facet);
    };
    for (int e = 1; e <= i_mesh.numElem(); ++e)
        if (i_mesh.isTriangle(e) != 0)
            add({e, {corner(e, 0, kTriangle[0]), corner(e, 1, kTriangle[1]), corner(e, 2, kTriangle[2])}});
        else
            for (int k = 1; k <= 2; ++k)
                add({e,
                     {corner(e, 0, kQuadrilateral[0]), corner(e, k, kQuadrilateral[static_cast<std::size_t>(k)]),
                      corner(e, k + 1, kQuadrilateral[static_cast<std::size_t>(k) + 1])}});
    return facets;
}

std::array<double, 3> Barycentric(Facet const & i_facet, Point2 const & p)
{
    auto const & [a, b, c] = i_facet.corners;
    double const whole = Cross(a.place, b.place, c.place);
    double const u = Cross(b.place, c.place, p) / whole;
    double const v = Cross(c.place, a.place, p) / whole;
    return {u, v, 1.0 - u - v};
}

// The part of the leg from p to q that lies in the facet.
bool Clip(Facet const & i_facet, Point2 const & p, Point2 const & q, double & o_begin, double & o_end)
{
    std::array<double, 3> const atStart = Barycentric(i_facet, p);
    std::array<double, 3> const atEnd = Barycentric(i_facet, q);
    o_begin = 0.0;
    o_end = 1.0;
    for (std::size_t i = 0; i < 3; ++i)
    {
        double const slope = atEnd[i] - atStart[i];
        if (std::abs(slope) < kTiny)
        {
            if (atStart[i] < -kTiny)
                return false;
            continue;
        }
        double const crossing = -atStart[i] / slope;
        if (slope > 0.0)
            o_begin = std::max(o_begin, crossing);
        else
            o_end = std::min(o_end, crossing);
    }
    return o_end - o_begin > kTiny;
}

Point2 At(Point2 const & p, Point2 const & q, double t)
{
    return {p[0] + t * (q[0] - p[0]), p[1] + t * (q[1] - p[1])};
}

double HeightOf(Facet const & i_facet, Point2 const & p)
{
    std::array<double, 3> const weight = Barycentric(i_facet, p);
    double z = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
        z += weight[i] * i_facet.corners[i].z;
    return z;
}

// Natural coordinates in the whole element: linear over a triangle. A quadrilateral's are those of its half, which are
// exact on its sides and diagonal and, for a parallelogram, everywhere.
Point2 NaturalOf(Facet const & i_facet, Point2 const & p)
{
    std::array<double, 3> const weight = Barycentric(i_facet, p);
    Point2 natural{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 2; ++j)
            natural[j] += weight[i] * i_facet.corners[i].natural[j];
    return natural;
}

std::vector<Interval> IntervalsOf(std::vector<Facet> const & i_facets, Point3 const & p, Point3 const & q)
{
    std::vector<Interval> intervals;
    Point2 const from = {p[0], p[1]};
    Point2 const to = {q[0], q[1]};
    for (Facet const & facet : i_facets)
    {
        double begin = 0.0;
        double end = 0.0;
        if (!Clip(facet, from, to, begin, end))
            continue;
        double const middle = 0.5 * (begin + end);
        double const height = p[2] + middle * (q[2] - p[2]);
        intervals.push_back({begin, end, std::abs(height - HeightOf(facet, At(from, to, middle))), &facet});
    }
    return intervals;
}

// Of the intervals that begin at or before the place and reach beyond it, the nearest to the line; of equals the first.
Interval const * BestAt(std::vector<Interval> const & i_intervals, double i_place)
{
    Interval const * best = nullptr;
    for (Interval const & interval : i_intervals)
        if (interval.begin <= i_place + kTiny && interval.end > i_place + kTiny &&
            (best == nullptr || interval.distance < best->distance - 1e-6))
            best = &interval;
    return best;
}

double NextBegin(std::vector<Interval> const & i_intervals, double i_place)
{
    double next = 1.0;
    for (Interval const & interval : i_intervals)
        if (interval.begin > i_place + kTiny)
            next = std::min(next, interval.begin);
    return next;
}

EdgeProperty SegmentIn(Facet const & i_facet, Point2 const & i_begin, Point2 const & i_end)
{
    EdgeProperty segment;
    segment.element = i_facet.element;
    Point2 const first = NaturalOf(i_facet, i_begin);
    Point2 const second = NaturalOf(i_facet, i_end);
    segment.edgeValues[0] = first[0];
    segment.edgeValues[1] = first[1];
    segment.edgeValues[2] = second[0];
    segment.edgeValues[3] = second[1];
    return segment;
}
// The two halves of a quadrilateral make one piece of a leg.
void Append(EdgeProperty const & i_segment, bool i_isSameLeg, std::vector<EdgeProperty> & io_segments)
{
    if (!i_isSameLeg || io_segments.empty() || io_segments.back().element != i_segment.element)
        return io_segments.push_back(i_segment);
    io_segments.back().edgeValues[2] = i_segment.edgeValues[2];
    io_segments.back().edgeValues[3] = i_segment.edgeValues[3];
}
Point3 ToLocal(VOZCatAxis const & i_frame, double const * i_global)
{
    Point3 local{};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            local[static_cast<std::size_t>(i)] += i_frame.axis(i, j) * (i_global[j] - i_frame.origin(j));
    return local;
}

// Where the best layer ends: at its own end, or where a nearer one begins on the way.
double EndOf(Interval const & i_best, std::vector<Interval> const & i_intervals, double i_place)
{
    double end = i_best.end;
    for (Interval const & other : i_intervals)
        if (other.begin > i_place + kTiny && other.begin < end && other.distance < i_best.distance - 1e-6)
            end = other.begin;
    return end;
}

void SweepLeg(std::vector<Facet> const & i_facets, Point3 const & p, Point3 const & q, BeadSegments & io_found)
{
    double const length = std::hypot(q[0] - p[0], q[1] - p[1]);
    io_found.length += length;
    if (!(length > 0.0))
        return;
    std::vector<Interval> const intervals = IntervalsOf(i_facets, p, q);
    Point2 const from = {p[0], p[1]};
    Point2 const to = {q[0], q[1]};
    for (double place = 0.0; place < 1.0 - kTiny;)
    {
        Interval const * const best = BestAt(intervals, place);
        if (best == nullptr)
        {
            place = NextBegin(intervals, place);
            continue;
        }
        double const end = EndOf(*best, intervals, place);
        Append(SegmentIn(*best->facet, At(from, to, place), At(from, to, end)), place > 0.0, io_found.segments);
        io_found.covered += (end - place) * length;
        place = end;
    }
}
} // namespace

BeadSegments FindBeadSegments(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame, std::vector<Point3> const & i_line)
{
    std::vector<Point3> local(static_cast<std::size_t>(i_mesh.numNode()) + 1);
    for (int n = 1; n <= i_mesh.numNode(); ++n)
        local[static_cast<std::size_t>(n)] = ToLocal(i_frame, i_mesh.GetNodeData()[n]);
    std::vector<Facet> const facets = Facets(i_mesh, local);
    BeadSegments found;
    for (std::size_t leg = 0; leg + 1 < i_line.size(); ++leg)
        SweepLeg(facets, ToLocal(i_frame, i_line[leg].data()), ToLocal(i_frame, i_line[leg + 1].data()), found);
    return found;
}

} // namespace voz::workbench
