// OffsetPolyline.cpp: a raw offset curve that may cross itself, and a walk around its outside.
//
// To the wire's area each edge adds a strip as wide as the offset, and each convex corner a sector with tangents for an
// arc. The raw curve is the sum of their boundaries, all counter-clockwise: at a concave corner it runs back to the
// wire and out again, so that its winding number is above 0 exactly where a piece lies. Hence its outside is that of
// the union of all pieces, and every point there is at least the offset from the wire. On the way around, with the
// outside on the right, another branch can only come from the left: where one does, the walk goes on along it. (Winding
// as the rule for offset curves: Chen, McMains, "Polygon offsetting by computing winding numbers", ASME DETC
// 2005-85513.)
//
// Where branches meet at a point by accident (a slot of exactly twice the offset) the walk can go astray. The result is
// therefore checked, and the offset made larger by parts in 10^7 until it passes.

#include "geometry/OffsetPolyline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace voz::geometry
{

namespace
{

constexpr double kPi = std::numbers::pi;
constexpr double kOwnAngle = kPi / 12.0;
constexpr double kLeastAngle = 1e-3;      // an arc has a bounded number of points
constexpr double kOwnEdge = 1e-3;         // of the offset
constexpr double kWidestTurn = 0.5 * kPi; // of one corner of an arc
constexpr double kRounding = 1e-9;        // of the offset
constexpr double kFirstGrowth = 1e-7;
constexpr int kNumTries = 7;

Vec2 turnedBy(Vec2 a, double i_angle)
{
    double const c = std::cos(i_angle);
    double const s = std::sin(i_angle);
    return {c * a.x - s * a.y, s * a.x + c * a.y};
}

Vec2 flat(Vec3 a)
{
    return horizontal(a);
}

Vec3 atHeight(Vec2 a, double i_z)
{
    return {a.x, a.y, i_z};
}

double signedArea(std::vector<Vec3> const & i_line)
{
    double sum = 0.0;
    Vec3 const origin = i_line.front();
    for (std::size_t i = 0; i < i_line.size(); ++i)
        sum += cross(flat(i_line[i] - origin), flat(i_line[(i + 1) % i_line.size()] - origin));
    return 0.5 * sum;
}

// Takes out points that lie on the one before, and the last if it lies on the first.
void dropRepeated(std::vector<Vec3> & io_line, double i_tolerance)
{
    auto const close = [i_tolerance](Vec3 a, Vec3 b) { return length(flat(b - a)) <= i_tolerance; };
    io_line.erase(std::unique(io_line.begin(), io_line.end(), close), io_line.end());
    while (io_line.size() > 1 && close(io_line.front(), io_line.back()))
        io_line.pop_back();
}

// The corners of a counter-clockwise wire: the turn at each point and the room along each edge.
class RawCurve
{
public:
    RawCurve(std::vector<Vec3> const & i_wire, double i_offset, double i_minAngle)
        : m_wire(i_wire), m_offset(i_offset), m_minAngle(i_minAngle)
    {
        std::size_t const n = m_wire.size();
        for (std::size_t i = 0; i < n; ++i)
        {
            Vec2 const edge = flat(m_wire[(i + 1) % n] - m_wire[i]);
            m_length.push_back(length(edge));
            m_along.push_back(unit(edge));
        }
        for (std::size_t i = 0; i < n; ++i)
            m_turn.push_back(turnAt(i));
        for (std::size_t i = 0; i < n; ++i)
            addCorner(i);
    }

    std::vector<Vec3> const & points() const { return m_points; }

private:
    std::size_t before(std::size_t i) const { return i == 0 ? m_wire.size() - 1 : i - 1; }
    std::size_t behind(std::size_t i) const { return i + 1 == m_wire.size() ? 0 : i + 1; }
    Vec2 outward(std::size_t i_edge) const { return {m_along[i_edge].y, -m_along[i_edge].x}; }

    // Above 0 at a convex corner; a line that turns straight back does so around its tip.
    double turnAt(std::size_t i) const
    {
        double const c = cross(m_along[before(i)], m_along[i]);
        double const d = dot(m_along[before(i)], m_along[i]);
        return d < 0.0 && std::fabs(c) < 1e-12 ? kPi : std::atan2(c, d);
    }

    // What a concave corner takes from both its offset edges where these are joined at their crossing.
    double trim(std::size_t i) const
    {
        if (m_turn[i] >= 0.0)
            return 0.0;
        return m_turn[i] > -0.5 * kPi ? m_offset * std::tan(-0.5 * m_turn[i]) : std::numeric_limits<double>::infinity();
    }

    void add(std::size_t i, Vec2 i_outward) { m_points.push_back(atHeight(flat(m_wire[i]) + i_outward, m_wire[i].z)); }

    void addCorner(std::size_t i)
    {
        Vec2 const normal = outward(before(i));
        if (m_turn[i] >= 0.0)
        {
            double const numTurns =
                std::max({1.0, std::floor(m_turn[i] / m_minAngle), std::ceil(m_turn[i] / kWidestTurn)});
            double const turn = m_turn[i] / numTurns;
            for (double k = 0.5; k < numTurns; k += 1.0)
                add(i, (m_offset / std::cos(0.5 * turn)) * turnedBy(normal, k * turn));
            return;
        }
        bool const room = trim(before(i)) + trim(i) <= m_length[before(i)] && trim(i) + trim(behind(i)) <= m_length[i];
        if (room)
        {
            add(i, (m_offset / std::cos(0.5 * m_turn[i])) * turnedBy(normal, 0.5 * m_turn[i]));
            return;
        }
        add(i, m_offset * normal);
        add(i, {0.0, 0.0});
        add(i, m_offset * outward(i));
    }

    std::vector<Vec3> const & m_wire;
    double m_offset;
    double m_minAngle;
    std::vector<double> m_length;
    std::vector<Vec2> m_along;
    std::vector<double> m_turn;
    std::vector<Vec3> m_points;
};

struct Box
{
    Vec2 low, high;
};

Box boxOf(Vec3 a, Vec3 b)
{
    return {{std::min(a.x, b.x), std::min(a.y, b.y)}, {std::max(a.x, b.x), std::max(a.y, b.y)}};
}

bool areApart(Box const & a, Box const & b, double i_distance)
{
    return a.low.x > b.high.x + i_distance || b.low.x > a.high.x + i_distance || a.low.y > b.high.y + i_distance ||
           b.low.y > a.high.y + i_distance;
}

std::vector<Box> boxesOf(std::vector<Vec3> const & i_line)
{
    std::vector<Box> boxes;
    for (std::size_t i = 0; i < i_line.size(); ++i)
        boxes.push_back(boxOf(i_line[i], i_line[(i + 1) % i_line.size()]));
    return boxes;
}

// Once around the outside of a closed curve of pieces that wind counter-clockwise.
class OutsideWalk
{
public:
    explicit OutsideWalk(std::vector<Vec3> const & i_curve) : m_curve(i_curve), m_boxes(boxesOf(i_curve)) {}

    // Empty if the walk does not come back to its start, the lowest point.
    std::vector<Vec3> run() const
    {
        auto const lower = [](Vec3 a, Vec3 b) { return a.y < b.y || (a.y == b.y && a.x < b.x); };
        std::size_t const start =
            static_cast<std::size_t>(std::min_element(m_curve.begin(), m_curve.end(), lower) - m_curve.begin());
        std::vector<Vec3> outside = {m_curve[start]};
        std::size_t const limit = 8 * m_curve.size() + 64;
        Place place = {start, 0.0};
        while (outside.size() < limit)
        {
            Place const other = firstBranch(place);
            if (other.segment == kNone)
            {
                std::size_t const next = behind(place.segment);
                if (next == start)
                    return outside;
                outside.push_back(m_curve[next]);
                place = {next, 0.0};
                continue;
            }
            outside.push_back(other.point);
            place = other;
        }
        return {};
    }

private:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    struct Place
    {
        std::size_t segment = kNone;
        double fraction = 0.0; // of the segment
        Vec3 point = {};
    };

    std::size_t behind(std::size_t i) const { return i + 1 == m_curve.size() ? 0 : i + 1; }

    // Where, ahead of the place, a branch first leaves to the right.
    Place firstBranch(Place const & i_place) const
    {
        std::size_t const k = i_place.segment;
        Vec3 const p = m_curve[k];
        Vec3 const along = m_curve[behind(k)] - p;
        Place first;
        double nearest = std::numeric_limits<double>::infinity();
        for (std::size_t j = 0; j < m_curve.size(); ++j)
        {
            if (areApart(m_boxes[k], m_boxes[j], 0.0) || j == k || behind(j) == k || behind(k) == j)
                continue;
            Vec3 const q = m_curve[j];
            Vec3 const other = m_curve[behind(j)] - q;
            double const denominator = cross(flat(along), flat(other));
            if (!(denominator < 0.0))
                continue;
            double const t = cross(flat(q - p), flat(other)) / denominator;
            double const u = cross(flat(q - p), flat(along)) / denominator;
            if (t < i_place.fraction || t > 1.0 || u < 0.0 || u > 1.0 || t >= nearest)
                continue;
            nearest = t;
            Vec3 const here = p + t * along;
            first = {j, u, atHeight(flat(here), 0.5 * (here.z + (q + u * other).z))};
        }
        return first;
    }

    std::vector<Vec3> const & m_curve;
    std::vector<Box> const m_boxes;
};

double distanceToSegment(Vec2 p, Vec2 a, Vec2 b)
{
    Vec2 const along = b - a;
    double const square = dot(along, along);
    double const t = square > 0.0 ? std::clamp(dot(p - a, along) / square, 0.0, 1.0) : 0.0;
    return length(p - (a + t * along));
}

double distanceOfSegments(Vec2 a, Vec2 b, Vec2 c, Vec2 d)
{
    double const sideC = cross(b - a, c - a);
    double const sideD = cross(b - a, d - a);
    double const sideA = cross(d - c, a - c);
    double const sideB = cross(d - c, b - c);
    bool const crossing = ((sideC < 0.0) != (sideD < 0.0)) && ((sideA < 0.0) != (sideB < 0.0));
    if (crossing && !areApart(boxOf(lifted(a), lifted(b)), boxOf(lifted(c), lifted(d)), 0.0)) // not two on one line
        return 0.0;
    return std::min({distanceToSegment(a, c, d), distanceToSegment(b, c, d), distanceToSegment(c, a, b),
                     distanceToSegment(d, a, b)});
}

// Whether the line may have the edge from a to b in place of the points between these two indices.
bool isClear(std::vector<Vec3> const & i_line, std::size_t i_from, std::size_t i_numReplaced, Vec2 a, Vec2 b,
             double i_clearance)
{
    std::size_t const n = i_line.size();
    Box const box = boxOf(lifted(a), lifted(b));
    for (std::size_t step = i_numReplaced + 1; step + 1 < n; ++step) // all edges but the replaced and their neighbours
    {
        Vec3 const c = i_line[(i_from + step) % n];
        Vec3 const d = i_line[(i_from + step + 1) % n];
        if (!areApart(box, boxOf(c, d), i_clearance) && distanceOfSegments(a, b, flat(c), flat(d)) <= i_clearance)
            return false;
    }
    return true;
}

// Merges short edges outward: a concave point is left out; two convex ones give way to the crossing of their outer
// edges.
class ShortEdges
{
public:
    ShortEdges(std::vector<Vec3> & io_line, double i_minEdge, double i_offset)
        : m_line(io_line), m_minEdge(i_minEdge), m_offset(i_offset)
    {
    }

    void merge()
    {
        std::size_t unchanged = 0; // edges in a row that are long enough or must stay
        for (std::size_t i = 0; m_line.size() > 4 && unchanged <= m_line.size();)
        {
            i %= m_line.size();
            bool const merged = length(flat(at(i + 1) - at(i))) < m_minEdge && mergeEdge(i);
            unchanged = merged ? 0 : unchanged + 1;
            i += merged ? m_line.size() - 1 : 1; // the edge before has changed with it
        }
    }

private:
    Vec3 at(std::size_t i) const { return m_line[i % m_line.size()]; }

    void erase(std::size_t i) { m_line.erase(m_line.begin() + static_cast<std::ptrdiff_t>(i % m_line.size())); }

    double turnAt(std::size_t i) const
    {
        std::size_t const n = m_line.size();
        return cross(flat(at(i) - at(i + n - 1)), flat(at(i + 1) - at(i)));
    }

    bool mergeEdge(std::size_t i)
    {
        for (std::size_t const corner : {i, i + 1})
            if (turnAt(corner) <= 0.0 && leaveOut(corner))
                return true;
        return turnAt(i) > 0.0 && turnAt(i + 1) > 0.0 && crossOver(i);
    }

    bool leaveOut(std::size_t i)
    {
        std::size_t const from = i + m_line.size() - 1;
        if (!isClear(m_line, from, 2, flat(at(from)), flat(at(i + 1)), kRounding * m_offset))
            return false;
        erase(i);
        return true;
    }

    bool crossOver(std::size_t i)
    {
        std::size_t const from = i + m_line.size() - 1;
        Vec2 const a = flat(at(from));
        Vec2 const first = flat(at(i)) - a;
        Vec2 const d = flat(at(i + 2));
        Vec2 const last = d - flat(at(i + 1));
        double const denominator = cross(first, last);
        if (!(denominator > 0.0) || dot(first, last) < 0.0) // a turn of a right angle at most
            return false;
        Vec2 const crossing = a + (cross(d - a, last) / denominator) * first;
        if (!(length(crossing - flat(at(i))) <= m_offset) ||
            !isClear(m_line, from, 3, a, crossing, kRounding * m_offset) ||
            !isClear(m_line, from, 3, crossing, d, kRounding * m_offset))
            return false;
        m_line[i % m_line.size()] = atHeight(crossing, 0.5 * (at(i).z + at(i + 1).z));
        erase(i + 1);
        return true;
    }

    std::vector<Vec3> & m_line;
    double m_minEdge;
    double m_offset;
};

bool isSound(std::vector<Vec3> const & i_line, std::vector<Vec3> const & i_wire, double i_offset)
{
    if (i_line.size() < 3 || !isApart(i_line, kRounding * i_offset))
        return false;
    double const distance = distanceBetween(i_line, i_wire);
    return distance >= (1.0 - kRounding) * i_offset && std::isfinite(distance);
}

// The wire counter-clockwise.
std::vector<Vec3> tryOffset(std::vector<Vec3> const & i_wire, double i_offset, OffsetRules const & i_rules)
{
    double const minAngle = i_rules.minAngle > 0.0 ? std::max(i_rules.minAngle, kLeastAngle) : kOwnAngle;
    RawCurve const raw(i_wire, i_offset, minAngle);
    std::vector<Vec3> line = OutsideWalk(raw.points()).run();
    if (line.empty())
        return {};
    dropRepeated(line, kRounding * i_offset);
    std::vector<Vec3> merged = line;
    ShortEdges(merged, i_rules.minEdge > 0.0 ? i_rules.minEdge : kOwnEdge * i_offset, i_offset).merge();
    if (isSound(merged, i_wire, i_rules.offset))
        return merged;
    return isSound(line, i_wire, i_rules.offset) ? line : std::vector<Vec3>();
}

} // namespace

bool isApart(std::vector<Vec3> const & i_line, double i_clearance)
{
    std::size_t const n = i_line.size();
    std::vector<Box> const boxes = boxesOf(i_line);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i + 2; j < n; ++j)
        {
            if ((i == 0 && j + 1 == n) || areApart(boxes[i], boxes[j], i_clearance))
                continue;
            if (distanceOfSegments(flat(i_line[i]), flat(i_line[i + 1]), flat(i_line[j]), flat(i_line[(j + 1) % n])) <=
                i_clearance)
                return false;
        }
    return true;
}

double distanceBetween(std::vector<Vec3> const & i_line, std::vector<Vec3> const & i_other)
{
    std::vector<Box> const boxes = boxesOf(i_line);
    std::vector<Box> const otherBoxes = boxesOf(i_other);
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < i_line.size(); ++i)
        for (std::size_t j = 0; j < i_other.size(); ++j)
            if (!areApart(boxes[i], otherBoxes[j], least))
                least = std::min(least, distanceOfSegments(flat(i_line[i]), flat(i_line[(i + 1) % i_line.size()]),
                                                           flat(i_other[j]), flat(i_other[(j + 1) % i_other.size()])));
    return least;
}

std::vector<Vec3> offsetOutward(std::vector<Vec3> i_wire, OffsetRules const & i_rules)
{
    dropRepeated(i_wire, kRounding * i_rules.offset);
    if (i_wire.size() < 3)
        return {};
    bool const clockwise = signedArea(i_wire) < 0.0;
    if (clockwise)
        std::reverse(i_wire.begin(), i_wire.end());
    std::vector<Vec3> line;
    double growth = 0.0;
    for (int i = 0; i < kNumTries && line.empty(); ++i)
    {
        line = tryOffset(i_wire, (1.0 + growth) * i_rules.offset, i_rules);
        growth = growth > 0.0 ? 2.7 * growth : kFirstGrowth;
    }
    if (clockwise)
        std::reverse(line.begin(), line.end());
    return line;
}

} // namespace voz::geometry
