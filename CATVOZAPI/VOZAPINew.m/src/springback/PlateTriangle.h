// PlateTriangle.h: the bending triangle of the shell.
//
// Unknowns per corner: w, theta_x, theta_y (rotations about the axes of the triangle). Curvatures are those of the
// layers' strains, strain(z) = z kappa, z along the normal: kappa = (theta_y,x; -theta_x,y; theta_y,y - theta_x,x).

#ifndef PLATETRIANGLE_H
#define PLATETRIANGLE_H

#include "springback/MembraneTriangle.h"

namespace voz::springback
{

// Curvatures (11, 22, engineering 12) at the point with the area coordinates i_place.
Eigen::Matrix<double, 3, 9> plateCurvature(Corners const & i_corners, std::array<double, 3> const & i_place);

// i_elastic: moments per length from curvatures, N m.
Matrix9 plateStiffness(Corners const & i_corners, Eigen::Matrix3d const & i_elastic);

} // namespace voz::springback

#endif
