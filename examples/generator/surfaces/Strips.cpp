// Strips.cpp: strip surfaces and developable parts.

#include "Grid.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace voz::examples
{

double area(SurfaceMesh const & mesh)
{
    double sum = 0.0;
    auto const add = [&](int i, int j, int k)
    {
        Point3 const & a = mesh.nodes[static_cast<std::size_t>(i)];
        Point3 const & b = mesh.nodes[static_cast<std::size_t>(j)];
        Point3 const & c = mesh.nodes[static_cast<std::size_t>(k)];
        Point3 const u{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        Point3 const v{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
        sum += 0.5 * std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]);
    };
    for (auto const & [a, b, c, d] : mesh.elements)
    {
        add(a, b, c);
        if (d >= 0)
            add(a, c, d);
    }
    return sum;
}

SurfaceMesh extrude(Profile const & profile, double width, int strips, Cells cells)
{
    std::vector<Point2> const & points = profile.points();
    return sheet(static_cast<int>(points.size()) - 1, strips, cells,
                 [&](int row, int strip) -> Point3
                 {
                     Point2 const & p = points[static_cast<std::size_t>(row)];
                     return {p[0], width * strip / strips, p[1]};
                 });
}

Profile halfProfile(Hat const & hat, int rowsPerArc)
{
    int const rowsBottom = 2 * rowsPerArc;
    return Profile({0.0, 0.0}, 0.0)
        .line(hat.bottom, rowsBottom)
        .arc(hat.punchArc, hat.wallAngle, rowsPerArc)
        .line(hat.wall, rowsPerArc)
        .arc(hat.dieArc, -hat.wallAngle, rowsPerArc)
        .line(hat.flange, rowsPerArc);
}

SurfaceMesh halfHat(Hat const & hat, double width, int rowsPerArc, int strips, Cells cells)
{
    return extrude(halfProfile(hat, rowsPerArc), width, strips, cells);
}

SurfaceMesh wholeHat(Hat const & hat, double width, int rowsPerArc, int strips, Cells cells)
{
    std::vector<Point2> const half = halfProfile(hat, rowsPerArc).points();
    int const rows = static_cast<int>(half.size()) - 1; // of one side
    return sheet(2 * rows, strips, cells,
                 [&](int row, int strip) -> Point3
                 {
                     bool const left = row < rows;
                     Point2 const & p = half[static_cast<std::size_t>(left ? rows - row : row - rows)];
                     return {left ? -p[0] : p[0], width * strip / strips, p[1]};
                 });
}

SurfaceMesh vBend(VBend const & bend, double width, int strips, Cells cells)
{
    double const half = 0.5 * bend.turn;
    double const x = bend.leg * std::cos(half) + bend.radius * std::sin(half);
    double const z = bend.leg * std::sin(half) + bend.radius * (1.0 - std::cos(half));
    Profile const profile = Profile({-x, z}, -half)
                                .line(bend.leg - bend.near, bend.rowsFar)
                                .line(bend.near, bend.rowsNear)
                                .arc(bend.radius, bend.turn, bend.rowsArc)
                                .line(bend.near, bend.rowsNear)
                                .line(bend.leg - bend.near, bend.rowsFar);
    return extrude(profile, width, strips, cells);
}

SurfaceMesh panel(Panel const & shape, Cells cells)
{
    constexpr double kHalfPi = 1.5707963267948966;
    auto const pocket = [](double at, double half)
    { return std::fabs(at) < half ? std::pow(std::cos(kHalfPi * at / half), 2) : 0.0; };
    return sheet(shape.rows, shape.strips, cells,
                 [&](int row, int strip) -> Point3
                 {
                     double const s = shape.halfLength * (2.0 * row / shape.rows - 1.0);
                     double const y = shape.halfWidth * (2.0 * strip / shape.strips - 1.0);
                     double const sunk =
                         shape.depth * pocket(s, shape.pocketHalfLength) * pocket(y, shape.pocketHalfWidth);
                     double const radius = shape.radius - sunk;
                     return {radius * std::sin(s / shape.radius), y, radius * std::cos(s / shape.radius)};
                 });
}

SurfaceMesh cylinder(double radius, double halfAngle, int strips, double length, int rows, Cells cells)
{
    return sheet(strips, rows, cells,
                 [&](int strip, int row) -> Point3
                 {
                     double const angle = halfAngle * (2.0 * strip / strips - 1.0);
                     return {radius * std::sin(angle), length * row / rows, radius * std::cos(angle)};
                 });
}

double BulgedTube::radiusAt(double x) const
{
    double const from = std::fabs(x - 0.5 * length);
    double const cosine = from < halfBulge ? std::cos(0.5 * std::numbers::pi * from / halfBulge) : 0.0;
    return radius + bulge * cosine * cosine;
}

SurfaceMesh bulgedTube(BulgedTube const & shape, Cells cells)
{
    SurfaceMesh mesh;
    for (int row = 0; row <= shape.rows; ++row)
        for (int j = 0; j < shape.around; ++j)
        {
            double const x = shape.length * row / shape.rows;
            double const angle = 2.0 * std::numbers::pi * j / shape.around; // from +z to +y
            mesh.nodes.push_back({x, shape.radiusAt(x) * std::sin(angle), shape.radiusAt(x) * std::cos(angle)});
        }
    for (int row = 0; row < shape.rows; ++row)
        for (int j = 0; j < shape.around; ++j)
        {
            int const first = row * shape.around + j;
            int const beside = row * shape.around + (j + 1) % shape.around;
            addCell(mesh, {first, beside, beside + shape.around, first + shape.around}, cells, (row + j) % 2 == 0);
        }
    for (std::array<int, 4> & element : mesh.elements) // outward
        std::swap(element[1], element[element[3] < 0 ? 2 : 3]);
    return mesh;
}

SurfaceMesh cone(double halfApex, double inner, double outer, double turn, int strips, int rows, Cells cells)
{
    return sheet(rows, strips, cells,
                 [&](int row, int strip) -> Point3
                 {
                     double const slant = inner + (outer - inner) * row / rows;
                     double const angle = turn * (2.0 * strip / strips - 1.0);
                     double const radius = slant * std::sin(halfApex);
                     return {radius * std::cos(angle), radius * std::sin(angle), -slant * std::cos(halfApex)};
                 });
}

namespace
{

// The rectangle's boundary, counter-clockwise from its lower left corner, cut into cells.
std::vector<Point2> rectangle(double length, double width, int cellsAlong, int cellsAcross)
{
    std::vector<Point2> points;
    points.reserve(static_cast<std::size_t>(2 * cellsAlong) + static_cast<std::size_t>(2 * cellsAcross));
    for (int i = 0; i < cellsAlong; ++i)
        points.push_back({length * i / cellsAlong, 0.0});
    for (int i = 0; i < cellsAcross; ++i)
        points.push_back({length, width * i / cellsAcross});
    for (int i = cellsAlong; i > 0; --i)
        points.push_back({length * i / cellsAlong, width});
    for (int i = cellsAcross; i > 0; --i)
        points.push_back({0.0, width * i / cellsAcross});
    return points;
}

// The bend and the flange: length along the sheet and place in space of each row behind the plate's edge.
struct BendRow
{
    double flat; // x in the blank
    Point2 bent; // x, z in the part
};

std::vector<BendRow> bendRows(Bracket const & shape)
{
    Profile const profile = Profile({shape.plate, 0.0}, 0.0)
                                .arc(shape.bendRadius, -shape.bendAngle, shape.rowsPerArc)
                                .line(shape.flange, shape.rowsFlange);
    std::vector<BendRow> rows;
    double flat = shape.plate;
    for (std::size_t i = 1; i < profile.points().size(); ++i)
    {
        Point2 const & p = profile.points()[i - 1];
        Point2 const & q = profile.points()[i];
        flat += std::hypot(q[0] - p[0], q[1] - p[1]); // facets keep their length
        rows.push_back({flat, q});
    }
    return rows;
}

// Rings from the hole to the plate's edge, then the strips behind the edge x = plate. place(row) puts a row of the
// bend into space.
template <class Place>
SurfaceMesh bracketMesh(Bracket const & shape, Cells cells, Place place)
{
    int const cellsAlong = static_cast<int>(std::lround(shape.cellsAcross * shape.plate / shape.width));
    std::vector<Point2> const edge = rectangle(shape.plate, shape.width, cellsAlong, shape.cellsAcross);
    int const round = static_cast<int>(edge.size());
    Point2 const centre{0.5 * shape.plate, 0.5 * shape.width};

    SurfaceMesh mesh;
    for (int ring = 0; ring <= shape.rowsRound; ++ring)
        for (Point2 const & outer : edge)
        {
            double const dx = outer[0] - centre[0];
            double const dy = outer[1] - centre[1];
            double const whole = std::hypot(dx, dy);
            double const share =
                ring == shape.rowsRound ? 1.0 : (shape.hole + (whole - shape.hole) * ring / shape.rowsRound) / whole;
            if (ring == shape.rowsRound)
                mesh.nodes.push_back({outer[0], outer[1], 0.0});
            else
                mesh.nodes.push_back({centre[0] + share * dx, centre[1] + share * dy, 0.0});
        }
    for (int ring = 0; ring < shape.rowsRound; ++ring)
        for (int i = 0; i < round; ++i)
        {
            int const a = ring * round + i;
            int const d = ring * round + (i + 1) % round;
            addCell(mesh, {a, a + round, d + round, d}, cells, i % 2 == 0);
        }

    int previous = shape.rowsRound * round + cellsAlong; // the plate's edge at x = plate
    for (BendRow const & row : bendRows(shape))
    {
        int const first = static_cast<int>(mesh.nodes.size());
        for (int j = 0; j <= shape.cellsAcross; ++j)
            mesh.nodes.push_back(place(row, shape.width * j / shape.cellsAcross));
        for (int j = 0; j < shape.cellsAcross; ++j)
            addCell(mesh, {previous + j, first + j, first + j + 1, previous + j + 1}, cells, j % 2 == 0);
        previous = first;
    }
    return mesh;
}

} // namespace

SurfaceMesh bracket(Bracket const & shape, Cells cells)
{
    return bracketMesh(shape, cells, [](BendRow const & row, double y) { return Point3{row.bent[0], y, row.bent[1]}; });
}

SurfaceMesh bracketBlank(Bracket const & shape, Cells cells)
{
    return bracketMesh(shape, cells, [](BendRow const & row, double y) { return Point3{row.flat, y, 0.0}; });
}

} // namespace voz::examples
