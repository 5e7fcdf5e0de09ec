// PlateTriangle.cpp: the discrete Kirchhoff triangle.
//
// J. L. Batoz, K. J. Bathe, L. W. Ho, Int. J. Numer. Meth. Eng. 15 (1980) 1771. The rotation beta of the fibres
// (beta_x = theta_y, beta_y = -theta_x) is quadratic: linear between the corners, and on the side from i to j of length
// l with the unit vector s a bubble 4 L_i L_j D s, whose D lets the middle of the side meet the slope of the cubic w:
//
//     D = -3/(2 l) (w_j - w_i) - 3/4 s . (beta_i + beta_j)
//
// Curvatures are linear in the area coordinates L, so the middles of the sides integrate the stiffness exactly.

#include "springback/PlateTriangle.h"

#include <cmath>

namespace voz::springback
{

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

struct Side
{
    int from, to;
    geometry::Vec2 along; // unit
    double length;
};

Side sideOf(Corners const & i_corners, int i_from)
{
    int const to = (i_from + 1) % 3;
    geometry::Vec2 const d = i_corners[at(to)] - i_corners[at(i_from)];
    double const length = geometry::length(d);
    return {i_from, to, (1.0 / length) * d, length};
}

// D as a row over the nine unknowns.
Eigen::Matrix<double, 1, 9> bubble(Side const & s)
{
    Eigen::Matrix<double, 1, 9> d = Eigen::Matrix<double, 1, 9>::Zero();
    d(3 * s.from) = 1.5 / s.length;
    d(3 * s.to) = -1.5 / s.length;
    for (int const corner : {s.from, s.to})
    {
        d(3 * corner + 1) = 0.75 * s.along.y; // beta_y = -theta_x
        d(3 * corner + 2) = -0.75 * s.along.x;
    }
    return d;
}

} // namespace

Eigen::Matrix<double, 3, 9> plateCurvature(Corners const & i_corners, std::array<double, 3> const & i_place)
{
    std::array<geometry::Vec2, 3> const gradient = areaGradients(i_corners);
    Eigen::Matrix<double, 3, 9> b = Eigen::Matrix<double, 3, 9>::Zero();
    for (int corner = 0; corner < 3; ++corner)
    {
        geometry::Vec2 const g = gradient[at(corner)];
        b(0, 3 * corner + 2) += g.x;
        b(1, 3 * corner + 1) -= g.y;
        b(2, 3 * corner + 2) += g.y;
        b(2, 3 * corner + 1) -= g.x;
    }
    for (int from = 0; from < 3; ++from)
    {
        Side const side = sideOf(i_corners, from);
        geometry::Vec2 const slope =
            4.0 * (i_place[at(side.from)] * gradient[at(side.to)] + i_place[at(side.to)] * gradient[at(side.from)]);
        Eigen::Matrix<double, 1, 9> const d = bubble(side);
        b.row(0) += (slope.x * side.along.x) * d;
        b.row(1) += (slope.y * side.along.y) * d;
        b.row(2) += (slope.y * side.along.x + slope.x * side.along.y) * d;
    }
    return b;
}

Matrix9 plateStiffness(Corners const & i_corners, Eigen::Matrix3d const & i_elastic)
{
    constexpr std::array<std::array<double, 3>, 3> kMiddles = {{{0.5, 0.5, 0.0}, {0.0, 0.5, 0.5}, {0.5, 0.0, 0.5}}};
    Matrix9 k = Matrix9::Zero();
    for (auto const & place : kMiddles)
    {
        Eigen::Matrix<double, 3, 9> const b = plateCurvature(i_corners, place);
        k += (areaOf(i_corners) / 3.0) * (b.transpose() * i_elastic * b);
    }
    return k;
}

} // namespace voz::springback
