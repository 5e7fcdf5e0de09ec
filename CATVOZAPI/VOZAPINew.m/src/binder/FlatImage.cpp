// FlatImage.cpp: search by a uniform grid over the image; natural coordinates of triangles and quadrilaterals.
//
// For a bilinear quadrilateral Y = a + b xi + c eta + d xi eta eliminating xi leaves a quadratic in eta,
//
//     (c x d) eta^2 + ((c x b) - (e x d)) eta - (e x b) = 0,   e = X - a,   xi = (e - c eta).(b + d eta)/|b + d eta|^2
//
// with x the plane cross product; the root is taken in the form that does not cancel.

#include "binder/FlatImage.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::binder
{

using geometry::Cell;
using geometry::Side;
using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kTolerance = 1.0e-9; // of the image's size
constexpr double kSamePoint = 1.0e-6; // of the image's size: hits nearer than this are one point
constexpr int kGreatestGrid = 2048;   // cells along a side

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

double signedArea(std::vector<Vec2> const & i_polygon)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < i_polygon.size(); ++i)
        twice += cross(i_polygon[i], i_polygon[(i + 1) % i_polygon.size()]);
    return 0.5 * twice;
}

bool holds(std::vector<Vec2> const & i_polygon, Vec2 i_x)
{
    bool inside = false;
    for (std::size_t i = 0, j = i_polygon.size() - 1; i < i_polygon.size(); j = i++)
    {
        Vec2 const a = i_polygon[i], b = i_polygon[j];
        if ((a.y > i_x.y) != (b.y > i_x.y) && i_x.x < a.x + (b.x - a.x) * (i_x.y - a.y) / (b.y - a.y))
            inside = !inside;
    }
    return inside;
}

// Value, slope along xi and slope along eta of a field over a face at natural coordinates.
template <class Vector>
struct Field
{
    Vector value, alongXi, alongEta;
};

template <class Vector>
Field<Vector> fieldAt(std::array<Vector, 4> const & v, int i_count, Vec2 i_natural)
{
    if (i_count == 3)
    {
        Vector const b = v[1] - v[0], c = v[2] - v[0];
        return {v[0] + i_natural.x * b + i_natural.y * c, b, c};
    }
    double const xi = i_natural.x, eta = i_natural.y;
    Vector const a = 0.25 * (v[0] + v[1] + v[2] + v[3]), b = 0.25 * (v[1] + v[2] - v[0] - v[3]);
    Vector const c = 0.25 * (v[2] + v[3] - v[0] - v[1]), d = 0.25 * (v[0] + v[2] - v[1] - v[3]);
    return {a + xi * b + eta * c + (xi * eta) * d, b + eta * d, c + xi * d};
}

Vec2 naturalCorner(int i_count, int i_corner)
{
    static constexpr Vec2 kTriangle[] = {{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}};
    static constexpr Vec2 kQuad[] = {{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}};
    return i_count == 3 ? kTriangle[i_corner] : kQuad[i_corner];
}

// Real roots of p t^2 + q t + r = 0.
int roots(double p, double q, double r, double * o_root)
{
    double const discriminant = q * q - 4.0 * p * r;
    if (discriminant < 0.0)
        return 0;
    double const s = -0.5 * (q + std::copysign(std::sqrt(discriminant), q));
    int count = 0;
    if (s != 0.0)
        o_root[count++] = r / s;
    if (p != 0.0)
        o_root[count++] = s / p;
    return count;
}

bool naturalOfTriangle(std::array<Vec2, 4> const & y, Vec2 i_x, double i_tolerance, Vec2 & o_natural)
{
    Vec2 const b = y[1] - y[0], c = y[2] - y[0], e = i_x - y[0];
    double const twice = cross(b, c);
    if (twice == 0.0)
        return false;
    o_natural = {cross(e, c) / twice, cross(b, e) / twice};
    double const share = i_tolerance / std::abs(twice); // over a height
    return o_natural.x >= -share * length(c) && o_natural.y >= -share * length(b) &&
           1.0 - o_natural.x - o_natural.y >= -share * length(y[2] - y[1]);
}

bool naturalOfQuad(std::array<Vec2, 4> const & y, Vec2 i_x, double i_tolerance, Vec2 & o_natural)
{
    Field<Vec2> const centre = fieldAt(y, 4, {0.0, 0.0});
    Vec2 const b = centre.alongXi, c = centre.alongEta, d = 0.25 * (y[0] + y[2] - y[1] - y[3]);
    Vec2 const e = i_x - centre.value;
    double root[2];
    int const count = roots(cross(c, d), cross(c, b) - cross(e, d), -cross(e, b), root);
    for (int i = 0; i < count; ++i)
    {
        Vec2 const along = b + root[i] * d;
        if (!(dot(along, along) > 0.0))
            continue;
        o_natural = {dot(e - root[i] * c, along) / dot(along, along), root[i]};
        double const slackXi = i_tolerance / length(along);
        double const slackEta = i_tolerance / length(c + o_natural.x * d);
        if (std::abs(o_natural.x) <= 1.0 + slackXi && std::abs(o_natural.y) <= 1.0 + slackEta)
            return true;
    }
    return false;
}

} // namespace

FlatImage::FlatImage(std::vector<Part> i_parts)
{
    double const infinity = std::numeric_limits<double>::infinity();
    Vec2 high{-infinity, -infinity};
    m_low = {infinity, infinity};
    for (Part const & part : i_parts)
        for (Vec2 const y : part.flat)
        {
            m_low = {std::min(m_low.x, y.x), std::min(m_low.y, y.y)};
            high = {std::max(high.x, y.x), std::max(high.y, y.y)};
        }
    m_size = length(high - m_low);
    m_tolerance = kTolerance * m_size;
    for (Part const & part : i_parts)
        addPart(part);
    double const perSide = std::sqrt(static_cast<double>(m_faces.size()) + 1.0);
    m_columns = m_rows = std::clamp(static_cast<int>(perSide), 1, kGreatestGrid);
    m_low = m_low - Vec2{2.0 * m_tolerance, 2.0 * m_tolerance};
    high = high + Vec2{2.0 * m_tolerance, 2.0 * m_tolerance};
    m_step = {(high.x - m_low.x) / m_columns, (high.y - m_low.y) / m_rows};
    buildGrid();
}

void FlatImage::addPart(Part const & i_part)
{
    std::vector<int> faceOf(i_part.mesh.cells.size(), -1);
    std::vector<Vec2> outline;
    for (std::size_t c = 0; c < faceOf.size(); ++c)
    {
        Cell const & cell = i_part.mesh.cells[c];
        Face face{cell.count, {}, {}};
        outline.clear();
        for (int k = 0; k < cell.count; ++k)
        {
            face.x[at(k)] = i_part.mesh.position[at(cell.node[at(k)])];
            face.y[at(k)] = i_part.flat[at(cell.node[at(k)])];
            outline.push_back(face.y[at(k)]);
        }
        if (signedArea(outline) == 0.0)
            continue;
        faceOf[c] = static_cast<int>(m_faces.size());
        m_faces.push_back(face);
    }
    addLoops(i_part, faceOf);
}

// Loops run with the surface on one and the same side: the inner ones turn against the outer ones, which together
// hold more area.
void FlatImage::addLoops(Part const & i_part, std::vector<int> const & i_faceOf)
{
    std::vector<std::vector<Vec2>> outlines;
    double total = 0.0;
    for (std::vector<int> const & loop : i_part.loops)
    {
        outlines.emplace_back();
        for (int const node : loop)
            outlines.back().push_back(i_part.flat[at(node)]);
        total += signedArea(outlines.back());
    }
    std::vector<bool> inner(i_part.flat.size(), false);
    for (std::size_t i = 0; i < outlines.size(); ++i)
        if (signedArea(outlines[i]) * total < 0.0)
        {
            for (int const node : i_part.loops[i])
                inner[at(node)] = true;
            m_openings.push_back(std::move(outlines[i]));
        }
    for (Side const & side : i_part.free)
        if (i_faceOf[at(side.cell)] >= 0 && !(inner[at(side.a)] && inner[at(side.b)]))
            m_rim.push_back({i_faceOf[at(side.cell)], side.corner});
}

void FlatImage::buildGrid()
{
    struct Range
    {
        int left, right, bottom, top;
    };
    auto const place = [](double i_value, int i_count)
    { return std::clamp(static_cast<int>(i_value), 0, i_count - 1); };
    std::vector<Range> ranges;
    for (Face const & face : m_faces)
    {
        Vec2 low = face.y[0], high = face.y[0];
        for (int k = 1; k < face.count; ++k)
        {
            low = {std::min(low.x, face.y[at(k)].x), std::min(low.y, face.y[at(k)].y)};
            high = {std::max(high.x, face.y[at(k)].x), std::max(high.y, face.y[at(k)].y)};
        }
        Vec2 const margin{2.0 * m_tolerance, 2.0 * m_tolerance};
        Vec2 const from = low - margin - m_low, to = high + margin - m_low;
        ranges.push_back({place(from.x / m_step.x, m_columns), place(to.x / m_step.x, m_columns),
                          place(from.y / m_step.y, m_rows), place(to.y / m_step.y, m_rows)});
    }
    auto const visit = [&](auto && i_action)
    {
        for (std::size_t f = 0; f < ranges.size(); ++f)
            for (int row = ranges[f].bottom; row <= ranges[f].top; ++row)
                for (int column = ranges[f].left; column <= ranges[f].right; ++column)
                    i_action(at(row * m_columns + column), static_cast<int>(f));
    };
    m_start.assign(at(m_columns * m_rows) + 1, 0);
    visit([&](std::size_t cell, int) { ++m_start[cell + 1]; });
    for (std::size_t cell = 1; cell < m_start.size(); ++cell)
        m_start[cell] += m_start[cell - 1];
    m_entry.resize(at(m_start.back()));
    std::vector<int> fill(m_start.begin(), m_start.end() - 1);
    visit([&](std::size_t cell, int face) { m_entry[at(fill[cell]++)] = face; });
}

bool FlatImage::locate(Face const & i_face, Vec2 i_x, Vec2 & o_natural) const
{
    return i_face.count == 3 ? naturalOfTriangle(i_face.y, i_x, m_tolerance, o_natural)
                             : naturalOfQuad(i_face.y, i_x, m_tolerance, o_natural);
}

std::vector<Vec3> FlatImage::find(Vec2 i_x) const
{
    std::vector<Vec3> found;
    Vec2 const place{(i_x.x - m_low.x) / m_step.x, (i_x.y - m_low.y) / m_step.y};
    if (!(place.x >= 0.0 && place.x <= m_columns && place.y >= 0.0 && place.y <= m_rows))
        return found;
    int const column = std::min(static_cast<int>(place.x), m_columns - 1);
    int const row = std::min(static_cast<int>(place.y), m_rows - 1);
    std::size_t const cell = at(row * m_columns + column);
    for (int i = m_start[cell]; i < m_start[cell + 1]; ++i)
    {
        Face const & face = m_faces[at(m_entry[at(i)])];
        Vec2 natural;
        if (!locate(face, i_x, natural))
            continue;
        Vec3 const x = fieldAt(face.x, face.count, natural).value;
        bool const known = std::any_of(found.begin(), found.end(),
                                       [&](Vec3 other) { return length(x - other) <= kSamePoint * m_size; });
        if (!known)
            found.push_back(x);
    }
    return found;
}

bool FlatImage::overOpening(Vec2 i_x) const
{
    return std::any_of(m_openings.begin(), m_openings.end(),
                       [&](std::vector<Vec2> const & opening) { return holds(opening, i_x); });
}

Vec3 FlatImage::beyondRim(Vec2 i_x) const
{
    if (m_faces.empty())
        return lifted(i_x);
    RimSide nearest{0, 0};
    double share = 0.0, least = std::numeric_limits<double>::infinity();
    for (RimSide const & side : m_rim)
    {
        Face const & face = m_faces[at(side.face)];
        Vec2 const a = face.y[at(side.corner)], along = face.y[at((side.corner + 1) % face.count)] - a;
        double const t = dot(along, along) > 0.0 ? std::clamp(dot(i_x - a, along) / dot(along, along), 0.0, 1.0) : 0.0;
        Vec2 const gap = i_x - a - t * along;
        if (dot(gap, gap) < least)
        {
            least = dot(gap, gap);
            nearest = side;
            share = t;
        }
    }
    Face const & face = m_faces[at(nearest.face)];
    Vec2 const from = naturalCorner(face.count, nearest.corner);
    Vec2 const to = naturalCorner(face.count, (nearest.corner + 1) % face.count);
    Vec2 const natural = from + share * (to - from);
    Field<Vec2> const y = fieldAt(face.y, face.count, natural);
    Field<Vec3> const x = fieldAt(face.x, face.count, natural);
    Vec2 const rest = i_x - y.value;
    double const area = cross(y.alongXi, y.alongEta);
    if (area == 0.0) // the corner of a quadrilateral that is drawn out to a line
        return x.value;
    return x.value + (cross(rest, y.alongEta) / area) * x.alongXi + (cross(y.alongXi, rest) / area) * x.alongEta;
}

} // namespace voz::binder
