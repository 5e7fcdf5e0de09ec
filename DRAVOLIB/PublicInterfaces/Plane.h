// Plane.h: an oriented plane in point-normal form.
//
//     normal . p + offset = 0        normal: unit vector; offset: mm, like every model length
//
// A value class: copies are independent and nothing fails. A zero normal has no unit form;
// a plane built on one keeps the coefficients that it was given.

#ifndef PLANE_H
#define PLANE_H

#include "Vec.h"

class ExportedByVOZDravo Plane
{
public:
    Plane();                                       // the xy plane, facing +z
    Plane(double a, double b, double c, double d); // a x + b y + c z + d = 0
    Plane(double const * const i_abc, double d);
    Plane(Vec const & i_normal, double i_offset);
    Plane(double const * const i_abcd);
    Plane(Vec const & i_point, Vec const & i_normal);
    Plane(Vec const & p1, Vec const & p2, Vec const & p3); // normal along (p2 - p1) x (p3 - p1)
    Plane(Plane const &) = default;
    Plane & operator=(Plane const &) = default;

    // Coefficients.
    Vec normal() const;                // a counted copy: writing to it leaves the plane alone
    void normal(Vec const & i_normal); // brings the normal and the present offset to unit form
    double offset() const { return mCoeff[3]; }
    void offset(double i_offset) { mCoeff[3] = i_offset; }
    void reverse(); // the same points, the opposite normal

    // Points against the plane. Distances are in the unit of p.
    Vec project(Vec const & p) const;                  // p - normal (normal . p) - normal offset
    double distance(Vec const & p) const;              // unsigned
    int side(Vec const & p, double i_tolerance) const; // +1 above, -1 below, 0 within; the bounds are within

private:
    void pointNormalForm();

    double mCoeff[4]; // normal x, y, z; offset
};

#endif
