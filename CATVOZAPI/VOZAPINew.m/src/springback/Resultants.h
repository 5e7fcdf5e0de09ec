// Resultants.h: forces and moments per length of the forming stresses at an integration point.

#ifndef RESULTANTS_H
#define RESULTANTS_H

#include "material/MembraneLaw.h"
#include "onestep/Results.h"

#include <Eigen/Core>

namespace voz::springback
{

struct Resultants // in the frame of a point, z along its normal; components 11, 22, 12
{
    Eigen::Vector3d force = Eigen::Vector3d::Zero();  // N/m
    Eigen::Vector3d moment = Eigen::Vector3d::Zero(); // N
    double thickness = 0.0;                           // m
};

// i_mid: log strains of the mid layer; i_curvature: positive where the surface is convex towards the normal.
Resultants integrateStress(material::MembraneLaw const & i_law, onestep::Strain const & i_mid,
                           geometry::Curvature const & i_curvature, double i_thickness);

// The same in axes turned by an angle: cosine and sine of the old first axis in the new ones.
Resultants turned(Resultants const & i_resultants, double i_cosine, double i_sine);

} // namespace voz::springback

#endif
