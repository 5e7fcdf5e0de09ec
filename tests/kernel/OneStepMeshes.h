// OneStepMeshes.h: small formed parts for the tests of the one-step solve. Lengths in the builders are millimetres.

#ifndef ONESTEPMESHES_H
#define ONESTEPMESHES_H

#include "onestep/OneStep.h"

#include <cmath>
#include <functional>
#include <numbers>
#include <vector>

namespace onesteptest
{

using voz::onestep::Problem;

enum class Cells
{
    Triangles,
    Quadrilaterals
};

inline voz::onestep::MaterialLaw mildSteel()
{
    voz::onestep::MaterialLaw law;
    law.thickness = 0.78e-3;
    law.rValue = 1.79;
    law.nValue = 0.2589;
    law.kValue = 565.32e6;
    law.yield = law.kValue * std::pow(0.007117, law.nValue);
    return law;
}

inline void addNode(Problem & io_problem, double i_x, double i_y, double i_z)
{
    io_problem.nodes.push_back({0.001 * i_x, 0.001 * i_y, 0.001 * i_z});
}

// A grid of rows x columns cells whose nodes stand row by row from i_first on.
inline void addGrid(Problem & io_problem, int i_first, int i_rows, int i_columns, Cells i_cells)
{
    for (int r = 0; r < i_rows; ++r)
        for (int c = 0; c < i_columns; ++c)
        {
            int const a = i_first + r * (i_columns + 1) + c, b = a + 1, d = a + i_columns + 1, e = d + 1;
            if (i_cells == Cells::Quadrilaterals)
                io_problem.elements.push_back({{a, b, e, d}, 0});
            else if ((r + c) % 2 == 0)
            {
                io_problem.elements.push_back({{a, b, e, -1}, 0});
                io_problem.elements.push_back({{a, e, d, -1}, 0});
            }
            else
            {
                io_problem.elements.push_back({{a, b, d, -1}, 0});
                io_problem.elements.push_back({{b, e, d, -1}, 0});
            }
        }
}

// Rows x columns cells over the unit square, mapped by i_place (u along the columns, v along the rows) to millimetres.
inline Problem gridPart(int i_rows, int i_columns, Cells i_cells,
                        std::function<std::array<double, 3>(double u, double v)> const & i_place)
{
    Problem problem;
    problem.materials.push_back(mildSteel());
    for (int r = 0; r <= i_rows; ++r)
        for (int c = 0; c <= i_columns; ++c)
        {
            auto const p = i_place(static_cast<double>(c) / i_columns, static_cast<double>(r) / i_rows);
            addNode(problem, p[0], p[1], p[2]);
        }
    addGrid(problem, 0, i_rows, i_columns, i_cells);
    return problem;
}

// A quarter of a part about the vertical axis: node 0 on the axis, then rings of columns + 1 nodes from the plane y = 0 to the
// plane x = 0; i_place(ring, share of the quarter) gives the place of a node in millimetres.
struct Quarter
{
    Problem problem;
    int rings = 0, columns = 0;
    int node(int i_ring, int i_column) const { return i_ring == 0 ? 0 : 1 + (i_ring - 1) * (columns + 1) + i_column; }
    bool whole = false; // then columns go all the way round and no plane is one of symmetry
};

inline Quarter quarterPart(int i_rings, int i_columns, Cells i_cells, double i_bottom,
                           std::function<std::array<double, 3>(int ring, int column)> const & i_place)
{
    Quarter part;
    part.rings = i_rings;
    part.columns = i_columns;
    part.problem.materials.push_back(mildSteel());
    addNode(part.problem, 0.0, 0.0, i_bottom);
    for (int ring = 1; ring <= i_rings; ++ring)
        for (int column = 0; column <= i_columns; ++column)
        {
            auto const p = i_place(ring, column);
            addNode(part.problem, p[0], p[1], p[2]);
        }
    for (int column = 0; column < i_columns; ++column)
        part.problem.elements.push_back({{0, part.node(1, column), part.node(1, column + 1), -1}, 0});
    for (int ring = 1; ring < i_rings; ++ring)
        for (int column = 0; column < i_columns; ++column)
        {
            int const a = part.node(ring, column), b = part.node(ring + 1, column);
            int const c = part.node(ring + 1, column + 1), d = part.node(ring, column + 1);
            if (i_cells == Cells::Quadrilaterals)
                part.problem.elements.push_back({{a, b, c, d}, 0});
            else
            {
                part.problem.elements.push_back({{a, b, c, -1}, 0});
                part.problem.elements.push_back({{a, c, d, -1}, 0});
            }
        }
    for (int ring = 0; ring <= i_rings; ++ring)
    {
        part.problem.constraints.push_back({part.node(ring, 0), 0.5 * std::numbers::pi, 0.0});
        part.problem.constraints.push_back({part.node(ring, i_columns), 0.0, 0.0});
    }
    return part;
}

// Restraint in N/mm along the outermost ring.
inline void restrainRim(Quarter & io_part, double i_force)
{
    Problem & problem = io_part.problem;
    int const firstOfRim = io_part.node(io_part.rings, 0);
    for (int e = 0; e < static_cast<int>(problem.elements.size()); ++e)
    {
        auto const & nodes = problem.elements[static_cast<std::size_t>(e)].nodes;
        int const corners = nodes[3] == -1 ? 3 : 4;
        for (int corner = 0; corner < corners; ++corner)
        {
            int const next = (corner + 1) % corners;
            if (nodes[static_cast<std::size_t>(corner)] >= firstOfRim && nodes[static_cast<std::size_t>(next)] >= firstOfRim)
                problem.holders.push_back({e, corner, next, 1000.0 * i_force});
        }
    }
}

// A meridian of arcs and lines as rings; rows per part.
struct Meridian
{
    std::vector<double> s, r, z; // from the pole
    void line(double i_length, double i_slope, int i_rows)
    {
        for (int i = 0; i < i_rows; ++i)
            add(i_length / i_rows, i_slope, 0.0);
    }
    void arc(double i_radius, double i_from, double i_to, int i_rows)
    {
        double const turn = (i_to - i_from) / i_rows;
        for (int i = 0; i < i_rows; ++i)
            add(i_radius * std::abs(turn), i_from + (i + 0.5) * turn, turn);
    }

private:
    void add(double i_length, double i_slope, double i_turn) // chord of the piece
    {
        if (s.empty())
        {
            s.push_back(0.0);
            r.push_back(0.0);
            z.push_back(0.0);
        }
        double const chord = i_turn == 0.0 ? i_length : i_length * std::sin(0.5 * std::abs(i_turn)) / (0.5 * std::abs(i_turn));
        s.push_back(s.back() + i_length);
        r.push_back(r.back() + chord * std::cos(i_slope));
        z.push_back(z.back() + chord * std::sin(i_slope));
    }
};

inline Quarter revolved(Meridian const & i_meridian, int i_columns, Cells i_cells)
{
    auto const at = [](int i) { return static_cast<std::size_t>(i); };
    return quarterPart(static_cast<int>(i_meridian.s.size()) - 1, i_columns, i_cells, 0.0,
                       [&](int ring, int column) -> std::array<double, 3>
                       {
                           double const angle = 0.5 * std::numbers::pi * column / i_columns;
                           return {i_meridian.r[at(ring)] * std::cos(angle), i_meridian.r[at(ring)] * std::sin(angle),
                                   i_meridian.z[at(ring)]};
                       });
}

// Bottom radius 32, punch arc 8, wall, die arc 5, flange.
inline Meridian cupMeridian(int k, double i_wall, double i_flange)
{
    Meridian m;
    double const right = 0.5 * std::numbers::pi;
    m.line(32.0, 0.0, 4 * k);
    m.arc(8.0, 0.0, right, 3 * k);
    m.line(i_wall, right, 2 * k);
    m.arc(5.0, right, 0.0, 3 * k);
    m.line(i_flange, 0.0, 2 * k);
    return m;
}

// The square cup: punch 70 x 70, blank 150 x 150. Mid-surface with bottom half width 27, punch arc 8.39, die arc 5.39; rim through the
// measured points of the side's middle and of the diagonal.
struct SquareCup
{
    double depth = 40.0, side = 75.0 - 27.96, diagonal = 106.07 - 15.36;
    int bottomRows = 8, arcRows = 5, wallRows = 10, flangeRows = 12, straight = 8, corner = 12;
    Cells cells = Cells::Triangles;
};

struct Profile // distance from the middle, height, centre of the corner
{
    double u, z, c;
};

inline std::vector<Profile> squareCupProfile(SquareCup const & i_cup)
{
    std::vector<Profile> profile;
    for (int i = 1; i <= i_cup.bottomRows; ++i)
        profile.push_back({27.0 * i / i_cup.bottomRows, 0.0, 25.0 * i / i_cup.bottomRows});
    // common tangent of the two arcs, one turning up and one turning back
    double const radii = 8.39 + 5.39, across = 42.0 - 27.0, up = i_cup.depth - 5.39 - 8.39;
    double const gap = std::hypot(across, up);
    double const slope = std::atan2(up, across) + std::asin(radii / gap);
    for (int i = 1; i <= i_cup.arcRows; ++i)
    {
        double const a = slope * i / i_cup.arcRows;
        profile.push_back({27.0 + 8.39 * std::sin(a), 8.39 * (1.0 - std::cos(a)), 25.0});
    }
    Profile const low = profile.back();
    Profile const high{42.0 - 5.39 * std::sin(slope), i_cup.depth - 5.39 * (1.0 - std::cos(slope)), 24.0};
    for (int i = 1; i <= i_cup.wallRows; ++i)
    {
        double const t = static_cast<double>(i) / i_cup.wallRows;
        profile.push_back({low.u + t * (high.u - low.u), low.z + t * (high.z - low.z), 25.0 - t});
    }
    for (int i = 1; i <= i_cup.arcRows; ++i)
    {
        double const a = slope * (1.0 - static_cast<double>(i) / i_cup.arcRows);
        profile.push_back({42.0 - 5.39 * std::sin(a), i_cup.depth - 5.39 * (1.0 - std::cos(a)), 24.0});
    }
    return profile;
}

// Point of a contour with half width u and corner centre c; column 0 .. 2 straight + corner.
inline std::array<double, 2> contourPoint(SquareCup const & i_cup, double u, double c, int i_column)
{
    if (i_column <= i_cup.straight)
        return {u, c * i_column / i_cup.straight};
    if (i_column >= i_cup.straight + i_cup.corner)
        return {c * (2 * i_cup.straight + i_cup.corner - i_column) / i_cup.straight, u};
    double const angle = 0.5 * std::numbers::pi * (i_column - i_cup.straight) / i_cup.corner;
    return {c + (u - c) * std::cos(angle), c + (u - c) * std::sin(angle)};
}

// Where the outward normal of the die contour meets the rim, in the lower half of the quarter.
inline std::array<double, 2> rimPoint(SquareCup const & i_cup, int i_column)
{
    int const last = 2 * i_cup.straight + i_cup.corner;
    if (2 * i_column > last)
    {
        auto const mirrored = rimPoint(i_cup, last - i_column);
        return {mirrored[1], mirrored[0]};
    }
    double const c = i_cup.diagonal / std::sqrt(2.0);
    auto const u = [&](double v)
    { return i_cup.side + (c - i_cup.side) * (1.0 - std::exp(-std::pow(v / (0.33 * c), 2.0))) / (1.0 - std::exp(-std::pow(1.0 / 0.33, 2.0))); };
    if (i_column <= i_cup.straight)
    {
        double const v = 24.0 * i_column / i_cup.straight;
        return {u(v), v};
    }
    double const angle = 0.5 * std::numbers::pi * (i_column - i_cup.straight) / i_cup.corner;
    double low = 24.0, high = c;
    for (int i = 0; i < 80; ++i)
    {
        double const v = 0.5 * (low + high);
        ((u(v) - 24.0) * std::sin(angle) > (v - 24.0) * std::cos(angle) ? low : high) = v;
    }
    return {u(low), low};
}

inline Quarter squareCup(SquareCup const & i_cup)
{
    std::vector<Profile> const profile = squareCupProfile(i_cup);
    int const inner = static_cast<int>(profile.size());
    return quarterPart(inner + i_cup.flangeRows, 2 * i_cup.straight + i_cup.corner, i_cup.cells, 0.0,
                       [&](int ring, int column) -> std::array<double, 3>
                       {
                           Profile const & p = profile[static_cast<std::size_t>(std::min(ring, inner) - 1)];
                           auto const point = contourPoint(i_cup, p.u, p.c, column);
                           if (ring <= inner)
                               return {point[0], point[1], p.z};
                           auto const rim = rimPoint(i_cup, column);
                           double const t = static_cast<double>(ring - inner) / i_cup.flangeRows;
                           return {point[0] + t * (rim[0] - point[0]), point[1] + t * (rim[1] - point[1]), p.z};
                       });
}

} // namespace onesteptest

#endif
