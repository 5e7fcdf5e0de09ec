// Plane.cpp: a plane in point-normal form.

#include "Plane.h"

#include "RowMath.h"

#include <cmath>

static_assert(sizeof(Plane) == 4 * sizeof(double), "a plane is its four coefficients, and nothing else");

Plane::Plane() : mCoeff{0.0, 0.0, 1.0, 0.0} {}

Plane::Plane(double a, double b, double c, double d) : mCoeff{a, b, c, d}
{
    pointNormalForm();
}

Plane::Plane(double const * const i_abc, double d) : Plane(i_abc[0], i_abc[1], i_abc[2], d) {}

Plane::Plane(Vec const & i_normal, double i_offset) : Plane(i_normal[0], i_normal[1], i_normal[2], i_offset) {}

Plane::Plane(double const * const i_abcd) : Plane(i_abcd[0], i_abcd[1], i_abcd[2], i_abcd[3]) {}

Plane::Plane(Vec const & i_point, Vec const & i_normal) : Plane(i_normal, -i_point.dot(i_normal)) {}

Plane::Plane(Vec const & p1, Vec const & p2, Vec const & p3) : Plane(p1, (p2 - p1).cross(p3 - p1)) {}

Vec Plane::normal() const
{
    return Vec(mCoeff);
}

void Plane::normal(Vec const & i_normal)
{
    Vec view(mCoeff);
    view = i_normal;
    pointNormalForm();
}

void Plane::reverse()
{
    for (double & coefficient : mCoeff)
        coefficient = -coefficient;
}

Vec Plane::project(Vec const & p) const
{
    double const point[3] = {p[0], p[1], p[2]};
    double foot[3];
    rowmath::project(mCoeff, point, foot);
    return Vec(static_cast<double const *>(foot));
}

double Plane::distance(Vec const & p) const
{
    double const point[3] = {p[0], p[1], p[2]};
    return std::fabs(rowmath::height(mCoeff, point));
}

int Plane::side(Vec const & p, double i_tolerance) const
{
    double const point[3] = {p[0], p[1], p[2]};
    double const height = rowmath::height(mCoeff, point);
    if (height > i_tolerance)
        return 1;
    return height < -i_tolerance ? -1 : 0;
}

void Plane::pointNormalForm()
{
    double const length = rowmath::length(mCoeff);
    if (length == 0.0)
        return;
    for (double & coefficient : mCoeff)
        coefficient /= length;
}
