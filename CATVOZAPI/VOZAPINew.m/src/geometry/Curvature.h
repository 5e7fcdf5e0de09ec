// Curvature.h: curvature tensor of a mesh at its integration points.

#ifndef CURVATURE_H
#define CURVATURE_H

#include "geometry/IntegrationPoints.h"
#include "geometry/NodeNormals.h"

namespace voz::geometry
{

struct Curvature // symmetric tensor in the frame of a point, 1/m; positive where the surface is convex towards its
                 // normal
{
    double k11 = 0.0, k22 = 0.0, k12 = 0.0;
};

// What the normal is where a bend meets a flat.
enum class BendEnds
{
    Mean, // of the cells on both sides: the first row of the flat takes part of the bend's last turn
    Sharp // that of the flat: all turning stays in the bend
};

// i_rimSides: the free sides that lie in no plane of symmetry.
std::vector<Curvature> pointCurvatures(SurfaceMesh const & i_mesh, PointTable const & i_points,
                                       std::vector<SymmetryNode> const & i_symmetry,
                                       std::vector<Side> const & i_rimSides, BendEnds i_bendEnds = BendEnds::Mean);

// Principal values (k1 >= k2 by amount) and the frame's angle of the first.
struct PrincipalCurvature
{
    double k1, k2, cosine, sine;
};
PrincipalCurvature principalCurvature(Curvature const & i_curvature);

} // namespace voz::geometry

#endif
