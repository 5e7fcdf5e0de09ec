// Results.h: strains of the three layers, stresses, force and work of a solved piece.

#ifndef RESULTS_H
#define RESULTS_H

#include "geometry/Curvature.h"
#include "onestep/MembraneSystem.h"

namespace voz::onestep
{

struct Strain // log, in the frame of an element as it came in; shear is the engineering one
{
    double e11 = 0.0, e22 = 0.0, shear = 0.0;
};

struct PointResult
{
    Strain mid, top, bottom;
    std::array<double, 3> stress{0.0, 0.0, 0.0}; // equivalent, Pa: mid, top, bottom
};

// The log strains of a point in its frame.
Strain midStrain(PointStrain const & i_strain);

// The curvature that bends a sheet of thickness t: sizes from the mesh, or from i_given (may be null; two principal
// values 1/m and an angle), held within what the sheet can follow.
geometry::Curvature bendingCurvature(geometry::Curvature const & i_mesh, std::array<double, 3> const * i_given,
                                     double i_thickness);

// Per integration point of the piece. i_given: principal curvatures per element of the problem, or empty; they replace
// the sizes of those of the mesh, which keep signs and directions.
std::vector<PointResult> pointResults(MembraneSystem const & i_system, std::span<geometry::Vec2 const> i_flat,
                                      std::vector<std::array<double, 3>> const & i_given);

// The sums and extremes of a piece.
struct PieceSummary
{
    // N: half the sum of |a3 . (F - Fext)|, since what pushes down equals what pushes up; after a stroke in steps the
    // greatest force through a level
    double punchForce = 0.0;
    double work = 0.0;           // J
    double greatestStrain = 0.0; // ebar
    int neckingPoints = 0;
    int neckingElement = -1; // of the problem, where the thinning is greatest; -1: none necks
};
PieceSummary summarise(MembraneSystem const & i_system, std::span<geometry::Vec2 const> i_flat);

// The layer zeta (m, towards the normal of the point's frame) of a mid strain h and a curvature K:  h + ln(I + zeta K).
Strain layerStrain(Strain const & i_mid, geometry::Curvature const & i_curvature, double i_zeta);

} // namespace voz::onestep

#endif
