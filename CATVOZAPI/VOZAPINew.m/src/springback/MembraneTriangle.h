// MembraneTriangle.h: the plane triangle of the shell: stretching and in-plane bending, with drilling rotations.
//
// Unknowns per corner: u, v, theta (rotation about the normal). The corners run counter-clockwise, in metres; centre
// at the origin. N/m for forces per length.

#ifndef MEMBRANETRIANGLE_H
#define MEMBRANETRIANGLE_H

#include "geometry/SmallVector.h"

#include <Eigen/Core>

#include <array>

namespace voz::springback
{

using Corners = std::array<geometry::Vec2, 3>;
using Matrix9 = Eigen::Matrix<double, 9, 9>;

double areaOf(Corners const & i_corners);
std::array<geometry::Vec2, 3> areaGradients(Corners const & i_corners); // of the area coordinates, 1/m

// Plane stress: stresses from strains (11, 22, engineering 12), Pa.
Eigen::Matrix3d planeStress(double i_youngsModulus, double i_poisson);

// Corner forces of the forces per length (N11, N22, N12), constant over the triangle.
Eigen::Matrix<double, 9, 3> membraneLumping(Corners const & i_corners);

// i_elastic: forces per length from strains, N/m.
Matrix9 membraneStiffness(Corners const & i_corners, Eigen::Matrix3d const & i_elastic, double i_poisson);

} // namespace voz::springback

#endif
