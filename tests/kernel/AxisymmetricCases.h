// AxisymmetricCases.h: cups A1 to A5 and domes D1 to D3 with their references, and the errors of a solve.
//
// Quarter models with mesh index k. Errors are taken over all rings of nodes (flat radius) and over the rings of
// elements (mean thickness strain).

#ifndef AXISYMMETRICCASES_H
#define AXISYMMETRICCASES_H

#include "AxisymmetricReference.h"
#include "OneStepProblems.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>

namespace onesteptest
{

struct Case
{
    char const * name;
    bool dome;
    double wall, flange; // of a cup
    double halfAngle;    // of a dome
    double force, friction;
    double length, blankRadius, poleStrain, leastH3, greatestH3, greatestStrain, punchForce; // published
};

// clang-format off
inline constexpr Case kCases[] = {
    {"A1", false, 7.0, 12.0, 0.0, 0.0,   0.0,   71.420352, 67.11001, 0.0005234, -0.002951, 0.058524,  0.26261, 29369.57},
    {"A2", false, 7.0, 12.0, 0.0, 20.0,  0.0,   71.420352, 66.89712, 0.0017017, -0.005224, 0.050927,  0.26431, 34511.86},
    {"A3", false, 7.0, 12.0, 0.0, 100.0, 0.0,   71.420352, 65.75965, 0.0167695, -0.033539, 0.019754,  0.27537, 54202.72},
    {"A4", false, 7.0, 12.0, 0.0, 20.0,  0.144, 71.420352, 66.75133, 0.0016824, -0.011855, 0.050206,  0.26592, 43953.00},
    {"A5", false, 22.0, 16.0, 0.0, 10.0, 0.0,   90.420352, 78.90987, 0.0061084, -0.012217, 0.087828,  0.46050, 43203.87},
    {"D1", true, 0.0, 0.0, 40.0,   0.0, 0.0,    34.906585, 32.13938, 0.1059984, -0.211997, -0.050782, 0.25039, 0.0},
    {"D2", true, 0.0, 0.0, 60.0,   0.0, 0.0,    52.359878, 43.30127, 0.2489879, -0.497976, -0.079355, 0.58816, 0.0},
    {"D3", true, 0.0, 0.0, 90.0,   0.0, 0.0,    78.539816, 50.0,     0.4264529, -0.852906, -0.488783, 1.00737, 0.0},
};
// clang-format on

inline Case const & named(std::string const & name)
{
    return *std::find_if(std::begin(kCases), std::end(kCases), [&](Case const & c) { return c.name == name; });
}

inline double halfAngle(Case const & c)
{
    return c.halfAngle * kPi / 180.0;
}

// Shared by the tests: each reference is integrated once.
inline AxisymmetricSolution const & reference(Case const & c)
{
    static std::map<std::string, std::unique_ptr<AxisymmetricSolution>> known;
    auto & place = known[c.name];
    if (!place)
    {
        using Rim = AxisymmetricSolution::Rim;
        Meridian const meridian =
            c.dome ? domeMeridianOf(50.0, halfAngle(c)) : cupMeridian(32.0, 8.0, c.wall, 5.0, c.flange);
        place = std::make_unique<AxisymmetricSolution>(meridian, PointLaw{}, c.friction,
                                                       c.dome ? Rim::Fixed : Rim::Force, c.force);
    }
    return *place;
}

struct Errors
{
    double radius = 0.0;    // largest over the rings' means, mm
    double rim = 0.0;       // of the blank radius, relative
    double thickness = 0.0; // largest over the rings of elements
    double punchForce = 0.0;
    int steps = 0;
    double holding = 0.0;
};

// Rows of the wall per mesh index: the long one has twice as many.
inline int wallRows(Case const & c)
{
    return c.wall > 20.0 ? 4 : 2;
}

struct Model
{
    SurfaceMesh mesh;
    Profile meridian;
    Problem problem;
    int rays; // nodes in a ring
};

inline Model modelOf(Case const & c, int k, Cells cells)
{
    Profile const meridian = c.dome ? domeMeridian(50.0, halfAngle(c), k)
                                    : voz::examples::meridian(Cup{32.0, 8.0, c.wall, 5.0, c.flange, wallRows(c)}, k);
    SurfaceMesh const mesh = revolve(meridian, 6 * k, Extent::Quarter, cells);
    Model model{mesh, meridian, problemOf(mesh, mildSteel()), 6 * k + 1};
    Point2 const rim = meridian.points().back();
    auto const onRim = [rim](Point3 const & p)
    { return std::fabs(std::hypot(p[0], p[1]) - rim[0]) < 1e-9 && std::fabs(p[2] - rim[1]) < 1e-9; };
    quarterSymmetry(model.problem, mesh);
    if (c.dome)
        hold(model.problem, mesh, onRim, kBothDirections);
    else if (c.force > 0.0)
        restrain(model.problem, mesh, c.force, onRim);
    model.problem.toolFriction = c.friction;
    return model;
}

// Arc length of a row of the profile, on the true curve: rows are equal within a piece.
inline std::vector<double> arcLengths(Case const & c, int k)
{
    std::vector<double> s{0.0};
    auto const piece = [&s](double length, int rows)
    {
        double const from = s.back();
        for (int row = 1; row <= rows; ++row)
            s.push_back(from + length * row / rows);
    };
    if (c.dome)
        piece(50.0 * halfAngle(c), 6 * k);
    else
    {
        piece(32.0, 4 * k);
        piece(8.0 * kHalfPi, 3 * k);
        piece(c.wall, wallRows(c) * k);
        piece(5.0 * kHalfPi, 3 * k);
        piece(c.flange, 2 * k);
    }
    return s;
}

inline Errors errorsOf(Case const & c, int k, Cells cells, Model const & model, Solution const & solution)
{
    AxisymmetricSolution const & exact = reference(c);
    std::vector<double> const s = arcLengths(c, k);

    Errors errors;
    for (std::size_t row = 1; row < s.size(); ++row)
    {
        double mean = 0.0;
        for (int ray = 0; ray < model.rays; ++ray)
            mean += flatRadius(solution, 1 + (static_cast<int>(row) - 1) * model.rays + ray) / model.rays;
        double const error = std::fabs(mean - exact.at(s[row]).R);
        errors.radius = std::max(errors.radius, error);
        if (row + 1 == s.size())
            errors.rim = error / exact.blankRadius();
    }
    std::size_t e = 0;
    int const raysPerRow = model.rays - 1;
    for (std::size_t row = 0; row + 1 < s.size(); ++row)
    {
        int const inRing = row == 0 || cells == Cells::Quads ? raysPerRow : 2 * raysPerRow;
        double mean = 0.0;
        for (int i = 0; i < inRing; ++i, ++e)
            mean += thicknessStrain(model.problem, solution, e) / inRing;
        errors.thickness = std::max(errors.thickness, std::fabs(mean - exact.at(0.5 * (s[row] + s[row + 1])).h3()));
    }
    errors.punchForce = 4.0 * solution.punchForce;
    errors.steps = solution.newtonSteps;
    errors.holding = solution.holdingShare;
    return errors;
}

} // namespace onesteptest

#endif
