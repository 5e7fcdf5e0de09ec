// ShellTriangle.h: the shell triangle that turns with the sheet.
//
// Small strains, any rotation. Six unknowns per corner: displacement and spin (an infinitesimal rotation about the
// axes of space, laid on from the left). The energy of the element is 1/2 d.K d + load f0.d over the deformation d that
// is left when the rigid motion of the triangle has been taken away; force and tangent are its exact derivatives.
// C. A. Felippa, B. Haugen, Comput. Methods Appl. Mech. Eng. 194 (2005) 2285.

#ifndef SHELLTRIANGLE_H
#define SHELLTRIANGLE_H

#include "springback/PlateTriangle.h"

#include <Eigen/Geometry>

namespace voz::springback
{

using Vector18 = Eigen::Matrix<double, 18, 1>;
using Matrix18 = Eigen::Matrix<double, 18, 18>;

struct ShellTriangle
{
    std::array<int, 3> node{-1, -1, -1}; // counter-clockwise about the normal
    Corners corner;                      // in the frame, as formed; centre at the origin, m
    std::array<geometry::Vec2, 3> slope; // gradients of the area coordinates, as formed, 1/m
    Eigen::Matrix3d frame;               // columns: two axes of the triangle and its normal, as formed
    double thickness = 0.0;              // m
    double youngsModulus = 0.0;          // Pa
    double poisson = 0.0;
    double share = 1.0;    // of stiffness and force: 1/2 where a quadrilateral is cut both ways
    Vector18 initialForce; // of the forming stresses, in the frame; share included
};

// A triangle over three points of space, without stresses.
ShellTriangle shellTriangle(std::array<Eigen::Vector3d, 3> const & i_points, std::array<int, 3> const & i_nodes);

// The corner forces of constant forces and moments per length (11, 22, 12), in the triangle's frame: they balance.
void setInitialForce(Eigen::Vector3d const & i_force, Eigen::Vector3d const & i_moment, ShellTriangle & io_triangle);

// Over the unknowns (u, v, w, spins) of the corners, in the frame.
Matrix18 linearStiffness(ShellTriangle const & i_triangle);

struct CornerState
{
    std::array<Eigen::Vector3d, 3> displacement; // since the forming, m
    std::array<Eigen::Quaterniond, 3> rotation;  // since the forming
};

// Forces and moments on the corners in space, and their derivative by displacements and spins where asked for.
void evaluate(ShellTriangle const & i_triangle, CornerState const & i_state, double i_load, Vector18 & o_force,
              Matrix18 * o_tangent);

} // namespace voz::springback

#endif
